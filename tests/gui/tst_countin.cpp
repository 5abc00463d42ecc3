#include "painter/countin.h"

#include "support/testmain.h"

#include <QTest>

class TestCountIn : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void atStartNothingIsShown() {
        const CountIn countIn;
        QCOMPARE(countIn.number(), -1);
        QCOMPARE(countIn.scale(), 1.0F);
        QVERIFY(!countIn.visible());
    }
    void aCountAppearsLarge() {
        CountIn countIn;
        countIn.show(4);
        QVERIFY(countIn.visible());
        QCOMPARE(countIn.number(), 4);
        QCOMPARE(countIn.scale(), 2.6F);
    }
    void aCountOfZeroShowsNothing() {
        CountIn countIn;
        countIn.show(1);
        countIn.show(0);
        QVERIFY(!countIn.visible());
    }
    void eachTickGoes15PercentOfTheWay() {
        CountIn countIn;
        countIn.show(3);
        QVERIFY(countIn.step());
        QCOMPARE(countIn.scale(), 2.6F + (1.0F - 2.6F) * 0.15F);
        const float before = countIn.scale();
        QVERIFY(countIn.step());
        QCOMPARE(countIn.scale(), before + (1.0F - before) * 0.15F);
    }
    void theNumberArrivesAndTheTicksEnd() {
        CountIn countIn;
        countIn.show(3);
        int ticks = 1;
        while (countIn.step()) {
            QVERIFY(countIn.scale() - 1.0F >= 0.01F);
            ++ticks;
        }
        QCOMPARE(countIn.scale(), 1.0F);
        QCOMPARE(ticks, 32); // 1.6 * 0.85^n falls below 0.01
    }
};

GRAMO_TEST_GUILESS_MAIN(TestCountIn)
#include "tst_countin.moc"
