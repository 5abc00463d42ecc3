// The extremes of a curve on the GUI's side while a callback appends to it and starts it anew.

#include "curve/curveextremes.h"
#include "support/loadfactor.h"
#include "support/seededpoint.h"
#include "support/testmain.h"

#include <QTest>

#include <atomic>
#include <bit>
#include <thread>

namespace {

constexpr std::uint32_t pointCount = 3'000'000 / loadFactor;

bool sameAsTheWalk(const CurvePointStore::View& points, const CurveExtremes::Extremes& found,
                   std::size_t first, std::size_t last) {
    double min = points[first].position;
    double max = min;
    for (std::size_t i = first + 1; i < last; ++i) {
        min = std::min(min, points[i].position);
        max = std::max(max, points[i].position);
    }
    const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
    return bits(min) == bits(found.min) && bits(max) == bits(found.max);
}

} // namespace

class TestCurveExtremesThreads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theyAreThoseOfTheViewInEveryRound_data() {
        QTest::addColumn<quint32>("restartEvery");
        QTest::addColumn<quint32>("clearEvery");
        QTest::newRow("a growing take") << quint32{0} << quint32{0};
        QTest::newRow("restarts now and then") << quint32{20000} << quint32{0};
        QTest::newRow("restarts all the time") << quint32{50} << quint32{0};
        QTest::newRow("the GUI clears as well") << quint32{20000} << quint32{5};
    }
    void theyAreThoseOfTheViewInEveryRound() {
        QFETCH(quint32, restartEvery);
        QFETCH(quint32, clearEvery);
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        std::atomic<std::uint32_t> appended{0};
        std::atomic<std::uint32_t> prepared{0};
        std::thread producer([&] {
            std::int32_t grid = 1;
            std::uint32_t number = 0;
            for (std::uint32_t i = 0; i < pointCount; ++i) {
                // No faster than memory is made; a real deck is thousands of times slower.
                while (i > prepared.load(std::memory_order_acquire) + 500'000) {
                }
                if (restartEvery != 0 && scatter(9, i) % restartEvery == 0) {
                    store.restart();
                    ++grid;
                    number = 0;
                }
                store.append(seededPoint(grid, number++));
                appended.store(i + 1, std::memory_order_release);
            }
        });
        CurveExtremes extremes;
        std::uint64_t wrong = 0;
        std::uint64_t checked = 0;
        bool ended = false;
        for (std::uint64_t round = 0; !ended; ++round) {
            ended = appended.load(std::memory_order_acquire) == pointCount; // one round with all points
            const std::uint32_t seen = appended.load(std::memory_order_acquire);
            store.prepare();
            prepared.store(seen, std::memory_order_release);
            const CurvePointStore::View view = store.view();
            if (view.empty()) {
                continue;
            }
            const std::size_t first = scatter(round, 1) % view.size();
            const std::size_t last = first + 1 + scatter(round, 2) % (view.size() - first);
            const CurveExtremes::Extremes found = extremes.over(view, store.generation(), first, last);
            // The walk takes most of the time, and a short one shows a wrong block as well.
            const std::size_t shown = last - first > 5000 && round % 16 != 0 ? 0 : last;
            if (shown != 0) {
                wrong += sameAsTheWalk(view, found, first, last) ? 0U : 1U;
                ++checked;
            }
            if (clearEvery != 0 && scatter(4, round) % clearEvery == 0) {
                store.clear();
            }
        }
        producer.join();
        QCOMPARE(store.overflows(), std::uint64_t{0});
        QCOMPARE(wrong, std::uint64_t{0});
        QCOMPARE_GT(checked, std::uint64_t{0});
    }
};

GRAMO_TEST_GUILESS_MAIN(TestCurveExtremesThreads)

#include "tst_curveextremesthreads.moc"
