#include "painter/angleline.h"

#include "gui/support/curves.h"
#include "painter/yrange.h"
#include "support/testmain.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

const QColor red(200, 0, 0);

CurvePoint at(double rawAngle) {
    CurvePoint point = curvePoint(10.0, 0.0);
    turn(point, rawAngle);
    return point;
}

// 10 frames a pixel; `plot` says where the plot lies.
GraphScale scaleOf(const GraphLayout& plot) {
    return {plot, {0.0, plot.plotWidth * 10.0}, {0.0, AnglePlot::height}, false};
}

const GraphLayout usual = GraphLayout::of(1200, 500, false, false);
// The direct wave stands above the plot: it starts further down.
const GraphLayout pushedDown = GraphLayout::of(1200, 500, false, true);

/// A line over two points, whose choices can be asked for.
class Probe : public AngleLine {
public:
    Probe(const CurvePointStore& store, const GraphLayout& plot)
        : AngleLine({ModelGraph::INPUT_DECKA, store.view(), {0, 1}}, scaleOf(plot), noAreas(), {}) {}
    double middle() const { return scale().mapY(500000.0); }
    bool isLow(double y) const { return low({0.0, y}); }
    bool wraps(double fromY, double toY) const {
        return wrapsByDistance({0, {50.0, fromY}}, {1, {60.0, toY}});
    }
    QPointF top() const { return topBetween({0, {}}, {1, {}}); }
    QPointF bottom() const { return bottomBetween({0, {}}, {1, {}}); }
    CurveStep wrapped(bool forward) const {
        CurveStep step;
        addWrap({0, {50.0, 100.0}}, {1, {60.0, 400.0}}, forward, step);
        return step;
    }
    CurveStep plain() const {
        CurveStep step;
        addPlain({0, {50.0, 100.0}}, {1, {60.0, 400.0}}, step);
        return step;
    }

protected:
    double value(const CurvePoint& point) const override { return drummingY(point); }
    void connect(const Vertex& from, const Vertex& to, CurveStep& step) const override {
        addPlain(from, to, step);
    }

private:
    static const AreaColors& noAreas() {
        static const AreaColors none;
        return none;
    }
};

} // namespace

class TestAngleLine : public QObject {
    Q_OBJECT

    // Two points, 30 and 75 frames into the take.
    CurvePointStore m_store;

private Q_SLOTS:
    void initTestCase() {
        addPoints(m_store, 2, 30.0, [](int i, CurvePoint& p) { p.time = i == 0 ? 30.0 : 75.0; });
    }

    void drummingPlotsTheAngle() {
        QCOMPARE(drummingY(at(0.0)), 0.0);
        QCOMPARE(drummingY(at(1.0)), 2777.0);
        QCOMPARE(drummingY(at(180.0)), 499860.0);
        QCOMPARE(drummingY(at(725.0)), 5.0 * 2777.0);
        QCOMPARE(drummingY(at(-90.0)), 270.0 * 2777.0);
    }
    void aTurnEndsJustBelowTheTopOfTheScale() {
        QVERIFY(drummingY(at(359.999)) < 999720.0);
        QVERIFY(drummingY(at(359.999)) > 999717.0);
        const GraphScale scale = scaleOf(usual);
        const double y = scale.mapY(drummingY(at(359.999)));
        QVERIFY(y > scale.mapY(1000000.0));
        QVERIFY(y < scale.mapY(1000000.0) + 0.2);
        QCOMPARE(std::trunc(y), 35.0);
    }
    void noPointHasAFullTurn() {
        QCOMPARE(drummingY(at(360.0)), 0.0);
        QCOMPARE(drummingY(at(-360.0)), 0.0);
        QCOMPARE(drummingY(at(-1e-300)), 0.0);
    }
    void drummingGoesByTheUnreducedAngle() {
        CurvePoint point = at(100.0);
        point.angle = 7.0; // an amended curve
        QCOMPARE(drummingY(point), 277700.0);
    }

