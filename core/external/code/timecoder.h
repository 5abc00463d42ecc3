#pragma once
// From stereo 16-bit frames of a timecode record to direction, speed and position. Integers and doubles
// only; one thread at a time for one Timecoder. Nothing here allocates after construction.

#include "definitions.h"

#include <cstdint>
#include <memory>

/// One channel of the carrier.
struct TimecoderChannel {
    bool positive = false;           ///< the last half-wave was above the zero line
    bool swapped = false;            ///< this frame saw a zero crossing
    std::int32_t zero = 0;           ///< running estimate of the DC level, in frame scale (16 bits << 16)
    std::int32_t crossingTicker = 0; ///< frames since the last crossing
};

/// Alpha-beta filter from quarter-cycle observations to speed.
struct PitchFilter {
    double dt = 0.0; ///< seconds a frame
    double x = 0.0;  ///< position error, seconds of record
    double v = 0.0;  ///< speed; 1.0 is nominal, the sign gives the direction
};

/// The decoder's whole state. Usable after timecoderInit.
struct Timecoder {
    Timecoder();

    const TimecodeDefinition* def = nullptr;
    double dt = 0.0;            ///< seconds a frame
    double zeroAlpha = 0.0;     ///< smoothing factor of the zero line
    std::int32_t threshold = 0; ///< crossing hysteresis, frame scale
    bool forwards = true;
    std::unique_ptr<TimecoderChannel> primary;
    std::unique_ptr<TimecoderChannel> secondary;
    std::unique_ptr<PitchFilter> pitch;
    std::int32_t refLevel = 0;        ///< running estimate of the level that parts ones from zeros
    std::uint32_t bitstream = 0;      ///< the last `bits` bits as read
    std::uint32_t timecode = 0;       ///< the register as predicted
    std::uint32_t validCounter = 0;   ///< run of bits that agreed with the prediction
    std::uint32_t timecodeTicker = 0; ///< frames since the last bit

    // Derived once in timecoderInit, so that a frame needs neither the definition nor a division for them.
    double quarterCycle = 0.0; ///< seconds of record a crossing stands for
    int flags = 0;             ///< TimecodeFlag bits
    // The table's answer for the present bits: the chain is walked once a bit, not once a frame.
    std::uint32_t knownBitstream = 0;
    int knownPosition = -1;
    bool positionKnown = false;
};

/// Sets every field to its start value for `def` (whose table must be built) at `sampleRate` frames a
/// second. `phono` takes the lower threshold, for a weak, unamplified input. Asserts on a definition that
/// is missing, empty or without its table.
void timecoderInit(Timecoder& tc, const TimecodeDefinition* def, unsigned sampleRate, bool phono);

/// Runs `npcm` interleaved frames (left first) through the decoder. Realtime-safe.
void timecoderSubmit(Timecoder& tc, const std::int16_t* pcm, std::size_t npcm);

/// The position (a Lut slot index), or -1 while fewer than 25 bits in a row have agreed or the code isn't
/// on the record. `when`, if given, receives the position's age in seconds; untouched with -1.
/// Realtime-safe. It runs once a frame and stands here so that it becomes part of the frame's loop.
int timecoderGetPosition(Timecoder& tc, double* when);

/// Asks the table for the present bits and keeps the answer. Realtime-safe.
int timecoderFindPosition(Timecoder& tc);

inline int timecoderGetPosition(Timecoder& tc, double* when) {
    constexpr std::uint32_t validBits = 24; // a longer run reports a position
    if (tc.validCounter <= validBits) {
        return -1;
    }
    const bool fresh = tc.positionKnown && tc.knownBitstream == tc.bitstream;
    const int position = fresh ? tc.knownPosition : timecoderFindPosition(tc);
    if (position != -1 && when != nullptr) {
        *when = tc.timecodeTicker * tc.dt;
    }
    return position;
}
