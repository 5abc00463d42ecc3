// Both graphs in the window of the whole program, worked by the events of mouse and keyboard that the window
// gets: what is done to one is seen on the other, whatever frames a second its deck counts.

#include "session.h"

#include "button/qbselectinput.h"
#include "curve/qcurve.h"
#include "menu/qwcontextgraph.h"
#include "model/qsample.h"
#include "support/testmain.h"

#include <QAction>
#include <QApplication>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <QWindow>
#include <QtTest>

#include <array>
#include <cmath>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int notchIn = 120;
constexpr int notchOut = -120;

Performance& performance() {
    return *Singleton::instance().performance();
}

// The program with both graphs in its window, and a device of another rate at each deck.
class TwoRates {
public:
    TwoRates(double rateA, double rateB)
        : m_samples{QSample(ModelGraph::INPUT_DECKA, 0, u"mixer"_s, rateA, 4, 0),
                    QSample(ModelGraph::INPUT_DECKB, 1, u"mixer"_s, rateB, 4, 1)} {
        m_before = {performance().sample(ModelGraph::INPUT_DECKA),
                    performance().sample(ModelGraph::INPUT_DECKB)};
        performance().setSample(ModelGraph::INPUT_DECKA, &m_samples[0], true);
        performance().setSample(ModelGraph::INPUT_DECKB, &m_samples[1], true);
        m_ratio = rateB / rateA;
        while (a()->isHidden() || b()->isHidden()) {
            QTest::mouseClick(m_session.tool().selectInput(), Qt::LeftButton);
        }
        m_session.connection().activateWindow();
        m_active = QTest::qWaitForWindowActive(&m_session.connection());
        QCoreApplication::processEvents(); // the graphs have their sizes
    }
    ~TwoRates() {
        performance().setSample(ModelGraph::INPUT_DECKA, m_before[0], true);
        performance().setSample(ModelGraph::INPUT_DECKB, m_before[1], true);
    }
    TwoRates(const TwoRates&) = delete;
    TwoRates& operator=(const TwoRates&) = delete;

    bool active() const { return m_active; }
    Session& session() { return m_session; }
    QWPainter* a() { return m_session.connection().view()->painterDeckA(); }
    QWPainter* b() { return m_session.connection().view()->painterDeckB(); }
    QWindow* window() { return m_session.connection().windowHandle(); }
    QWContextGraph* menu() { return m_session.connection().view()->contextGraph(); }

    // ---- events as the window gets them ----
    QPoint at(const QWPainter* graph, int x) const {
        return graph->mapTo(&m_session.connection(), QPoint(x, 50));
    }
    void press(const QWPainter* graph, int x, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(window(), button, Qt::NoModifier, at(graph, x));
    }
    void release(const QWPainter* graph, int x, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(window(), button, Qt::NoModifier, at(graph, x));
    }
    void drag(const QWPainter* graph, int from, int to) {
        press(graph, from);
        QTest::mouseMove(window(), at(graph, (from + to) / 2));
        release(graph, to);
    }
    void wheel(const QWPainter* graph, int x, int angle) {
        const QPointF place = at(graph, x);
        QWheelEvent event(place, window()->mapToGlobal(place), QPoint(), QPoint(0, angle), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(window(), &event);
    }
    /// Right press on the graph, then "Zoom" and one of its two entries.
    bool choose(const QWPainter* graph, QAction* (QWContextGraph::*entry)() const) {
        press(graph, 300, Qt::RightButton);
        release(graph, 300, Qt::RightButton);
        const QPointer<QWContextGraph> shown(menu());
        if (shown == nullptr || !shown->isVisible()) {
            return false;
        }
        click(shown, shown->zoomMenu()->menuAction());
        if (!QTest::qWaitFor([&] { return shown && shown->zoomMenu()->isVisible(); }, 3000)) {
            return false;
        }
        click(shown->zoomMenu(), (shown->*entry)());
        return shown == nullptr || !shown->isVisible();
    }

    /// Whether both show the same stretch of time, to the truncated frame.
    bool inStep() {
        return std::abs(a()->xRange().min * m_ratio - b()->xRange().min) <= std::max(1.0, m_ratio) &&
               std::abs(a()->xRange().max * m_ratio - b()->xRange().max) <= std::max(1.0, m_ratio);
    }

private:
    static void click(const QMenu* menu, QAction* action) {
        QTest::mouseClick(menu->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          menu->actionGeometry(action).center());
    }

    mutable Session m_session;
    std::array<QSample, 2> m_samples;
    std::array<QSample*, 2> m_before{};
    double m_ratio = 1.0;
    bool m_active = false;
};

} // namespace

class tst_GraphsInStep : public QObject {
    Q_OBJECT

    QTemporaryDir m_data;

private Q_SLOTS:
    void initTestCase() {
        qputenv("JACK_DEFAULT_SERVER", "no-such-server");
        useDataFolder(m_data.filePath(u"AppData"_s));
    }
    void init() { Singleton::instance().recordingLooperTraining()->setBpmEffective(1200.0); }

