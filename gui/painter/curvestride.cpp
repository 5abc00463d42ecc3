#include "curvestride.h"

#include <algorithm>
#include <bit>
#include <cmath>

std::optional<CurveStretch> curveStretch(const CurvePointStore::View& points, std::size_t firstVisible,
                                         std::size_t lastVisible) {
    if (points.empty()) {
        return std::nullopt;
    }
    const std::size_t to = std::min(lastVisible, points.size() - 1);
    return firstVisible < to ? std::optional(CurveStretch{firstVisible, to}) : std::nullopt;
}

std::size_t curveStride(CurveStretch stretch, double pixels) {
    const double span = pixels * 0.96;
    const double density = span > 1.0 ? 0.5 * span : 0.5; // also for what is no number
    const double stride = std::trunc(double(stretch.to - stretch.first) / density);
    return stride >= 1.0 ? static_cast<std::size_t>(stride) : 1;
}

std::size_t curveStride(const CurvePointStore::View& points, CurveStretch stretch, const GraphScale& scale) {
    return curveStride(stretch,
                       scale.column(points[stretch.to].time) - scale.column(points[stretch.first].time));
}

CurveWalk curveWalk(CurveStretch stretch, std::size_t stride) {
    if (stride < 2) {
        return {stretch.first, 1};
    }
    const std::size_t power = std::bit_ceil(stride);
    const std::size_t below = stretch.first / power * power;
    return {below < stretch.first ? below + power : below, power};
}
