// The mouse on the graph, with the events as Qt delivers them.

#include "gui/support/mousegraph.h"

#include "support/testmain.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>

namespace {

using EnumGraph = ModelGraph::EnumGraph;

} // namespace

class TestQWPainterMouse : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() {
        resetSharedState();
        mode().modeSelectArea_off();
        mode().modeColor_off();
    }

    // ---- what the buttons say ----

    void aLeftPressSaysSo() {
        WideGraph deck;
        QSignalSpy left(&deck.graph, &QWPainter::s_PressLeftButton);
        QSignalSpy right(&deck.graph, &QWPainter::s_PressRightButton);
        QSignalSpy released(&deck.graph, &QWPainter::s_MouseReleaseEvent);
        press(deck.graph, 300);
        QCOMPARE(left.count(), 1);
        QCOMPARE(right.count(), 0);
        QCOMPARE(released.count(), 0);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1155000.0}));
    }
    void aRightPressTellsItsPixel() {
        WideGraph deck;
        QSignalSpy left(&deck.graph, &QWPainter::s_PressLeftButton);
        QSignalSpy right(&deck.graph, &QWPainter::s_PressRightButton);
        QTest::mousePress(&deck.graph, Qt::RightButton, Qt::NoModifier, QPoint(300, 150));
        mouseAt(deck.graph, QEvent::MouseButtonPress, {20.5, 30.4}, Qt::RightButton);
        mouseAt(deck.graph, QEvent::MouseButtonPress, {1e12, -1e12}, Qt::RightButton);
        QCOMPARE(left.count(), 0);
        QCOMPARE(right.count(), 3);
        QCOMPARE(right[0], (QVariantList{300, 150}));
        QCOMPARE(right[1], (QVariantList{21, 30}));
        QCOMPARE(right[2], (QVariantList{2147483647, -2147483647 - 1}));
    }
    void whileTheColourPageIsOpenARightPressIsRaisedBy800() {
        WideGraph deck;
        QSignalSpy right(&deck.graph, &QWPainter::s_PressRightButton);
        mode().modeColor_on();
        QTest::mousePress(&deck.graph, Qt::RightButton, Qt::NoModifier, QPoint(300, 150));
        mouseAt(deck.graph, QEvent::MouseButtonPress, {1e12, 0.0}, Qt::RightButton);
        mode().modeColor_off();
        QCOMPARE(right[0], (QVariantList{1100, 150}));
        QCOMPARE(right[1], (QVariantList{2147483647, 0}));
    }
    void everyReleaseSaysSoLast() {
        WideGraph deck;
        QSignalSpy released(&deck.graph, &QWPainter::s_MouseReleaseEvent);
        QStringList order;
        connect(&deck.graph, &QWPainter::s_XRange, this, [&] { order << QStringLiteral("range"); });
        connect(&deck.graph, &QWPainter::s_MouseReleaseEvent, this,
                [&] { order << QStringLiteral("release"); });
        for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            press(deck.graph, 300, button);
            release(deck.graph, 300, button);
        }
        QCOMPARE(released.count(), 3);
        QCOMPARE(order, QStringList({QStringLiteral("range"), QStringLiteral("release"),
                                     QStringLiteral("release"), QStringLiteral("release")}));
    }
    void onlyTheLeftButtonPans() {
        WideGraph deck;
        for (const auto button : {Qt::RightButton, Qt::MiddleButton}) {
            press(deck.graph, 500, button);
            release(deck.graph, 300, button);
            QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1155000.0}));
        }
        // Nor does another button's release end a left drag.
        press(deck.graph, 500);
        press(deck.graph, 500, Qt::RightButton);
        release(deck.graph, 400, Qt::RightButton);
        release(deck.graph, 300);
        QCOMPARE(deck.graph.xRange(), (GraphRange{200000.0, 1355000.0}));
    }

    void aSelectionTellsItsRangeThenItsEndThenTheRelease() {
        for (const auto name : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
            WideGraph deck(name);
            QWPainter* graph = &deck.graph;
            QStringList order;
            EnumGraph teller = ModelGraph::NOT_USED;
            connect(graph, &QWPainter::s_XRange, this, [&](EnumGraph told) {
                teller = told;
                order << QStringLiteral("range");
            });
            connect(graph, &QWPainter::s_EndSelectArea, this, [&] { order << QStringLiteral("end"); });
            connect(graph, &QWPainter::s_MouseReleaseEvent, this,
                    [&] { order << QStringLiteral("release"); });
            mode().modeSelectArea_on();
            drag(*graph, 100, 900);
            QCOMPARE(order, QStringList(
                                {QStringLiteral("range"), QStringLiteral("end"), QStringLiteral("release")}));
            QCOMPARE(teller, name);
            // Only the left button ends a selection.
            order.clear();
            press(*graph, 100, Qt::RightButton);
            release(*graph, 900, Qt::RightButton);
            QCOMPARE(order, QStringList{QStringLiteral("release")});
            mode().modeSelectArea_off();
        }
    }

    // ---- panning ----

    void aDragPans() {
        WideGraph deck;
        QSignalSpy range(&deck.graph, &QWPainter::s_XRange);
        drag(deck.graph, 500, 300);
        QCOMPARE(deck.graph.xRange(), (GraphRange{200000.0, 1355000.0}));
        QCOMPARE(range.count(), 1);
        QCOMPARE(range[0][0].value<EnumGraph>(), ModelGraph::INPUT_DECKA);
        QCOMPARE(range[0][1].toDouble(), 200000.0);
        QCOMPARE(range[0][2].toDouble(), 1355000.0);
        drag(deck.graph, 300, 500);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1155000.0}));
    }
    void theEndsOfADragAreNearestPixels() {
        WideGraph deck;
        mouseAt(deck.graph, QEvent::MouseButtonPress, {499.5, 10.0});
        mouseAt(deck.graph, QEvent::MouseButtonRelease, {300.49, 10.0});
        QCOMPARE(deck.graph.xRange(), (GraphRange{200000.0, 1355000.0}));
    }
    void aPressAtX0ThenReleaseResetsTheViewToStartAt0WithTheSameSpan() {
        WideGraph deck;
        deck.graph.setXRange({50000, 1205000});
        QSignalSpy range(&deck.graph, &QWPainter::s_XRange);
        drag(deck.graph, 0, 600);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1155000.0}));
        QCOMPARE(range.count(), 1);
        // Half a pixel is pixel 1 already; just below is pixel 0.
        deck.graph.setXRange({50000, 1205000});
        mouseAt(deck.graph, QEvent::MouseButtonPress, {0.5, 10.0});
        mouseAt(deck.graph, QEvent::MouseButtonRelease, {1.0, 10.0});
        QCOMPARE(deck.graph.xRange(), (GraphRange{50000.0, 1205000.0}));
        mouseAt(deck.graph, QEvent::MouseButtonPress, {0.49, 10.0});
        mouseAt(deck.graph, QEvent::MouseButtonRelease, {1.0, 10.0});
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1155000.0}));
    }

    void aPressLeftOfTheGraphResetsTheViewToo() {
        WideGraph deck;
        for (const double x : {-0.51, -30.0, -1e12}) {
            deck.graph.setXRange({50000, 1205000});
            mouseAt(deck.graph, QEvent::MouseButtonPress, {x, 10.0});
            mouseAt(deck.graph, QEvent::MouseButtonRelease, {600.0, 10.0});
            QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1155000.0}));
        }
    }
    void theEndsOfADragAreHeldWithin32Bits() {
        WideGraph deck;
        mouseAt(deck.graph, QEvent::MouseButtonPress, {1e12, 10.0});
        mouseAt(deck.graph, QEvent::MouseButtonRelease, {500.0, 10.0});
        // Pixel 2147483647 lies far behind the last frame that a range can have: the shift is the way from
        // pixel 500 to that frame, and the range ends there.
        QCOMPARE(deck.graph.xRange(), (GraphRange{2147483647.0 - 455000.0, 2147483647.0}));
        deck.graph.setXRange(wide);
        QSignalSpy range(&deck.graph, &QWPainter::s_XRange);
        mouseAt(deck.graph, QEvent::MouseButtonPress, {500.0, 10.0});
        mouseAt(deck.graph, QEvent::MouseButtonRelease, {-1e12, 10.0});
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1155000.0})); // both ends at that frame: refused
        QCOMPARE(range.count(), 1);
        QCOMPARE(range[0][2].toDouble(), 1155000.0);
    }

    // ---- selecting ----

    void aSelectionFitsTheRangeToIt() {
        WideGraph deck;
        mode().modeSelectArea_on();
        QSignalSpy range(&deck.graph, &QWPainter::s_XRange);
        QSignalSpy end(&deck.graph, &QWPainter::s_EndSelectArea);
        drag(deck.graph, 345, 145);
        QCOMPARE(deck.graph.xRange(), (GraphRange{100000.0, 300000.0}));
        QCOMPARE(range.count(), 1);
        QCOMPARE(range[0][1].toDouble(), 100000.0);
        QCOMPARE(range[0][2].toDouble(), 300000.0);
        QCOMPARE(end.count(), 1);
        QVERIFY(mode().modeSelectArea()); // whoever listens turns it off
    }
    void aSelectionFromTheLeftEdgeIsNoReset() {
        WideGraph deck;
        mode().modeSelectArea_on();
        drag(deck.graph, 0, 1045);
        QCOMPARE(deck.graph.xRange(), (GraphRange{-45000.0, 1000000.0}));
    }
    void aSelectionWithPressAndReleaseAtTheSameXIsRefusedThoughItsEndIsStillSent() {
        WideGraph deck;
        mode().modeSelectArea_on();
        QSignalSpy range(&deck.graph, &QWPainter::s_XRange);
        QSignalSpy end(&deck.graph, &QWPainter::s_EndSelectArea);
        drag(deck.graph, 400, 400);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1155000.0}));
        QCOMPARE(end.count(), 1);
        // The graph tells the range that it shows, not the one that it has refused.
        QCOMPARE(range[0][1].toDouble(), 0.0);
        QCOMPARE(range[0][2].toDouble(), 1155000.0);
    }
    void aSelectionOfExactlyOneBeatIsRefused() {
        WideGraph deck;
        mode().modeSelectArea_on();
        drag(deck.graph, 145, 177); // 32 pixels, 32000 frames
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1155000.0}));
        drag(deck.graph, 145, 178);
        QCOMPARE(deck.graph.xRange(), (GraphRange{100000.0, 133000.0}));
    }

    // ---- zooming ----

    void theWheelZoomsAboutThePointer() {
        WideGraph deck;
        QSignalSpy range(&deck.graph, &QWPainter::s_XRange);
        wheel(deck.graph, 245.9, notchIn);
        QCOMPARE(deck.graph.xRange(), (GraphRange{100000.0, 677500.0}));
        QCOMPARE(range.count(), 1);
        QCOMPARE(range[0][1].toDouble(), 100000.0);
        QCOMPARE(range[0][2].toDouble(), 677500.0);
        wheel(deck.graph, 45.0, notchOut);
        QCOMPARE(deck.graph.xRange(), (GraphRange{100000.0, 966250.0}));
        QCOMPARE(range.count(), 2);
    }
    void anAngleOf1ZoomsInAndOneOf0OrMinus1ZoomsOut() {
        WideGraph deck;
        wheel(deck.graph, 45.0, 1);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 577500.0}));
        for (const int angle : {0, -1}) {
            deck.graph.setXRange(wide);
            wheel(deck.graph, 45.0, angle);
            QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1732500.0}));
        }
    }
    void theFrameUnderThePointerStaysThere() {
        WideGraph deck;
        deck.graph.setXRange({-200000, 955000});
        for (const auto& [pixel, angle] :
             {std::pair{46, notchIn}, {1199, notchIn}, {300, notchOut}, {777, notchOut}, {500, notchIn}}) {
            const double before = deck.scale().mapX(0.0) - pixel;
            const double span = deck.graph.xRange().span();
            wheel(deck.graph, pixel, angle);
            // Everything moves to half its distance from the pointer, or to two thirds of it.
            const double factor = span / deck.graph.xRange().span();
            QVERIFY(std::abs(factor - (angle > 0 ? 2.0 : 2.0 / 3.0)) < 1e-4);
            QVERIFY(std::abs(deck.scale().mapX(0.0) - pixel - before * factor) < 0.1);
        }
    }
    void zoomInThatWouldMakeTheSpanOneBeatIsRefused() {
        WideGraph deck;
        deck.graph.setXRange({0, 64000});
        wheel(deck.graph, 45.0, notchIn); // 32000 frames are one beat
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 64000.0}));
        deck.graph.setXRange({0, 64002});
        wheel(deck.graph, 45.0, notchIn);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 32001.0}));
        wheel(deck.graph, 45.0, notchIn); // the user stays at the closest zoom
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 32001.0}));
    }
    void zoomOutTo36000BeatsIsRefused() {
        WideGraph deck;
        training().setBpmEffective(2880.0); // 1000 frames a beat
        training().updateBeatLength(ModelGraph::INPUT_DECKA, performance().sample(ModelGraph::INPUT_DECKA));
        deck.graph.setXRange({0, 24000000});
        wheel(deck.graph, 45.0, notchOut);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 24000000.0}));
        deck.graph.setXRange({0, 23999998});
        wheel(deck.graph, 45.0, notchOut);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 35999997.0}));
    }
    void withoutATempoTheMouseChangesNothing() {
        WideGraph deck;
        training().setBpmEffective(0.0);
        training().updateBeatLength(ModelGraph::INPUT_DECKA, performance().sample(ModelGraph::INPUT_DECKA));
        wheel(deck.graph, 600.0, notchIn);
        drag(deck.graph, 500, 300);
        drag(deck.graph, 0, 0);
        mode().modeSelectArea_on();
        drag(deck.graph, 100, 900);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1155000.0}));
    }
    void aPlotWithoutWidthIsNeitherZoomedNorPanned() {
        for (const int width : {45, 30}) {
            WideGraph deck;
            deck.graph.resize(width, 300);
            deck.graph.refreshVariable();
            QVERIFY(deck.graph.layoutPixels().plotWidth <= 0.0);
            deck.graph.setXRange({50000, 1205000});
            wheel(deck.graph, 20.0, notchIn);
            wheel(deck.graph, 20.0, notchOut);
            drag(deck.graph, 25, 5);
            mode().modeSelectArea_on();
            drag(deck.graph, 5, 25);
            mode().modeSelectArea_off();
            QCOMPARE(deck.graph.xRange(), (GraphRange{50000.0, 1205000.0}));
        }
    }

    void aPlotWithoutWidthOrHeightFallsOntoItsEdges() {
        for (const QSize size : {QSize(44, 500), QSize(45, 500), QSize(1200, 75), QSize(1200, 40)}) {
            const DeckGraph deck(ModelGraph::INPUT_DECKA, size);
            const GraphScale scale = deck.scale();
            const GraphLayout& layout = deck.graph.layoutPixels();
            QVERIFY(layout.plotWidth <= 0.0 || layout.plotHeight <= 0.0);
            for (const double value : {-1e6, 0.0, 123.0, 1e6}) {
                if (layout.plotWidth <= 0.0) {
                    QCOMPARE(scale.mapX(value), 45.0);
                }
                if (layout.plotHeight <= 0.0) {
                    QCOMPARE(scale.mapY(value), layout.plotBottom);
                }
            }
        }
    }

    // ---- with a session ----

    void whileTheViewFollowsTheMouseHasNoLastingEffect() {
        WideGraph deck;
        mode().modeCurrentTimerAutoresize_on();
        mode().modeRun_on();
        deck.setCursor(1000000.0);
        paint(deck.graph);
        const GraphRange following = deck.graph.xRange();
        drag(deck.graph, 500, 300);
        QVERIFY(deck.graph.xRange() != following);
        paint(deck.graph);
        QCOMPARE(deck.graph.xRange(), following);
        wheel(deck.graph, 500.0, notchIn);
        paint(deck.graph);
        QCOMPARE(deck.graph.xRange(), following);
        mode().modeSelectArea_on();
        drag(deck.graph, 100, 700);
        paint(deck.graph);
        QCOMPARE(deck.graph.xRange(), following);
    }
    void afterTheStopTheUserZoomsAndPans() {
        WideGraph deck;
        addPoints(deck.main, 2000, 500.0); // the take: 1000000 frames
        mode().modeCurrentTimerAutoresize_on();
        mode().modeRun_on();
        deck.setCursor(1000000.0);
        paint(deck.graph);
        mode().modeCurrentTimerAutoresize_off();
        mode().modeRun_off();
        deck.graph.setXRange(wide);
        drag(deck.graph, 500, 300);
        wheel(deck.graph, 45.0, notchIn);
        paint(deck.graph);
        deck.graph.refresh();
        paint(deck.graph);
        QCOMPARE(deck.graph.xRange(), (GraphRange{200000.0, 777500.0}));
    }
    void whileTheViewFitsAllDataTheMouseHasNoLastingEffect() {
        WideGraph deck;
        addPoints(deck.main, 2000, 500.0);
        mode().modeAutoresize_on();
        mode().modeRun_on();
        drag(deck.graph, 500, 300);
        paint(deck.graph);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 1032000.0}));
    }

    // ---- the range of values ----

    void inNormalDisplayARangeOf199GetsMinus30AndPlus70AndAt200TheBandRuleTakesOver() {
        const auto fill = [](CurvePointStore& store, double range) {
            addPoints(store, 1000, 64.0,
                      [=](int i, CurvePoint& p) { p.position = i % 2 == 0 ? 0.0 : range; });
        };
        for (const double range : {199.0, 200.0}) {
            WideGraph deck;
            fill(deck.main, 150.0);
            paint(deck.graph);
            QCOMPARE(deck.graph.yRange(), (GraphRange{-30.0, 220.0}));
            deck.graph.resetCurve_Main();
            fill(deck.main, range);
            paint(deck.graph);
            // The band around 200 reaches from -30 to 270, so the range stays at 220.
            QCOMPARE(deck.graph.yRange(),
                     range == 199.0 ? (GraphRange{-30.0, 269.0}) : (GraphRange{-30.0, 220.0}));
        }
    }
    void bothCurvesEmptyAutoresizeHoldsTheLastValues() {
        WideGraph deck;
        addPoints(deck.main, 1000, 64.0, [](int i, CurvePoint& p) { p.position = i; });
        paint(deck.graph);
        const double highest = Singleton::instance().autoresize()->maxValue();
        QVERIFY(highest > 900.0);
        deck.graph.resetCurve_Main();
        wheel(deck.graph, 300.0, notchIn);
        paint(deck.graph);
        QCOMPARE(Singleton::instance().autoresize()->maxValue(), highest);
        QCOMPARE(Singleton::instance().autoresize()->minValue(), 0.0);
    }
};

GRAMO_TEST_MAIN(TestQWPainterMouse)
#include "tst_qwpainter_mouse.moc"
