// The slots of the decoder. What runs on the callback is in receivetimecodedvsobject_rt.cpp.
#include "receivetimecodedvsobject.h"

#include "curve/curvepointring.h"
#include "curve/curvepointstore.h"
#include "model/enumtext.h"
#include "model/modeltimecode.h"
#include "state/performance.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "state/time.h"
#include "state/timecode.h"
#include "state/vinyl.h"

#include <QTimer>

#include <cassert>

namespace {
constexpr double degreesOfTurn = 360.0;
constexpr double turnsPerSecond = 0.5555555555555556; // 33 1/3 rpm
} // namespace

ReceiveTimecodeDVSObject::ReceiveTimecodeDVSObject(ModelGraph::EnumGraph name, CurvePointRing& ring,
                                                   CurvePointStore& points, QObject* parent)
    : QObject(parent)
    , m_performance(*Singleton::instance().performance())
    , m_setting(*Singleton::instance().setting())
    , m_definitions(createTimecodeDefinitions()) {
    const Singleton& shared = Singleton::instance();
    m_state.name = name;
    m_state.mode = shared.mode();
    m_state.time = shared.time();
    m_state.timecode = shared.timecode();
    m_state.vinyl = shared.vinyl();
    m_state.midi = shared.midi();
    m_state.ring = &ring;
    m_state.points = &points;
    points.reserve();

    auto* status = new QTimer(this);
    connect(status, &QTimer::timeout, this, [this] {
        if (m_fed) {
            Q_EMIT s_ringBufferLatencyMs(m_state.latencyMs.load(std::memory_order_relaxed),
                                         m_state.ringMaxFill.load(std::memory_order_relaxed),
                                         CurvePointRing::capacity);
        }
    });
    status->start(latencyInterval);
}

void ReceiveTimecodeDVSObject::setFed(bool fed) {
    if (m_fed != fed) {
        m_fed = fed;
        m_state.points->setLive(fed);
    }
}

bool ReceiveTimecodeDVSObject::isDeckLive() const {
    return m_state.points->isLive();
}

void ReceiveTimecodeDVSObject::prepare() {
    m_state.points->prepare();
}

void ReceiveTimecodeDVSObject::prepareTimecode() {
    findTimecodeDefinition(m_definitions, m_setting.timecode().toStdString());
}

void ReceiveTimecodeDVSObject::initialise() {
    clearTracking();
    const QString timecode = m_setting.timecode();
    const bool doubleRate = timecode == enumText(ModelTimecode::traktor_sideA) ||
                            timecode == enumText(ModelTimecode::traktor_sideB);
    m_state.codeScale = doubleRate ? 2.0 : 1.0;
    m_state.vinyl->setDeltaPosition(m_state.name, m_state.name == ModelGraph::INPUT_DECKB
                                                      ? m_setting.vinylDeltaPositionB()
                                                      : m_setting.vinylDeltaPositionA());
    m_def = findTimecodeDefinition(m_definitions, timecode.toStdString());
    assert(!m_def.name().empty() && "!m_def.name().isEmpty()");
    const QSample& sample = *m_performance.sample(m_state.name);
    timecoderInit(m_state.timecoder, &m_def, static_cast<unsigned>(sample.sampleRate()), false);
    m_state.degreesPerCode =
        m_def.resolution() < 1 ? 0.0 : 1.0 / m_def.resolution() * degreesOfTurn * turnsPerSecond;
    m_state.timecode->modeTimecode_off(m_state.name);
    m_state.outputRate = m_performance.sampleOutput()->sampleRate();
    m_state.curveStep = m_performance.outputBuffer() * sample.sampleRate() / m_state.outputRate;
}

void ReceiveTimecodeDVSObject::updateBPM() {
    restartRT();
}
