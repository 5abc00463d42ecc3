#include "painter/zoom.h"

#include "support/testmain.h"

#include <QTest>

#include <limits>

namespace {

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

// A thousand frames a pixel: the left edge of the plot at 45 is frame 0, pixel 1200 is the last one.
constexpr double plotWidth = 1155.0;
constexpr GraphRange wide{0.0, 1155000.0};

} // namespace

class TestZoom : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // ---- pixels ----

    void aPlaceGoesToItsNearestPixel() {
        QCOMPARE(nearestPixel({10.4, 20.6}), QPoint(10, 21));
        QCOMPARE(nearestPixel({10.5, -10.5}), QPoint(11, -11));
        QCOMPARE(nearestPixel({-0.4, 0.49999999999999994}), QPoint(0, 0));
    }
    void aPlaceFarAwayIsHeldWithin32Bits() {
        QCOMPARE(nearestPixel({1e300, -1e300}), QPoint(highest, lowest));
        QCOMPARE(nearestPixel({infinite, -infinite}), QPoint(highest, lowest));
        QCOMPARE(nearestPixel({2147483646.6, -2147483648.4}), QPoint(highest, lowest));
        QCOMPARE(nearestPixel({noNumber, noNumber}), QPoint(0, 0));
    }
    void theLeftMarginIsNoPartOfThePlot() {
        QCOMPARE(frameAt(wide, plotWidth, 45.0), 0.0);
        QCOMPARE(frameAt(wide, plotWidth, 46.0), 1000.0);
        QCOMPARE(frameAt(wide, plotWidth, 0.0), -45000.0);
        QCOMPARE(frameAt({-500.0, 1154500.0}, plotWidth, 45.0), -500.0);
    }
    void aPlotWithoutWidthHasNoFramesPerPixel() {
        for (const double width : {0.0, -5.0, noNumber}) {
            QCOMPARE(GraphScale::framesPerPixel(wide, width), 0.0);
            QCOMPARE(frameAt({70.0, 9000.0}, width, 600.0), 70.0);
        }
    }

    // ---- the wheel ----

    void zoomingInHalvesTheSpanAboutThePointer() {
        QCOMPARE(wheelZoom(wide, plotWidth, 45.0, 120), (FrameRange{0, 577500}));
        QCOMPARE(wheelZoom(wide, plotWidth, 1200.0, 120), (FrameRange{577500, 1155000}));
        QCOMPARE(wheelZoom(wide, plotWidth, 245.0, 120), (FrameRange{100000, 677500}));
    }
    void zoomingOutAddsHalfTheSpanAboutThePointer() {
        QCOMPARE(wheelZoom(wide, plotWidth, 45.0, -120), (FrameRange{0, 1732500}));
        QCOMPARE(wheelZoom(wide, plotWidth, 1200.0, -120), (FrameRange{-577500, 1155000}));
        QCOMPARE(wheelZoom(wide, plotWidth, 245.0, -120), (FrameRange{-100000, 1632500}));
    }
    void anAngleOf1ZoomsInAndEverySmallerOneOut() {
        QCOMPARE(wheelZoom(wide, plotWidth, 45.0, 1), (FrameRange{0, 577500}));
        QCOMPARE(wheelZoom(wide, plotWidth, 45.0, 0), (FrameRange{0, 1732500}));
        QCOMPARE(wheelZoom(wide, plotWidth, 45.0, -1), (FrameRange{0, 1732500}));
    }
    void thePointersFrameStaysUnderIt_data() {
        QTest::addColumn<double>("pointer");
        QTest::addColumn<int>("angle");
        for (const int pointer : {45, 46, 300, 777, 1199, 1200}) {
            QTest::addRow("in at %d", pointer) << double(pointer) << 120;
            QTest::addRow("out at %d", pointer) << double(pointer) << -120;
        }
    }
    void thePointersFrameStaysUnderIt() {
        QFETCH(double, pointer);
        QFETCH(int, angle);
        const GraphRange before{-4321.0, 7654321.0};
        const FrameRange after = wheelZoom(before, plotWidth, pointer, angle);
        const GraphRange x{double(after.from), double(after.to)};
        // Both ends are truncated.
        QVERIFY(std::abs(frameAt(x, plotWidth, pointer) - frameAt(before, plotWidth, pointer)) <= 1.0);
        QVERIFY(std::abs(x.span() - before.span() * (angle > 0 ? 0.5 : 1.5)) <= 1.0);
    }
    void thePointersPixelIsTruncated() {
        QCOMPARE(wheelZoom(wide, plotWidth, 245.99, 120), wheelZoom(wide, plotWidth, 245.0, 120));
        // Left of the plot as well: 44.9 is pixel 44.
        QCOMPARE(wheelZoom(wide, plotWidth, 44.9, 120), wheelZoom(wide, plotWidth, 44.0, 120));
        QCOMPARE(wheelZoom(wide, plotWidth, 44.0, 120), (FrameRange{-500, 577000}));
    }
    void bothEndsOfAZoomAreTruncatedTowards0() {
        // The pointer at frame 0: ends at -2.5 and 501.5.
        QCOMPARE(wheelZoom({-5.0, 1003.0}, 1008.0, 50.0, 120), (FrameRange{-2, 501}));
        QCOMPARE(wheelZoom({-5.0, 1003.0}, 1008.0, 50.0, -120), (FrameRange{-7, 1504}));
    }
    void theWheelChangesNothingOnAPlotWithoutWidth() {
        for (const double width : {0.0, -1.0}) {
            for (const int angle : {120, -120}) {
                QCOMPARE(wheelZoom({500.0, 90000.0}, width, 20.0, angle), (FrameRange{500, 90000}));
            }
        }
    }

    // ---- a selection ----

    void aSelectionTakesTheFramesBetweenItsEnds() {
        QCOMPARE(selectedRange(wide, plotWidth, 145, 345), (FrameRange{100000, 300000}));
        QCOMPARE(selectedRange({1000.0, 1156000.0}, plotWidth, 145, 345), (FrameRange{101000, 301000}));
    }
    void aSelectionToTheLeftIsTheSame() {
        QCOMPARE(selectedRange(wide, plotWidth, 345, 145), (FrameRange{100000, 300000}));
    }
    void aSelectionMayLeaveThePlot() {
        QCOMPARE(selectedRange(wide, plotWidth, 0, 1300), (FrameRange{-45000, 1255000}));
    }
    void bothEndsOfASelectionAreTruncated() {
        // 1.25 frames a pixel.
        QCOMPARE(selectedRange({0.0, 1250.0}, 1000.0, 46, 48), (FrameRange{1, 3}));
        QCOMPARE(selectedRange({0.0, 1250.0}, 1000.0, 42, 44), (FrameRange{-3, -1}));
    }
    void aSelectionWithoutExtentHasASpanOf0() {
        QCOMPARE(absoluteSpan(selectedRange(wide, plotWidth, 400, 400)), 0);
        QCOMPARE(absoluteSpan(selectedRange(wide, 0.0, 100, 400)), 0);
    }

    // ---- a drag ----

    void aDragMovesThePictureWithThePointer() {
        QCOMPARE(draggedRange(wide, plotWidth, 500, 300), (FrameRange{200000, 1355000}));
        QCOMPARE(draggedRange(wide, plotWidth, 300, 500), (FrameRange{-200000, 955000}));
    }
    void aClickMovesNothing() {
        QCOMPARE(draggedRange({-700.0, 1154300.0}, plotWidth, 500, 500), (FrameRange{-700, 1154300}));
    }
    void theShiftIsADifferenceOfTruncatedFrames() {
        // 1.25 frames a pixel: 2.5 and 1.25 give 2 - 1, not 1.25.
        QCOMPARE(draggedRange({0.0, 1250.0}, 1000.0, 47, 46), (FrameRange{1, 1251}));
        QCOMPARE(draggedRange({0.0, 1250.0}, 1000.0, 49, 46), (FrameRange{4, 1254}));
        // Truncation towards 0 on both sides of it: 1 - (-1).
        QCOMPARE(draggedRange({0.0, 1250.0}, 1000.0, 46, 44), (FrameRange{2, 1252}));
    }
    void aDragKeepsTheSpan() {
        const GraphRange x{-4321.0, 7654321.0};
        for (int release = 1; release < 1200; release += 7) {
            const FrameRange after = draggedRange(x, plotWidth, 600, release);
            QCOMPARE(double(absoluteSpan(after)), x.span());
        }
    }
    void aPressAtTheLeftEdgeGoesBackToTheStart() {
        for (const int press : {0, -1, lowest}) {
            QCOMPARE(draggedRange({50000.0, 1205000.5}, plotWidth, press, 700), (FrameRange{0, 1155000}));
        }
        QCOMPARE(draggedRange({50000.0, 1205000.0}, plotWidth, 1, 1), (FrameRange{50000, 1205000}));
    }
    void aDragOnAPlotWithoutWidthMovesNothing() {
        QCOMPARE(draggedRange({500.0, 90000.0}, 0.0, 10, 40), (FrameRange{500, 90000}));
    }
    void aDragBeyondTheCounterEndsAtItsLastFrame() {
        QCOMPARE(draggedRange({2147000000.0, 2147400000.0}, 400.0, 445, 45).to, highest);
        QCOMPARE(draggedRange(wide, plotWidth, highest, lowest).from, highest);
    }

    // ---- the other deck ----

    void aRangeOf48000FramesArrivesAt44100As44100() {
        QCOMPARE(rescaledRange(0.0, 48000.0, 44100.0, 48000.0), (FrameRange{0, 44100}));
        QCOMPARE(rescaledRange(0.0, 44100.0, 48000.0, 44100.0), (FrameRange{0, 48000}));
    }
    void wholeSecondsStayWholeSeconds() {
        const double rates[] = {8000.0,  11025.0, 22050.0, 32000.0, 44100.0,
                                48000.0, 88200.0, 96000.0, 176400.0};
        for (const double own : rates) {
            for (const double other : rates) {
                for (const int seconds : {-3600, -1, 1, 7, 59, 3601, 12000}) {
                    QCOMPARE(rescaledRange(seconds * other, 0.0, own, other).from, truncated(seconds * own));
                }
            }
        }
    }
    void bothEndsOfARescaledRangeAreTruncated() {
        QCOMPARE(rescaledRange(-1.0, 3.0, 44100.0, 48000.0), (FrameRange{0, 2}));
    }
    void fromADeckWithoutARateTheRangeStandsAsItIs() {
        QCOMPARE(rescaledRange(-100.0, 48000.0, 44100.0, 0.0), (FrameRange{-100, 48000}));
    }
};

GRAMO_TEST_GUILESS_MAIN(TestZoom)
#include "tst_zoom.moc"
