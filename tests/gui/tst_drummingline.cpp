#include "painter/drummingline.h"

#include "gui/support/curves.h"
#include "support/testmain.h"

#include <QTest>

#include <cmath>
#include <initializer_list>

namespace {

const QColor red(200, 0, 0);
const QColor blue(0, 0, 200);
constexpr double step = 30.0; // three pixels

// 10 frames a pixel. The plot reaches from 35 to 460; its middle lies at 247.5.
GraphScale scale() {
    return {GraphLayout::of(1200, 500, false, false), {0.0, 11550.0}, {0.0, 1000000.0}, false};
}

// Where they lie is of no account to the line.
const AreaColors& areas() {
    static const AreaColors all({{100.0, 110.0, red}, {110.0, 120.0, blue}});
    return all;
}
const AreaColors& noAreas() {
    static const AreaColors none;
    return none;
}

double yOf(double angle) {
    return std::trunc(460.0 - angle * 2777.0 * 425.0 / 1000000.0);
}
// The column of point i, and the one midway to the next.
double columnOf(int i) {
    return 48.0 + 3.0 * i;
}
double midway(int i) {
    return 49.0 + 3.0 * i;
}

// Two points on one of two graphs on a large screen, with the wave above the plot. The plot reaches from 135
// to 470; its middle lies at 302.5, which is 90 percent of its height.
CurveStep belowTheWave(double from, double to, const AreaColors& list) {
    static const std::vector<WavePair> wave{{-20.0, 30.0}};
    CurvePointStore store;
    addAngles(store, step, std::vector<double>{from, to, to});
    return DrummingLine({ModelGraph::INPUT_DECKA, store.view(), {0, 2}},
                        {GraphLayout::of(1920, 510, false, true), {0.0, 18750.0}, {0.0, 1000000.0}, false},
                        list, wave)
        .step(1);
}

DrummingLine lineOf(const CurvePointStore& store, CurveStretch stretch, const AreaColors& list,
                    std::span<const WavePair> wave = {}) {
    return {{ModelGraph::INPUT_DECKA, store.view(), stretch}, scale(), list, wave};
}

void compare(const CurveStep& found, std::initializer_list<CurveSegment> wanted) {
    QCOMPARE(found.lines, wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        QCOMPARE(found.segments[i].line, wanted.begin()[i].line);
        QCOMPARE(found.segments[i].point, wanted.begin()[i].point);
    }
}

enum class Way { Plain, Forward, Backward };

// The lines of a way between two points, given where each stands.
std::vector<CurveSegment> linesOf(Way way, QPointF from, QPointF to, double between, std::size_t fromPoint,
                                  std::size_t toPoint) {
    const QPointF top(between, 35.0);
    const QPointF bottom(between, 460.0);
    switch (way) {
    case Way::Forward:
        return {{{from, top}, fromPoint}, {{bottom, to}, toPoint}};
    case Way::Backward:
        return {{{from, bottom}, fromPoint}, {{top, to}, toPoint}};
    default:
        return {{{from, to}, toPoint}};
    }
}

// Whether the line from one angle to the other goes that way.
bool goes(double from, double to, const AreaColors& list, Way way) {
    CurvePointStore store;
    addAngles(store, step, std::vector<double>{from, to, to});
    const DrummingLine line = lineOf(store, {0, 2}, list);
    const CurveStep found = line.step(1);
    const auto wanted = linesOf(way, line.pixel(0), line.pixel(1), midway(0), 0, 1);
    bool same = found.lines == wanted.size();
    for (std::size_t i = 0; same && i < wanted.size(); ++i) {
        same = found.segments[i].line == wanted[i].line && found.segments[i].point == wanted[i].point;
    }
    return same;
}

} // namespace

