#include "painter/curvecolor.h"
#include "painter/wavemarkers.h"
#include "support/testmain.h"

#include <QTest>

namespace {

GraphLayout angleLayout() {
    return GraphLayout::of(1200, 500, false, false); // plot from 35 to 460
}

} // namespace

class TestWaveMarkers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theSideBarIsAStripAtTheRight() {
        QCOMPARE(waveSideBar(angleLayout(), 1200), QRectF(1161, 35, 36, 425));
        QCOMPARE(waveSideBar(angleLayout(), 1921).left(), 1858.0); // 1858.56 without its fraction
        QCOMPARE(waveSideBar(angleLayout(), 1921).width(), 57.0);
    }
    void theLevelBarLiesAtTheLowerEdge() {
        const GraphLayout layout = GraphLayout::of(1200, 500, true, false);
        QCOMPARE(waveBar(layout), QRectF(45, 400, 1110, 100));
        QVERIFY(waveBar(layout).top() >= layout.plotBottom);
    }
    void theNeedleOfTheLevelBarStandsStill() {
        QCOMPARE(normalMarker(GraphLayout::of(1200, 500, true, false)), QRectF(45 + 370, 400, 6, 100));
    }
    void theWaveMovesUnderTheNeedle() {
        QCOMPARE(waveBarSplit(0.0), 2.0 / 3.0);
        QVERIFY(std::abs(waveBarSplit(90.0) - 11.0 / 12.0) < 1e-12);
        QVERIFY(waveBarSplit(120.0) < 1e-12); // starts anew
        QVERIFY(std::abs(waveBarSplit(180.0) - 1.0 / 6.0) < 1e-12);
        QVERIFY(std::abs(waveBarSplit(359.999) - 2.0 / 3.0) < 1e-5);
        // What lies a third of the bar behind its start is the needle's place.
        for (double angle = 0.0; angle < 360.0; angle += 7.0) {
            double place = waveBarSplit(angle) + 1.0 / 3.0;
            place -= std::floor(place + 1e-12);
            QVERIFY(std::abs(place - angle / 360.0) < 1e-9);
        }
    }
    void inDrummingTheNeedleClimbsWithTheAngle() {
        const GraphLayout layout = angleLayout();
        const QRectF bar = waveSideBar(layout, 1200);
        QCOMPARE(drummingMarker(layout, bar, 0.0), QRectF(1161, 457, 36, 6));
        QCOMPARE(drummingMarker(layout, bar, 180.0), QRectF(1161, 457 - 212.5, 36, 6));
    }
    void inPhrasingTheAreaTakesTheWholeBar() {
        const GraphLayout layout = angleLayout();
        const QRectF bar = waveSideBar(layout, 1200);
        QCOMPARE(phrasingMarker(layout, bar, 90.0, 90.0, 40.0), QRectF(1161, 457, 36, 6));
        QCOMPARE(phrasingMarker(layout, bar, 110.0, 90.0, 40.0), QRectF(1161, 457 - 212.5, 36, 6));
    }
    void anAreaWithoutASpanHasNoNeedle() {
        QVERIFY(!phrasingMarker(angleLayout(), waveSideBar(angleLayout(), 1200), 90.0, 90.0, 0.0));
    }
    void eachCurveHasItsNeedle() {
        QCOMPARE(needleColor(ModelGraph::INPUT_DECKA), QColor(0, 255, 0));
        QCOMPARE(needleColor(ModelGraph::INPUT_DECKB), QColor(0, 255, 255));
        QCOMPARE(needleColor(ModelGraph::INPUT_1), QColor(0, 255, 0, 150));
        QCOMPARE(needleColor(ModelGraph::INPUT_2), QColor(0, 255, 255, 150));
        QCOMPARE(markerOutline, QColor(43, 43, 43, 100));
    }
};

GRAMO_TEST_GUILESS_MAIN(TestWaveMarkers)
#include "tst_wavemarkers.moc"
