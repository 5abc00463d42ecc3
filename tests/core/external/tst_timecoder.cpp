#include "external/code/timecoder.h"
#include "support/deathmessage.h"
#include "support/decoderrun.h"
#include "support/testmain.h"

#include <QTest>

#include <array>

namespace {

constexpr unsigned rate = 48000;

const TimecodeDefinition& serato() {
    return builtRow("serato_sideA_FullDVS");
}
const TimecodeDefinition& traktor() {
    return builtRow("traktor_sideA");
}

void submit(Timecoder& tc, int left, int right, int frames = 1) {
    const std::array<std::int16_t, 2> pcm{static_cast<std::int16_t>(left), static_cast<std::int16_t>(right)};
    for (int i = 0; i < frames; ++i) {
        timecoderSubmit(tc, pcm.data(), 1);
    }
}

SyntheticRecord play(const TimecodeDefinition& def, double speed, RecordOptions options = {},
                     double start = 30.0) {
    return {def, rate, Motion::constant(speed, start), options};
}

// At `turn` seconds the hand turns round at once, at the same speed.
Motion turning(double speed, double turn) {
    return Motion::custom([=](double t) {
        return t < turn ? MotionState{30.0 + speed * t, speed, 63}
                        : MotionState{30.0 + speed * (2.0 * turn - t), -speed, 63};
    });
}

} // namespace

