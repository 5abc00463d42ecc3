// The tracking filter against a second one, written here one step a line. Every number has to agree bit by
// bit.

#include "module/trackingfilter.h"
#include "motion.h"
#include "support/testmain.h"

#include <QTest>

#include <bit>
#include <cmath>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

// 0.7 + index * 0.01640625, as a decimal number is read.
double writtenBand(int index) {
    const QByteArray digits = QByteArray::number(70000000 + 1640625LL * index).rightJustified(9, '0');
    const QByteArray text = digits.left(1) + '.' + digits.mid(1);
    return std::strtod(text.constData(), nullptr);
}

struct PlainFilter {
    double trackedX = 0.0;
    double predictedSpeed = 0.0;
    double acceleration = 0.0;
    double lastSpeed = 0.0;
    bool fastTracking = false;
    double newX = 0.0;
    double newV = 0.0;

    // Which way the frame took.
    int floorGains = 0;
    int middleGains = 0;
    int fullGains = 0;
    int heldFast = 0;
    int clamped = 0;

    void frame(double v, double x, double dt) {
        double a = (v - lastSpeed) * (1.0 / dt) * 0.35 + 0.65 * acceleration;
        if (a > 450.0) {
            a = 450.0;
            ++clamped;
        }
        if (a < -450.0) {
            a = -450.0;
            ++clamped;
        }
        acceleration = a;
        lastSpeed = v;
        predictedSpeed = v + dt * a;
        const double predicted = (predictedSpeed * dt + x) + dt * dt * (a * 0.5);
        const double r = trackedX - predicted;
        double index = std::floor(std::fabs(v) * 256.0 / 10.0);
        if (index > 255.0) {
            index = 255.0;
        }
        const double limit = (2 * dt + 1.0) * writtenBand(int(index));
        bool fast = false;
        if (std::fabs(r) > limit) {
            fast = true;
        } else if (fastTracking) {
            fast = std::fabs(r) > limit - 0.2;
            heldFast += fast ? 1 : 0;
        }
        fastTracking = fast;
        const double e = (std::fabs(r) - limit) * 0.7;
        double gx = 0.0;
        double gv = 0.0;
        if (e < 0) {
            gx = 0.001953125;
            gv = 7.62939453125e-06;
            ++floorGains;
        } else if (e > 1.0) {
            gx = 1.0;
            gv = 1.0;
            ++fullGains;
        } else {
            gx = e * 0.998046875 + 0.001953125;
            gv = e * 0.9999923706054688 + 7.62939453125e-06;
            ++middleGains;
        }
        newX = predicted + gx * r;
        trackedX = newX;
        newV = predictedSpeed + (1.0 / dt) * (gv * r);
    }
};

bool same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool agree(const TrackingFilter& filter, const TrackingFilter::Estimate& estimate, const PlainFilter& plain) {
    return same(estimate.x, plain.newX) && same(estimate.v, plain.newV) &&
           same(filter.trackedX, plain.trackedX) && same(filter.predictedSpeed, plain.predictedSpeed) &&
           same(filter.acceleration, plain.acceleration) && same(filter.lastSpeed, plain.lastSpeed) &&
           filter.fastTracking == plain.fastTracking;
}

double random(std::uint64_t seed, std::uint64_t i, double reach) {
    return (2.0 * scatterUnit(seed, i) - 1.0) * reach;
}

} // namespace

