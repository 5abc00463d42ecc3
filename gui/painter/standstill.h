#pragma once

#include "curve/curvepointstore.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

/// Speeds up to this count as standing still.
inline constexpr double standstillPitch = 0.01;

/// How many points make up 0.2 s of a deck that publishes one point a buffer. Without a buffer no count is
/// ever reached.
inline std::uint64_t stillWindow(double sampleRate, double inputBuffer) {
    const double points = std::trunc(0.2 * sampleRate / inputBuffer);
    return points >= 0.0 && points < 1e15 ? static_cast<std::uint64_t>(points)
                                          : std::numeric_limits<std::uint64_t>::max();
}

/// Whether the record has stood still for the last `window` points. A curve that isn't longer than that has
/// not shown it yet.
inline bool standsStill(const CurvePointStore::View& points, std::uint64_t window) {
    const std::size_t size = points.size();
    if (size <= window) {
        return false;
    }
    for (std::size_t i = size - static_cast<std::size_t>(window); i < size; ++i) {
        if (!(std::abs(points[i].pitch) <= standstillPitch)) {
            return false;
        }
    }
    return true;
}
