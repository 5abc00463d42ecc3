// What the road of a frame does behind an open code gate. The program's own resets leave the gate so that the
// first code closes it; here the stored code is set by hand.

#include "support/datafolder.h"
#include "support/handfeddeck.h"
#include "support/plainpoints.h"
#include "support/testmain.h"

#include <QTest>

#include <array>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr double rate = 48000.0;
constexpr double never = 1e9; // frames: no point within a test
constexpr std::uint64_t lockedAt = 30000;

Singleton& shared() {
    return Singleton::instance();
}

int codeOf(HandFedDeck& deck) {
    return timecoderGetPosition(deck.state().timecoder, nullptr);
}

/// A deck on a record at nominal speed, in lock, with the gate open at the present code. It has published one
/// point, without a code, and publishes the next one when a test says so.
struct OpenDeck {
    HandFedDeck deck;
    SyntheticRecord record{rowOf(u"serato_sideA_FullDVS"_s), rate, Motion()};
    std::uint64_t next = 0;

    OpenDeck() {
        useRates(rate, rate, never);
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        deck.play(record, 0, lockedAt);
        next = lockedAt;
        deck.state().gate.lastCode = codeOf(deck);
    }
    void step() { deck.frame(record.frame(next++)); }
    /// Up to the frame before the one that brings the next code.
    void approachNextCode() {
        Timecoder& ahead = deck.state().timecoder;
        const int code = codeOf(deck);
        while (true) {
            // The record is at nominal speed: its bits come every 48 frames.
            if (ahead.timecodeTicker == 48) {
                QCOMPARE(codeOf(deck), code);
                return;
            }
            step();
        }
    }
    void publishNow() { deck.state().nextPointTime = shared().time()->frameCounter(deckA); }
    const CurvePoint& lastPoint() const { return deck.points.view().back(); }
};

/// The same state on both decks, bit by bit.
bool sameState(const DeckState& a, const PlainDeck& b) {
    const TrackingFilter& f = a.filter;
    return a.gate.lastCode == b.lastCode && a.gate.jumpForward == b.jumpForward &&
           a.gate.jumpBackward == b.jumpBackward && sameBits(a.travelled, b.travelled) &&
           sameBits(a.lastPosition, b.lastPosition) && sameBits(a.nextPointTime, b.nextPointTime) &&
           sameBits(f.trackedX, b.trackedX) && sameBits(f.predictedSpeed, b.predictedSpeed) &&
           sameBits(f.acceleration, b.acceleration) && sameBits(f.lastSpeed, b.lastSpeed) &&
           f.fastTracking == b.fastTracking && a.forwards == b.tc.forwards &&
           sameBits(a.timecode->positionDelta(a.name), b.positionDelta) &&
           a.timecode->isTimecodeOn(a.name) == b.timecodeOn && sameBits(a.vinyl->angle(a.name), b.angle);
}

// Play, and the needle is lifted and set down elsewhere: far ahead, far back, and a little further on. Then
// the hand turns the record back.
MotionState needleDrops(double t) {
    constexpr std::array drops{0.0, 5.0, 5.0 - 9.0, -4.0 + 0.07, -3.93 + 0.04};
    const double place = drops[static_cast<std::size_t>(std::min(t / 0.8, 4.0))];
    return t < 4.2 ? MotionState{40.0 + place + t, 1.0, 63} : MotionState{40.0 + place + 8.4 - t, -1.0, 63};
}

/// The position that stands `step` from `position`, so that their difference is `step` exactly.
double positionAt(double position, double step) {
    double at = position - step;
    for (int tries = 0; tries < 8 && std::fabs(position - at) != std::fabs(step); ++tries) {
        const bool near = std::fabs(position - at) < std::fabs(step);
        at = std::nextafter(at, (step > 0) == near ? -1e9 : 1e9);
    }
    return at;
}

} // namespace

