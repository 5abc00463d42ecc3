#include "painter/gridsteps.h"

#include "support/testmain.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double beat = 24000.0; // 120 beats a minute at 48000 Hz
constexpr double infinite = std::numeric_limits<double>::infinity();
const double noNumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

class TestGridSteps : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theUprightStepIsTheFirstAboveAnEightieth_data() {
        QTest::addColumn<double>("beats"); // of the range
        QTest::addColumn<double>("factor");
        QTest::newRow("nothing to see") << 0.0 << 1.0;
        QTest::newRow("eight beats") << 8.0 << 1.0;
        QTest::newRow("sixty-four beats") << 64.0 << 1.0;
        QTest::newRow("just a beat each") << 80.0 << 4.0;
        QTest::newRow("a bar each, nearly") << 319.0 << 4.0;
        QTest::newRow("a bar each") << 320.0 << 10.0;
        QTest::newRow("ten beats each") << 800.0 << 60.0;
        QTest::newRow("sixty beats each") << 4800.0 << 600.0;
        QTest::newRow("six hundred beats each") << 48000.0 << 3600.0;
        QTest::newRow("an endless session") << 1e6 << 3600.0;
    }
    void theUprightStepIsTheFirstAboveAnEightieth() {
        QFETCH(double, beats);
        QFETCH(double, factor);
        QCOMPARE(xGridStep(0.0, beats * beat, beat), factor * beat);
        QCOMPARE(xGridStep(-beats * beat, 0.0, beat), factor * beat); // before the start
        QCOMPARE(xGridStep(beats * beat, 0.0, beat), factor * beat);  // backwards
    }
    void theEightiethIsAWholeNumber() {
        // 100 * 80 + 79 frames: the eightieth counts as 100.
        QCOMPARE(xGridStep(0.0, 8079.0, 100.5), 100.5);
        QCOMPARE(xGridStep(0.0, 8080.0, 100.5), 402.0);
        QCOMPARE(xGridStep(0.9, 8080.9, 100.5), 402.0); // the bounds as well
        QCOMPARE(xGridStep(-0.9, 8079.9, 100.5), 100.5);
    }
    void aZeroBeatGivesNoUprightLines() {
        const double step = xGridStep(0.0, 500000.0, 0.0);
        QCOMPARE(step, 0.0);
        QVERIFY(gridTicks(step, 0.0, 500000.0).empty());
    }
    void aBeatThatIsNoNumberGivesNoUprightLines() {
        for (const double length : {infinite, -infinite, noNumber, -beat}) {
            QVERIFY(gridTicks(xGridStep(0.0, 5e5, length), 0.0, 5e5).empty());
        }
    }
    void aRangeBeyondThirtyTwoBits() {
        QCOMPARE(xGridStep(-3e9, 3e9, 1e6), 6e7 * 10.0); // an eightieth is 75000000
        QCOMPARE(xGridStep(0.0, 1e15, beat), 3600.0 * beat);
    }

    void theLevelStepIsTheFirstAboveATwentieth_data() {
        QTest::addColumn<double>("range");
        QTest::addColumn<double>("step");
        QTest::newRow("no range") << 0.0 << 10.0;
        QTest::newRow("199") << 199.0 << 10.0;
        QTest::newRow("200") << 200.0 << 100.0;
        QTest::newRow("1999") << 1999.0 << 100.0;
        QTest::newRow("2000") << 2000.0 << 1000.0;
        QTest::newRow("1e5") << 1e5 << 10000.0;
        QTest::newRow("1e6") << 1e6 << 100000.0;
        QTest::newRow("1e7") << 1e7 << 1000000.0;
        QTest::newRow("1e8") << 1e8 << 10000000.0;
        QTest::newRow("1e9") << 1e9 << 100000000.0;
        QTest::newRow("1e10") << 1e10 << 1000000000.0;
        QTest::newRow("beyond the last") << 1e14 << 1000000000.0;
    }
    void theLevelStepIsTheFirstAboveATwentieth() {
        QFETCH(double, range);
        QFETCH(double, step);
        QCOMPARE(yGridStep(0.0, range), step);
        QCOMPARE(yGridStep(-range, 0.0), step);
        QCOMPARE(yGridStep(range, 0.0), step);
    }
    void theLevelStepTakesWholeBounds() {
        QCOMPARE(yGridStep(0.9, 200.1), 100.0); // 0 to 200
        QCOMPARE(yGridStep(-0.9, 199.9), 10.0); // 0 to 199
    }
    void anEmptyListOfStepsGivesOne() { QCOMPARE(yGridStep(0.0, 5000.0, {}), 1.0); }
    void anotherListOfSteps() {
        const std::array steps{2.0, 8.0};
        QCOMPARE(yGridStep(0.0, 20.0, steps), 2.0);
        QCOMPARE(yGridStep(0.0, 50.0, steps), 8.0);
        QCOMPARE(yGridStep(0.0, 5000.0, steps), 8.0);
    }
    void thereAreNineSteps() {
        QCOMPARE(yGridSteps.size(), std::size_t{9});
        double step = 10.0;
        for (const double listed : yGridSteps) {
            QCOMPARE(listed, step);
            step *= 10.0;
        }
    }

    void ticksAreTheMultiplesInTheRange() {
        QCOMPARE(gridTicks(10.0, 0.0, 30.0), (std::vector<double>{0, 10, 20, 30}));
        QCOMPARE(gridTicks(10.0, 1.0, 29.0), (std::vector<double>{10, 20}));
        QCOMPARE(gridTicks(10.0, 10.0, 10.0), (std::vector<double>{10}));
        QVERIFY(gridTicks(10.0, 11.0, 19.0).empty());
        QCOMPARE(gridTicks(1.0, 0.0, 3.0), (std::vector<double>{0, 1, 2, 3}));
    }
    void ticksOfARangeThatStartsBelowZero() {
        QCOMPARE(gridTicks(10.0, -25.0, 15.0), (std::vector<double>{-20, -10, 0, 10}));
        QCOMPARE(gridTicks(10.0, -20.0, -10.0), (std::vector<double>{-20, -10}));
        QCOMPARE(gridTicks(100.0, -99.0, 99.0), (std::vector<double>{0}));
    }
    void ticksOfABeatThatIsNoWholeNumber() {
        const double step = 60.0 * 48000.0 / 84.0; // 34285.714...
        const std::vector<double> ticks = gridTicks(step, 10.0 * step, 13.0 * step);
        QCOMPARE(ticks.size(), std::size_t{4});
        for (std::size_t i = 0; i < ticks.size(); ++i) {
            QCOMPARE(ticks[i], double(10 + i) * step);
        }
        // An hour on, the lines still stand on their beats.
        const double hour = 5040.0 * step;
        QCOMPARE(gridTicks(step, std::trunc(hour), std::trunc(hour) + 1.0), (std::vector<double>{hour}));
    }
    void aBoundThatIsAMultipleIsATickWhateverTheRounding() {
        for (const double step : {1.1, 3.3, 34285.714285714283, 1234.56789}) {
            for (int i = -2000; i <= 2000; ++i) {
                const double at = i * step;
                QCOMPARE(gridTicks(step, at, at), (std::vector<double>{at}));
            }
        }
    }
    void aStepBelowOneHasNoTicks() {
        for (const double step : {0.0, 0.999, -10.0, -infinite, infinite, noNumber}) {
            QVERIFY(gridTicks(step, 0.0, 100.0).empty());
        }
    }
    void aBackwardRangeHasNoTicks() {
        QVERIFY(gridTicks(10.0, 30.0, 0.0).empty());
        QVERIFY(gridTicks(10.0, noNumber, 0.0).empty());
        QVERIFY(gridTicks(10.0, 0.0, noNumber).empty());
    }
    void aTinyStepOverAHugeRangeHasNoTicks() {
        QCOMPARE(int(gridTicks(1.0, 1.0, maxGridTicks).size()), maxGridTicks);
        QVERIFY(gridTicks(1.0, 0.0, maxGridTicks).empty());
        QVERIFY(gridTicks(1.0, -2147483648.0, 2147483647.0).empty());
        QVERIFY(gridTicks(1.0, -1e300, 1e300).empty());
        QVERIFY(gridTicks(1.0, -infinite, infinite).empty());
    }
    void ticksBeyondThirtyTwoBits() {
        QCOMPARE(gridTicks(1e9, 3e9, 6e9), (std::vector<double>{3e9, 4e9, 5e9, 6e9}));
        QCOMPARE(gridTicks(1e9, -6e9, -5e9), (std::vector<double>{-6e9, -5e9}));
    }

    void beatsCountFromTheFirstClick() {
        QCOMPARE(gridBeat(0.0, 0.0, 48000.0, 120.0), 0.0);
        QCOMPARE(gridBeat(96000.0, 0.0, 48000.0, 120.0), 4.0);
        QCOMPARE(gridBeat(96000.0, 24000.9, 48000.0, 120.0), 3.0); // the click's frame is a whole one
        QCOMPARE(gridBeat(88200.0, 0.0, 44100.0, 60.0), 2.0);
        QCOMPARE(gridBeat(0.0, 96000.0, 48000.0, 120.0), -4.0); // before it
    }
    void withoutATempoEveryBeatIsTheFirst() { QCOMPARE(gridBeat(96000.0, 0.0, 48000.0, 0.0), 0.0); }
    void beatTexts() {
        QCOMPARE(beatText(0.0), QStringLiteral("0"));
        QCOMPARE(beatText(3.999), QStringLiteral("4"));
        QCOMPARE(beatText(-4.0), QStringLiteral("-4"));
        QCOMPARE(beatText(-0.2), QStringLiteral("0"));
        QCOMPARE(beatText(3e9), QStringLiteral("3000000000"));
    }
    void everyFourthBeatIsHeavy() {
        for (int beatNumber = -12; beatNumber <= 12; ++beatNumber) {
            QCOMPARE(isHeavyBeat(QString::number(beatNumber)), beatNumber % 4 == 0);
        }
        QVERIFY(isHeavyBeat(beatText(-4.0))); // before the first click as well
    }
    void aBeatBeyondThirtyTwoBitsIsHeavy() {
        QVERIFY(!isHeavyBeat(QStringLiteral("2147483647"))); // 3 beyond a bar
        QVERIFY(isHeavyBeat(QStringLiteral("-2147483648")));
        QVERIFY(isHeavyBeat(QStringLiteral("2147483649")));
        QVERIFY(isHeavyBeat(QStringLiteral("-2147483649")));
        QVERIFY(isHeavyBeat(beatText(1e15 + 1.0)));
        QVERIFY(isHeavyBeat(beatText(noNumber)));
    }

    void shortNumbers_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        const auto row = [](double value, const char* text) {
            QTest::newRow(text) << value << QString::fromLatin1(text);
        };
        row(0.0, "0");
        row(-30.0, "-30");
        row(999.0, "999");
        row(1000.0, "1k");
        row(1500.0, "1500");
        row(2000.0, "2k");
        row(-2000.0, "-2k");
        row(100000.0, "100k");
        row(999000.0, "999k");
        row(1000000.0, "1m");
        row(1001000.0, "1001k");
        row(1234567.0, "1234567");
        row(-5000000.0, "-5m");
        row(1000000000.0, "1g");
        row(1500000000.0, "1500m");
        row(2147483648.0, "2147483648");
        row(1e12, "1t");
        row(-3e12, "-3t");
        row(1.5e12, "1500g");
        row(2e15, "2000t");
        row(12.5, "12.5");
    }
    void shortNumbers() {
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(shortNumber(value), text);
    }
    void aNegativeZeroIsZero() { QCOMPARE(shortNumber(-0.0), QStringLiteral("0")); }
};

GRAMO_TEST_GUILESS_MAIN(TestGridSteps)
#include "tst_gridsteps.moc"
