// A task uses what is its owner's, without a lock: from start() to finish() the two take turns.

#include "painter/drawingthread.h"
#include "support/loadfactor.h"
#include "support/testmain.h"

#include <QTest>
#include <QThread>

#include <array>
#include <atomic>
#include <cstdint>

using namespace Qt::StringLiterals;

namespace {
constexpr int frames = 20'000 / loadFactor;
}

class TestDrawingThread : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTaskSeesWhatWasWrittenBeforeItAndItsOwnerWhatItWrote() {
        DrawingThread thread(u"drawing"_s);
        std::uint64_t plain = 0;
        for (int i = 0; i < frames; ++i) {
            plain = 3 * plain + 1;
            std::uint64_t expected = plain * 5 + 7;
            thread.start([&plain] { plain = plain * 5 + 7; });
            QVERIFY(thread.busy());
            thread.finish();
            QVERIFY(!thread.busy());
            QCOMPARE(plain, expected);
        }
    }
    void twoThreadsWorkOnTwoHalvesAtTheSameTime() {
        DrawingThread left(u"left"_s);
        DrawingThread right(u"right"_s);
        std::array<std::array<std::uint32_t, 64>, 2> halves{};
        const auto fill = [](std::array<std::uint32_t, 64>& half, std::uint32_t seed) {
            for (std::uint32_t& word : half) {
                word = seed = seed * 1664525U + 1013904223U;
            }
        };
        for (std::uint32_t i = 0; i < frames; ++i) {
            left.start([&] { fill(halves[0], i); });
            right.start([&] { fill(halves[1], ~i); });
            left.finish();
            right.finish();
            std::array<std::array<std::uint32_t, 64>, 2> expected{};
            fill(expected[0], i);
            fill(expected[1], ~i);
            QVERIFY(halves == expected);
        }
    }
    void bothRunAtOnce() {
        DrawingThread left(u"left"_s);
        DrawingThread right(u"right"_s);
        std::atomic<int> met{0};
        const auto meet = [&met] {
            met.fetch_add(1);
            while (met.load() < 2) { // would never end if one waited for the other
                QThread::yieldCurrentThread();
            }
        };
        left.start(meet);
        right.start(meet);
        left.finish();
        right.finish();
        QCOMPARE(met.load(), 2);
    }
    void theTaskRunsOnAThreadOfItsOwnThatStaysAndHasTheName() {
        DrawingThread thread(u"drawing A"_s);
        std::array<QThread*, 2> ran{};
        QString name;
        for (QThread*& one : ran) {
            thread.start([&] {
                one = QThread::currentThread();
                name = QThread::currentThread()->objectName();
            });
            thread.finish();
        }
        QVERIFY(ran[0] != QThread::currentThread());
        QCOMPARE(ran[0], ran[1]);
        QCOMPARE(name, u"drawing A"_s);
    }
    void itsEndWaitsForTheTask() {
        int done = 0;
        for (int i = 0; i < 100; ++i) {
            DrawingThread thread(u"drawing"_s);
            thread.start([&done] {
                QThread::usleep(200);
                ++done;
            });
        }
        QCOMPARE(done, 100);
    }
    void withoutATaskNothingIsWaitedFor() {
        DrawingThread thread(u"drawing"_s);
        thread.finish();
        QVERIFY(!thread.busy());
    }
};

GRAMO_TEST_GUILESS_MAIN(TestDrawingThread)
#include "tst_drawingthread.moc"
