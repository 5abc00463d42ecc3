#include "curve/curveextremes.h"

#include "curve/qcurve.h"
#include "support/datafolder.h"
#include "support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <bit>
#include <cmath>
#include <limits>

namespace {

using Extremes = CurveExtremes::Extremes;

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

// One point after the other.
Extremes walked(const CurvePointStore::View& points, std::size_t first, std::size_t last) {
    Extremes all{points[first].position, points[first].position};
    for (std::size_t i = first + 1; i < last; ++i) {
        all.min = std::min(all.min, points[i].position);
        all.max = std::max(all.max, points[i].position);
    }
    return all;
}

bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}
bool sameBits(const Extremes& a, const Extremes& b) {
    return sameBits(a.min, b.min) && sameBits(a.max, b.max);
}

struct Curve {
    CurvePointStore store;
    CurveExtremes extremes;

    Curve() { store.reserve(); }
    void add(double position) {
        CurvePoint point;
        point.position = position;
        point.time = double(store.size());
        if (store.size() % 4096 == 0) {
            store.prepare();
        }
        store.append(point);
    }
    Extremes over(std::size_t first, std::size_t last) {
        return extremes.over(store.view(), store.generation(), first, last);
    }
    /// Whether the two agree over a stretch.
    bool agrees(std::size_t first, std::size_t last) {
        return sameBits(over(first, last), walked(store.view(), first, last));
    }
    /// Whether they agree over `count` stretches anywhere and over the whole curve.
    bool agreesAnywhere(QRandomGenerator& random, int count) {
        const auto size = int(store.size());
        if (size < 2) {
            return true;
        }
        bool all = agrees(0, std::size_t(size));
        for (int i = 0; i < count && all; ++i) {
            const int first = random.bounded(size - 1);
            all = agrees(std::size_t(first), std::size_t(random.bounded(first + 1, size + 1)));
        }
        return all;
    }
};

/// What a broken file may hold, and what a deck plays.
double anyPosition(QRandomGenerator& random, int kind) {
    switch (kind) {
    case 0:
        return random.generateDouble() * 1e6 - 5e5;
    case 1: { // few values: many equal ones, zeros of both signs
        const double few[] = {0.0, -0.0, 1.0, -1.0};
        return few[random.bounded(4)];
    }
    case 2: {
        const double odd[] = {noNumber, infinite, -infinite, 0.0, -0.0, -noNumber};
        return odd[random.bounded(6)];
    }
    default:
        return random.bounded(3) == 0 ? noNumber : random.generateDouble();
    }
}

} // namespace

