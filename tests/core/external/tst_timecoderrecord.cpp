// The decoder on whole records: what it says against the truth that the signal was made from.

#include "support/decoderrun.h"

#include "support/testmain.h"

#include <QTest>

#include <algorithm>

namespace {

constexpr double rate = 48000.0;

const std::array<const char*, 2>& kinds() {
    static const std::array<const char*, 2> names{"serato_sideA_FullDVS", "traktor_sideA"};
    return names;
}

// Two seconds at nominal speed, of which the second is judged.
Sighting secondSecond(const char* name, double speed, const RecordOptions& options) {
    const TimecodeDefinition& def = builtRow(name);
    DecoderRun run(def, SyntheticRecord(def, rate, Motion::constant(speed), options));
    run.skip(1.0);
    return run.watch(1.0);
}

bool speedWithin(const Sighting& s, double speed, double tolerance) {
    return std::abs(s.meanSpeed - speed) <= tolerance * std::abs(speed);
}

#define VERIFY_SIGHT(condition, s)                                                                           \
    QVERIFY2(condition,                                                                                      \
             qPrintable(QStringLiteral("speed %1, wrong direction %2 of %3, bits %4, positions %5, "         \
                                       "wrong %6")                                                           \
                            .arg((s).meanSpeed)                                                              \
                            .arg((s).wrongDirection)                                                         \
                            .arg((s).frames)                                                                 \
                            .arg((s).bits)                                                                   \
                            .arg((s).positions)                                                              \
                            .arg((s).wrongPositions)))

} // namespace

