#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

/// `value` truncated towards zero, held within the 32-bit range; 0 for what is no number.
inline std::int32_t truncated(double value) {
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    if (std::isnan(value)) {
        return 0;
    }
    if (value <= lowest) {
        return std::numeric_limits<std::int32_t>::min();
    }
    if (value >= highest) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return static_cast<std::int32_t>(value);
}
