#include "motion.h"

#include "support/testmain.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr double bpm = 90.0;
constexpr double beat = 60.0 / bpm;

Motion motionOf(MotionPattern pattern) {
    return Motion(pattern, bpm, 10.0, 5);
}

std::vector<int> faders(const Motion& motion, double from, double to) {
    std::vector<int> values;
    for (double t = from; t < to; t += 0.0005) {
        values.push_back(motion.at(t).crossfader);
    }
    return values;
}

// How often the fader passes from open to shut.
int cuts(const Motion& motion, double from, double to) {
    int count = 0;
    int last = motion.at(from).crossfader;
    for (const int value : faders(motion, from, to)) {
        count += last < 95 && value >= 95 ? 1 : 0;
        last = value;
    }
    return count;
}

} // namespace

class tst_Motion : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void namesAndPatternsAgree() {
        const std::vector<std::string> names = Motion::patternNames();
        const std::vector<std::string> expected{"play",      "baby",  "scribble", "chirp",
                                                "transform", "flare", "stop",     "walk"};
        QCOMPARE(names, expected);
        for (const std::string& name : names) {
            QVERIFY(Motion::patternFromName(name).has_value());
        }
        QVERIFY(!Motion::patternFromName("Play").has_value());
        QVERIFY(!Motion::patternFromName("").has_value());
        QVERIFY(*Motion::patternFromName("walk") == MotionPattern::Walk);
    }

    void everyPatternIsSmooth_data() {
        QTest::addColumn<QByteArray>("name");
        for (const std::string& name : Motion::patternNames()) {
            QTest::newRow(name.c_str()) << QByteArray::fromStdString(name);
        }
    }
    void everyPatternIsSmooth() {
        QFETCH(QByteArray, name);
        const Motion motion = motionOf(*Motion::patternFromName(name.toStdString()));
        constexpr double h = 1e-4;
        MotionState last = motion.at(0.0);
        double fastest = 0.0;
        double jolt = 0.0;
        double slip = 0.0;
        int lowest = 63;
        int highest = 63;
        for (double t = h; t < 30.0; t += h) {
            const MotionState now = motion.at(t);
            const double mean = (now.position - last.position) / h;
            slip = std::max(slip, std::abs(mean - (now.speed + last.speed) / 2.0));
            jolt = std::max(jolt, std::abs(now.speed - last.speed) / h);
            fastest = std::max(fastest, std::abs(now.speed));
            lowest = std::min(lowest, now.crossfader);
            highest = std::max(highest, now.crossfader);
            last = now;
        }
        // The speed is the derivative of the position, and no hand is quicker than this.
        QVERIFY2(slip < 0.01, qPrintable(QString::number(slip)));
        QVERIFY2(jolt < 300.0, qPrintable(QString::number(jolt)));
        QVERIFY2(fastest < 8.0, qPrintable(QString::number(fastest)));
        QCOMPARE(lowest, 63);
        QVERIFY(highest == 63 || highest == 127);
    }

    void aMotionIsAFunctionOfTimeAlone() {
        for (const std::string& name : Motion::patternNames()) {
            const Motion one = motionOf(*Motion::patternFromName(name));
            const Motion other = one;
            std::vector<MotionState> forward;
            for (int i = 0; i < 1000; ++i) {
                forward.push_back(one.at(0.037 * i));
            }
            for (int i = 999; i >= 0; --i) {
                const MotionState s = other.at(0.037 * i);
                QVERIFY(s.position == forward[i].position && s.speed == forward[i].speed &&
                        s.crossfader == forward[i].crossfader);
            }
        }
    }

    void everyPatternStartsWhereItIsTold() {
        for (const std::string& name : Motion::patternNames()) {
            if (name != "walk") { // it starts from a random place nearby
                QCOMPARE(motionOf(*Motion::patternFromName(name)).at(0.0).position, 10.0);
            }
        }
        QCOMPARE(Motion::constant(-2.0, 40.0).at(0.0).position, 40.0);
        QCOMPARE(Motion().at(0.0).position, Motion::defaultStart);
    }

    void anEvenSpeedRunsEvenly() {
        for (const double speed : {-8.0, -0.05, 0.0, 1.0, 8.0}) {
            const MotionState s = Motion::constant(speed, 100.0).at(3.0);
            QCOMPARE(s.position, 100.0 + 3.0 * speed);
            QCOMPARE(s.speed, speed);
            QCOMPARE(s.crossfader, 63);
        }
    }

    void babyAndScribbleReturnAndLeaveTheFaderOpen() {
        const Motion baby = motionOf(MotionPattern::Baby);
        QCOMPARE(baby.at(beat / 2.0).position, 10.0 + 0.4 * beat); // the turn
        QVERIFY(baby.at(beat / 4.0).speed > 1.0 && baby.at(3.0 * beat / 4.0).speed < -1.0);
        QVERIFY(std::abs(baby.at(beat).position - 10.0) < 1e-9);
        const Motion scribble = motionOf(MotionPattern::Scribble);
        QVERIFY(std::abs(scribble.at(beat / 6.0).position - 10.0) < 1e-9);
        for (const Motion& motion :
             {baby, scribble, motionOf(MotionPattern::Play), motionOf(MotionPattern::Stop)}) {
            const std::vector<int> values = faders(motion, 0.0, 8.0 * beat);
            QVERIFY(std::all_of(values.begin(), values.end(), [](int v) { return v == 63; }));
        }
    }

    void chirpIsShutAtTheForwardTurnAndOpenAtTheOther() {
        const Motion chirp = motionOf(MotionPattern::Chirp);
        for (int n = 0; n < 4; ++n) {
            QCOMPARE(chirp.at((n + 0.5) * beat).crossfader, 127);
            QCOMPARE(chirp.at((n + 0.1) * beat).crossfader, 63);
            QCOMPARE(chirp.at((n + 0.9) * beat).crossfader, 63);
        }
        QCOMPARE(cuts(chirp, 0.0, 8.0 * beat), 8);
    }

    void transformOpensFourTimesABeat() {
        const Motion transform = motionOf(MotionPattern::Transform);
        QCOMPARE(transform.at(0.0).crossfader, 127);
        QCOMPARE(transform.at(0.125 * beat).crossfader, 63);
        QCOMPARE(cuts(transform, 0.01 * beat, 8.01 * beat), 32);
        QVERIFY(transform.at(beat).speed > 0.0 && transform.at(3.0 * beat).speed < 0.0);
    }

    void flareClicksOnceInTheMiddleOfEachStroke() {
        const Motion flare = motionOf(MotionPattern::Flare);
        QCOMPARE(flare.at(0.25 * beat).crossfader, 127);
        QCOMPARE(flare.at(0.75 * beat).crossfader, 127);
        QCOMPARE(flare.at(0.5 * beat).crossfader, 63);
        QCOMPARE(cuts(flare, 0.0, 8.0 * beat), 16);
    }

    void theFaderPassesThroughTheValuesBetween() {
        const std::vector<int> values = faders(motionOf(MotionPattern::Flare), 0.0, beat);
        QVERIFY(std::any_of(values.begin(), values.end(), [](int v) { return v > 70 && v < 120; }));
    }

    void handsAndFaderCanBeOfTwoPatterns() {
        const Motion hands = motionOf(MotionPattern::Scribble);
        const Motion fader = motionOf(MotionPattern::Transform);
        const Motion both = Motion::withFader(hands, fader);
        for (double t = 0.0; t < 4.0 * beat; t += 0.01) {
            QCOMPARE(both.at(t).position, hands.at(t).position);
            QCOMPARE(both.at(t).speed, hands.at(t).speed);
            QCOMPARE(both.at(t).crossfader, fader.at(t).crossfader);
        }
        QCOMPARE(cuts(both, 0.01 * beat, 8.01 * beat), 32);
    }

    void stopStandsForTwoBeatsAndRestarts() {
        const Motion stop = motionOf(MotionPattern::Stop);
        QCOMPARE(stop.at(2.0 * beat).speed, 1.0);
        QVERIFY(stop.at(4.5 * beat).speed > 0.4 && stop.at(4.5 * beat).speed < 0.6);
        for (const double b : {5.0001, 6.0, 6.9999}) {
            QVERIFY(std::abs(stop.at(b * beat).speed) < 1e-6);
            QVERIFY(std::abs(stop.at(b * beat).position - (10.0 + 4.5 * beat)) < 1e-6);
        }
        QVERIFY(std::abs(stop.at(8.0 * beat).speed - 1.0) < 1e-9);
        QVERIFY(std::abs(stop.at(8.0 * beat).position - (10.0 + 5.0 * beat)) < 1e-9);
    }

    void walkTurnsRestsCutsAndStaysAboutItsPlace() {
        const Motion walk = motionOf(MotionPattern::Walk);
        int turns = 0;
        int rests = 0;
        double farthest = 0.0;
        MotionState last = walk.at(0.0);
        for (double t = 0.0; t < 600.0; t += 0.005) {
            const MotionState s = walk.at(t);
            farthest = std::max(farthest, std::abs(s.position - 10.0));
            turns += s.speed * last.speed < 0.0 ? 1 : 0;
            rests += s.speed == 0.0 && last.speed == 0.0 ? 1 : 0;
            last = s;
        }
        QVERIFY2(farthest < 1.0, qPrintable(QString::number(farthest)));
        QVERIFY2(turns > 600, qPrintable(QString::number(turns)));
        QVERIFY2(rests > 500, qPrintable(QString::number(rests)));
        QVERIFY(cuts(walk, 0.0, 60.0) > 20);
    }

    void walkFollowsItsSeed() {
        const Motion one(MotionPattern::Walk, bpm, 10.0, 1);
        const Motion same(MotionPattern::Walk, bpm, 10.0, 1);
        const Motion other(MotionPattern::Walk, bpm, 10.0, 2);
        QCOMPARE(one.at(7.3).position, same.at(7.3).position);
        QVERIFY(one.at(7.3).position != other.at(7.3).position);
    }

    void scatterIsEven() {
        int high = 0;
        for (std::uint64_t i = 0; i < 100000; ++i) {
            const double u = scatterUnit(3, i);
            QVERIFY(u >= 0.0 && u < 1.0);
            high += u >= 0.5 ? 1 : 0;
        }
        QVERIFY2(high > 49000 && high < 51000, qPrintable(QString::number(high)));
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Motion)
#include "tst_motion.moc"
