// The keys against the program's own decoder: an area ends where the curve is when the key is pressed.

#include "module/inputcallback.h"
#include "phrasing/managephrasing.h"
#include "state/timecode.h"
#include "state/vinyl.h"
#include "support/drivendecks.h"
#include "support/testmain.h"

#include <QTest>

namespace {

constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;
constexpr std::size_t bufferFrames = 64;

Vinyl& vinyl() {
    return *Singleton::instance().vinyl();
}

struct Session {
    DrivenSetup setup;
    DrivenDecks decks{setup};
    SyntheticRecord recordA{definitionNamed(setup.timecode), 48000.0, Motion(MotionPattern::Play)};
    SyntheticRecord recordB{definitionNamed(setup.timecode), 48000.0, Motion(MotionPattern::Baby)};
    std::uint64_t at = 0;

    void play(std::uint64_t frames) {
        const auto chunk = streamFrames(setup, recordA, recordB, at, std::size_t(frames));
        for (std::size_t i = 0; i < frames; i += bufferFrames) {
            processInput(decks.state, chunk.data() + i * setup.channels, bufferFrames);
        }
        decks.housekeeping();
        at += frames;
    }
    CurvePoint lastPoint(ModelGraph::EnumGraph deck) const {
        return (deck == deckA ? decks.pointsA : decks.pointsB).view().back();
    }
};

} // namespace

class tst_PhrasingAngle : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void anAreaEndsWhereTheCurveIs_data() {
        QTest::addColumn<double>("mark");
        QTest::newRow("no zero mark") << 0.0;
        QTest::newRow("a zero mark") << 77.5;
    }
    void anAreaEndsWhereTheCurveIs() {
        QFETCH(double, mark);
        Session session;
        vinyl().setDeltaPosition(deckA, mark);
        vinyl().setDeltaPosition(deckB, mark);
        ManagePhrasing a(deckA);
        ManagePhrasing b(deckB);
        int withTimecode = 0;
        int without = 0;
        for (int press = 0; press < 40; ++press) {
            session.play(3200);
            for (ManagePhrasing* phrasing : {&a, &b}) {
                const auto deck = phrasing->deck();
                const double angle = session.lastPoint(deck).angle;
                QCOMPARE(phrasing->currentAngle(), angle);
                phrasing->initAreas();
                phrasing->addArea();
                QCOMPARE(phrasing->listPhrasing().constFirst()->angleStart(), 0.0);
                QCOMPARE(phrasing->listPhrasing().constFirst()->angleEnd(), angle);
                ++(Singleton::instance().timecode()->isTimecodeOn(deck) ? withTimecode : without);
            }
        }
        QVERIFY(without > 0);
        QVERIFY(withTimecode > 0);
    }

    void theKeyFollowsANewZeroFromTheNextPointOn() {
        Session session;
        ManagePhrasing phrasing(deckA);
        session.play(96000);
        QVERIFY(Singleton::instance().timecode()->isTimecodeOn(deckA));
        QVERIFY(phrasing.currentAngle() > 5.0 && phrasing.currentAngle() < 355.0);
        Singleton::instance().calculVinylDeltaPositionA();
        QCOMPARE(phrasing.currentAngle(), session.lastPoint(deckA).angle); // the curve is still there
        session.play(64);
        const double angle = phrasing.currentAngle();
        QCOMPARE(angle, session.lastPoint(deckA).angle);
        QVERIFY2(angle < 1.0 || angle > 359.0, qPrintable(QString::number(angle)));
    }

    void afterTheSessionItIsTheLastKnownAngle() {
        const ManagePhrasing phrasing(deckB);
        double last = 0.0;
        {
            Session session;
            session.play(6400);
            last = session.lastPoint(deckB).angle;
        }
        QCOMPARE(phrasing.currentAngle(), last);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_PhrasingAngle)
#include "tst_phrasingangle.moc"