    void phrasingPlotsHowFarTheNeedleIsThroughItsArea() {
        const AreaColors areas({{40.0, 90.0, red}, {90.0, 290.0, red}});
        QCOMPARE(phrasingY(at(40.0), areas), 0.0);
        QCOMPARE(phrasingY(at(45.0), areas), 100000.0);
        QCOMPARE(phrasingY(at(89.0), areas), 980000.0);
        QCOMPARE(phrasingY(at(90.0), areas), 0.0);
        QCOMPARE(phrasingY(at(190.0), areas), 500000.0);
        QCOMPARE(phrasingY(at(190.0 - 720.0), areas), 500000.0);
        QVERIFY(phrasingY(at(std::nextafter(290.0, 0.0)), areas) < 1000000.0);
    }
    void phrasingOutsideAllAreasIsZero() {
        const AreaColors areas({{40.0, 90.0, red}});
        QCOMPARE(phrasingY(at(39.9), areas), 0.0);
        QCOMPARE(phrasingY(at(90.0), areas), 0.0);
        QCOMPARE(phrasingY(at(300.0), areas), 0.0);
    }
    void phrasingOnADeckWithoutAreasPlotsTheAngle() {
        const AreaColors none;
        QCOMPARE(phrasingY(at(100.0), none), 277700.0);
        QCOMPARE(phrasingY(at(-90.0), none), 270.0 * 2777.0);
        QCOMPARE(phrasingY(at(725.0), none), 5.0 * 2777.0);
    }
    void anAreaWithoutASpanIsZero() {
        const AreaColors areas({{50.0, 50.0, red}});
        QCOMPARE(phrasingY(at(50.0), areas), 0.0);
        QCOMPARE(phrasingY(at(60.0), areas), 0.0);
    }
    void aBackwardAreaIsZero() {
        const AreaColors areas({{300.0, 20.0, red}});
        for (const double angle : {10.0, 20.0, 150.0, 310.0}) {
            QCOMPARE(phrasingY(at(angle), areas), 0.0);
        }
    }
    // The area is that of the reduced angle, the way through it that of the unreduced one.
    void phrasingTakesAreaAndPlaceFromTheirOwnAngles() {
        CurvePoint point = at(70.0);
        point.angle = 45.0;
        const AreaColors areas({{40.0, 60.0, red}, {60.0, 100.0, red}});
        QCOMPARE(phrasingY(point, areas), 1500000.0);
    }

    void theLowerHalfStartsBelowTheMiddle() {
        const Probe probe(m_store, usual);
        QVERIFY(probe.isLow(probe.middle() + 0.5));
        QVERIFY(!probe.isLow(probe.middle()));
        QVERIFY(!probe.isLow(probe.middle() - 0.5));
    }
    void theEdgesAreReachedMidwayInTime() {
        const Probe probe(m_store, usual);
        QCOMPARE(probe.top(), QPointF(45 + 5, 35)); // 52.5 frames
        QCOMPARE(probe.bottom(), QPointF(45 + 5, 460));
        QCOMPARE(Probe(m_store, pushedDown).top().y(), 135.0);
    }
    void aPlainLineHasThePenOfItsEnd() {
        const CurveStep step = Probe(m_store, usual).plain();
        QCOMPARE(step.lines, std::size_t{1});
        QCOMPARE(step.segments[0].line, QLineF(50, 100, 60, 400));
        QCOMPARE(step.segments[0].point, std::size_t{1});
    }
    void forwardLeavesThroughTheTop() {
        const CurveStep step = Probe(m_store, usual).wrapped(true);
        QCOMPARE(step.lines, std::size_t{2});
        QCOMPARE(step.segments[0].line, QLineF(50, 100, 50, 35));
        QCOMPARE(step.segments[0].point, std::size_t{0});
        QCOMPARE(step.segments[1].line, QLineF(50, 460, 60, 400));
        QCOMPARE(step.segments[1].point, std::size_t{1});
    }
    void backwardLeavesThroughTheBottom() {
        const CurveStep step = Probe(m_store, usual).wrapped(false);
        QCOMPARE(step.lines, std::size_t{2});
        QCOMPARE(step.segments[0].line, QLineF(50, 100, 50, 460));
        QCOMPARE(step.segments[0].point, std::size_t{0});
        QCOMPARE(step.segments[1].line, QLineF(50, 35, 60, 400));
        QCOMPARE(step.segments[1].point, std::size_t{1});
    }
    // Not half the height of the plot, which is 212.5 and 162.5 here.
    void aWrapIsAsFarAsTheMiddleLiesInTheWidget_data() {
        QTest::addColumn<bool>("pushed");
        QTest::addColumn<double>("middle");
        QTest::newRow("plot from 35") << false << 247.5;
        QTest::newRow("plot from 135") << true << 297.5;
    }
    void aWrapIsAsFarAsTheMiddleLiesInTheWidget() {
        QFETCH(bool, pushed);
        QFETCH(double, middle);
        const Probe probe(m_store, pushed ? pushedDown : usual);
        QCOMPARE(probe.middle(), middle);
        for (const double y : {0.0, 140.0}) {
            QVERIFY(!probe.wraps(y, y + middle - 0.5));
            QVERIFY(!probe.wraps(y + middle - 0.5, y));
            QVERIFY(probe.wraps(y, y + middle + 0.5));
            QVERIFY(probe.wraps(y + middle + 0.5, y));
        }
        QVERIFY(!probe.wraps(0.0, std::nextafter(probe.middle(), 0.0)));
        QVERIFY(probe.wraps(0.0, probe.middle())); // as far is far enough
        QVERIFY(!probe.wraps(250.0, 250.0));
    }
};

GRAMO_TEST_GUILESS_MAIN(TestAngleLine)
#include "tst_angleline.moc"
