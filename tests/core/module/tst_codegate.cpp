#include "module/codegate.h"

#include "support/testmain.h"

#include <QTest>

class tst_CodeGate : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theFirstCodeClosesTheGateUntilTheNextReset() {
        CodeGate gate;
        QCOMPARE(gate.lastCode, 0);
        for (const int code : {5000, 5001, 900000, 1, 0, 500000}) {
            const CodeGate::Result result = gate.pass(code);
            QCOMPARE(result.code, -1);
            QVERIFY(!result.newAnchor);
            QCOMPARE(gate.lastCode, -1);
            QVERIFY(!gate.jumpForward && !gate.jumpBackward);
        }
        gate.clear();
        QCOMPARE(gate.lastCode, 0);
        QCOMPARE(gate.pass(5000).code, -1);
    }

    void theStoredCodeIsTestedAndNotTheFreshOne() {
        CodeGate gate;
        gate.lastCode = 1000;
        QCOMPARE(gate.pass(500000).code, -1);
        gate.lastCode = 1001;
        QCOMPARE(gate.pass(3).code, 3);
        QCOMPARE(gate.lastCode, 3);
    }

    void theSameCodeAgainIsNoNewAnchor() {
        CodeGate gate;
        gate.lastCode = 2000;
        const CodeGate::Result result = gate.pass(2000);
        QCOMPARE(result.code, 2000);
        QVERIFY(!result.newAnchor);
        QCOMPARE(gate.lastCode, 2000);
    }

    void anotherCodeIsANewAnchorAndAFarOneAJump_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("forward");
        QTest::addColumn<bool>("backward");
        QTest::newRow("the next") << 5001 << false << false;
        QTest::newRow("the one before") << 4999 << false << false;
        QTest::newRow("500 on") << 5500 << false << false;
        QTest::newRow("501 on") << 5501 << true << false;
        QTest::newRow("500 back") << 4500 << false << false;
        QTest::newRow("501 back") << 4499 << false << true;
    }
    void anotherCodeIsANewAnchorAndAFarOneAJump() {
        QFETCH(int, code);
        CodeGate gate;
        gate.lastCode = 5000;
        const CodeGate::Result result = gate.pass(code);
        QCOMPARE(result.code, code);
        QVERIFY(result.newAnchor);
        QCOMPARE(gate.lastCode, code);
        QTEST(gate.jumpForward, "forward");
        QTEST(gate.jumpBackward, "backward");
    }

    void aJumpStaysUntilItIsTakenOrCleared() {
        CodeGate gate;
        gate.lastCode = 5000;
        gate.pass(9000);
        gate.pass(9001);
        QVERIFY(gate.jumpForward);
        gate.pass(2000);
        QVERIFY(gate.jumpForward && gate.jumpBackward);
        gate.clear();
        QVERIFY(!gate.jumpForward && !gate.jumpBackward);
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_CodeGate)
#include "tst_codegate.moc"
