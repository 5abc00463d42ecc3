// The decoder against a second one, written here without any of its shortcuts: one step a line, everything
// computed anew for every frame. Every field has to agree after every frame, bit by bit.

#include "external/code/timecoder.h"
#include "support/testmain.h"
#include "syntheticrecord.h"

#include <QTest>

#include <bit>
#include <cmath>
#include <functional>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace {

using i32 = std::int32_t;
using u32 = std::uint32_t;
using i64 = std::int64_t;

// The low 32 bits: what a machine word keeps.
i32 word(i64 value) {
    return static_cast<i32>(static_cast<u32>(value));
}

struct PlainChannel {
    bool positive = false;
    bool swapped = false;
    i32 zero = 0;
    i32 crossingTicker = 0;
};

u32 oddness(u32 value) {
    u32 odd = 0;
    for (; value != 0; value >>= 1) {
        odd ^= value & 1;
    }
    return odd;
}

u32 stepOn(u32 code, const TimecodeDefinition& def) {
    return (code >> 1) | (oddness(code & (def.taps() | 1)) << (def.bits() - 1));
}

u32 stepBack(u32 code, const TimecodeDefinition& def) {
    const u32 mask = (u32{1} << def.bits()) - 1;
    return ((code << 1) & mask) | oddness(code & ((def.taps() >> 1) | (u32{1} << (def.bits() - 1))));
}

using Positions = std::unordered_map<u32, int>;

Positions positionsOf(const TimecodeDefinition& def) {
    Positions positions;
    positions.reserve(def.length());
    u32 code = def.seed();
    for (u32 i = 0; i < def.length(); ++i) {
        positions[code] = static_cast<int>(i);
        code = stepOn(code, def);
    }
    return positions;
}

class PlainDecoder {
public:
    PlainDecoder(const TimecodeDefinition& row, const Positions& positions, unsigned rate, bool phono)
        : def(row)
        , table(positions)
        , dt(1.0 / rate)
        , alpha(dt / (dt + 0.001))
        , threshold(phono ? 4 << 16 : 128 << 16) {}

    void frame(std::int16_t left, std::int16_t right) {
        const bool leftIsPrimary = (def.flags() & 2) != 0;
        const i32 v1 = word(i64{leftIsPrimary ? left : right} * 65536);
        const i32 v2 = word(i64{leftIsPrimary ? right : left} * 65536);
        crossing(primary, v1);
        crossing(secondary, v2);
        if (primary.swapped || secondary.swapped) {
            bool f = false;
            if (primary.swapped) {
                f = primary.positive ^ secondary.positive;
            } else {
                f = primary.positive == secondary.positive;
            }
            if ((def.flags() & 1) != 0) {
                f = !f;
            }
            if (f != forwards) {
                forwards = f;
                validCounter = 0;
            }
        }
        double dx = 0.0;
        if (primary.swapped || secondary.swapped) {
            dx = 1.0 / def.resolution() * 0.25;
            if (!forwards) {
                dx = -dx;
            }
        }
        const double predicted = x + v * dt;
        const double residual = dx - predicted;
        x = predicted + residual * 0.001953125;
        v = v + residual * 7.62939453125e-06 / dt;
        x = x - dx;

        const bool wanted = (def.flags() & 4) == 0;
        if (secondary.swapped && primary.positive == wanted) {
            const i64 m = std::abs(i64{v1} / 2 - i64{primary.zero} / 2);
            largest = std::max(largest, m);
            readBit(word(m));
        }
        timecodeTicker = timecodeTicker + 1;
    }

    int position() const {
        if (validCounter <= 24) {
            return -1;
        }
        const auto found = table.find(bitstream);
        return found == table.end() ? -1 : found->second;
    }

