#include "menu/qwgridtool.h"

#include "button/qb2push.h"
#include "button/qbselectinput.h"
#include "button/qbtoggle.h"
#include "button/qbtogglecircular.h"
#include "button/qdled.h"
#include "combobox/qcomboboxbpm.h"
#include "gui/support/deckgraph.h"
#include "support/testmain.h"

#include <QLabel>
#include <QTest>

#include <cstdlib>
#include <utility>
#include <vector>

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
    void eachControlShowsItsPicture() {
        QWGridTool tool;
        const auto picture = [](const QIcon& icon) { return icon.pixmap(50, 50).toImage(); };
        const std::vector<std::pair<const QPushButton*, QString>> buttons{
            {tool.recordToggle(), QStringLiteral("record.png")},
            {tool.mixToggle(), QStringLiteral("mix.png")},
            {tool.reverseToggle(), QStringLiteral("hamster.png")},
            {tool.holdToggle(), QStringLiteral("hold.png")},
            {tool.metronomLamp(), QStringLiteral("metronom2.png")},
            {tool.playButton(), QStringLiteral("play-button.png")}};
        for (const auto& [button, name] : buttons) {
            const QImage expected = picture(QIcon(pathIcon(name)));
            QVERIFY2(!expected.isNull() && picture(button->icon()) == expected, qPrintable(name));
        }
        tool.playButton()->checked();
        QCOMPARE(picture(tool.playButton()->icon()),
                 picture(QIcon(pathIcon(QStringLiteral("pause-button.png")))));
    }
    // What the style sheets go by, and the room of the two texts.
    void theTextsHaveTheirNamesAndTheirRoom() {
        QWGridTool tool;
        const auto* tempo = tool.findChild<QLabel*>(QStringLiteral("bpm"));
        const auto* title = tool.findChild<QLabel*>(QStringLiteral("subtitle"));
        QVERIFY(tempo != nullptr && title != nullptr);
        QCOMPARE(tempo->text(), tool.tempo());
        QCOMPARE(title->text(), tool.title());
        QCOMPARE(tempo->minimumWidth(), 120);
        QCOMPARE(tempo->maximumWidth(), 120);
        QCOMPARE(tempo->alignment(), Qt::AlignCenter);
        QCOMPARE(title->minimumWidth(), 250);
        QVERIFY(title->wordWrap());
        QCOMPARE(tool.recordToggle()->property("role").toString(), QStringLiteral("record"));
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
