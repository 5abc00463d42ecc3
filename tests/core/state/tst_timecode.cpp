#include "state/timecode.h"

#include "support/testmain.h"

#include <QMetaMethod>
#include <QTest>

namespace {
constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;
} // namespace

class tst_Timecode : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void noCodeAndNoDeltaAtStart() {
        const Timecode timecode;
        for (const auto name : {deckA, deckB}) {
            QVERIFY(!timecode.isTimecodeOn(name));
            QCOMPARE(timecode.positionDelta(name), 0.0);
        }
    }

    void aDeckIsSwitchedOnAndOffByItsSlots() {
        Timecode timecode;
        timecode.modeTimecode_on(deckA);
        QVERIFY(timecode.isTimecodeOn(deckA));
        QVERIFY(!timecode.isTimecodeOn(deckB));
        timecode.modeTimecode_on(deckB);
        timecode.modeTimecode_off(deckA);
        QVERIFY(!timecode.isTimecodeOn(deckA));
        QVERIFY(timecode.isTimecodeOn(deckB));
    }

    void aDelta() {
        Timecode timecode;
        timecode.setPositionDelta(deckA, 12.5);
        timecode.setPositionDelta(deckB, -3.0);
        QCOMPARE(timecode.positionDelta(deckA), 12.5);
        QCOMPARE(timecode.positionDelta(deckB), -3.0);
        timecode.resetPositionDelta(deckA);
        QCOMPARE(timecode.positionDelta(deckA), 0.0);
        QCOMPARE(timecode.positionDelta(deckB), -3.0);
    }

    void anyNameButDeckAMeansDeckB() {
        Timecode timecode;
        timecode.setPositionDelta(deckB, 7.0);
        QCOMPARE(timecode.positionDelta(ModelGraph::INPUT_MASTER), 7.0);
        timecode.modeTimecode_on(ModelGraph::GRID);
        QVERIFY(timecode.isTimecodeOn(deckB));
        QVERIFY(!timecode.isTimecodeOn(deckA));
    }

    void theTwoSwitchesAreSlots() {
        Timecode timecode;
        QVERIFY(QMetaObject::invokeMethod(&timecode, "modeTimecode_on", Q_ARG(ModelGraph::EnumGraph, deckA)));
        QVERIFY(timecode.isTimecodeOn(deckA));
        QVERIFY(
            QMetaObject::invokeMethod(&timecode, "modeTimecode_off", Q_ARG(ModelGraph::EnumGraph, deckA)));
        QVERIFY(!timecode.isTimecodeOn(deckA));
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Timecode)
#include "tst_timecode.moc"
