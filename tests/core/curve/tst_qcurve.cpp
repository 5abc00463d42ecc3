#include "curve/qcurve.h"
#include "support/datafolder.h"
#include "support/testmain.h"

#include <QMetaMethod>
#include <QRandomGenerator>
#include <QTest>

#include <memory>

namespace {

struct Fixture {
    CurvePointStore store;
    std::unique_ptr<QCurve> curve;

    Fixture() {
        store.reserve();
        curve = std::make_unique<QCurve>(ModelGraph::INPUT_DECKA, store);
    }
    void add(double time, double position = 0.0, std::int32_t timecode = -1, double angle = 0.0) {
        CurvePoint point;
        point.time = time;
        point.position = position;
        point.timecode = timecode;
        point.angle = angle;
        point.rawAngle = angle + 1000.0;
        store.append(point);
    }
};

// The same answers, one point after the other.
std::size_t plainFirst(const std::vector<double>& times, std::int32_t time) {
    if (time < 1 || times.empty()) {
        return 0;
    }
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (times[i] >= double(time)) {
            return i;
        }
    }
    return times.size() - 1;
}

std::size_t plainLast(const std::vector<double>& times, std::int32_t time) {
    if (time < 1 || times.empty()) {
        return 0;
    }
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (times[i] >= double(time)) {
            return i == 0 ? 0 : i - 1;
        }
    }
    return times.size() - 1;
}

} // namespace

