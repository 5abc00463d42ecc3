// The point store between the callback that appends and restarts and a GUI that reads, clears and prepares.

#include "curve/curvepointstore.h"
#include "curve/curvesearch.h"
#include "support/loadfactor.h"
#include "support/seededpoint.h"
#include "support/testmain.h"

#include <QTest>

#include <atomic>
#include <thread>

namespace {

/// A deck's callback at full speed: it appends the points of one grid after the other.
class Producer {
public:
    /// Starts a new grid before one in `restartEvery` points; 0 never.
    Producer(CurvePointStore& store, std::uint32_t points, std::uint32_t restartEvery)
        : m_thread([this, &store, points, restartEvery] {
            std::int32_t grid = 1;
            std::uint32_t number = 0;
            for (std::uint32_t i = 0; i < points; ++i) {
                // No faster than memory is made; a real deck is thousands of times slower.
                while (i > m_prepared.load(std::memory_order_acquire) + 500'000) {
                }
                if (restartEvery != 0 && scatter(9, i) % restartEvery == 0) {
                    store.restart();
                    ++grid;
                    number = 0;
                }
                store.append(seededPoint(grid, number++));
                m_appended.store(i + 1, std::memory_order_release);
            }
            m_ended.store(true, std::memory_order_release);
        }) {}
    ~Producer() { join(); }
    void join() {
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }
    bool ended() const { return m_ended.load(std::memory_order_acquire); }
    /// Housekeeping of the GUI thread.
    void prepare(CurvePointStore& store) {
        const std::uint32_t seen = m_appended.load(std::memory_order_acquire);
        store.prepare();
        m_prepared.store(seen, std::memory_order_release);
    }

private:
    std::atomic<std::uint32_t> m_appended{0};
    std::atomic<std::uint32_t> m_prepared{0};
    std::atomic<bool> m_ended{false};
    std::thread m_thread; // last: it uses the others
};

/// Faults of a view, read the way a paint reads it: some points anywhere, and the latest ones.
struct Faults {
    std::uint64_t torn = 0;
    std::uint64_t outOfOrder = 0; ///< a time that doesn't rise, or a point of another grid

    void operator+=(const Faults& other) {
        torn += other.torn;
        outOfOrder += other.outOfOrder;
    }
    bool operator==(const Faults&) const = default;
};

Faults faultsOf(const CurvePointStore::View& view, std::uint64_t seed) {
    Faults faults;
    if (view.empty()) {
        return faults;
    }
    const auto check = [&](std::size_t i) {
        faults.torn += isWhole(view[i]) ? 0U : 1U;
        const bool follows =
            i == 0 || (view[i - 1].time < view[i].time && view[i - 1].timecode == view[i].timecode);
        faults.outOfOrder += follows && view[i].timecode == view.back().timecode ? 0U : 1U;
    };
    check(0);
    for (std::uint64_t k = 0; k < 20; ++k) {
        check(scatter(seed, k) % view.size());
    }
    for (std::size_t i = view.size() - std::min<std::size_t>(view.size(), 50); i < view.size(); ++i) {
        check(i);
    }
    return faults;
}

constexpr std::uint32_t pointCount = 4'000'000 / loadFactor;

} // namespace

