#include "state/mode.h"
#include "state/timecodechoice.h"
#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_TimecodeChoice : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theTwoFullDvsRecordsKeepTheVinylsZero_data() {
        QTest::addColumn<QString>("timecode");
        QTest::addColumn<bool>("full");
        QTest::newRow("generic") << u"generic_V2"_s << false;
        QTest::newRow("serato A") << u"serato_sideA_FullDVS"_s << true;
        QTest::newRow("serato B") << u"serato_sideB_FullDVS"_s << true;
        QTest::newRow("traktor A") << u"traktor_sideA"_s << false;
        QTest::newRow("traktor B") << u"traktor_sideB"_s << false;
        QTest::newRow("none") << QString() << false;
        QTest::newRow("another case") << u"Serato_sideA_FullDVS"_s << false;
    }
    void theTwoFullDvsRecordsKeepTheVinylsZero() {
        QFETCH(QString, timecode);
        QFETCH(bool, full);
        Mode mode;
        applyTimecodeChoice(timecode, mode);
        QCOMPARE(mode.modeFullDVS(), full);
        mode.modeFullDVS_on();
        applyTimecodeChoice(timecode, mode);
        QCOMPARE(mode.modeFullDVS(), full);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_TimecodeChoice)
#include "tst_timecodechoice.moc"
