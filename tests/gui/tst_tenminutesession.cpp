// Ten minutes in front of the graph: what has been kept and added to, frame by frame, is what a drawing from
// scratch shows, pixel by pixel.
#include "gui/support/deckgraph.h"
#include "phrasing/managephrasing.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QRandomGenerator>
#include <QTest>
#include <QWheelEvent>

#include <array>
#include <cmath>

namespace {

constexpr double rate = 48000.0;
constexpr double pointStep = 64.0;
constexpr int framesASecond = 4; // of a slow display
constexpr int seconds = 600;
constexpr double framesAPicture = rate / framesASecond;
const QSize size(420, 200);

/// The same session on two graphs. One keeps what it draws; the other one is drawn on another screen in
/// between, which leaves nothing to keep.
class Session {
public:
    explicit Session(double ratio, quint32 seed) : m_ratio(ratio), m_random(seed) {
        for (DeckGraph* deck : {&m_kept, &m_fresh}) {
            addPoints(deck->secondary, 4000, pointStep * 6, [this](int i, CurvePoint& p) { scratch(i, p); });
        }
    }

    void step(int frame) {
        const int event = m_random.bounded(100);
        if (event < int(m_events.size())) {
            (this->*m_events[std::size_t(event)])();
            ++m_happened[std::size_t(event)];
        }
        record();
        if (!mode().modeGraphicScrollStop()) {
            m_kept.setCursor(m_time);
        }
        m_kept.graph.resize(m_size);
        m_fresh.graph.resize(m_size);
        const QImage shown = pictureOf(m_kept.graph, m_ratio);
        pictureOf(m_fresh.graph, m_ratio == 1.0 ? 1.25 : 1.0);
        if (frame % 6 == 0 || event < int(m_events.size())) {
            ++m_compared;
            QCOMPARE(shown, pictureOf(m_fresh.graph, m_ratio));
        }
    }
    int compared() const { return m_compared; }
    bool everythingHappened() const {
        return std::all_of(m_happened.begin(), m_happened.end(), [](int times) { return times >= 3; });
    }

private:
    // A hand that scratches, rests and cuts.
    void scratch(int i, CurvePoint& p) const {
        const double hand = m_resting ? 0.0 : std::sin(i * 0.013) + 0.4 * std::sin(i * 0.0031);
        p.rawAngle = 200.0 * hand + i * 0.003;
        p.position = p.rawAngle * 5.0;
        p.angle = std::fmod(std::fmod(p.rawAngle, 360.0) + 360.0, 360.0);
        p.pitch = m_resting ? 0.0 : std::cos(i * 0.013);
        p.soundOn = i / 90 % 4 != 0 ? 1 : 0;
    }
    void record() {
        m_time += framesAPicture;
        const int count = int(m_time / pointStep) - int(m_kept.main.size());
        for (DeckGraph* deck : {&m_kept, &m_fresh}) {
            addPoints(deck->main, count, pointStep, [this](int i, CurvePoint& p) { scratch(i, p); });
        }
    }

    template <typename Change> void both(Change change) {
        change(m_kept.graph);
        change(m_fresh.graph);
    }
    double angle() { return m_random.bounded(360000) / 1000.0; }

