#include "qbtoggle.h"

QBToggle::QBToggle(const QString& picture, QWidget* parent)
    : QBSwitch(QStringLiteral("toggle"), picture, parent) {}

void QBToggle::toggleOffIfEnabled() {
    if (isEnabled()) {
        setChecked(false);
    }
}
