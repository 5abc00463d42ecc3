// The whole program with cards that the test plays itself: what becomes of a take on the graphs, and of a
// deck's clock, from the buttons down to the streams.

#include "live/session.h"
#include "support/fakeportaudio.h"
#include "support/testmain.h"

#include "combobox/qcomboboxbpm.h"
#include "curve/qcurve.h"

#include <QApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;
constexpr std::size_t bufferFrames = 64;

RecordingLooperTraining& entry() {
    return *Singleton::instance().recordingLooperTraining();
}
Time& clocks() {
    return *Singleton::instance().time();
}

/// A session on one card a deck.
class Decks {
public:
    Decks() {
        FakePortAudio::instance().streams.clear();
        Session::store({u"card A"_s}, {u"card B"_s}, {});
        m_session.emplace();
        connection().view()->showInput(ModelInput::TEXT_A_B);
    }
    Session& session() { return *m_session; }
    Connection& connection() { return m_session->connection(); }
    QWPainter& graph(ModelGraph::EnumGraph deck) {
        return *(deck == deckA ? connection().view()->painterDeckA() : connection().view()->painterDeckB());
    }
    QComboBoxBpm& beats() { return *m_session->tool().bpmComboBox(); }

    /// Buffers from the deck's card.
    void feed(ModelGraph::EnumGraph deck, int buffers) const {
        std::array<std::int16_t, bufferFrames * 2> samples{};
        for (const FakeStream* stream : FakePortAudio::instance().streams) {
            if (stream->input.device == (deck == deckA ? 0 : 1) && stream->started && !stream->stopped) {
                for (int i = 0; i < buffers; ++i) {
                    for (std::size_t k = 0; k < samples.size(); ++k) {
                        samples[k] = std::int16_t(((k / 2 + std::size_t(i) * bufferFrames) % 48) * 400);
                    }
                    stream->call(samples.data(), bufferFrames);
                }
            }
        }
    }
    /// Both cards play for a while, as fast as the clock runs.
    void play() const {
        for (int i = 0; i < 20; ++i) {
            for (const auto deck : {deckA, deckB}) {
                const QSample* sample = Singleton::instance().performance()->sample(deck);
                const bool plays = clocks().frameCounter(deck) > 0.0;
                const double due =
                    plays ? clocks().framesNow(deck, sample) - clocks().frameCounter(deck) : bufferFrames;
                feed(deck, int(due / double(bufferFrames)));
            }
            QTest::qWait(20);
        }
    }
    /// Presses play and waits through a short count-in; the beat that the graphs count in is half a second.
    bool start() {
        entry().setBpmEffective(1200.0);
        const bool started = m_session->start();
        entry().setBpmEffective(120.0);
        for (const auto deck : {deckA, deckB}) {
            entry().updateBeatLength(deck, Singleton::instance().performance()->sample(deck));
        }
        return started;
    }

private:
    std::optional<Session> m_session;
};

/// What a deck has played, and its clock.
struct Played {
    explicit Played(const QWPainter& graph)
        : curve(*graph.mainCurve())
        , deck(graph.deckName())
        , points(curve.points().size())
        , generation(curve.store().generation())
        , startTime(clocks().startTime(deck))
        , frames(clocks().frameCounter(deck)) {}

    bool isThereStill() const {
        return points > 0 && curve.points().size() == points && curve.store().generation() == generation &&
               clocks().startTime(deck) == startTime && clocks().frameCounter(deck) == frames;
    }
    /// The last point lies in what the graph shows.
    bool isInSight(const QWPainter& graph) const {
        const CurvePointStore::View all = curve.points();
        return !all.empty() && graph.xRange().min < all.back().time && all.back().time < graph.xRange().max;
    }

    QCurve& curve;
    ModelGraph::EnumGraph deck;
    std::size_t points;
    std::uint64_t generation;
    double startTime;
    double frames;
};

} // namespace

class tst_DeckSession : public QObject {
    Q_OBJECT

    QTemporaryDir m_data;

    // The range that a number of beats shows around a cursor.
    static GraphRange rangeOf(double beats, double cursor, ModelGraph::EnumGraph deck) {
        const FrameRange range =
            cursorWindow(entry().activatedMode(), beats, entry().beatLength(deck)).around(cursor);
        return {double(range.from), double(range.to)};
    }

private Q_SLOTS:
    void initTestCase() {
        useDataFolder(m_data.filePath(u"AppData"_s));
        FakePortAudio::instance().devices = {{"card A", 48000.0, 2, 0, 8}, {"card B", 44100.0, 2, 0, 8}};
    }
    void init() { Session::mode().setDisplayMode(ModelDisplay::NORMAL); }

