#include "curve/autoresize.h"

#include "support/testmain.h"

#include <QTest>

class tst_Autoresize : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void bothEndsAreZeroAtStart() {
        const Autoresize range;
        QCOMPARE(range.minValue(), 0.0);
        QCOMPARE(range.maxValue(), 0.0);
    }

    void eachEndIsKeptAsGiven() {
        Autoresize range;
        range.setMinValue(-120.5);
        QCOMPARE(range.maxValue(), 0.0);
        range.setMaxValue(-300.0);
        QCOMPARE(range.minValue(), -120.5);
        QCOMPARE(range.maxValue(), -300.0);
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_Autoresize)
#include "tst_autoresize.moc"
