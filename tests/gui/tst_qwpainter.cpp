#include "gui/support/deckgraph.h"
#include "gui/support/redpixels.h"
#include "support/testmain.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace {

constexpr double step = 64.0;
const double beat = 60.0 * 48000.0 / 84.0;

void paint(QWidget& widget) {
    pictureOf(widget);
}

void stillPoint(int, CurvePoint& p) {
    p.pitch = 0.0;
}
void movingPoint(int, CurvePoint& p) {
    p.pitch = 0.5;
}

// The record of a deck that shows `range` units of movement.
void addMovement(CurvePointStore& store, double range, double lowest = 0.0) {
    addPoints(store, 2000, step,
              [=](int i, CurvePoint& p) { p.position = lowest + (i % 2 == 0 ? 0.0 : range); });
}

} // namespace

class TestQWPainter : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() { resetSharedState(); }

    void aLooperShowsMostlyThePast() {
        DeckGraph deck;
        QCOMPARE(deck.graph.xRange(),
                 (GraphRange{std::trunc(-0.96 * 16 * beat), std::trunc(0.04 * 16 * beat)}));
        QCOMPARE(deck.graph.objectName(), QStringLiteral("painter"));
    }
    void aTrainingShowsAThirdOfTheFuture() {
        training().setActivatedMode(ModelActivatedMode::Training);
        DeckGraph deck;
        QCOMPARE(deck.graph.xRange(),
                 (GraphRange{std::trunc(-2.0 / 3.0 * 16 * beat), std::trunc(1.0 / 3.0 * 16 * beat)}));
    }
    void initGraphStartsAnew() {
        DeckGraph deck;
        deck.graph.ringBufferLatencyMs(1.0, 3, 32);
        QSignalSpy start(&deck.graph, &QWPainter::s_InitStart);
        mode().setGraphBeats(8.0);
        QVERIFY(!deck.graph.latencyText().isEmpty());
        deck.graph.initGraph();
        QCOMPARE(deck.graph.xRange(),
                 (GraphRange{std::trunc(-0.96 * 8 * beat), std::trunc(0.04 * 8 * beat)}));
        QCOMPARE(deck.graph.yRange(), (GraphRange{0.0, 270.0}));
        QVERIFY(deck.graph.latencyText().isEmpty());
        QCOMPARE(start.count(), 1);
    }
    void noBeatsShownLeaveTheRange() {
        DeckGraph deck;
        const GraphRange before = deck.graph.xRange();
        mode().setGraphBeats(0.0);
        deck.graph.initGraph();
        QCOMPARE(deck.graph.xRange(), before);
    }
    void aSpanOfExactlyOneBeatIsRefused() {
        training().setBpmEffective(90.0); // 32000 frames a beat
        training().updateBeatLength(ModelGraph::INPUT_DECKA, performance().sample(ModelGraph::INPUT_DECKA));
        DeckGraph deck;
        const GraphRange before = deck.graph.xRange();
        QCOMPARE(deck.graph.setXRange({100, 32100}), std::int64_t{32000});
        QCOMPARE(deck.graph.xRange(), before);
        QCOMPARE(deck.graph.setXRange({100, 32101}), std::int64_t{32001});
        QCOMPARE(deck.graph.xRange(), (GraphRange{100.0, 32101.0}));
    }
    void withoutATempoTheGraphStaysAtItsLastRange() {
        DeckGraph deck;
        const GraphRange before = deck.graph.xRange();
        training().setBpmEffective(0.0);
        training().updateBeatLength(ModelGraph::INPUT_DECKA, performance().sample(ModelGraph::INPUT_DECKA));
        mode().modeCurrentTimerAutoresize_on();
        deck.setCursor(480000.0);
        deck.graph.initGraph();
        paint(deck.graph);
        QCOMPARE(deck.graph.xRange(), before);
    }

    void aDeckThatHasReceivedNothingAsksForAStart() {
        DeckGraph deck;
        QSignalSpy start(&deck.graph, &QWPainter::s_InitStart);
        deck.graph.refresh();
        QCOMPARE(start.count(), 1);
        clocks().setFrameCounter(ModelGraph::INPUT_DECKA, 1.0);
        deck.graph.refresh();
        QCOMPARE(start.count(), 1);
        QCOMPARE(clocks().observedFrameCounter(ModelGraph::INPUT_DECKA), 1.0);
        // The other deck's frames are no concern of this one.
        clocks().clearFrameCounter(ModelGraph::INPUT_DECKB);
        deck.graph.refresh();
        QCOMPARE(start.count(), 1);
        deck.graph.initStart();
        QCOMPARE(start.count(), 2);
    }
    void theCursorRunsWithTheClock() {
        DeckGraph deck;
        mode().modeRun_on();
        clocks().setStartNow(ModelGraph::INPUT_DECKA);
        clocks().advanceFrame(ModelGraph::INPUT_DECKA);
        const double earliest = clocks().startTime(ModelGraph::INPUT_DECKA);
        QTest::qWait(30);
        deck.graph.refresh();
        const double cursor = clocks().cursor(ModelGraph::INPUT_DECKA);
        QVERIFY(cursor >= 48.0 * 30.0 - 48.0); // a millisecond for the timer's cut
        QVERIFY(cursor <= 48.0 * (Time::msecsNow() - earliest));
        QCOMPARE(cursor, std::trunc(cursor));
    }
    void beforeItsFirstBufferADeckIsAtZeroWhateverTheOtherOneDoes() {
        DeckGraph a(ModelGraph::INPUT_DECKA);
        DeckGraph b(ModelGraph::INPUT_DECKB);
        for (const auto deck : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
            clocks().setStartNow(deck);
        }
        b.setCursor(777.0);
        clocks().advanceFrame(ModelGraph::INPUT_DECKA);
        mode().modeRun_on();
        double before = 0.0;
        for (int pulse = 0; pulse < 3; ++pulse) {
            QTest::qWait(5);
            a.graph.refresh();
            b.graph.refresh();
            QCOMPARE(clocks().cursor(ModelGraph::INPUT_DECKB), 0.0);
            const double cursor = clocks().cursor(ModelGraph::INPUT_DECKA);
            QVERIFY(cursor > before);
            before = cursor;
        }
        clocks().setStartNow(ModelGraph::INPUT_DECKB); // as its first buffer does
        clocks().advanceFrame(ModelGraph::INPUT_DECKB);
        QTest::qWait(5);
        b.graph.refresh();
        QVERIFY(clocks().cursor(ModelGraph::INPUT_DECKB) > 0.0);
    }
    void aStoppedScrollDoesntKeepAnOldCursorOfADeckThatHasReceivedNothing() {
        DeckGraph deck;
        deck.setCursor(1234.0);
        mode().modeRun_on();
        mode().modeGraphicScrollStop_on();
        deck.graph.refresh();
        QCOMPARE(clocks().cursor(ModelGraph::INPUT_DECKA), 0.0);
    }
    void theCursorStandsWithoutARun() {
        DeckGraph deck;
        deck.setCursor(1234.0);
        deck.graph.refresh();
        QCOMPARE(clocks().cursor(ModelGraph::INPUT_DECKA), 1234.0);
    }
    void theCursorStandsWhileTheScrollIsStopped() {
        DeckGraph deck;
        deck.setCursor(1234.0);
        clocks().advanceFrame(ModelGraph::INPUT_DECKA);
        mode().modeRun_on();
        mode().modeGraphicScrollStop_on();
        deck.graph.refresh();
        QCOMPARE(clocks().cursor(ModelGraph::INPUT_DECKA), 1234.0);
    }
    void resettingTheCurveLeavesTheCursor() {
        DeckGraph deck;
        deck.setCursor(1234.0);
        addPoints(deck.main, 10, step);
        deck.graph.resetCurve_Main();
        deck.graph.refresh();
        QVERIFY(deck.main.view().empty());
        QCOMPARE(clocks().cursor(ModelGraph::INPUT_DECKA), 1234.0);
    }
    void resettingTheReferenceLeavesTheLiveCurve() {
        DeckGraph deck;
        addPoints(deck.main, 10, step);
        addPoints(deck.secondary, 10, step);
        deck.graph.resetCurve_Secondary();
        QVERIFY(deck.secondary.view().empty());
        QCOMPARE(deck.main.size(), std::size_t{10});
    }
    void importingAReference() {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("reference.grw"));
        DeckGraph deck;
        addPoints(deck.main, 10, step);
        training().setBpmEffective(126.0);
        QVERIFY(deck.graph.mainCurve()->saveToPath(path));
        QSignalSpy end(&deck.graph, &QWPainter::s_EndImportCurve_Secondary);
        deck.graph.importCurve_Secondary(path, false);
        QCOMPARE(deck.secondary.size(), std::size_t{10});
        QCOMPARE(training().bpmValue(), 84.0);
        deck.graph.importCurve_Secondary(path, true);
        QCOMPARE(training().bpmValue(), 126.0);
        QCOMPARE(end.count(), 2);
    }
    void importingAFileThatIsNotThereEndsToo() {
        DeckGraph deck;
        addPoints(deck.secondary, 10, step);
        QSignalSpy end(&deck.graph, &QWPainter::s_EndImportCurve_Secondary);
        deck.graph.importCurve_Secondary(QStringLiteral("/nowhere/reference.grw"), true);
        QCOMPARE(end.count(), 1);
        QVERIFY(deck.secondary.view().empty());
    }

    void thePaintFollowsTheCursor() {
        DeckGraph deck;
        mode().modeCurrentTimerAutoresize_on();
        deck.setCursor(1000000.0);
        paint(deck.graph);
        QCOMPARE(deck.graph.xRange(), (GraphRange{std::trunc(1000000.0 - 0.96 * 16 * beat),
                                                  std::trunc(1000000.0 + 0.04 * 16 * beat)}));
        // A restart of the counter brings the view back.
        deck.setCursor(0.0);
        paint(deck.graph);
        QCOMPARE(deck.graph.xRange(),
                 (GraphRange{std::trunc(-0.96 * 16 * beat), std::trunc(0.04 * 16 * beat)}));
    }
    void aFixedViewStays() {
        DeckGraph deck;
        deck.graph.setXRange({0, 200000});
        deck.setCursor(1000000.0);
        paint(deck.graph);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 200000.0}));
    }
    void fittingComesBeforeFollowing() {
        DeckGraph deck;
        addPoints(deck.main, 2000, step);
        mode().modeCurrentTimerAutoresize_on();
        mode().modeAutoresize_on();
        deck.setCursor(5000000.0);
        paint(deck.graph);
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 2000 * step + std::trunc(beat)}));
    }
    void fittingAfterTheRunSaysSoAtEveryPaint() {
        DeckGraph deck;
        QSignalSpy end(&deck.graph, &QWPainter::s_EndAutoresize);
        mode().modeAutoresize_on();
        mode().modeRun_on();
        paint(deck.graph);
        QCOMPARE(end.count(), 0);
        mode().modeRun_off();
        paint(deck.graph);
        paint(deck.graph);
        QCOMPARE(end.count(), 2);
        mode().modeAutoresize_off();
        paint(deck.graph);
        QCOMPARE(end.count(), 2);
    }
    void fittingTakesBothCurves() {
        DeckGraph deck;
        addPoints(deck.main, 1000, step);
        addPoints(deck.secondary, 3000, step);
        deck.graph.modeAutoresize();
        QCOMPARE(deck.graph.xRange(), (GraphRange{0.0, 3000 * step + std::trunc(beat)}));
    }
    void theTimesOfCurvesAddUp() {
        DeckGraph deck;
        int from = 0;
        int to = 0;
        deck.graph.updateMinMaxFromCurve(from, to, deck.graph.mainCurve());
        QCOMPARE(from, 0);
        QCOMPARE(to, 0);
        addPoints(deck.main, 100, step);
        deck.graph.updateMinMaxFromCurve(from, to, deck.graph.mainCurve());
        QCOMPARE(from, 64);
        QCOMPARE(to, 6400);
        addPoints(deck.secondary, 500, 10.0);
        deck.graph.updateMinMaxFromCurve(from, to, deck.graph.secondaryCurve());
        QCOMPARE(from, 10);
        QCOMPARE(to, 6400);
    }

    void timesThatAreThereAreOnlyWidened() {
        DeckGraph deck;
        addPoints(deck.main, 100, step); // 64 to 6400
        int from = 10;
        int to = 0;
        deck.graph.updateMinMaxFromCurve(from, to, deck.graph.mainCurve());
        QCOMPARE(from, 10);
        QCOMPARE(to, 6400);
        from = 0;
        to = 7000;
        deck.graph.updateMinMaxFromCurve(from, to, deck.graph.mainCurve());
        QCOMPARE(from, 0);
        QCOMPARE(to, 7000);
    }
    void eachGraphIsNamedAfterItsDeck() {
        QCOMPARE(DeckGraph(ModelGraph::INPUT_DECKA).graph.accessibleName(),
                 QStringLiteral("Graph of deck A"));
        QCOMPARE(DeckGraph(ModelGraph::INPUT_DECKB).graph.accessibleName(),
                 QStringLiteral("Graph of deck B"));
    }
    void theValueRangeLeavesMoreRoomAbove() {
        DeckGraph deck;
        deck.graph.setXRange({0, 100000});
        addMovement(deck.main, 1000.0);
        paint(deck.graph);
        // 0 lies within the band of 15 percent below, 270 doesn't reach the 1000.
        QCOMPARE(deck.graph.yRange(), (GraphRange{0.0, 1350.0}));
        addMovement(deck.main, 1000.0, -1.0);
        deck.graph.setXRange({0, 300000});
        paint(deck.graph);
        QCOMPARE(deck.graph.yRange(), (GraphRange{-1.0 - 0.15 * 1001.0, 1350.0}));
    }
    void aRangeBelow200GetsFixedRoom() {
        DeckGraph deck;
        deck.graph.setXRange({0, 100000});
        addMovement(deck.main, 199.0, 5000.0);
        paint(deck.graph);
        QCOMPARE(deck.graph.yRange(), (GraphRange{4970.0, 5269.0}));
    }
    void bothCurvesEmptyKeepTheLastExtremes() {
        DeckGraph deck;
        deck.graph.setXRange({0, 100000});
        addMovement(deck.main, 1000.0);
        paint(deck.graph);
        deck.graph.resetCurve_Main();
        paint(deck.graph);
        QCOMPARE(Singleton::instance().autoresize()->minValue(), 0.0);
        QCOMPARE(Singleton::instance().autoresize()->maxValue(), 1000.0);
        QCOMPARE(deck.graph.yRange(), (GraphRange{0.0, 1350.0}));
    }
    void theReferenceCountsWhereItIsDrawn() {
        DeckGraph deck;
        deck.graph.setXRange({0, 100000});
        addMovement(deck.main, 500.0, 2000.0);
        addMovement(deck.secondary, 1000.0, 0.0); // lifted by 2000
        paint(deck.graph);
        QCOMPARE(Singleton::instance().autoresize()->minValue(), 2000.0);
        QCOMPARE(Singleton::instance().autoresize()->maxValue(), 3000.0);
    }
    void aReferenceAloneCountsAsItIs() {
        DeckGraph deck;
        deck.graph.setXRange({0, 100000});
        addMovement(deck.secondary, 1000.0, 700.0);
        paint(deck.graph);
        QCOMPARE(Singleton::instance().autoresize()->minValue(), 700.0);
        QCOMPARE(Singleton::instance().autoresize()->maxValue(), 1700.0);
    }
    void anglesFillTheirScale() {
        DeckGraph deck;
        for (const auto display : {ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
            mode().setDisplayMode(display);
            deck.graph.initGraph();
            QCOMPARE(deck.graph.yRange().min <= 0.0 && deck.graph.yRange().max >= 1000000.0, true);
            paint(deck.graph);
            QCOMPARE(deck.graph.yRange(), (GraphRange{0.0, 1000000.0}));
        }
    }

    void theTagNumbers() {
        DeckGraph deck;
        QCOMPARE(deck.graph.tagNumber(), 0);
        deck.graph.drawTagNumber_4();
        QCOMPARE(deck.graph.tagNumber(), 4);
        deck.graph.drawTagNumber_3();
        QCOMPARE(deck.graph.tagNumber(), 3);
        deck.graph.drawTagNumber_2();
        QCOMPARE(deck.graph.tagNumber(), 2);
        deck.graph.drawTagNumber_1();
        QCOMPARE(deck.graph.tagNumber(), 1);
        deck.graph.drawTagNumber_0();
        QCOMPARE(deck.graph.tagNumber(), 0);
    }
    void theLatencyCountsInOutputBuffers() {
        performance().setOutputBuffer(128.0);
        DeckGraph deck;
        deck.graph.ringBufferLatencyMs(0.02, 7, 32);
        QCOMPARE(deck.graph.latencyText(), QStringLiteral("2.6ms / 25%"));
    }
    void aCountInShrinksToItsPlace() {
        DeckGraph deck;
        QCOMPARE(deck.graph.countIn().number(), -1);
        deck.graph.showCountIn(4);
        QCOMPARE(deck.graph.countIn().number(), 4);
        QCOMPARE(deck.graph.countIn().scale(), 2.6F);
        QTRY_COMPARE(deck.graph.countIn().scale(), 1.0F);
        QVERIFY(deck.graph.countIn().visible());
        deck.graph.showCountIn(0);
        QVERIFY(!deck.graph.countIn().visible());
    }

    void holdStopsTheScrollOfARecordThatStands() {
        DeckGraph deck;
        addPoints(deck.main, 151, step, stillPoint);
        paint(deck.graph);
        QVERIFY(!mode().modeGraphicScrollStop()); // without hold
        mode().modeHold_on();
        paint(deck.graph);
        QVERIFY(mode().modeGraphicScrollStop());
        addPoints(deck.main, 1, step, movingPoint);
        paint(deck.graph);
        QVERIFY(!mode().modeGraphicScrollStop());
    }
    void holdNeedsAFifthOfASecond() {
        mode().modeHold_on();
        DeckGraph deck;
        addPoints(deck.main, 150, step, stillPoint); // 0.2 s at 64 frames a buffer
        paint(deck.graph);
        QVERIFY(!mode().modeGraphicScrollStop());
    }
    void releasingHoldLetsTheGraphScroll() {
        mode().modeHold_on();
        DeckGraph deck;
        addPoints(deck.main, 200, step, stillPoint);
        paint(deck.graph);
        QVERIFY(mode().modeGraphicScrollStop());
        mode().modeHold_off();
        paint(deck.graph);
        QVERIFY(!mode().modeGraphicScrollStop());
    }
    void withBothGraphsVisibleHoldWaitsForBothRecords() {
        mode().modeHold_on();
        DeckGraph a(ModelGraph::INPUT_DECKA);
        DeckGraph b(ModelGraph::INPUT_DECKB);
        a.graph.setCompanion(&b.graph);
        b.graph.setCompanion(&a.graph);
        a.graph.show();
        b.graph.show();
        addPoints(a.main, 200, step, stillPoint);
        addPoints(b.main, 200, step, movingPoint);
        for (QWPainter* graph : {&a.graph, &b.graph, &a.graph}) {
            paint(*graph);
            QVERIFY(!mode().modeGraphicScrollStop());
        }
        addPoints(b.main, 200, step, stillPoint);
        for (QWPainter* graph : {&a.graph, &b.graph}) {
            paint(*graph);
            QVERIFY(mode().modeGraphicScrollStop());
        }
        addPoints(a.main, 1, step, movingPoint);
        for (QWPainter* graph : {&b.graph, &a.graph}) {
            paint(*graph);
            QVERIFY(!mode().modeGraphicScrollStop());
        }
    }
    void aDeckWithoutARecordHasNoSayInHold() {
        mode().modeHold_on();
        DeckGraph a(ModelGraph::INPUT_DECKA);
        DeckGraph b(ModelGraph::INPUT_DECKB);
        a.graph.setCompanion(&b.graph);
        b.graph.setCompanion(&a.graph);
        a.graph.show();
        b.graph.show();
        addPoints(a.main, 200, step, stillPoint);
        for (QWPainter* graph : {&a.graph, &b.graph, &a.graph}) {
            paint(*graph);
            QVERIFY(mode().modeGraphicScrollStop());
        }
        addPoints(a.main, 1, step, movingPoint);
        for (QWPainter* graph : {&a.graph, &b.graph}) {
            paint(*graph);
            QVERIFY(!mode().modeGraphicScrollStop());
        }
    }
    void aHiddenGraphHasNoSayInHold() {
        mode().modeHold_on();
        DeckGraph a(ModelGraph::INPUT_DECKA);
        DeckGraph b(ModelGraph::INPUT_DECKB);
        a.graph.setCompanion(&b.graph);
        b.graph.hide();
        addPoints(a.main, 200, step, stillPoint);
        addPoints(b.main, 200, step, movingPoint);
        paint(a.graph);
        QVERIFY(mode().modeGraphicScrollStop());
    }

    void whatHadNoRoomIsShownUntilTheNextStart() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 300});
        const int cursor = redPixelsBelowThePlot(deck.graph); // its text is red as well
        deck.graph.overflow(4711);
        QVERIFY(redPixelsBelowThePlot(deck.graph) > cursor + 20);
        deck.graph.initGraph(); // as for another display mode
        QVERIFY(redPixelsBelowThePlot(deck.graph) > cursor + 20);
        deck.graph.forgetTrouble();
        QCOMPARE(redPixelsBelowThePlot(deck.graph), cursor);
    }
    void aSilentDeviceIsShownUntilItSoundsOrTheNextStart() {
        DeckGraph deck(ModelGraph::INPUT_DECKB, {900, 300});
        const int cursor = redPixelsBelowThePlot(deck.graph);
        deck.graph.silentInput(ModelGraph::INPUT_DECKA, true);
        deck.graph.silentInput(ModelGraph::INPUT_MASTER, true);
        QCOMPARE(redPixelsBelowThePlot(deck.graph), cursor); // not its own
        deck.graph.silentInput(ModelGraph::INPUT_DECKB, true);
        QVERIFY(redPixelsBelowThePlot(deck.graph) > cursor + 20);
        deck.graph.silentInput(ModelGraph::INPUT_DECKA, false);
        deck.graph.initGraph();
        QVERIFY(redPixelsBelowThePlot(deck.graph) > cursor + 20);
        deck.graph.silentInput(ModelGraph::INPUT_DECKB, false);
        QCOMPARE(redPixelsBelowThePlot(deck.graph), cursor);
        deck.graph.silentInput(ModelGraph::INPUT_DECKB, true);
        deck.graph.forgetTrouble();
        QCOMPARE(redPixelsBelowThePlot(deck.graph), cursor);
    }

    void whatCouldntBeWrittenIsShownFileByFileUntilTheNextStart() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 300});
        const int cursor = redPixelsBelowThePlot(deck.graph);
        deck.graph.notWritten(QStringLiteral("/take/a.grw"));
        const int one = redPixelsBelowThePlot(deck.graph);
        QVERIFY(one > cursor + 20);
        deck.graph.notWritten(QStringLiteral("/take/a.wav"));
        const int two = redPixelsBelowThePlot(deck.graph);
        QVERIFY(two > one + 20); // a line of its own
        deck.graph.silentInput(ModelGraph::INPUT_DECKA, true);
        deck.graph.silentInput(ModelGraph::INPUT_DECKA, false);
        QCOMPARE(redPixelsBelowThePlot(deck.graph), two);
        deck.graph.initGraph();
        QCOMPARE(redPixelsBelowThePlot(deck.graph), two);
        deck.graph.forgetTrouble();
        QCOMPARE(redPixelsBelowThePlot(deck.graph), cursor);
    }
    void aMissingDeviceIsShownUntilTheNextStart() {
        DeckGraph deck(ModelGraph::INPUT_DECKB, {900, 300});
        const int cursor = redPixelsBelowThePlot(deck.graph);
        deck.graph.missingDevice(ModelGraph::INPUT_DECKA, QStringLiteral("card"));
        QCOMPARE(redPixelsBelowThePlot(deck.graph), cursor); // not its own
        for (const auto name : {ModelGraph::INPUT_DECKB, ModelGraph::INPUT_MASTER}) {
            deck.graph.missingDevice(name, QStringLiteral("card"));
            const int shorter = redPixelsBelowThePlot(deck.graph);
            QVERIFY(shorter > cursor + 20);
            deck.graph.missingDevice(name, QStringLiteral("a card of a longer name"));
            QVERIFY(redPixelsBelowThePlot(deck.graph) > shorter + 20); // it is named
            deck.graph.forgetTrouble();
            QCOMPARE(redPixelsBelowThePlot(deck.graph), cursor);
        }
    }
    void aLostServerIsShownForGoodAndBeforeAllElse() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 300});
        const int cursor = redPixelsBelowThePlot(deck.graph);
        deck.graph.serverLost();
        const QImage told = deck.graph.grab().toImage();
        QVERIFY(redPixelsBelowThePlot(deck.graph) > cursor + 20);
        deck.graph.forgetTrouble();
        QCOMPARE(deck.graph.grab().toImage(), told);
        deck.graph.silentInput(ModelGraph::INPUT_DECKA, true);
        deck.graph.missingDevice(ModelGraph::INPUT_DECKA, QStringLiteral("card"));
        deck.graph.overflow(4711);
        QCOMPARE(deck.graph.grab().toImage(), told);
    }

    void aResizedGraphIsLaidOutAnew() {
        DeckGraph deck;
        deck.graph.show();
        deck.graph.resize(800, 300);
        QCOMPARE(deck.graph.layoutPixels().plotWidth, 755.0);
        QCOMPARE(deck.graph.layoutPixels().plotBottom, 260.0);
    }
    void tinyGraphsPaint() {
        for (const QSize size : {QSize(44, 300), QSize(1, 1), QSize(300, 60), QSize(46, 40)}) {
            DeckGraph deck(ModelGraph::INPUT_DECKA, size);
            addMovement(deck.main, 1000.0);
            addMovement(deck.secondary, 1000.0);
            training().setActivatedMode(ModelActivatedMode::Training);
            deck.graph.setXRange({0, 100000});
            deck.graph.drawTagNumber_1();
            deck.graph.showCountIn(2);
            paint(deck.graph);
        }
    }
};

GRAMO_TEST_MAIN(TestQWPainter)
#include "tst_qwpainter.moc"
