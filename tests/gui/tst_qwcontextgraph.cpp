#include "menu/qwcontextgraph.h"

#include "gui/support/guiprocess.h"
#include "support/testmain.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace {

struct Spies {
    explicit Spies(QWContextGraph& menu)
        : on(&menu, &QWContextGraph::s_Autoresize_on)
        , off(&menu, &QWContextGraph::s_Autoresize_off)
        , select(&menu, &QWContextGraph::s_SelectArea) {}
    QList<int> counts() const { return {int(on.count()), int(off.count()), int(select.count())}; }
    QSignalSpy on;
    QSignalSpy off;
    QSignalSpy select;
};

} // namespace

class TestQWContextGraph : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }

    void aSubMenuHoldsBothChoices() {
        QWContextGraph menu;
        QCOMPARE(menu.actions().size(), 1);
        QCOMPARE(menu.actions().first()->menu(), menu.zoomMenu());
        QCOMPARE(menu.zoomMenu()->title(), QStringLiteral("Zoom"));
        QCOMPARE(menu.zoomMenu()->actions(),
                 (QList<QAction*>{menu.autoresizeAction(), menu.selectionAction()}));
        QCOMPARE(menu.autoresizeAction()->text(), QStringLiteral("Auto-resize"));
        QCOMPARE(menu.selectionAction()->text(), QStringLiteral("Selection area"));
        QVERIFY(menu.autoresizeAction()->isCheckable());
        QVERIFY(!menu.autoresizeAction()->isChecked());
        QVERIFY(!menu.selectionAction()->isCheckable());
    }
    void checkingAndUncheckingSaysSoOnce() {
        QWContextGraph menu;
        const Spies spies(menu);
        menu.autoresizeAction()->trigger();
        QVERIFY(menu.autoresizeAction()->isChecked());
        QCOMPARE(spies.counts(), (QList<int>{1, 0, 0}));
        menu.autoresizeAction()->trigger();
        QVERIFY(!menu.autoresizeAction()->isChecked());
        QCOMPARE(spies.counts(), (QList<int>{1, 1, 0}));
    }
    void choosingASelection() {
        QWContextGraph menu;
        const Spies spies(menu);
        menu.selectionAction()->trigger();
        QCOMPARE(spies.counts(), (QList<int>{0, 0, 1}));
    }
    void theTwoSlotsSetTheCheckMarkAndSendTheSameSignalOnce() {
        QWContextGraph menu;
        const Spies spies(menu);
        menu.autoresize_on();
        QVERIFY(menu.autoresizeAction()->isChecked());
        QCOMPARE(spies.counts(), (QList<int>{1, 0, 0}));
        menu.autoresize_off();
        QVERIFY(!menu.autoresizeAction()->isChecked());
        QCOMPARE(spies.counts(), (QList<int>{1, 1, 0}));
        menu.autoresize_off(); // nothing looks at the old state
        QCOMPARE(spies.counts(), (QList<int>{1, 2, 0}));
    }
    void theToggleSendsByItsState() {
        QWContextGraph menu;
        const Spies spies(menu);
        menu.autoresizeToggle(true);
        menu.autoresizeToggle(false);
        menu.autoresizeToggle(false);
        QCOMPARE(spies.counts(), (QList<int>{1, 2, 0}));
        QVERIFY(!menu.autoresizeAction()->isChecked());
    }
    void aClosedMenuIsGone() {
        const QPointer<QWContextGraph> menu(new QWContextGraph);
        QVERIFY(menu->testAttribute(Qt::WA_DeleteOnClose));
        menu->popup(QPoint(10, 10));
        QVERIFY(menu->isVisible());
        menu->close();
        QTRY_VERIFY(menu.isNull());
    }
    void theUserWorksItWithTheKeyboard() {
        auto* menu = new QWContextGraph;
        const Spies spies(*menu);
        menu->popup(QPoint(10, 10));
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Right);
        QTRY_VERIFY(menu->zoomMenu()->isVisible());
        QTest::keyClick(menu->zoomMenu(), Qt::Key_Down);
        QTest::keyClick(menu->zoomMenu(), Qt::Key_Return);
        QCOMPARE(spies.counts(), (QList<int>{0, 0, 1}));
        QTRY_VERIFY(QApplication::activePopupWidget() == nullptr);
    }
};

GRAMO_TEST_MAIN(TestQWContextGraph)
#include "tst_qwcontextgraph.moc"
