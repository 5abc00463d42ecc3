#include "qbtogglecircular.h"

QBToggleCircular::QBToggleCircular(const QString& picture, QWidget* parent)
    : QBSwitch(QStringLiteral("togglecircular"), picture, parent) {}
