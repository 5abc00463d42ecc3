#pragma once
// Curves for the tests of the graph.

#include "curve/angle.h"
#include "curve/curvepointstore.h"

#include <cmath>

/// A point that sounds and moves.
inline CurvePoint curvePoint(double time, double position, bool soundOn = true, double pitch = 1.0) {
    CurvePoint point;
    point.time = time;
    point.position = position;
    point.pitch = pitch;
    point.soundOn = soundOn ? 1 : 0;
    return point;
}

/// Turns the record of that point to an angle, degrees.
inline void turn(CurvePoint& point, double rawAngle) {
    point.rawAngle = rawAngle;
    point.angle = reducedAngle(rawAngle);
}

/// Adds `count` points `step` frames apart, the first one at `step`. `change` may alter each: it gets the
/// number of the point and the point.
template <typename Change> void addPoints(CurvePointStore& store, int count, double step, Change change) {
    store.reserve();
    const auto before = static_cast<int>(store.size());
    for (int i = before; i < before + count; ++i) {
        CurvePoint point = curvePoint((i + 1) * step, 0.0);
        change(i, point);
        if (i % 4096 == 0) {
            store.prepare();
        }
        store.append(point);
    }
}

inline void addPoints(CurvePointStore& store, int count, double step) {
    addPoints(store, count, step, [](int, CurvePoint&) {});
}

/// Adds a point for each angle, degrees.
template <typename Angles> void addAngles(CurvePointStore& store, double step, const Angles& angles) {
    const auto before = static_cast<int>(store.size());
    addPoints(store, static_cast<int>(angles.size()), step,
              [&](int i, CurvePoint& point) { turn(point, angles.begin()[i - before]); });
}
