#pragma once

#include <cmath>

/// `rawAngle` degrees reduced to 0 (inclusive) to 360 (exclusive). Realtime-safe.
inline double reducedAngle(double rawAngle) {
    const double angle = std::fmod(rawAngle, 360.0);
    const double positive = angle < 0.0 ? angle + 360.0 : angle;
    return positive < 360.0 ? positive : 0.0; // the smallest negative angles round up to a full turn
}
