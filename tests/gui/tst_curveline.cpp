#include "painter/curveline.h"

#include "gui/support/curves.h"
#include "painter/areacolors.h"
#include "painter/normalline.h"
#include "support/testmain.h"

#include <QImage>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double step = 10.0; // one point a pixel on the scale below
constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double endless = std::numeric_limits<double>::infinity();
constexpr double quiet = -1.0; // the mark of a quiet tick in the tests below

// 10 frames and 1 unit a pixel; the plot's lower left corner lies at 45, 460.
GraphScale scale() {
    return {GraphLayout::of(1200, 500, false, false), {0.0, 1155.0 * step}, {0.0, 425.0}, false};
}

NormalLine lineOf(const CurvePointStore& store, CurveStretch stretch,
                  std::span<const WavePair> wavePairs = {}) {
    return {{ModelGraph::INPUT_DECKA, store.view(), stretch}, scale(), 0.0, wavePairs};
}

std::vector<CurveSegment> segmentsOf(const CurveLine& line) {
    std::vector<CurveSegment> segments;
    for (const CurveStep& one : line.all()) {
        segments.insert(segments.end(), one.segments.begin(), one.segments.begin() + one.lines);
    }
    return segments;
}

// Columns of a wave that can be told apart: number i reaches from -(i + 2) to 2 (i + 2).
std::vector<WavePair> numberedPairs(int count) {
    std::vector<WavePair> pairs;
    for (int i = 2; i < count + 2; ++i) {
        pairs.emplace_back(-i, 2.0 * i);
    }
    return pairs;
}

// The column of the wave that a tick shows.
double shownColumn(const CurveSegment& tick) {
    if (tick.line.y1() == 84.0 && tick.line.y2() == 85.0) {
        return quiet;
    }
    const double column = 85.0 - tick.line.y1() - 2.0;
    return tick.line.y2() == 85.0 + 2.0 * (column + 2.0) ? column : none;
}

// The tick at the second of two points.
CurveSegment tickOf(const CurvePoint& point, const std::vector<WavePair>& pairs) {
    CurvePointStore store;
    addPoints(store, 3, 3.0 * step, [&](int i, CurvePoint& p) {
        const double time = p.time;
        p = i == 1 ? point : p;
        p.time = time;
    });
    return *lineOf(store, {0, 2}, pairs).step(1).tick;
}

CurveSegment tickAt(double rawAngle, const std::vector<WavePair>& pairs) {
    CurvePoint point = curvePoint(0.0, 0.0);
    point.rawAngle = rawAngle;
    return tickOf(point, pairs);
}

} // namespace

