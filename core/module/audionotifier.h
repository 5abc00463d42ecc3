#pragma once

#include <QObject>

#include <atomic>

/// Carries word of a first code from a callback to the curves.
class AudioNotifier : public QObject {
    Q_OBJECT
public:
    explicit AudioNotifier(QObject* parent = nullptr) : QObject(parent) {}

    /// Asks for audioLevelChanged. Thread-safe: yes. Realtime-safe: yes.
    void request() { m_requested.store(true, std::memory_order_relaxed); }
    /// Emits what has been asked for. GUI thread, a few times a second.
    void deliver() {
        if (m_requested.exchange(false, std::memory_order_relaxed)) {
            Q_EMIT audioLevelChanged();
        }
    }

Q_SIGNALS:
    void audioLevelChanged();

private:
    std::atomic<bool> m_requested{false};
};
