#include "state/performance.h"
#include "state/setting.h"
#include "state/storedperformance.h"
#include "support/testmain.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_StoredPerformance : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    int m_files = 0;

    std::unique_ptr<Setting> setting() {
        return std::make_unique<Setting>(m_folder.filePath(u"config%1.ini"_s.arg(++m_files)), nullptr);
    }

private Q_SLOTS:
    void theChoices() {
        QCOMPARE(bufferChoices(), QStringList({u"64"_s, u"128"_s, u"256"_s, u"512"_s, u"1024"_s, u"2048"_s}));
        QCOMPARE(displayFrequencyChoices(), QStringList({u"30"_s, u"60"_s, u"120"_s}));
    }

    void aTextOffTheListGivesTheFallback() {
        QCOMPARE(chosenText(bufferChoices(), u"512"_s, 0), u"512"_s);
        QCOMPARE(chosenText(bufferChoices(), u"100"_s, 0), u"64"_s);
        QCOMPARE(chosenText(bufferChoices(), u"100"_s, 2), u"256"_s);
        QCOMPARE(chosenText(bufferChoices(), QString(), 2), u"256"_s);
        QCOMPARE(chosenText(bufferChoices(), u"64 "_s, 2), u"256"_s);
    }

    void aTextThatIsNo32BitIntegerCountsAsZero() {
        QCOMPARE(chosenNumber(u"2048"_s), 2048.0);
        QCOMPARE(chosenNumber(u"bpm"_s), 0.0);
        QCOMPARE(chosenNumber(QString()), 0.0);
        QCOMPARE(chosenNumber(u"64.5"_s), 0.0);
        QCOMPARE(chosenNumber(u"4294967296"_s), 0.0);
        QCOMPARE(chosenNumber(u"-7"_s), -7.0);
    }

    void freshSettingsGive64FramesAnd60Repaints() {
        Performance performance;
        applyStoredPerformance(*setting(), performance);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKA), 64.0);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKB), 64.0);
        QCOMPARE(performance.outputBuffer(), 64.0);
        QCOMPARE(performance.displayInterval(), 1.0 / 60.0 * 1000.0);
    }

    void eachStoredValueGoesToItsPlace() {
        const auto stored = setting();
        stored->setInputBufferA(u"128"_s);
        stored->setInputBufferB(u"512"_s);
        stored->setOutputBuffer(u"2048"_s);
        stored->setDisplayFrequency(u"120"_s);
        Performance performance;
        applyStoredPerformance(*stored, performance);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKA), 128.0);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKB), 512.0);
        QCOMPARE(performance.outputBuffer(), 2048.0);
        QCOMPARE(performance.displayInterval(), 1.0 / 120.0 * 1000.0);
    }

    void storedValuesOffTheListsGiveTheDefaults() {
        const auto stored = setting();
        stored->setInputBufferA(u"100"_s);
        stored->setInputBufferB(u"fast"_s);
        stored->setOutputBuffer(u"0"_s);
        stored->setDisplayFrequency(u"0"_s);
        Performance performance;
        applyStoredPerformance(*stored, performance);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKA), 64.0);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKB), 64.0);
        QCOMPARE(performance.outputBuffer(), 64.0);
        QCOMPARE(performance.displayInterval(), 1.0 / 60.0 * 1000.0);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_StoredPerformance)
#include "tst_storedperformance.moc"