class tst_ReceiveTimecodeDVSObjectGate : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }
    void init() { usePlainSettings(u"serato_sideA_FullDVS"_s); }

    // ---- the whole road ----

    void behindAnOpenGateEveryStepIsTheSecondDecks_data() {
        QTest::addColumn<QString>("timecode");
        QTest::addColumn<double>("buffer");
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            for (const double buffer : {64.0, 700.0, 4096.0}) {
                QTest::addRow("%s, %.0f", def.name().c_str(), buffer)
                    << QString::fromStdString(def.name()) << buffer;
            }
        }
    }
    void behindAnOpenGateEveryStepIsTheSecondDecks() {
        QFETCH(QString, timecode);
        QFETCH(double, buffer);
        shared().setting()->setTimecode(timecode);
        shared().setting()->setVinylDeltaPositionA(33.25);
        useRates(rate, rate, buffer);
        HandFedDeck deck;
        PlainDeck plain(true, timecode.toStdString(), rate, rate, buffer, 33.25);
        deck.decoder.initialise();
        deck.decoder.updateBPM();
        shared().vinyl()->setAngle(deckA, plain.angle);
        const SyntheticRecord record(rowOf(timecode), rate, Motion::custom(needleDrops));
        int anchors = 0;
        int forward = 0;
        int backward = 0;
        int unsteady = 0;
        int lost = 0;
        const PlainSurroundings now = plainSurroundings();
        deck.state().gate.lastCode = 1001; // the lowest stored code that lets codes pass
        plain.lastCode = 1001;
        for (std::uint64_t i = 0; i < static_cast<std::uint64_t>(5.0 * rate); ++i) {
            const StereoFrame f = record.frame(i);
            const int codeBefore = plain.lastCode;
            const double positionBefore = plain.lastPosition;
            deck.frame(f);
            plain.frame(f.left, f.right, now);
            QVERIFY2(sameState(deck.decoder.state(), plain), qPrintable(u"frame %1"_s.arg(i)));
            anchors += plain.lastCode != codeBefore ? 1 : 0;
            forward += plain.lastCode > codeBefore + 500 ? 1 : 0;
            backward += plain.lastCode < codeBefore - 500 ? 1 : 0;
            const double step = std::fabs(plain.lastPosition - positionBefore);
            unsteady += step > 25.0 && step <= 100.0 ? 1 : 0;
            lost += step > 100.0 ? 1 : 0;
        }
        const CurvePointStore::View points = deck.points.view();
        QCOMPARE(points.size(), plain.points.size());
        int coded = 0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            QVERIFY2(samePoint(points[i], plain.points[i]), qPrintable(u"point %1"_s.arg(i)));
            coded += points[i].timecode != -1 ? 1 : 0;
        }
        // Everything behind the gate was met: the first code is a jump ahead as well.
        QVERIFY2(anchors > 2000, qPrintable(QString::number(anchors)));
        QCOMPARE(forward, 2);
        QCOMPARE(backward, 1);
        QVERIFY2(unsteady > 0 && lost > 2, qPrintable(u"%1, %2"_s.arg(unsteady).arg(lost)));
        QVERIFY(coded > 20);
        QVERIFY(plain.announced);
    }

    // ---- a code behind the gate ----

    void aNewCodeRestartsTravelAndTrackingAndTheSameOneLeavesThem() {
        OpenDeck open;
        DeckState& state = open.deck.state();
        int anchors = 0;
        for (int i = 0; i < 1000; ++i) {
            // Values that no road leads to: whatever is taken over from them shows.
            state.travelled = 1000.0;
            state.filter.trackedX = 0.25;
            state.filter.predictedSpeed = 3.0;
            state.filter.acceleration = 200.0;
            TrackingFilter expected = state.filter;
            double travelled = state.travelled;
            const int before = state.gate.lastCode;
            open.step();
            const int code = codeOf(open.deck);
            if (code != before) {
                QCOMPARE(code, before + 1);
                ++anchors;
                travelled = 0.0;
                expected.trackedX = state.timecoder.pitch->x;
                expected.predictedSpeed = 0.0;
                expected.acceleration = 0.0;
            }
            const TrackingFilter::Estimate e =
                expected.step(state.timecoder.pitch->v, state.timecoder.pitch->x, state.timecoder.dt);
            QCOMPARE(state.gate.lastCode, code);
            QVERIFY(!state.gate.jumpForward && !state.gate.jumpBackward);
            QVERIFY(sameBits(state.travelled, travelled + (state.timecoder.zeroAlpha * e.v + e.x)));
            QVERIFY(sameBits(state.filter.trackedX, expected.trackedX));
            QVERIFY(sameBits(state.filter.acceleration, expected.acceleration));
            QVERIFY(sameBits(state.filter.predictedSpeed, expected.predictedSpeed));
            QVERIFY(sameBits(state.filter.lastSpeed, state.timecoder.pitch->v));
        }
        QVERIFY2(anchors >= 20, qPrintable(QString::number(anchors)));
    }

    void aCodeMoreThan500FromTheStoredOneIsAJump_data() {
        QTest::addColumn<int>("stored"); // from the code that comes
        QTest::addColumn<bool>("forward");
        QTest::addColumn<bool>("backward");
        QTest::newRow("500 ahead") << -500 << false << false;
        QTest::newRow("501 ahead") << -501 << true << false;
        QTest::newRow("far ahead") << -20000 << true << false;
        QTest::newRow("500 back") << 500 << false << false;
        QTest::newRow("501 back") << 501 << false << true;
        QTest::newRow("far back") << 20000 << false << true;
    }
    void aCodeMoreThan500FromTheStoredOneIsAJump() {
        QFETCH(int, stored);
        OpenDeck open;
        open.approachNextCode();
        DeckState& state = open.deck.state();
        const int coming = codeOf(open.deck) + 1;
        state.gate.lastCode = coming + stored;
        const double travelled = state.travelled;
        open.step();
        QCOMPARE(codeOf(open.deck), coming);
        QCOMPARE(state.gate.lastCode, coming);
        QVERIFY(state.travelled < travelled && std::fabs(state.travelled) < 0.1); // restarted, jump or not
        QTEST(state.gate.jumpForward, "forward");
        QTEST(state.gate.jumpBackward, "backward");
        QVERIFY(shared().timecode()->isTimecodeOn(deckA));
    }

    void aCodeRaisesTheDecksFlagWhateverTheGateSays() {
        for (const int stored : {-1, 1000, 1001, 30000}) {
            OpenDeck open;
            shared().timecode()->modeTimecode_off(deckA);
            open.deck.state().gate.lastCode = stored;
            open.step();
            QVERIFY2(shared().timecode()->isTimecodeOn(deckA), qPrintable(QString::number(stored)));
            QCOMPARE(open.deck.state().gate.lastCode, stored > 1000 ? codeOf(open.deck) : -1);
        }
    }

    void theCurvesGetWordOfACodeWhileTheirFirstPointHasNone_data() {
        QTest::addColumn<int>("first"); // code of the first point; 0: there is no point
        QTest::addColumn<bool>("opened");
        QTest::addColumn<int>("announced");
        QTest::newRow("first point without a code") << -1 << true << 1;
        QTest::newRow("first point with a code") << 5000 << true << 0;
        QTest::newRow("no point yet") << 0 << true << 0;
        QTest::newRow("closed gate") << -1 << false << 0;
    }
    void theCurvesGetWordOfACodeWhileTheirFirstPointHasNone() {
        QFETCH(int, first);
        QFETCH(bool, opened);
        OpenDeck open;
        open.deck.points.clear();
        if (first != 0) {
            CurvePoint point;
            point.timecode = first;
            open.deck.points.append(point);
            point.timecode = first == -1 ? 5000 : -1; // only the first one counts
            open.deck.points.append(point);
        }
        int announced = 0;
        connect(&open.deck.notifier, &AudioNotifier::audioLevelChanged, this, [&] { ++announced; });
        open.deck.state().gate.lastCode = opened ? codeOf(open.deck) : -1;
        open.approachNextCode();
        open.deck.notifier.deliver();
        QCOMPARE(announced, 0); // the same code over and over
        open.step();
        QCOMPARE(announced, 0); // nothing is emitted on the callback
        open.deck.notifier.deliver();
        QTEST(announced, "announced");
    }

    // ---- the point ----

    void aPointCarriesItsCodeAndCountsFromIt() {
        OpenDeck open;
        open.publishNow();
        open.step();
        const DeckState& state = open.deck.decoder.state();
        const int code = codeOf(open.deck);
        QVERIFY(code > 1000);
        QCOMPARE(open.lastPoint().timecode, code);
        QCOMPARE(open.lastPoint().position, state.travelled + code);
        QCOMPARE(open.lastPoint().rawAngle, state.degreesPerCode * (state.travelled + code));
        // The closed gate's -1 is no place to count from.
        open.deck.state().gate.lastCode = -1;
        open.publishNow();
        open.step();
        QCOMPARE(open.lastPoint().timecode, -1);
        QCOMPARE(open.lastPoint().position, state.travelled);
    }

    void aJumpGoesIntoTheDeltaOfThePointAfterItAndOfAllLaterOnes_data() {
        QTest::addColumn<bool>("forward");
        QTest::addColumn<bool>("backward");
        QTest::newRow("no jump") << false << false;
        QTest::newRow("forward") << true << false;
        QTest::newRow("backward") << false << true;
        QTest::newRow("one of each between two points") << true << true;
    }
    void aJumpGoesIntoTheDeltaOfThePointAfterItAndOfAllLaterOnes() {
        QFETCH(bool, forward);
        QFETCH(bool, backward);
        constexpr double last = 12345.5;
        constexpr double before = 7.25;
        shared().setting()->setVinylDeltaPositionA(30.0);
        OpenDeck open;
        DeckState& state = open.deck.state();
        state.lastPosition = last;
        state.gate.jumpForward = forward;
        state.gate.jumpBackward = backward;
        shared().timecode()->setPositionDelta(deckA, before);
        shared().timecode()->setPositionDelta(ModelGraph::INPUT_DECKB, 1.5);
        open.step(); // no point: the jump waits for one
        QCOMPARE(state.gate.jumpForward, forward);
        QCOMPARE(state.gate.jumpBackward, backward);
        QCOMPARE(shared().timecode()->positionDelta(deckA), before);
        open.publishNow();
        open.step();
        const double position = state.travelled + state.gate.lastCode;
        double delta = before;
        if (forward) {
            delta = delta - (position - last);
        }
        if (backward) {
            delta = delta + (last - position);
        }
        QVERIFY(!state.gate.jumpForward && !state.gate.jumpBackward);
        QVERIFY(sameBits(shared().timecode()->positionDelta(deckA), delta));
        QCOMPARE(shared().timecode()->positionDelta(ModelGraph::INPUT_DECKB), 1.5);
        QVERIFY(sameBits(open.lastPoint().position, delta + position));
        if (forward != backward) { // the curve goes on where it was
            QVERIFY(std::fabs(open.lastPoint().position - (before + last)) < 1e-9);
        }
        // Neither the angle nor the next step knows of the delta.
        QVERIFY(sameBits(open.lastPoint().rawAngle, state.degreesPerCode * position - 30.0));
        QVERIFY(sameBits(state.lastPosition, position));
        open.publishNow();
        open.step();
        QVERIFY(sameBits(shared().timecode()->positionDelta(deckA), delta));
        QVERIFY(sameBits(open.lastPoint().position, delta + (state.travelled + state.gate.lastCode)));
    }

    void aStepOfMoreThan25ForgetsTheSpeedAndOneOfMoreThan100TheTrackedPosition_data() {
        QTest::addColumn<double>("step");
        QTest::addColumn<bool>("speedKept");
        QTest::addColumn<bool>("positionKept");
        const double inf = std::numeric_limits<double>::infinity();
        QTest::newRow("none") << 0.0 << true << true;
        QTest::newRow("25") << 25.0 << true << true;
        QTest::newRow("just more than 25") << std::nextafter(25.0, inf) << false << true;
        QTest::newRow("26") << 26.0 << false << true;
        QTest::newRow("100") << 100.0 << false << true;
        QTest::newRow("just more than 100") << std::nextafter(100.0, inf) << false << false;
        QTest::newRow("a jump") << 5000.0 << false << false;
        QTest::newRow("25 back") << -25.0 << true << true;
        QTest::newRow("26 back") << -26.0 << false << true;
        QTest::newRow("100 back") << -100.0 << false << true;
        QTest::newRow("101 back") << -101.0 << false << false;
    }
    void aStepOfMoreThan25ForgetsTheSpeedAndOneOfMoreThan100TheTrackedPosition() {
        QFETCH(double, step);
        QFETCH(bool, speedKept);
        QFETCH(bool, positionKept);
        useRates(rate, rate, never);
        // The same silent frame twice: the first deck says where the second one will be.
        double position = 0.0;
        TrackingFilter kept;
        for (const bool judged : {false, true}) {
            HandFedDeck deck;
            deck.decoder.initialise();
            deck.decoder.updateBPM();
            DeckState& state = deck.state();
            state.filter.acceleration = 100.0;
            state.filter.trackedX = 0.125;
            state.lastPosition = judged ? positionAt(position, step) : 0.0;
            deck.frame({});
            QCOMPARE(deck.points.view().size(), std::size_t{1});
            if (!judged) {
                position = state.lastPosition;
                kept = state.filter;
                QVERIFY(position != 0.0 && std::fabs(position) < 1.0);
                QVERIFY(kept.predictedSpeed != 0.0 && kept.acceleration != 0.0 && kept.trackedX != 0.0);
                QCOMPARE(std::fabs(position - positionAt(position, step)), std::fabs(step));
                continue;
            }
            QVERIFY(sameBits(state.lastPosition, position));
            QCOMPARE(state.filter.predictedSpeed, speedKept ? kept.predictedSpeed : 0.0);
            QCOMPARE(state.filter.acceleration, speedKept ? kept.acceleration : 0.0);
            QCOMPARE(state.filter.trackedX, positionKept ? kept.trackedX : state.timecoder.pitch->x);
            QVERIFY(sameBits(state.filter.lastSpeed, kept.lastSpeed));
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_ReceiveTimecodeDVSObjectGate)
#include "tst_receivetimecodedvsobject_gate.moc"
