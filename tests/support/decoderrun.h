#pragma once
// Plays a synthetic record to a decoder and keeps what the two say about each other.

#include "external/code/timecoder.h"
#include "syntheticrecord.h"

#include <cmath>
#include <map>
#include <string>

/// The row called `name` with its table, built once for the whole test program.
inline const TimecodeDefinition& builtRow(const std::string& name) {
    static TimecodeDefinitionList list = createTimecodeDefinitions();
    static std::map<std::string, TimecodeDefinition> built;
    const auto found = built.find(name);
    return found != built.end() ? found->second
                                : built.emplace(name, findTimecodeDefinition(list, name)).first->second;
}

/// The position that a decoder names right after reading the bit of the cycle at `truth`: forward this bit is
/// the newest of the register, backward the oldest.
inline int positionAfterBit(const TimecodeDefinition& def, const FrameTruth& truth, bool forwards) {
    const int cycle = static_cast<int>(std::floor(truth.position));
    return forwards ? cycle : cycle + def.bits() - 1;
}

/// What was seen from one frame on.
struct Sighting {
    std::uint64_t frames = 0;
    std::uint64_t crossings = 0;      ///< frames in which a channel crossed its zero line
    std::uint64_t wrongDirection = 0; ///< frames whose direction isn't the truth's, standstill aside
    std::uint64_t bits = 0;
    std::uint64_t positions = 0;      ///< bits after which a position was reported
    std::uint64_t wrongPositions = 0; ///< of those
    double meanSpeed = 0.0;           ///< of the pitch filter
    double meanTruth = 0.0;
    double largestSpeedError = 0.0;
};

/// A record on a deck with a decoder behind it.
class DecoderRun {
public:
    explicit DecoderRun(const TimecodeDefinition& def, SyntheticRecord record, bool phono = false)
        : m_def(def), m_record(std::move(record)) {
        timecoderInit(tc, &m_def, static_cast<unsigned>(m_record.sampleRate()), phono);
    }

    /// Plays one frame. True if it brought a bit.
    bool step() {
        const StereoFrame f = m_record.frame(m_next++);
        const std::int16_t pcm[2] = {f.left, f.right};
        timecoderSubmit(tc, pcm, 1);
        return tc.timecodeTicker == 1;
    }

    void skip(double seconds) {
        for (std::uint64_t n = frameCount(seconds); n > 0; --n) {
            step();
        }
    }

    Sighting watch(double seconds) {
        Sighting s;
        s.frames = frameCount(seconds);
        for (std::uint64_t n = 0; n < s.frames; ++n) {
            const bool bit = step();
            const FrameTruth t = truth();
            s.crossings += tc.primary->swapped || tc.secondary->swapped ? 1U : 0U;
            s.wrongDirection += t.speed != 0.0 && tc.forwards != (t.speed > 0.0) ? 1U : 0U;
            s.meanSpeed += tc.pitch->v / static_cast<double>(s.frames);
            s.meanTruth += t.speed / static_cast<double>(s.frames);
            s.largestSpeedError = std::max(s.largestSpeedError, std::abs(tc.pitch->v - t.speed));
            if (bit) {
                ++s.bits;
                const int position = timecoderGetPosition(tc, nullptr);
                s.positions += position != -1 ? 1U : 0U;
                s.wrongPositions +=
                    position != -1 && position != positionAfterBit(m_def, t, tc.forwards) ? 1U : 0U;
            }
        }
        return s;
    }

    /// Of the last frame played.
    FrameTruth truth() const { return m_record.truth(m_next - 1); }
    int position() { return timecoderGetPosition(tc, nullptr); }
    std::uint64_t played() const { return m_next; }

    Timecoder tc;

private:
    std::uint64_t frameCount(double seconds) const {
        return static_cast<std::uint64_t>(std::llround(seconds * m_record.sampleRate()));
    }

    const TimecodeDefinition& m_def;
    SyntheticRecord m_record;
    std::uint64_t m_next = 0;
};
