#include "qwpainterrec.h"

#include <QPainter>

QWPainterRec::QWPainterRec(const QColor& color, QWidget* parent) : QWidget(parent), m_color(color) {
    setFixedSize(50, 25);
}

void QWPainterRec::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillRect(rect(), m_color);
    }
    QWidget::paintEvent(event);
}
