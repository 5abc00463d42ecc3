// The decoder against a second one that shares no code with it. Every field has to agree after every frame,
// bit by bit.

#include "external/code/timecoder.h"
#include "support/plaindecoder.h"
#include "support/testmain.h"
#include "syntheticrecord.h"

#include <QTest>

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool same(const TimecoderChannel& a, const PlainDecoder::Channel& b) {
    return a.positive == b.positive && a.swapped == b.swapped && double(a.zero) == b.zero &&
           a.crossingTicker == b.crossingTicker;
}

bool same(const Timecoder& a, const PlainDecoder& b) {
    return same(*a.primary, b.primary) && same(*a.secondary, b.secondary) && sameBits(a.pitch->x, b.x) &&
           sameBits(a.pitch->v, b.v) && a.forwards == b.forwards && a.refLevel == b.refLevel &&
           a.bitstream == b.bitstream && a.timecode == b.timecode && a.validCounter == b.validCounter &&
           a.timecodeTicker == b.timecodeTicker;
}

// A zero line in words of 32 bits, and how often they were too narrow for it.
struct NarrowZeroLine {
    bool positive = false;
    bool swapped = false;
    std::int32_t zero = 0;
    int overflows = 0;

    void follow(std::int16_t sample, std::int32_t threshold, double alpha) {
        const std::int32_t v = std::int32_t{sample} * 65536;
        std::int32_t upper = 0;
        std::int32_t lower = 0;
        std::int32_t away = 0;
        overflows += __builtin_add_overflow(zero, threshold, &upper) ? 1 : 0;
        overflows += __builtin_sub_overflow(zero, threshold, &lower) ? 1 : 0;
        overflows += __builtin_sub_overflow(v, zero, &away) ? 1 : 0;
        swapped = positive ? v < lower : v > upper;
        positive = positive != swapped;
        zero = static_cast<std::int32_t>(double(zero) + double(away) * alpha);
    }
    bool isThatOf(const TimecoderChannel& ch) const {
        return ch.positive == positive && ch.swapped == swapped && ch.zero == zero;
    }
};

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
    RecordOptions hot;
    hot.level = 2.0; // clips nearly all the time
    const SyntheticRecord clipped(def, rate, Motion(MotionPattern::Walk), hot);
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
        {"stuck to a rail",
         [even](std::uint64_t i) {
             // The zero line comes closer to the rail than the threshold; then the sample leaves it now and
             // then for a frame.
             const auto height = [&](std::uint64_t n) { return even(5, n) < 0.02 ? 32000.0 : 32767.0; };
             const double side = i / 3000 % 2 == 0 ? 1.0 : -1.0;
             return StereoFrame{sample(side * height(2 * i)), sample(-side * height(2 * i + 1) - 0.5)};
         }},
        {"around the thresholds",
         [even](std::uint64_t i) {
             return StereoFrame{sample(300.0 * even(4, 2 * i) - 150.0),
                                sample(12.0 * even(4, 2 * i + 1) - 6.0)};
         }},
        {"worn record", [walk](std::uint64_t i) { return walk.frame(i); }},
        {"clean record", [clean](std::uint64_t i) { return clean.frame(i); }},
        {"clipped record", [clipped](std::uint64_t i) { return clipped.frame(i); }},
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
        const PlainRecord& record = plainRecord(name.toStdString());
        for (const unsigned rate : {44100U, 48000U}) {
            for (const NamedSignal& entry : signalsFor(def, rate)) {
                for (const bool phono : {false, true}) {
                    const QString label = u"%1, %2 Hz%3"_s.arg(QLatin1String(entry.name))
                                              .arg(rate)
                                              .arg(phono ? u", phono"_s : QString());
                    PlainDecoder plain(record, rate, phono);
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

    void theSecondDecoderKnowsTheSameRecords() {
        TimecodeDefinitionList list = createTimecodeDefinitions();
        QCOMPARE(list.size(), plainRecords().size());
        for (TimecodeDefinition& row : list) {
            const TimecodeDefinition def = findTimecodeDefinition(list, row.name());
            const PlainRecord& record = plainRecord(row.name());
            const std::vector<int>& positions = plainPositions(record);
            QCOMPARE(positions.size(), std::size_t{1} << def.bits());
            QCOMPARE(positions.size() - def.length(), std::count(positions.begin(), positions.end(), -1));
            for (std::uint32_t code = 0; code < positions.size(); code += 101) {
                const auto place = static_cast<std::int32_t>(def.lut()->lookup(code));
                if (place != positions[code] || fwd(code, def) != record.next(code) ||
                    rev(code, def) != record.previous(code)) {
                    QFAIL(qPrintable(u"%1, code %2"_s.arg(QString::fromStdString(row.name())).arg(code)));
                }
            }
        }
    }

    // Where 32 bits hold every sum and difference, the zero line is the one that words of 32 bits give.
    void where32BitsSufficeTheZeroLineIsTheirs_data() {
        QTest::addColumn<double>("level");
        QTest::addColumn<double>("offset");
        QTest::addColumn<bool>("suffice");
        QTest::newRow("quiet") << 0.05 << 0.0 << true;
        QTest::newRow("ordinary") << 0.3 << 0.0 << true;
        QTest::newRow("half of full scale, an offset") << 0.5 << 3000.0 << true;
        QTest::newRow("six tenths") << 0.6 << 0.0 << true;
        QTest::newRow("full scale") << 1.0 << 0.0 << false;
        QTest::newRow("clipped") << 2.0 << 0.0 << false;
    }
    void where32BitsSufficeTheZeroLineIsTheirs() {
        QFETCH(double, level);
        QFETCH(double, offset);
        QFETCH(bool, suffice);
        TimecodeDefinitionList list = createTimecodeDefinitions();
        for (const char* name : {"generic_V2", "traktor_sideB"}) {
            const TimecodeDefinition def = findTimecodeDefinition(list, name);
            RecordOptions options;
            options.level = level;
            options.dcOffset = offset;
            options.noisePercent = 1.0;
            for (const MotionPattern pattern :
                 {MotionPattern::Play, MotionPattern::Baby, MotionPattern::Scribble, MotionPattern::Stop}) {
                const SyntheticRecord record(def, 48000, Motion(pattern), options);
                Timecoder tc;
                timecoderInit(tc, &def, 48000, false);
                NarrowZeroLine left;
                NarrowZeroLine right;
                const bool leftFirst = (def.flags() & TimecodeFlag::LeftPrimary) != 0;
                int apart = 0;
                for (std::uint64_t i = 0; i < 100000; ++i) {
                    const StereoFrame f = record.frame(i);
                    const std::int16_t pcm[2] = {f.left, f.right};
                    timecoderSubmit(tc, pcm, 1);
                    left.follow(f.left, tc.threshold, tc.zeroAlpha);
                    right.follow(f.right, tc.threshold, tc.zeroAlpha);
                    const bool same = left.isThatOf(leftFirst ? *tc.primary : *tc.secondary) &&
                                      right.isThatOf(leftFirst ? *tc.secondary : *tc.primary);
                    apart += same ? 0 : 1;
                }
                QCOMPARE(left.overflows + right.overflows == 0, suffice);
                QCOMPARE(apart == 0, suffice);
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
