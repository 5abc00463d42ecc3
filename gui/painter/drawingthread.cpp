#include "drawingthread.h"

#include <QThread>

#include <cassert>
#include <utility>

DrawingThread::DrawingThread(QString name) : m_name(std::move(name)) {}

DrawingThread::~DrawingThread() {
    if (!m_thread) {
        return;
    }
    finish();
    m_task = nullptr;
    m_wanted.release();
    m_thread->wait();
}

void DrawingThread::start(std::function<void()> task) {
    assert(task && !m_busy);
    m_task = std::move(task);
    m_busy = true;
    if (!m_thread) {
        m_thread.reset(QThread::create([this] { work(); }));
        m_thread->setObjectName(m_name); // the thread's name as the system shows it
        m_thread->start();
    }
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
