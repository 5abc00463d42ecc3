#include "trackingfilter.h"

#include "external/code/pitchgains.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// 0.7, 0.71640625 ... 4.88359375. A quotient of whole numbers is rounded once, as a written decimal is.
constexpr std::array<double, TrackingFilter::bands> makeBands() {
    std::array<double, TrackingFilter::bands> table{};
    for (int i = 0; i < TrackingFilter::bands; ++i) {
        table[static_cast<std::size_t>(i)] = (70000000.0 + 1640625.0 * i) / 100000000.0;
    }
    return table;
}

constexpr std::array<double, TrackingFilter::bands> bandTable = makeBands();
static_assert(bandTable[0] == 0.7 && bandTable[1] == 0.71640625 && bandTable[128] == 2.8 &&
              bandTable[255] == 4.88359375);

constexpr double hysteresis = 0.2;
constexpr double gainSlope = 0.7;

} // namespace

int TrackingFilter::bandIndex(double v) {
    const double index = std::fabs(v) * 256.0 / 10.0;
    return index < bands - 1 ? static_cast<int>(index) : bands - 1;
}

double TrackingFilter::band(int index) { return bandTable[static_cast<std::size_t>(index)]; }

TrackingFilter::Estimate TrackingFilter::step(double v, double x, double dt) {
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

void TrackingFilter::forgetSpeed() {
    predictedSpeed = 0.0;
    acceleration = 0.0;
}

void TrackingFilter::clear() {
    forgetSpeed();
    lastSpeed = 0.0;
    fastTracking = false;
}
