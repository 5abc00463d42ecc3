#include "external/code/definitions.h"

#include "support/testmain.h"

#include <QTest>

class tst_Lut : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void anEmptyTableKnowsNoCode() {
        const Lut lut;
        QCOMPARE(lut.lookup(0), Lut::noSlot);
        QCOMPARE(lut.lookup(0x59017), Lut::noSlot);
    }

    void initEmptiesTheTable() {
        Lut lut;
        QCOMPARE(lut.init(3), 0);
        lut.push(5);
        lut.push(6);
        QCOMPARE(lut.avail(), 2U);
        QCOMPARE(lut.init(3), 0);
        QCOMPARE(lut.avail(), 0U);
        QCOMPARE(lut.lookup(5), Lut::noSlot);
    }

    void theSlotIndexIsTheOrderOfPushing() {
        Lut lut;
        lut.init(4);
        for (const std::uint32_t code : {77U, 3U, 0xFFFFFFFFU, 0U}) {
            lut.push(code);
        }
        QCOMPARE(lut.lookup(77), 0U);
        QCOMPARE(lut.lookup(3), 1U);
        QCOMPARE(lut.lookup(0xFFFFFFFFU), 2U);
        QCOMPARE(lut.lookup(0), 3U);
        QCOMPARE(lut.lookup(4), Lut::noSlot);
    }

    void codesWithTheSameLow16BitsAreAllFound() {
        Lut lut;
        lut.init(3);
        lut.push(0x11234);
        lut.push(0x21234);
        lut.push(0x01234);
        QCOMPARE(lut.lookup(0x11234), 0U);
        QCOMPARE(lut.lookup(0x21234), 1U);
        QCOMPARE(lut.lookup(0x01234), 2U);
        QCOMPARE(lut.lookup(0x31234), Lut::noSlot);
    }

    void ofTwoEqualCodesTheLaterOneStandsInFront() {
        Lut lut;
        lut.init(2);
        lut.push(9);
        lut.push(9);
        QCOMPARE(lut.lookup(9), 1U);
    }

    void theTableOfEachRowGivesEachCodeItsPosition_data() {
        QTest::addColumn<QByteArray>("name");
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            QTest::newRow(def.name().c_str()) << QByteArray::fromStdString(def.name());
        }
    }
    void theTableOfEachRowGivesEachCodeItsPosition() {
        QFETCH(QByteArray, name);
        TimecodeDefinitionList list = createTimecodeDefinitions();
        const TimecodeDefinition def = findTimecodeDefinition(list, name.toStdString());
        QCOMPARE(def.lut()->lookup(def.seed()), 0U);
        std::uint32_t code = def.seed();
        std::uint32_t wrong = 0;
        for (std::uint32_t i = 0; i < def.length(); ++i) {
            wrong += def.lut()->lookup(code) != i ? 1U : 0U;
            code = fwd(code, def);
        }
        QCOMPARE(wrong, 0U);
        // The first code beyond the tabulated length, and the one code that no sequence holds.
        QCOMPARE(def.lut()->lookup(code), Lut::noSlot);
        QCOMPARE(def.lut()->lookup(0), Lut::noSlot);
        QCOMPARE(int(def.lut()->lookup(0)), -1);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Lut)
#include "tst_lut.moc"
