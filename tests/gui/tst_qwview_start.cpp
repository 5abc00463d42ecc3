// What the view takes over from the settings when it is made.
#include "button/qbtoggle.h"
#include "gui/support/deckgraph.h"
#include "menu/qwgridtool.h"
#include "qwview.h"
#include "state/pathfile.h"
#include "support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTest>

namespace {

struct View {
    CurvePointStore mainA;
    CurvePointStore secondaryA;
    CurvePointStore mainB;
    CurvePointStore secondaryB;
    QWView view{mainA, secondaryA, mainB, secondaryB, nullptr};
};

void writeStyle(const QString& name, const QByteArray& content) {
    QDir().mkpath(pathCss(QString()));
    QFile file(pathCss(name + QStringLiteral(".css")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

class TestQWViewStart : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() { resetSharedState(); }

    void theStoredLanguageIsSpoken() {
        setting().setLanguage(QStringLiteral("fr_FR"));
        QCOMPARE(View().view.gridTool()->recordToggle()->toolTip(), QStringLiteral("Enregistrer la session"));
        setting().setLanguage(QStringLiteral("en_US"));
        QCOMPARE(View().view.gridTool()->recordToggle()->toolTip(), QStringLiteral("Record the session"));
    }
    void theStyleSheetPaintsItsGround() {
        writeStyle(QStringLiteral("Gramoscope"), "QWView { background-color: #123456; }");
        setting().setStyle(QStringLiteral("Gramoscope"));
        View v;
        v.view.resize(1300, 700);
        v.view.painterDeckA()->hide();
        v.view.gridTool()->hide();
        QCOMPARE(pictureOf(v.view).pixelColor(600, 300), QColor(0x12, 0x34, 0x56));
    }
    void aStyleThatIsntThereIsTheFirstOneAtTheStartAndLeavesTheStyleLater() {
        writeStyle(QStringLiteral("Gramoscope"), "QLabel { color: green; }");
        writeStyle(QStringLiteral("Other"), "QLabel { color: blue; }");
        setting().setStyle(QStringLiteral("NoSuchStyle"));
        View v;
        QCOMPARE(v.view.styleSheet(), QStringLiteral("QLabel { color: green; }"));
        setting().setStyle(QStringLiteral("Other"));
        QCOMPARE(v.view.styleSheet(), QStringLiteral("QLabel { color: blue; }"));
        setting().setStyle(QStringLiteral("NoSuchStyle"));
        QCOMPARE(v.view.styleSheet(), QStringLiteral("QLabel { color: blue; }"));
        setting().setStyle(QStringLiteral("Gramoscope"));
    }
};

GRAMO_TEST_MAIN(TestQWViewStart)
#include "tst_qwview_start.moc"
