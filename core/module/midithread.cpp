#include "midithread.h"

#include "workermidiobject.h"

#include <QDeadlineTimer>
#include <QThread>

#include <atomic>

namespace {
std::atomic<int> left{0};
} // namespace

bool MidiThread::leftBehind() {
    return left.load() > 0;
}

MidiThread::MidiThread() : m_worker(new WorkerMidiObject), m_thread(new QThread) {
    m_thread->setObjectName(QStringLiteral("threadMidi"));
    m_worker->moveToThread(m_thread);
    // The thread ends behind its worker, whose port has then been closed where it was opened.
    QObject::connect(m_worker, &QObject::destroyed, m_thread, &QThread::quit, Qt::DirectConnection);
    m_thread->start(QThread::InheritPriority);
    m_thread->setPriority(QThread::HighPriority);
}

MidiThread::~MidiThread() {
    // For a thread that isn't waited for: it goes with the GUI's event loop.
    QObject::connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
    m_worker->deleteLater();
    if (m_thread->wait(QDeadlineTimer(endDeadline))) {
        delete m_thread;
    } else {
        ++left;
        QObject::connect(m_thread, &QObject::destroyed, [] { --left; });
    }
}
