#pragma once
// Curves for the tests of the graph.

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
