// The road of a frame through one deck's decoder, against a second one that shares no code with it: every
// published point has to be the same in all its bytes.

#include "support/datafolder.h"
#include "support/handfeddeck.h"
#include "support/plainpoints.h"
#include "support/testmain.h"

#include <QTest>

#include <array>
#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;

Singleton& shared() {
    return Singleton::instance();
}

using Deck = HandFedDeck;

} // namespace

class tst_ReceiveTimecodeDVSObject : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }

    void init() { usePlainSettings(u"serato_sideA_FullDVS"_s); }

    // ---- the whole road ----

    void everyPublishedPointIsTheSecondDecodersBitByBit_data() {
        QTest::addColumn<QString>("timecode");
        QTest::addColumn<int>("pattern");
        QTest::addColumn<double>("rate");
        QTest::addColumn<double>("outputRate");
        QTest::addColumn<double>("buffer");
        const auto row = [](const char* name, const char* timecode, MotionPattern pattern, double rate,
                            double outputRate, double buffer) {
            QTest::newRow(name) << QString::fromLatin1(timecode) << int(pattern) << rate << outputRate
                                << buffer;
        };
        row("generic, walk", "generic_V2", MotionPattern::Walk, 48000, 48000, 64);
        row("serato A, walk", "serato_sideA_FullDVS", MotionPattern::Walk, 48000, 44100, 64);
        row("serato B, flare", "serato_sideB_FullDVS", MotionPattern::Flare, 44100, 48000, 96);
        row("traktor A, walk", "traktor_sideA", MotionPattern::Walk, 44100, 44100, 2048);
        row("traktor B, scribble", "traktor_sideB", MotionPattern::Scribble, 96000, 48000, 128);
        row("serato A, stop", "serato_sideA_FullDVS", MotionPattern::Stop, 44100, 96000, 512);
        row("serato A, transform", "serato_sideA_FullDVS", MotionPattern::Transform, 22050.5, 44100, 256);
    }
    void everyPublishedPointIsTheSecondDecodersBitByBit() {
        QFETCH(QString, timecode);
        QFETCH(int, pattern);
        QFETCH(double, rate);
        QFETCH(double, outputRate);
        QFETCH(double, buffer);
        constexpr double seconds = 12.0;
        useRates(rate, outputRate, buffer);
        shared().setting()->setTimecode(timecode);
        shared().setting()->setVinylDeltaPositionA(33.25);
        shared().setting()->setVinylDeltaPositionB(200.5);
        for (const auto name : {deckA, deckB}) {
            auto deck = std::make_unique<Deck>(name);
            PlainDeck plain(name == deckA, timecode.toStdString(), rate, outputRate, buffer,
                            name == deckA ? 33.25 : 200.5);
            deck->decoder.initialise();
            deck->decoder.updateBPM();
            RecordOptions options;
            options.noisePercent = 0.5;
            options.dustPerSecond = 3.0;
            const SyntheticRecord record(
                rowOf(timecode), rate,
                Motion(static_cast<MotionPattern>(pattern), 92.0, 40.0, name == deckA ? 3 : 4), options);
            const auto frames = static_cast<std::uint64_t>(seconds * rate);
            Mode& mode = *shared().mode();
            for (std::uint64_t i = 0; i < frames; ++i) {
                if (i == frames / 3) { // a new beat grid in the middle
                    deck->points.clear();
                    deck->decoder.updateBPM();
                    plain.restart();
                }
                if (i % 512 == 0) {
                    moveFader(i % 3072 < 1024 ? 0 : i % 3072 < 2048 ? 127 : record.truth(i).crossfader);
                    i % 20480 < 10240 ? mode.modeMix_on() : mode.modeMix_off();
                    i % 8192 < 4096 ? mode.modeReverse_on() : mode.modeReverse_off();
                }
                const StereoFrame f = record.frame(i);
                deck->frame(f);
                plain.frame(f.left, f.right, plainSurroundings());
            }
            const CurvePointStore::View points = deck->points.view();
            QCOMPARE(points.size(), plain.points.size());
            QVERIFY(points.size() > 100);
            for (std::size_t i = 0; i < points.size(); ++i) {
                if (!samePoint(points[i], plain.points[i])) {
                    QFAIL(qPrintable(u"point %1 at frame %2: position %3 against %4"_s.arg(i)
                                         .arg(points[i].time)
                                         .arg(points[i].position, 0, 'g', 17)
                                         .arg(plain.points[i].position, 0, 'g', 17)));
                }
            }
            QVERIFY(plain.timecodeOn);
            QVERIFY(shared().timecode()->isTimecodeOn(name));
            QCOMPARE(shared().vinyl()->angle(name), plain.angle);
            QCOMPARE(shared().time()->frameCounter(name), plain.frameCounter);
            // The ring holds the latest of them.
            for (std::size_t i = points.size() - 31; i < points.size(); ++i) {
                CurvePoint point;
                QVERIFY(deck->ring.pop(point));
                QVERIFY(std::memcmp(&point, &points[i], CurvePointRing::payload) == 0);
            }
        }
    }

    // ---- before initialise ----

    void beforeInitialiseFramesOnlyAdvanceTheCounter() {
        Deck deck;
        const SyntheticRecord record(rowOf(u"serato_sideA_FullDVS"_s), 48000.0, Motion());
        deck.play(record, 0, 5000);
        QCOMPARE(shared().time()->frameCounter(deckA), 5000.0);
        QVERIFY(deck.points.view().empty());
        QCOMPARE(deck.ring.fill(), std::size_t{0});
        QVERIFY(!shared().timecode()->isTimecodeOn(deckA));
        QCOMPARE(deck.decoder.state().travelled, 0.0);
        QVERIFY(deck.decoder.definition().name().empty());
    }

    void aNewDecoderHasItsStartValues() {
        const Deck deck(deckB);
        const DeckState& state = deck.decoder.state();
        QCOMPARE(state.name, deckB);
        QCOMPARE(state.gate.lastCode, 0);
        QVERIFY(state.forwards);
        QVERIFY(!state.gate.jumpForward && !state.gate.jumpBackward && !state.filter.fastTracking);
        QCOMPARE(state.latencyMs.load(), 0.0);
        QCOMPARE(state.ringMaxFill.load(), std::size_t{0});
        QVERIFY(!deck.decoder.isFed());
    }

    void theStoreHasRoomOnceADecoderStandsOnIt() {
        CurvePointRing ring;
        CurvePointStore points;
        QVERIFY(!points.append(CurvePoint()));
        const ReceiveTimecodeDVSObject decoder(deckA, ring, points);
        QVERIFY(points.append(CurvePoint()));
    }

    // ---- initialise ----

    void initialiseSelectsTheStoredTimecode_data() {
        QTest::addColumn<QString>("timecode");
        QTest::addColumn<double>("scale");
        QTest::addColumn<double>("degrees");
        QTest::newRow("generic") << u"generic_V2"_s << 1.0 << 0.2;
        QTest::newRow("serato A") << u"serato_sideA_FullDVS"_s << 1.0 << 0.2;
        QTest::newRow("serato B") << u"serato_sideB_FullDVS"_s << 1.0 << 0.2;
        QTest::newRow("traktor A") << u"traktor_sideA"_s << 2.0 << 0.1;
        QTest::newRow("traktor B") << u"traktor_sideB"_s << 2.0 << 0.1;
    }
    void initialiseSelectsTheStoredTimecode() {
        QFETCH(QString, timecode);
        QFETCH(double, degrees);
        shared().setting()->setTimecode(timecode);
        Deck deck;
        deck.decoder.prepareTimecode();
        QVERIFY(deck.decoder.definition().name().empty()); // prepared, not chosen yet
        deck.decoder.initialise();
        QCOMPARE(QString::fromStdString(deck.decoder.definition().name()), timecode);
        QTEST(deck.decoder.state().codeScale, "scale");
        QCOMPARE(deck.decoder.state().degreesPerCode, degrees);
        QCOMPARE(deck.decoder.state().timecoder.dt, 1.0 / 48000.0);
        shared().setting()->setTimecode(u"generic_V2"_s);
        deck.decoder.initialise(); // and again another one
        QCOMPARE(deck.decoder.definition().name(), std::string("generic_V2"));
    }

    void anUnknownTimecodeIsTheUsualOne() {
        Deck deck;
        for (const QString& unknown : {u"serato_sideC"_s, u"foo"_s, QString()}) {
            shared().setting()->setTimecode(u"traktor_sideA"_s);
            deck.decoder.initialise();
            shared().setting()->setTimecode(unknown);
            deck.decoder.initialise();
            QCOMPARE(deck.decoder.definition().name(), std::string("generic_V2"));
            QCOMPARE(deck.decoder.state().codeScale, 1.0);
        }
        shared().setting()->setTimecode(u"generic_V2"_s);
    }

    void initialiseReadsTheDecksOwnZeroMark() {
        shared().setting()->setVinylDeltaPositionA(12.5);
        shared().setting()->setVinylDeltaPositionB(99.0);
        Deck a(deckA);
        Deck b(deckB);
        shared().vinyl()->setDeltaPosition(deckB, 1.0);
        a.decoder.initialise();
        QCOMPARE(shared().vinyl()->deltaPosition(deckA), 12.5);
        QCOMPARE(shared().vinyl()->deltaPosition(deckB), 1.0);
        b.decoder.initialise();
        QCOMPARE(shared().vinyl()->deltaPosition(deckB), 99.0);
    }

    void initialiseForgetsTheCodeAndTheTravelButNotTheTrackedPosition() {
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        deck.play(SyntheticRecord(rowOf(u"serato_sideA_FullDVS"_s), 48000.0, Motion()), 0, 20000);
        QVERIFY(shared().timecode()->isTimecodeOn(deckA));
        // Whatever playing has left or not: nothing of it may stand.
        auto& preset = const_cast<DeckState&>(deck.decoder.state());
        preset.gate.lastCode = 1234;
        preset.gate.jumpForward = preset.gate.jumpBackward = true;
        preset.travelled = 1.5;
        preset.lastPosition = 2.5;
        preset.forwards = false;
        preset.filter.predictedSpeed = 3.5;
        preset.filter.acceleration = 4.5;
        preset.filter.lastSpeed = 5.5;
        preset.filter.fastTracking = true;
        for (int i = 0; i < 5; ++i) {
            deck.ring.push(CurvePoint());
        }
        QVERIFY(deck.ring.fill() > 0 && deck.ring.maxFill() > 0);
        const double trackedX = deck.decoder.state().filter.trackedX;
        const double next = deck.decoder.state().nextPointTime;
        deck.decoder.initialise();
        const DeckState& state = deck.decoder.state();
        QVERIFY(!shared().timecode()->isTimecodeOn(deckA));
        QCOMPARE(state.gate.lastCode, 0);
        QCOMPARE(state.travelled, 0.0);
        QCOMPARE(state.lastPosition, 0.0);
        QCOMPARE(state.filter.predictedSpeed, 0.0);
        QCOMPARE(state.filter.acceleration, 0.0);
        QCOMPARE(state.filter.lastSpeed, 0.0);
        QVERIFY(!state.filter.fastTracking && !state.gate.jumpForward && !state.gate.jumpBackward);
        QVERIFY(trackedX != 0.0 && next != 0.0);
        QCOMPARE(state.filter.trackedX, trackedX);
        QCOMPARE(state.nextPointTime, next);
        QCOMPARE(deck.ring.fill(), std::size_t{0});
        QCOMPARE(deck.ring.maxFill(), std::size_t{0});
        QVERIFY(state.forwards);
    }

    void theCurveStepFollowsTheBufferAndBothRates_data() {
        QTest::addColumn<double>("rate");
        QTest::addColumn<double>("outputRate");
        QTest::addColumn<double>("buffer");
        QTest::newRow("equal rates") << 48000.0 << 48000.0 << 64.0;
        QTest::newRow("a slower deck") << 44100.0 << 48000.0 << 64.0;
        QTest::newRow("a faster deck") << 96000.0 << 44100.0 << 2048.0;
    }
    void theCurveStepFollowsTheBufferAndBothRates() {
        QFETCH(double, rate);
        QFETCH(double, outputRate);
        QFETCH(double, buffer);
        useRates(rate, outputRate, buffer);
        Deck deck;
        deck.decoder.initialise();
        QCOMPARE(deck.decoder.state().curveStep, buffer * rate / outputRate);
    }

    // ---- when points come ----

    void withAStepOf96APointComesAt0And96AndSoOn() {
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        for (int i = 0; i < 1000; ++i) {
            deck.frame({});
        }
        const CurvePointStore::View points = deck.points.view();
        QCOMPARE(points.size(), std::size_t{11});
        for (std::size_t i = 0; i < points.size(); ++i) {
            QCOMPARE(points[i].time, double(i) * 96.0);
        }
    }

    void withAFractionalStepAPointComesAtTheTruncatedSum() {
        useRates(44100.0, 48000.0, 64.0);
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        for (int i = 0; i < 100000; ++i) {
            deck.frame({});
        }
        const CurvePointStore::View points = deck.points.view();
        double sum = 0.0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            QCOMPARE(points[i].time, std::trunc(sum));
            sum += 64.0 * 44100.0 / 48000.0;
        }
        QVERIFY(sum > 100000.0 && points.size() > 1690);
    }

    void silenceGoesOnPublishingAtTheSameSpacing() {
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        const SyntheticRecord record(rowOf(u"serato_sideA_FullDVS"_s), 48000.0, Motion());
        deck.play(record, 0, 48000);
        for (int i = 0; i < 96000; ++i) {
            deck.frame({});
        }
        const CurvePointStore::View points = deck.points.view();
        QCOMPARE(points.size(), std::size_t{1500});
        QVERIFY(std::fabs(points.back().pitch) < 0.01);
        QVERIFY(std::fabs(points.back().position - points[points.size() - 100].position) < 1.0);
        QVERIFY(shared().timecode()->isTimecodeOn(deckA)); // until the next initialise
    }

    // ---- the code ----

    void aValidCodeRaisesTheFlagAndNothingElse() {
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        int announced = 0;
        connect(&deck.notifier, &AudioNotifier::audioLevelChanged, this, [&] { ++announced; });
        const SyntheticRecord record(rowOf(u"serato_sideA_FullDVS"_s), 48000.0, Motion());
        bool on = false;
        double before = 0.0;
        for (std::uint64_t i = 0; i < 96000; ++i) {
            deck.frame(record.frame(i));
            const DeckState& state = deck.decoder.state();
            if (!on && shared().timecode()->isTimecodeOn(deckA)) {
                on = true;
                QVERIFY(before > 0.0 && state.travelled >= before); // not reset
            }
            QCOMPARE(state.gate.lastCode, on ? -1 : 0);
            before = state.travelled;
        }
        QVERIFY(on);
        const CurvePointStore::View points = deck.points.view();
        for (std::size_t i = 0; i < points.size(); ++i) {
            QCOMPARE(points[i].timecode, -1);
        }
        deck.notifier.deliver();
        QCOMPARE(announced, 0);
    }

    void aDeckGainsItsZeroMarkAtItsFirstValidCode() {
        shared().setting()->setVinylDeltaPositionA(30.0);
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        const SyntheticRecord record(rowOf(u"serato_sideA_FullDVS"_s), 48000.0, Motion());
        std::array<int, 2> seen{};
        for (std::uint64_t i = 0; i < 48000; ++i) {
            const std::size_t count = deck.points.view().size();
            deck.frame(record.frame(i));
            if (deck.points.view().size() == count) {
                continue;
            }
            const CurvePoint& point = deck.points.view().back();
            const bool on = shared().timecode()->isTimecodeOn(deckA);
            QCOMPARE(point.rawAngle,
                     deck.decoder.state().degreesPerCode * point.position - (on ? 30.0 : 0.0));
            ++seen[on ? 1 : 0];
        }
        QVERIFY(seen[0] > 0 && seen[1] > 0);
    }

    void afterTheMarkWasSetTheNextAngleIsNearZero() {
        for (const auto name : {deckA, deckB}) {
            Deck deck(name);
            deck.decoder.initialise();
            deck.decoder.updateBPM();
            const SyntheticRecord record(rowOf(u"serato_sideA_FullDVS"_s), 48000.0, Motion());
            deck.play(record, 0, 50000);
            QVERIFY(shared().timecode()->isTimecodeOn(name));
            name == deckA ? shared().calculVinylDeltaPositionA() : shared().calculVinylDeltaPositionB();
            deck.play(record, 50000, 96);
            const double angle = deck.points.view().back().angle;
            QVERIFY2(angle < 1.0 || angle > 359.0, qPrintable(QString::number(angle)));
        }
    }

    // ---- distance ----

    void aSecondOfNominalSpeedAddsAbout978UnitsAt44100() {
        useRates(44100.0, 44100.0, 64.0);
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        const SyntheticRecord record(rowOf(u"serato_sideA_FullDVS"_s), 44100.0, Motion());
        deck.play(record, 0, 3 * 44100);
        const double before = deck.decoder.state().travelled;
        deck.play(record, 3 * 44100, 44100);
        const double added = deck.decoder.state().travelled - before;
        QVERIFY2(std::fabs(added - 978.0) < 10.0, qPrintable(QString::number(added)));
    }

    void traktorHasTwiceThePositionAndTheSameAngle() {
        std::array<double, 2> positions{};
        std::array<double, 2> angles{};
        const std::array<QString, 2> names{u"serato_sideA_FullDVS"_s, u"traktor_sideA"_s};
        for (std::size_t i = 0; i < 2; ++i) {
            shared().setting()->setTimecode(names[i]);
            Deck deck;
            deck.decoder.initialise();
            deck.decoder.updateBPM();
            const SyntheticRecord record(rowOf(names[i]), 48000.0, Motion());
            deck.play(record, 0, 96000);
            const CurvePoint before = deck.points.view().back();
            deck.play(record, 96000, 96000);
            const CurvePoint after = deck.points.view().back();
            positions[i] = after.position - before.position;
            angles[i] = after.rawAngle - before.rawAngle;
        }
        QVERIFY(positions[0] > 1000.0);
        QVERIFY2(std::fabs(positions[1] / positions[0] - 2.0) < 0.02,
                 qPrintable(QString::number(positions[1] / positions[0])));
        QVERIFY(std::fabs(angles[1] / angles[0] - 1.0) < 0.01);
    }

    void theDirectionIsTheTimecodersInverted() {
        for (const double speed : {1.0, -1.0}) {
            Deck deck;
            deck.decoder.initialise();
            deck.decoder.updateBPM();
            deck.play(SyntheticRecord(rowOf(u"serato_sideA_FullDVS"_s), 48000.0, Motion::constant(speed)), 0,
                      20000);
            QCOMPARE(deck.points.view().back().direction, speed > 0 ? 0 : 1);
            QCOMPARE(deck.points.view().back().position > 0, speed > 0);
            QVERIFY(deck.points.view().back().angle >= 0.0 && deck.points.view().back().angle < 360.0);
        }
    }

    void aStepOfMoreThan25ForgetsTheSpeedAndOneOfMoreThan100TheTrackedPosition_data() {
        QTest::addColumn<double>("speed");
        QTest::addColumn<double>("atLeast");
        QTest::addColumn<double>("below");
        QTest::newRow("slow") << 0.3 << 5.0 << 25.0;
        QTest::newRow("nominal") << 1.0 << 25.0 << 100.0;
        QTest::newRow("fast") << 3.0 << 100.0 << 1000.0;
    }
    void aStepOfMoreThan25ForgetsTheSpeedAndOneOfMoreThan100TheTrackedPosition() {
        QFETCH(double, speed);
        QFETCH(double, atLeast);
        QFETCH(double, below);
        useRates(48000.0, 48000.0, 2048.0);
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        const SyntheticRecord record(rowOf(u"serato_sideA_FullDVS"_s), 48000.0, Motion::constant(speed));
        deck.play(record, 0, 20 * 2048); // the next frame publishes
        TrackingFilter filter = deck.decoder.state().filter;
        const double last = deck.decoder.state().lastPosition;
        deck.play(record, 20 * 2048, 1);
        const DeckState& state = deck.decoder.state();
        const double step = std::fabs(state.lastPosition - last);
        QVERIFY2(step > atLeast && step < below, qPrintable(QString::number(step)));
        filter.step(state.timecoder.pitch->v, state.timecoder.pitch->x, state.timecoder.dt);
        QVERIFY(filter.predictedSpeed != 0.0 && filter.trackedX != state.timecoder.pitch->x);
        if (step > 25.0) {
            QCOMPARE(state.filter.predictedSpeed, 0.0);
            QCOMPARE(state.filter.acceleration, 0.0);
        } else {
            QCOMPARE(state.filter.predictedSpeed, filter.predictedSpeed);
            QCOMPARE(state.filter.acceleration, filter.acceleration);
        }
        QCOMPARE(state.filter.trackedX, step > 100.0 ? state.timecoder.pitch->x : filter.trackedX);
    }

    // ---- the ring ----

    void withoutAConsumerTheRingHoldsTheLatest31Points() {
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        for (int i = 0; i < 96 * 100; ++i) {
            deck.frame({});
        }
        QCOMPARE(deck.points.view().size(), std::size_t{100});
        QCOMPARE(deck.ring.fill(), std::size_t{31});
        QCOMPARE(deck.ring.maxFill(), std::size_t{31});
        QCOMPARE(deck.decoder.state().ringMaxFill.load(), std::size_t{31});
        QCOMPARE(deck.decoder.state().latencyMs.load(), 31.0 * 1000.0 / 48000.0);
        for (int i = 69; i < 100; ++i) {
            CurvePoint point;
            QVERIFY(deck.ring.pop(point));
            QCOMPARE(point.time, i * 96.0);
        }
    }

    void theLatencyIsTheFillAtTheOutputsRate() {
        useRates(48000.0, 44100.0, 96.0);
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        for (int i = 0; i < 5 * 110; ++i) {
            deck.frame({});
        }
        const std::size_t fill = deck.ring.fill();
        QVERIFY(fill >= 5);
        QCOMPARE(deck.decoder.state().latencyMs.load(), double(fill) * 1000.0 / 44100.0);
    }

    void onlyTheDecoderThatIsFedTellsItsLatency() {
        CurvePointRing ring;
        CurvePointStore points;
        ReceiveTimecodeDVSObject fed(deckA, ring, points);
        const ReceiveTimecodeDVSObject idle(deckA, ring, points);
        int fromFed = 0;
        int fromIdle = 0;
        size_t capacity = 0;
        connect(&fed, &ReceiveTimecodeDVSObject::s_ringBufferLatencyMs, this,
                [&](double, size_t, size_t slots_) {
                    ++fromFed;
                    capacity = slots_;
                });
        connect(&idle, &ReceiveTimecodeDVSObject::s_ringBufferLatencyMs, this, [&] { ++fromIdle; });
        fed.setFed(true);
        QTRY_VERIFY(fromFed >= 2);
        QCOMPARE(capacity, size_t{32});
        QCOMPARE(fromIdle, 0);
        fed.setFed(false);
    }

    void aFedDecoderMakesItsDeckLiveForAllDecodersOnIt() {
        CurvePointRing ring;
        CurvePointStore points;
        ReceiveTimecodeDVSObject one(deckA, ring, points);
        ReceiveTimecodeDVSObject other(deckA, ring, points);
        QVERIFY(!one.isDeckLive() && !other.isDeckLive());
        one.setFed(true);
        QVERIFY(one.isFed() && !other.isFed());
        QVERIFY(one.isDeckLive() && other.isDeckLive());
        other.setFed(false); // wasn't; the deck stays the first one's
        QVERIFY(one.isDeckLive());
        one.setFed(false);
        QVERIFY(!other.isDeckLive());
    }

    // ---- a new beat grid ----

    void aNewGridRestartsTheClockAndKeepsTheLock() {
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        const SyntheticRecord record(rowOf(u"serato_sideA_FullDVS"_s), 48000.0, Motion());
        deck.play(record, 0, 48000);
        Time& time = *shared().time();
        time.setCursor(deckA, 55.0);
        time.setCursor(deckB, 66.0);
        time.setFrameCounter(deckB, 77.0);
        shared().timecode()->setPositionDelta(deckA, 5.0);
        shared().timecode()->setPositionDelta(deckB, 6.0);
        const double trackedX = deck.decoder.state().filter.trackedX;
        const double speed = deck.decoder.state().timecoder.pitch->v;
        const double before = Time::msecsNow();
        deck.decoder.updateBPM();
        const DeckState& state = deck.decoder.state();
        QCOMPARE(time.cursor(deckA), 0.0);
        QCOMPARE(time.frameCounter(deckA), 0.0);
        QVERIFY(time.startTime(deckA) >= before);
        QCOMPARE(time.cursor(deckB), 66.0);
        QCOMPARE(time.frameCounter(deckB), 77.0);
        QCOMPARE(shared().timecode()->positionDelta(deckA), 0.0);
        QCOMPARE(shared().timecode()->positionDelta(deckB), 6.0);
        QCOMPARE(state.nextPointTime, 0.0);
        QCOMPARE(state.travelled, 0.0);
        QCOMPARE(state.lastPosition, 0.0);
        QCOMPARE(state.gate.lastCode, 0);
        QCOMPARE(state.filter.lastSpeed, 0.0);
        QCOMPARE(deck.ring.fill(), std::size_t{0});
        QCOMPARE(deck.ring.maxFill(), std::size_t{0});
        // These stand.
        QCOMPARE(state.filter.trackedX, trackedX);
        QCOMPARE(state.timecoder.pitch->v, speed);
        QVERIFY(shared().timecode()->isTimecodeOn(deckA));
        QVERIFY(timecoderGetPosition(const_cast<Timecoder&>(state.timecoder), nullptr) != -1);
    }

    void aRestartOnTheCallbackEmptiesTheCurveItFeeds() {
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.setFed(true);
        deck.decoder.restartRT();
        for (int i = 0; i < 1000; ++i) {
            deck.frame({});
        }
        QCOMPARE(deck.points.view().size(), std::size_t{11});
        deck.decoder.restartRT();
        QVERIFY(deck.points.view().empty());
        deck.frame({});
        QCOMPARE(deck.points.view().size(), std::size_t{1});
        QCOMPARE(deck.points.view()[0].time, 0.0);
        deck.decoder.setFed(false);
    }

    void aRestartOfADeckThatNothingFeedsLeavesTheCurveToTheGui() {
        Deck deck;
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        for (int i = 0; i < 1000; ++i) {
            deck.frame({});
        }
        deck.decoder.updateBPM();
        QCOMPARE(deck.points.view().size(), std::size_t{11});
    }

    // ---- the fader ----

    void aPointSaysWhetherTheFaderLetsItsDeckBeHeard() {
        Mode& mode = *shared().mode();
        for (const auto name : {deckA, deckB}) {
            Deck deck(name);
            deck.decoder.initialise();
            const auto soundOn = [&](int fader, bool mix, bool reverse) {
                moveFader(fader);
                mix ? mode.modeMix_on() : mode.modeMix_off();
                reverse ? mode.modeReverse_on() : mode.modeReverse_off();
                deck.decoder.updateBPM();
                deck.frame({}); // the first frame publishes
                return int(deck.points.view().back().soundOn);
            };
            const bool a = name == deckA;
            QCOMPARE(soundOn(63, false, false), 1);
            QCOMPARE(soundOn(63, true, true), 1);
            QCOMPARE(soundOn(0, false, false), 0);
            QCOMPARE(soundOn(127, false, true), 0);
            QCOMPARE(soundOn(127, true, false), a ? 0 : 1);
            QCOMPARE(soundOn(127, true, true), a ? 1 : 0);
            QCOMPARE(soundOn(0, true, false), a ? 1 : 0);
            QCOMPARE(soundOn(0, true, true), a ? 0 : 1);
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_ReceiveTimecodeDVSObject)
#include "tst_receivetimecodedvsobject.moc"
