#include "syntheticrecord.h"

#include "support/testmain.h"

#include <QTest>

#include <algorithm>
#include <cmath>

namespace {

constexpr double rate = 48000.0;

TimecodeDefinition row(std::size_t n) {
    return createTimecodeDefinitions()[n];
}
TimecodeDefinition serato() {
    return row(1);
}
TimecodeDefinition traktor() {
    return row(3);
}

SyntheticRecord at(double speed, const RecordOptions& options = {}) {
    return {serato(), rate, Motion::constant(speed), options};
}

RecordOptions everything() {
    RecordOptions o;
    o.noisePercent = 2.0;
    o.dcOffset = 50.0;
    o.humLevel = 0.01;
    o.skewDegrees = 5.0;
    o.dustPerSecond = 10.0;
    o.gain = 1.5;
    o.seed = 77;
    return o;
}

int peak(const SyntheticRecord& record, std::uint64_t first, std::size_t count) {
    int highest = 0;
    for (const std::int16_t value : record.render(first, count)) {
        highest = std::max(highest, std::abs(int{value}));
    }
    return highest;
}

} // namespace

class tst_SyntheticRecord : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aFrameIsAPureFunctionOfOptionsAndNumber() {
        const SyntheticRecord record(traktor(), rate, Motion(MotionPattern::Walk), everything());
        const std::vector<std::int16_t> whole = record.render(0, 30000);
        const SyntheticRecord again(traktor(), rate, Motion(MotionPattern::Walk), everything());
        for (std::uint64_t i = 30000; i-- > 0;) { // backward, one by one
            const StereoFrame f = again.frame(i);
            QVERIFY(f.left == whole[2 * i] && f.right == whole[2 * i + 1]);
        }
        // In blocks of any size.
        for (std::size_t first = 0, block = 1; first + block <= 30000;
             first += block, block = block * 3 % 701 + 1) {
            const std::vector<std::int16_t> piece = again.render(first, block);
            QVERIFY(std::equal(piece.begin(), piece.end(),
                               whole.begin() + static_cast<std::ptrdiff_t>(2 * first)));
        }
    }

    void floatsAreTheSixteenBitValuesOver32768() {
        const SyntheticRecord record(serato(), rate, Motion(MotionPattern::Scribble), everything());
        std::vector<float> left(5000);
        std::vector<float> right(5000);
        record.render(1000, 5000, left.data(), right.data());
        for (std::uint64_t i = 0; i < 5000; ++i) {
            const StereoFrame f = record.frame(1000 + i);
            QVERIFY(left[i] * 32768.0F == float(f.left) && right[i] * 32768.0F == float(f.right));
        }
    }

    void bitsAreTheTopsOfTheRegisterFromTheSeedOn() {
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            const SyntheticRecord record(def, rate, Motion());
            std::uint32_t code = def.seed();
            std::uint32_t wrong = 0;
            for (std::int64_t p = 0; p < def.length(); ++p) {
                wrong += record.bit(p) != (((code >> (def.bits() - 1)) & 1U) != 0U) ? 1U : 0U;
                code = fwd(code, def);
            }
            QCOMPARE(wrong, 0U);
            // The seed itself stands in the bits up to position 0, the oldest at its low end.
            for (int b = 0; b < def.bits(); ++b) {
                QCOMPARE(record.bit(b - def.bits() + 1), ((def.seed() >> b) & 1U) != 0U);
            }
        }
    }

    void theGrooveWrapsFromTheRunOutToTheLeadIn() {
        const SyntheticRecord record = at(1.0);
        const std::int64_t lead = 1000 * SyntheticRecord::leadSeconds;
        const std::int64_t whole = 712000 + 2 * lead;
        QCOMPARE(record.onGroove(0), 0);
        QCOMPARE(record.onGroove(-lead), -lead);
        QCOMPARE(record.onGroove(-lead - 1), 712000 + lead - 1);
        QCOMPARE(record.onGroove(712000 + lead), -lead);
        QCOMPARE(record.onGroove(5 * whole + 3), 3);
        QCOMPARE(record.onGroove(-5 * whole + 3), 3);
        QCOMPARE(record.bit(-lead - 1), record.bit(712000 + lead - 1));
        const SyntheticRecord far(serato(), rate, Motion::constant(1.0, 717.5));
        QVERIFY(far.truth(0).position < 0.0);
    }

    void theTruthIsTheMotionInCycles() {
        const SyntheticRecord record(traktor(), rate, Motion(MotionPattern::Chirp, 100.0, 20.0));
        const Motion motion(MotionPattern::Chirp, 100.0, 20.0);
        for (std::uint64_t i = 0; i < 100000; i += 77) {
            const FrameTruth t = record.truth(i);
            const MotionState s = motion.at(static_cast<double>(i) / rate);
            QVERIFY(std::abs(t.position - 2000.0 * s.position) < 1e-6);
            QCOMPARE(t.speed, s.speed);
            QCOMPARE(t.crossfader, s.crossfader);
        }
    }

    void aOneSwingsFullyAndAZeroLess() {
        const SyntheticRecord record = at(1.0);
        for (std::uint64_t cycle = 0; cycle < 500; ++cycle) {
            // Serato's primary is the right channel; its read peak lies in the middle of the cycle's 48
            // frames.
            const StereoFrame f = record.frame(48 * cycle + 24);
            const bool bit = record.bit(static_cast<std::int64_t>(30000 + cycle));
            QCOMPARE(int{f.right}, bit ? 16384 : 11796);
            QVERIFY(std::abs(f.left) <= 1);
        }
    }

    void leftAndRightAreAQuarterCycleApartAndTheFlagsSayWhichLeads() {
        const SyntheticRecord s = at(1.0);
        const SyntheticRecord t(traktor(), rate, Motion::constant(1.0));
        // A quarter cycle after the read peak of the primary the secondary stands at its own peak: up, as it
        // follows, or with FlipDirection and the peak below zero up again.
        QVERIFY(s.frame(24).right > 10000 && s.frame(24 + 12).left > 10000);
        QVERIFY(t.frame(12).left < -10000 && t.frame(12 + 6).right > 10000);
    }

    void theLevelFollowsTheSpeed() {
        QCOMPARE(SyntheticRecord::levelAtSpeed(0.0), 0.0);
        QVERIFY(std::abs(SyntheticRecord::levelAtSpeed(1.0) - 1.0) < 1e-12);
        QCOMPARE(SyntheticRecord::levelAtSpeed(-1.0), SyntheticRecord::levelAtSpeed(1.0));
        QVERIFY(std::abs(SyntheticRecord::levelAtSpeed(0.02) / SyntheticRecord::levelAtSpeed(0.01) - 2.0) <
                1e-3);
        QVERIFY(SyntheticRecord::levelAtSpeed(8.0) < 1.415);
        QCOMPARE(peak(at(0.0), 0, 48000), 0);
        QCOMPARE(peak(at(1.0), 0, 48000), 16384);
        const int slow = peak(at(0.05), 0, 480000);
        QVERIFY2(slow > 1100 && slow < 1200, qPrintable(QString::number(slow)));
    }

    void noiseStaysWithinItsPercentageAndFollowsItsSeed() {
        RecordOptions noisy;
        noisy.noisePercent = 1.0;
        const SyntheticRecord record = at(0.0, noisy);
        const int highest = peak(record, 0, 100000);
        QVERIFY2(highest == 328 || highest == 327, qPrintable(QString::number(highest)));
        noisy.seed = 2;
        QVERIFY(record.render(0, 100) != at(0.0, noisy).render(0, 100));
        double sum = 0.0;
        double product = 0.0;
        for (std::uint64_t i = 0; i < 100000; ++i) {
            const StereoFrame f = record.frame(i);
            sum += f.left + f.right;
            product += double(f.left) * f.right;
        }
        QVERIFY(std::abs(sum / 200000.0) < 2.0);
        QVERIFY(std::abs(product / 100000.0) < 0.02 * 328.0 * 328.0); // the channels' noises are strangers
    }

    void theOffsetIsAddedAsItStands() {
        RecordOptions shifted;
        shifted.dcOffset = -123.0;
        const std::vector<std::int16_t> frames = at(0.0, shifted).render(0, 100);
        QVERIFY(std::all_of(frames.begin(), frames.end(), [](std::int16_t v) { return v == -123; }));
    }

    void humIsFiftyHertzOnBothChannels() {
        RecordOptions hum;
        hum.humLevel = 0.1;
        const SyntheticRecord record = at(0.0, hum);
        QCOMPARE(int{record.frame(240).left}, 3277); // a quarter of 960 frames
        QCOMPARE(int{record.frame(720).right}, -3277);
        QCOMPARE(int{record.frame(960).left}, 0);
    }

    void swappedChannelsAreTheSameFramesTheOtherWayRound() {
        RecordOptions swapped = everything();
        const SyntheticRecord straight = at(1.0, swapped);
        swapped.swapChannels = true;
        const SyntheticRecord crossed = at(1.0, swapped);
        for (std::uint64_t i = 0; i < 5000; ++i) {
            QVERIFY(straight.frame(i).left == crossed.frame(i).right &&
                    straight.frame(i).right == crossed.frame(i).left);
        }
    }

    void skewTurnsTheSecondaryAgainstThePrimary() {
        RecordOptions skewed;
        skewed.skewDegrees = 30.0;
        const SyntheticRecord record = at(1.0, skewed);
        QCOMPARE(record.frame(24).right, at(1.0).frame(24).right);
        // At the primary's peak the secondary has already gone on by 30 degrees: half of its swing.
        QVERIFY(std::abs(std::abs(record.frame(24).left * 2) - record.frame(24).right) < 4);
    }

    void gainClipsAtFullScale() {
        RecordOptions hot;
        hot.gain = 10.0;
        const std::vector<std::int16_t> frames = at(1.0, hot).render(0, 4800);
        const auto [low, high] = std::minmax_element(frames.begin(), frames.end());
        QCOMPARE(int{*low}, -32768);
        QCOMPARE(int{*high}, 32767);
    }

    void dustComesAboutAsOftenAsAsked() {
        RecordOptions dusty;
        dusty.dustPerSecond = 10.0;
        const SyntheticRecord clean = at(1.0);
        const SyntheticRecord record = at(1.0, dusty);
        int specks = 0;
        std::uint64_t last = 0;
        for (std::uint64_t i = 1; i < 60 * 48000; ++i) {
            const bool same = record.frame(i).left == clean.frame(i).left;
            if (!same && (last == 0 || i - last > 50)) {
                ++specks;
            }
            last = same ? last : i;
        }
        QVERIFY2(specks > 450 && specks < 750, qPrintable(QString::number(specks)));
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_SyntheticRecord)
#include "tst_syntheticrecord.moc"
