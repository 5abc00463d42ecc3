// Records at every level, from a quiet cartridge to one that drives the input far into clipping: what a deck
// reads of a hand's movement doesn't depend on it.

#include "support/datafolder.h"
#include "support/handfeddeck.h"
#include "support/testmain.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace Qt::StringLiterals;

namespace {

constexpr double rate = 48000.0;
constexpr double seconds = 2.5;
constexpr double ordinary = 0.5; // of full scale
constexpr std::array levels{0.3, 0.4, 0.6, 0.7, 0.8, 0.9, 0.97, 1.0, 1.1, 1.2, 1.4, 1.6, 1.8, 2.0};

// Off the edge of a carrier's cycle. Where a hand turns, the carrier sinks to nothing, and a record that
// turns right where a channel crosses may gain or lose a few crossings, at any level.
constexpr double start = 30.0004375;

// Half a second of rest, then the hand throws the record on: it comes up to five times nominal speed and
// back to rest within 1.1 seconds.
MotionState flick(double t) {
    constexpr double length = 1.1;
    constexpr double fastest = 5.0;
    const double u = std::clamp((t - 0.5) / length, 0.0, 1.0);
    const double turn = 2.0 * std::numbers::pi * u;
    return {start + fastest * length / 2.0 * (u - std::sin(turn) / (2.0 * std::numbers::pi)),
            fastest * (1.0 - std::cos(turn)) / 2.0, 63};
}

Motion motionNamed(const QString& name) {
    if (name == u"flick"_s) {
        return Motion::custom(flick);
    }
    return Motion(*Motion::patternFromName(name.toStdString()), 120.0, start);
}

struct Reading {
    double way = 0.0;         // from the lowest position to the highest
    double trueWay = 0.0;     // the same of the needle
    double end = 0.0;         // the last position
    std::size_t wrong = 0;    // points whose direction isn't the hand's
    std::size_t judged = 0;   // points whose direction was compared
    std::int32_t lowest = 0;  // sample
    std::int32_t highest = 0; // sample
};

Reading read(const QString& timecode, const Motion& motion, double level) {
    usePlainSettings(timecode);
    RecordOptions options;
    options.level = level;
    const SyntheticRecord record(rowOf(timecode), rate, motion, options);
    HandFedDeck deck;
    deck.decoder.initialise();
    deck.decoder.updateBPM();
    Reading r;
    const auto frames = static_cast<std::uint64_t>(seconds * rate);
    const double from = record.truth(0).position;
    double least = 0.0;
    double most = 0.0;
    for (std::uint64_t i = 0; i < frames; ++i) {
        const StereoFrame f = record.frame(i);
        deck.frame(f);
        r.lowest = std::min<std::int32_t>(r.lowest, f.left);
        r.highest = std::max<std::int32_t>(r.highest, f.left);
        least = std::min(least, record.truth(i).position - from);
        most = std::max(most, record.truth(i).position - from);
    }
    r.trueWay = most - least;
    const CurvePointStore::View points = deck.points.view();
    least = 0.0;
    most = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        least = std::min(least, points[i].position);
        most = std::max(most, points[i].position);
        const double speed = record.truth(static_cast<std::uint64_t>(points[i].time)).speed;
        if (points[i].time > rate / 100.0 && std::abs(speed) > 0.2) { // the first crossings need a carrier
            ++r.judged;
            r.wrong += points[i].direction != (speed > 0.0 ? 0 : 1) ? 1U : 0U;
        }
    }
    r.way = most - least;
    r.end = points.back().position;
    return r;
}

} // namespace

class tst_HotRecord : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }

    void whatIsReadDoesNotDependOnTheLevel_data() {
        QTest::addColumn<QString>("timecode");
        QTest::addColumn<QString>("motion");
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            for (const char* motion : {"play", "baby", "flick"}) {
                QTest::addRow("%s, %s", def.name().c_str(), motion)
                    << QString::fromStdString(def.name()) << QString::fromLatin1(motion);
            }
        }
    }
    void whatIsReadDoesNotDependOnTheLevel() {
        QFETCH(QString, timecode);
        QFETCH(QString, motion);
        const Motion hand = motionNamed(motion);
        const Reading usual = read(timecode, hand, ordinary);
        // A second of nominal speed reads 979.6 units of the 1000 that pass; play comes up to speed first.
        QVERIFY2(std::abs(usual.way / usual.trueWay - 0.98) < 0.015,
                 qPrintable(u"%1 of %2"_s.arg(usual.way).arg(usual.trueWay)));
        QVERIFY(usual.lowest > -32768 && usual.highest < 32767);
        for (const double level : levels) {
            const Reading r = read(timecode, hand, level);
            const QString text = u"level %1: reads %2 and ends at %3, where %4 and %5 are usual; %6 of %7 "
                                 "directions wrong"_s.arg(level)
                                     .arg(r.way)
                                     .arg(r.end)
                                     .arg(usual.way)
                                     .arg(usual.end)
                                     .arg(r.wrong)
                                     .arg(r.judged);
            QVERIFY2(std::abs(r.way - usual.way) < 1.0, qPrintable(text));
            QVERIFY2(std::abs(r.end - usual.end) < 1.0, qPrintable(text));
            QVERIFY2(r.wrong == 0 && r.judged > 100, qPrintable(text));
            QVERIFY2(level <= 1.0 || (r.lowest == -32768 && r.highest == 32767), qPrintable(text)); // clips
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_HotRecord)
#include "tst_hotrecord.moc"
