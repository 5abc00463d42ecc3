#pragma once

#include "external/code/pitchgains.h"

#include <algorithm>
#include <array>
#include <cmath>

/// The second filter over the timecoder's speed: it predicts with a smoothed, clamped acceleration and trusts
/// the prediction less the further it has left a band that widens with the speed. Realtime-safe. It runs once
/// a frame and stands here so that it becomes part of the frame's loop.
struct TrackingFilter {
    static constexpr double maxAcceleration = 450.0; ///< speed units a second
    static constexpr double hysteresis = 0.2;
    static constexpr double gainSlope = 0.7;
    static constexpr int bands = 256;

    double trackedX = 0.0; ///< position estimate, seconds of record
    double predictedSpeed = 0.0;
    double acceleration = 0.0; ///< smoothed, clamped
    double lastSpeed = 0.0;    ///< the pitch filter's speed one frame ago
    bool fastTracking = false; ///< hysteresis state; it doesn't enter the gains

    /// What one frame gives.
    struct Estimate {
        double x;
        double v;
    };

    /// One frame. `v` and `x` are the pitch filter's speed and position error, `dt` the seconds a frame,
    /// above 0.
    Estimate step(double v, double x, double dt);
    /// The clear of a restart: everything but trackedX.
    void clear();
    /// Speed and acceleration to 0.
    void forgetSpeed();

    /// Row of the band table for a speed: |v| * 25.6, truncated, at most 255.
    static int bandIndex(double v);
    /// The band's half-width before the factor 2 * dt + 1: 0.7 + index * 4.2 / 256.
    static double band(int index);

    using Bands = std::array<double, bands>;
    static const Bands bandTable;

private:
    // 0.7, 0.71640625 ... 4.88359375. A quotient of whole numbers is rounded once, as a written decimal is.
    static constexpr Bands makeBands() {
        Bands table{};
        for (int i = 0; i < bands; ++i) {
            table[static_cast<std::size_t>(i)] = (70000000.0 + 1640625.0 * i) / 100000000.0;
        }
        return table;
    }
};

inline constexpr TrackingFilter::Bands TrackingFilter::bandTable = TrackingFilter::makeBands();

inline int TrackingFilter::bandIndex(double v) {
    const double index = std::fabs(v) * 256.0 / 10.0;
    return index < bands - 1 ? static_cast<int>(index) : bands - 1;
}

inline double TrackingFilter::band(int index) {
    return bandTable[static_cast<std::size_t>(index)];
}

inline TrackingFilter::Estimate TrackingFilter::step(double v, double x, double dt) {
    const double a = std::clamp((v - lastSpeed) * (1.0 / dt) * 0.35 + 0.65 * acceleration, -maxAcceleration,
                                maxAcceleration);
    acceleration = a;
    lastSpeed = v;
    predictedSpeed = v + dt * a;
    const double predicted = (predictedSpeed * dt + x) + dt * dt * (a * 0.5);
    const double r = trackedX - predicted;
    const double limit = (2 * dt + 1.0) * band(bandIndex(v));
    const double size = std::fabs(r);
    fastTracking = size > limit || (fastTracking && size > limit - hysteresis);
    const double e = (size - limit) * gainSlope;
    double gx = pitchAlpha;
    double gv = pitchBeta;
    if (e > 1.0) {
        gx = 1.0;
        gv = 1.0;
    } else if (!(e < 0)) {
        gx = e * (1.0 - pitchAlpha) + pitchAlpha;
        gv = e * (1.0 - pitchBeta) + pitchBeta;
    }
    trackedX = predicted + gx * r;
    return {trackedX, predictedSpeed + (1.0 / dt) * (gv * r)};
}
