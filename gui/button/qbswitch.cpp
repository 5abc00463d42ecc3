#include "qbswitch.h"

QBSwitch::QBSwitch(const QString& objectName, const QString& picture, QWidget* parent)
    : QBPicture(smallPicture, parent) {
    setObjectName(objectName);
    setCheckable(true);
    connect(this, &QPushButton::toggled, this, &QBSwitch::announce);
    showPicture(picture);
}

void QBSwitch::announce(bool on) {
    if (on) {
        Q_EMIT s_Toogle_on();
    } else {
        Q_EMIT s_Toogle_off();
    }
}

void QBSwitch::enabled() {
    setEnabled(true);
}

void QBSwitch::disabled() {
    setEnabled(false);
}

void QBSwitch::toggle_on() {
    if (!isChecked()) {
        setChecked(true);
        announce(true);
    }
}

void QBSwitch::toggle_off() {
    if (isChecked()) {
        setChecked(false);
        announce(false);
    }
}
