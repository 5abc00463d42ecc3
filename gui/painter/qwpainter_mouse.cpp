// What the mouse does on the graph: a drag pans or selects, the wheel zooms, the right button asks for the
// menu.
#include "qwpainter.h"

#include "zoom.h"

#include "model/qsample.h"
#include "state/mode.h"
#include "state/performance.h"

#include <QMouseEvent>
#include <QWheelEvent>

void QWPainter::mousePressEvent(QMouseEvent* event) {
    const QPoint at = nearestPixel(event->position());
    if (event->button() == Qt::LeftButton) {
        m_mouseDownPoint = at;
        Q_EMIT s_PressLeftButton();
    } else if (event->button() == Qt::RightButton) {
        const int shift = m_mode.modeColor() ? colorMenuWidth : 0;
        Q_EMIT s_PressRightButton(truncated(double(at.x()) + shift), at.y());
    }
}

void QWPainter::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_mouseUpPoint = nearestPixel(event->position());
        const int press = m_mouseDownPoint.x();
        const int release = m_mouseUpPoint.x();
        if (m_mode.modeSelectArea()) {
            takeXRange(selectedRange(m_x, m_layout.plotWidth, press, release));
            Q_EMIT s_EndSelectArea();
        } else {
            takeXRange(draggedRange(m_x, m_layout.plotWidth, press, release));
        }
    }
    Q_EMIT s_MouseReleaseEvent();
}

void QWPainter::wheelEvent(QWheelEvent* event) {
    takeXRange(wheelZoom(m_x, m_layout.plotWidth, event->position().x(), event->angleDelta().y()));
}

void QWPainter::takeXRange(FrameRange range) {
    setXRange(range);
    Q_EMIT s_XRange(m_deckName, m_x.min, m_x.max);
}

void QWPainter::updateXRange(ModelGraph::EnumGraph name, double xMin, double xMax) {
    setXRange(name == m_deckName
                  ? FrameRange{truncated(xMin), truncated(xMax)}
                  : rescaledRange(xMin, xMax, sampleRate(), m_performance.sample(name)->sampleRate()));
}