class tst_QCurve : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }

    void aCurveEmptiesItsStoreAndKeepsItsName() {
        Fixture f;
        f.add(0.0);
        f.add(96.0);
        const CurvePoint* first = &f.store.view()[0];
        const QCurve curve(ModelGraph::INPUT_2, f.store);
        QVERIFY(f.store.view().empty());
        QCOMPARE(curve.graphName(), ModelGraph::INPUT_2);
        QCOMPARE(curve.firstVisible(), std::size_t{0});
        QCOMPARE(curve.lastVisible(), std::size_t{0});
        f.add(0.0);
        QCOMPARE(&f.store.view()[0], first); // the memory stayed
    }

    void itsOneSlotIsTheRepairOfTheStart() {
        QStringList slotsOfItsOwn;
        const QMetaObject& meta = QCurve::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).methodType() == QMetaMethod::Slot) {
                slotsOfItsOwn << QString::fromLatin1(meta.method(i).methodSignature());
            }
        }
        QCOMPARE(slotsOfItsOwn, QStringList(QStringLiteral("initStartTimecode()")));
    }

    void aResetEmptiesTheCurveAndItsVisibleStretch() {
        Fixture f;
        for (int i = 0; i < 10; ++i) {
            f.add(i * 10.0);
        }
        double min = 0.0;
        double max = 0.0;
        bool found = false;
        f.curve->minMaxPosition(20, 80, min, max, found);
        QVERIFY(f.curve->firstVisible() > 0 && f.curve->lastVisible() > 0);
        f.curve->resetCurve();
        QVERIFY(f.curve->points().empty());
        QCOMPARE(f.curve->firstVisible(), std::size_t{0});
        QCOMPARE(f.curve->lastVisible(), std::size_t{0});
    }

    // ---- searching ----

    void anEmptyCurveGivesZerosEverywhere() {
        Fixture f;
        for (const int time : {-5, 0, 1, 100, 2147483647}) {
            QCOMPARE(f.curve->findFirstIndex(time), std::size_t{0});
            QCOMPARE(f.curve->findLastIndex(time), std::size_t{0});
            const CurvePoint point = f.curve->pointAt(time);
            const CurvePoint zeros;
            QVERIFY(std::memcmp(&point, &zeros, sizeof point) == 0);
        }
    }

    void aTimeBelowOneMeansTheStartAlsoOnAFilledCurve() {
        Fixture f;
        f.add(-50.0, 1.0);
        f.add(-20.0, 2.0);
        f.add(30.0, 3.0);
        for (const int time : {0, -1, -30, -2147483647}) {
            QCOMPARE(f.curve->findFirstIndex(time), std::size_t{0});
            QCOMPARE(f.curve->findLastIndex(time), std::size_t{0});
            QCOMPARE(f.curve->pointAt(time).position, 1.0);
        }
    }

    void theTwoSearchesAreNoMirrorImages() {
        Fixture f;
        for (int i = 0; i < 5; ++i) {
            f.add(i * 10.0); // 0 10 20 30 40
        }
        QCOMPARE(f.curve->findFirstIndex(20), std::size_t{2}); // the point found
        QCOMPARE(f.curve->findLastIndex(20), std::size_t{1});  // the point before it
        QCOMPARE(f.curve->findFirstIndex(21), std::size_t{3});
        QCOMPARE(f.curve->findLastIndex(21), std::size_t{2});
        QCOMPARE(f.curve->findFirstIndex(41), std::size_t{4}); // all lie before it
        QCOMPARE(f.curve->findLastIndex(41), std::size_t{4});
        QCOMPARE(f.curve->findFirstIndex(40), std::size_t{4});
        QCOMPARE(f.curve->findLastIndex(40), std::size_t{3});
    }

    void whereTheFirstPointQualifiesAlreadyBothGiveZero() {
        Fixture f;
        f.add(100.0);
        f.add(200.0);
        QCOMPARE(f.curve->findFirstIndex(50), std::size_t{0});
        QCOMPARE(f.curve->findLastIndex(50), std::size_t{0});
        QCOMPARE(f.curve->findLastIndex(100), std::size_t{0});
    }

    void aPointIsTheLastOneBeforeATime() {
        Fixture f;
        f.add(0.0, 1.0);
        f.add(96.0, 2.0);
        f.add(192.0, 3.0);
        QCOMPARE(f.curve->pointAt(1).position, 1.0);
        QCOMPARE(f.curve->pointAt(96).position, 1.0);
        QCOMPARE(f.curve->pointAt(97).position, 2.0);
        QCOMPARE(f.curve->pointAt(5000).position, 3.0);
        QCOMPARE(f.curve->pointAt(0).position, 1.0);
    }

    void theSearchesAgreeWithALinearOneOnRandomCurves() {
        QRandomGenerator random(2024);
        for (int round = 0; round < 400; ++round) {
            Fixture f;
            std::vector<double> times;
            double time = random.bounded(2) == 0 ? 0.0 : double(random.bounded(2000)) - 1000.0;
            const int count = random.bounded(round < 200 ? 12 : 600);
            for (int i = 0; i < count; ++i) {
                times.push_back(time);
                f.add(time, double(i));
                time += 1.0 + random.bounded(random.bounded(4) == 0 ? 500 : 4);
            }
            for (int ask = 0; ask < 60; ++ask) {
                const int wanted =
                    ask < 30 && !times.empty()
                        ? int(times[std::size_t(random.bounded(int(times.size())))]) + ask % 3 - 1
                        : random.bounded(-20, int(time) > 1 ? int(time) + 20 : 30);
                QCOMPARE(f.curve->findFirstIndex(wanted), plainFirst(times, wanted));
                QCOMPARE(f.curve->findLastIndex(wanted), plainLast(times, wanted));
                if (!times.empty()) {
                    QCOMPARE(f.curve->pointAt(wanted).position, double(plainLast(times, wanted)));
                }
            }
        }
    }

    // ---- smallest and largest ----

    void anEmptyCurveFindsNothingAndLeavesTheTwoAsTheyWere() {
        Fixture f;
        double min = 12.0;
        double max = 34.0;
        bool found = true;
        f.curve->minMaxPosition(0, 1000, min, max, found);
        QVERIFY(!found);
        QCOMPARE(min, 12.0);
        QCOMPARE(max, 34.0);
    }

    void aWindowThatHoldsOnePointFindsNothing() {
        Fixture f;
        for (int i = 0; i < 5; ++i) {
            f.add(i * 100.0, i);
        }
        double min = 12.0;
        double max = 34.0;
        bool found = true;
        f.curve->minMaxPosition(150, 250, min, max, found);
        QVERIFY(!found);
        QCOMPARE(f.curve->firstVisible(), std::size_t{2});
        QCOMPARE(f.curve->lastVisible(), std::size_t{2});
        QCOMPARE(min, 12.0);
        QCOMPARE(max, 34.0);
    }

    void thePointAtTheEndIsLeftOut() {
        Fixture f;
        const double positions[] = {0.0, -5.0, 3.0, 8.0, -90.0, 100.0};
        for (int i = 0; i < 6; ++i) {
            f.add(i * 100.0, positions[i]);
        }
        double min = 0.0;
        double max = 0.0;
        bool found = false;
        f.curve->minMaxPosition(100, 450, min, max, found); // points 1 to 4
        QVERIFY(found);
        QCOMPARE(f.curve->firstVisible(), std::size_t{1});
        QCOMPARE(f.curve->lastVisible(), std::size_t{4});
        QCOMPARE(min, -5.0);
        QCOMPARE(max, 8.0);
    }

    void aWindowThatStandsBackToFrontFindsNothing() {
        Fixture f;
        for (int i = 0; i < 10; ++i) {
            f.add(i * 10.0, i);
        }
        double min = 0.0;
        double max = 0.0;
        bool found = true;
        f.curve->minMaxPosition(80, 20, min, max, found);
        QVERIFY(!found);
        QCOMPARE(f.curve->firstVisible(), std::size_t{8});
        QCOMPARE(f.curve->lastVisible(), std::size_t{1});
    }

    void theExtremesAgreeWithALinearSearchOnRandomCurves() {
        QRandomGenerator random(77);
        for (int round = 0; round < 300; ++round) {
            Fixture f;
            std::vector<double> times;
            std::vector<double> positions;
            double time = 0.0;
            const int count = 1 + random.bounded(300);
            for (int i = 0; i < count; ++i) {
                times.push_back(time);
                positions.push_back(random.generateDouble() * 1000.0 - 500.0);
                f.add(time, positions.back());
                time += 1.0 + random.bounded(100);
            }
            for (int ask = 0; ask < 20; ++ask) {
                const int from = random.bounded(-10, int(time) + 10);
                const int to = random.bounded(-10, int(time) + 10);
                double min = -1.0;
                double max = -2.0;
                bool found = false;
                f.curve->minMaxPosition(from, to, min, max, found);
                const std::size_t first = plainFirst(times, from);
                const std::size_t last = plainLast(times, to);
                QCOMPARE(f.curve->firstVisible(), first);
                QCOMPARE(f.curve->lastVisible(), last);
                QCOMPARE(found, first < last);
                if (first < last) {
                    const auto [low, high] = std::minmax_element(positions.begin() + std::ptrdiff_t(first),
                                                                 positions.begin() + std::ptrdiff_t(last));
                    QCOMPARE(min, *low);
                    QCOMPARE(max, *high);
                } else {
                    QCOMPARE(min, -1.0);
                    QCOMPARE(max, -2.0);
                }
            }
        }
    }

    // ---- the repair of the start ----

    void anEmptyCurveNeedsNoRepair() {
        Fixture f;
        f.curve->initStartTimecode();
        QVERIFY(f.curve->points().empty());
    }

    void aCurveWithoutAnyCodeStaysAsItIs() {
        Fixture f;
        for (int i = 0; i < 5; ++i) {
            f.add(i * 10.0, i * 1.5, -1, i);
        }
        f.curve->initStartTimecode();
        for (std::size_t i = 0; i < 5; ++i) {
            QCOMPARE(f.curve->points()[i].position, double(i) * 1.5);
            QCOMPARE(f.curve->points()[i].timecode, -1);
            QCOMPARE(f.curve->points()[i].angle, double(i));
        }
    }

    void aCurveThatStartsWithACodeStaysAsItIs() {
        Fixture f;
        f.add(0.0, 1.0, 500);
        f.add(10.0, 2.0, -1);
        f.add(20.0, 3.0, 502);
        f.curve->initStartTimecode();
        QCOMPARE(f.curve->points()[0].position, 1.0);
        QCOMPARE(f.curve->points()[1].position, 2.0);
    }

    void aSinglePointStaysAsItIs() {
        Fixture f;
        f.add(0.0, 1.0, -1);
        f.curve->initStartTimecode();
        QCOMPARE(f.curve->points()[0].position, 1.0);
        QCOMPARE(f.curve->points()[0].timecode, -1);
    }

    void aLastCodeOfZeroRepairsNothing() {
        Fixture f;
        f.add(0.0, 1.0, -1);
        f.add(10.0, 2.0, -1);
        f.add(20.0, 3.0, 0);
        f.curve->initStartTimecode();
        QCOMPARE(f.curve->points()[0].position, 1.0);
    }

    void whereOnlyTheFirstPointHasNoCodeNothingIsRepaired() {
        Fixture f;
        f.add(0.0, 1.0, -1);
        f.add(10.0, 2.0, 700);
        f.add(20.0, 3.0, 701);
        f.curve->initStartTimecode();
        QCOMPARE(f.curve->points()[0].position, 1.0);
        QCOMPARE(f.curve->points()[0].timecode, -1);
    }

    void whereOnlyTheLastPointHasACodeAllEarlierOnesMoveByTheDelta() {
        Fixture f;
        f.add(0.0, 1.0, -1, 10.0);
        f.add(10.0, 2.5, -1, 11.0);
        f.add(20.0, 4.25, -1, 12.5);
        f.add(30.0, 5.0, 1000, 50.0);
        f.curve->initStartTimecode();
        const CurvePointStore::View all = f.curve->points();
        // 1000 - 4.25 and 50 - 12.5
        QCOMPARE(all[0].position, 996.75);
        QCOMPARE(all[1].position, 998.25);
        QCOMPARE(all[2].position, 1000.0);
        QCOMPARE(all[0].angle, 47.5);
        QCOMPARE(all[2].angle, 50.0);
        for (std::size_t i = 0; i < 3; ++i) {
            QCOMPARE(all[i].timecode, 995); // the same truncated delta in all of them
            QCOMPARE(all[i].rawAngle, (i == 0 ? 10.0 : i == 1 ? 11.0 : 12.5) + 1000.0);
        }
        QCOMPARE(all[3].position, 5.0);
        QCOMPARE(all[3].timecode, 1000);
        QCOMPARE(all[3].angle, 50.0);
    }

    void theDeltaComesFromTheLastPointWithoutACodeAndTheRepairEndsAtTheFirstOneWith() {
        Fixture f;
        f.add(0.0, 1.0, -1);
        f.add(10.0, 2.0, -1);
        f.add(20.0, 3.0, 400);
        f.add(30.0, 4.0, -1); // lost once more
        f.add(40.0, 5.0, 900);
        f.curve->initStartTimecode();
        const CurvePointStore::View all = f.curve->points();
        QCOMPARE(all[0].position, 1.0 + 896.0); // 900 - 4
        QCOMPARE(all[1].position, 2.0 + 896.0);
        QCOMPARE(all[0].timecode, 896);
        QCOMPARE(all[2].position, 3.0);
        QCOMPARE(all[3].position, 4.0);
        QCOMPARE(all[3].timecode, -1);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_QCurve)
#include "tst_qcurve.moc"
