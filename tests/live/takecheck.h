#pragma once
// Whether a recorded take holds what the deck sent.

#include "module/wavedata.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

/// How a take follows its source.
struct TakeCheck {
    bool found = false;      ///< the take's start was found in the source
    std::size_t start = 0;   ///< frame of the source that the take begins with
    std::size_t frames = 0;  ///< frames that follow the source
    int gaps = 0;            ///< places where the source goes on further ahead
    std::size_t skipped = 0; ///< frames lost in these
    std::size_t mended = 0;  ///< frames at such places that belong to no place of the source
    int largestStep = 0;     ///< largest difference of a sample that counts as equal
    bool repeated = false;   ///< the take goes back in the source, or departs from it for good
};

/// Follows `take` through `source`, both stereo. Samples are equal within `tolerance` steps. After a
/// departure the take has to be in the source again, further ahead, within a few periods of `period` frames.
inline TakeCheck followTake(const WaveData& take, const WaveData& source, std::size_t period, int tolerance) {
    TakeCheck check;
    const auto equalAt = [&](std::size_t t, std::size_t s, std::size_t count) {
        if (t + count > take.length() || s + count > source.length()) {
            return false;
        }
        for (std::size_t i = 0; i < count; ++i) {
            for (std::size_t channel = 0; channel < 2; ++channel) {
                if (std::abs(take.samples(channel)[t + i] - source.samples(channel)[s + i]) > tolerance) {
                    return false;
                }
            }
        }
        return true;
    };
    constexpr std::size_t window = 48;
    std::size_t at = 0;
    while (at + window <= source.length() && !equalAt(0, at, window)) {
        ++at;
    }
    if (at + window > source.length()) {
        return check;
    }
    check.found = true;
    check.start = at;
    std::size_t t = 0;
    while (t < take.length()) {
        if (at < source.length() && equalAt(t, at, 1)) {
            for (std::size_t channel = 0; channel < 2; ++channel) {
                check.largestStep = std::max(
                    check.largestStep, std::abs(take.samples(channel)[t] - source.samples(channel)[at]));
            }
            ++check.frames;
            ++t;
            ++at;
            continue;
        }
        // A period was skipped or handed over twice by the server: where does the take go on?
        bool resumed = false;
        for (std::size_t lost = 0; lost <= 64 * period && !resumed; lost += 1) {
            for (std::size_t odd = 0; odd <= 2 * period && !resumed; odd += period) {
                if (lost + odd > 0 && equalAt(t + odd, at + lost, window)) {
                    resumed = true;
                    ++check.gaps;
                    check.skipped += lost;
                    check.mended += odd;
                    t += odd;
                    at += lost;
                }
            }
        }
        if (!resumed) {
            check.repeated = t + window <= take.length();
            return check;
        }
    }
    return check;
}
