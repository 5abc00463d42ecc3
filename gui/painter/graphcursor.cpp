#include "graphcursor.h"

#include "devicepixels.h"
#include "graphstyle.h"
#include "model/wholenumber.h"

GraphCursor::GraphCursor(QPainter& painter, const GraphLayout& layout, int width, int column,
                         const QString& beats, LabelCache& labels)
    : m_layout(layout), m_column(column) {
    if (column < 0 || column > width) {
        return;
    }
    const qsizetype point = beats.indexOf(u'.');
    m_beats = point < 0 ? beats : beats.first(point);
    m_hundredths = point < 0 ? QString() : beats.sliced(point);
    const TextStyle style(painter, ModelGraph::CURRENT);
    m_beatsWidth = labels.width(painter, m_beats);
    m_text = spanWithin(column, m_beatsWidth + labels.width(painter, m_hundredths), width);
}

void GraphCursor::draw(QPainter& painter, LabelCache& labels) const {
    if (!m_text) {
        return;
    }
    const TextStyle style(painter, ModelGraph::CURRENT);
    const QPen& pen = linePen(ModelGraph::CURRENT);
    const int bottom = truncated(m_layout.plotBottom);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(DevicePixels(painter).upright(m_column, m_layout.plotTop, bottom, pen.widthF()),
                     pen.color());
    painter.setRenderHint(QPainter::Antialiasing, true);

    const auto flags = Qt::AlignLeft | Qt::AlignBottom;
    const QRectF place(m_text->left, bottom, m_text->right - m_text->left, m_layout.labelBottom - bottom);
    labels.draw(painter, place, flags, m_beats);
    labels.draw(painter, place.translated(m_beatsWidth, 0.0), flags, m_hundredths);
}