    const TimecodeDefinition& def;
    const Positions& table;
    double dt;
    double alpha;
    i32 threshold;
    bool forwards = true;
    PlainChannel primary;
    PlainChannel secondary;
    double x = 0.0;
    double v = 0.0;
    i32 refLevel = 0x7FFFFFFF;
    u32 bitstream = 0;
    u32 timecode = 0;
    u32 validCounter = 0;
    u32 timecodeTicker = 0;
    i64 largest = 0; // of all levels read

private:
    void crossing(PlainChannel& ch, i32 value) const {
        ch.crossingTicker = word(i64{ch.crossingTicker} + 1);
        ch.swapped = false;
        if (value > word(i64{ch.zero} + threshold) && !ch.positive) {
            ch.swapped = true;
            ch.positive = true;
            ch.crossingTicker = 0;
        } else if (value < word(i64{ch.zero} - threshold) && ch.positive) {
            ch.swapped = true;
            ch.positive = false;
            ch.crossingTicker = 0;
        }
        const double moved = double(ch.zero) + double(word(i64{value} - ch.zero)) * alpha;
        ch.zero = word(static_cast<i64>(std::trunc(moved)));
    }

    void readBit(i32 m) {
        const u32 b = refLevel < m ? 1 : 0;
        const u32 mask = (u32{1} << def.bits()) - 1;
        if (forwards) {
            timecode = stepOn(timecode, def);
            bitstream = (bitstream >> 1) | (b << (def.bits() - 1));
        } else {
            timecode = stepBack(timecode, def);
            bitstream = ((bitstream << 1) & mask) | b;
        }
        if (timecode == bitstream) {
            validCounter = validCounter + 1;
        } else {
            timecode = bitstream;
            validCounter = 0;
        }
        timecodeTicker = 0;
        u32 level = static_cast<u32>(refLevel);
        level = level - level / 48;
        level = level + static_cast<u32>(m) / 48;
        refLevel = static_cast<i32>(level);
    }
};

bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool same(const TimecoderChannel& a, const PlainChannel& b) {
    return a.positive == b.positive && a.swapped == b.swapped && a.zero == b.zero &&
           a.crossingTicker == b.crossingTicker;
}

bool same(const Timecoder& a, const PlainDecoder& b) {
    return same(*a.primary, b.primary) && same(*a.secondary, b.secondary) && sameBits(a.pitch->x, b.x) &&
           sameBits(a.pitch->v, b.v) && a.forwards == b.forwards && a.refLevel == b.refLevel &&
           a.bitstream == b.bitstream && a.timecode == b.timecode && a.validCounter == b.validCounter &&
           a.timecodeTicker == b.timecodeTicker;
}

using Signal = std::function<StereoFrame(std::uint64_t)>;

struct NamedSignal {
    const char* name;
    Signal signal;
};

std::int16_t sample(double value) {
    return static_cast<std::int16_t>(std::lround(value));
}

std::vector<NamedSignal> signalsFor(const TimecodeDefinition& def, unsigned rate) {
    const auto even = [](std::uint64_t seed, std::uint64_t i) { return scatterUnit(seed, i); };
    RecordOptions worn;
    worn.noisePercent = 3.0;
    worn.dustPerSecond = 20.0;
    worn.dcOffset = -900.0;
    worn.humLevel = 0.05;
    worn.gain = 1.8; // clips
    const SyntheticRecord walk(def, rate, Motion(MotionPattern::Walk), worn);
    const SyntheticRecord clean(def, rate, Motion(MotionPattern::Baby));
    return {
        {"even over all 16 bits",
         [even](std::uint64_t i) {
             return StereoFrame{sample(65535.0 * even(1, 2 * i) - 32768.0),
                                sample(65535.0 * even(1, 2 * i + 1) - 32768.0)};
         }},
        {"full scale, rails only",
         [even](std::uint64_t i) {
             const auto rail = [&](std::uint64_t n) -> std::int16_t {
                 return even(2, n) < 0.5 ? -32768 : 32767;
             };
             // Each rail is held for up to 64 frames, so that the zero line runs after it.
             return StereoFrame{rail(2 * (i / (1 + scatter(3, i / 4096) % 64))), rail(2 * (i / 37) + 1)};
         }},
        {"around the thresholds",
         [even](std::uint64_t i) {
             return StereoFrame{sample(300.0 * even(4, 2 * i) - 150.0),
                                sample(12.0 * even(4, 2 * i + 1) - 6.0)};
         }},
        {"worn record", [walk](std::uint64_t i) { return walk.frame(i); }},
        {"clean record", [clean](std::uint64_t i) { return clean.frame(i); }},
    };
}

} // namespace

