#include "combobox/qcomboboxbpm.h"

#include "gui/support/guiprocess.h"
#include "state/mode.h"
#include "state/singleton.h"
#include "support/testmain.h"

#include <QSignalSpy>
#include <QTest>

namespace {
double beats() {
    return Singleton::instance().mode()->graphBeats();
}
} // namespace

class TestQComboBoxBpm : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }

    void theChoices() {
        QComboBoxBpm box;
        QStringList texts;
        for (int i = 0; i < box.count(); ++i) {
            texts << box.itemText(i);
        }
        QCOMPARE(texts, (QStringList{QStringLiteral("bpm"), QStringLiteral("2"), QStringLiteral("4"),
                                     QStringLiteral("8"), QStringLiteral("16"), QStringLiteral("32"),
                                     QStringLiteral("64")}));
        QVERIFY(!box.isEditable());
    }
    void aFirstSessionShowsSixteenBeats() {
        Singleton::instance().mode()->setGraphBeats(0.0);
        QComboBoxBpm box;
        QCOMPARE(box.currentText(), QStringLiteral("16"));
        QCOMPARE(beats(), 16.0);
    }
    void aChoiceIsSavedAndTold() {
        QComboBoxBpm box;
        double atSignal = 0.0;
        connect(&box, &QComboBoxBpm::s_Textchanged, this, [&] { atSignal = beats(); });
        QSignalSpy changed(&box, &QComboBoxBpm::s_Textchanged);
        box.setCurrentText(QStringLiteral("64"));
        QCOMPARE(beats(), 64.0);
        QCOMPARE(atSignal, 64.0); // saved before it is told
        QTest::keyClick(&box, Qt::Key_Up);
        QCOMPARE(beats(), 32.0);
        QCOMPARE(changed.count(), 2);
    }
    void theWordGivesNoBeats() {
        QComboBoxBpm box;
        box.setCurrentText(QStringLiteral("bpm"));
        QCOMPARE(beats(), 0.0);
    }
    void aTextThatIsNoNumberGivesNoBeats() {
        QComboBoxBpm box;
        box.save(QStringLiteral("99999999999"));
        QCOMPARE(beats(), 0.0);
        box.save(QStringLiteral("8"));
        QCOMPARE(beats(), 8.0);
    }
    void enabling() {
        QComboBoxBpm box;
        box.disabled();
        QVERIFY(!box.isEnabled());
        box.enabled();
        QVERIFY(box.isEnabled());
    }
};

GRAMO_TEST_MAIN(TestQComboBoxBpm)
#include "tst_qcomboboxbpm.moc"
