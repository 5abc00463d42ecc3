#include "module/beatclock.h"

#include "support/testmain.h"

#include <QTest>

#include <random>

class tst_BeatClock : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theFirstIntervalIsTheBeatTruncated_data() {
        QTest::addColumn<double>("bpm");
        QTest::addColumn<int>("interval");
        QTest::newRow("84") << 84.0 << 714;
        QTest::newRow("92.7") << 92.7 << 647;
        QTest::newRow("60") << 60.0 << 1000;
        QTest::newRow("120") << 120.0 << 500;
        QTest::newRow("133") << 133.0 << 451;
    }
    void theFirstIntervalIsTheBeatTruncated() {
        QFETCH(double, bpm);
        BeatClock clock;
        QTEST(clock.start(bpm), "interval");
    }

    void anHourStaysOnTheGrid_data() {
        QTest::addColumn<double>("bpm");
        QTest::addColumn<double>("jitter"); // ms that the timer may be late
        for (const double bpm : {84.0, 92.7, 133.33, 60.0}) {
            for (const double jitter : {0.0, 0.2, 0.45}) {
                QTest::addRow("%g bpm, %g ms late", bpm, jitter) << bpm << jitter;
            }
        }
    }
    void anHourStaysOnTheGrid() {
        QFETCH(double, bpm);
        QFETCH(double, jitter);
        std::mt19937 random(7);
        std::uniform_real_distribution<double> late(0.0, jitter);
        BeatClock clock;
        double now = clock.start(bpm) + late(random);
        double worst = 0.0;
        for (int k = 1; k * 60000.0 / bpm <= 3600000.0; ++k) {
            worst = std::max(worst, std::fabs(now - k * 60000.0 / bpm));
            now += clock.beat(now) + late(random);
        }
        QVERIFY2(worst < 1.0, qPrintable(QString::number(worst)));
    }

    void aLateBeatDoesntShiftTheOnesAfterIt() {
        BeatClock clock;
        clock.start(84.0);
        const int afterLate = clock.beat(714.285714 + 30.0);
        QCOMPARE(afterLate, 684); // 2 * 714.2857 - 744.2857
        QCOMPARE(clock.beat(2 * 714.285714), 714);
    }

    void aBeatThatComesAfterTheNextOneIsDueIsFollowedAtOnce() {
        BeatClock clock;
        clock.start(120.0);
        QCOMPARE(clock.beat(1700.0), 0);
        QCOMPARE(clock.beat(1700.0), 0);
        QCOMPARE(clock.beat(1700.0), 300);
    }

    void aNewStartForgetsTheOldGrid() {
        BeatClock clock;
        clock.start(84.0);
        clock.beat(714.0);
        clock.beat(1428.0);
        QCOMPARE(clock.start(120.0), 500);
        QCOMPARE(clock.beat(500.0), 500);
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_BeatClock)
#include "tst_beatclock.moc"
