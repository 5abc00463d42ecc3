// The road of a frame through one deck's decoder: what runs on the input callback, and nothing else.
// No allocation, no lock, no system call, no signal; nothing that grows with the length of the take.
#include "receivetimecodedvsobject.h"

#include "audionotifier.h"
#include "curve/angle.h"
#include "curve/curvepointring.h"
#include "curve/curvepointstore.h"
#include "deckaudible.h"
#include "state/midi.h"
#include "state/mode.h"
#include "state/time.h"
#include "state/timecode.h"
#include "state/vinyl.h"

#include <cmath>

namespace {

constexpr double unsteadyStep = 25.0; // position units between two points: speed is forgotten
constexpr double lostStep = 100.0;    // the tracked position is given up as well

std::int32_t wholeFrame(double frames) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(frames)));
}

} // namespace

void ReceiveTimecodeDVSObject::executeRT(std::int16_t* channels[Constant::Audio::STEREO],
                                         AudioNotifier& notifier) {
    DeckState& s = m_state;
    const double dt = s.timecoder.dt;
    if (dt > 0) {
        timecoderSubmit(s.timecoder, channels[0], 1);
        int code = timecoderGetPosition(s.timecoder, nullptr);
        if (code != -1) {
            const CodeGate::Result gated = s.gate.pass(code);
            code = gated.code;
            if (gated.newAnchor) {
                const CurvePointStore::View points = s.points->view();
                if (!points.empty() && points.front().timecode == -1) {
                    notifier.request();
                }
                s.travelled = 0.0;
                s.filter.trackedX = s.timecoder.pitch->x;
                s.filter.forgetSpeed();
            }
            s.timecode->modeTimecode_on(s.name);
        }
        s.forwards = s.timecoder.forwards;
        const TrackingFilter::Estimate estimate =
            s.filter.step(s.timecoder.pitch->v, s.timecoder.pitch->x, dt);
        // The zero line's smoothing factor, not dt: the scale of a position unit rests on it.
        s.travelled = s.travelled + (s.timecoder.zeroAlpha * estimate.v + estimate.x);
        if (wholeFrame(s.time->frameCounter(s.name)) == wholeFrame(s.nextPointTime)) {
            publishPoint(code, estimate.v);
        }
    }
    s.time->advanceFrame(s.name);
}

void ReceiveTimecodeDVSObject::publishPoint(int code, double pitch) {
    DeckState& s = m_state;
    const double base = s.gate.lastCode == -1 ? 0.0 : double(s.gate.lastCode);
    const double position = s.travelled * s.codeScale + base;
    double rawAngle = s.degreesPerCode * position;
    double delta = s.timecode->positionDelta(s.name);
    if (s.gate.jumpForward) {
        delta = delta - (position - s.lastPosition);
        s.timecode->setPositionDelta(s.name, delta);
        s.gate.jumpForward = false;
    }
    if (s.gate.jumpBackward) {
        delta = delta + (s.lastPosition - position);
        s.timecode->setPositionDelta(s.name, delta);
        s.gate.jumpBackward = false;
    }
    const double step = std::fabs(position - s.lastPosition);
    if (step > unsteadyStep) {
        s.filter.forgetSpeed();
        if (step > lostStep) {
            s.filter.trackedX = s.timecoder.pitch->x;
        }
    }
    if (s.timecode->isTimecodeOn(s.name)) {
        rawAngle = rawAngle - s.vinyl->deltaPosition(s.name);
    }
    const double angle = reducedAngle(rawAngle);
    s.vinyl->setAngle(s.name, angle);

    CurvePoint point;
    point.position = delta + position;
    point.angle = angle;
    point.rawAngle = rawAngle;
    point.pitch = pitch;
    point.time = s.time->frameCounter(s.name);
    point.timecode = code;
    point.direction = s.forwards ? 0 : 1;
    point.soundOn =
        deckAudible(s.midi->crossFader(), s.mode->modeMix(), s.mode->modeReverse(), s.name) ? 1 : 0;
    s.ring->push(point);
    s.points->append(point);

    s.latencyMs.store(double(s.ring->fill()) * 1000.0 / s.outputRate, std::memory_order_relaxed);
    s.ringMaxFill.store(s.ring->maxFill(), std::memory_order_relaxed);
    s.lastPosition = position;
    s.nextPointTime = s.nextPointTime + s.curveStep;
}

void ReceiveTimecodeDVSObject::clearTracking() {
    DeckState& s = m_state;
    s.ring->reset();
    s.filter.clear();
    s.gate.clear();
    s.travelled = 0.0;
    s.lastPosition = 0.0;
    s.forwards = true;
}

void ReceiveTimecodeDVSObject::restartRT() {
    DeckState& s = m_state;
    clearTracking();
    s.time->setStartNow(s.name);
    s.time->clearCursor(s.name);
    s.time->clearFrameCounter(s.name);
    s.timecode->resetPositionDelta(s.name);
    s.nextPointTime = 0.0;
    if (s.points->isLive()) {
        s.points->restart();
    }
}
