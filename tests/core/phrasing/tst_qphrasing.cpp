#include "phrasing/qphrasing.h"

#include "support/testmain.h"

#include <QSet>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

class tst_QPhrasing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void itHoldsWhatItWasMadeWith() {
        const QPhrasing area(u"aaah"_s, QColor(1, 2, 3), 10.0, 30.5);
        QCOMPARE(area.label(), u"aaah"_s);
        QCOMPARE(area.color(), QColor(1, 2, 3));
        QCOMPARE(area.angleStart(), 10.0);
        QCOMPARE(area.angleEnd(), 30.5);
        QCOMPARE(area.size(), 20.5);
    }

    void eachOfTheFourCanBeSet() {
        QPhrasing area({}, QColor(), 0.0, 0.0);
        const QUuid id = area.id();
        area.setLabel(u"fresh"_s);
        area.setColor(QColor(9, 8, 7));
        area.setAngleStart(200.0);
        area.setAngleEnd(100.0);
        QCOMPARE(area.label(), u"fresh"_s);
        QCOMPARE(area.color(), QColor(9, 8, 7));
        QCOMPARE(area.angleStart(), 200.0);
        QCOMPARE(area.angleEnd(), 100.0);
        QCOMPARE(area.size(), -100.0);
        QCOMPARE(area.id(), id);
    }

    void everyAreaHasAnIdOfItsOwn() {
        QSet<QUuid> ids;
        for (int i = 0; i < 100; ++i) {
            ids << QPhrasing(u"same"_s, QColor(1, 2, 3), 0.0, 90.0).id();
        }
        QCOMPARE(ids.size(), 100);
        QVERIFY(!ids.contains(QUuid()));
    }

    void theStartLiesInTheAreaAndTheEndDoesNot() {
        const QPhrasing area({}, QColor(), 90.0, 180.0);
        QVERIFY(area.holds(90.0) && area.holds(135.0) && area.holds(std::nextafter(180.0, 0.0)));
        QVERIFY(!area.holds(180.0) && !area.holds(std::nextafter(90.0, 0.0)) && !area.holds(0.0));
    }

    void aWholeTurnHoldsEveryWrappedAngle() {
        const QPhrasing area({}, QColor(), 0.0, 360.0);
        QVERIFY(area.holds(0.0) && area.holds(std::nextafter(360.0, 0.0)));
        QVERIFY(!area.holds(360.0));
    }

    void noAngleLiesInAnAreaThatStartsBehindItsEnd() {
        const QPhrasing area({}, QColor(), 300.0, 60.0);
        for (double angle = 0.0; angle < 360.0; angle += 0.5) {
            QVERIFY(!area.holds(angle));
        }
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_QPhrasing)
#include "tst_qphrasing.moc"