class tst_TimecoderReference : public QObject {
    Q_OBJECT
    static void compare(const Signal& signal, Timecoder& tc, PlainDecoder& plain, const QString& label) {
        std::uint64_t reported = 0;
        for (std::uint64_t i = 0; i < 100000; ++i) {
            const StereoFrame f = signal(i);
            const std::int16_t pcm[2] = {f.left, f.right};
            timecoderSubmit(tc, pcm, 1);
            plain.frame(f.left, f.right);
            const int position = timecoderGetPosition(tc, nullptr);
            reported += position != -1 ? 1U : 0U;
            if (!same(tc, plain) || position != plain.position()) {
                QFAIL(qPrintable(u"%1, frame %2"_s.arg(label).arg(i)));
            }
        }
        QVERIFY(plain.largest <= 0x7FFFFFFF);
        // The comparison reaches the table only if there is something to look up.
        QVERIFY2(!label.startsWith(u"clean"_s) || reported > 10000, qPrintable(label));
    }

private Q_SLOTS:
    void everyFieldAgreesAfterEveryFrame_data() {
        QTest::addColumn<QByteArray>("name");
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            QTest::newRow(def.name().c_str()) << QByteArray::fromStdString(def.name());
        }
    }
    void everyFieldAgreesAfterEveryFrame() {
        QFETCH(QByteArray, name);
        TimecodeDefinitionList list = createTimecodeDefinitions();
        const TimecodeDefinition def = findTimecodeDefinition(list, name.toStdString());
        const Positions positions = positionsOf(def);
        for (const unsigned rate : {44100U, 48000U}) {
            for (const NamedSignal& entry : signalsFor(def, rate)) {
                for (const bool phono : {false, true}) {
                    const QString label = u"%1, %2 Hz%3"_s.arg(QLatin1String(entry.name))
                                              .arg(rate)
                                              .arg(phono ? u", phono"_s : QString());
                    PlainDecoder plain(def, positions, rate, phono);
                    Timecoder tc;
                    timecoderInit(tc, &def, rate, phono);
                    compare(entry.signal, tc, plain, label);
                    if (QTest::currentTestFailed()) {
                        return;
                    }
                }
            }
        }
    }

    void framesInOneCallGiveTheSameAsOneByOne() {
        TimecodeDefinitionList list = createTimecodeDefinitions();
        const TimecodeDefinition def = findTimecodeDefinition(list, "traktor_sideB");
        const SyntheticRecord record(def, 44100, Motion(MotionPattern::Scribble));
        const std::vector<std::int16_t> pcm = record.render(0, 44100);
        Timecoder block;
        Timecoder single;
        timecoderInit(block, &def, 44100, false);
        timecoderInit(single, &def, 44100, false);
        timecoderSubmit(block, pcm.data(), 44100);
        for (std::size_t i = 0; i < 44100; ++i) {
            timecoderSubmit(single, &pcm[2 * i], 1);
        }
        QVERIFY(sameBits(block.pitch->v, single.pitch->v) && sameBits(block.pitch->x, single.pitch->x));
        QCOMPARE(block.bitstream, single.bitstream);
        QCOMPARE(block.refLevel, single.refLevel);
        QCOMPARE(block.validCounter, single.validCounter);
        QCOMPARE(block.timecodeTicker, single.timecodeTicker);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_TimecoderReference)
#include "tst_timecoderreference.moc"
