#include "painter/yrange.h"
#include "qwview.h"

#include "button/qb2push.h"
#include "dialog/savecolorphrasing.h"
#include "gui/support/deckgraph.h"
#include "menu/qwcontextgraph.h"
#include "menu/qwgridtool.h"
#include "phrasing/managephrasing.h"
#include "state/pathfile.h"
#include "state/vinyl.h"
#include "support/testmain.h"

#include <QAction>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMainWindow>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>

namespace {

struct Stores {
    CurvePointStore mainA;
    CurvePointStore secondaryA;
    CurvePointStore mainB;
    CurvePointStore secondaryB;
};

/// The view in a main window, as the program has it.
struct Window : Stores {
    Window() {
        window.setCentralWidget(view = new QWView(mainA, secondaryA, mainB, secondaryB, &window));
        window.resize(1200, 600);
        window.show();
        window.activateWindow();
        view->setFocus();
        // Shortcuts work in the active window alone.
        active = QTest::qWaitForWindowActive(&window);
    }
    ~Window() { delete view; } // before the stores
    QMainWindow window;
    bool active = false;
    QWView* view;
};

void writeFile(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QStringList recordedCurves() {
    PathFile& files = *Singleton::instance().pathFile();
    return QDir(files.pathDirectoryRecording()).entryList({QStringLiteral("*")}, QDir::Files, QDir::Name);
}

} // namespace

class TestQWView : public QObject {
    Q_OBJECT

    QSample m_deviceA{ModelGraph::INPUT_DECKA, 0, QStringLiteral("mixer"), 44100.0, 4, 0};
    QSample m_deviceB{ModelGraph::INPUT_DECKB, 0, QStringLiteral("mixer"), 96000.0, 4, 1};
    QSample* m_noDeviceA = nullptr;
    QSample* m_noDeviceB = nullptr;

    void plugIn() {
        performance().setSample(ModelGraph::INPUT_DECKA, &m_deviceA, false);
        performance().setSample(ModelGraph::INPUT_DECKB, &m_deviceB, false);
        PathFile& files = *Singleton::instance().pathFile();
        files.newPathDirectory_recording();
        files.setFileDeckA(QStringLiteral("takeA.wav"));
        files.setFileDeckB(QStringLiteral("takeB.wav"));
    }

private Q_SLOTS:
    void initTestCase() {
        prepareGuiProcess();
        m_noDeviceA = performance().sample(ModelGraph::INPUT_DECKA);
        m_noDeviceB = performance().sample(ModelGraph::INPUT_DECKB);
    }
    void init() {
        performance().setSample(ModelGraph::INPUT_DECKA, m_noDeviceA, false);
        performance().setSample(ModelGraph::INPUT_DECKB, m_noDeviceB, false);
        Singleton::instance().pathFile()->setFileDeckA(QString());
        Singleton::instance().pathFile()->setFileDeckB(QString());
        resetSharedState();
    }

