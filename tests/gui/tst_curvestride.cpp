#include "painter/curvestride.h"

#include "gui/support/curves.h"
#include "support/testmain.h"

#include <QTest>

#include <set>

namespace {

constexpr double step = 64.0; // frames between two points

GraphScale followingScale(double xMin, double span) {
    return {GraphLayout::of(1200, 500, false, false), {xMin, xMin + span}, {0.0, 1.0}, true};
}

} // namespace

class TestCurveStride : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void noStretchWithoutTwoPointsToSee() {
        CurvePointStore store;
        QVERIFY(!curveStretch(store.view(), 0, 0));
        QVERIFY(!curveStretch(store.view(), 0, 5));
        addPoints(store, 10, step);
        QVERIFY(!curveStretch(store.view(), 4, 4));
        QVERIFY(!curveStretch(store.view(), 5, 4));
        // Shrunk since its visible part was named.
        QVERIFY(!curveStretch(store.view(), 10, 12));
        QVERIFY(!curveStretch(store.view(), 9, 12));
        CurvePointStore restarted;
        addPoints(restarted, 1, step);
        QVERIFY(!curveStretch(restarted.view(), 0, 5000));
    }
    void theStretchEndsWithTheCurve() {
        CurvePointStore store;
        addPoints(store, 10, step);
        const auto inside = curveStretch(store.view(), 2, 7);
        QVERIFY(inside && inside->first == 2 && inside->to == 7);
        const auto beyond = curveStretch(store.view(), 2, 12);
        QVERIFY(beyond && beyond->first == 2 && beyond->to == 9);
    }
    void aLineForAboutEverySecondPixel() {
        // 1000 points on 500 pixels: a density of 240 gives 4.17.
        QCOMPARE(curveStride({0, 1000}, 500.0), std::size_t{4});
        QCOMPARE(curveStride({0, 100}, 500.0), std::size_t{1});
    }
    void aStretchOfOnePixelIsDrawnWithTwoLines() {
        for (const double pixels : {1.0, 0.0, -5.0}) {
            QCOMPARE(curveStride({0, 1000}, pixels), std::size_t{2000}); // density 0.5
        }
        QCOMPARE(curveStride({0, 1000}, 2.0), std::size_t{1041}); // 1.92 pixels: density 0.96
    }
    void strideOneStartsAtTheFirstVisiblePoint() {
        const CurveWalk walk = curveWalk({13, 50}, 1);
        QCOMPARE(walk.start, std::size_t{13});
        QCOMPARE(walk.stride, std::size_t{1});
    }
    void aStrideBecomesThePowerOfTwoAtOrAboveIt() {
        const std::size_t wanted[] = {2, 4, 4, 8, 8, 8, 8, 16};
        for (std::size_t stride = 2; stride <= 9; ++stride) {
            QCOMPARE(curveWalk({0, 100}, stride).stride, wanted[stride - 2]);
        }
    }
    void theWalkStartsAtAMultipleOfTheStride() {
        QCOMPARE(curveWalk({16, 100}, 7).start, std::size_t{16});
        QCOMPARE(curveWalk({17, 100}, 7).start, std::size_t{24});
        QCOMPARE(curveWalk({23, 100}, 7).start, std::size_t{24});
        QCOMPARE(curveWalk({1, 100}, 3).start, std::size_t{4});
    }
    // The window slides over a long take: whatever it shows, the same points are chosen.
    void theSamePointsStayChosenWhileTheWindowMoves() {
        CurvePointStore store;
        addPoints(store, 20000, step);
        const auto points = store.view();
        const std::size_t shown = 8571; // 16 beats
        std::set<std::size_t> before;
        std::size_t stride = 0;
        for (std::size_t first = 100; first < 1100; ++first) {
            const CurveStretch stretch{first, first + shown};
            const GraphScale scale = followingScale(points[first].time, shown * step);
            const CurveWalk walk = curveWalk(stretch, curveStride(points, stretch, scale));
            QVERIFY(stride == 0 || walk.stride == stride);
            stride = walk.stride;
            std::set<std::size_t> chosen;
            for (std::size_t i = walk.start; i <= stretch.to; i += walk.stride) {
                chosen.insert(i);
            }
            for (const std::size_t i : chosen) {
                QVERIFY(before.empty() || i > *before.rbegin() || before.count(i) == 1);
            }
            before = chosen;
        }
        QCOMPARE(stride, std::size_t{16});
    }
    void aLongTakeIsThinnedBelowHalfThePixels() {
        CurvePointStore store;
        addPoints(store, 200000, step);
        const CurveStretch stretch{0, 199999};
        const GraphScale scale = followingScale(0.0, 200000 * step);
        const CurveWalk walk = curveWalk(stretch, curveStride(store.view(), stretch, scale));
        QVERIFY((stretch.to - walk.start) / walk.stride < 1155 / 2);
    }
};

GRAMO_TEST_GUILESS_MAIN(TestCurveStride)
#include "tst_curvestride.moc"
