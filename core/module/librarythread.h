#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

/// The one thread on which streams are opened, started and closed, one call after the other: PortAudio isn't
/// made for several at a time, and a sound server may keep a call from returning for minutes. Lives as long
/// as the process: a call that hangs is never waited for at its end.
class LibraryThread {
public:
    static LibraryThread& instance();

    /// Runs `call` behind what is under way and waits for it. False if `wait` passed first, or if an earlier
    /// call hangs: then PortAudio counts as blocked until this call has returned as well. Thread-safe.
    /// Realtime-safe: no.
    bool run(std::function<void()> call, std::chrono::milliseconds wait);

private:
    struct Job {
        std::function<void()> call;
        bool done = false;
        bool abandoned = false;
    };

    LibraryThread();
    void serve();

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_finished;
    std::deque<std::shared_ptr<Job>> m_jobs;
    int m_abandoned = 0; ///< calls that nobody waits for any more
};
