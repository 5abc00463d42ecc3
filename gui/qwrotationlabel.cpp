#include "qwrotationlabel.h"

#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int belowBaseline = 5; // pixels between the text's baseline and the right edge

} // namespace

QWRotationLabel::QWRotationLabel(const QString& text, QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("menu"));
    setText(text);
}

void QWRotationLabel::setText(const QString& text) {
    m_text = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

QSize QWRotationLabel::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    return {metrics.ascent() + belowBaseline, metrics.horizontalAdvance(m_text)};
}

void QWRotationLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.rotate(-90.0);
    painter.drawText(QPoint(-rect().height(), rect().width() - belowBaseline), m_text);
}
