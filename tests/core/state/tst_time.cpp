#include "state/time.h"

#include "support/testmain.h"

#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {
constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;
constexpr auto master = ModelGraph::INPUT_MASTER;
} // namespace

class tst_Time : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everythingIsZeroAtStart() {
        Time time;
        for (const auto name : {deckA, deckB, master}) {
            QCOMPARE(time.startTime(name), 0.0);
            QCOMPARE(time.cursor(name), 0.0);
            QCOMPARE(time.frameCounter(name), 0.0);
            QCOMPARE(time.observedFrameCounter(name), 0.0);
        }
    }

    void theDecksHaveClocksOfTheirOwn() {
        Time time;
        time.setCursor(deckA, 10.0);
        time.setCursor(deckB, 20.0);
        time.setFrameCounter(deckA, 30.0);
        time.setFrameCounter(deckB, 40.0);
        QCOMPARE(time.cursor(deckA), 10.0);
        QCOMPARE(time.cursor(deckB), 20.0);
        QCOMPARE(time.frameCounter(deckA), 30.0);
        QCOMPARE(time.frameCounter(deckB), 40.0);
        time.clearCursor(deckA);
        time.clearFrameCounter(deckB);
        QCOMPARE(time.cursor(deckA), 0.0);
        QCOMPARE(time.cursor(deckB), 20.0);
        QCOMPARE(time.frameCounter(deckA), 30.0);
        QCOMPARE(time.frameCounter(deckB), 0.0);
    }

    void anAdvanceIsOneFrame() {
        Time time;
        for (int i = 0; i < 1000; ++i) {
            time.advanceFrame(deckA);
        }
        QCOMPARE(time.frameCounter(deckA), 1000.0);
        QCOMPARE(time.frameCounter(deckB), 0.0);
    }

    void anyOtherNameIsIgnored_data() {
        QTest::addColumn<ModelGraph::EnumGraph>("name");
        QTest::newRow("master") << ModelGraph::INPUT_MASTER;
        QTest::newRow("output") << ModelGraph::OUTPUT_MASTER;
        QTest::newRow("reference curve") << ModelGraph::INPUT_1;
    }
    void anyOtherNameIsIgnored() {
        QFETCH(ModelGraph::EnumGraph, name);
        Time time;
        time.setFrameCounter(deckA, 5.0);
        time.setFrameCounter(deckB, 6.0);
        time.advanceFrame(name);
        time.setFrameCounter(name, 7.0);
        time.setCursor(name, 8.0);
        time.setStartNow(name);
        QCOMPARE(time.frameCounter(name), 0.0);
        QCOMPARE(time.cursor(name), 0.0);
        QCOMPARE(time.startTime(name), 0.0);
        QCOMPARE(time.observeFrameCounter(name), 0.0);
        time.clearFrameCounter(name);
        time.clearCursor(name);
        QCOMPARE(time.frameCounter(deckA), 5.0);
        QCOMPARE(time.frameCounter(deckB), 6.0);
        QCOMPARE(time.startTime(deckA), 0.0);
        QCOMPARE(time.startTime(deckB), 0.0);
    }

    // Not the time of day: that one jumps at midnight and whenever somebody sets it.
    void theClockIsTheMonotonicOne() {
        using namespace std::chrono;
        const auto steady = [] {
            return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
        };
        for (int i = 0; i < 100; ++i) {
            const double before = steady();
            const double now = Time::msecsNow();
            const double after = steady();
            QVERIFY2(before <= now && now <= after,
                     qPrintable(u"%1 %2 %3"_s.arg(before, 0, 'f').arg(now, 0, 'f').arg(after, 0, 'f')));
        }
    }

    void aStartTakesTheMoment() {
        Time time;
        const double before = Time::msecsNow();
        time.setStartNow(deckA);
        const double after = Time::msecsNow();
        QVERIFY(before <= time.startTime(deckA) && time.startTime(deckA) <= after);
        QCOMPARE(time.startTime(deckB), 0.0);
    }

    void framesCountFromTheDecksStartAtItsRate() {
        Time time;
        time.setStartNow(deckA);
        const QSample slow(deckA, 0, u"x"_s, 44100.0, 2, 0);
        const QSample fast(deckA, 0, u"x"_s, 96000.0, 2, 0);
        const double start = time.startTime(deckA);
        QCOMPARE(time.framesSince(deckA, start, &slow), 0.0);
        QCOMPARE(time.framesSince(deckA, start + 1000.0, &slow), slow.samplesPerMs() * 1000.0);
        QCOMPARE(time.framesSince(deckA, start + 1.5, &fast), 144.0);
        const double before = Time::msecsNow();
        const double frames = time.framesNow(deckA, &slow);
        const double after = Time::msecsNow();
        QVERIFY(slow.samplesPerMs() * (before - start) <= frames);
        QVERIFY(frames <= slow.samplesPerMs() * (after - start));
    }

    void beforeTheStartTheFramesAreNegative() {
        Time time;
        time.setStartNow(deckB);
        const QSample sample(deckB, 0, u"x"_s, 48000.0, 2, 0);
        QCOMPARE(time.framesSince(deckB, time.startTime(deckB) - 100.0, &sample), -4800.0);
    }

    void theGuiKeepsTheCountThatItLastSaw() {
        Time time;
        time.setFrameCounter(deckA, 64.0);
        QCOMPARE(time.observedFrameCounter(deckA), 0.0);
        QCOMPARE(time.observeFrameCounter(deckA), 64.0);
        time.setFrameCounter(deckA, 0.0); // a callback restarts the deck
        QCOMPARE(time.observedFrameCounter(deckA), 64.0);
        QCOMPARE(time.observeFrameCounter(deckA), 0.0);
        QCOMPARE(time.observedFrameCounter(deckA), 0.0);
        QCOMPARE(time.observedFrameCounter(deckB), 0.0);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Time)
#include "tst_time.moc"