class TestDrummingLine : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theLinePlotsTheAngle() {
        CurvePointStore store;
        addAngles(store, step, std::vector<double>{0.0, 90.0, 359.999, -90.0});
        const DrummingLine line = lineOf(store, {0, 3}, noAreas());
        QCOMPARE(line.pixel(0), QPointF(columnOf(0), 460));
        QCOMPARE(line.pixel(1), QPointF(columnOf(1), yOf(90.0)));
        QCOMPARE(line.pixel(2), QPointF(columnOf(2), 35)); // just below the top of the scale
        QCOMPARE(line.pixel(3), QPointF(columnOf(3), yOf(270.0)));
    }
    void areasDoNotMoveThePoints() {
        CurvePointStore store;
        addAngles(store, step, std::vector<double>{105.0, 115.0, 200.0});
        const DrummingLine line = lineOf(store, {0, 2}, areas());
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(line.pixel(std::size_t(i)),
                     QPointF(columnOf(i), yOf(store.view()[std::size_t(i)].angle)));
        }
    }

    void withAreasTheAngleTellsAForwardWrap() {
        QVERIFY(goes(350.0, 10.0, areas(), Way::Forward));
        QVERIFY(goes(270.1, 89.9, areas(), Way::Forward)); // 213 pixels: no wrap by its distance
        QVERIFY(goes(270.1, 89.9, noAreas(), Way::Plain));
        QVERIFY(goes(270.0, 89.0, areas(), Way::Plain)); // not above
        QVERIFY(goes(271.0, 90.0, areas(), Way::Plain)); // not below
    }
    void withAreasTheAngleTellsABackwardWrap() {
        QVERIFY(goes(10.0, 350.0, areas(), Way::Backward));
        QVERIFY(goes(89.9, 270.1, areas(), Way::Backward));
        QVERIFY(goes(89.9, 270.1, noAreas(), Way::Plain));
        QVERIFY(goes(90.0, 271.0, areas(), Way::Plain));
        QVERIFY(goes(89.0, 270.0, areas(), Way::Plain));
    }
    void withAreasNoDistanceIsAWrap() {
        QVERIFY(goes(20.0, 265.0, areas(), Way::Plain)); // 289 pixels
        QVERIFY(goes(345.0, 95.0, areas(), Way::Plain));
        QVERIFY(goes(105.0, 115.0, areas(), Way::Plain)); // nor a border of two areas
        QVERIFY(goes(115.0, 250.0, areas(), Way::Plain));
    }
    // The deck has areas, even though no angle lies in any.
    void areasThatHoldNothingCountAsAreas() {
        const AreaColors backward({{300.0, 20.0, red}});
        QVERIFY(goes(20.0, 265.0, backward, Way::Plain));
        QVERIFY(goes(271.0, 89.0, backward, Way::Forward));
    }
    void theAngleOfAWrapIsTheUnreducedOne() {
        QVERIFY(goes(710.0, 730.0, areas(), Way::Forward)); // 350 to 10
        QVERIFY(goes(-350.0, -10.0, areas(), Way::Backward));
        CurvePointStore store;
        addPoints(store, 3, step, [](int i, CurvePoint& p) {
            p.rawAngle = i == 0 ? 350.0 : 10.0;
            p.angle = 180.0; // an amended curve
        });
        QCOMPARE(lineOf(store, {0, 2}, areas()).step(1).lines, std::size_t{2});
    }
    void withoutAreasTheDistanceTellsAWrap() {
        QVERIFY(goes(350.0, 10.0, noAreas(), Way::Forward));
        QVERIFY(goes(10.0, 350.0, noAreas(), Way::Backward));
        QVERIFY(goes(300.0, 80.0, noAreas(), Way::Forward)); // 260 pixels
        QVERIFY(goes(80.0, 300.0, noAreas(), Way::Backward));
        QVERIFY(goes(290.0, 90.0, noAreas(), Way::Plain)); // 236 pixels
    }
    void withoutAreasAWrapIsAtLeastTheMiddleFar() {
        CurvePointStore store;
        addAngles(store, step, std::vector<double>{0.0, 209.6, 0.0});
        const DrummingLine line = lineOf(store, {0, 2}, noAreas());
        QCOMPARE(line.pixel(0).y() - line.pixel(1).y(), 248.0);
        QCOMPARE(line.step(1).lines, std::size_t{2});
        CurvePointStore nearer;
        addAngles(nearer, step, std::vector<double>{0.0, 208.8, 0.0});
        const DrummingLine shorter = lineOf(nearer, {0, 2}, noAreas());
        QCOMPARE(shorter.pixel(0).y() - shorter.pixel(1).y(), 247.0);
        QCOMPARE(shorter.step(1).lines, std::size_t{1});
    }

    void whileTheWaveStandsAboveThePlotTheAngleTellsAWrap() {
        for (const AreaColors* list : {&noAreas(), &areas()}) {
            for (const auto& [from, to] : {std::pair(350.0, 10.0), std::pair(330.0, 20.0),
                                           std::pair(275.0, 85.0), std::pair(270.1, 89.9)}) {
                const CurveStep forward = belowTheWave(from, to, *list);
                QCOMPARE(forward.lines, std::size_t{2});
                QCOMPARE(forward.segments[0].line.p2(), QPointF(midway(0), 135.0));
                QCOMPARE(forward.segments[1].line.p1(), QPointF(midway(0), 470.0));
                const CurveStep backward = belowTheWave(to, from, *list);
                QCOMPARE(backward.lines, std::size_t{2});
                QCOMPARE(backward.segments[0].line.p2(), QPointF(midway(0), 470.0));
                QCOMPARE(backward.segments[1].line.p1(), QPointF(midway(0), 135.0));
            }
            for (const auto& [from, to] : {std::pair(270.0, 10.0), std::pair(300.0, 90.0),
                                           std::pair(359.0, 91.0), std::pair(100.0, 260.0)}) {
                QCOMPARE(belowTheWave(from, to, *list).lines, std::size_t{1});
                QCOMPARE(belowTheWave(to, from, *list).lines, std::size_t{1});
            }
        }
    }

    void noLineLeadsToTheFirstPoint() {
        const std::vector<WavePair> wave{{-20.0, 30.0}};
        CurvePointStore store;
        addAngles(store, step, std::vector<double>{10.0, 20.0, 30.0, 40.0});
        const DrummingLine line = lineOf(store, {0, 3}, areas(), wave);
        QVERIFY(!line.entry());
        const auto steps = line.all();
        QCOMPARE(steps[0].point, std::size_t{1});
        compare(steps[0], {{{columnOf(0), yOf(10.0), columnOf(1), yOf(20.0)}, 1}});
    }
    void inTheMiddleOfATakeTheLineEnters() {
        CurvePointStore store;
        addAngles(store, step, std::vector<double>{10.0, 20.0, 30.0, 40.0});
        const DrummingLine line = lineOf(store, {1, 3}, areas());
        compare(*line.entry(),
                {{{columnOf(1), 460.0 - 20.0 * 2777.0 * 425.0 / 1000000.0, columnOf(1), yOf(20.0)}, 1}});
        CurvePointStore dense; // every second one is chosen
        std::vector<double> angles(40, 200.0);
        angles[5] = 350.0;
        angles[6] = 10.0;
        addAngles(dense, 10.0, angles);
        const DrummingLine later = lineOf(dense, {5, 39}, areas());
        QCOMPARE(later.walk().start, std::size_t{6});
        compare(*later.entry(), {{{51, 460.0 - 350.0 * 2777.0 * 425.0 / 1000000.0, 51, 35}, 5},
                                 {{51, 460, 52, yOf(10.0)}, 6}});
    }
    void theLastPointIsReachedThroughAWrapToo() {
        CurvePointStore store;
        addAngles(store, step, std::vector<double>{200.0, 200.0, 350.0, 10.0});
        for (const AreaColors* list : {&areas(), &noAreas()}) {
            // Back from point 3 to point 2.
            compare(*lineOf(store, {0, 3}, *list).tail(), {{{columnOf(3), yOf(10.0), midway(2), 460}, 3},
                                                           {{midway(2), 35, columnOf(2), yOf(350.0)}, 2}});
        }
        std::vector<double> angles(404, 350.0);
        std::fill(angles.begin() + 390, angles.end(), 10.0);
        CurvePointStore dense;
        addAngles(dense, 1.0, angles); // ten points a pixel
        const DrummingLine line = lineOf(dense, {0, 403}, areas());
        QCOMPARE(*line.lastChosen(), std::size_t{384});
        // Times 385 and 403: midway is 394.
        compare(*line.tail(), {{{83, yOf(350.0), 84, 35}, 384}, {{84, 460, 85, yOf(10.0)}, 402}});
    }
    void everyStepHasItsTick() {
        const std::vector<WavePair> wave{{-20.0, 30.0}, {-1.0, 1.0}};
        CurvePointStore store;
        addAngles(store, step, std::vector<double>{10.0, 350.0, 10.0, 100.0});
        const auto steps = lineOf(store, {0, 3}, areas(), wave).all();
        QCOMPARE(steps.size(), std::size_t{4}); // three steps and the tail
        QCOMPARE(steps[0].tick->line, QLineF(49.5, 84, 49.5, 86));
        QCOMPARE(steps[1].tick->line, QLineF(52.5, 65, 52.5, 115));
    }
};

GRAMO_TEST_GUILESS_MAIN(TestDrummingLine)
#include "tst_drummingline.moc"
