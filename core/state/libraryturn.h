#pragma once

#include <chrono>
#include <mutex>

/// One library at a time looks for its server, opens or closes: PortAudio and RtMidi are clients of the same
/// JACK server in one process, and while one of them closes a client the server may wait for an answer of
/// that client to what the other one asked. Held around such calls; may nest on one thread. Thread-safe: yes.
/// Realtime-safe: no.
class LibraryTurn {
public:
    /// Waits for its turn.
    LibraryTurn() : m_lock(turn()) {}
    /// Waits no longer than this; taken() tells whether the turn came.
    explicit LibraryTurn(std::chrono::milliseconds wait) : m_lock(turn(), wait) {}
    bool taken() const { return m_lock.owns_lock(); }

private:
    static std::recursive_timed_mutex& turn() {
        static auto& mutex =
            *new std::recursive_timed_mutex; // a thread that hangs may outlive everything else
        return mutex;
    }
    std::unique_lock<std::recursive_timed_mutex> m_lock;
};
