#include "painter/xrange.h"

#include "model/wholenumber.h"
#include "support/testmain.h"

#include <QTest>

#include <limits>

namespace {

constexpr double beat = 32000.0;
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

} // namespace

class TestXRange : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aSpanOfOneBeatIsRefused() {
        QVERIFY(!acceptsRange({0, 32000}, beat));
        QVERIFY(acceptsRange({0, 32001}, beat));
    }
    void aSpanOf36000BeatsIsRefused() {
        QVERIFY(!acceptsRange({0, 36000 * 100}, 100.0));
        QVERIFY(acceptsRange({0, 36000 * 100 - 1}, 100.0));
    }
    void theSpanCountsWithoutItsSign() {
        QCOMPARE(absoluteSpan({5000, -60000}), 65000);
        QVERIFY(acceptsRange({5000, -60000}, beat));
        QCOMPARE(absoluteSpan({lowest, highest}), (std::int64_t{1} << 32) - 1);
    }
    void withoutATempoEverySpanIsRefused_data() {
        QTest::addColumn<double>("beatLength");
        QTest::newRow("tempo 0") << infinite;
        QTest::newRow("no beat") << 0.0;
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
    }
    void withoutATempoEverySpanIsRefused() {
        QFETCH(double, beatLength);
        for (const std::int32_t span : {0, 1, 48000, 100000000}) {
            QVERIFY(!acceptsRange({0, span}, beatLength));
        }
    }
    void aLooperPutsTheCursorNearTheRightEdge() {
        for (const auto mode : {ModelActivatedMode::Looper, ModelActivatedMode::Undefined}) {
            const CursorWindow window = cursorWindow(mode, 16.0, beat);
            QCOMPARE(window.before, -0.96 * 16.0 * beat);
            QCOMPARE(window.after, 0.04 * 16.0 * beat);
        }
    }
    void aReferencePutsTheCursorAtTwoThirds() {
        for (const auto mode : {ModelActivatedMode::Recording, ModelActivatedMode::Training}) {
            const CursorWindow window = cursorWindow(mode, 32.0, beat);
            QCOMPARE(window.before, -2.0 / 3.0 * 32.0 * beat);
            QCOMPARE(window.after, 1.0 / 3.0 * 32.0 * beat);
        }
    }
    void theWindowAroundTheCursorIsTruncated() {
        const CursorWindow window{-100.75, 50.75};
        QCOMPARE(window.around(0.0), (FrameRange{-100, 50}));
        QCOMPARE(window.around(1000.0), (FrameRange{899, 1050}));
    }
    void noBeatsShownLeaveNoRange() {
        QVERIFY(!acceptsRange(cursorWindow(ModelActivatedMode::Looper, 0.0, beat).around(480000.0), beat));
    }
    void fittingNothingChangesNothing() {
        QVERIFY(!fittingRange(std::nullopt, std::nullopt, beat));
        QVERIFY(!fittingRange(FrameRange{0, 0}, std::nullopt, beat));
    }
    void fittingOneCurve() {
        QCOMPARE(fittingRange(FrameRange{64, 96000}, std::nullopt, 1000.9), (FrameRange{0, 97000}));
        QCOMPARE(fittingRange(std::nullopt, FrameRange{64, 96000}, 1000.9), (FrameRange{0, 97000}));
    }
    void fittingBothCurvesTakesTheOuterTimes() {
        QCOMPARE(fittingRange(FrameRange{100, 5000}, FrameRange{-300, 4000}, 10.0), (FrameRange{-300, 5010}));
        QCOMPARE(fittingRange(FrameRange{100, 5000}, FrameRange{300, 7000}, 10.0), (FrameRange{0, 7010}));
    }
    void aMainCurveWithoutTimeLeavesItToTheReference() {
        QCOMPARE(fittingRange(FrameRange{0, 0}, FrameRange{300, 7000}, 10.0), (FrameRange{0, 7010}));
    }
    void aFitBeyondTheCounterEndsAtItsLastFrame() {
        QCOMPARE(fittingRange(FrameRange{0, highest - 5}, std::nullopt, 32000.0), (FrameRange{0, highest}));
    }
    void truncationStaysWithinTheCounter() {
        QCOMPARE(truncated(2.9), 2);
        QCOMPARE(truncated(-2.9), -2);
        QCOMPARE(truncated(1e300), highest);
        QCOMPARE(truncated(-infinite), lowest);
        QCOMPARE(truncated(std::numeric_limits<double>::quiet_NaN()), 0);
    }
};

GRAMO_TEST_GUILESS_MAIN(TestXRange)
#include "tst_xrange.moc"
