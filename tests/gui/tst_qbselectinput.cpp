#include "button/qbselectinput.h"

#include "gui/support/guiprocess.h"
#include "state/mode.h"
#include "state/singleton.h"
#include "support/testmain.h"

#include <QSignalSpy>
#include <QTest>

namespace {

QImage shown(const QPushButton& button) {
    return button.icon().pixmap(50, 50).toImage();
}
QImage named(const char* name) {
    return QIcon(pathIcon(QString::fromLatin1(name))).pixmap(50, 50).toImage();
}
Mode& mode() {
    return *Singleton::instance().mode();
}

} // namespace

class TestQBSelectInput : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() { mode().setInputMode(ModelInput::UNDEFINED); }

    void itStartsWithDeckAAndTellsNobody() {
        QBSelectInput button;
        QCOMPARE(button.minimumSize(), QSize(50, 50));
        QCOMPARE(button.maximumSize(), QSize(50, 50));
        QCOMPARE(button.iconSize(), QSize(50, 50));
        QCOMPARE(shown(button), named("switch_a_text.png"));
        QCOMPARE(mode().inputMode(), ModelInput::UNDEFINED);
    }
    void fourPressesGoThroughBothDecksAndBack() {
        QBSelectInput button;
        QSignalSpy values(&button, &QBSelectInput::s_toogle_value);
        const struct {
            ModelInput::EnumInput value;
            const char* picture;
        } cycle[] = {{ModelInput::TEXT_A_B, "switch_a_b_text.png"},
                     {ModelInput::TEXT_B, "switch_b_text.png"},
                     {ModelInput::TEXT_A_B, "switch_a_b_text.png"},
                     {ModelInput::TEXT_A, "switch_a_text.png"}};
        for (int turn = 0; turn < 2; ++turn) {
            for (const auto& step : cycle) {
                QTest::mouseClick(&button, Qt::LeftButton);
                QCOMPARE(values.last().first().value<ModelInput::EnumInput>(), step.value);
                QCOMPARE(mode().inputMode(), step.value);
                QCOMPARE(shown(button), named(step.picture));
            }
        }
        QCOMPARE(values.count(), 8);
    }
    void theValueIsToldBeforeItIsStored() {
        QBSelectInput button;
        ModelInput::EnumInput stored = ModelInput::TEXT_B;
        connect(&button, &QBSelectInput::s_toogle_value, this, [&] { stored = mode().inputMode(); });
        button.toggleState();
        QCOMPARE(stored, ModelInput::UNDEFINED);
        QCOMPARE(mode().inputMode(), ModelInput::TEXT_A_B);
    }
    void refreshingOnlyShows() {
        QBSelectInput button;
        QSignalSpy values(&button, &QBSelectInput::s_toogle_value);
        button.setIcon(QIcon());
        button.refreshState();
        QCOMPARE(shown(button), named("switch_a_text.png"));
        QCOMPARE(values.count(), 0);
    }
    void enabling() {
        QBSelectInput button;
        button.disabled();
        QVERIFY(!button.isEnabled());
        button.enabled();
        QVERIFY(button.isEnabled());
        button.setControlEnabled(false);
        QVERIFY(!button.isEnabled());
        button.setControlEnabled(true);
        QVERIFY(button.isEnabled());
    }
};

GRAMO_TEST_MAIN(TestQBSelectInput)
#include "tst_qbselectinput.moc"
