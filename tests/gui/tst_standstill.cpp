#include "painter/standstill.h"

#include "gui/support/curves.h"
#include "support/testmain.h"

#include <QTest>

class TestStandstill : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theWindowIsAFifthOfASecond() {
        QCOMPARE(stillWindow(48000.0, 64.0), std::uint64_t{150});
        QCOMPARE(stillWindow(44100.0, 64.0), std::uint64_t{137});
        QCOMPARE(stillWindow(48000.0, 2048.0), std::uint64_t{4});
    }
    void withoutABufferNothingCountsAsStill() {
        CurvePointStore store;
        addPoints(store, 500, 64.0, [](int, CurvePoint& p) { p.pitch = 0.0; });
        QVERIFY(!standsStill(store.view(), stillWindow(48000.0, 0.0)));
    }
    void aCurveNoLongerThanTheWindowHasNotShownIt() {
        CurvePointStore store;
        addPoints(store, 150, 64.0, [](int, CurvePoint& p) { p.pitch = 0.0; });
        QVERIFY(!standsStill(store.view(), 150));
        addPoints(store, 1, 64.0, [](int, CurvePoint& p) { p.pitch = 0.0; });
        QVERIFY(standsStill(store.view(), 150));
    }
    void smallSpeedsCountAsStandingStill() {
        CurvePointStore store;
        addPoints(store, 20, 64.0, [](int i, CurvePoint& p) { p.pitch = i % 2 == 0 ? 0.01 : -0.01; });
        QVERIFY(standsStill(store.view(), 10));
    }
    void oneMovementWithinTheWindowIsEnough() {
        CurvePointStore store;
        addPoints(store, 20, 64.0, [](int i, CurvePoint& p) { p.pitch = i == 10 ? -0.011 : 0.0; });
        QVERIFY(!standsStill(store.view(), 10)); // points 10 to 19
        QVERIFY(standsStill(store.view(), 9));
    }
};

GRAMO_TEST_GUILESS_MAIN(TestStandstill)
#include "tst_standstill.moc"
