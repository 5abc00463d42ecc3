#include "curve/angle.h"
#include "curve/curvepoint.h"
#include "support/testmain.h"

#include <QTest>

#include <cstddef>
#include <cstring>
#include <limits>

class tst_CurvePoint : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aPointIsOneCacheLine() {
        QCOMPARE(sizeof(CurvePoint), std::size_t{64});
        QCOMPARE(alignof(CurvePoint), std::size_t{64});
    }

    void theFieldsStandInTheirOrder() {
        QCOMPARE(offsetof(CurvePoint, position), std::size_t{0});
        QCOMPARE(offsetof(CurvePoint, angle), std::size_t{8});
        QCOMPARE(offsetof(CurvePoint, rawAngle), std::size_t{16});
        QCOMPARE(offsetof(CurvePoint, pitch), std::size_t{24});
        QCOMPARE(offsetof(CurvePoint, time), std::size_t{32});
        QCOMPARE(offsetof(CurvePoint, timecode), std::size_t{40});
        QCOMPARE(offsetof(CurvePoint, direction), std::size_t{44});
        QCOMPARE(offsetof(CurvePoint, soundOn), std::size_t{48});
    }

    void aNewPointIsAllZero() {
        const CurvePoint point;
        unsigned char zeros[64] = {};
        QVERIFY(std::memcmp(&point, zeros, 64) == 0);
    }

    void anAngleIsReducedToOneTurn_data() {
        QTest::addColumn<double>("raw");
        QTest::addColumn<double>("angle");
        QTest::newRow("zero") << 0.0 << 0.0;
        QTest::newRow("inside") << 123.5 << 123.5;
        QTest::newRow("minus ten") << -10.0 << 350.0;
        QTest::newRow("a turn") << 360.0 << 0.0;
        QTest::newRow("two turns") << 720.0 << 0.0;
        QTest::newRow("two turns back") << -720.0 << 0.0;
        QTest::newRow("many turns") << 36000045.0 << 45.0;
        QTest::newRow("many turns back") << -36000045.0 << 315.0;
        QTest::newRow("just below a turn") << std::nextafter(360.0, 0.0) << std::nextafter(360.0, 0.0);
        QTest::newRow("less than nothing by less than a turn holds") << -1e-300 << 0.0;
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 0.0;
        QTest::newRow("without end") << std::numeric_limits<double>::infinity() << 0.0;
    }
    void anAngleIsReducedToOneTurn() {
        QFETCH(double, raw);
        QTEST(reducedAngle(raw), "angle");
        QVERIFY(reducedAngle(raw) >= 0.0 && reducedAngle(raw) < 360.0);
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_CurvePoint)
#include "tst_curvepoint.moc"
