#include "drawingthread.h"

#include <QThread>

#include <cassert>
#include <utility>

DrawingThread::DrawingThread(QString name) : m_name(std::move(name)) {}

DrawingThread::~DrawingThread() {
    finish();
    if (!m_thread) {
        return;
    }
    m_task = nullptr;
    m_wanted.release();
    m_thread->wait();
}

void DrawingThread::start(std::function<void()> task) {
    assert(task && !m_busy);
    m_busy = true;
    if (!std::exchange(m_used, true)) {
        m_thread.reset(QThread::create([this] { work(); }));
        m_thread->setObjectName(m_name); // the thread's name as the system shows it
        m_thread->start();
        if (!m_thread->isRunning()) { // the system has no more threads for us
            m_thread.reset();
        }
    }
    if (!m_thread) {
        task();
        m_done.release();
        return;
    }
    m_task = std::move(task);
    m_wanted.release();
}

void DrawingThread::finish() {
    if (m_busy) {
        m_done.acquire();
        m_busy = false;
    }
}

void DrawingThread::work() {
    for (m_wanted.acquire(); m_task; m_wanted.acquire()) {
        m_task();
        m_done.release();
    }
}
