#pragma once
// A sample for the areas of a deck.

#include "module/wavedata.h"

#include <cstdint>
#include <memory>

/// Loud in the first half of the turn, silent in the second.
inline std::shared_ptr<const WaveData> halfLoudWave() {
    auto wave = std::make_shared<WaveData>(48000, 1, 72000);
    for (std::size_t i = 0; i < 72000; ++i) {
        wave->samples(0)[i] = i < 36000 ? std::int16_t(i % 2 == 0 ? 1000 : -1000) : std::int16_t(0);
    }
    wave->setPeaks(-1000, 1000);
    return wave;
}
