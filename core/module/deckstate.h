#pragma once

#include "codegate.h"
#include "external/code/timecoder.h"
#include "model/modelgraph.h"
#include "trackingfilter.h"

#include <atomic>
#include <cstddef>

class CurvePointRing;
class CurvePointStore;
class Midi;
class Mode;
class Time;
class Timecode;
class Vinyl;

/// All that one deck's decoder touches on an input callback. The decoder's slots prepare it while no frames
/// are fed.
struct DeckState {
    ModelGraph::EnumGraph name;
    Mode* mode;
    Time* time;
    Timecode* timecode;
    Vinyl* vinyl;
    Midi* midi;
    CurvePointRing* ring;
    CurvePointStore* points;

    Timecoder timecoder;
    TrackingFilter filter;
    CodeGate gate;
    bool forwards = true;       ///< the timecoder's direction
    double travelled = 0.0;     ///< integrated distance, position units
    double lastPosition = 0.0;  ///< of the last published point, without the position delta
    double nextPointTime = 0.0; ///< frame of the next point
    double curveStep = 0.0;     ///< frames between two points; may be fractional
    double codeScale = 1.0;     ///< position units a unit of distance: 2.0 at 2000 cycles a second
    double degreesPerCode = 0.0;
    double outputRate = 0.0; ///< Hz, of the output device

    // What the status display reads.
    std::atomic<double> latencyMs{0.0};
    std::atomic<std::size_t> ringMaxFill{0};
};