    void whatTheMouseDoesToOneGraphArrivesOnTheOther_data() {
        QTest::addColumn<double>("rateA");
        QTest::addColumn<double>("rateB");
        QTest::addColumn<bool>("onA");
        constexpr double tape = 48000.0;
        constexpr double disc = 44100.0;
        QTest::newRow("from A at 44100 to B at 48000") << disc << tape << true;
        QTest::newRow("from B at 48000 to A at 44100") << disc << tape << false;
        QTest::newRow("from A at 48000 to B at 44100") << tape << disc << true;
        QTest::newRow("from B at 44100 to A at 48000") << tape << disc << false;
    }
    void whatTheMouseDoesToOneGraphArrivesOnTheOther() {
        QFETCH(double, rateA);
        QFETCH(double, rateB);
        QFETCH(bool, onA);
        TwoRates program(rateA, rateB);
        QVERIFY(program.active());
        QVERIFY(program.inStep());
        QWPainter* worked = onA ? program.a() : program.b();
        QWPainter* other = onA ? program.b() : program.a();
        const double rate = onA ? rateA : rateB;
        const double otherRate = onA ? rateB : rateA;
        QSignalSpy told(worked, &QWPainter::s_XRange);
        QSignalSpy otherTold(other, &QWPainter::s_XRange);
        int done = 0;
        auto moved = [&, before = worked->xRange(), otherBefore = other->xRange()]() mutable {
            ++done;
            const bool all = std::exchange(before, worked->xRange()) != worked->xRange() &&
                             std::exchange(otherBefore, other->xRange()) != other->xRange();
            if (!all || !program.inStep()) {
                qWarning("%.0f to %.0f here, %.0f to %.0f there", worked->xRange().min, worked->xRange().max,
                         other->xRange().min, other->xRange().max);
                return false;
            }
            return true;
        };
        // A pan.
        const double span = worked->xRange().span();
        program.drag(worked, 517, 211);
        QVERIFY(moved());
        QCOMPARE(worked->xRange().span(), span);
        // A notch in either direction, and both a second time.
        for (const int notch : {notchIn, notchOut, notchOut, notchIn}) {
            const double spanBefore = worked->xRange().span();
            const double otherSpan = other->xRange().span();
            program.wheel(worked, 333, notch);
            QVERIFY(moved());
            const double factor = notch > 0 ? 0.5 : 1.5;
            // Each end is truncated, there a second time.
            QVERIFY(std::abs(worked->xRange().span() - spanBefore * factor) <= 2.0);
            QVERIFY(std::abs(other->xRange().span() - otherSpan * factor) <= 6.0);
        }
        // A selection, by the menu and a drag to the left.
        const GraphRange before = worked->xRange();
        const double frames = before.span() / worked->layoutPixels().plotWidth;
        QVERIFY(program.choose(worked, &QWContextGraph::selectionAction));
        QVERIFY(Session::mode().modeSelectArea());
        program.drag(worked, 900, 123);
        QVERIFY(!Session::mode().modeSelectArea());
        QVERIFY(moved());
        QVERIFY(std::abs(worked->xRange().min - (before.min + 78.0 * frames)) <= 1.0);
        QVERIFY(std::abs(worked->xRange().span() - 777.0 * frames) <= 2.0);
        // Back to the start by a press at the left edge.
        program.drag(worked, 0, 10);
        QVERIFY(moved());
        QCOMPARE(worked->xRange().min, 0.0);
        QCOMPARE(other->xRange().min, 0.0);
        QVERIFY(std::abs(worked->xRange().max / rate - other->xRange().max / otherRate) < 1.0 / 44100.0);
        // One signal each, and none goes round.
        QCOMPARE(told.size(), done);
        QCOMPARE(otherTold.size(), 0);
    }

    void takingTurnsTheGraphsStayInStep() {
        TwoRates program(44100.0, 48000.0);
        for (int round = 0; round < 20; ++round) {
            QWPainter* worked = round % 2 == 0 ? program.a() : program.b();
            const GraphRange before = worked->xRange();
            if (round % 3 == 0) {
                program.wheel(worked, 100 + 50 * round, round % 4 < 2 ? notchIn : notchOut);
            } else {
                program.drag(worked, 210 + 40 * round, 900 - 30 * round);
            }
            QVERIFY(worked->xRange() != before);
            QVERIFY(program.inStep());
        }
    }

    void aSelectionTooShortMovesNeitherGraph() {
        TwoRates program(44100.0, 48000.0);
        for (QWPainter* worked : {program.a(), program.b()}) {
            const GraphRange before = worked->xRange();
            QVERIFY(program.choose(worked, &QWContextGraph::selectionAction));
            program.drag(worked, 400, 400);
            QVERIFY(!Session::mode().modeSelectArea());
            QCOMPARE(worked->xRange(), before);
            QVERIFY(program.inStep());
        }
    }

