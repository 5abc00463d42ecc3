// The slots of the recorder. What runs on its stream's thread is in inputcallback.cpp.
#include "workerrecordermultichannelobject.h"

#include "audionotifier.h"
#include "curve/curvepointstore.h"
#include "inputstream.h"
#include "managewav.h"
#include "model/qsample.h"
#include "receivetimecodedvsobject.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/singleton.h"
#include "state/time.h"

#include <QDir>

#include <chrono>

namespace {

constexpr int aliveWithin = 500; // ms: a stream that called this recently can be stopped in the usual way

qint64 steadyMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

WorkerRecorderMultiChannelObject::WorkerRecorderMultiChannelObject(CurvePointRing& ringA,
                                                                   CurvePointStore& pointsA,
                                                                   CurvePointRing& ringB,
                                                                   CurvePointStore& pointsB, QObject* parent)
    : QObject(parent)
    , m_notifier(std::make_unique<AudioNotifier>())
    , m_deckA{ModelGraph::INPUT_DECKA,
              std::make_unique<ReceiveTimecodeDVSObject>(ModelGraph::INPUT_DECKA, ringA, pointsA)}
    , m_deckB{ModelGraph::INPUT_DECKB,
              std::make_unique<ReceiveTimecodeDVSObject>(ModelGraph::INPUT_DECKB, ringB, pointsB)}
    , m_master{ModelGraph::INPUT_MASTER, nullptr} {
    m_housekeeping.setInterval(housekeepingInterval);
    connect(&m_housekeeping, &QTimer::timeout, this, [this] { housekeeping(); });
}

WorkerRecorderMultiChannelObject::~WorkerRecorderMultiChannelObject() {
    m_stream.reset();
    setFeeding(false);
    for (Group* group : groups()) {
        delete group->take;
    }
}

bool WorkerRecorderMultiChannelObject::isOpen() const {
    return m_stream != nullptr && m_stream->isOpen();
}

std::uint64_t WorkerRecorderMultiChannelObject::overflows() const {
    std::uint64_t lost = 0;
    for (const Group* group : {&m_master, &m_deckA, &m_deckB}) {
        if (group->take != nullptr) {
            lost += group->take->samples().overflows();
        }
        if (group->decoder != nullptr && group->decoder->isFed()) {
            lost += group->decoder->state().points->overflows();
        }
    }
    return lost;
}

void WorkerRecorderMultiChannelObject::prepareGroup(InputGroup& target, Group& group, bool recording) {
    target.served = group.sample != nullptr;
    if (!target.served) {
        return;
    }
    target.left = static_cast<std::size_t>(group.sample->channelFirst()) * 2;
    target.decoder = group.decoder.get();
    if (recording) {
        group.take = new ManageWAV;
        target.take = group.take;
    }
}

void WorkerRecorderMultiChannelObject::load(ModelGraph::EnumGraph name, QSample* master, QSample* deckA,
                                            QSample* deckB) {
    stop();
    m_name = name;
    m_master.sample = master;
    m_deckA.sample = deckA;
    m_deckB.sample = deckB;
    m_mainSample = name == ModelGraph::INPUT_MASTER  ? master
                   : name == ModelGraph::INPUT_DECKA ? deckA
                   : name == ModelGraph::INPUT_DECKB ? deckB
                                                     : nullptr;
    if (m_mainSample == nullptr || m_mainSample->deviceName().isEmpty()) {
        return;
    }
    const Singleton& shared = Singleton::instance();
    m_state = std::make_shared<InputCallbackState>();
    m_state->mode = shared.mode();
    m_state->notifier = m_notifier.get();
    m_state->channels = static_cast<std::size_t>(m_mainSample->channelCount());
    const bool recording = shared.mode()->modeRecorder();
    prepareGroup(m_state->master, m_master, recording);
    prepareGroup(m_state->deckA, m_deckA, recording);
    prepareGroup(m_state->deckB, m_deckB, recording);
    m_stream = std::make_unique<InputStream>(m_state);
    if (!m_stream->open(*m_mainSample, static_cast<unsigned long>(shared.performance()->inputBuffer(name)))) {
        tellSilent(true);
    }
}

void WorkerRecorderMultiChannelObject::record() {
    if (m_stream == nullptr || m_running) {
        return;
    }
    if (!isOpen()) {
        tellSilent(true);
        return;
    }
    setFeeding(true);
    m_running = true;
    m_buffersSeen = 0;
    m_overflowsTold = 0;
    m_lastBufferMs = steadyMs();
    m_state->open.store(true, std::memory_order_release);
    if (!m_stream->start()) {
        m_state->open.store(false, std::memory_order_release);
        setFeeding(false);
        m_running = false;
        tellSilent(true);
        return;
    }
    m_silent = false;
    m_housekeeping.start();
}

void WorkerRecorderMultiChannelObject::setFeeding(bool feeding) {
    for (Group* group : {&m_deckA, &m_deckB}) {
        group->decoder->setFed(feeding && group->sample != nullptr);
    }
}

void WorkerRecorderMultiChannelObject::tellSilent(bool silent) {
    m_silent = silent;
    for (const Group* group : groups()) {
        if (group->sample != nullptr) {
            Q_EMIT s_SilentInput(group->name, silent);
        }
    }
}

bool WorkerRecorderMultiChannelObject::callbacksMissing() const {
    return m_running && m_state->buffers.load(std::memory_order_relaxed) == m_buffersSeen &&
           steadyMs() - m_lastBufferMs > aliveWithin;
}

bool WorkerRecorderMultiChannelObject::isRead() const {
    for (const Group* group : {&m_master, &m_deckA, &m_deckB}) {
        if (group->sample != nullptr && (group->decoder != nullptr || group->take != nullptr)) {
            return true;
        }
    }
    return false;
}

void WorkerRecorderMultiChannelObject::halt() {
    m_housekeeping.stop();
    if (m_stream == nullptr) {
        return;
    }
    if (callbacksMissing()) {
        // The server is gone or stands still, and the library may not come back for minutes: it is called
        // when everything has been written, and not waited for.
        m_state->open.store(false, std::memory_order_release);
    } else {
        m_stream->close();
    }
}

void WorkerRecorderMultiChannelObject::stop() {
    halt();
    if (m_mainSample == nullptr) {
        return;
    }
    if (m_stream != nullptr) {
        writeTakes();
        m_stream->close(std::chrono::milliseconds(0));
        m_stream.reset();
        setFeeding(false);
        m_state.reset();
        m_running = false;
    }
    m_mainSample = nullptr;
}

void WorkerRecorderMultiChannelObject::writeTakes() {
    const Singleton& shared = Singleton::instance();
    for (Group* group : groups()) {
        if (group->sample == nullptr || group->take == nullptr) {
            continue;
        }
        // A device that was silent leaves no file that holds nothing.
        if (shared.mode()->modeRecorder() && group->take->samples().size() > 0) {
            const QDir folder(shared.pathFile()->pathDirectoryRecording());
            const QString path = folder.filePath(group->sample->fileName());
            if (!group->take->write(path, *group->sample)) {
                Q_EMIT s_NotWritten(path);
            }
        }
        delete std::exchange(group->take, nullptr);
    }
}

void WorkerRecorderMultiChannelObject::init() {
    m_mainSample = nullptr;
    for (Group* group : groups()) {
        group->sample = nullptr;
        group->take = nullptr;
    }
}

void WorkerRecorderMultiChannelObject::housekeeping() {
    for (Group* group : groups()) {
        if (group->take != nullptr) {
            group->take->prepare();
        }
        if (group->decoder != nullptr && group->decoder->isFed()) {
            group->decoder->prepare();
        }
    }
    m_notifier->deliver();
    if (const std::uint64_t lost = overflows(); lost != m_overflowsTold) {
        m_overflowsTold = lost;
        Q_EMIT s_Overflow(lost);
    }
    const std::uint64_t buffers = m_state->buffers.load(std::memory_order_relaxed);
    if (buffers != m_buffersSeen) {
        m_buffersSeen = buffers;
        m_lastBufferMs = steadyMs();
        if (m_silent) {
            tellSilent(false);
        }
    } else if (steadyMs() - m_lastBufferMs > lostAfter) {
        if (buffers > 0 && isRead()) {
            m_housekeeping.stop();
            Q_EMIT s_StreamLost();
        } else if (!m_silent) {
            tellSilent(true);
        }
    }
}

void WorkerRecorderMultiChannelObject::timecodeInitialise() {
    m_deckA.decoder->initialise();
    m_deckB.decoder->initialise();
}

void WorkerRecorderMultiChannelObject::timecodePrepare() {
    m_deckA.decoder->prepareTimecode();
    m_deckB.decoder->prepareTimecode();
}

bool WorkerRecorderMultiChannelObject::restart(Group& group, InputGroup* target) {
    if (target != nullptr && group.decoder->isFed()) {
        if (Singleton::instance().time()->observedFrameCounter(group.name) == 0.0) {
            // As far as the GUI has seen, no frame has come: the first buffer restarts the deck by itself,
            // and may just have done so.
            return false;
        }
        // The curve is emptied by the callback, together with the restart.
        target->restartRequested.store(true, std::memory_order_release);
        return false;
    }
    if (group.decoder->isDeckLive()) {
        return false;
    }
    group.decoder->updateBPM();
    return true;
}

void WorkerRecorderMultiChannelObject::timecodeUpdateBPM_DeckA() {
    if (restart(m_deckA, m_state ? &m_state->deckA : nullptr)) {
        Q_EMIT s_UpdateBPM_DeckA();
    }
}

void WorkerRecorderMultiChannelObject::timecodeUpdateBPM_DeckB() {
    if (restart(m_deckB, m_state ? &m_state->deckB : nullptr)) {
        Q_EMIT s_UpdateBPM_DeckB();
    }
}
