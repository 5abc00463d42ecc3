#include "painter/graphcaption.h"

#include "support/testmain.h"

#include <QTest>

class TestGraphCaption : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theCursorCountsBeatsFromTheStartOfTheRun() {
        QCOMPARE(cursorBeat(0.0, 48000.0, 120.0), QStringLiteral("0.00"));
        QCOMPARE(cursorBeat(24000.0, 48000.0, 120.0), QStringLiteral("1.00"));
        QCOMPARE(cursorBeat(100000.0, 48000.0, 84.0), QStringLiteral("2.92"));
    }
    void theCursorOfADeckWithAnotherRate() {
        QCOMPARE(cursorBeat(44100.0, 44100.0, 90.0), QStringLiteral("1.50"));
    }
    void withoutATempoTheCursorStandsAtZero() {
        QCOMPARE(cursorBeat(100000.0, 48000.0, 0.0), QStringLiteral("0.00"));
    }
    void latencyAndFillOfTheRing() {
        // 0.02083 ms a frame, 64 frames; 4 of 32 slots.
        QCOMPARE(latencyCaption(0.020833, 64.0, 3, 32), QStringLiteral("1.3ms / 13%"));
        QCOMPARE(latencyCaption(0.0, 64.0, 31, 32), QStringLiteral("0.0ms / 100%"));
    }
};

GRAMO_TEST_GUILESS_MAIN(TestGraphCaption)
#include "tst_graphcaption.moc"
