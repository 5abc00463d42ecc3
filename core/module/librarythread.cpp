#include "librarythread.h"

#include "state/libraryturn.h"
#include "state/portaudiosession.h"

#include <thread>

LibraryThread& LibraryThread::instance() {
    static auto& thread = *new LibraryThread;
    return thread;
}

LibraryThread::LibraryThread() {
    std::thread([this] { serve(); }).detach();
}

bool LibraryThread::run(std::function<void()> call, std::chrono::milliseconds wait) {
    const auto job = std::make_shared<Job>(std::move(call));
    std::unique_lock lock(m_mutex);
    m_jobs.push_back(job);
    m_wake.notify_one();
    if (m_abandoned == 0 && m_finished.wait_for(lock, wait, [&] { return job->done; })) {
        return true;
    }
    job->abandoned = true;
    ++m_abandoned;
    PortAudioSession::block();
    return false;
}

void LibraryThread::serve() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return !m_jobs.empty(); });
        const std::shared_ptr<Job> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        {
            const LibraryTurn turn;
            job->call();
        }
        job->call = nullptr; // what it kept alive goes here
        lock.lock();
        job->done = true;
        if (job->abandoned) {
            --m_abandoned;
            PortAudioSession::unblock();
        }
        m_finished.notify_all();
    }
}
