#pragma once
// Which points of a curve are drawn: a line for about every second pixel, whatever the length of the take.

#include "graphscale.h"

#include "curve/curvepointstore.h"

#include <cstddef>
#include <optional>

/// The points of a curve that a drawing walks: from `first` to `to`, both included; two of them at least.
struct CurveStretch {
    std::size_t first = 0;
    std::size_t to = 0;
};

/// None for a curve without points, with less than two points to see, or whose visible points are gone: a
/// restart since they were searched may have left a single one.
std::optional<CurveStretch> curveStretch(const CurvePointStore::View& points, std::size_t firstVisible,
                                         std::size_t lastVisible);

/// How many points lie between two that are drawn; at least 1.
std::size_t curveStride(const CurvePointStore::View& points, CurveStretch stretch, const GraphScale& scale);

/// The same from the pixels that the stretch covers.
std::size_t curveStride(CurveStretch stretch, double pixels);

/// Where the walk over the chosen points starts and by how much it goes on.
struct CurveWalk {
    std::size_t start = 0;
    std::size_t stride = 1;
};

/// A stride of 2 or more becomes a power of two and the start a multiple of it, so that the same points stay
/// chosen while the window moves.
CurveWalk curveWalk(CurveStretch stretch, std::size_t stride);
