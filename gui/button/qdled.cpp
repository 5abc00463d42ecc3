#include "qdled.h"

QDLed::QDLed(const QString& picture, QWidget* parent) : QBPicture(smallPicture, parent) {
    showPicture(picture);
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
