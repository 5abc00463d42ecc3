#pragma once

#include "qbpicture.h"

/// What the toggles share: a checkable button with one picture.
class QBSwitch : public QBPicture {
    Q_OBJECT
Q_SIGNALS:
    void s_Toogle_on();
    void s_Toogle_off();

public Q_SLOTS:
    void enabled();
    void disabled();
    /// Changes the state if it differs. Listeners then hear of it twice: once from the change and once from
    /// here.
    void toggle_on();
    void toggle_off();

protected:
    QBSwitch(const QString& objectName, const QString& picture, QWidget* parent);

private:
    void announce(bool on);
};
