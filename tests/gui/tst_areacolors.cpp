#include "painter/areacolors.h"

#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

using Area = AreaColors::Area;

const QColor red(200, 0, 0);
const QColor blue(0, 0, 200);
constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double endless = std::numeric_limits<double>::infinity();

// The first area of the list that holds the angle; -1 for none.
int firstMatch(const std::vector<Area>& areas, double angle) {
    for (std::size_t i = 0; i < areas.size(); ++i) {
        if (angle >= areas[i].start && areas[i].end > angle) {
            return int(i);
        }
    }
    return -1;
}

} // namespace

class TestAreaColors : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aDeckWithoutAreasHasNone() {
        const AreaColors colors;
        QVERIFY(colors.empty());
        QVERIFY(!colors.at(0.0));
        QVERIFY(!colors.at(180.0));
    }
    void anAreaHoldsItsStartAndNotItsEnd() {
        const AreaColors colors({{10.0, 20.0, red}});
        QVERIFY(!colors.empty());
        QVERIFY(!colors.at(std::nextafter(10.0, 0.0)));
        QVERIFY(colors.at(10.0));
        QVERIFY(colors.at(std::nextafter(20.0, 0.0)));
        QVERIFY(!colors.at(20.0));
        QCOMPARE(colors.at(10.0)->color, red);
        QCOMPARE(colors.at(10.0)->span(), 10.0);
    }
    void aBorderBelongsToTheAreaThatStartsThere() {
        const AreaColors colors({{0.0, 90.0, red}, {90.0, 180.0, blue}});
        QCOMPARE(colors.at(90.0)->color, blue);
        QCOMPARE(colors.at(std::nextafter(90.0, 0.0))->color, red);
    }
    void aWholeTurnHoldsEveryReducedAngle() {
        const AreaColors colors({{0.0, 360.0, red}});
        QVERIFY(colors.at(0.0));
        QVERIFY(colors.at(std::nextafter(360.0, 0.0)));
        QVERIFY(!colors.at(360.0));
    }
    void noAngleLiesInABackwardArea() {
        const AreaColors colors({{300.0, 20.0, red}});
        QVERIFY(!colors.empty()); // the deck does have areas
        for (const double angle : {0.0, 10.0, 20.0, 150.0, 300.0, 350.0}) {
            QVERIFY(!colors.at(angle));
        }
    }
    void noAngleLiesInAnAreaWithoutASpan() {
        const AreaColors colors({{50.0, 50.0, red}});
        QVERIFY(!colors.empty());
        QVERIFY(!colors.at(50.0));
    }
    void ofTwoAreasTheFirstInTheListCounts() {
        const AreaColors colors({{100.0, 200.0, red}, {0.0, 150.0, blue}, {140.0, 300.0, blue}});
        QCOMPARE(colors.at(50.0)->color, blue);
        QCOMPARE(colors.at(120.0)->color, red);
        QCOMPARE(colors.at(199.0)->color, red);
        QCOMPARE(colors.at(200.0)->start, 140.0);
    }
    void whatIsNoAngleLiesNowhere() {
        const AreaColors colors({{0.0, 360.0, red}});
        for (const double angle : {none, endless, -endless, -1.0, 1e300}) {
            QVERIFY(!colors.at(angle));
        }
    }
    void bordersThatAreNoNumbersHoldNothing() {
        const AreaColors colors({{none, 100.0, red}, {20.0, none, red}, {50.0, 60.0, blue}});
        QVERIFY(!colors.at(30.0));
        QCOMPARE(colors.at(55.0)->color, blue);
    }
    void everyAngleFindsWhatAWalkOverTheListFinds_data() {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 200; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }
    // Areas in any order: backwards, overlapping, touching, without a span, outside the turn.
    void everyAngleFindsWhatAWalkOverTheListFinds() {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const auto border = [&] {
            return random.bounded(2) == 0 ? double(random.bounded(37)) * 10.0 : random.bounded(420.0) - 30.0;
        };
        std::vector<Area> areas;
        for (int i = random.bounded(12); i > 0; --i) {
            const double start = border();
            areas.push_back({start, random.bounded(5) == 0 ? start : border(), randomColor(random)});
        }
        const AreaColors colors(areas);
        QCOMPARE(colors.empty(), areas.empty());
        std::vector<double> angles;
        for (int i = 0; i < 300; ++i) {
            angles.push_back(random.bounded(360.0));
        }
        for (const Area& area : areas) {
            for (const double edge : {area.start, area.end}) {
                angles.insert(angles.end(),
                              {edge, std::nextafter(edge, -1000.0), std::nextafter(edge, 1000.0)});
            }
        }
        for (const double angle : angles) {
            const int wanted = firstMatch(areas, angle);
            const Area* found = colors.at(angle);
            QCOMPARE(found != nullptr, wanted >= 0);
            QVERIFY(wanted < 0 || *found == areas[std::size_t(wanted)]);
        }
    }

    void theListOfADeckKeepsItsOrder() {
        AreaColors colors;
        colors.update({area(100.0, 200.0, red), area(0.0, 150.0, blue)});
        QCOMPARE(colors.at(120.0)->color, red);
        QCOMPARE(colors.at(50.0)->color, blue);
        colors.update({area(0.0, 150.0, blue), area(100.0, 200.0, red)});
        QCOMPARE(colors.at(120.0)->color, blue);
        colors.update({});
        QVERIFY(colors.empty());
    }
    void anEditOfAnAreaShowsAtTheNextUpdate() {
        const QPhrasingPtr edited = area(0.0, 100.0, red);
        AreaColors colors;
        colors.update({edited});
        const AreaColors before = colors;
        edited->setColor(blue);
        QVERIFY(colors == before); // a copy
        colors.update({edited});
        QVERIFY(!(colors == before));
        QCOMPARE(colors.at(50.0)->color, blue);
        edited->setAngleEnd(40.0);
        colors.update({edited});
        QVERIFY(!colors.at(50.0));
    }
    void theSameAreasStayWhereTheyAre() {
        AreaColors colors;
        colors.update({area(0.0, 100.0, red, QStringLiteral("kick"))});
        const Area* before = colors.at(50.0);
        colors.update({area(0.0, 100.0, red, QStringLiteral("snare"))}); // a name isn't drawn
        QVERIFY(colors.at(50.0) == before);
    }
    void anAreaThatIsNoNumberIsThereAndHoldsNothing() {
        const QPhrasingList list{area(none, 100.0, red), area(0.0, none, blue)};
        AreaColors colors;
        colors.update(list);
        QVERIFY(!colors.empty());
        QVERIFY(!colors.at(0.0));
        QVERIFY(!colors.at(50.0));
        const AreaColors before = colors;
        colors.update(list);
        QVERIFY(colors == before); // it equals itself
    }
};

GRAMO_TEST_GUILESS_MAIN(TestAreaColors)
#include "tst_areacolors.moc"
