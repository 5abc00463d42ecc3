#include "labelcache.h"

#include <QPaintDevice>

namespace {

double aligned(double start, double room, double size, bool atEnd, bool inMiddle) {
    return atEnd ? start + room - size : inMiddle ? start + (room - size) / 2.0 : start;
}

} // namespace

const QStaticText& LabelCache::layout(const QPainter& painter, const QString& text) {
    const int dotsPerInch = painter.device()->logicalDpiY();
    if (m_dotsPerInch != dotsPerInch || m_font != painter.font() || m_texts.size() >= maxTexts) {
        m_texts.clear();
        m_font = painter.font();
        m_dotsPerInch = dotsPerInch;
    }
    auto found = m_texts.find(text);
    if (found == m_texts.end()) {
        QStaticText label(text);
        label.setTextFormat(Qt::PlainText);
        label.setPerformanceHint(QStaticText::AggressiveCaching);
        label.prepare(painter.transform(), m_font);
        found = m_texts.insert(text, label);
        ++m_layouts;
    }
    return *found;
}

void LabelCache::draw(QPainter& painter, const QRectF& rect, Qt::Alignment flags, const QString& text) {
    const QStaticText& label = layout(painter, text);
    const QSizeF size = label.size();
    painter.drawStaticText(QPointF(aligned(rect.left(), rect.width(), size.width(), flags & Qt::AlignRight,
                                           flags & Qt::AlignHCenter),
                                   aligned(rect.top(), rect.height(), size.height(), flags & Qt::AlignBottom,
                                           flags & Qt::AlignVCenter)),
                           label);
}
