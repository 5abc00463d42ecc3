#include "external/code/definitions.h"
#include "model/enumtext.h"
#include "model/modeltimecode.h"
#include "support/deathmessage.h"
#include "support/testmain.h"

#include <QTest>

namespace {

TimecodeDefinition rowNamed(std::string_view name) {
    for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
        if (def.name() == name) {
            return def;
        }
    }
    return {};
}

std::uint32_t steps(const TimecodeDefinition& def, std::uint32_t count) {
    std::uint32_t code = def.seed();
    for (std::uint32_t i = 0; i < count; ++i) {
        code = fwd(code, def);
    }
    return code;
}

} // namespace

class tst_Definitions : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void anEmptyDefinitionIsAllZeroAndHasATable() {
        const TimecodeDefinition def;
        QVERIFY(def.name().empty());
        QVERIFY(def.description().empty());
        QVERIFY(!def.fullDVS() && !def.lookup());
        QCOMPARE(def.resolution(), 0);
        QCOMPARE(def.flags(), 0);
        QCOMPARE(def.bits(), 0);
        QCOMPARE(def.seed() | def.taps() | def.length() | def.safe(), 0U);
        QVERIFY(def.lut() != nullptr);
        QCOMPARE(def.lut()->avail(), 0U);
    }

    void theFiveRows_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<QByteArray>("description");
        QTest::addColumn<bool>("fullDVS");
        QTest::addColumn<int>("resolution");
        QTest::addColumn<int>("flags");
        QTest::addColumn<int>("bits");
        QTest::addColumn<unsigned>("seed");
        QTest::addColumn<unsigned>("taps");
        QTest::addColumn<unsigned>("length");
        QTest::addColumn<unsigned>("safe");
        auto row = [n = 0](const char* name, const char* description, bool fullDVS, int resolution, int flags,
                           int bits, unsigned seed, unsigned taps, unsigned length, unsigned safe) mutable {
            QTest::newRow(name) << n++ << QByteArray(description) << fullDVS << resolution << flags << bits
                                << seed << taps << length << safe;
        };
        row("generic_V2", "Gramo Wroks", false, 1000, 0, 20, 364567, 221668, 712000, 707000);
        row("serato_sideA_FullDVS", "Serato 2nd Edition side A", true, 1000, 0, 20, 364567, 221668, 712000,
            707000);
        row("serato_sideB_FullDVS", "Serato 2nd Edition side B", true, 1000, 0, 20, 586694, 323800, 922000,
            917000);
        row("traktor_sideA", "Traktor Scratch side A", false, 2000, 7, 23, 1262851, 266304, 1500000, 1480000);
        row("traktor_sideB", "Traktor Scratch side B", false, 2000, 7, 23, 3278444, 266304, 2110000, 2090000);
    }
    void theFiveRows() {
        QFETCH(int, row);
        const TimecodeDefinitionList list = createTimecodeDefinitions();
        QCOMPARE(list.size(), 5U);
        const TimecodeDefinition& def = list[static_cast<std::size_t>(row)];
        QCOMPARE(def.name().c_str(), QTest::currentDataTag());
        QCOMPARE(enumText(ModelTimecode::EnumTimecode(row)), QString::fromStdString(def.name()));
        QTEST(QByteArray::fromStdString(def.description()), "description");
        QTEST(def.fullDVS(), "fullDVS");
        QTEST(def.resolution(), "resolution");
        QTEST(def.flags(), "flags");
        QTEST(def.bits(), "bits");
        QTEST(def.seed(), "seed");
        QTEST(def.taps(), "taps");
        QTEST(def.length(), "length");
        QTEST(def.safe(), "safe");
        QVERIFY(!def.lookup());
        QCOMPARE(def.lut()->avail(), 0U);
    }

    void parityIsTheXorOfAllBits() {
        QCOMPARE(parity(0), 0U);
        QCOMPARE(parity(1), 1U);
        QCOMPARE(parity(0x80000000U), 1U);
        QCOMPARE(parity(3), 0U);
        QCOMPARE(parity(7), 1U);
        QCOMPARE(parity(0xFFFFFFFFU), 0U);
        std::uint32_t value = 1;
        for (int i = 0; i < 10000; ++i) {
            value = value * 1664525U + 1013904223U;
            std::uint32_t one = 0;
            for (int b = 0; b < 32; ++b) {
                one ^= (value >> b) & 1U;
            }
            QCOMPARE(parity(value), one);
        }
    }

    void fwdFromTheSeedsGivesTheKnownCodes() {
        const TimecodeDefinition serato = rowNamed("serato_sideA_FullDVS");
        QCOMPARE(steps(serato, 1), 0xAC80BU);
        QCOMPARE(steps(serato, 2), 0xD6405U);
        QCOMPARE(steps(serato, 3), 0xEB202U);
        const TimecodeDefinition traktor = rowNamed("traktor_sideA");
        QCOMPARE(steps(traktor, 1), 0x49A281U);
        QCOMPARE(steps(traktor, 2), 0x64D140U);
        QCOMPARE(steps(traktor, 3), 0x7268A0U);
    }

    void seratoSideAStandsAtTheKnownCodeAfterItsWholeLength() {
        QCOMPARE(steps(rowNamed("serato_sideA_FullDVS"), 712000), 0xC9AA3U);
    }

    void revUndoesFwdOverTheWholeOfEachRow() {
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            std::uint32_t code = def.seed();
            std::uint32_t wrong = 0;
            for (std::uint32_t i = 0; i < def.length(); ++i) {
                const std::uint32_t next = fwd(code, def);
                wrong += rev(next, def) != code ? 1U : 0U;
                code = next;
            }
            QVERIFY2(wrong == 0, def.name().c_str());
        }
    }

    void genericIsTheSameSequenceAsSeratoSideA() {
        const TimecodeDefinition generic = rowNamed("generic_V2");
        const TimecodeDefinition serato = rowNamed("serato_sideA_FullDVS");
        QCOMPARE(steps(generic, 1000), steps(serato, 1000));
    }

    void findingARowBuildsItsTableAndGivesACopyThatSharesIt() {
        TimecodeDefinitionList list = createTimecodeDefinitions();
        const TimecodeDefinition found = findTimecodeDefinition(list, "serato_sideB_FullDVS");
        QCOMPARE(found.name(), std::string("serato_sideB_FullDVS"));
        QVERIFY(found.lookup());
        QVERIFY(list[2].lookup());
        QCOMPARE(found.lut(), list[2].lut());
        QCOMPARE(found.lut()->avail(), 922000U);
        QVERIFY(!list[1].lookup());
    }

    void aSecondFindDoesNotRebuildTheTable() {
        TimecodeDefinitionList list = createTimecodeDefinitions();
        const TimecodeDefinition first = findTimecodeDefinition(list, "generic_V2");
        // A foreign code at the end would be gone after a rebuild.
        first.lut()->init(1);
        first.lut()->push(0);
        const TimecodeDefinition second = findTimecodeDefinition(list, "generic_V2");
        QCOMPARE(second.lut(), first.lut());
        QCOMPARE(second.lut()->avail(), 1U);
        QCOMPARE(second.lut()->lookup(0), 0U);
    }

    void twoListsDoNotShareTables() {
        TimecodeDefinitionList one = createTimecodeDefinitions();
        TimecodeDefinitionList other = createTimecodeDefinitions();
        QVERIFY(findTimecodeDefinition(one, "generic_V2").lut() !=
                findTimecodeDefinition(other, "generic_V2").lut());
    }

    void anUnknownNameGivesAnEmptyDefinition() {
        TimecodeDefinitionList list = createTimecodeDefinitions();
        for (const char* name : {"serato_sideA", "", "GENERIC_V2", "generic_V2 "}) {
            const TimecodeDefinition def = findTimecodeDefinition(list, name);
            QVERIFY2(def.name().empty() && !def.lookup(), name);
        }
        for (const TimecodeDefinition& def : list) {
            QVERIFY(!def.lookup());
        }
    }

    void buildingTwiceIsOneBuild() {
        TimecodeDefinition def = rowNamed("generic_V2");
        QCOMPARE(buildLookup(def), 0);
        QVERIFY(def.lookup());
        QCOMPARE(def.lut()->avail(), def.length());
        QCOMPARE(buildLookup(def), 0);
        QCOMPARE(def.lut()->avail(), def.length());
    }

    void aSequenceThatRepeatsWithinItsLengthEndsTheProcess() {
        // A register of 4 bits knows 15 codes at most.
        TimecodeDefinition def("small", "", false, 1000, 0, 4, 1, 0, 16, 16);
        const QByteArray text = deathMessage([&def] { buildLookup(def); });
        QVERIFY2(text.contains("Lut::lookup(def->lut(), current) == (unsigned)-1"), text.constData());
    }

    void aSequenceWithoutAWayBackEndsTheProcess() {
        // The seed doesn't fit in the register, so its top is lost on the way.
        TimecodeDefinition def("wide", "", false, 1000, 0, 4, 0x1F, 0, 2, 2);
        const QByteArray text = deathMessage([&def] { buildLookup(def); });
        QVERIFY2(text.contains("rev(next, def) == current"), text.constData());
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Definitions)
#include "tst_definitions.moc"
