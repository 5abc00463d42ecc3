#include "painter/graphscale.h"

#include "support/testmain.h"

#include <QTest>

#include <cmath>

namespace {

// 1200 by 500 pixels: plotWidth 1155, plotTop 35, plotBottom 460.
GraphLayout plainLayout() {
    return GraphLayout::of(1200, 500, false, false);
}

} // namespace

class TestGraphScale : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void plainLayoutOfAGraph() {
        const GraphLayout layout = GraphLayout::of(1200, 500, false, false);
        QCOMPARE(layout.bottomMargin, 40);
        QCOMPARE(layout.plotTop, 35);
        QCOMPARE(layout.directWaveHeight, 0.0);
        QCOMPARE(layout.plotWidth, 1155.0);  // 1199 - 44
        QCOMPARE(layout.stripWidth, 1110.0); // 1199 - 89
        QCOMPARE(layout.plotBottom, 460.0);  // 499 + 1 - 40
        QCOMPARE(layout.plotHeight, 425.0);
        QCOMPARE(layout.markerBottom, 457.0);
        QCOMPARE(layout.waveBarTop, 400); // 499 - 99
        QCOMPARE(layout.captionBottom, 500);
        QCOMPARE(layout.labelBottom, 480);
    }
    void aWaveBarNeedsRoomBelowThePlot() {
        const GraphLayout layout = GraphLayout::of(1200, 500, true, false);
        QCOMPARE(layout.bottomMargin, 120);
        QCOMPARE(layout.plotBottom, 380.0);
        QCOMPARE(layout.plotTop, 35);
        QCOMPARE(layout.captionBottom, 420);
        QCOMPARE(layout.labelBottom, 400);
    }
    void theDirectWaveNeedsRoomAboveThePlot() {
        const GraphLayout layout = GraphLayout::of(1200, 500, false, true);
        QCOMPARE(layout.directWaveHeight, 100.0);
        QCOMPARE(layout.plotTop, 135);
        QCOMPARE(layout.plotHeight, 325.0);
    }
    void aLowGraphGivesUpTheDirectWaveAndThenTheBar() {
        QVERIFY(GraphLayout::fitting(1200, 500, true, true).hasDirectWave());
        QVERIFY(GraphLayout::fitting(1200, 500, true, true).hasWaveBar());
        const GraphLayout low = GraphLayout::fitting(1200, 250, true, true); // 5 pixels below zero with both
        QVERIFY(!low.hasDirectWave());
        QVERIFY(low.hasWaveBar());
        QCOMPARE(low.plotHeight, 95.0);
        const GraphLayout lower = GraphLayout::fitting(1200, 200, true, true);
        QVERIFY(!lower.hasDirectWave() && !lower.hasWaveBar());
        QCOMPARE(lower.plotHeight, 125.0);
        QVERIFY(GraphLayout::fitting(1200, 60, true, true).plotHeight < 0.0); // nothing helps
    }
    void theRangeFillsThePlot() {
        const GraphScale scale(plainLayout(), {1000.0, 3000.0}, {-50.0, 150.0}, false);
        QCOMPARE(scale.mapX(1000.0), 45.0);
        QCOMPARE(scale.mapX(3000.0), 45.0 + 1155.0);
        QCOMPARE(scale.mapX(2000.0), 45.0 + 577.5);
        QCOMPARE(scale.mapY(-50.0), 460.0);
        QCOMPARE(scale.mapY(150.0), 35.0);
        QCOMPARE(scale.mapY(50.0), 247.5);
    }
    void anEmptyRangeCollapsesOntoTheEdges() {
        const GraphScale scale(plainLayout(), {500.0, 500.0}, {7.0, 7.0}, false);
        QCOMPARE(scale.mapX(123456.0), 45.0);
        QCOMPARE(scale.mapY(-99.0), 460.0);
    }
    void aBackwardRangeCollapsesOntoTheEdges() {
        const GraphScale scale(plainLayout(), {3000.0, 1000.0}, {150.0, -50.0}, false);
        QCOMPARE(scale.mapX(2000.0), 45.0);
        QCOMPARE(scale.mapY(50.0), 460.0);
    }
    void aGraphNarrowerThanItsMarginCollapsesToTheLeftEdge() {
        const GraphLayout layout = GraphLayout::of(40, 500, false, false);
        QVERIFY(layout.plotWidth < 0.0);
        const GraphScale scale(layout, {0.0, 1000.0}, {0.0, 1.0}, false);
        QCOMPARE(scale.mapX(900.0), 45.0);
        QCOMPARE(GraphScale::framesPerPixel({0.0, 1000.0}, layout.plotWidth), 0.0);
    }
    void framesAPixel() {
        QCOMPARE(GraphScale::framesPerPixel({1000.0, 3310.0}, 1155.0), 2.0);
        QCOMPARE(GraphScale::framesPerPixel({1000.0, 3310.0}, 0.0), 0.0);
    }
    void aFixedViewTruncatesToColumns() {
        const GraphScale scale(plainLayout(), {0.0, 2000.0}, {0.0, 1.0}, false);
        for (const double time : {0.0, 1.0, 999.0, 1234.0, 1999.0}) {
            QCOMPARE(scale.column(time), std::trunc(scale.mapX(time)));
        }
    }
    void aFollowingViewUsesTheRuleOfWholePixels() {
        const double xMin = 123457.0;
        const double xMax = 654321.0;
        const GraphScale scale(plainLayout(), {xMin, xMax}, {0.0, 1.0}, true);
        const double factor = 1155.0 / (xMax - xMin);
        for (double time = xMin; time < xMax; time += 7919.0) {
            QCOMPARE(scale.column(time), 45.0 + std::floor(time * factor) - std::floor(xMin * factor));
        }
    }
    // For many small steps of the cursor: every column moves by the same whole number of pixels, and none is
    // more than one off where the time really lies.
    void whileFollowingThePictureMovesByWholePixels() {
        const double span = 548571.0;
        const GraphScale start(plainLayout(), {-526628.0, -526628.0 + span}, {0.0, 1.0}, true);
        GraphScale previous = start;
        for (int frame = 1; frame < 4000; ++frame) {
            const double xMin = -526628.0 + frame * 797.0;
            const GraphScale now(plainLayout(), {xMin, xMin + span}, {0.0, 1.0}, true);
            const double shift = previous.column(0.0) - now.column(0.0);
            QCOMPARE(shift, std::round(shift));
            QVERIFY(shift >= 0.0);
            for (double time = xMin; time < xMin + span; time += 54321.0) {
                QCOMPARE(previous.column(time) - now.column(time), shift);
                QVERIFY(std::abs(now.column(time) - now.mapX(time)) <= 1.0);
            }
            previous = now;
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(TestGraphScale)
#include "tst_graphscale.moc"
