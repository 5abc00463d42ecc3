#pragma once

#include "curvepointstore.h"

/// Number of points before the first one at or after `time`: a binary search on the rising times.
inline std::size_t pointsBefore(const CurvePointStore::View& points, std::int32_t time) {
    const double wanted = double(time);
    std::size_t first = 0;
    std::size_t count = points.size();
    while (count > 0) {
        const std::size_t half = count / 2;
        if (wanted > points[first + half].time) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}