class tst_TrackingFilter : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theBandTableIsTheWrittenOne() {
        QCOMPARE(TrackingFilter::band(0), 0.7);
        QCOMPARE(TrackingFilter::band(1), 0.71640625);
        QCOMPARE(TrackingFilter::band(128), 2.8);
        QCOMPARE(TrackingFilter::band(255), 4.88359375);
        for (int i = 0; i < 256; ++i) {
            QVERIFY(same(TrackingFilter::band(i), writtenBand(i)));
        }
    }

    void aSpeedOfTenOrMoreUsesTheLastRow_data() {
        QTest::addColumn<double>("v");
        QTest::addColumn<int>("index");
        QTest::newRow("standing") << 0.0 << 0;
        QTest::newRow("nominal") << 1.0 << 25;
        QTest::newRow("nominal backwards") << -1.0 << 25;
        QTest::newRow("five") << 5.0 << 128;
        QTest::newRow("just below ten") << std::nextafter(10.0, 0.0) << 255;
        QTest::newRow("ten") << 10.0 << 255;
        QTest::newRow("ten backwards") << -10.0 << 255;
        QTest::newRow("a thousand") << 1000.0 << 255;
        QTest::newRow("beyond all integers") << 1e300 << 255;
        QTest::newRow("without end") << -std::numeric_limits<double>::infinity() << 255;
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 255;
    }
    void aSpeedOfTenOrMoreUsesTheLastRow() {
        QFETCH(double, v);
        QTEST(TrackingFilter::bandIndex(v), "index");
    }

    void itAgreesWithTheSecondFilterBitByBit_data() {
        QTest::addColumn<double>("rate");
        QTest::addColumn<double>("speed");
        QTest::addColumn<double>("error");
        QTest::newRow("a hand at 48000") << 48000.0 << 0.02 << 0.01;
        QTest::newRow("a hand at 44100") << 44100.0 << 0.02 << 0.01;
        QTest::newRow("wild at 48000") << 48000.0 << 15.0 << 8.0;
        QTest::newRow("wild at 8000") << 8000.0 << 15.0 << 8.0;
        QTest::newRow("around the band") << 96000.0 << 0.5 << 1.2;
    }
    void itAgreesWithTheSecondFilterBitByBit() {
        QFETCH(double, rate);
        QFETCH(double, speed);
        QFETCH(double, error);
        TrackingFilter filter;
        PlainFilter plain;
        double v = 0.0;
        for (std::uint64_t i = 0; i < 200000; ++i) {
            // Mostly a slow walk, now and then a jump.
            v = i % 997 == 0 ? random(1, i, speed) : v + random(2, i, speed * 0.001);
            const double x = i % 61 < 30 ? random(3, i, error) : random(3, i, error * 0.01);
            const TrackingFilter::Estimate estimate = filter.step(v, x, 1.0 / rate);
            plain.frame(v, x, 1.0 / rate);
            if (!agree(filter, estimate, plain)) {
                QFAIL(qPrintable(u"frame %1"_s.arg(i)));
            }
            if (i % 50021 == 50020) {
                filter.clear();
                plain.acceleration = 0.0;
                plain.predictedSpeed = 0.0;
                plain.lastSpeed = 0.0;
                plain.fastTracking = false;
                QVERIFY(same(filter.trackedX, plain.trackedX));
            }
            if (i % 30011 == 30010) {
                filter.forgetSpeed();
                plain.acceleration = 0.0;
                plain.predictedSpeed = 0.0;
            }
        }
        QVERIFY(plain.floorGains > 0);
        if (error > 1.0) { // these went everywhere
            QVERIFY(plain.middleGains > 0 && plain.fullGains > 0 && plain.heldFast > 0);
        }
        QVERIFY(plain.clamped > 0 || speed < 0.1);
    }

    void theAccelerationIsCappedWhateverTheJump() {
        for (const double jump : {1.0, -1.0, 1e6, -1e300}) {
            TrackingFilter filter;
            const double sign = jump > 0 ? 1.0 : -1.0;
            filter.step(jump, 0.0, 1.0 / 48000);
            QCOMPARE(filter.acceleration, sign * 450.0);
            QCOMPARE(filter.predictedSpeed, jump + sign * 450.0 / 48000);
        }
    }

    void insideTheBandTheGainsAreTheFloor() {
        TrackingFilter filter;
        filter.trackedX = 0.5; // band 0 is 0.7 wide
        const double dt = 1.0 / 48000;
        const TrackingFilter::Estimate estimate = filter.step(0.0, 0.0, dt);
        QCOMPARE(estimate.x, 0.001953125 * 0.5);
        QCOMPARE(estimate.v, (1.0 / dt) * (7.62939453125e-06 * 0.5));
        QVERIFY(!filter.fastTracking);
    }

    void farOutsideTheBandTheEstimateIsGivenUp() {
        TrackingFilter filter;
        filter.trackedX = 50.0;
        const double dt = 1.0 / 48000;
        const TrackingFilter::Estimate estimate = filter.step(0.0, 0.0, dt);
        QCOMPARE(estimate.x, 50.0); // predicted + 1.0 * r
        QCOMPARE(estimate.v, (1.0 / dt) * 50.0);
        QVERIFY(filter.fastTracking);
    }

    void fastTrackingIsHeldAFifthBelowTheLimit() {
        const double dt = 1.0 / 48000;
        const double limit = (2 * dt + 1.0) * 0.7;
        TrackingFilter filter;
        filter.trackedX = limit - 0.1;
        filter.step(0.0, 0.0, dt);
        QVERIFY(!filter.fastTracking); // not entered there
        filter.fastTracking = true;
        filter.trackedX = limit - 0.1;
        filter.step(0.0, 0.0, dt);
        QVERIFY(filter.fastTracking);
        filter.trackedX = limit - 0.21;
        filter.step(0.0, 0.0, dt);
        QVERIFY(!filter.fastTracking);
    }

    void aClearLeavesThePositionAlone() {
        TrackingFilter filter;
        filter.step(3.0, 0.5, 1.0 / 48000);
        for (const double left :
             {filter.trackedX, filter.predictedSpeed, filter.acceleration, filter.lastSpeed}) {
            QVERIFY(left != 0.0);
        }
        filter.fastTracking = true;
        const double x = filter.trackedX;
        filter.clear();
        QCOMPARE(filter.trackedX, x);
        QCOMPARE(filter.predictedSpeed, 0.0);
        QCOMPARE(filter.acceleration, 0.0);
        QCOMPARE(filter.lastSpeed, 0.0);
        QVERIFY(!filter.fastTracking);
    }

    void forgettingTheSpeedKeepsTheLastOne() {
        TrackingFilter filter;
        filter.step(3.0, 0.5, 1.0 / 48000);
        for (const double left :
             {filter.trackedX, filter.predictedSpeed, filter.acceleration, filter.lastSpeed}) {
            QVERIFY(left != 0.0);
        }
        filter.fastTracking = true;
        filter.forgetSpeed();
        QCOMPARE(filter.predictedSpeed, 0.0);
        QCOMPARE(filter.acceleration, 0.0);
        QCOMPARE(filter.lastSpeed, 3.0);
        QVERIFY(filter.fastTracking);
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_TrackingFilter)
#include "tst_trackingfilter.moc"
