#pragma once

#include "qbswitch.h"

/// A round toggle.
class QBToggleCircular : public QBSwitch {
    Q_OBJECT
public:
    explicit QBToggleCircular(const QString& picture, QWidget* parent = nullptr);
};
