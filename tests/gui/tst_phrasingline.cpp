#include "painter/phrasingline.h"

#include "gui/support/curves.h"
#include "support/testmain.h"

#include <QImage>
#include <QPainter>
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

// Two areas of one colour that touch, one of another colour that touches them, and a gap from 300 on.
const AreaColors& areas() {
    static const AreaColors all({{0.0, 100.0, red}, {100.0, 200.0, red}, {200.0, 300.0, blue}});
    return all;
}
const AreaColors& noAreas() {
    static const AreaColors none;
    return none;
}

// Where a tenth and nine tenths of an area are plotted.
constexpr double lowY = 417.0;
constexpr double highY = 77.0;

double turnY(double angle) {
    return std::trunc(460.0 - angle * 2777.0 * 425.0 / 1000000.0);
}
// The column of point i, and the one midway to the next.
double columnOf(int i) {
    return 48.0 + 3.0 * i;
}
double midway(int i) {
    return 49.0 + 3.0 * i;
}

PhrasingLine lineOf(const CurvePointStore& store, CurveStretch stretch, const AreaColors& list,
                    std::span<const WavePair> wave = {}) {
    return {{ModelGraph::INPUT_DECKA, store.view(), stretch}, scale(), list, false, wave};
}

// What leads to the last of these angles from the one before it.
CurveStep lastStep(std::initializer_list<double> angles, const AreaColors& list = areas()) {
    CurvePointStore store;
    addAngles(store, step, angles);
    return lineOf(store, {0, angles.size() - 1}, list).step(angles.size() - 1);
}

// The same with the wave above a lower plot, which reaches from 135 to 470.
CurveStep belowTheWave(double from, double to) {
    static const std::vector<WavePair> wave{{-20.0, 30.0}};
    CurvePointStore store;
    addAngles(store, step, std::vector<double>{from, to, to});
    return PhrasingLine({ModelGraph::INPUT_DECKA, store.view(), {0, 2}},
                        {GraphLayout::of(1920, 510, false, true), {0.0, 18750.0}, {0.0, 1000000.0}, false},
                        noAreas(), false, wave)
        .step(1);
}

// What leads to the last of these points, as a graph with that choice for closed passages draws it.
CurveStep lastStep(std::initializer_list<std::pair<double, bool>> anglesAndSound, bool closedShown) {
    CurvePointStore store;
    addPoints(store, int(anglesAndSound.size()), step, [&](int i, CurvePoint& p) {
        turn(p, anglesAndSound.begin()[i].first);
        p.soundOn = anglesAndSound.begin()[i].second ? 1 : 0;
    });
    QImage nowhere(1, 1, QImage::Format_RGB32);
    QPainter painter(&nowhere);
    GraphOptions options;
    options.curveCrossFaderOff = closedShown;
    const CurveScene scene{painter, scale(), options, {}, ModelDisplay::PHRASING, &areas()};
    const CurveExtract curve{ModelGraph::INPUT_DECKA, store.view(), {0, anglesAndSound.size() - 1}};
    return curveLine(scene, curve, 0.0)->step(anglesAndSound.size() - 1);
}

void compare(const CurveStep& found, std::initializer_list<CurveSegment> wanted) {
    QCOMPARE(found.lines, wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        QCOMPARE(found.segments[i].line, wanted.begin()[i].line);
        QCOMPARE(found.segments[i].point, wanted.begin()[i].point);
    }
}

// Points one pixel apart: every second one is chosen.
void addPixels(CurvePointStore& store, const std::vector<double>& angles) {
    addAngles(store, 10.0, angles);
}

} // namespace

