#include "module/wavedata.h"
#include "phrasing/managephrasing.h"
#include "phrasing/phrasingpalette.h"
#include "state/pathfile.h"
#include "state/singleton.h"
#include "state/timecode.h"
#include "state/vinyl.h"
#include "support/datafolder.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QDataStream>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;
const QColor red(208, 0, 24);
const QColor yellow(254, 194, 0);

Vinyl& vinyl() {
    return *Singleton::instance().vinyl();
}

// Start and end of each area.
using Ends = QList<QPair<double, double>>;
Ends endsOf(const ManagePhrasing& phrasing) {
    Ends ends;
    for (const QPhrasingPtr& one : phrasing.listPhrasing()) {
        ends << qMakePair(one->angleStart(), one->angleEnd());
    }
    return ends;
}

// One deck's list, whose record can be put anywhere.
struct Deck : ManagePhrasing {
    explicit Deck(const QPhrasingList& areas = {}, ModelGraph::EnumGraph name = deckA)
        : ManagePhrasing(name) {
        setListPhrasing(areas);
    }
    Deck& at(double angle) {
        vinyl().setAngle(deck(), angle);
        return *this;
    }
};

// What isValid means, pair by pair.
bool validPairByPair(const QPhrasingList& areas) {
    bool valid = true;
    for (const QPhrasingPtr& a : areas) {
        if (a->size() == 0.0 || a->size() > 360.0) {
            valid = false;
        }
        for (const QPhrasingPtr& b : areas) {
            if (a->id() != b->id() && a->angleStart() >= b->angleStart() && b->angleEnd() > a->angleStart()) {
                valid = false;
            }
        }
    }
    return valid;
}

bool valid(const QPhrasingList& areas) {
    ManagePhrasing phrasing(ModelGraph::NOT_USED);
    phrasing.setListPhrasing(areas);
    return phrasing.isValid();
}

} // namespace

