#pragma once

#include "qbpicture.h"

#include <QTimer>

/// A lamp. It is a button that is always disabled but for the moment in which it lights.
class QDLed : public QBPicture {
    Q_OBJECT
public:
    static constexpr int lightMs = 100;

    explicit QDLed(const QString& picture, QWidget* parent = nullptr);

    /// How long it will stay lit.
    int remainingMs() const { return m_timer.isActive() ? m_timer.remainingTime() : 0; }

public Q_SLOTS:
    /// Lights for 100 ms. A second call within this time extends nothing.
    void trigger();
    void disabled();

private:
    QTimer m_timer;
};