    void behindASessionTheTakeStaysInSight() {
        Decks decks;
        QVERIFY(decks.start());
        decks.play();
        QVERIFY(decks.session().stop());
        QTest::qWait(50); // the graphs go on with their pulse
        for (const auto deck : {deckA, deckB}) {
            const QWPainter& graph = decks.graph(deck);
            const Played take(graph);
            const double cursor = clocks().cursor(deck);
            QVERIFY(cursor > 0.0);
            QVERIFY(take.isInSight(graph));
            for (const auto display :
                 {ModelDisplay::PHRASING, ModelDisplay::DRUMMING, ModelDisplay::NORMAL}) {
                Session::mode().setDisplayMode(display);
                QTest::qWait(50);
                QVERIFY(take.isThereStill());
                QVERIFY(take.isInSight(graph));
                for (const int beats : {8, 32, 2, 64, 4, 16}) {
                    decks.beats().setCurrentText(QString::number(beats));
                    QTest::qWait(30);
                    QVERIFY(take.isThereStill());
                    QVERIFY(take.isInSight(graph));
                    QCOMPARE(graph.xRange(), rangeOf(beats, cursor, deck));
                }
                decks.beats().setCurrentText(u"bpm"_s); // no number: the range stays
                QTest::qWait(30);
                QVERIFY(take.isThereStill());
                QCOMPARE(graph.xRange(), rangeOf(16, cursor, deck));
                decks.beats().setCurrentText(u"16"_s);
            }
        }
        // The next start is the one that empties it.
        QVERIFY(decks.start());
        for (const auto deck : {deckA, deckB}) {
            QVERIFY(decks.graph(deck).mainCurve()->points().empty());
        }
        QVERIFY(decks.session().stop());
    }

    // Nobody feeds the decks meanwhile, so that every frame counts.
    void duringASessionOnlyWhatIsSeenChanges() {
        Decks decks;
        QVERIFY(decks.start());
        decks.play();
        for (const auto deck : {deckA, deckB}) {
            const QWPainter& graph = decks.graph(deck);
            const Played take(graph);
            double cursor = clocks().cursor(deck);
            for (const auto display :
                 {ModelDisplay::PHRASING, ModelDisplay::DRUMMING, ModelDisplay::NORMAL}) {
                Session::mode().setDisplayMode(display);
                for (const int beats : {8, 32, 16}) {
                    decks.beats().setCurrentText(QString::number(beats));
                    QTest::qWait(40);
                    decks.feed(deck, 0);
                    QVERIFY(take.isThereStill());
                    QVERIFY(clocks().cursor(deck) > cursor);
                    cursor = clocks().cursor(deck);
                    QVERIFY(std::abs(graph.xRange().span() - beats * entry().beatLength(deck)) <= 1.0);
                    QVERIFY(graph.xRange().min < cursor && cursor < graph.xRange().max);
                }
            }
        }
        const std::size_t before = decks.graph(deckA).mainCurve()->points().size();
        decks.feed(deckA, 1);
        QCOMPARE(decks.graph(deckA).mainCurve()->points().size(), before + 1);
        QVERIFY(decks.session().stop());
    }

    void aTakeWhoseServerWasLostIsInSightAsWell() {
        Decks decks;
        QVERIFY(decks.start());
        decks.play();
        QTest::qWait(1200); // two beats are a second
        QVERIFY(decks.session().stop());
        decks.beats().setCurrentText(u"2"_s);
        for (const auto deck : {deckA, deckB}) {
            const Played take(decks.graph(deck));
            QVERIFY(clocks().cursor(deck) > take.curve.points().back().time + 2 * entry().beatLength(deck));
            QVERIFY(take.isInSight(decks.graph(deck)));
        }
        decks.beats().setCurrentText(u"16"_s);
    }

    void aDeckWithoutABufferStaysAtZeroAndLeavesTheOtherOneAlone() {
        Decks decks;
        QVERIFY(decks.start());
        decks.feed(deckA, 1);
        const double start = clocks().startTime(deckA);
        double cursor = 0.0;
        for (int i = 0; i < 15; ++i) {
            QTest::qWait(40); // longer than a pulse
            decks.feed(deckA, 30);
            QCOMPARE(clocks().cursor(deckB), 0.0);
            QCOMPARE(clocks().frameCounter(deckB), 0.0);
            QCOMPARE(clocks().startTime(deckA), start);
            QVERIFY(clocks().cursor(deckA) > cursor);
            cursor = clocks().cursor(deckA);
        }
        QVERIFY(cursor >= 48.0 * 500.0);
        decks.feed(deckB, 1);
        const double startB = clocks().startTime(deckB);
        QTest::qWait(40);
        const double late = clocks().cursor(deckB);
        QVERIFY(late > 0.0 && late <= 44.1 * (Time::msecsNow() - startB));
        QCOMPARE(clocks().startTime(deckA), start);
        QVERIFY(decks.session().stop());
    }
};

GRAMO_TEST_MAIN(tst_DeckSession)
#include "tst_decksession.moc"