class tst_Timecoder : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initSetsEveryField_data() {
        QTest::addColumn<unsigned>("frames");
        QTest::addColumn<bool>("phono");
        QTest::addColumn<int>("threshold");
        QTest::addColumn<double>("alpha");
        QTest::newRow("line, 44100") << 44100U << false << 0x800000 << 0.022172949;
        QTest::newRow("line, 48000") << 48000U << false << 0x800000 << 0.020408163;
        QTest::newRow("phono, 48000") << 48000U << true << 0x40000 << 0.020408163;
    }
    void initSetsEveryField() {
        QFETCH(unsigned, frames);
        QFETCH(bool, phono);
        Timecoder tc;
        // Whatever a session has left behind has to go.
        timecoderInit(tc, &traktor(), 8000, !phono);
        const std::vector<std::int16_t> pcm = play(traktor(), -1.0).render(0, rate);
        timecoderSubmit(tc, pcm.data(), rate);
        timecoderGetPosition(tc, nullptr);
        tc.forwards = false;
        for (TimecoderChannel* ch : {tc.primary.get(), tc.secondary.get()}) {
            *ch = {.positive = true, .swapped = true, .zero = 7, .crossingTicker = 7};
        }
        *tc.pitch = {.dt = 7.0, .x = 7.0, .v = 7.0};
        tc.refLevel = tc.flags = 7;
        tc.bitstream = tc.timecode = tc.validCounter = tc.timecodeTicker = 7;
        tc.quarterCycle = 7.0;
        tc.positionKnown = true;
        timecoderInit(tc, &serato(), frames, phono);
        QCOMPARE(tc.def, &serato());
        QCOMPARE(tc.dt, 1.0 / frames);
        QFETCH(double, alpha);
        QVERIFY(tc.zeroAlpha >= alpha && tc.zeroAlpha < alpha + 1e-9);
        QTEST(tc.threshold, "threshold");
        QVERIFY(tc.forwards);
        for (const TimecoderChannel* ch : {tc.primary.get(), tc.secondary.get()}) {
            QVERIFY(!ch->positive && !ch->swapped);
            QCOMPARE(ch->zero, 0);
            QCOMPARE(ch->crossingTicker, 0);
        }
        QCOMPARE(tc.pitch->dt, tc.dt);
        QVERIFY(tc.pitch->x == 0.0 && tc.pitch->v == 0.0);
        QCOMPARE(tc.refLevel, 0x7FFFFFFF);
        QCOMPARE(tc.bitstream | tc.timecode | tc.validCounter | tc.timecodeTicker, 0U);
        QCOMPARE(tc.quarterCycle, 1.0 / serato().resolution() * 0.25);
        QCOMPARE(tc.flags, serato().flags());
        QVERIFY(!tc.positionKnown);
        QCOMPARE(timecoderGetPosition(tc, nullptr), -1);
    }

    void initWithoutADefinitionEndsTheProcess() {
        const QByteArray text = deathMessage([] {
            Timecoder tc;
            timecoderInit(tc, nullptr, rate, false);
        });
        QVERIFY2(text.contains("`def'"), text.constData());
    }

    void initWithAnEmptyDefinitionEndsTheProcess() {
        const QByteArray text = deathMessage([] {
            Timecoder tc;
            const TimecodeDefinition empty;
            timecoderInit(tc, &empty, rate, false);
        });
        QVERIFY2(text.contains("!def->name().isEmpty()"), text.constData());
    }

    void initWithoutATableEndsTheProcess() {
        const QByteArray text = deathMessage([] {
            Timecoder tc;
            const TimecodeDefinition unbuilt = createTimecodeDefinitions()[1];
            timecoderInit(tc, &unbuilt, rate, false);
        });
        QVERIFY2(text.contains("def->lookup()"), text.constData());
    }

    void silenceFromTheStartMovesNothing() {
        Timecoder tc;
        timecoderInit(tc, &serato(), rate, false);
        for (unsigned i = 0; i < 2 * rate; ++i) {
            submit(tc, 0, 0);
            QVERIFY(!tc.primary->swapped && !tc.secondary->swapped);
            QVERIFY(tc.pitch->v == 0.0);
            QCOMPARE(tc.validCounter, 0U);
            QCOMPARE(timecoderGetPosition(tc, nullptr), -1);
        }
        QCOMPARE(tc.timecodeTicker, 2 * rate);
    }

    void aPureCarrierAtNominalSpeedGivesSpeedOneAndNoPosition() {
        RecordOptions blank;
        blank.zeroBitLevel = 1.0; // ones and zeros alike
        for (const double speed : {1.0, -1.0}) {
            DecoderRun run(serato(), play(serato(), speed, blank));
            run.skip(1.0);
            const Sighting s = run.watch(1.0);
            QVERIFY2(std::abs(s.meanSpeed - speed) < 0.001, qPrintable(QString::number(s.meanSpeed)));
            QVERIFY(s.largestSpeedError < 0.01);
            QCOMPARE(s.wrongDirection, 0U);
            QCOMPARE(s.positions, 0U);
        }
    }

    void flipDirectionReversesTheSpeed() {
        const TimecodeDefinition& s = serato();
        TimecodeDefinition flipped(s.name(), s.description(), s.fullDVS(), s.resolution(),
                                   TimecodeFlag::FlipDirection, s.bits(), s.seed(), s.taps(), 1000, 1000);
        buildLookup(flipped);
        DecoderRun run(flipped, play(s, 1.0));
        run.skip(1.0);
        const Sighting seen = run.watch(1.0);
        QVERIFY(std::abs(seen.meanSpeed + 1.0) < 0.001);
        QCOMPARE(seen.wrongDirection, seen.frames);
    }

    void aSwapOfTheChannelsReversesTheDirection() {
        RecordOptions swapped;
        swapped.swapChannels = true;
        for (const TimecodeDefinition* def : {&serato(), &traktor()}) {
            DecoderRun run(*def, play(*def, 1.0, swapped));
            run.skip(1.0);
            const Sighting seen = run.watch(1.0);
            QVERIFY(std::abs(seen.meanSpeed + 1.0) < 0.001);
            QCOMPARE(seen.wrongDirection, seen.frames);
        }
    }

    void anOffsetBelowTheThresholdCausesNoCrossingAndIsAbsorbedInMilliseconds() {
        Timecoder tc;
        timecoderInit(tc, &serato(), rate, false);
        for (unsigned i = 0; i < rate; ++i) {
            submit(tc, 127, -127);
            QVERIFY(!tc.primary->swapped && !tc.secondary->swapped);
            if (i == rate / 200) { // 5 ms, five time constants
                QVERIFY(std::abs(tc.secondary->zero - (127 << 16)) < (2 << 16));
                QVERIFY(std::abs(tc.primary->zero + (127 << 16)) < (2 << 16));
            }
        }
        QVERIFY(tc.pitch->v == 0.0);
    }

    void anOffsetExactlyAtTheThresholdCausesNoCrossing() {
        Timecoder tc;
        timecoderInit(tc, &serato(), rate, false);
        submit(tc, 128, 128);
        QVERIFY(!tc.primary->swapped && !tc.secondary->swapped);
        submit(tc, 132, 132); // the zero line has followed by two
        QVERIFY(tc.primary->swapped && tc.secondary->swapped);
        for (const int below : {128, 129}) {
            timecoderInit(tc, &serato(), rate, false);
            tc.primary->positive = true;
            submit(tc, 0, -below);
            QCOMPARE(tc.primary->swapped, below > 128);
        }
    }

    void anOffsetAboveTheThresholdCausesOneCrossingAndIsAbsorbed() {
        Timecoder tc;
        timecoderInit(tc, &serato(), rate, false);
        submit(tc, 3000, 3000);
        QVERIFY(tc.primary->swapped && tc.secondary->swapped);
        QVERIFY(tc.primary->positive && tc.secondary->positive);
        for (unsigned i = 0; i < rate; ++i) {
            submit(tc, 3000, 3000);
            QVERIFY(!tc.primary->swapped && !tc.secondary->swapped);
        }
        QVERIFY(std::abs(tc.pitch->v) < 1e-6);
        QVERIFY(std::abs(tc.primary->zero - (3000 << 16)) < (1 << 16));
    }

    void crossingsAreCountedFromZero() {
        Timecoder tc;
        timecoderInit(tc, &serato(), rate, false);
        submit(tc, 0, 0, 10);
        QCOMPARE(tc.primary->crossingTicker, 10);
        submit(tc, 0, 1000);
        QVERIFY(tc.primary->swapped && tc.primary->positive);
        QVERIFY(!tc.secondary->swapped);
        QCOMPARE(tc.primary->crossingTicker, 0);
        QCOMPARE(tc.secondary->crossingTicker, 11);
        submit(tc, 0, -1000);
        QVERIFY(tc.primary->swapped && !tc.primary->positive);
    }

    void theDefinitionSaysWhichChannelIsPrimary() {
        Timecoder right;
        timecoderInit(right, &serato(), rate, false);
        submit(right, 1000, 0);
        QVERIFY(!right.primary->swapped && right.secondary->swapped);
        Timecoder left;
        timecoderInit(left, &traktor(), rate, false);
        submit(left, 1000, 0);
        QVERIFY(left.primary->swapped && !left.secondary->swapped);
    }

    void aBitIsReadInTheHighHalfWaveOrUnderReadOnLowInTheLowOne() {
        Timecoder high;
        timecoderInit(high, &serato(), rate, false);
        submit(high, 0, 1000, 2); // primary up
        submit(high, 1000, 1000); // the secondary crosses
        QCOMPARE(high.timecodeTicker, 1U);
        submit(high, 1000, -1000); // primary down
        submit(high, -1000, -1000);
        QCOMPARE(high.timecodeTicker, 3U);
        Timecoder low;
        timecoderInit(low, &traktor(), rate, false);
        submit(low, 1000, 0, 2);
        submit(low, 1000, 1000);
        QCOMPARE(low.timecodeTicker, 3U);
        submit(low, -1000, 1000);
        submit(low, -1000, -1000);
        QCOMPARE(low.timecodeTicker, 1U);
    }

    void positionsRiseByOnePerBitForwardAndFallByOneBackward_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<int>("step");
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            for (const int step : {1, -1}) {
                QTest::addRow("%s, %+d", def.name().c_str(), step)
                    << QByteArray::fromStdString(def.name()) << step;
            }
        }
    }
    void positionsRiseByOnePerBitForwardAndFallByOneBackward() {
        QFETCH(QByteArray, name);
        QFETCH(int, step);
        const TimecodeDefinition& def = builtRow(name.toStdString());
        DecoderRun run(def, play(def, step));
        run.skip(0.5);
        QVERIFY(run.position() != -1);
        for (int bits = 0; bits < 1000;) {
            const int before = run.position();
            if (run.step()) {
                ++bits;
                QCOMPARE(run.position(), before + step);
            } else {
                QCOMPARE(run.position(), before);
            }
        }
    }

    void theFirstLockWaitsUntilTheReferenceLevelHasFallen() {
        DecoderRun run(serato(), play(serato(), 1.0));
        int bits = 0;
        while (run.position() == -1) {
            bits += run.step() ? 1 : 0;
            QVERIFY(bits < 1000);
        }
        // From the top of the range to below a full swing of half scale takes some 70 bits at a 48th each.
        QVERIFY2(bits > 25 + 70, qPrintable(QString::number(bits)));
        QVERIFY2(bits < 300, qPrintable(QString::number(bits)));
    }

    void afterATurnThePositionComesBackWithThe25thAgreeingBit_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<double>("speed");
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            for (const double speed : {1.0, -1.0}) {
                QTest::addRow("%s, %+.0f", def.name().c_str(), speed)
                    << QByteArray::fromStdString(def.name()) << speed;
            }
        }
    }
    void afterATurnThePositionComesBackWithThe25thAgreeingBit() {
        QFETCH(QByteArray, name);
        QFETCH(double, speed);
        const TimecodeDefinition& def = builtRow(name.toStdString());
        // A tenth of a cycle past the read peak: both channels are away from their zero lines.
        const double turn = 0.5 + 0.6 / def.resolution();
        DecoderRun run(def, SyntheticRecord(def, rate, turning(speed, turn)));
        run.skip(0.5);
        QVERIFY(run.position() != -1);
        const bool before = run.tc.forwards;
        QCOMPARE(before, speed > 0.0);
        while (run.tc.forwards == before) {
            run.step();
            QVERIFY(run.played() < rate);
        }
        QCOMPARE(run.position(), -1);
        // The register still holds the bits of the way there, and now they come again in reverse: it has to
        // be filled anew before bits can agree. A bit agrees when the register steps on as the sequence does.
        int agreeing = 0;
        int bits = 0;
        while (agreeing < 25) {
            QCOMPARE(run.position(), -1);
            const std::uint32_t last = run.tc.bitstream;
            if (run.step()) {
                const std::uint32_t next = before ? rev(last, def) : fwd(last, def);
                agreeing = run.tc.bitstream == next ? agreeing + 1 : 0;
                QVERIFY(++bits < 100);
            }
        }
        QVERIFY2(bits > 25 + def.bits() / 2, qPrintable(QString::number(bits)));
        QCOMPARE(run.position(), positionAfterBit(def, run.truth(), !before));
        QCOMPARE(run.tc.validCounter, 25U);
    }

    void aWrongBitSilencesThePositionUntilThe25thGoodBitAndSparesTheSpeed() {
        const SyntheticRecord record = play(serato(), 1.0);
        Timecoder tc;
        timecoderInit(tc, &serato(), rate, false);
        // At nominal speed a cycle is 48 frames. One cycle that carries a 0 is made to swing fully.
        std::uint64_t cycle = 1000;
        while (record.bit(static_cast<std::int64_t>(30000 + cycle))) {
            ++cycle;
        }
        int sinceReset = 0;
        bool silenced = false;
        bool back = false;
        for (std::uint64_t i = 0; i < 48 * (cycle + 200); ++i) {
            const StereoFrame f = record.frame(i);
            const double gain = i / 48 == cycle ? 1.0 / 0.72 : 1.0;
            submit(tc, static_cast<int>(f.left * gain), static_cast<int>(f.right * gain));
            if (i == 48 * cycle) {
                QVERIFY(timecoderGetPosition(tc, nullptr) != -1);
            }
            if (i > 48 * cycle && tc.timecodeTicker == 1) {
                sinceReset = tc.validCounter == 0 ? 0 : sinceReset + 1;
                silenced = silenced || sinceReset == 0;
                QVERIFY(silenced);
                const int position = timecoderGetPosition(tc, nullptr);
                QCOMPARE(position != -1, sinceReset >= 25);
                back = back || position != -1;
                if (position != -1) {
                    QCOMPARE(position, positionAfterBit(serato(), record.truth(i), true));
                }
            }
            if (i > 48 * cycle) {
                QVERIFY(std::abs(tc.pitch->v - 1.0) < 0.02);
                QVERIFY(tc.forwards);
            }
        }
        QVERIFY(back);
    }

    void aCodeBeyondTheLengthGivesNoPositionHoweverLongTheGoodRun() {
        const double start = (serato().length() - 500) / 1000.0;
        DecoderRun run(serato(), play(serato(), 1.0, {}, start));
        run.skip(0.45);
        QVERIFY(run.position() > 711900);
        int last = -1;
        while (run.truth().position < serato().length() + 400.0) {
            run.step();
            last = std::max(last, run.position());
        }
        QCOMPARE(last, static_cast<int>(serato().length()) - 1);
        QVERIFY2(run.tc.validCounter > 400, qPrintable(QString::number(run.tc.validCounter)));
        QCOMPARE(run.position(), -1);
    }

    void theAgeOfThePositionCountsTheFramesSinceItsBit() {
        DecoderRun run(serato(), play(serato(), 1.0));
        double when = -7.0;
        while (timecoderGetPosition(run.tc, &when) == -1) {
            QCOMPARE(when, -7.0);
            run.step();
        }
        QCOMPARE(when, 1.0 / rate); // the frame of the bit itself counts as one
        run.step();
        QVERIFY(timecoderGetPosition(run.tc, &when) != -1);
        QCOMPARE(when, 2.0 / rate);
        QVERIFY(timecoderGetPosition(run.tc, nullptr) != -1);
    }

    void aLiftedNeedleLetsTheSpeedFallAndKeepsTheLastPosition() {
        DecoderRun run(serato(), play(serato(), 1.0));
        run.skip(0.5);
        // The cut to silence moves each channel against its zero line once. Here that is the primary's turn,
        // in the direction of travel, and no bit is read.
        while (std::abs(std::fmod(run.truth().position, 1.0) - 0.61) > 0.011) {
            run.step();
        }
        const int position = run.position();
        QVERIFY(position != -1);
        const std::uint32_t bitstream = run.tc.bitstream;
        const std::uint32_t valid = run.tc.validCounter;
        double speed = run.tc.pitch->v;
        for (int tenth = 0; tenth < 20; ++tenth) {
            submit(run.tc, 0, 0, rate / 10);
            double when = 0.0;
            QCOMPARE(timecoderGetPosition(run.tc, &when), position);
            QVERIFY(when > 0.1 * (tenth + 1) && when < 0.1 * (tenth + 1) + 0.002);
            QCOMPARE(run.tc.bitstream, bitstream);
            QCOMPARE(run.tc.timecode, bitstream);
            QCOMPARE(run.tc.validCounter, valid);
            QVERIFY(std::abs(run.tc.pitch->v) < std::max(std::abs(speed), 1e-9));
            speed = run.tc.pitch->v;
        }
        QVERIFY2(std::abs(speed) < 1e-6, qPrintable(QString::number(speed)));
    }

    void aNewStartForgetsThePositionOfTheLastRecord() {
        DecoderRun first(serato(), play(serato(), 1.0));
        first.skip(0.5);
        QVERIFY(first.position() != -1);
        const TimecodeDefinition& other = builtRow("serato_sideB_FullDVS");
        timecoderInit(first.tc, &other, rate, false);
        QCOMPARE(first.position(), -1);
        const SyntheticRecord record = play(other, 1.0);
        for (std::uint64_t i = 0; i < rate / 2; ++i) {
            const StereoFrame f = record.frame(i);
            submit(first.tc, f.left, f.right);
        }
        double when = 0.0;
        const int position = timecoderGetPosition(first.tc, &when);
        const auto bitFrame = static_cast<std::uint64_t>(std::llround(rate / 2.0 - when * rate));
        QCOMPARE(position, positionAfterBit(other, record.truth(bitFrame), true));
    }

    void theSameBitsOnAnotherRecordAreAnotherPosition() {
        DecoderRun run(serato(), play(serato(), 1.0));
        run.skip(0.5);
        const int position = run.position();
        const std::uint32_t code = run.tc.bitstream;
        QCOMPARE(position, static_cast<int>(serato().lut()->lookup(code)));
        const TimecodeDefinition& other = builtRow("serato_sideB_FullDVS");
        QVERIFY(other.lut()->lookup(code) != serato().lut()->lookup(code));
        timecoderInit(run.tc, &other, rate, false);
        run.tc.bitstream = code;
        run.tc.validCounter = 25;
        QCOMPARE(run.position(), static_cast<int>(other.lut()->lookup(code)));
    }

    void aLevelEqualToTheReferenceIsAZero() {
        for (const int above : {0, 1}) {
            Timecoder tc;
            timecoderInit(tc, &serato(), rate, false);
            submit(tc, 0, 1000, 2);
            // The zero line moves within the frame of the bit, before the level is taken.
            const double moved = tc.primary->zero + double((1000 << 16) - tc.primary->zero) * tc.zeroAlpha;
            const int level = (1000 << 16) / 2 - static_cast<int>(moved) / 2;
            tc.refLevel = level - above;
            submit(tc, 1000, 1000);
            QCOMPARE(tc.timecodeTicker, 1U);
            QCOMPARE(tc.bitstream >> (serato().bits() - 1), static_cast<std::uint32_t>(above));
        }
    }

    void aWeakSignalIsHeardUnderThePhonoThresholdOnly() {
        RecordOptions weak;
        weak.level = 100.0 / 32768.0;
        DecoderRun line(serato(), play(serato(), 1.0, weak), false);
        QCOMPARE(line.watch(1.0).crossings, 0U);
        DecoderRun phono(serato(), play(serato(), 1.0, weak), true);
        phono.skip(1.0);
        const Sighting seen = phono.watch(0.5);
        QVERIFY(std::abs(seen.meanSpeed - 1.0) < 0.001);
        QCOMPARE(seen.positions, seen.bits);
        QCOMPARE(seen.wrongPositions, 0U);
    }

    void theLevelOfAFullScaleBitStaysInRange() {
        // The largest difference there is: the zero line at the upper rail, the primary at the lower one. The
        // line goes down by a 49th of it before the level is taken.
        Timecoder tc;
        timecoderInit(tc, &traktor(), rate, false);
        submit(tc, 32767, -32768, rate);
        const std::int32_t level = tc.refLevel;
        submit(tc, -32768, 32767);
        QVERIFY(tc.secondary->swapped && !tc.primary->positive);
        QCOMPARE(tc.timecodeTicker, 1U);
        const std::int64_t m = std::abs(std::int64_t{-2147483648LL} / 2 - tc.primary->zero / 2);
        QVERIFY2(m > 0x7D600000 && m < 0x7D700000, qPrintable(QString::number(m)));
        QCOMPARE(tc.refLevel, static_cast<std::int32_t>(level - level / 48 + m / 48));
    }

    void fullScaleSquareWavesKeepTheReferenceLevelPositive() {
        Timecoder tc;
        timecoderInit(tc, &serato(), rate, false);
        constexpr std::array<std::array<int, 2>, 4> quarters{
            {{-32768, 32767}, {32767, 32767}, {32767, -32768}, {-32768, -32768}}};
        for (int cycle = 0; cycle < 5000; ++cycle) {
            for (const auto& quarter : quarters) {
                submit(tc, quarter[0], quarter[1], 12);
                QVERIFY(tc.refLevel > 0);
            }
        }
        QVERIFY(tc.forwards);
        QVERIFY(std::abs(tc.pitch->v - 1.0) < 0.01);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Timecoder)
#include "tst_timecoder.moc"
