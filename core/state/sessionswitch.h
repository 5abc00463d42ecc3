#pragma once

#include <QObject>

/// What the play button does: it starts a session and stops the one that runs. From the press to the end of
/// the count-in the session is being armed, and further presses are kept out. GUI thread.
class SessionSwitch : public QObject {
    Q_OBJECT
public:
    static constexpr int armingTime = 100; ///< ms between the press and the start

    explicit SessionSwitch(QObject* parent = nullptr) : QObject(parent) {}

public Q_SLOTS:
    void press();

private:
    void start();
};