    void theGraphsStandAboveTheStrip() {
        Window w;
        QCOMPARE(w.view->minimumSize(), QSize(1200, 600));
        QCOMPARE(w.view->gridTool()->geometry(), QRect(0, 540, 1200, 60));
        QCOMPARE(w.view->painterDeckA()->geometry(), QRect(0, 0, 1200, 540));
        QVERIFY(w.view->painterDeckB()->isHidden());
    }
    void theGraphsHaveTheirCurves() {
        Window w;
        QCOMPARE(w.view->painterDeckA()->deckName(), ModelGraph::INPUT_DECKA);
        QCOMPARE(w.view->painterDeckA()->mainCurve()->graphName(), ModelGraph::INPUT_DECKA);
        QCOMPARE(w.view->painterDeckA()->secondaryCurve()->graphName(), ModelGraph::INPUT_1);
        QCOMPARE(w.view->painterDeckB()->mainCurve()->graphName(), ModelGraph::INPUT_DECKB);
        QCOMPARE(w.view->painterDeckB()->secondaryCurve()->graphName(), ModelGraph::INPUT_2);
        QCOMPARE(&w.view->painterDeckA()->mainCurve()->store(), &w.mainA);
        QCOMPARE(&w.view->painterDeckA()->secondaryCurve()->store(), &w.secondaryA);
        QCOMPARE(&w.view->painterDeckB()->mainCurve()->store(), &w.mainB);
        QCOMPARE(&w.view->painterDeckB()->secondaryCurve()->store(), &w.secondaryB);
    }
    void theFirstGraphShowsTheStoredBeats() {
        mode().setGraphBeats(0.0);
        Window w;
        QVERIFY(w.view->painterDeckA()->xRange().span() > 500000.0);
        QVERIFY(performance().displayInterval() > 0.0);
    }
    void choosingTheInputShowsItsGraph() {
        Window w;
        w.view->showInput(ModelInput::TEXT_B);
        QVERIFY(w.view->painterDeckA()->isHidden() && !w.view->painterDeckB()->isHidden());
        w.view->showInput(ModelInput::TEXT_A);
        QVERIFY(!w.view->painterDeckA()->isHidden() && w.view->painterDeckB()->isHidden());
        for (const auto both : {ModelInput::TEXT_A_B, ModelInput::UNDEFINED}) {
            w.view->showInput(ModelInput::TEXT_A);
            w.view->showInput(both);
            QVERIFY(!w.view->painterDeckA()->isHidden() && !w.view->painterDeckB()->isHidden());
        }
        QCoreApplication::processEvents();
        const QRect a = w.view->painterDeckA()->geometry();
        const QRect b = w.view->painterDeckB()->geometry();
        QVERIFY(a.bottom() < b.top());
        QVERIFY(std::abs(a.height() - b.height()) <= 1);
    }
    void holdAsksBothVisibleGraphs() {
        Window w;
        mode().modeHold_on();
        addPoints(w.mainA, 200, 64.0, [](int, CurvePoint& p) { p.pitch = 0.0; });
        addPoints(w.mainB, 200, 64.0);
        pictureOf(*w.view->painterDeckA());
        QVERIFY(mode().modeGraphicScrollStop());
        w.view->showInput(ModelInput::TEXT_A_B);
        pictureOf(*w.view->painterDeckA());
        QVERIFY(!mode().modeGraphicScrollStop());
    }