class TestPhrasingLine : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void withoutAreasAStrokeIsPlain() {
        compare(lastStep({100.0, 150.0}, noAreas()),
                {{{columnOf(0), turnY(100.0), columnOf(1), turnY(150.0)}, 1}});
        compare(lastStep({90.0, 290.0}, noAreas()), // 236 pixels
                {{{columnOf(0), turnY(90.0), columnOf(1), turnY(290.0)}, 1}});
    }
    void withoutAreasALineThatArrivesLowHasLeftThroughTheTop() {
        compare(lastStep({350.0, 10.0}, noAreas()), {{{columnOf(0), turnY(350.0), midway(0), 35}, 0},
                                                     {{midway(0), 460, columnOf(1), turnY(10.0)}, 1}});
        compare(lastStep({300.0, 80.0}, noAreas()), // 260 pixels
                {{{columnOf(0), turnY(300.0), midway(0), 35}, 0},
                 {{midway(0), 460, columnOf(1), turnY(80.0)}, 1}});
    }
    void withoutAreasALineThatArrivesHighHasLeftThroughTheBottom() {
        compare(lastStep({10.0, 350.0}, noAreas()), {{{columnOf(0), turnY(10.0), midway(0), 460}, 0},
                                                     {{midway(0), 35, columnOf(1), turnY(350.0)}, 1}});
    }
    void whileTheWaveStandsAboveThePlotTheAngleTellsAWrap() {
        for (const auto& [from, to] :
             {std::pair(350.0, 10.0), std::pair(330.0, 20.0), std::pair(270.1, 89.9)}) {
            const CurveStep forward = belowTheWave(from, to);
            QCOMPARE(forward.lines, std::size_t{2});
            QCOMPARE(forward.segments[0].line.p2(), QPointF(midway(0), 135.0));
            QCOMPARE(forward.segments[1].line.p1(), QPointF(midway(0), 470.0));
            const CurveStep backward = belowTheWave(to, from);
            QCOMPARE(backward.lines, std::size_t{2});
            QCOMPARE(backward.segments[0].line.p2(), QPointF(midway(0), 470.0));
            QCOMPARE(backward.segments[1].line.p1(), QPointF(midway(0), 135.0));
        }
        for (const auto& [from, to] : {std::pair(270.0, 10.0), std::pair(359.0, 91.0)}) {
            QCOMPARE(belowTheWave(from, to).lines, std::size_t{1});
            QCOMPARE(belowTheWave(to, from).lines, std::size_t{1});
        }
    }
    void withinAnAreaALineIsPlainHoweverLong() {
        compare(lastStep({10.0, 90.0}), {{{columnOf(0), lowY, columnOf(1), highY}, 1}});
        compare(lastStep({290.0, 210.0}), {{{columnOf(0), highY, columnOf(1), lowY}, 1}});
    }
    void noBreakAtTheBorderOfTwoAreasOfOneColour() {
        compare(lastStep({90.0, 110.0}), {{{columnOf(0), highY, columnOf(1), lowY}, 1}});
        compare(lastStep({110.0, 90.0}), {{{columnOf(0), lowY, columnOf(1), highY}, 1}});
    }
    void intoAnotherColourALineThatArrivesLowHasLeftThroughTheTop() {
        compare(lastStep({190.0, 210.0}),
                {{{columnOf(0), highY, midway(0), 35}, 0}, {{midway(0), 460, columnOf(1), lowY}, 1}});
        compare(lastStep({210.0, 110.0}), // wherever it came from
                {{{columnOf(0), lowY, midway(0), 35}, 0}, {{midway(0), 460, columnOf(1), lowY}, 1}});
    }
    void intoAnotherColourALineThatArrivesHighHasLeftThroughTheBottom() {
        compare(lastStep({210.0, 190.0}),
                {{{columnOf(0), lowY, midway(0), 460}, 0}, {{midway(0), 35, columnOf(1), highY}, 1}});
        compare(lastStep({290.0, 190.0}),
                {{{columnOf(0), highY, midway(0), 460}, 0}, {{midway(0), 35, columnOf(1), highY}, 1}});
    }
    void outOfAnAreaALineLeavesThroughTheNearerEdgeInThePenThatStands() {
        compare(lastStep({290.0, 330.0}), {{{columnOf(0), highY, midway(0), 35}, 0}});
        compare(lastStep({210.0, 330.0}), {{{columnOf(0), lowY, midway(0), 460}, 0}});
    }
    void intoAnAreaALineComesThroughTheNearerEdgeInThePenThatStands() {
        compare(lastStep({290.0, 330.0, 10.0}), {{{midway(1), 460, columnOf(2), lowY}, 0}});
        compare(lastStep({290.0, 330.0, 340.0, 350.0, 90.0}), {{{midway(3), 35, columnOf(4), highY}, 0}});
    }
    void thePenThatStandsIsThatOfTheLastPointInAnArea() {
        compare(lastStep({10.0, 110.0, 210.0, 330.0, 340.0, 90.0}),
                {{{midway(4), 35, columnOf(5), highY}, 2}});
        // A point that was entered has set its pen too.
        compare(lastStep({290.0, 330.0, 10.0, 330.0}), {{{columnOf(2), lowY, midway(2), 460}, 2}});
        compare(lastStep({290.0, 330.0, 10.0, 330.0, 10.0}), {{{midway(3), 460, columnOf(4), lowY}, 2}});
    }
    void whereNoPenStandsThePointsOwnIsTaken() {
        compare(lastStep({330.0, 10.0}), {{{midway(0), 460, columnOf(1), lowY}, 1}});
        compare(lastStep({330.0, 340.0, 350.0, 90.0}), {{{midway(2), 35, columnOf(3), highY}, 3}});
    }
    // Where closed passages are hidden, nothing of one is seen at an area's edge.
    void aClosedEntryHasItsOwnPenWhereClosedPassagesAreHidden() {
        compare(lastStep({{290.0, true}, {330.0, false}, {10.0, false}}, false),
                {{{midway(1), 460, columnOf(2), lowY}, 2}});
        compare(lastStep({{290.0, true}, {330.0, true}, {90.0, false}}, false),
                {{{midway(1), 35, columnOf(2), highY}, 2}});
        // One that sounds keeps the pen that stands, as all do where they are shown.
        compare(lastStep({{290.0, true}, {330.0, false}, {10.0, true}}, false),
                {{{midway(1), 460, columnOf(2), lowY}, 0}});
        compare(lastStep({{290.0, true}, {330.0, false}, {10.0, false}}, true),
                {{{midway(1), 460, columnOf(2), lowY}, 0}});
    }
    void outsideAllAreasThereIsNoLine() {
        compare(lastStep({330.0, 340.0}), {});
        compare(lastStep({10.0, 330.0, 331.0}), {});
    }
    void onADeckWhoseAreasHoldNothingThereIsNoLine() {
        const AreaColors backward({{300.0, 20.0, red}});
        compare(lastStep({310.0, 350.0}, backward), {});
        compare(lastStep({350.0, 10.0}, backward), {});
    }
    void outsideAllAreasTheDirectWaveGoesOn() {
        const std::vector<WavePair> wave{{-20.0, 30.0}};
        CurvePointStore store;
        addAngles(store, step, std::vector<double>{330.0, 340.0, 350.0});
        const CurveStep found = lineOf(store, {0, 2}, areas(), wave).step(1);
        QCOMPARE(found.lines, std::size_t{0});
        QCOMPARE(found.tick->line, QLineF(49.5, 65, 49.5, 115));
    }

    void aWalkThatStartsAtTheFirstPointHasNoEntry() {
        CurvePointStore store;
        addAngles(store, step, std::vector<double>{10.0, 20.0, 30.0, 40.0});
        for (const std::size_t first : {std::size_t{0}, std::size_t{1}}) {
            const PhrasingLine line = lineOf(store, {first, 3}, areas());
            QVERIFY(!line.entry());
            QCOMPARE(line.all()[0].point, first + 1);
        }
        CurvePointStore dense;
        addPixels(dense, std::vector<double>(40, 10.0));
        const PhrasingLine line = lineOf(dense, {4, 39}, areas());
        QCOMPARE(line.walk().stride, std::size_t{2});
        QVERIFY(!line.entry());
    }
    void aWalkThatStartsLaterEntersByTheSameRules() {
        std::vector<double> angles(40, 330.0);
        angles[5] = 190.0;
        angles[6] = 210.0;
        CurvePointStore store;
        addPixels(store, angles);
        const PhrasingLine line = lineOf(store, {5, 39}, areas());
        QCOMPARE(line.walk().start, std::size_t{6});
        // Times 60 and 70; the start of a line keeps the fraction of its height.
        compare(*line.entry(), {{{51, 77.5, 51, 35}, 5}, {{51, 460, 52, lowY}, 6}});
    }
    void onlyChosenPointsSetAPen() {
        std::vector<double> angles(40, 330.0);
        angles[0] = 290.0;
        angles[1] = 190.0; // passed over
        angles[4] = 90.0;
        CurvePointStore store;
        addPixels(store, angles);
        const CurveStep found = lineOf(store, {0, 39}, areas()).step(4);
        QCOMPARE(found.segments[0].point, std::size_t{0});
    }
    // The same whether the point that set it is still in view or has left.
    void thePenStandsAcrossTheEdgeOfTheView() {
        std::vector<double> angles(100, 330.0);
        angles[6] = 290.0;
        angles[60] = 90.0;
        CurvePointStore store;
        addPixels(store, angles);
        for (const std::size_t first : {0U, 5U, 6U, 7U, 31U, 40U, 58U}) {
            const PhrasingLine line = lineOf(store, {first, 99}, areas());
            QCOMPARE(line.walk().stride, std::size_t{2});
            QCOMPARE(line.step(60).segments[0].point, std::size_t{6});
        }
        // Through the entry it comes to the same.
        QCOMPARE(lineOf(store, {59, 99}, areas()).entry()->segments[0].point, std::size_t{6});
    }
    void aRestOutsideAllAreasIsSearchedForThousandsOfPoints() {
        for (const std::size_t rest : {std::size_t{4000}, std::size_t{5000}}) {
            std::vector<double> angles(rest, 330.0);
            angles.front() = 290.0;
            angles.insert(angles.end(), {10.0, 20.0});
            CurvePointStore store;
            addAngles(store, step, angles);
            const PhrasingLine line = lineOf(store, {rest - 3, rest + 1}, areas());
            QCOMPARE(line.step(rest).segments[0].point, rest == 4000 ? 0 : rest);
        }
    }
    void theTailGoesByTheSameRules() {
        CurvePointStore store;
        addAngles(store, step, std::vector<double>{110.0, 110.0, 190.0, 210.0});
        // Back from point 3 to point 2.
        compare(*lineOf(store, {0, 3}, areas()).tail(),
                {{{columnOf(3), lowY, midway(2), 460}, 3}, {{midway(2), 35, columnOf(2), highY}, 2}});
        CurvePointStore leaving;
        addAngles(leaving, step, std::vector<double>{110.0, 110.0, 330.0, 210.0});
        compare(*lineOf(leaving, {0, 3}, areas()).tail(), {{{columnOf(3), lowY, midway(2), 460}, 3}});
        CurvePointStore outside;
        addAngles(outside, step, std::vector<double>{110.0, 110.0, 330.0, 330.0});
        compare(*lineOf(outside, {0, 3}, areas()).tail(), {});
    }
    void thinningNeverCutsTheTail() {
        std::vector<double> angles(404, 110.0);
        std::fill(angles.begin() + 390, angles.end(), 190.0);
        CurvePointStore store;
        addAngles(store, 1.0, angles); // ten points a pixel
        const PhrasingLine line = lineOf(store, {0, 403}, areas());
        QCOMPARE(*line.lastChosen(), std::size_t{384});
        const CurveStep tail = *line.tail();
        compare(tail, {{{45 + 38, lowY, 45 + 40, highY}, 402}});
    }
};

GRAMO_TEST_GUILESS_MAIN(TestPhrasingLine)
#include "tst_phrasingline.moc"
