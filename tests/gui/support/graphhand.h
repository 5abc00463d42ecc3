#pragma once
// One hand's scratch, for the pictures of the graph: slow and fast strokes across the zero of the record both
// ways, a rest, steady play at the end, and cuts of the fader all along. Nothing but sums and products, so
// that it is the same wherever it is built.

#include "gui/support/curves.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace GraphHand {

constexpr double step = 64.0;        ///< frames between two points
constexpr double turnUnits = 1800.0; ///< of the position
constexpr double turnFrames = 86400.0;

/// The record is at `turns` at the end of the stroke.
struct Stroke {
    double end; ///< frame
    double turns;
    bool steady = false; ///< of one speed; else it starts and ends at rest
};
constexpr double startTurns = 0.55;
constexpr std::array strokes{Stroke{44000, 1.25},         // slowly forward across the zero
                             Stroke{56000, 0.80},         // back across it
                             Stroke{68000, 0.80, true},   // rest
                             Stroke{73000, 1.12},         // fast, across the zero each time
                             Stroke{78000, 0.92},         //
                             Stroke{84000, 1.30},         //
                             Stroke{90000, 1.05},         // fast, without
                             Stroke{96000, 1.40},         //
                             Stroke{106000, 1.15},        //
                             Stroke{170800, 1.90, true}}; // plays

/// From one frame to another the fader is closed.
struct Closed {
    double from;
    double to;
};
constexpr std::array closed{Closed{6000, 14000},    Closed{22000, 28000},  Closed{44000, 50000},
                            Closed{60000, 66000},   Closed{75500, 77500},  Closed{87000, 89000},
                            Closed{112000, 116000}, Closed{126000, 134000}};

inline double turnsAt(double time) {
    double from = 0.0;
    double before = startTurns;
    for (const Stroke& stroke : strokes) {
        if (time < stroke.end) {
            const double part = std::max(0.0, (time - from) / (stroke.end - from));
            const double way = stroke.steady ? part : part * part * (3.0 - 2.0 * part);
            return before + (stroke.turns - before) * way;
        }
        from = stroke.end;
        before = stroke.turns;
    }
    return before;
}

inline bool soundsAt(double time) {
    return std::none_of(closed.begin(), closed.end(),
                        [time](const Closed& c) { return time >= c.from && time < c.to; });
}

/// Puts the hand into the store up to frame `end`, `delay` frames late and `below` units lower.
inline void play(CurvePointStore& store, double end, double delay = 0.0, double below = 0.0) {
    addPoints(store, int((end - delay) / step), step, [=](int i, CurvePoint& point) {
        const double time = (i + 1) * step;
        point.time = time + delay;
        point.position = std::trunc(turnsAt(time) * turnUnits) - below;
        turn(point, point.position * 360.0 / turnUnits);
        point.pitch = (turnsAt(time) - turnsAt(time - step)) * turnFrames / step;
        point.direction = point.pitch < 0.0 ? 1 : 0;
        point.soundOn = soundsAt(time) ? 1 : 0;
    });
}

} // namespace GraphHand