class TestCurvePointStoreThreads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyViewIsWholeAndOfOneGrid_data() {
        QTest::addColumn<quint32>("restartEvery");
        QTest::newRow("no restart") << quint32{0};
        QTest::newRow("restarts now and then") << quint32{20000};
        QTest::newRow("restarts all the time") << quint32{20};
    }

    void everyViewIsWholeAndOfOneGrid() {
        QFETCH(quint32, restartEvery);
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        Producer producer(store, pointCount, restartEvery);
        Faults faults;
        std::uint64_t wrongFinds = 0;
        for (std::uint64_t round = 0; !producer.ended(); ++round) {
            producer.prepare(store);
            const CurvePointStore::View view = store.view();
            faults += faultsOf(view, round);
            if (!view.empty()) {
                const auto wanted = static_cast<std::int32_t>(scatter(round, 3) % view.size());
                const std::size_t found = pointsBefore(view, wanted);
                wrongFinds += found < view.size() && view[found].time == double(wanted) ? 0U : 1U;
            }
        }
        producer.join();
        QCOMPARE(store.overflows(), std::uint64_t{0});
        QVERIFY(faults == Faults());
        QCOMPARE(wrongFinds, std::uint64_t{0});
        if (restartEvery == 0) {
            QCOMPARE(store.size(), std::size_t{pointCount});
        }
    }

    // The GUI empties the curve under the callback: it stays empty for the GUI until a new point lands, and
    // nothing that the GUI has seen before comes back.
    void aClearedPointNeverComesBack() {
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        Producer producer(store, pointCount, 0);
        Faults faults;
        std::uint64_t cleared = 0;
        std::uint64_t returned = 0;
        double newest = -1.0;
        for (std::uint64_t round = 0; !producer.ended(); ++round) {
            producer.prepare(store);
            const CurvePointStore::View view = store.view();
            faults += faultsOf(view, round);
            if (!view.empty()) {
                returned += view.front().time > newest ? 0U : 1U;
                if (scatter(4, round) % 4 == 0) {
                    newest = view.back().time;
                    store.clear();
                    ++cleared;
                    const CurvePointStore::View after = store.view();
                    returned += after.empty() || after.front().time > newest ? 0U : 1U;
                }
            }
        }
        producer.join();
        QVERIFY(faults == Faults());
        QCOMPARE_GT(cleared, std::uint64_t{0});
        QCOMPARE(returned, std::uint64_t{0});
        // The last request may still wait for a point: the end of the stream carries it out.
        store.clear();
        QVERIFY(store.view().empty());
        store.setLive(false);
        QVERIFY(store.view().empty());
    }

    void aViewOutlivesARestart() {
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        Producer producer(store, pointCount, 1000);
        CurvePointStore::View kept = store.view();
        Faults faults;
        std::uint64_t views = 0;
        for (std::uint64_t round = 0; !producer.ended(); ++round) {
            producer.prepare(store);
            faults += faultsOf(kept, round);
            if (round % 100 == 0) {
                kept = store.view();
                ++views;
            }
        }
        producer.join();
        QVERIFY(faults == Faults());
        QCOMPARE_GT(views, std::uint64_t{0});
    }

    void itGrowsIntoItsSecondBlock() {
        if (loadFactor > 1) {
            QSKIP("five million points take more memory than a sanitizer leaves; the block change itself is "
                  "the "
                  "same code as in the other rows");
        }
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        const std::uint32_t count = CurvePointStore::firstBlock + 300'000;
        Producer producer(store, count, 0);
        Faults faults;
        for (std::uint64_t round = 0; !producer.ended(); ++round) {
            producer.prepare(store);
            faults += faultsOf(store.view(), round);
        }
        producer.join();
        QCOMPARE(store.overflows(), std::uint64_t{0});
        QVERIFY(faults == Faults());
        const CurvePointStore::View all = store.view();
        QCOMPARE(all.size(), std::size_t{count});
        for (std::size_t i : {CurvePointStore::firstBlock - 1, CurvePointStore::firstBlock, all.size() - 1}) {
            QVERIFY(isWhole(all[i]));
            QCOMPARE(all[i].time, double(i));
        }
    }

    // Without the GUI's preparations a point is counted as lost, not written anywhere.
    void withoutABlockPointsAreCounted() {
        CurvePointStore store;
        store.setLive(true);
        std::thread producer([&store] {
            for (std::uint32_t i = 0; i < 1000; ++i) {
                store.append(seededPoint(1, i));
            }
        });
        producer.join();
        QCOMPARE(store.overflows(), std::uint64_t{1000});
        QVERIFY(store.view().empty());
    }
};

GRAMO_TEST_GUILESS_MAIN(TestCurvePointStoreThreads)

#include "tst_curvepointstorethreads.moc"
