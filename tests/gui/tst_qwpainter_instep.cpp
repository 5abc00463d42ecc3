// The range that the mouse gives to one graph, and the graph of the other deck.

#include "gui/support/mousegraph.h"

#include "support/testmain.h"

#include <QSignalSpy>

#include <cmath>
#include <utility>

namespace {

/// Both graphs as the controller connects them; deck B counts 44100 frames a second.
struct TwoDecks {
    explicit TwoDecks(double rateB = 44100.0)
        : sampleB(ModelGraph::INPUT_DECKB, 0, QStringLiteral("mixer"), rateB, 2, 0)
        , b((performance().setSample(ModelGraph::INPUT_DECKB, &sampleB, false), ModelGraph::INPUT_DECKB)) {
        QObject::connect(&a.graph, &QWPainter::s_XRange, &b.graph, &QWPainter::updateXRange);
        QObject::connect(&b.graph, &QWPainter::s_XRange, &a.graph, &QWPainter::updateXRange);
        b.graph.updateXRange(ModelGraph::INPUT_DECKA, wide.from, wide.to);
    }
    /// Whether both show the same stretch of time, to the truncated frame.
    bool inStep() const {
        const double ratio = sampleB.sampleRate() / 48000.0;
        return std::abs(a.graph.xRange().min * ratio - b.graph.xRange().min) < 1.0 &&
               std::abs(a.graph.xRange().max * ratio - b.graph.xRange().max) < 1.0;
    }
    QSample sampleB;
    WideGraph a;
    WideGraph b;
};

} // namespace

class TestQWPainterInStep : public QObject {
    Q_OBJECT

    QSample* m_noDeviceB = nullptr;

private Q_SLOTS:
    void initTestCase() {
        prepareGuiProcess();
        m_noDeviceB = performance().sample(ModelGraph::INPUT_DECKB);
    }
    void init() {
        performance().setSample(ModelGraph::INPUT_DECKB, m_noDeviceB, false);
        resetSharedState();
        mode().modeSelectArea_off();
        mode().modeColor_off();
    }

    void updateXRangeFromADeckAtAnotherSampleRate48000FramesArriveAt44100As44100() {
        TwoDecks decks;
        QSignalSpy again(&decks.b.graph, &QWPainter::s_XRange);
        decks.b.graph.updateXRange(ModelGraph::INPUT_DECKA, 0.0, 48000.0);
        QCOMPARE(decks.b.graph.xRange(), (GraphRange{0.0, 44100.0}));
        decks.a.graph.updateXRange(ModelGraph::INPUT_DECKB, -44100.0, 88200.0);
        QCOMPARE(decks.a.graph.xRange(), (GraphRange{-48000.0, 96000.0}));
        QCOMPARE(again.count(), 0);
    }
    void theOwnDecksRangeStandsAsItIs() {
        TwoDecks decks;
        decks.b.graph.updateXRange(ModelGraph::INPUT_DECKB, 10.9, 48000.9);
        QCOMPARE(decks.b.graph.xRange(), (GraphRange{10.0, 48000.0}));
    }
    void fromADeckWithoutARateTheRangeStandsAsItIs() {
        QSample none(ModelGraph::INPUT_DECKB, 0, QString(), 0.0, 2, 0);
        WideGraph a;
        performance().setSample(ModelGraph::INPUT_DECKB, &none, false);
        a.graph.updateXRange(ModelGraph::INPUT_DECKB, 0.0, 48000.0);
        performance().setSample(ModelGraph::INPUT_DECKB, m_noDeviceB, false);
        QCOMPARE(a.graph.xRange(), (GraphRange{0.0, 48000.0}));
    }
    void aRangeOfTheOtherDeckPassesTheSameGuards() {
        TwoDecks decks;
        const GraphRange before = decks.b.graph.xRange();
        decks.b.graph.updateXRange(ModelGraph::INPUT_DECKA, 0.0, 32000.0); // one beat
        QCOMPARE(decks.b.graph.xRange(), before);
        decks.b.graph.updateXRange(ModelGraph::INPUT_DECKA, 0.0, 1e300);
        QCOMPARE(decks.b.graph.xRange(), before);
    }
    void panZoomAndSelectionOnOneDeckArriveOnTheOther_data() {
        QTest::addColumn<double>("rateB");
        QTest::addColumn<bool>("onA");
        for (const double rate : {44100.0, 48000.0, 96000.0}) {
            QTest::addRow("from A to %g Hz", rate) << rate << true;
            QTest::addRow("from B at %g Hz", rate) << rate << false;
        }
    }
    void panZoomAndSelectionOnOneDeckArriveOnTheOther() {
        QFETCH(double, rateB);
        QFETCH(bool, onA);
        TwoDecks decks(rateB);
        QVERIFY(decks.inStep());
        QWPainter& worked = onA ? decks.a.graph : decks.b.graph;
        QSignalSpy fromA(&decks.a.graph, &QWPainter::s_XRange);
        QSignalSpy fromB(&decks.b.graph, &QWPainter::s_XRange);
        auto moved = [&, before = worked.xRange()]() mutable {
            return std::exchange(before, worked.xRange()) != worked.xRange() && decks.inStep();
        };
        drag(worked, 517, 211);
        QVERIFY(moved());
        wheel(worked, 333.0, notchIn);
        QVERIFY(moved());
        wheel(worked, 1100.0, notchOut);
        QVERIFY(moved());
        mode().modeSelectArea_on();
        drag(worked, 900, 123);
        QVERIFY(moved());
        mode().modeSelectArea_off();
        drag(worked, 0, 10);
        QVERIFY(moved());
        QCOMPARE(fromA.count(), onA ? 5 : 0);
        QCOMPARE(fromB.count(), onA ? 0 : 5);
    }
};

GRAMO_TEST_MAIN(TestQWPainterInStep)
#include "tst_qwpainter_instep.moc"
