#include "menu/qwgridtool.h"

#include "button/qb2push.h"
#include "button/qbselectinput.h"
#include "button/qbtoggle.h"
#include "button/qbtogglecircular.h"
#include "button/qdled.h"
#include "combobox/qcomboboxbpm.h"
#include "gui/support/deckgraph.h"
#include "support/testmain.h"

#include <QTest>

#include <cstdlib>

class TestQWGridTool : public QObject {
    Q_OBJECT

    static QPoint centre(const QWGridTool& tool, const QWidget* control) {
        return control->mapTo(&tool, QPoint(control->width() / 2, control->height() / 2));
    }

private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() {
        resetSharedState();
        training().setTitle(QString());
    }

    void recordStandsFirst() {
        QWGridTool tool;
        tool.resize(1200, tool.height());
        tool.show();
        QCOMPARE(tool.height(), 60);
        QCOMPARE(centre(tool, tool.recordToggle()), QPoint(30, 30));
    }
    void playStandsInTheMiddle_data() {
        QTest::addColumn<int>("width");
        QTest::newRow("smallest window") << 1200;
        QTest::newRow("large screen") << 1920;
    }
    void playStandsInTheMiddle() {
        QFETCH(int, width);
        QWGridTool tool;
        tool.resize(width, tool.height());
        tool.show();
        QVERIFY(std::abs(centre(tool, tool.playButton()).x() - width / 2) <= 1);
        QCOMPARE(centre(tool, tool.playButton()).y(), 30);
    }
    void nothingOverlapsOrIsCutOff() {
        training().setTitle(
            QStringLiteral("A title that is far longer than the strip has room for it, really"));
        QWGridTool tool;
        tool.resize(1200, tool.height());
        tool.show();
        const auto children = tool.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(children.size(), 10);
        for (int i = 0; i < children.size(); ++i) {
            QVERIFY(tool.rect().contains(children[i]->geometry()));
            for (int k = 0; k < i; ++k) {
                QVERIFY(!children[i]->geometry().intersects(children[k]->geometry()));
            }
        }
    }
    void everyControlHasANameAndAToolTip() {
        QWGridTool tool;
        const QList<QWidget*> controls{tool.recordToggle(), tool.mixToggle(),    tool.reverseToggle(),
                                       tool.holdToggle(),   tool.metronomLamp(), tool.playButton(),
                                       tool.bpmComboBox(),  tool.selectInput()};
        for (const QWidget* control : controls) {
            QVERIFY(!control->accessibleName().isEmpty());
            QVERIFY(!control->toolTip().isEmpty());
        }
    }
    void withoutATitleItIsRegularTraining() {
        QWGridTool tool;
        QCOMPARE(tool.title(), QStringLiteral("Regular Training"));
    }
    void theTempoNamesTheMode() {
        QWGridTool tool;
        QCOMPARE(tool.tempo(), QStringLiteral("Looper\n84 bpm"));
    }
    void anotherEntryShowsAtOnce() {
        QWGridTool tool;
        training().setTitle(QStringLiteral("Chirps"));
        training().setActivatedMode(ModelActivatedMode::Training);
        training().setBpmValue(92.5);
        QCOMPARE(tool.title(), QStringLiteral("Chirps"));
        QCOMPARE(tool.tempo(), QStringLiteral("Training\n92.5 bpm"));
        tool.updateForMode();
        QCOMPARE(tool.title(), QStringLiteral("Chirps"));
    }
};

GRAMO_TEST_MAIN(TestQWGridTool)
#include "tst_qwgridtool.moc"
