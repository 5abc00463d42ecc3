#include "dialog/savecolorphrasing.h"

#include "button/qbpush.h"
#include "gui/support/guiprocess.h"
#include "support/testmain.h"

#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cstdlib>

namespace {

/// A graph's place: below another widget of a window that stands somewhere on the screen.
struct Parent {
    Parent() {
        window.setGeometry(100, 50, 900, 600);
        graph = new QWidget(&window);
        graph->setGeometry(0, 300, 900, 300);
        window.show();
    }
    QWidget window;
    QWidget* graph;
};

bool inTheMiddleOf(const QWidget& dialog, const QWidget& parent, int below = 0) {
    const QPoint off =
        dialog.geometry().center() - parent.mapToGlobal(parent.rect().center()) - QPoint(0, below);
    return std::abs(off.x()) <= 1 && std::abs(off.y()) <= 1;
}

QString titleOf(const SaveColorPhrasing& dialog) {
    return dialog.findChild<QLabel*>(QStringLiteral("title"))->text();
}

} // namespace

class TestSaveColorPhrasing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }

    void itNamesItsDeck() {
        const SaveColorPhrasing a(ModelGraph::INPUT_DECKA, nullptr);
        const SaveColorPhrasing b(ModelGraph::INPUT_DECKB, nullptr);
        QCOMPARE(titleOf(a), QStringLiteral("Save configuration of phrasing colors: Input DeckA"));
        QCOMPARE(titleOf(b), QStringLiteral("Save configuration of phrasing colors: Input DeckB"));
        QVERIFY(a.isModal());
        QVERIFY(a.windowFlags().testFlag(Qt::FramelessWindowHint));
        QCOMPARE(a.layout()->contentsMargins(), QMargins(10, 10, 10, 10));
    }
    void theNameIsWhereTheKeysGo() {
        SaveColorPhrasing dialog(ModelGraph::INPUT_DECKA, nullptr);
        QCOMPARE(dialog.focusWidget(), dialog.fileNameEdit());
        QVERIFY(!dialog.saveButton()->autoDefault());
        QVERIFY(!dialog.closeButton()->autoDefault());
        const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
        QCOMPARE(std::count_if(labels.begin(), labels.end(),
                               [&](const QLabel* label) { return label->buddy() == dialog.fileNameEdit(); }),
                 1);
    }
    void anEmptyNameKeepsTheDialogOpen() {
        SaveColorPhrasing dialog(ModelGraph::INPUT_DECKA, nullptr);
        QSignalSpy end(&dialog, &QDialog::finished);
        dialog.show();
        dialog.save();
        QTest::mouseClick(dialog.saveButton(), Qt::LeftButton);
        QTest::keyClick(dialog.fileNameEdit(), Qt::Key_Return);
        QCOMPARE(end.count(), 0);
        QVERIFY(dialog.isVisible());
    }
    void aNameIsAccepted_data() {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("button") << false;
        QTest::newRow("return") << true;
    }
    void aNameIsAccepted() {
        QFETCH(bool, byKey);
        SaveColorPhrasing dialog(ModelGraph::INPUT_DECKA, nullptr);
        QSignalSpy end(&dialog, &QDialog::finished);
        dialog.show();
        QTest::keyClicks(dialog.fileNameEdit(), QStringLiteral("my areas"));
        if (byKey) {
            QTest::keyClick(dialog.fileNameEdit(), Qt::Key_Return);
        } else {
            QTest::mouseClick(dialog.saveButton(), Qt::LeftButton);
        }
        QCOMPARE(end.count(), 1);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.fileName(), QStringLiteral("my areas"));
    }
    void aNameCantLeaveTheFolder() {
        SaveColorPhrasing dialog(ModelGraph::INPUT_DECKA, nullptr);
        dialog.show();
        QTest::keyClicks(dialog.fileNameEdit(), QStringLiteral("../a\\b/c"));
        QCOMPARE(dialog.fileNameEdit()->text(), QStringLiteral("..abc"));
    }
    void closeAndEscapeReject() {
        for (const bool byKey : {true, false}) {
            SaveColorPhrasing dialog(ModelGraph::INPUT_DECKA, nullptr);
            dialog.show();
            QTest::keyClicks(dialog.fileNameEdit(), QStringLiteral("name"));
            if (byKey) {
                QTest::keyClick(&dialog, Qt::Key_Escape);
            } else {
                QTest::mouseClick(dialog.closeButton(), Qt::LeftButton);
            }
            QVERIFY(!dialog.isVisible());
            QCOMPARE(dialog.result(), int(QDialog::Rejected));
        }
    }
    void itStandsInTheMiddleOfItsGraph() {
        Parent p;
        const SaveColorPhrasing b(ModelGraph::INPUT_DECKB, p.graph);
        QVERIFY(inTheMiddleOf(b, *p.graph));
        p.graph->move(0, 0); // deck A's graph stands at the top
        const SaveColorPhrasing a(ModelGraph::INPUT_DECKA, p.graph);
        QVERIFY(inTheMiddleOf(a, *p.graph));
    }
    void deckAsDialogAddsTheTopOfItsGraph() {
        Parent p;
        const SaveColorPhrasing a(ModelGraph::INPUT_DECKA, p.graph);
        QVERIFY(inTheMiddleOf(a, *p.graph, 300));
    }
    void itFollowsAResizedGraph() {
        Parent p;
        const SaveColorPhrasing b(ModelGraph::INPUT_DECKB, p.graph);
        p.graph->setGeometry(0, 100, 700, 500);
        QVERIFY(!inTheMiddleOf(b, *p.graph));
        QTRY_VERIFY(inTheMiddleOf(b, *p.graph));
    }
};

GRAMO_TEST_MAIN(TestSaveColorPhrasing)
#include "tst_savecolorphrasing.moc"