class tst_ManagePhrasing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }
    void init() {
        Singleton::instance().timecode()->modeTimecode_off(deckA);
        Singleton::instance().timecode()->modeTimecode_off(deckB);
        for (const auto deck : {deckA, deckB}) {
            vinyl().setAngle(deck, 0.0);
            vinyl().setDeltaPosition(deck, 0.0);
        }
    }

    void itStartsWithoutAreasNamesAndWave() {
        const ManagePhrasing phrasing(deckB);
        QCOMPARE(phrasing.deck(), deckB);
        QVERIFY(phrasing.listPhrasing().isEmpty());
        QVERIFY(phrasing.path().isEmpty() && phrasing.name().isEmpty() && phrasing.scratchTools().isEmpty());
        QVERIFY(phrasing.scratchToolWav() == nullptr);
        QVERIFY(phrasing.isValid());
    }

    // ---- areaAt ----

    void theFirstAreaThatHoldsTheAngleIsFoundWithItsPlace() {
        const Deck deck({area(180.0, 270.0), area(0.0, 90.0), area(45.0, 200.0)});
        int index = 7;
        QCOMPARE(deck.areaAt(0.0, index), deck.listPhrasing()[1].get());
        QCOMPARE(index, 1);
        QCOMPARE(deck.areaAt(45.0, index), deck.listPhrasing()[1].get()); // in list order
        QCOMPARE(deck.areaAt(90.0, index), deck.listPhrasing()[2].get());
        QCOMPARE(deck.areaAt(180.0, index), deck.listPhrasing()[0].get());
        QCOMPARE(index, 0);
    }

    void withoutAnAreaThePlaceIsMinusOne() {
        const Deck deck({area(10.0, 90.0)});
        for (const double angle : {0.0, 90.0, 359.9}) {
            int index = 7;
            QVERIFY(deck.areaAt(angle, index) == nullptr);
            QCOMPARE(index, -1);
        }
    }

    void noAngleIsFoundInAnAreaThatStartsBehindItsEnd() {
        const Deck deck({area(300.0, 60.0)});
        for (double angle = 0.0; angle < 360.0; angle += 1.0) {
            int index = 0;
            QVERIFY(deck.areaAt(angle, index) == nullptr);
        }
    }

    // ---- currentAngle ----

    void thePresentAngleIsThatOfTheDecksLastPoint() {
        const ManagePhrasing a(deckA);
        const ManagePhrasing b(deckB);
        vinyl().setAngle(deckA, 12.5);
        vinyl().setAngle(deckB, 340.25);
        QCOMPARE(a.currentAngle(), 12.5);
        QCOMPARE(b.currentAngle(), 340.25);
    }

    void theZeroMarkIsTakenOffOnceOnlyWithTimecodeOrWithout() {
        const ManagePhrasing phrasing(deckA);
        vinyl().setAngle(deckA, 50.0); // the decoder has taken off the mark from 80 already
        vinyl().setDeltaPosition(deckA, 30.0);
        QCOMPARE(phrasing.currentAngle(), 50.0);
        Singleton::instance().timecode()->modeTimecode_on(deckA);
        QCOMPARE(phrasing.currentAngle(), 50.0);
    }

    void thePresentAngleLiesWithinOneTurn() {
        const ManagePhrasing phrasing(deckA);
        for (const auto& [vinylAngle, angle] :
             {std::pair{360.0, 0.0}, {-90.0, 270.0}, {725.0, 5.0}, {-1e-30, 0.0}, {359.5, 359.5}}) {
            vinyl().setAngle(deckA, vinylAngle);
            QCOMPARE(phrasing.currentAngle(), angle);
        }
    }

    // ---- addArea ----

    void withAnEmptyListAddAreaReachesFromZeroAndTheNextOneGoesOn() {
        Deck deck;
        deck.at(90.0).addArea();
        QCOMPARE(endsOf(deck), (Ends{{0.0, 90.0}}));
        QCOMPARE(deck.listPhrasing()[0]->color(), red);
        QVERIFY(deck.listPhrasing()[0]->label().isEmpty());
        deck.at(180.0).addArea();
        QCOMPARE(endsOf(deck), (Ends{{0.0, 90.0}, {90.0, 180.0}}));
        QCOMPARE(deck.listPhrasing()[1]->color(), yellow);
    }

    void addAreaWithinAnAreaCutsItShort() {
        Deck deck({area(0.0, 90.0)});
        deck.at(45.0).addArea();
        QCOMPARE(endsOf(deck), (Ends{{0.0, 45.0}}));
    }

    void aSecondPressAtRestChangesNothing() {
        Deck deck({area(0.0, 90.0)});
        QSignalSpy updates(&deck, &ManagePhrasing::s_Update);
        for (int press = 0; press < 3; ++press) {
            deck.at(90.0).addArea(); // its end lies outside
            QCOMPARE(endsOf(deck), (Ends{{0.0, 90.0}}));
        }
        for (int press = 0; press < 3; ++press) {
            deck.at(45.0).addArea(); // the first one cuts
            QCOMPARE(endsOf(deck), (Ends{{0.0, 45.0}}));
        }
        for (int press = 0; press < 3; ++press) {
            deck.at(120.0).addArea(); // the first one makes an area
            QCOMPARE(endsOf(deck), (Ends{{0.0, 45.0}, {45.0, 120.0}}));
        }
        QCOMPARE(updates.count(), 9);
        QVERIFY(deck.isValid());
    }

    void atZeroThereIsNothingToEnd() {
        Deck deck;
        deck.at(0.0).addArea();
        QVERIFY(deck.listPhrasing().isEmpty());
    }

    void anAreaThatStartsAtTheAngleIsntCutToNothing() {
        Deck deck({area(0.0, 90.0)});
        deck.at(45.0).defineAngleStart();
        deck.at(45.0).addArea();
        QCOMPARE(endsOf(deck), (Ends{{45.0, 90.0}}));
        QVERIFY(deck.isValid());
    }

    void addAreaStartsAtTheGreatestEndBeforeItWhereverThatStands() {
        Deck deck({area(100.0, 120.0), area(0.0, 10.0), area(200.0, 300.0), area(40.0, 50.0)});
        deck.at(150.0).addArea();
        QCOMPARE(endsOf(deck).constLast(), qMakePair(120.0, 150.0));
    }

    void addAreaCutsOnlyTheFirstAreaThatHoldsTheAngle() {
        Deck deck({area(0.0, 90.0), area(0.0, 180.0)});
        deck.at(45.0).addArea();
        QCOMPARE(endsOf(deck), (Ends{{0.0, 45.0}, {0.0, 180.0}}));
    }

    // ---- addAreaOnAllEmptyArea ----

    void theGapAroundTheAngleIsFilled() {
        Deck deck({area(0.0, 90.0), area(180.0, 270.0)});
        deck.at(100.0).addAreaOnAllEmptyArea();
        QCOMPARE(endsOf(deck), (Ends{{0.0, 90.0}, {180.0, 270.0}, {90.0, 180.0}}));
        deck.at(300.0).addAreaOnAllEmptyArea();
        QCOMPARE(endsOf(deck).constLast(), qMakePair(270.0, 360.0));
        QVERIFY(deck.isValid());
    }

    void withAnEmptyListTheWholeTurnIsFilled() {
        Deck deck;
        deck.at(123.0).addAreaOnAllEmptyArea();
        QCOMPARE(endsOf(deck), (Ends{{0.0, 360.0}}));
        QCOMPARE(deck.listPhrasing()[0]->color(), red);
    }

    void withinAnAreaNothingIsFilled() {
        Deck deck({area(0.0, 90.0)});
        QSignalSpy updates(&deck, &ManagePhrasing::s_Update);
        deck.at(45.0).addAreaOnAllEmptyArea();
        QCOMPARE(endsOf(deck), (Ends{{0.0, 90.0}}));
        QCOMPARE(updates.count(), 1);
    }

    void aGapEndsWhereTheAngleMeetsAnArea() {
        Deck deck({area(100.0, 200.0)});
        deck.at(200.0).addAreaOnAllEmptyArea(); // the end lies outside
        QCOMPARE(endsOf(deck).constLast(), qMakePair(200.0, 360.0));
        deck.at(0.0).addAreaOnAllEmptyArea();
        QCOMPARE(endsOf(deck).constLast(), qMakePair(0.0, 100.0));
    }

    void aGapOfNoSizeIsNotFilled() {
        Deck deck({area(90.0, 90.0)}); // holds nothing, ends and starts at 90
        deck.at(90.0).addAreaOnAllEmptyArea();
        QCOMPARE(endsOf(deck), (Ends{{90.0, 90.0}}));
    }

    // ---- defineAngleStart, deleteArea, initAreas ----

    void theStartOfTheAreaAtTheAngleMovesThere() {
        Deck deck({area(0.0, 90.0), area(90.0, 180.0)});
        deck.at(100.0).defineAngleStart();
        QCOMPARE(endsOf(deck), (Ends{{0.0, 90.0}, {100.0, 180.0}}));
        deck.at(95.0).defineAngleStart(); // between the two
        QCOMPARE(endsOf(deck), (Ends{{0.0, 90.0}, {100.0, 180.0}}));
    }

    void theAreaAtTheAngleIsDeleted() {
        Deck deck({area(0.0, 90.0), area(90.0, 180.0), area(180.0, 270.0)});
        deck.at(90.0).deleteArea();
        QCOMPARE(endsOf(deck), (Ends{{0.0, 90.0}, {180.0, 270.0}}));
    }

    void deleteBetweenTwoAreasChangesNothingAndStillTells() {
        Deck deck({area(0.0, 90.0), area(180.0, 270.0)});
        QSignalSpy updates(&deck, &ManagePhrasing::s_Update);
        deck.at(100.0).deleteArea();
        QCOMPARE(endsOf(deck), (Ends{{0.0, 90.0}, {180.0, 270.0}}));
        QCOMPARE(updates.count(), 1);
    }

    void anAreaDeletedFromOneListStaysInTheOthers() {
        const QPhrasingPtr shared = area(0.0, 90.0, Qt::red, u"aah"_s);
        Deck deck({shared});
        Deck other({shared}, deckB);
        deck.at(45.0).deleteArea();
        QVERIFY(deck.listPhrasing().isEmpty());
        QCOMPARE(other.listPhrasing().constFirst()->label(), u"aah"_s);
    }

    void anEditShowsInEveryListThatSharesTheArea() {
        const QPhrasingPtr shared = area(0.0, 90.0);
        Deck deck({shared});
        const Deck other({shared}, deckB);
        deck.at(45.0).addArea();
        QCOMPARE(endsOf(other), (Ends{{0.0, 45.0}}));
        deck.at(10.0).defineAngleStart();
        QCOMPARE(endsOf(other), (Ends{{10.0, 45.0}}));
        deck.at(100.0).addArea(); // a list of its own all the same
        QCOMPARE(endsOf(other), (Ends{{10.0, 45.0}}));
    }

    void initAreasEmptiesTheListAndLeavesTheAreas() {
        const QPhrasingPtr shared = area(0.0, 90.0);
        Deck deck({shared});
        deck.initAreas();
        QVERIFY(deck.listPhrasing().isEmpty());
        QCOMPARE(shared.use_count(), 1);
        QCOMPARE(shared->angleEnd(), 90.0);
    }

    void theDecksEditAtTheirOwnAngles() {
        Deck a;
        Deck b({}, deckB);
        a.at(100.0);
        b.at(200.0);
        a.addArea();
        b.addArea();
        QCOMPARE(endsOf(a), (Ends{{0.0, 100.0}}));
        QCOMPARE(endsOf(b), (Ends{{0.0, 200.0}}));
    }

    void everyEditTellsOnceWhateverItDid() {
        for (const double angle : {45.0, 100.0}) { // within an area and beside it
            for (const char* slot :
                 {"initAreas", "addArea", "addAreaOnAllEmptyArea", "defineAngleStart", "deleteArea"}) {
                Deck deck({area(0.0, 90.0)});
                QSignalSpy updates(&deck, &ManagePhrasing::s_Update);
                QSignalSpy replaced(&deck, &ManagePhrasing::s_UpdateListPhrasing);
                deck.at(angle);
                QVERIFY(QMetaObject::invokeMethod(&deck, slot));
                QCOMPARE(updates.count(), 1);
                QCOMPARE(replaced.count(), 0);
            }
        }
    }

    void aReplacedListIsSharedAndTold() {
        ManagePhrasing phrasing(deckA);
        QSignalSpy updates(&phrasing, &ManagePhrasing::s_Update);
        QSignalSpy replaced(&phrasing, &ManagePhrasing::s_UpdateListPhrasing);
        const QPhrasingList list = {area(0.0, 90.0), area(90.0, 180.0)};
        phrasing.setListPhrasing(list);
        QCOMPARE(phrasing.listPhrasing(), list); // the same objects
        QCOMPARE(replaced.count(), 1);
        QCOMPARE(updates.count(), 0);
    }

    // ---- nextFreeColor ----

    void theColoursComeInThePalettesOrderAndThenTheFirstAgain() {
        Deck deck;
        QList<QColor> given;
        for (int i = 1; i <= 30; ++i) {
            deck.at(i * 10.0).addArea();
            given << deck.listPhrasing().constLast()->color();
        }
        QCOMPARE(given.first(28), phrasingPalette());
        QCOMPARE(given[28], red);
        QCOMPARE(given[29], red);
    }

    void aColourThatStandsSeveralTimesTakesAsManyAreas() {
        Deck deck({area(0.0, 10.0, red)});
        QCOMPARE(deck.nextFreeColor(), yellow);
        deck.setListPhrasing({area(0.0, 10.0, yellow)});
        QCOMPARE(deck.nextFreeColor(), red);
        // One red used up: behind yellow, teal and orange the second red is next.
        deck.setListPhrasing({area(0.0, 1.0, red), area(1.0, 2.0, yellow),
                              area(2.0, 3.0, QColor(1, 194, 193)), area(3.0, 4.0, QColor(255, 123, 0))});
        QCOMPARE(deck.nextFreeColor(), red);
    }

    void aColourOutsideThePaletteUsesUpNothing() {
        const Deck deck({area(0.0, 10.0, QColor(9, 9, 9)), area(10.0, 20.0, QColor()),
                         area(20.0, 30.0, QColor(208, 0, 24, 100))});
        QCOMPARE(deck.nextFreeColor(), red);
    }

    // ---- isValid ----

    void anEmptyListIsValid() { QVERIFY(valid({})); }
    void anAreaOfNoSizeIsRefused() { QVERIFY(!valid({area(10.0, 10.0)})); }
    void aWholeTurnIsValidAndMoreIsNot() {
        QVERIFY(valid({area(0.0, 360.0)}));
        QVERIFY(valid({area(-10.0, 350.0)}));
        QVERIFY(!valid({area(0.0, std::nextafter(360.0, 361.0))}));
    }
    void areasMayTouch() {
        QVERIFY(valid({area(0.0, 90.0), area(90.0, 180.0)}));
        QVERIFY(valid({area(90.0, 180.0), area(0.0, 90.0)}));
    }
    void areasThatOverlapAreRefused() {
        QVERIFY(!valid({area(0.0, 91.0), area(90.0, 180.0)}));
        QVERIFY(!valid({area(90.0, 180.0), area(0.0, 91.0)}));
        QVERIFY(!valid({area(0.0, 360.0), area(90.0, 180.0)})); // one within the other
        QVERIFY(!valid({area(0.0, 90.0), area(0.0, 90.0)}));    // the same stretch twice
        QVERIFY(!valid({area(0.0, 10.0), area(20.0, 30.0), area(5.0, 6.0)}));
    }
    void anAreaThatStartsBehindItsEndIsNotRefused() {
        QVERIFY(valid({area(300.0, 60.0)}));
        QVERIFY(valid({area(300.0, 60.0), area(60.0, 120.0)}));
        QVERIFY(valid({area(300.0, 60.0), area(300.0, 30.0)}));
    }
    void aReversedAreasStartMayNotLieInAnother() { QVERIFY(!valid({area(100.0, 60.0), area(90.0, 120.0)})); }
    void theSameAreaTwiceDoesntOverlapItself() {
        const QPhrasingPtr one = area(0.0, 90.0);
        QVERIFY(valid({one, one}));
        QVERIFY(!valid({one, one, area(0.0, 90.0)}));
    }

    void theCheckIsThatOfAllPairs() {
        QRandomGenerator random(17);
        const double none = std::numeric_limits<double>::quiet_NaN();
        const double endless = std::numeric_limits<double>::infinity();
        int seen[2] = {0, 0};
        for (int round = 0; round < 20000; ++round) {
            QPhrasingList areas;
            for (int i = random.bounded(7); i > 0; --i) {
                // Whole numbers meet often.
                double ends[2] = {double(random.bounded(12)), double(random.bounded(12))};
                if (random.bounded(20) == 0) {
                    ends[random.bounded(2)] = random.bounded(2) == 0 ? none : endless;
                }
                areas << (areas.isEmpty() || random.bounded(10) != 0 ? area(ends[0], ends[1])
                                                                     : areas.constFirst());
            }
            const bool expected = validPairByPair(areas);
            QCOMPARE(valid(areas), expected);
            ++seen[expected ? 1 : 0];
        }
        QVERIFY(seen[0] > 2000 && seen[1] > 2000);
    }

    void liveEditingKeepsAValidListValid() {
        QRandomGenerator random(23);
        for (int round = 0; round < 200; ++round) {
            Deck deck;
            for (int key = 0; key < 60; ++key) {
                if (random.bounded(3) != 0) { // else the record rests, or comes back to where it was
                    deck.at(random.bounded(4) * 90.0 +
                            (random.bounded(2) == 0 ? random.generateDouble() : 0.0));
                }
                switch (random.bounded(4)) {
                case 0:
                    deck.addAreaOnAllEmptyArea();
                    break;
                case 1:
                    deck.defineAngleStart();
                    break;
                case 2:
                    deck.deleteArea();
                    break;
                default:
                    deck.addArea();
                }
            }
            QVERIFY(deck.isValid());
        }
    }

    // ---- the sample ----

    void aWaveInTheScratchToolsFolderIsLoaded() {
        writeWave(pathScratchTools(u"aah.wav"_s), 104);
        ManagePhrasing phrasing(ModelGraph::NOT_USED);
        phrasing.setScratchTools(u"aah.wav"_s);
        phrasing.loadScratchToolWav();
        QVERIFY(phrasing.scratchToolWav() != nullptr);
        QCOMPARE(phrasing.scratchToolWav()->length(), std::size_t{104});
    }

    void whatIsNoFileInThatFolderGivesNoWave_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("no name") << QString();
        QTest::newRow("no such file") << u"there is none.wav"_s;
        QTest::newRow("a folder") << u"folder"_s;
        QTest::newRow("a file above") << u"../outside.wav"_s;
        QTest::newRow("a file above, by a detour") << u"folder/../../outside.wav"_s;
        QTest::newRow("an absolute path") << pathData(u"outside.wav"_s);
        QTest::newRow("a wave without samples") << u"empty.wav"_s;
    }
    void whatIsNoFileInThatFolderGivesNoWave() {
        QFETCH(QString, name);
        QDir().mkpath(pathScratchTools(u"folder"_s));
        writeWave(pathData(u"outside.wav"_s), 104);
        writeWave(pathScratchTools(u"empty.wav"_s), 0);
        writeWave(pathScratchTools(u"before.wav"_s), 8);
        ManagePhrasing phrasing(ModelGraph::NOT_USED);
        phrasing.setScratchTools(u"before.wav"_s);
        phrasing.loadScratchToolWav();
        QVERIFY(phrasing.scratchToolWav() != nullptr);
        phrasing.setScratchTools(name);
        phrasing.loadScratchToolWav();
        QVERIFY(phrasing.scratchToolWav() == nullptr); // the one before is gone too
    }

    void aWaveOutlivesItsPhrasing() {
        writeWave(pathScratchTools(u"aah.wav"_s), 16);
        std::shared_ptr<const WaveData> shown;
        {
            ManagePhrasing phrasing(ModelGraph::NOT_USED);
            phrasing.setScratchTools(u"aah.wav"_s);
            phrasing.loadScratchToolWav();
            shown = phrasing.scratchToolWav();
        }
        QCOMPARE(shown->length(), std::size_t{16});
    }

private:
    // A mono wave of 16 bits.
    static void writeWave(const QString& path, quint32 samples) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QDataStream stream(&file);
        stream.setByteOrder(QDataStream::LittleEndian);
        stream.writeRawData("RIFF", 4);
        stream << quint32(samples * 2 + 36);
        stream.writeRawData("WAVEfmt ", 8);
        stream << quint32(16) << quint16(1) << quint16(1) << quint32(44100) << quint32(88200) << quint16(2)
               << quint16(16);
        stream.writeRawData("data", 4);
        stream << quint32(samples * 2);
        for (quint32 i = 0; i < samples; ++i) {
            stream << qint16(i);
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_ManagePhrasing)
#include "tst_managephrasing.moc"
