#pragma once
// A timecode record, a turntable and a cable that exist in arithmetic only, together with the truth about
// them. The virtual deck, the tests and the benchmarks share it.
//
// The carrier: left and right are one sine a quarter cycle apart. The cycle of position p swings fully when
// the bit of p is 1 and to RecordOptions::zeroBitLevel of that when it is 0; the amplitude changes around
// the half-wave that isn't read, where the primary channel is far from its zero line and the secondary has
// no height to change, so a bit reads the same in both directions. The level follows the speed as a
// cartridge's does: in proportion while slow, hardly beyond nominal speed, silent at standstill.

#include "external/code/definitions.h"
#include "motion.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// What happens to the signal between the groove and the sound card. The defaults are a clean record.
struct RecordOptions {
    double level = 0.5;         ///< peak at nominal speed, 1.0 is full scale
    double zeroBitLevel = 0.72; ///< amplitude of a 0 against that of a 1
    double noisePercent = 0.0;  ///< white noise, evenly spread within +- this percentage of full scale
    double dcOffset = 0.0;      ///< on the 16-bit scale, on both channels
    double humLevel = 0.0;      ///< peak of a 50 Hz sine on both channels, 1.0 is full scale
    double skewDegrees = 0.0;   ///< by how much the secondary channel misses the exact quarter cycle
    bool swapChannels = false;  ///< left and right cable exchanged
    double dustPerSecond = 0.0; ///< mean number of clicks and drop-outs, alike in number
    double gain = 1.0;          ///< applied to the sum; what goes beyond full scale is clipped
    std::uint64_t seed = 1;     ///< of noise and dust
};

/// The truth about one frame.
struct FrameTruth {
    double speed = 0.0;    ///< 1.0 nominal
    double position = 0.0; ///< carrier cycles from position 0; the bit of p is read at p + 0.5
    int crossfader = 63;
};

/// One frame, left first.
struct StereoFrame {
    std::int16_t left = 0;
    std::int16_t right = 0;
};

/// A value; copies share the groove. Frame i is a pure function of what the constructor was given and of i:
/// any stretch can be made again at any time, in any order.
/// Thread-safe: all const methods. Realtime-safe: all but the constructor.
class SyntheticRecord {
public:
    /// Groove before position 0 and after position `length` - 1, in seconds. It carries the sequence's
    /// continuation. Where the run-out ends, the needle finds itself at the start of the lead-in.
    static constexpr int leadSeconds = 5;

    /// Reads `def`'s numbers only; its table needn't be built. Steps through the whole sequence once.
    SyntheticRecord(const TimecodeDefinition& def, double sampleRate, Motion motion,
                    RecordOptions options = {});

    StereoFrame frame(std::uint64_t i) const;
    FrameTruth truth(std::uint64_t i) const;

    /// `count` interleaved frames from frame `first` on.
    void render(std::uint64_t first, std::size_t count, std::int16_t* interleaved) const;
    /// The same into two channels, each value exactly the 16-bit one / 32768.
    void render(std::uint64_t first, std::size_t count, float* left, float* right) const;
    std::vector<std::int16_t> render(std::uint64_t first, std::size_t count) const;

    /// The bit that cycle `position` carries: the one that stands at the top of the register after the step
    /// to `position`. Read forward, the decoder is at `position` after this bit; read backward, it is at
    /// `position` + bits - 1. Any position is allowed, see leadSeconds.
    bool bit(std::int64_t position) const;
    /// A position of any size as the one on the groove that it wraps to.
    std::int64_t onGroove(std::int64_t position) const;

    double sampleRate() const { return m_sampleRate; }
    const RecordOptions& options() const { return m_options; }
    /// Carrier level at `speed` against that at nominal speed.
    static double levelAtSpeed(double speed);

private:
    struct Groove {
        std::int64_t lead = 0; // cycles before position 0
        std::vector<bool> bits;
    };
    FrameTruth truthOf(const MotionState& state) const;
    double amplitude(double cycles) const;
    void addDust(std::uint64_t i, double& left, double& right) const;

    double m_sampleRate;
    Motion m_motion;
    RecordOptions m_options;
    double m_resolution;  // cycles a second of record
    double m_primarySign; // the carrier's shape under the definition's flags
    double m_secondarySign;
    bool m_leftPrimary;
    double m_skew;                // radians
    std::uint64_t m_dustSlot = 1; // frames that hold one speck at most
    double m_dustChance = 0.0;    // of a speck in one slot
    std::shared_ptr<const Groove> m_groove;
};