class TestCurveLine : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theLineEntersFromTheFirstVisiblePoint() {
        CurvePointStore store;
        addPoints(store, 2001, step / 10.0, [](int i, CurvePoint& p) { p.position = i % 400 + 0.25; });
        const NormalLine line = lineOf(store, {5, 1990});
        QCOMPARE(line.walk().start, std::size_t{32});
        const CurveStep entry = *line.entry();
        QCOMPARE(entry.lines, std::size_t{1});
        QCOMPARE(entry.point, std::size_t{32});
        QCOMPARE(entry.segments[0].point, std::size_t{32});
        // Its column is whole, its height is not.
        QCOMPARE(entry.segments[0].line, QLineF(45, 460.0 - 5.25, 48, 427));
    }
    void allOtherPixelsAreWhole() {
        CurvePointStore store;
        addPoints(store, 50, step * 1.37,
                  [](int i, CurvePoint& p) { p.position = 200.5 + 99.9 * std::sin(i); });
        const auto segments = segmentsOf(lineOf(store, {0, 49}));
        for (std::size_t i = 0; i < segments.size(); ++i) {
            const QLineF& line = segments[i].line;
            for (const double pixel : {line.x1(), i > 0 ? line.y1() : 0.0, line.x2(), line.y2()}) {
                QCOMPARE(pixel, std::trunc(pixel));
            }
        }
        QVERIFY(segments[0].line.y1() != std::trunc(segments[0].line.y1()));
    }
    void aStepLeadsFromTheChosenPointBefore() {
        CurvePointStore store;
        addPoints(store, 2001, step / 10.0, [](int i, CurvePoint& p) { p.position = i % 400; });
        const NormalLine line = lineOf(store, {5, 1990});
        const CurveStep one = line.step(96);
        QCOMPARE(one.point, std::size_t{96});
        QCOMPARE(one.lines, std::size_t{1});
        QCOMPARE(one.segments[0].point, std::size_t{96});
        QCOMPARE(one.segments[0].line, QLineF(line.pixel(64), line.pixel(96)));
        QCOMPARE(line.pixel(64), QPointF(45 + 6, 460 - 64)); // time 65: pixel 6.5
        QCOMPARE(line.pixel(96), QPointF(45 + 9, 460 - 96));
        QVERIFY(!one.tick);
    }
    void strideOneTakesEveryPointAndStartsAtTheFirst() {
        CurvePointStore store;
        addPoints(store, 100, 3.0 * step);
        for (const std::size_t first : {std::size_t{0}, std::size_t{3}, std::size_t{13}}) {
            const NormalLine line = lineOf(store, {first, 80});
            QCOMPARE(line.walk().start, first);
            QCOMPARE(line.walk().stride, std::size_t{1});
            QCOMPARE(*line.lastChosen(), std::size_t{80});
            QCOMPARE(line.all().size(), 80 - first + 2); // entry, steps, tail
        }
    }
    void theStrideIsTheNextPowerOfTwo_data() {
        QTest::addColumn<double>("pointsPerPixel");
        QTest::addColumn<std::size_t>("stride");
        // On 1000 pixels a density of 480: 2.08 points for each one a pixel.
        QTest::newRow("0.5") << 0.5 << std::size_t{1};
        QTest::newRow("0.9") << 0.9 << std::size_t{1};    // 1.87
        QTest::newRow("1") << 1.0 << std::size_t{2};      // 2.08
        QTest::newRow("1.4") << 1.4 << std::size_t{2};    // 2.9
        QTest::newRow("1.5") << 1.5 << std::size_t{4};    // 3.1
        QTest::newRow("2.3") << 2.3 << std::size_t{4};    // 4.8
        QTest::newRow("2.5") << 2.5 << std::size_t{8};    // 5.2
        QTest::newRow("10") << 10.0 << std::size_t{32};   // 20.8
        QTest::newRow("15.5") << 15.5 << std::size_t{32}; // 32.3
        QTest::newRow("16") << 16.0 << std::size_t{64};   // 33.3
    }
    void theStrideIsTheNextPowerOfTwo() {
        QFETCH(double, pointsPerPixel);
        QFETCH(std::size_t, stride);
        CurvePointStore store;
        const int last = int(std::lround(1000.0 * pointsPerPixel));
        addPoints(store, last + 1, step / pointsPerPixel);
        const std::size_t first = 7;
        const NormalLine line = lineOf(store, {first, std::size_t(last)});
        QCOMPARE(line.walk().stride, stride);
        QVERIFY(line.walk().start >= first);
        QVERIFY(line.walk().start < first + stride);
        QVERIFY(stride == 1 || line.walk().start % stride == 0);
        QVERIFY(*line.lastChosen() <= std::size_t(last));
        QVERIFY(*line.lastChosen() + stride > std::size_t(last));
    }
    void strideOneDrawsTheLastSegmentTwice() {
        CurvePointStore store;
        addPoints(store, 5, 3.0 * step, [](int i, CurvePoint& p) { p.position = 10.0 * i; });
        const auto segments = segmentsOf(lineOf(store, {0, 4}));
        // From the first point to itself, four lines, and the tail back to the point before the last.
        QCOMPARE(segments.size(), std::size_t{6});
        QCOMPARE(segments[0].line, QLineF(48, 460, 48, 460));
        QCOMPARE(segments[4].line, QLineF(57, 430, 60, 420));
        QCOMPARE(segments[4].point, std::size_t{4});
        QCOMPARE(segments[5].line, QLineF(60, 420, 57, 430));
        QCOMPARE(segments[5].point, std::size_t{3});
    }
    void theTailReachesThePointBeforeTheEndOfTheStretch() {
        CurvePointStore store;
        // Ten points a pixel: a stride of 20 becomes 32.
        addPoints(store, 2001, step / 10.0, [](int i, CurvePoint& p) { p.position = i % 400; });
        const auto segments = segmentsOf(lineOf(store, {5, 1990}));
        QCOMPARE(segments[0].point, std::size_t{32});
        QCOMPARE(segments[0].line.x1(), scale().column(store.view()[5].time));
        QCOMPARE(segments[segments.size() - 2].point, std::size_t{1984});
        QCOMPARE(segments.back().point, std::size_t{1989});
        QCOMPARE(segments.back().line.p1(), segments[segments.size() - 2].line.p2());
        QCOMPARE(segments.back().line.x2(), scale().column(store.view()[1989].time));
    }
    void noTailWhereTheLastPixelIsThere() {
        CurvePointStore store;
        addPoints(store, 101, step / 10.0);
        // A stride of 21 becomes 32; 96 and 98 share a pixel.
        const NormalLine line = lineOf(store, {0, 99});
        QCOMPARE(segmentsOf(line).back().point, std::size_t{96});
        QVERIFY(!line.tail());
    }
    void aTailThatOnlyClimbsIsDrawn() {
        CurvePointStore store;
        addPoints(store, 101, step / 10.0, [](int i, CurvePoint& p) { p.position = i >= 97 ? 50.0 : 0.0; });
        const CurveStep tail = *lineOf(store, {0, 99}).tail();
        QCOMPARE(tail.segments[0].line, QLineF(54, 460, 54, 410));
        QCOMPARE(tail.segments[0].point, std::size_t{98});
    }
    void noTailAlongTheTopOfTheWidget() {
        CurvePointStore store; // pixel 0: no size to hold a difference against
        addPoints(store, 101, step / 10.0, [](int, CurvePoint& p) { p.position = 460.0; });
        QCOMPARE(lineOf(store, {0, 99}).pixel(98), QPointF(54, 0));
        QVERIFY(!lineOf(store, {0, 99}).tail());
    }
    void aStretchThatTheStridePassesOverIsItsTail() {
        CurvePointStore store;
        addPoints(store, 100, 0.05, [](int i, CurvePoint& p) { p.position = i + 0.25; }); // half a pixel
        const NormalLine line = lineOf(store, {1, 99});
        QCOMPARE(line.walk().stride, std::size_t{256});
        QVERIFY(!line.lastChosen());
        QVERIFY(!line.entry());
        const auto segments = segmentsOf(line);
        QCOMPARE(segments.size(), std::size_t{1});
        QCOMPARE(segments[0].line, QLineF(45, 460.0 - 1.25, 45, 361));
        QCOMPARE(segments[0].point, std::size_t{98});
    }
    void theStepsComeInTheOrderOfTheWalk() {
        CurvePointStore store;
        addPoints(store, 2001, step / 10.0, [](int i, CurvePoint& p) { p.position = i % 400; });
        const NormalLine line = lineOf(store, {5, 1990});
        const auto steps = line.all();
        std::size_t wanted = line.walk().start;
        for (std::size_t i = 0; i + 1 < steps.size(); ++i, wanted += line.walk().stride) {
            QCOMPARE(steps[i].point, wanted);
        }
        QCOMPARE(steps.back().point, std::size_t{1989});
        // A way without a gap.
        for (std::size_t i = 1; i < steps.size(); ++i) {
            QCOMPARE(steps[i].segments[0].line.p1(), steps[i - 1].segments[0].line.p2());
        }
    }
    // The window slides: what leads to a point stays the same, but for the whole columns it moves by.
    void whatLeadsToAPointDoesNotDependOnWhereTheWalkBegan() {
        CurvePointStore store;
        addPoints(store, 6000, 1.7, [](int i, CurvePoint& p) {
            p.position = 200.0 + 150.0 * std::sin(i * 0.01);
            turn(p, i * 0.3);
        });
        const auto pairs = numberedPairs(10);
        const auto lineAt = [&](std::size_t first, double xMin) {
            const GraphScale following(GraphLayout::of(1200, 500, false, true), {xMin, xMin + 7000.0},
                                       {0.0, 425.0}, true);
            return NormalLine({ModelGraph::INPUT_DECKA, store.view(), {first, first + 4000}}, following, 0.0,
                              pairs);
        };
        const NormalLine early = lineAt(10, 20.3);
        const NormalLine late = lineAt(771, 1311.9);
        QCOMPARE(early.walk().stride, late.walk().stride);
        const double moved = early.column(2000) - late.column(2000);
        QVERIFY(moved > 100.0);
        const std::size_t stride = late.walk().stride;
        for (std::size_t i = late.walk().start + stride; i <= *early.lastChosen(); i += stride) {
            const CurveStep a = early.step(i);
            const CurveStep b = late.step(i);
            QCOMPARE(a.lines, b.lines);
            QCOMPARE(a.segments[0].line, b.segments[0].line.translated(moved, 0.0));
            QCOMPARE(a.segments[0].point, b.segments[0].point);
            QCOMPARE(a.tick->line, b.tick->line.translated(moved, 0.0));
        }
    }

    void aTickShowsTheColumnOfTheAngle() {
        const auto four = numberedPairs(4);
        QCOMPARE(shownColumn(tickAt(0.0, four)), 0.0);
        QCOMPARE(shownColumn(tickAt(89.999, four)), 0.0);
        QCOMPARE(shownColumn(tickAt(90.0, four)), 1.0);
        QCOMPARE(shownColumn(tickAt(269.9, four)), 2.0);
        QCOMPARE(shownColumn(tickAt(359.999, four)), 3.0);
        QCOMPARE(shownColumn(tickAt(100.0, numberedPairs(1))), 0.0);
        QCOMPARE(shownColumn(tickAt(90.5, numberedPairs(2700))), 678.0); // 678.75
    }
    void anotherTurnShowsTheSameColumn() {
        const auto four = numberedPairs(4);
        QCOMPARE(shownColumn(tickAt(725.0, four)), 0.0);
        QCOMPARE(shownColumn(tickAt(-1.0, four)), 3.0);
        QCOMPARE(shownColumn(tickAt(-271.0, four)), 0.0);
        QCOMPARE(shownColumn(tickAt(-360.0, four)), 0.0);
    }
    // Not of the angle that the areas are looked up with.
    void aTickGoesByTheUnreducedAngle() {
        CurvePoint point = curvePoint(0.0, 0.0);
        point.rawAngle = 100.0;
        point.angle = 300.0;
        QCOMPARE(shownColumn(tickOf(point, numberedPairs(4))), 1.0);
    }
    void noAngleLeadsOutOfTheWave() {
        for (int count = 1; count <= 300; ++count) {
            const auto pairs = numberedPairs(count);
            QCOMPARE(shownColumn(tickAt(std::nextafter(360.0, 0.0), pairs)), count - 1.0);
        }
        for (const double angle : {none, endless, -endless, 1e300, -1e-300}) {
            const double column = shownColumn(tickAt(angle, numberedPairs(7)));
            QVERIFY(column == quiet || (column >= 0.0 && column < 7.0));
        }
    }
    void aClosedFaderIsAQuietTick() {
        CurvePoint point = curvePoint(0.0, 0.0, false);
        QCOMPARE(shownColumn(tickOf(point, numberedPairs(4))), quiet);
    }
    void aRecordThatStandsStillIsAQuietTick() {
        const auto four = numberedPairs(4);
        for (const double pitch : {0.0, 0.01, -0.01, 0.0099, none}) {
            QCOMPARE(shownColumn(tickOf(curvePoint(0.0, 0.0, true, pitch), four)), quiet);
        }
        for (const double pitch : {0.010001, -0.010001, 1.0, -3.0}) {
            QCOMPARE(shownColumn(tickOf(curvePoint(0.0, 0.0, true, pitch), four)), 0.0);
        }
    }
    void aTickStandsMidwayBetweenItsPoints() {
        CurvePointStore store;
        addPoints(store, 5, 3.0 * step);
        const auto pairs = numberedPairs(4);
        const NormalLine line = lineOf(store, {0, 4}, pairs);
        const CurveSegment tick = *line.step(2).tick; // from column 51 to 54
        QCOMPARE(tick.line, QLineF(52.5, 83, 52.5, 89));
        QCOMPARE(tick.point, std::size_t{2});
        const CurveStep tail = *line.tail(); // from 60 back to 57
        QCOMPARE(tail.tick->line, QLineF(58.5, 83, 58.5, 89));
        QCOMPARE(tail.tick->point, std::size_t{3});
        QCOMPARE(line.entry()->tick->line.x1(), 48.0);
    }
    void everyStepHasItsTick() {
        CurvePointStore store;
        addPoints(store, 2001, step / 10.0);
        const auto pairs = numberedPairs(4);
        const auto steps = lineOf(store, {5, 1990}, pairs).all();
        QVERIFY(steps.size() > 50);
        for (const CurveStep& one : steps) {
            QVERIFY(one.tick && one.tick->point == one.point);
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(TestCurveLine)
#include "tst_curveline.moc"