class tst_CurveExtremes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }

    void aStretchOfOnePoint() {
        Curve curve;
        curve.add(7.0);
        QCOMPARE(curve.over(0, 1).min, 7.0);
        QCOMPARE(curve.over(0, 1).max, 7.0);
    }

    void everyStretchOfAShortCurve() {
        QRandomGenerator random(5);
        Curve curve;
        for (int i = 0; i < 200; ++i) {
            curve.add(random.generateDouble());
        }
        for (std::size_t first = 0; first < 200; ++first) {
            for (std::size_t last = first + 1; last <= 200; ++last) {
                QVERIFY(curve.agrees(first, last));
            }
        }
    }

    // Blocks of 32, 1024, 32768 and 1048576 points.
    void aroundTheBordersOfBlocks() {
        QRandomGenerator random(6);
        Curve curve;
        for (int i = 0; i < 1'200'000; ++i) {
            curve.add(random.generateDouble());
        }
        const std::size_t borders[] = {0, 32, 1024, 32768, 65536, 1'048'576, 1'199'999};
        for (const std::size_t from : borders) {
            for (const std::size_t to : borders) {
                for (int k = 0; k < 9; ++k) {
                    const std::size_t first = from + std::size_t(k / 3) - (from > 0 ? 1 : 0);
                    const std::size_t last = std::min<std::size_t>(to + std::size_t(k % 3), 1'200'000);
                    if (first < last) {
                        QVERIFY(curve.agrees(first, last));
                    }
                }
            }
        }
    }

    void ofZerosOfBothSignsTheFirstOneStands() {
        Curve curve;
        for (int i = 0; i < 100; ++i) {
            curve.add(i % 2 == 0 ? -0.0 : 0.0);
        }
        QVERIFY(sameBits(curve.over(0, 100), {-0.0, -0.0}));
        QVERIFY(sameBits(curve.over(1, 100), {0.0, 0.0}));
    }

    void whatIsNoNumberIsPassedOver() {
        Curve curve;
        for (int i = 0; i < 200; ++i) {
            curve.add(i == 0 || i == 150 ? double(i) : noNumber);
        }
        QCOMPARE(curve.over(0, 200).min, 0.0);
        QCOMPARE(curve.over(0, 200).max, 150.0);
        QCOMPARE(curve.over(0, 100).max, 0.0);
    }

    void aStretchThatStartsWithWhatIsNoNumberHasNone() {
        Curve curve;
        for (int i = 0; i < 100; ++i) {
            curve.add(i == 0 ? noNumber : double(i));
        }
        QVERIFY(std::isnan(curve.over(0, 100).min));
        QVERIFY(std::isnan(curve.over(0, 100).max));
        QCOMPARE(curve.over(1, 100).min, 1.0);
    }

    void infinitePositionsCount() {
        Curve curve;
        for (int i = 0; i < 100; ++i) {
            curve.add(i == 40 ? infinite : i == 60 ? -infinite : 1.0);
        }
        QCOMPARE(curve.over(0, 100).min, -infinite);
        QCOMPARE(curve.over(0, 100).max, infinite);
        QCOMPARE(curve.over(0, 50).min, 1.0);
        for (int i = 0; i < 100; ++i) {
            curve.add(infinite);
        }
        QCOMPARE(curve.over(100, 200).min, infinite);
        QCOMPARE(curve.over(100, 200).max, infinite);
    }

    void anOlderViewOfALongerCurve() {
        QRandomGenerator random(8);
        Curve curve;
        for (int i = 0; i < 40; ++i) {
            curve.add(random.generateDouble());
        }
        const CurvePointStore::View old = curve.store.view();
        for (int i = 0; i < 5000; ++i) {
            curve.add(random.generateDouble());
        }
        QVERIFY(curve.agrees(0, 5040));
        QVERIFY(sameBits(curve.extremes.over(old, curve.store.generation(), 0, 40), walked(old, 0, 40)));
        QVERIFY(curve.agrees(3, 5000));
    }

    void aClearedCurveThatIsFilledAgainIsAnotherOne() {
        Curve curve;
        for (int i = 0; i < 100; ++i) {
            curve.add(1000.0);
        }
        QCOMPARE(curve.over(0, 100).max, 1000.0);
        curve.store.clear();
        for (int i = 0; i < 200; ++i) { // at the same addresses, and longer
            curve.add(1.0);
        }
        QCOMPARE(curve.over(0, 200).max, 1.0);
    }

    void anAmendedCurveIsAnotherOne() {
        Curve curve;
        for (int i = 0; i < 100; ++i) {
            curve.add(5.0);
        }
        QCOMPARE(curve.over(0, 100).max, 5.0);
        curve.store.amend([](std::size_t i, CurvePoint& point) {
            point.position = 50.0;
            return i < 10;
        });
        QCOMPARE(curve.over(0, 100).max, 50.0);
    }

    void theRepairOfACurvesStartShowsInItsExtremes() {
        CurvePointStore store;
        store.reserve();
        QCurve curve(ModelGraph::INPUT_DECKA, store);
        for (int i = 0; i < 100; ++i) {
            CurvePoint point;
            point.time = i * 10.0;
            point.position = i < 99 ? i : 5000.0;
            point.timecode = i < 99 ? -1 : 5000;
            store.append(point);
        }
        double min = 0.0;
        double max = 0.0;
        bool found = false;
        curve.minMaxPosition(0, 2000, min, max, found);
        QCOMPARE(max, 98.0);
        curve.initStartTimecode();
        curve.minMaxPosition(0, 2000, min, max, found);
        QCOMPARE(min, 4902.0);
        QCOMPARE(max, 5000.0);
    }

    void itAgreesWithTheWalkWhilePointsAreAppendedAmendedAndCleared_data() {
        QTest::addColumn<int>("kind");
        QTest::newRow("a deck's positions") << 0;
        QTest::newRow("equal ones and zeros of both signs") << 1;
        QTest::newRow("infinite and no numbers") << 2;
        QTest::newRow("numbers and no numbers") << 3;
    }
    void itAgreesWithTheWalkWhilePointsAreAppendedAmendedAndCleared() {
        QFETCH(int, kind);
        QRandomGenerator random(quint32(100 + kind));
        Curve curve;
        bool live = false;
        for (int round = 0; round < 600; ++round) {
            switch (random.bounded(12)) {
            case 0:
                curve.store.clear();
                break;
            case 1:
                curve.store.setLive(live = !live);
                break;
            case 2:
                curve.store.restart();
                break;
            case 3:
                if (!live) {
                    curve.store.amend([&](std::size_t, CurvePoint& point) {
                        point.position = anyPosition(random, kind);
                        return random.bounded(50) != 0;
                    });
                }
                break;
            default:
                for (int i = random.bounded(random.bounded(2) == 0 ? 40 : 3000); i > 0; --i) {
                    curve.add(anyPosition(random, kind));
                }
            }
            // Not after every change: some are met together.
            if (random.bounded(3) != 0) {
                QVERIFY2(curve.agreesAnywhere(random, 12), qPrintable(QString::number(round)));
            }
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_CurveExtremes)
#include "tst_curveextremes.moc"