    void spaceClicksPlay() {
        Window w;
        QVERIFY(w.active);
        QSignalSpy push(w.view->gridTool()->playButton(), &QB2Push::s_push);
        QTest::keyClick(w.view, Qt::Key_Space);
        QCOMPARE(push.count(), 1);
    }
    void enterReturnAndBackspaceSetTheZeroMark() {
        Window w;
        QVERIFY(w.active);
        Vinyl& vinyl = *Singleton::instance().vinyl();
        for (const auto key : {Qt::Key_Enter, Qt::Key_Return}) {
            vinyl.setAngle(ModelGraph::INPUT_DECKA, 350.0);
            vinyl.setDeltaPosition(ModelGraph::INPUT_DECKA, 20.0);
            vinyl.setDeltaPosition(ModelGraph::INPUT_DECKB, 7.0);
            QTest::keyClick(w.view, key);
            QCOMPARE(vinyl.deltaPosition(ModelGraph::INPUT_DECKA), 10.0);
            QCOMPARE(vinyl.deltaPosition(ModelGraph::INPUT_DECKB), 7.0);
        }
        vinyl.setAngle(ModelGraph::INPUT_DECKB, 90.0);
        QTest::keyClick(w.view, Qt::Key_Backspace);
        QCOMPARE(vinyl.deltaPosition(ModelGraph::INPUT_DECKB), 97.0);
        QCOMPARE(vinyl.deltaPosition(ModelGraph::INPUT_DECKA), 10.0);
    }
    void digitsTagBothGraphs() {
        Window w;
        QVERIFY(w.active);
        for (const int number : {3, 1, 4, 2, 0}) {
            QTest::keyClick(w.view, Qt::Key(Qt::Key_0 + number));
            QCOMPARE(w.view->painterDeckA()->tagNumber(), number);
            QCOMPARE(w.view->painterDeckB()->tagNumber(), number);
        }
    }
    void thePhrasingKeysWorkOnTheirDeck_data() {
        QTest::addColumn<ModelGraph::EnumGraph>("deck");
        QTest::addColumn<Qt::Key>("make");
        QTest::addColumn<Qt::Key>("remove");
        QTest::newRow("deck A") << ModelGraph::INPUT_DECKA << Qt::Key_E << Qt::Key_R;
        QTest::newRow("deck B") << ModelGraph::INPUT_DECKB << Qt::Key_I << Qt::Key_O;
    }
    void thePhrasingKeysWorkOnTheirDeck() {
        QFETCH(ModelGraph::EnumGraph, deck);
        QFETCH(Qt::Key, make);
        QFETCH(Qt::Key, remove);
        Window w;
        QVERIFY(w.active);
        const bool onA = deck == ModelGraph::INPUT_DECKA;
        const ManagePhrasing& areas = *(onA ? w.view->painterDeckA() : w.view->painterDeckB())->colorAreas();
        const ManagePhrasing& others = *(onA ? w.view->painterDeckB() : w.view->painterDeckA())->colorAreas();
        const auto turnTo = [deck](double angle) { Singleton::instance().vinyl()->setAngle(deck, angle); };
        // Start and end of each area, in the order of their making.
        const auto ends = [&areas] {
            QList<double> all;
            for (const QPhrasingPtr& area : areas.listPhrasing()) {
                all << area->angleStart() << area->angleEnd();
            }
            return all;
        };
        turnTo(90.0);
        QTest::keyClick(w.view, make);
        QCOMPARE(ends(), (QList<double>{0.0, 90.0}));
        turnTo(30.0);
        QTest::keyClick(w.view, make, Qt::ShiftModifier);
        QCOMPARE(ends(), (QList<double>{30.0, 90.0}));
        turnTo(200.0);
        QTest::keyClick(w.view, make, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(ends(), (QList<double>{30.0, 90.0, 90.0, 360.0}));
        turnTo(40.0);
        QTest::keyClick(w.view, remove);
        QCOMPARE(ends(), (QList<double>{90.0, 360.0}));
        QTest::keyClick(w.view, remove, Qt::ShiftModifier);
        QVERIFY(ends().isEmpty());
        QVERIFY(others.listPhrasing().isEmpty());
    }
    void aPhrasingKeyHeldDownIsOnePress() {
        Window w;
        QVERIFY(w.active);
        QSignalSpy update(w.view->painterDeckA()->colorAreas(), &ManagePhrasing::s_Update);
        int keys = 0;
        for (const QShortcut* shortcut : w.view->findChildren<QShortcut*>()) {
            const QString key = shortcut->key().toString(QKeySequence::PortableText);
            if (QStringLiteral("ERIOSJ").contains(key.section(u'+', -1))) {
                QVERIFY2(!shortcut->autoRepeat(), qPrintable(key));
                ++keys;
            }
        }
        QCOMPARE(keys, 12);
        QTest::keyClick(w.view, Qt::Key_R);
        QCOMPARE(update.count(), 1);
    }
    void savingTheAreasAsksForAName_data() {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<bool>("onA");
        QTest::newRow("S") << Qt::Key_S << true;
        QTest::newRow("J") << Qt::Key_J << false;
    }
    void savingTheAreasAsksForAName() {
        QFETCH(Qt::Key, key);
        QFETCH(bool, onA);
        Window w;
        QVERIFY(w.active);
        QTest::keyClick(w.view, key);
        QWPainter* asking = onA ? w.view->painterDeckA() : w.view->painterDeckB();
        QCOMPARE(w.view->findChildren<SaveColorPhrasing*>().size(), 1);
        QCOMPARE(asking->findChildren<SaveColorPhrasing*>().size(), 1);
    }

    // ---- the graphs' menu ----

    void aRightPressPopsTheMenuUpThere_data() {
        QTest::addColumn<bool>("onA");
        QTest::addColumn<bool>("color");
        QTest::newRow("deck A") << true << false;
        QTest::newRow("deck B") << false << false;
        QTest::newRow("deck A, colour page open") << true << true;
        QTest::newRow("deck B, colour page open") << false << true;
    }
    void aRightPressPopsTheMenuUpThere() {
        QFETCH(bool, onA);
        QFETCH(bool, color);
        Window w;
        w.view->showInput(ModelInput::TEXT_A_B);
        QCoreApplication::processEvents();
        if (color) {
            mode().modeColor_on();
        }
        QWPainter* graph = onA ? w.view->painterDeckA() : w.view->painterDeckB();
        QTest::mousePress(graph, Qt::RightButton, Qt::NoModifier, QPoint(70, 40));
        mode().modeColor_off();
        QVERIFY(w.view->contextGraph() != nullptr && w.view->contextGraph()->isVisible());
        QCOMPARE(w.view->contextGraph()->pos(), graph->mapToGlobal(QPoint(70, 40)));
    }
    void withoutAPressTheMenuStandsOnTheVisibleGraph() {
        Window w;
        w.view->showInput(ModelInput::TEXT_B);
        QCoreApplication::processEvents();
        w.view->contectGraphShow(70, 40);
        QCOMPARE(w.view->contextGraph()->pos(), w.view->painterDeckB()->mapToGlobal(QPoint(70, 40)));
    }
    void everyFurtherRightPressHasAMenuAgain_data() {
        QTest::addColumn<int>("way");
        QTest::newRow("closed") << 0;
        QTest::newRow("escape") << 1;
        QTest::newRow("chosen") << 2;
        QTest::newRow("still open") << 3;
        QTest::newRow("hidden") << 4;
    }
    void everyFurtherRightPressHasAMenuAgain() {
        QFETCH(int, way);
        Window w;
        for (int press = 0; press < 3; ++press) {
            QTest::mousePress(w.view->painterDeckA(), Qt::RightButton, Qt::NoModifier, QPoint(70, 40));
            const QPointer<QWContextGraph> menu(w.view->contextGraph());
            QVERIFY(menu != nullptr && menu->isVisible());
            QSignalSpy told(menu.data(), &QWContextGraph::s_SelectArea);
            switch (way) {
            case 0:
                menu->close();
                break;
            case 1:
                QTest::keyClick(menu, Qt::Key_Escape);
                break;
            case 2:
                QTest::keyClick(menu, Qt::Key_Down);
                QTest::keyClick(menu, Qt::Key_Right);
                QTRY_VERIFY(menu->zoomMenu()->isVisible());
                QTest::keyClick(menu->zoomMenu(), Qt::Key_Down);
                QTest::keyClick(menu->zoomMenu(), Qt::Key_Return);
                QCOMPARE(told.count(), 1);
                QVERIFY(mode().modeSelectArea());
                mode().modeSelectArea_off();
                break;
            case 4:
                menu->hide();
                break;
            default:
                break;
            }
        }
        QTRY_VERIFY(w.view->findChildren<QWContextGraph*>().size() <= 1); // none piles up
    }
    void theMenuSwitchesTheModes() {
        Window w;
        w.view->createContexteMenu();
        QWContextGraph& menu = *w.view->contextGraph();
        QVERIFY(!menu.autoresizeAction()->isChecked());
        menu.autoresizeAction()->trigger();
        QVERIFY(mode().modeAutoresize());
        menu.autoresizeAction()->trigger();
        QVERIFY(!mode().modeAutoresize());
        menu.selectionAction()->trigger();
        QVERIFY(mode().modeSelectArea());
        mode().modeSelectArea_off();
    }
    void theCheckMarkIsThatOfTheMode() {
        Window w;
        mode().modeAutoresize_on();
        w.view->contectGraphShow(70, 40);
        QVERIFY(w.view->contextGraph()->autoresizeAction()->isChecked());
        QVERIFY(mode().modeAutoresize());
        w.view->endAutoresize();
        QVERIFY(!w.view->contextGraph()->autoresizeAction()->isChecked());
        QVERIFY(!mode().modeAutoresize());
        w.view->contectGraphShow(70, 40);
        QVERIFY(!w.view->contextGraph()->autoresizeAction()->isChecked());
    }
    void theFitEndsAlsoWithoutAMenu() {
        Window w;
        mode().modeAutoresize_on();
        QVERIFY(w.view->contextGraph() == nullptr);
        w.view->endAutoresize();
        QVERIFY(!mode().modeAutoresize());
    }

    void theStartOfASessionLetsTheRecordersRun() {
        Window w;
        QSignalSpy record(w.view, &QWView::s_Record);
        w.view->playSound();
        QCOMPARE(record.count(), 1);
    }
    void theDisplayModeIsTold() {
        Window w;
        QSignalSpy told(w.view, &QWView::s_UpdateMode);
        mode().setDisplayMode(ModelDisplay::DRUMMING);
        QCOMPARE(told.count(), 1);
    }
    void anotherDisplayIsNoStart_data() {
        QTest::addColumn<bool>("running");
        QTest::newRow("during a session") << true;
        QTest::newRow("behind one") << false;
    }
    // A start would empty the curve of the take.
    void anotherDisplayIsNoStart() {
        QFETCH(bool, running);
        Window w;
        if (running) {
            mode().modeRun_on();
        }
        for (QWPainter* graph : {w.view->painterDeckA(), w.view->painterDeckB()}) {
            QSignalSpy start(graph, &QWPainter::s_InitStart);
            graph->setXRange({100000, 900000});
            for (const auto display :
                 {ModelDisplay::PHRASING, ModelDisplay::DRUMMING, ModelDisplay::NORMAL}) {
                const GraphRange y = graph->yRange();
                mode().setDisplayMode(display);
                QCOMPARE(start.count(), 0);
                QCOMPARE(graph->xRange(), (GraphRange{100000.0, 900000.0}));
                QCOMPARE(graph->yRange(), initialYRange(y, display));
            }
        }
        mode().modeRun_off();
    }
    void anotherRateChangesTheBeatAndTheRange() {
        plugIn();
        Window w;
        w.view->updateBpmSamplerate(ModelGraph::INPUT_DECKA);
        QCOMPARE(training().beatLength(ModelGraph::INPUT_DECKA), 60.0 * 44100.0 / 84.0); // 31500
        QCOMPARE(training().beatLength(ModelGraph::INPUT_DECKB), 60.0 * 48000.0 / 84.0);
        QCOMPARE(w.view->painterDeckA()->xRange().span(), 16.0 * 31500.0);
        w.view->updateAllBpmSamplerate();
        QCOMPARE(training().beatLength(ModelGraph::INPUT_DECKB), 60.0 * 96000.0 / 84.0);
    }

    void aStyleIsReadFromItsFile() {
        writeFile(pathCss(QStringLiteral("Test.css")), "QLabel { color: red; }");
        Window w;
        w.view->applyStyle(QStringLiteral("Test"));
        QCOMPARE(w.view->styleSheet(), QStringLiteral("QLabel { color: red; }"));
        w.view->applyStyle(QStringLiteral("NoSuchStyle"));
        QCOMPARE(w.view->styleSheet(), QStringLiteral("QLabel { color: red; }"));
    }
    void aNewStyleAppliesAtOnceAndAtTheNextStart() {
        writeFile(pathCss(QStringLiteral("RedGuillotine.css")), "QLabel { color: blue; }");
        Window w;
        setting().setStyle(QStringLiteral("RedGuillotine"));
        QCOMPARE(w.view->styleSheet(), QStringLiteral("QLabel { color: blue; }"));
        Window next;
        QCOMPARE(next.view->styleSheet(), QStringLiteral("QLabel { color: blue; }"));
        setting().setStyle(QStringLiteral("Gramoscope"));
    }

    void closingTheWindowEndsTheProgram() {
        Window w;
        QSignalSpy kill(w.view, &QWView::s_killApp);
        w.window.close();
        QCOMPARE(kill.count(), 1);
    }
    void quittingClosesTheView() {
        Window w;
        QSignalSpy kill(w.view, &QWView::s_killApp);
        w.view->actionQuit();
        QCOMPARE(kill.count(), 1);
    }
    void aViewWithoutAWindowEndsTheProgramToo() {
        Stores s;
        QWView view(s.mainA, s.secondaryA, s.mainB, s.secondaryB, nullptr);
        QVERIFY(view.isVisible());
        QSignalSpy kill(&view, &QWView::s_killApp);
        view.close();
        QCOMPARE(kill.count(), 1);
    }

    void withoutARecordingNothingIsWritten() {
        plugIn();
        Window w;
        addPoints(w.mainA, 10, 64.0);
        w.view->exportFile();
        QVERIFY(recordedCurves().isEmpty());
    }
    void theCurvesOfTheChosenDecksAreSaved_data() {
        QTest::addColumn<ModelInput::EnumInput>("input");
        QTest::addColumn<QStringList>("files");
        const QString a = QStringLiteral("takeA.grw");
        const QString b = QStringLiteral("takeB.grw");
        QTest::newRow("A") << ModelInput::TEXT_A << QStringList{a};
        QTest::newRow("B") << ModelInput::TEXT_B << QStringList{b};
        QTest::newRow("both") << ModelInput::TEXT_A_B << QStringList{a, b};
        QTest::newRow("not chosen yet") << ModelInput::UNDEFINED << QStringList{a, b};
    }
    void theCurvesOfTheChosenDecksAreSaved() {
        QFETCH(ModelInput::EnumInput, input);
        QFETCH(QStringList, files);
        plugIn();
        Window w;
        addPoints(w.mainA, 10, 64.0);
        addPoints(w.mainB, 20, 64.0);
        mode().modeRecorder_on();
        mode().setInputMode(input);
        w.view->exportFile();
        QCOMPARE(recordedCurves(), files);
        const QDir folder(Singleton::instance().pathFile()->pathDirectoryRecording());
        if (input != ModelInput::TEXT_B) {
            QCOMPARE(QFileInfo(folder.filePath(files.first())).size(), qint64{8 + 23 * 10});
        }
        if (input != ModelInput::TEXT_A) {
            QCOMPARE(QFileInfo(folder.filePath(files.last())).size(), qint64{8 + 23 * 20});
        }
    }
    void aChosenDeckThatDeliveredNothingLeavesNoFile() {
        plugIn();
        Window w;
        addPoints(w.mainB, 20, 64.0);
        mode().modeRecorder_on();
        mode().setInputMode(ModelInput::TEXT_A_B);
        w.view->exportFile();
        QCOMPARE(recordedCurves(), QStringList{QStringLiteral("takeB.grw")});
    }
    void aDeckWithoutADeviceLeavesNoStrayFile() {
        plugIn();
        performance().setSample(ModelGraph::INPUT_DECKB, m_noDeviceB, false);
        Window w;
        addPoints(w.mainA, 10, 64.0);
        addPoints(w.mainB, 10, 64.0);
        mode().modeRecorder_on();
        for (const QString& name : {QString(), QStringLiteral("stray.wav")}) {
            Singleton::instance().pathFile()->setFileDeckB(name);
            w.view->exportFile();
            QCOMPARE(recordedCurves(), QStringList{QStringLiteral("takeA.grw")});
        }
    }
};

GRAMO_TEST_MAIN(TestQWView)
#include "tst_qwview.moc"
