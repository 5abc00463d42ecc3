#pragma once

#include "model/modelgraph.h"

#include <QColor>

/// Colour of a curve.
inline QColor curveColor(ModelGraph::EnumGraph item) {
    switch (item) {
    case ModelGraph::INPUT_DECKA:
        return QColor(0, 255, 0);
    case ModelGraph::INPUT_DECKB:
        return QColor(0, 255, 255);
    case ModelGraph::INPUT_1:
        return QColor(0, 105, 0);
    case ModelGraph::INPUT_2:
        return QColor(0, 105, 105);
    default:
        return QColor(0, 0, 0);
    }
}

/// Colour of a curve's sound strip.
inline QColor stripColor(ModelGraph::EnumGraph item) {
    switch (item) {
    case ModelGraph::INPUT_DECKA:
    case ModelGraph::INPUT_1:
        return QColor(0, 255, 0, 100);
    case ModelGraph::INPUT_DECKB:
    case ModelGraph::INPUT_2:
        return QColor(0, 255, 255, 100);
    default:
        return QColor(0, 0, 0, 0);
    }
}
