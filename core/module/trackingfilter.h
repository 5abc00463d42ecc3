#pragma once

/// The second filter over the timecoder's speed: it predicts with a smoothed, clamped acceleration and trusts
/// the prediction less the further it has left a band that widens with the speed. Realtime-safe.
struct TrackingFilter {
    static constexpr double maxAcceleration = 450.0; ///< speed units a second
    static constexpr int bands = 256;

    double trackedX = 0.0;       ///< position estimate, seconds of record
    double predictedSpeed = 0.0;
    double acceleration = 0.0;   ///< smoothed, clamped
    double lastSpeed = 0.0;      ///< the pitch filter's speed one frame ago
    bool fastTracking = false;   ///< hysteresis state; it doesn't enter the gains

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
};
