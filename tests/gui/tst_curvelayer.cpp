#include "painter/curvelayer.h"

#include "gui/support/curves.h"
#include "gui/support/curvescreen.h"
#include "gui/support/picturedifference.h"
#include "painter/normalline.h"
#include "support/testmain.h"

#include <QTest>

#include <cmath>

namespace {

using Screen = CurveScreen;

constexpr double pointStep = 64.0;

GraphScale scaleAt(double cursor, bool following = true, GraphRange y = {-1100.0, 1100.0}) {
    return Screen::scaleAt(cursor, following, y);
}

// A hand that scratches with cuts.
void scratch(int i, CurvePoint& p) {
    p.position = 700.0 * std::sin(i * 0.011) + 350.0 * std::sin(i * 0.043);
    p.soundOn = i / 170 % 3 != 0 ? 1 : 0;
}

} // namespace

class TestCurveLayer : public QObject {
    Q_OBJECT

    static void screens() {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QPointF>("corner");
        QTest::newRow("100 %") << 1.0 << QPointF(0, 0);
        QTest::newRow("125 %") << 1.25 << QPointF(0, 0);
        QTest::newRow("125 %, off the pixel grid") << 1.25 << QPointF(3, 1);
        QTest::newRow("150 %, off the pixel grid") << 1.5 << QPointF(1, 3);
        QTest::newRow("200 %") << 2.0 << QPointF(5, 0);
        QTest::newRow("110 %") << 1.1 << QPointF(0, 0);
    }

private Q_SLOTS:
    void aMovedPictureIsThatOfADrawingFromScratch_data() { screens(); }
    void aMovedPictureIsThatOfADrawingFromScratch() {
        QFETCH(double, ratio);
        QFETCH(QPointF, corner);
        const Screen screen{ratio, corner};
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        double cursor = 6000 * pointStep + 900.0;
        for (int frame = 0; frame < 80; ++frame) {
            addPoints(store, 12 + frame % 3, pointStep, scratch);
            cursor += 800.0;
            const GraphScale scale = scaleAt(cursor);
            QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
        }
        // 110 % has no picture to move; the others draw one for each step between two device pixels.
        QVERIFY(layer.redraws() <= 4);
    }
    void thePictureIsThatOfTheSingleLines_data() { screens(); }
    void thePictureIsThatOfTheSingleLines() {
        QFETCH(double, ratio);
        QFETCH(QPointF, corner);
        const Screen screen{ratio, corner};
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        for (const bool following : {true, false}) {
            const GraphScale scale = scaleAt(6000 * pointStep, following);
            // Only the smoothing at the edges differs.
            const QImage layered = screen.fromScratch(store, scale);
            const QImage direct = screen.direct(store, scale);
            const PictureDifference difference = differenceOf(layered, direct);
            QVERIFY(difference.largest <= 110);
            QVERIFY(difference.mean <= 0.5);
        }
    }
    void aFewPointsFarApartAreDrawnAlike() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 5, 40000.0, [](int i, CurvePoint& p) { p.position = i % 2 == 0 ? 500.0 : -500.0; });
        CurveLayer layer;
        for (double cursor = 200000.0; cursor < 480000.0; cursor += 800.0) {
            const GraphScale scale = scaleAt(cursor);
            QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
        }
    }
    // As a reference does: its points are all there and come into view at the right edge.
    void aCurveThatGoesOnBeyondTheRightEdgeScrollsIn_data() { screens(); }
    void aCurveThatGoesOnBeyondTheRightEdgeScrollsIn() {
        QFETCH(double, ratio);
        QFETCH(QPointF, corner);
        const Screen screen{ratio, corner};
        CurvePointStore store;
        addPoints(store, 9000, pointStep, scratch);
        CurveLayer layer;
        for (double cursor = 300000.0; cursor < 350000.0; cursor += 800.0) {
            const GraphScale scale = scaleAt(cursor);
            QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
        }
        QVERIFY(layer.redraws() <= 4);
    }
    // All points lie in one column: the stride passes over the stretch and over the curve's end.
    void aStretchWithoutAChosenPointIsItsTail() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 100, 0.5, [](int i, CurvePoint& p) { p.position = i; });
        const GraphScale scale = scaleAt(100000.0);
        const CurveExtract curve{ModelGraph::INPUT_DECKA, store.view(), {1, 99}};
        QVERIFY(!NormalLine(curve, scale, 0.0).lastChosen());
        QCOMPARE(NormalLine(curve, scale, 0.0).all().size(), std::size_t{1});
        CurveLayer layer;
        const QImage picture =
            screen.draw(scale, {}, [&](const CurveScene& scene) { layer.draw(scene, curve, 0.0); });
        QVERIFY(picture != screen.empty(scale));
        QCOMPARE(layer.redraws(), 0U);
    }
    void theSecondPictureIsNotDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        screen.layered(layer, store, scaleAt(380000.0));
        screen.layered(layer, store, scaleAt(380000.0));
        screen.layered(layer, store, scaleAt(390000.0));
        QCOMPARE(layer.redraws(), 1U);
    }
    void aJumpBackIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        screen.layered(layer, store, scaleAt(390000.0));
        const GraphScale back = scaleAt(200000.0);
        QCOMPARE(screen.layered(layer, store, back), screen.fromScratch(store, back));
        QCOMPARE(layer.redraws(), 2U);
    }
    void anotherValueRangeIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        screen.layered(layer, store, scaleAt(390000.0));
        const GraphScale taller = scaleAt(390000.0, true, {-2000.0, 2000.0});
        QCOMPARE(screen.layered(layer, store, taller), screen.fromScratch(store, taller));
    }
    void aFixedViewThatMovesIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        for (const double cursor : {380000.0, 380001.0, 390000.0}) {
            const GraphScale scale = scaleAt(cursor, false);
            QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
        }
        QCOMPARE(layer.redraws(), 3U);
    }
    void aChangedOptionIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        screen.layered(layer, store, scale);
        CurveLook thin;
        thin.options.curveOnSize = 2;
        thin.options.curveCrossFaderOff = false;
        QCOMPARE(screen.layered(layer, store, scale, thin), screen.fromScratch(store, scale, thin));
    }
    void anotherSizeOfTheScreenIsDrawnAnew() {
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        for (const double ratio : {1.0, 2.0, 1.0, 1.25}) {
            const Screen screen{ratio, {}};
            QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
        }
    }
    void anEmptiedAndRefilledCurveIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        screen.layered(layer, store, scale);
        store.clear();
        addPoints(store, 6000, pointStep, [](int i, CurvePoint& p) { p.position = i % 900; });
        layer.forget();
        QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
    }
    void aRestartedCurveIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        screen.layered(layer, store, scale);
        store.restart(); // by its producer
        addPoints(store, 6000, pointStep, [](int i, CurvePoint& p) {
            scratch(i, p);
            p.soundOn = 1;
        });
        QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
    }
    // First and last points are those of before.
    void aCurveThatWasEmptiedBetweenTwoPicturesIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        screen.layered(layer, store, scale);
        store.clear();
        addPoints(store, 6000, pointStep, [](int i, CurvePoint& p) {
            scratch(i, p);
            p.position += i > 3000 && i < 5000 ? 300.0 : 0.0;
        });
        QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
    }
    void anAmendedCurveIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        screen.layered(layer, store, scale);
        store.amend([](std::size_t, CurvePoint& p) {
            p.position += 200.0;
            return true;
        });
        QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
    }
};

GRAMO_TEST_MAIN(TestCurveLayer)
#include "tst_curvelayer.moc"