    // What happens in a session.
    void rest() {
        m_resting = !m_resting;
        (m_resting ? void(mode().modeHold_on()) : void(mode().modeHold_off()));
    }
    void follow() {
        mode().modeCurrentTimerAutoresize() ? mode().modeCurrentTimerAutoresize_off()
                                            : mode().modeCurrentTimerAutoresize_on();
    }
    void fit() { mode().modeAutoresize() ? mode().modeAutoresize_off() : mode().modeAutoresize_on(); }
    void zoom() {
        const QPointF at(60 + m_random.bounded(size.width() - 70), 100);
        const int notch = m_random.bounded(2) == 0 ? 120 : -120;
        both([&](QWPainter& graph) {
            QWheelEvent wheel(at, graph.mapToGlobal(at), QPoint(), QPoint(0, notch), Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&graph, &wheel);
        });
    }
    void pan() {
        const QPoint from(60 + m_random.bounded(300), 90);
        const QPoint to(60 + m_random.bounded(300), 90);
        both([&](QWPainter& graph) {
            QTest::mousePress(&graph, Qt::LeftButton, {}, from);
            QTest::mouseRelease(&graph, Qt::LeftButton, {}, to);
        });
    }
    void restart() {
        m_time = 0.0;
        both([](QWPainter& graph) { graph.mainCurve()->store().restart(); }); // by its producer
        m_kept.setCursor(0.0);
        both([](QWPainter& graph) { graph.initStart(); });
    }
    void empty() {
        m_time = 0.0;
        both([](QWPainter& graph) { graph.resetCurve_Main(); });
    }
    void colour() {
        const QPhrasingList areas = randomAreas(m_random, 6);
        both([&](QWPainter& graph) { graph.colorAreas()->setListPhrasing(areas); });
    }
    void recolour() { // an area that is shared changes under the graph
        const double end = angle();
        const auto list = m_kept.graph.colorAreas()->listPhrasing();
        if (!list.isEmpty()) {
            list.first()->setAngleEnd(end);
            list.last()->setColor(randomColor(m_random));
        }
    }
    void uncolour() {
        both([](QWPainter& graph) { graph.colorAreas()->initAreas(); });
    }
    void display() {
        constexpr std::array displays{ModelDisplay::NORMAL, ModelDisplay::PHRASING, ModelDisplay::DRUMMING};
        mode().setDisplayMode(displays[std::size_t(m_random.bounded(3))]);
        both([](QWPainter& graph) { graph.initGraph(); });
    }
    void icons() { setting().setGraphShiniMode(m_random.bounded(4)); }
    void faderOff() { setting().setGraphCurveCrossFaderOff(m_random.bounded(2) == 0); }
    void invert() { setting().setGraphCurveCrossFaderOffInvertColor(m_random.bounded(2) == 0); }
    void outside() { setting().setGraphCurveNoSound(m_random.bounded(2) == 0); }
    void width() { setting().setCurveOnSize(1 + m_random.bounded(12)); }
    void reverse() { mode().modeReverse() ? mode().modeReverse_off() : mode().modeReverse_on(); }
    void beats() {
        mode().setGraphBeats(m_random.bounded(2) == 0 ? 8.0 : 32.0);
        both([](QWPainter& graph) { graph.initGraph(); });
    }
    void resize() { m_size = size + QSize(m_random.bounded(3) * 10, m_random.bounded(3) * 7); }
    void reference() {
        training().setActivatedMode(m_random.bounded(2) == 0 ? ModelActivatedMode::Training
                                                             : ModelActivatedMode::Looper);
    }

    static constexpr std::array m_events{
        &Session::rest,     &Session::follow,   &Session::fit,      &Session::zoom,   &Session::zoom,
        &Session::pan,      &Session::restart,  &Session::empty,    &Session::colour, &Session::colour,
        &Session::recolour, &Session::uncolour, &Session::display,  &Session::icons,  &Session::faderOff,
        &Session::invert,   &Session::outside,  &Session::width,    &Session::follow, &Session::reverse,
        &Session::beats,    &Session::resize,   &Session::reference};

    double m_ratio;
    QRandomGenerator m_random;
    QSize m_size = size;
    DeckGraph m_kept{ModelGraph::INPUT_DECKA, size};
    DeckGraph m_fresh{ModelGraph::INPUT_DECKA, size};
    double m_time = 0.0;
    bool m_resting = false;
    int m_compared = 0;
    std::array<int, 23> m_happened{};
};

} // namespace

class TestTenMinuteSession : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() {
        resetSharedState();
        training().setActivatedMode(ModelActivatedMode::Training);
        mode().modeCurrentTimerAutoresize_on();
        setting().setGraphShiniMode(ModelShini::Arrows);
        setting().setGraphLogo(false); // it is scaled anew for every screen
    }

    void whatWasKeptIsWhatIsDrawnFromScratch_data() {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<quint32>("seed");
        QTest::newRow("100 %") << 1.0 << 1U;
        QTest::newRow("125 %") << 1.25 << 2U;
    }
    void whatWasKeptIsWhatIsDrawnFromScratch() {
        QFETCH(double, ratio);
        QFETCH(quint32, seed);
        Session session(ratio, seed);
        for (int frame = 0; frame < seconds * framesASecond; ++frame) {
            session.step(frame);
            if (QTest::currentTestFailed()) {
                QFAIL(qPrintable(QStringLiteral("in frame %1").arg(frame)));
            }
        }
        QVERIFY(session.compared() > 700);
        QVERIFY(session.everythingHappened());
    }
};

GRAMO_TEST_MAIN(TestTenMinuteSession)
#include "tst_tenminutesession.moc"
