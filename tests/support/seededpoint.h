#pragma once
// Points whose every word can be told from a seed and a number, so that a torn or misplaced one shows.

#include "curve/curvepoint.h"
#include "motion.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Point `number` of grid `grid`: `time` is the number and `timecode` the grid, the rest follows from both.
inline CurvePoint seededPoint(std::int32_t grid, std::uint32_t number) {
    const auto word = [&](std::uint64_t field) {
        // Any number but infinity or no number at all.
        const std::uint64_t bits = scatter(static_cast<std::uint64_t>(grid), number * 8ULL + field);
        return std::bit_cast<double>(bits & ~(std::uint64_t{1} << 62));
    };
    CurvePoint point;
    point.position = word(0);
    point.angle = word(1);
    point.rawAngle = word(2);
    point.pitch = word(3);
    point.time = number;
    point.timecode = grid;
    point.direction = static_cast<std::int32_t>(scatter(static_cast<std::uint64_t>(grid), number * 8ULL + 4));
    point.soundOn = static_cast<std::uint8_t>(number & 1U);
    return point;
}

/// Whether a point is what its own grid and number say.
inline bool isWhole(const CurvePoint& point) {
    const CurvePoint wanted = seededPoint(point.timecode, static_cast<std::uint32_t>(point.time));
    return std::memcmp(&wanted, &point, offsetof(CurvePoint, unused)) == 0;
}
