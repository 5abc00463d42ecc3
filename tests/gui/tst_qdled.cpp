#include "button/qdled.h"

#include "gui/support/guiprocess.h"
#include "support/testmain.h"

#include <QTest>

class TestQDLed : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }

    void itIsDark() {
        QDLed lamp(QStringLiteral("metronom2.png"));
        QVERIFY(!lamp.isEnabled());
        QCOMPARE(lamp.minimumSize(), QSize(50, 50));
        QCOMPARE(lamp.maximumSize(), QSize(50, 50));
        QCOMPARE(lamp.iconSize(), QSize(30, 30));
        QVERIFY(!lamp.icon().isNull());
    }
    void darkItIsDimmerThanLit() {
        QDLed lamp(QStringLiteral("metronom2.png"));
        const auto alphaSum = [&](QIcon::Mode state) {
            const QImage picture = lamp.icon().pixmap(QSize(30, 30), state).toImage();
            int sum = 0;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    sum += picture.pixelColor(x, y).alpha();
                }
            }
            return sum;
        };
        QVERIFY(alphaSum(QIcon::Disabled) > 0);
        QVERIFY(2 * alphaSum(QIcon::Disabled) < alphaSum(QIcon::Normal));
    }
    void itLightsForAMoment() {
        QDLed lamp(QStringLiteral("metronom2.png"));
        lamp.trigger();
        QVERIFY(lamp.isEnabled());
        QTRY_VERIFY(!lamp.isEnabled());
    }
    void itGoesOutAtOnce() {
        QDLed lamp(QStringLiteral("metronom2.png"));
        lamp.trigger();
        lamp.disabled();
        QVERIFY(!lamp.isEnabled());
    }
    void aSecondTriggerExtendsNothing() {
        QDLed lamp(QStringLiteral("metronom2.png"));
        lamp.trigger();
        QTest::qWait(QDLed::lightMs / 2);
        const int left = lamp.remainingMs();
        lamp.trigger();
        QVERIFY(lamp.isEnabled());
        QVERIFY(lamp.remainingMs() <= left);
        QTRY_VERIFY(!lamp.isEnabled());
    }
    void putOutEarlyItLightsInFullAgain() {
        QDLed lamp(QStringLiteral("metronom2.png"));
        lamp.trigger();
        lamp.disabled();
        QCOMPARE(lamp.remainingMs(), 0);
        lamp.trigger();
        QVERIFY(lamp.isEnabled());
        QVERIFY(lamp.remainingMs() > 0);
    }
};

GRAMO_TEST_MAIN(TestQDLed)
#include "tst_qdled.moc"