class tst_TimecoderRecord : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void evenSpeeds_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<double>("frames");
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            for (const double frames : {44100.0, 48000.0, 96000.0}) {
                QTest::addRow("%s, %.0f", def.name().c_str(), frames)
                    << QByteArray::fromStdString(def.name()) << frames;
            }
        }
    }
    // The carrier runs at 50 to 16000 Hz. Speed and direction hold up to a quarter of the frame rate, where
    // two crossings begin to fall into one frame; the bits can be told apart down to 12 frames a cycle, as a
    // crossing is seen up to a frame too late, away from the peak.
    void evenSpeeds() {
        QFETCH(QByteArray, name);
        QFETCH(double, frames);
        const TimecodeDefinition& def = builtRow(name.toStdString());
        for (const double size : {0.05, 0.1, 0.25, 0.5, 1.0, 1.5, 2.0, 3.7, 5.3, 7.93}) {
            const double hertz = size * def.resolution();
            for (const double speed : {size, -size}) {
                DecoderRun run(def, SyntheticRecord(def, frames, Motion::constant(speed)));
                run.skip(
                    std::max(0.5, 420.0 / hertz)); // the reference level needs its bits, the filter its time
                const Sighting s = run.watch(std::max(0.1, 60.0 / hertz));
                const double quarters = 4.0 * hertz / frames; // of a cycle in one frame
                if (quarters < 1.0) {
                    VERIFY_SIGHT(speedWithin(s, speed, 0.005), s);
                    VERIFY_SIGHT(s.wrongDirection == 0, s);
                } else {
                    // Of the frames with two crossings one in two is taken for the other direction, so the
                    // speed is mirrored at the frame rate's quarter; its sign still holds.
                    VERIFY_SIGHT(speedWithin(s, speed * (2.0 - quarters) / quarters, 0.03), s);
                    VERIFY_SIGHT(s.wrongDirection < s.frames / 2, s);
                }
                if (12.0 * hertz <= frames) {
                    VERIFY_SIGHT(s.bits >= 50 && s.positions == s.bits && s.wrongPositions == 0, s);
                }
            }
        }
    }

    void scratchesAreFollowed_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("pattern");
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            for (const std::string& pattern : Motion::patternNames()) {
                QTest::addRow("%s, %s", def.name().c_str(), pattern.c_str())
                    << QByteArray::fromStdString(def.name()) << QByteArray::fromStdString(pattern);
            }
        }
    }
    // The pitch filter runs some 270 frames behind. So compared, the speed is within a fifth of nominal at
    // every moment and has the right sign whenever the hand moves; the whole way is right to 2 % of a second.
    void scratchesAreFollowed() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, pattern);
        constexpr std::uint64_t lag = 270;
        constexpr auto end = static_cast<std::uint64_t>(5 * rate);
        const TimecodeDefinition& def = builtRow(name.toStdString());
        const SyntheticRecord record(def, rate, Motion(*Motion::patternFromName(pattern.toStdString())));
        DecoderRun run(def, record);
        double way = 0.0;
        double worst = 0.0;
        std::uint64_t wrongSign = 0;
        std::uint64_t positions = 0;
        std::uint64_t wrongPositions = 0;
        for (std::uint64_t i = 0; i < end; ++i) {
            const bool bit = run.step();
            const double v = run.tc.pitch->v;
            way += v / rate;
            if (i < static_cast<std::uint64_t>(rate / 10)) { // the first start is a jump to the speed
                continue;
            }
            const double truth = record.truth(i - lag).speed;
            worst = std::max(worst, std::abs(v - truth));
            wrongSign += std::abs(truth) > 0.2 && (v > 0.0) != (truth > 0.0) ? 1U : 0U;
            if (bit && run.position() != -1) {
                ++positions;
                wrongPositions +=
                    run.position() != positionAfterBit(def, run.truth(), run.tc.forwards) ? 1U : 0U;
            }
        }
        const double trueWay = (record.truth(end - 1).position - record.truth(0).position) / def.resolution();
        QVERIFY2(worst < (pattern == "walk" ? 0.4 : 0.2), qPrintable(QString::number(worst)));
        QCOMPARE(wrongSign, 0U);
        QCOMPARE(wrongPositions, 0U);
        // A scribble turns too often for 45 bits in a row on the slower carrier.
        QVERIFY2(positions > 500 || pattern == "scribble", qPrintable(QString::number(positions)));
        QVERIFY2(std::abs(way - trueWay) < 0.02, qPrintable(QStringLiteral("%1, %2").arg(way).arg(trueWay)));
    }

    void onePercentOfNoiseLeavesSpeedDirectionAndPositionRight() {
        RecordOptions noisy;
        noisy.noisePercent = 1.0;
        for (const char* name : kinds()) {
            for (const double speed : {1.0, -1.0, 0.5, -0.5, 2.0, -2.0}) {
                const Sighting s = secondSecond(name, speed, noisy);
                VERIFY_SIGHT(speedWithin(s, speed, 0.005), s);
                VERIFY_SIGHT(s.wrongDirection == 0 && s.wrongPositions == 0, s);
                VERIFY_SIGHT(s.positions * 10 > s.bits * 9, s);
            }
        }
    }

    void noiseAboveTheThresholdAtStandstillCrossesButDoesNotTravel() {
        RecordOptions noisy;
        noisy.noisePercent = 1.0; // 328 on the 16-bit scale, the threshold is 128
        for (const char* name : kinds()) {
            const Sighting s = secondSecond(name, 0.0, noisy);
            QVERIFY(s.crossings > 1000);
            VERIFY_SIGHT(std::abs(s.meanSpeed) < 0.1, s);
            VERIFY_SIGHT(s.positions == 0, s);
        }
    }

    void noiseBelowTheThresholdAtStandstillIsSilence() {
        RecordOptions quiet;
        quiet.noisePercent = 0.3; // 98 on the 16-bit scale
        for (const char* name : kinds()) {
            const Sighting s = secondSecond(name, 0.0, quiet);
            QCOMPARE(s.crossings, 0U);
            QVERIFY(s.meanSpeed == 0.0);
        }
    }

    void anOffsetDoesNotDisturbARunningRecord() {
        RecordOptions shifted;
        for (const double offset : {100.0, -100.0, 5000.0, -5000.0}) {
            shifted.dcOffset = offset;
            for (const char* name : kinds()) {
                const Sighting s = secondSecond(name, -1.0, shifted);
                VERIFY_SIGHT(speedWithin(s, -1.0, 0.001) && s.wrongDirection == 0, s);
                VERIFY_SIGHT(s.positions == s.bits && s.wrongPositions == 0, s);
            }
        }
    }

    void mainsHumOfATwentiethOfTheCarrierDoesNotDisturbARunningRecord() {
        RecordOptions hum;
        hum.humLevel = 0.025;
        for (const char* name : kinds()) {
            for (const double speed : {1.0, -1.0}) {
                const Sighting s = secondSecond(name, speed, hum);
                VERIFY_SIGHT(speedWithin(s, speed, 0.002) && s.wrongDirection == 0, s);
                VERIFY_SIGHT(s.positions == s.bits && s.wrongPositions == 0, s);
            }
        }
    }

    void swappedChannelsReverseTheSpeedAndLoseThePosition() {
        RecordOptions swapped;
        swapped.swapChannels = true;
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            for (const double speed : {1.0, -1.0}) {
                const Sighting s = secondSecond(def.name().c_str(), speed, swapped);
                VERIFY_SIGHT(speedWithin(s, -speed, 0.002), s);
                VERIFY_SIGHT(s.wrongDirection == s.frames, s);
                VERIFY_SIGHT(s.positions == s.wrongPositions, s);
            }
        }
    }

    void aHotCarrierKeepsSpeedDirectionAndPosition_data() {
        QTest::addColumn<QByteArray>("name");
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            QTest::newRow(def.name().c_str()) << QByteArray::fromStdString(def.name());
        }
    }
    // Up to 1.3 of full scale ones are clipped and zeros are still lower.
    void aHotCarrierKeepsSpeedDirectionAndPosition() {
        QFETCH(QByteArray, name);
        RecordOptions hot;
        for (const double level : {0.3, 0.85, 0.97, 1.0, 1.1, 1.2, 1.3}) {
            hot.level = level;
            for (const double speed : {1.0, -1.0}) {
                const Sighting s = secondSecond(name.constData(), speed, hot);
                VERIFY_SIGHT(speedWithin(s, speed, 0.001) && s.wrongDirection == 0, s);
                VERIFY_SIGHT(s.bits > 900 && s.positions == s.bits && s.wrongPositions == 0, s);
            }
        }
    }

    // Where ones and zeros clip alike, nothing is left to tell them apart: no position rather than a wrong
    // one.
    void aCarrierClippedToRectanglesKeepsSpeedAndDirection() {
        RecordOptions hot;
        for (const double level : {1.5, 2.0, 5.0}) {
            hot.level = level;
            for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
                for (const double speed : {1.0, -1.0}) {
                    const Sighting s = secondSecond(def.name().c_str(), speed, hot);
                    VERIFY_SIGHT(speedWithin(s, speed, 0.001) && s.wrongDirection == 0, s);
                    VERIFY_SIGHT(s.wrongPositions == 0, s);
                }
            }
        }
    }

    void aSkewOfThirtyDegreesLeavesSpeedAndDirectionRight() {
        RecordOptions skewed;
        for (const double degrees : {30.0, -30.0}) {
            skewed.skewDegrees = degrees;
            for (const char* name : kinds()) {
                for (const double speed : {1.0, -1.0}) {
                    const Sighting s = secondSecond(name, speed, skewed);
                    VERIFY_SIGHT(speedWithin(s, speed, 0.002) && s.wrongDirection == 0, s);
                    VERIFY_SIGHT(s.positions == s.bits && s.wrongPositions == 0, s);
                }
            }
        }
    }

    void dustCostsPositionsButNotTheirTruth() {
        RecordOptions dusty;
        dusty.dustPerSecond = 3.0;
        for (const char* name : kinds()) {
            const TimecodeDefinition& def = builtRow(name);
            DecoderRun run(def, SyntheticRecord(def, rate, Motion::constant(1.0), dusty));
            run.skip(1.0);
            const Sighting s = run.watch(10.0);
            VERIFY_SIGHT(speedWithin(s, 1.0, 0.02), s);
            VERIFY_SIGHT(s.positions < s.bits && s.positions * 2 > s.bits, s);
            VERIFY_SIGHT(s.wrongPositions * 1000 < s.positions, s);
        }
    }

    void standstillIsSilentAndTheSpeedFallsToZero() {
        for (const char* name : kinds()) {
            const TimecodeDefinition& def = builtRow(name);
            const Motion brake = Motion::custom([](double t) {
                const double u = std::min(t, 1.0); // to standstill within a second
                return MotionState{30.0 + u - u * u / 2.0, 1.0 - u, 63};
            });
            DecoderRun run(def, SyntheticRecord(def, rate, brake));
            run.skip(1.0);
            const Sighting s = run.watch(2.0);
            QCOMPARE(s.crossings, 0U);
            VERIFY_SIGHT(std::abs(run.tc.pitch->v) < 1e-6, s);
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_TimecoderRecord)
#include "tst_timecoderrecord.moc"
