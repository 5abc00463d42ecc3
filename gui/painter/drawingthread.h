#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <semaphore>

class QThread;

/// A thread that works while its owner waits: what two owners draw is drawn at the same time. From start() to
/// the return of finish() all that the task uses is the task's; nothing is locked. The thread begins with the
/// first task; where none can be made the owner's own does the work, then and from there on. Owned and called
/// by one thread.
class DrawingThread {
public:
    explicit DrawingThread(QString name);
    /// Waits for the task.
    ~DrawingThread();
    DrawingThread(const DrawingThread&) = delete;
    DrawingThread& operator=(const DrawingThread&) = delete;

    /// The last task has been waited for. An exception that leaves the task ends the program.
    void start(std::function<void()> task);
    /// Returns when the task is done, at once without one.
    void finish();
    /// Whether a task was started and not waited for.
    bool busy() const { return m_busy; }
    /// Whether there has been a task.
    bool used() const { return m_used; }

private:
    void work();

    QString m_name;
    std::unique_ptr<QThread> m_thread;
    std::function<void()> m_task; ///< empty: the thread is to end
    std::binary_semaphore m_wanted{0};
    std::binary_semaphore m_done{0};
    bool m_busy = false;
    bool m_used = false;
};