    void aClickThatPutsTheMenuAwayMovesNothing() {
        TwoRates program(44100.0, 48000.0);
        for (QWPainter* graph : {program.a(), program.b()}) {
            program.drag(graph, 600, 500); // a press that must not be taken for that of the click
            const GraphRange before = graph->xRange();
            program.press(graph, 300, Qt::RightButton);
            program.release(graph, 300, Qt::RightButton);
            QVERIFY(program.menu() != nullptr && program.menu()->isVisible());
            program.press(graph, 900);
            program.release(graph, 900);
            QVERIFY(program.menu() == nullptr || !program.menu()->isVisible());
            QCOMPARE(graph->xRange(), before);
            QVERIFY(program.inStep());
        }
    }

    void theMenuIsWorkedByKeysToo() {
        TwoRates program(44100.0, 48000.0);
        program.press(program.b(), 300, Qt::RightButton);
        program.release(program.b(), 300, Qt::RightButton);
        const QPointer<QWContextGraph> menu(program.menu());
        QVERIFY(menu != nullptr && menu->isVisible());
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Down, Qt::Key_Return}) {
            QTest::keyClick(program.window(), key); // it has the focus; an open menu gets the keys
        }
        QVERIFY(Session::mode().modeSelectArea());
        program.drag(program.b(), 200, 700);
        QVERIFY(!Session::mode().modeSelectArea());
        QVERIFY(program.inStep());
    }

    void withoutASessionAutoResizeFitsOnceAndItsMarkGoes() {
        TwoRates program(44100.0, 48000.0);
        for (QWPainter* graph : {program.a(), program.b()}) { // ten seconds each
            graph->mainCurve()->store().reserve();
            const double rate = performance().sample(graph->deckName())->sampleRate();
            CurvePoint point;
            for (int i = 0; i <= 1000; ++i) {
                point.time = i * rate / 100.0;
                graph->mainCurve()->store().append(point);
            }
            // A deck that has received nothing is started anew at each pulse, with an empty curve.
            Singleton::instance().time()->setFrameCounter(graph->deckName(), point.time);
        }
        for (int round = 0; round < 2; ++round) {
            program.drag(program.b(), 500, 300);
            QVERIFY(program.b()->xRange() != (GraphRange{0.0, 480000.0 + 2400.0}));
            QVERIFY(program.choose(program.b(), &QWContextGraph::autoresizeAction));
            QTRY_VERIFY(!Session::mode().modeAutoresize());
            // One beat behind the end: 50 ms.
            QCOMPARE(program.a()->xRange(), (GraphRange{0.0, 441000.0 + 2205.0}));
            QCOMPARE(program.b()->xRange(), (GraphRange{0.0, 480000.0 + 2400.0}));
            program.press(program.a(), 300, Qt::RightButton);
            program.release(program.a(), 300, Qt::RightButton);
            QVERIFY(program.menu() != nullptr && program.menu()->isVisible());
            QVERIFY(!program.menu()->autoresizeAction()->isChecked());
            program.menu()->close();
        }
        for (const QWPainter* graph : {program.a(), program.b()}) {
            Singleton::instance().time()->clearFrameCounter(graph->deckName());
        }
    }

    void duringASessionTheMarkOfAutoResizeStaysUntilTheUserOrTheStopTakesItAway() {
        TwoRates program(44100.0, 48000.0);
        const auto marked = [&] {
            program.press(program.b(), 300, Qt::RightButton);
            program.release(program.b(), 300, Qt::RightButton);
            const bool checked = program.menu() != nullptr && program.menu()->autoresizeAction()->isChecked();
            program.menu()->close();
            return checked;
        };
        QVERIFY(program.session().start());
        QVERIFY(!marked());
        QVERIFY(program.choose(program.a(), &QWContextGraph::autoresizeAction));
        QTest::qWait(200); // a dozen paints
        QVERIFY(Session::mode().modeAutoresize());
        QVERIFY(marked());
        QVERIFY(program.choose(program.a(), &QWContextGraph::autoresizeAction));
        QVERIFY(!Session::mode().modeAutoresize());
        QVERIFY(!marked());
        QVERIFY(program.choose(program.b(), &QWContextGraph::autoresizeAction));
        QVERIFY(Session::mode().modeAutoresize());
        QVERIFY(program.session().stop());
        QTRY_VERIFY(!Session::mode().modeAutoresize());
        QVERIFY(!marked());
    }

    void theDigitsOfTheKeyboardTagBothGraphs() {
        TwoRates program(44100.0, 48000.0);
        for (const int number : {2, 4, 1, 3, 0}) {
            QTest::keyClick(program.window(), Qt::Key(Qt::Key_0 + number));
            QCOMPARE(program.a()->tagNumber(), number);
            QCOMPARE(program.b()->tagNumber(), number);
        }
    }
};

GRAMO_TEST_MAIN(tst_GraphsInStep)
#include "tst_graphsinstep.moc"
