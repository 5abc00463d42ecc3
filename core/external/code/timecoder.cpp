#include "timecoder.h"

#include "pitchgains.h"

#include <cassert>
#include <cstdlib>

namespace {

constexpr double zeroTimeConstant = 0.001;       // seconds
constexpr std::int32_t lineThreshold = 0x800000; // 128 on the 16-bit scale
constexpr std::int32_t phonoThreshold = 0x40000; // 4 on the 16-bit scale
constexpr std::uint32_t referenceAverage = 48;   // bits
constexpr std::int32_t initialRefLevel = 0x7FFFFFFF;

// The frame scale fills all 32 bits: a carrier near full scale is further from its zero line than 32 bits can
// tell, so thresholds and distance are taken in 64.
void detectZeroCrossing(TimecoderChannel& ch, std::int32_t v, std::int32_t threshold, double alpha) {
    const std::int64_t zero = ch.zero;
    // Over half a day of silence the counter comes to its end and goes round.
    ch.crossingTicker = static_cast<std::int32_t>(static_cast<std::uint32_t>(ch.crossingTicker) + 1U);
    ch.swapped = false;
    if (v > zero + threshold && !ch.positive) {
        ch.swapped = true;
        ch.positive = true;
        ch.crossingTicker = 0;
    } else if (v < zero - threshold && ch.positive) {
        ch.swapped = true;
        ch.positive = false;
        ch.crossingTicker = 0;
    }
    // The line never leaves the span of the samples, so it fits.
    ch.zero = static_cast<std::int32_t>(double(zero) + double(v - zero) * alpha);
}

void observePitch(PitchFilter& p, double dx) {
    const double predicted = p.x + p.v * p.dt;
    const double residual = dx - predicted;
    p.x = predicted + residual * pitchAlpha;
    p.v = p.v + residual * pitchBeta / p.dt;
    p.x = p.x - dx;
}

// Once a carrier cycle: kept out of the frame's loop, whose registers it would take.
[[gnu::noinline]] void readBit(Timecoder& tc, std::int32_t m) {
    const TimecodeDefinition& def = *tc.def;
    const std::uint32_t b = tc.refLevel < m ? 1U : 0U;
    const std::uint32_t top = 1U << (def.bits() - 1);
    if (tc.forwards) {
        tc.timecode = fwd(tc.timecode, def);
        tc.bitstream = (tc.bitstream >> 1) | (b << (def.bits() - 1));
    } else {
        tc.timecode = rev(tc.timecode, def);
        tc.bitstream = ((tc.bitstream << 1) & (top | (top - 1U))) | b;
    }
    if (tc.timecode == tc.bitstream) {
        ++tc.validCounter;
    } else {
        tc.timecode = tc.bitstream;
        tc.validCounter = 0;
    }
    tc.timecodeTicker = 0;
    auto level = static_cast<std::uint32_t>(tc.refLevel);
    level -= level / referenceAverage;
    level += static_cast<std::uint32_t>(m) / referenceAverage;
    tc.refLevel = static_cast<std::int32_t>(level);
}

void submitFrame(Timecoder& tc, std::int32_t v1, std::int32_t v2) {
    TimecoderChannel& primary = *tc.primary;
    TimecoderChannel& secondary = *tc.secondary;
    detectZeroCrossing(primary, v1, tc.threshold, tc.zeroAlpha);
    detectZeroCrossing(secondary, v2, tc.threshold, tc.zeroAlpha);

    double dx = 0.0;
    if (primary.swapped || secondary.swapped) {
        bool f =
            primary.swapped ? primary.positive != secondary.positive : primary.positive == secondary.positive;
        if ((tc.flags & TimecodeFlag::FlipDirection) != 0) {
            f = !f;
        }
        if (f != tc.forwards) {
            tc.forwards = f;
            tc.validCounter = 0;
        }
        // A crossing of either channel is a quarter of a carrier cycle.
        dx = tc.forwards ? tc.quarterCycle : -tc.quarterCycle;
    }
    observePitch(*tc.pitch, dx);

    // The secondary's crossing marks the peak of the primary.
    if (secondary.swapped && primary.positive == ((tc.flags & TimecodeFlag::ReadOnLow) == 0)) {
        readBit(tc, std::abs(v1 / 2 - primary.zero / 2));
    }
    ++tc.timecodeTicker;
}

std::int32_t frameScale(std::int16_t sample) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int32_t>(sample)) << 16);
}

} // namespace

Timecoder::Timecoder()
    : primary(std::make_unique<TimecoderChannel>())
    , secondary(std::make_unique<TimecoderChannel>())
    , pitch(std::make_unique<PitchFilter>()) {}

void timecoderInit(Timecoder& tc, const TimecodeDefinition* def, unsigned sampleRate, bool phono) {
    assert(def);
    assert(!def->name().empty() && "!def->name().isEmpty()");
    assert(def->lookup());
    tc.def = def;
    tc.dt = 1.0 / sampleRate;
    tc.zeroAlpha = tc.dt / (tc.dt + zeroTimeConstant);
    tc.threshold = phono ? phonoThreshold : lineThreshold;
    tc.forwards = true;
    *tc.primary = TimecoderChannel();
    *tc.secondary = TimecoderChannel();
    *tc.pitch = PitchFilter{tc.dt, 0.0, 0.0};
    tc.refLevel = initialRefLevel;
    tc.bitstream = 0;
    tc.timecode = 0;
    tc.validCounter = 0;
    tc.timecodeTicker = 0;
    tc.quarterCycle = 1.0 / def->resolution() * 0.25;
    tc.flags = def->flags();
    tc.positionKnown = false;
}

void timecoderSubmit(Timecoder& tc, const std::int16_t* pcm, std::size_t npcm) {
    const bool leftPrimary = (tc.flags & TimecodeFlag::LeftPrimary) != 0;
    for (std::size_t i = 0; i < npcm; ++i, pcm += 2) {
        const std::int32_t left = frameScale(pcm[0]);
        const std::int32_t right = frameScale(pcm[1]);
        submitFrame(tc, leftPrimary ? left : right, leftPrimary ? right : left);
    }
}

int timecoderFindPosition(Timecoder& tc) {
    const Lut& lut = *tc.def->lut();
    std::uint32_t position = Lut::noSlot;
    if (tc.positionKnown && tc.knownPosition != -1) {
        // A record in lock moves on by one position a bit, so the neighbour is asked before the chain is
        // walked. No code is there twice: both ways give the same.
        const auto known = static_cast<std::uint32_t>(tc.knownPosition);
        const std::uint32_t neighbour = tc.forwards ? known + 1 : known - 1;
        position = lut.holds(neighbour, tc.bitstream) ? neighbour : Lut::noSlot;
    }
    if (position == Lut::noSlot) {
        position = lut.lookup(tc.bitstream);
    }
    tc.knownPosition = static_cast<int>(position);
    tc.knownBitstream = tc.bitstream;
    tc.positionKnown = true;
    return tc.knownPosition;
}
