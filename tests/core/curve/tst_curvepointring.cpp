#include "curve/curvepointring.h"
#include "support/seededpoint.h"
#include "support/testmain.h"

#include <QTest>

namespace {

// Pops everything and gives the times of the points; -1 stands for a point that isn't what it should be.
QList<int> drain(CurvePointRing& ring) {
    QList<int> times;
    for (CurvePoint point; ring.pop(point);) {
        times << (isWhole(point) ? int(point.time) : -1);
    }
    return times;
}

QList<int> range(int from, int to) {
    QList<int> times;
    for (int i = from; i < to; ++i) {
        times << i;
    }
    return times;
}

void push(CurvePointRing& ring, int from, int to) {
    for (int i = from; i < to; ++i) {
        ring.push(seededPoint(5, std::uint32_t(i)));
    }
}

} // namespace

class tst_CurvePointRing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void itHas32SlotsAndCarries56BytesOfAPoint() {
        QCOMPARE(CurvePointRing::capacity, std::size_t{32});
        QCOMPARE(CurvePointRing::payload, std::size_t{56});
        QVERIFY(alignof(CurvePointRing) >= 64);
    }

    void anEmptyRingGivesNothing() {
        CurvePointRing ring;
        CurvePoint point = seededPoint(1, 1);
        QVERIFY(!ring.pop(point));
        QCOMPARE(point.time, 1.0); // untouched
        QCOMPARE(ring.fill(), std::size_t{0});
        QCOMPARE(ring.maxFill(), std::size_t{0});
    }

    void pointsComeOutInTheirOrderAndWhole() {
        CurvePointRing ring;
        push(ring, 0, 20);
        QCOMPARE(ring.fill(), std::size_t{20});
        QCOMPARE(drain(ring), range(0, 20));
        QCOMPARE(ring.fill(), std::size_t{0});
    }

    void whatDoesntTravelComesOutAsZero() {
        CurvePointRing ring;
        CurvePoint point = seededPoint(1, 1);
        std::memset(point.unused, 0xEE, sizeof point.unused);
        ring.push(point);
        std::memset(static_cast<void*>(&point), 0xEE, sizeof point);
        QVERIFY(ring.pop(point));
        QVERIFY(isWhole(point));
        for (std::size_t i = CurvePointRing::payload; i < sizeof point; ++i) {
            QCOMPARE(reinterpret_cast<const unsigned char*>(&point)[i], 0);
        }
    }

    void aPushTellsTheFill() {
        CurvePointRing ring;
        for (std::size_t i = 1; i <= 31; ++i) {
            QCOMPARE(ring.push(seededPoint(1, std::uint32_t(i))), i);
            QCOMPARE(ring.fill(), i);
        }
        QCOMPARE(ring.push(seededPoint(1, 32)), std::size_t{31});
    }

    void oneSlotStaysFree() {
        CurvePointRing ring;
        push(ring, 0, 31);
        QCOMPARE(drain(ring), range(0, 31));
        push(ring, 0, 32);
        QCOMPARE(drain(ring), range(1, 32));
    }

    void aFullRingHoldsTheLatest31PointsAndItsHighestFillStands() {
        CurvePointRing ring;
        for (int pushed = 32; pushed < 200; pushed += 7) {
            ring.reset();
            push(ring, 0, pushed);
            QCOMPARE(ring.fill(), std::size_t{31});
            QCOMPARE(ring.maxFill(), std::size_t{31});
            QCOMPARE(drain(ring), range(pushed - 31, pushed));
        }
    }

    void theHighestFillIsRaisedAndNeverLowered() {
        CurvePointRing ring;
        push(ring, 0, 5);
        QCOMPARE(ring.maxFill(), std::size_t{5});
        drain(ring);
        push(ring, 5, 8);
        QCOMPARE(ring.maxFill(), std::size_t{5});
        push(ring, 8, 12);
        QCOMPARE(ring.maxFill(), std::size_t{7});
        drain(ring);
        QCOMPARE(ring.maxFill(), std::size_t{7});
    }

    void aResetForgetsPointsAndHighestFill() {
        CurvePointRing ring;
        push(ring, 0, 40);
        ring.reset();
        QCOMPARE(ring.fill(), std::size_t{0});
        QCOMPARE(ring.maxFill(), std::size_t{0});
        CurvePoint point;
        QVERIFY(!ring.pop(point));
        push(ring, 40, 43);
        QCOMPARE(ring.maxFill(), std::size_t{3});
        QCOMPARE(drain(ring), range(40, 43));
    }

    void itRunsRoundManyTimes() {
        CurvePointRing ring;
        int next = 0;
        int expected = 0;
        for (int round = 0; round < 5000; ++round) {
            const int count = 1 + int(scatter(3, std::uint64_t(round)) % 31);
            push(ring, next, next + count);
            next += count;
            QCOMPARE(drain(ring), range(expected, next));
            expected = next;
        }
    }

    void takingAndGivingInTurnsKeepsTheOrder() {
        CurvePointRing ring;
        int next = 0;
        int expected = 0;
        for (int round = 0; round < 5000; ++round) {
            const int give = int(scatter(4, std::uint64_t(round)) % 9);
            push(ring, next, next + give);
            next += give;
            expected = std::max(expected, next - 31); // what has been dropped
            const int take = int(scatter(5, std::uint64_t(round)) % 9);
            for (int i = 0; i < take; ++i) {
                CurvePoint point;
                QCOMPARE(ring.pop(point), expected < next);
                if (expected < next) {
                    QVERIFY(isWhole(point));
                    QCOMPARE(int(point.time), expected++);
                }
            }
            QCOMPARE(ring.fill(), std::size_t(next - expected));
        }
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_CurvePointRing)
#include "tst_curvepointring.moc"
