#pragma once

#include "qbswitch.h"

/// A square toggle.
class QBToggle : public QBSwitch {
    Q_OBJECT
public:
    explicit QBToggle(const QString& picture, QWidget* parent = nullptr);

public Q_SLOTS:
    /// Unchecks the button unless it is disabled.
    void toggleOffIfEnabled();
};
