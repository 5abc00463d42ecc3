#include "graphstyle.h"

#include <QFont>

#include <map>

namespace {

QPen straight(const QColor& color, double width) {
    return QPen(color, width, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
}

struct Style {
    int points;
    bool bold;
    bool italic;
    QColor color;
    double width;
};

Style styleOf(ModelGraph::EnumGraph item) {
    const QColor tag(95, 96, 97);
    switch (item) {
    case ModelGraph::TAG:
        return {30, true, true, tag, 50.0};
    case ModelGraph::TAG_NUMBER:
        return {60, true, false, tag, 50.0};
    case ModelGraph::CURRENT:
        return {8, false, false, QColor(255, 0, 0), 1.0};
    default:
        return {8, false, false, graphGrey, 0.5};
    }
}

} // namespace

const QPen& linePen(ModelGraph::EnumGraph item) {
    static const std::map<ModelGraph::EnumGraph, QPen> pens{
        {ModelGraph::GRID, straight(graphGrey, 0.5)},
        {ModelGraph::GRID_FIRST_METRONOM, straight(graphGrey, 4.0)},
        {ModelGraph::CURRENT, straight(QColor(255, 0, 0), 1.0)},
        {ModelGraph::AXE, straight(graphGrey, 3.0)},
    };
    return pens.at(item);
}

TextStyle::TextStyle(QPainter& painter, ModelGraph::EnumGraph item) : m_painter(painter) {
    const Style style = styleOf(item);
    m_painter.save();
    QFont font = m_painter.font();
    font.setPointSize(style.points);
    if (style.bold) {
        font.setWeight(QFont::Bold);
    }
    font.setItalic(style.italic);
    m_painter.setFont(font);
    m_painter.setPen(QPen(style.color, style.width));
}
