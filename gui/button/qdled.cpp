#include "qdled.h"

#include <QPainter>

namespace {

constexpr double darkOpacity = 0.35;

// The picture of `lit` with a dim one beside it for the disabled state.
QIcon lamp(QIcon lit) {
    const QPixmap bright = lit.pixmap(lit.availableSizes().value(0));
    if (!bright.isNull()) {
        QPixmap dark(bright.size());
        dark.setDevicePixelRatio(bright.devicePixelRatioF());
        dark.fill(Qt::transparent);
        QPainter painter(&dark);
        painter.setOpacity(darkOpacity);
        painter.drawPixmap(0, 0, bright);
        painter.end();
        lit.addPixmap(dark, QIcon::Disabled);
    }
    return lit;
}

} // namespace

QDLed::QDLed(const QString& picture, QWidget* parent) : QBPicture(smallPicture, parent) {
    showPicture(picture);
    setIcon(lamp(icon()));
    m_timer.setSingleShot(true);
    m_timer.setInterval(lightMs);
    connect(&m_timer, &QTimer::timeout, this, &QDLed::disabled);
    disabled();
}

void QDLed::trigger() {
    setEnabled(true);
    if (!m_timer.isActive()) {
        m_timer.start();
    }
}

void QDLed::disabled() {
    m_timer.stop();
    setEnabled(false);
}
