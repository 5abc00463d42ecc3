#include "painter/yrange.h"

#include "support/testmain.h"

#include <QTest>

#include <limits>

class TestYRange : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void dataThatHardlyMovesGetsFixedRoom() {
        QCOMPARE(followingYRange({0.0, 5000.0}, {1000.0, 1199.0}), (GraphRange{970.0, 1269.0}));
        QCOMPARE(followingYRange({0.0, 5000.0}, {7.0, 7.0}), (GraphRange{-23.0, 77.0}));
    }
    void aRangeOf200StartsTheBandRule() {
        // 200: 30 below and 70 above the data, by the shares of 15 and 35 percent.
        QCOMPARE(followingYRange({-1e6, 1e6}, {1000.0, 1200.0}), (GraphRange{970.0, 1270.0}));
        QCOMPARE(followingYRange({975.0, 1265.0}, {1000.0, 1200.0}), (GraphRange{975.0, 1265.0}));
    }
    void theRangeStaysWithinTheBand() {
        const GraphRange data{0.0, 1000.0};
        QCOMPARE(followingYRange({-150.0, 1350.0}, data), (GraphRange{-150.0, 1350.0}));
        QCOMPARE(followingYRange({0.0, 1000.0}, data), (GraphRange{0.0, 1000.0}));
        QCOMPARE(followingYRange({-75.0, 1200.0}, data), (GraphRange{-75.0, 1200.0}));
    }
    void leavingTheBandJumpsByTheFullMargin() {
        const GraphRange data{0.0, 1000.0};
        QCOMPARE(followingYRange({1.0, 999.0}, data), (GraphRange{-150.0, 1350.0}));
        QCOMPARE(followingYRange({-151.0, 1351.0}, data), (GraphRange{-150.0, 1350.0}));
        // Each end for itself.
        QCOMPARE(followingYRange({-75.0, 999.0}, data), (GraphRange{-75.0, 1350.0}));
        QCOMPARE(followingYRange({1.0, 1200.0}, data), (GraphRange{-150.0, 1200.0}));
    }
    void theRangeRecoversFromDataThatIsNoNumber() {
        const double none = std::numeric_limits<double>::quiet_NaN();
        const GraphRange broken = followingYRange({0.0, 1000.0}, {none, none});
        QCOMPARE(followingYRange(broken, {0.0, 1000.0}), (GraphRange{-150.0, 1350.0}));
    }
    void extremesOfNothing() { QVERIFY(!visibleExtremes(std::nullopt, std::nullopt, 5.0)); }
    void extremesOfOneCurveAreNotShifted() {
        QCOMPARE(visibleExtremes(GraphRange{1.0, 2.0}, std::nullopt, 5.0), (GraphRange{1.0, 2.0}));
        QCOMPARE(visibleExtremes(std::nullopt, GraphRange{1.0, 2.0}, 5.0), (GraphRange{1.0, 2.0}));
    }
    void extremesOfBothShiftTheReference() {
        QCOMPARE(visibleExtremes(GraphRange{100.0, 300.0}, GraphRange{-950.0, -600.0}, 1000.0),
                 (GraphRange{50.0, 400.0}));
        QCOMPARE(visibleExtremes(GraphRange{100.0, 300.0}, GraphRange{1150.0, 1200.0}, -1000.0),
                 (GraphRange{100.0, 300.0}));
    }
    void aNewGraphStartsWithinTheUsualBounds() {
        QCOMPARE(initialYRange({0.0, 0.0}, ModelDisplay::NORMAL), (GraphRange{0.0, 270.0}));
        QCOMPARE(initialYRange({-30.0, 200.0}, ModelDisplay::NORMAL), (GraphRange{-30.0, 200.0}));
        QCOMPARE(initialYRange({-30.5, 270.5}, ModelDisplay::NORMAL), (GraphRange{-30.0, 270.0}));
        QCOMPARE(initialYRange({1.0, 199.0}, ModelDisplay::NORMAL), (GraphRange{-30.0, 270.0}));
    }
    void aNewAngleGraphStartsWithinTheUsualBounds() {
        for (const auto display : {ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
            QCOMPARE(initialYRange({0.0, 0.0}, display), (GraphRange{0.0, 1350000.0}));
            QCOMPARE(initialYRange({-150000.0, 1000000.0}, display), (GraphRange{-150000.0, 1000000.0}));
            QCOMPARE(initialYRange({-150001.0, 1350001.0}, display), (GraphRange{-150000.0, 1350000.0}));
            QCOMPARE(initialYRange({1.0, 999999.0}, display), (GraphRange{-150000.0, 1350000.0}));
        }
    }
    void theTwoAngleDisplays() {
        QVERIFY(plotsAngle(ModelDisplay::PHRASING));
        QVERIFY(plotsAngle(ModelDisplay::DRUMMING));
        QVERIFY(!plotsAngle(ModelDisplay::NORMAL));
    }
};

GRAMO_TEST_GUILESS_MAIN(TestYRange)
#include "tst_yrange.moc"
