#pragma once
// What a driven session runs with, and the frames that its stream brings.

#include "syntheticrecord.h"

#include <QString>

#include <cassert>
#include <vector>

/// What a session is driven with. A pair that lies outside the frame is allowed.
struct DrivenSetup {
    QString timecode = QStringLiteral("serato_sideA_FullDVS");
    double rate = 48000.0; ///< Hz, of the decks
    double outputRate = 48000.0;
    double outputBuffer = 64.0; ///< frames; with equal rates the frames between two points
    std::size_t channels = 6;
    std::size_t pairDeckA = 0;
    std::size_t pairDeckB = 1;
    std::size_t pairMaster = 2;
    bool recording = true;
};

/// The master's frame `i`: any of them can be told from its number.
inline StereoFrame masterFrame(std::uint64_t i) {
    const std::uint64_t mixed = scatter(7, i);
    return {static_cast<std::int16_t>(mixed), static_cast<std::int16_t>(mixed >> 16)};
}

/// The row of the timecode that `name` names.
inline TimecodeDefinition definitionNamed(const QString& name) {
    for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
        if (name == QString::fromStdString(def.name())) {
            return def;
        }
    }
    assert(!"a known timecode");
    return {};
}

/// Frames `first` to `first + frames` of all channels of the stream.
inline std::vector<std::int16_t> streamFrames(const DrivenSetup& setup, const SyntheticRecord& deckA,
                                              const SyntheticRecord& deckB, std::uint64_t first,
                                              std::size_t frames) {
    std::vector<std::int16_t> all(frames * setup.channels);
    for (std::size_t i = 0; i < frames; ++i) {
        const auto put = [&](std::size_t pair, StereoFrame frame) {
            if (pair * 2 + 1 < setup.channels) {
                all[i * setup.channels + pair * 2] = frame.left;
                all[i * setup.channels + pair * 2 + 1] = frame.right;
            }
        };
        put(setup.pairMaster, masterFrame(first + i));
        put(setup.pairDeckA, deckA.frame(first + i));
        put(setup.pairDeckB, deckB.frame(first + i));
    }
    return all;
}
