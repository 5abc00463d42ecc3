// The ring between two threads: every point that comes out is whole, in order, and none is there twice.

#include "curve/curvepointring.h"
#include "support/loadfactor.h"
#include "support/seededpoint.h"
#include "support/testmain.h"

#include <QTest>

#include <atomic>
#include <thread>

namespace {

constexpr std::uint32_t pointCount = 3'000'000 / loadFactor;

/// What a consumer saw.
struct Seen {
    std::uint64_t points = 0;
    std::uint64_t torn = 0;
    std::uint64_t backward = 0; ///< not later than the point before
    std::uint64_t stale = 0;    ///< of a grid that had been given up
    std::uint64_t overfull = 0;
    double last = -1.0;
};

void waste(std::uint64_t turns) {
    for (std::atomic<std::uint64_t> i{0}; i.load(std::memory_order_relaxed) < turns; i.fetch_add(1)) {
    }
}

} // namespace

class TestCurvePointRingThreads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pointsAreWholeAndInOrder_data() {
        QTest::addColumn<quint64>("producerWaste");
        QTest::addColumn<quint64>("consumerWaste");
        QTest::addColumn<bool>("drops");
        QTest::newRow("consumer faster") << quint64{200} << quint64{0} << false;
        QTest::newRow("both at full speed") << quint64{0} << quint64{0} << false;
        QTest::newRow("consumer slower") << quint64{0} << quint64{1000} << true;
    }

    void pointsAreWholeAndInOrder() {
        QFETCH(quint64, producerWaste);
        QFETCH(quint64, consumerWaste);
        QFETCH(bool, drops);
        const std::uint32_t count = producerWaste == 0 ? pointCount : pointCount / 10;
        CurvePointRing ring;
        std::atomic<bool> ended{false};
        std::thread producer([&] {
            for (std::uint32_t i = 0; i < count; ++i) {
                ring.push(seededPoint(1, i));
                waste(producerWaste);
            }
            ended.store(true, std::memory_order_release);
        });
        Seen seen;
        for (bool more = true; more;) {
            const bool last = ended.load(std::memory_order_acquire);
            CurvePoint point;
            more = ring.pop(point);
            if (more) {
                ++seen.points;
                seen.torn += isWhole(point) ? 0U : 1U;
                seen.backward += point.time > seen.last ? 0U : 1U;
                seen.last = point.time;
            }
            seen.overfull += ring.fill() > CurvePointRing::mask ? 1U : 0U;
            waste(consumerWaste);
            more = more || !last;
        }
        producer.join();
        QCOMPARE(seen.torn, std::uint64_t{0});
        QCOMPARE(seen.backward, std::uint64_t{0});
        QCOMPARE(seen.overfull, std::uint64_t{0});
        QCOMPARE(seen.last, double(count - 1)); // the newest point is never the one that goes
        QCOMPARE_LE(seen.points, std::uint64_t{count});
        QCOMPARE_LE(ring.maxFill(), CurvePointRing::mask);
        if (drops) {
            QCOMPARE_LT(seen.points, std::uint64_t{count});
            QCOMPARE(ring.maxFill(), CurvePointRing::mask);
        }
    }

    void afterAResetNoOldPointComes() {
        CurvePointRing ring;
        std::atomic<std::int32_t> grid{0};
        std::atomic<bool> ended{false};
        std::thread producer([&] {
            for (std::uint32_t i = 0; i < pointCount; ++i) {
                if (scatter(5, i) % 64 == 0) {
                    ring.reset();
                    grid.store(grid.load(std::memory_order_relaxed) + 1, std::memory_order_release);
                }
                ring.push(seededPoint(grid.load(std::memory_order_relaxed), i));
            }
            ended.store(true, std::memory_order_release);
        });
        Seen seen;
        while (!ended.load(std::memory_order_acquire)) {
            const std::int32_t oldest = grid.load(std::memory_order_acquire);
            CurvePoint point;
            if (ring.pop(point)) {
                ++seen.points;
                seen.torn += isWhole(point) ? 0U : 1U;
                seen.backward += point.time > seen.last ? 0U : 1U;
                seen.stale += point.timecode < oldest ? 1U : 0U;
                seen.last = point.time;
            }
        }
        producer.join();
        QCOMPARE_GT(seen.points, std::uint64_t{0});
        QCOMPARE(seen.torn, std::uint64_t{0});
        QCOMPARE(seen.backward, std::uint64_t{0});
        QCOMPARE(seen.stale, std::uint64_t{0});
    }

    void aThirdThreadReadsTheFill() {
        CurvePointRing ring;
        std::atomic<bool> ended{false};
        std::thread producer([&] {
            for (std::uint32_t i = 0; i < pointCount / 4; ++i) {
                ring.push(seededPoint(1, i));
            }
            ended.store(true, std::memory_order_release);
        });
        std::thread consumer([&] {
            CurvePoint point;
            while (!ended.load(std::memory_order_acquire)) {
                ring.pop(point);
            }
        });
        std::uint64_t beyond = 0;
        std::size_t highest = 0;
        std::uint64_t fallen = 0;
        while (!ended.load(std::memory_order_acquire)) {
            beyond += ring.fill() > CurvePointRing::mask ? 1U : 0U;
            fallen += ring.maxFill() < highest ? 1U : 0U;
            highest = ring.maxFill();
        }
        producer.join();
        consumer.join();
        QCOMPARE(beyond, std::uint64_t{0});
        QCOMPARE(fallen, std::uint64_t{0});
        QCOMPARE_GT(ring.maxFill(), std::size_t{0});
        QCOMPARE_LE(ring.maxFill(), CurvePointRing::mask);
    }
};

GRAMO_TEST_GUILESS_MAIN(TestCurvePointRingThreads)

#include "tst_curvepointringthreads.moc"
