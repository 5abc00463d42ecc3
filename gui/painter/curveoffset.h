#pragma once

#include "curve/curvepointstore.h"

#include <cmath>
#include <cstdint>

/// `difference` truncated into an unsigned 64-bit number. A negative one wraps to just below 2 to the 64th.
inline std::uint64_t wrappedOffset(double difference) {
    constexpr double limit = 9223372036854775808.0; // 2 to the 63rd
    const double whole = std::trunc(difference);
    if (!(whole > -limit && whole < limit)) {
        return 0; // no hand moves a record this far
    }
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(whole));
}

/// How far the first point of `main` lies above the first one of `secondary`; 0 if either has none.
inline double firstPositionDifference(const CurvePointStore::View& main,
                                      const CurvePointStore::View& secondary) {
    return main.empty() || secondary.empty() ? 0.0 : main.front().position - secondary.front().position;
}

/// What the normal display adds to the positions of a reference, so that it starts where the live curve does.
/// Only upwards: a reference that starts above the live curve leaves the plot.
inline double referenceOffset(const CurvePointStore::View& main, const CurvePointStore::View& secondary) {
    return static_cast<double>(wrappedOffset(firstPositionDifference(main, secondary)));
}
