// Both toggles: the round one is the square one without toggleOffIfEnabled.
#include "button/qbtoggle.h"
#include "button/qbtogglecircular.h"

#include "gui/support/guiprocess.h"
#include "support/testmain.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

class TestQBToggle : public QObject {
    Q_OBJECT

    static std::unique_ptr<QBSwitch> make(bool round) {
        const QString picture = QStringLiteral("record.png");
        if (round) {
            return std::make_unique<QBToggleCircular>(picture);
        }
        return std::make_unique<QBToggle>(picture);
    }
    static void shapes() {
        QTest::addColumn<bool>("round");
        QTest::newRow("square") << false;
        QTest::newRow("round") << true;
    }

private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }

    void sizeAndPicture_data() { shapes(); }
    void sizeAndPicture() {
        QFETCH(bool, round);
        const auto button = make(round);
        QCOMPARE(button->minimumSize(), QSize(50, 50));
        QCOMPARE(button->maximumSize(), QSize(50, 50));
        QCOMPARE(button->iconSize(), QSize(30, 30));
        QVERIFY(!button->icon().isNull());
        QVERIFY(button->isCheckable());
        QCOMPARE(button->objectName(), round ? QStringLiteral("togglecircular") : QStringLiteral("toggle"));
    }
    void aPressIsHeardOnce_data() { shapes(); }
    void aPressIsHeardOnce() {
        QFETCH(bool, round);
        const auto button = make(round);
        QSignalSpy on(button.get(), &QBSwitch::s_Toogle_on);
        QSignalSpy off(button.get(), &QBSwitch::s_Toogle_off);
        QTest::mouseClick(button.get(), Qt::LeftButton);
        QCOMPARE(on.count(), 1);
        QCOMPARE(off.count(), 0);
        QTest::mouseClick(button.get(), Qt::LeftButton);
        QCOMPARE(on.count(), 1);
        QCOMPARE(off.count(), 1);
    }
    void aSlotIsHeardTwice_data() { shapes(); }
    void aSlotIsHeardTwice() {
        QFETCH(bool, round);
        const auto button = make(round);
        QSignalSpy on(button.get(), &QBSwitch::s_Toogle_on);
        QSignalSpy off(button.get(), &QBSwitch::s_Toogle_off);
        button->toggle_on();
        QVERIFY(button->isChecked());
        QCOMPARE(on.count(), 2);
        button->toggle_off();
        QVERIFY(!button->isChecked());
        QCOMPARE(off.count(), 2);
    }
    void aSlotThatChangesNothingIsNotHeard_data() { shapes(); }
    void aSlotThatChangesNothingIsNotHeard() {
        QFETCH(bool, round);
        const auto button = make(round);
        QSignalSpy off(button.get(), &QBSwitch::s_Toogle_off);
        button->toggle_off();
        QCOMPARE(off.count(), 0);
        button->toggle_on();
        QSignalSpy on(button.get(), &QBSwitch::s_Toogle_on);
        button->toggle_on();
        QCOMPARE(on.count(), 0);
        QVERIFY(button->isChecked());
    }
    void switchedOffItKeepsItsState_data() { shapes(); }
    void switchedOffItKeepsItsState() {
        QFETCH(bool, round);
        const auto button = make(round);
        button->toggle_on();
        button->disabled();
        QVERIFY(!button->isEnabled());
        QTest::mouseClick(button.get(), Qt::LeftButton);
        QVERIFY(button->isChecked());
        button->enabled();
        QTest::mouseClick(button.get(), Qt::LeftButton);
        QVERIFY(!button->isChecked());
    }
    void uncheckedIfEnabledIsHeardOnce() {
        QBToggle button(QStringLiteral("record.png"));
        button.toggle_on();
        QSignalSpy off(&button, &QBSwitch::s_Toogle_off);
        button.toggleOffIfEnabled();
        QVERIFY(!button.isChecked());
        QCOMPARE(off.count(), 1);
    }
    void aDisabledToggleIsLeftAsItIs() {
        QBToggle button(QStringLiteral("record.png"));
        button.toggle_on();
        button.disabled();
        QSignalSpy off(&button, &QBSwitch::s_Toogle_off);
        button.toggleOffIfEnabled();
        QVERIFY(button.isChecked());
        QCOMPARE(off.count(), 0);
    }
};

GRAMO_TEST_MAIN(TestQBToggle)
#include "tst_qbtoggle.moc"
