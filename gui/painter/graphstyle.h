#pragma once
// Pens of straight lines and the styles of texts on the graph.

#include "model/modelgraph.h"

#include <QPainter>
#include <QPen>

/// The grey of grid, axes and labels.
inline const QColor graphGrey(175, 176, 177);

/// GRID, GRID_FIRST_METRONOM, CURRENT or AXE. Built once.
const QPen& linePen(ModelGraph::EnumGraph item);

/// Font and pen of a text on the graph; the family stays the painter's. The painter is restored when the
/// style goes out of scope. Every item without a style of its own is a plain label.
class TextStyle {
public:
    TextStyle(QPainter& painter, ModelGraph::EnumGraph item);
    ~TextStyle() { m_painter.restore(); }
    TextStyle(const TextStyle&) = delete;
    TextStyle& operator=(const TextStyle&) = delete;

private:
    QPainter& m_painter;
};
