#pragma once
// Whether a recorded take holds what the deck sent.

#include "module/wavedata.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

/// By how many steps a recorded sample may differ from the one that the deck sent. On its way it becomes a
/// float of v / 32768 and comes back as trunc(v / 32768 * 32767 + d): the scale takes off less than a step,
/// the library's triangular dither d lies within a step of 0, and the truncation takes off less than one.
inline constexpr int stepsOnTheWay = 3;

/// How a take follows its source.
struct TakeCheck {
    bool found = false;      ///< the take's start was found in the source
    std::size_t start = 0;   ///< frame of the source that the take begins with
    std::size_t frames = 0;  ///< frames that follow the source
    int gaps = 0;            ///< places where frames are lost or repeated
    std::size_t skipped = 0; ///< frames of the source that are lost in these
    std::size_t repeated =
        0;                 ///< frames of the take that are there once more, or belong to no place, in these
    std::size_t wrong = 0; ///< single frames that differ by more, with the source going on behind them
    int largestStep = 0;   ///< largest difference of a sample that counts as equal
    bool lost = false;     ///< the take departs from the source for good
};

/// Follows `take` through `source`, both stereo. Samples are equal within `tolerance` steps. A gap is what
/// loses frames of the source or repeats some: behind up to two periods of `period` frames that belong to no
/// place the take goes on in the source, up to 64 periods ahead.
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
        if (equalAt(t + 1, at + 1, window)) {
            ++check.wrong;
            ++t;
            ++at;
            continue;
        }
        bool resumed = false;
        for (std::size_t skipped = 0; skipped <= 64 * period && !resumed; ++skipped) {
            for (std::size_t repeated = 0; repeated <= 2 * period && !resumed; repeated += 64) {
                if (skipped + repeated > 0 && equalAt(t + repeated, at + skipped, window)) {
                    resumed = true;
                    ++check.gaps;
                    check.skipped += skipped;
                    check.repeated += repeated;
                    t += repeated;
                    at += skipped;
                }
            }
        }
        if (!resumed) {
            check.lost = t + window <= take.length();
            return check;
        }
    }
    return check;
}
