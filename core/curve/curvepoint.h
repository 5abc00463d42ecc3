#pragma once

#include <cstdint>
#include <type_traits>

/// What a hand did to one deck at one moment. A plain value of one cache line; zero-filled before it is set.
struct alignas(64) CurvePoint {
    double position = 0.0;      ///< timecode units, dead-reckoned; what the normal display plots
    double angle = 0.0;         ///< rawAngle reduced to 0 (inclusive) to 360 (exclusive), degrees
    double rawAngle = 0.0;      ///< degrees, unreduced
    double pitch = 0.0;         ///< speed, signed; up to 0.01 in size counts as standing still
    double time = 0.0;          ///< the deck's frame counter: a whole number, strictly rising in a curve
    std::int32_t timecode = 0;  ///< the code after the code gate; -1 in every live point
    std::int32_t direction = 0; ///< 0 forward, 1 backward; 2, from a file, undefined
    std::uint8_t soundOn = 0;   ///< 1 while the crossfader lets the deck be heard
    std::uint8_t unused[15] = {};
};

static_assert(sizeof(CurvePoint) == 64 && alignof(CurvePoint) == 64);
static_assert(std::is_trivially_copyable_v<CurvePoint>);
