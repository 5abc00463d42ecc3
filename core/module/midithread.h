#pragma once

#include <chrono>

class QThread;
class WorkerMidiObject;

/// `WorkerMidiObject` on a thread of its own, of high priority, from construction to destruction. GUI thread.
class MidiThread {
public:
    /// How long the destructor waits for the port to close. What a sound server keeps from returning is left
    /// to itself after that: it goes when the server comes back, or with the process.
    static constexpr std::chrono::milliseconds endDeadline{500};
    /// A thread was left to itself and is still there. Thread-safe.
    static bool leftBehind();

    MidiThread();
    ~MidiThread();
    MidiThread(const MidiThread&) = delete;
    MidiThread& operator=(const MidiThread&) = delete;

    /// For connections alone; what they call runs on the thread.
    WorkerMidiObject* worker() const { return m_worker; }
    QThread* thread() const { return m_thread; }

private:
    WorkerMidiObject* m_worker; // deleted by its thread
    QThread* m_thread;
};
