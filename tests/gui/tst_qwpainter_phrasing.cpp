// The areas of a graph and their way into a file.

#include "dialog/savecolorphrasing.h"
#include "gui/support/deckgraph.h"
#include "module/wavedata.h"
#include "painter/qwpainterwav.h"
#include "phrasing/managephrasing.h"
#include "phrasing/phrasing.h"
#include "phrasing/phrasingfile.h"
#include "phrasing/wavphrasing.h"
#include "state/pathfile.h"
#include "state/vinyl.h"
#include "support/fulldisk.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdlib>
#include <optional>

namespace {

/// What the message boxes said that `action` ran, each one closed as soon as it stands there.
struct Messages {
    QStringList texts;
    QStringList titles;
    QList<QMessageBox::StandardButtons> buttons;
    bool onTopWithoutAFrame = true;
    bool inTheMiddle = true;
    bool asTheyAre = true; ///< nothing in them counts as markup

    template <typename Action> explicit Messages(Action action) {
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr) {
                return;
            }
            texts << box->text();
            titles << box->windowTitle();
            buttons << box->standardButtons();
            asTheyAre = asTheyAre && box->textFormat() == Qt::PlainText;
            const Qt::WindowFlags wanted = Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint;
            onTopWithoutAFrame = onTopWithoutAFrame && (box->windowFlags() & wanted) == wanted;
            const QPoint off = box->geometry().center() - QApplication::primaryScreen()->geometry().center();
            inTheMiddle = inTheMiddle && std::abs(off.x()) <= 2 && std::abs(off.y()) <= 2;
            QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
        });
        look.start(5);
        action();
    }
};

const QString created = QStringLiteral("New file has been created and loaded into color tab !!");
const QString exists = QStringLiteral("File already imported !");

void giveAreas(QWPainter& graph) {
    graph.colorAreas()->setListPhrasing({area(0.0, 90.0, QColor(1, 2, 3), QStringLiteral("kick")),
                                         area(180.0, 270.5, QColor(4, 5, 6), QStringLiteral("snare"))});
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

SaveColorPhrasing* openDialog(const QWPainter& graph) {
    return graph.findChild<SaveColorPhrasing*>();
}

} // namespace

class TestQWPainterPhrasingKeys : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() {
        resetSharedState();
        for (const auto deck : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
            Singleton::instance().phrasing()->clear(deck);
            Singleton::instance().wavPhrasing()->setWav(deck, nullptr);
        }
        QDir(pathColor(QString())).removeRecursively();
        QDir().mkpath(pathColor(QString()));
    }

    void everyGraphHasAreasOfItsOwn() {
        const DeckGraph a(ModelGraph::INPUT_DECKA);
        const DeckGraph b(ModelGraph::INPUT_DECKB);
        QCOMPARE(a.graph.colorAreas()->deck(), ModelGraph::INPUT_DECKA);
        QCOMPARE(b.graph.colorAreas()->deck(), ModelGraph::INPUT_DECKB);
        QVERIFY(a.graph.colorAreas()->listPhrasing().isEmpty());
    }
    void aGraphTakesTheAreasOfItsDeck() {
        DeckGraph a(ModelGraph::INPUT_DECKA);
        DeckGraph b(ModelGraph::INPUT_DECKB);
        const QPhrasingList areas{area(10.0, 20.0)};
        Singleton::instance().phrasing()->setListPhrasing(ModelGraph::INPUT_DECKB, areas);
        QSignalSpy replaced(b.graph.colorAreas(), &ManagePhrasing::s_UpdateListPhrasing);
        a.graph.refreshListManagePhrasing();
        b.graph.refreshListManagePhrasing();
        QVERIFY(a.graph.colorAreas()->listPhrasing().isEmpty());
        QCOMPARE(b.graph.colorAreas()->listPhrasing(), areas); // the same areas, not copies
        QCOMPARE(replaced.count(), 1);
    }
    void theAreasAreLaidOverTheSample() {
        DeckGraph a(ModelGraph::INPUT_DECKA);
        Singleton::instance().wavPhrasing()->setWav(ModelGraph::INPUT_DECKA,
                                                    std::make_shared<WaveData>(48000, 2, 72000));
        Singleton::instance().phrasing()->setListPhrasing(
            ModelGraph::INPUT_DECKA, {area(0.0, 90.0, QColor(9, 8, 7)), area(180.0, 360.0)});
        a.graph.refreshListManagePhrasing();
        QCOMPARE(a.graph.wavePainter()->segments(),
                 (std::vector<WaveSegment>{{0, 18000, QColor(9, 8, 7)}, {36000, 72000, QColor(1, 2, 3)}}));
    }
    void withoutAWavTheWaveformHasNoSegments() {
        DeckGraph a(ModelGraph::INPUT_DECKA);
        WavPhrasing& wavs = *Singleton::instance().wavPhrasing();
        wavs.setWav(ModelGraph::INPUT_DECKA, std::make_shared<WaveData>(48000, 2, 72000));
        giveAreas(a.graph);
        a.graph.generateWavPhrasing();
        QCOMPARE(a.graph.wavePainter()->segments().size(), std::size_t{2});
        wavs.setWav(ModelGraph::INPUT_DECKA, nullptr);
        wavs.setWav(ModelGraph::INPUT_DECKB, std::make_shared<WaveData>(48000, 2, 72000));
        a.graph.generateWavPhrasing();
        QVERIFY(a.graph.wavePainter()->segments().empty());
        wavs.setWav(ModelGraph::INPUT_DECKA, std::make_shared<WaveData>(48000, 2, 0)); // no wave either
        a.graph.generateWavPhrasing();
        QVERIFY(a.graph.wavePainter()->segments().empty());
    }

    void aSavedFileReadsBack() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("mine.v2.grp"));
        DeckGraph a;
        giveAreas(a.graph);
        QSignalSpy made(&a.graph, &QWPainter::s_newColorFile);
        const Messages said([&] { a.graph.createGRPXML(path); });
        QCOMPARE(said.texts, QStringList{created});
        QCOMPARE(said.titles, QStringList{QString()});
        QCOMPARE(said.buttons.first(), QMessageBox::StandardButtons(QMessageBox::Yes));
        QVERIFY(said.onTopWithoutAFrame);
        QVERIFY(said.inTheMiddle);
        QCOMPARE(made.count(), 1);
        QCOMPARE(made[0][0].toString(), path);
        const auto read = readGRPFile(path);
        QVERIFY(read != nullptr);
        QCOMPARE(read->name(), QStringLiteral("mine")); // up to the first point
        QCOMPARE(read->listPhrasing().size(), 2);
        QCOMPARE(read->listPhrasing()[1]->label(), QStringLiteral("snare"));
        QCOMPARE(read->listPhrasing()[1]->color(), QColor(4, 5, 6));
        QCOMPARE(read->listPhrasing()[1]->angleEnd(), 270.5);
    }
    void aFileCanBeSavedWithoutAWord() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("ColorA"));
        DeckGraph a;
        giveAreas(a.graph);
        QSignalSpy made(&a.graph, &QWPainter::s_newColorFile);
        const Messages said([&] { a.graph.createGRPXML(path, false); });
        QVERIFY(said.texts.isEmpty());
        QCOMPARE(made.count(), 0);
        QVERIFY(contentOf(path).contains("kick"));
    }
    void savingUnderANameThatExistsShowsFileAlreadyImportedAndLeavesTheFile() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("mine.grp"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("something else");
        file.close();
        DeckGraph a;
        giveAreas(a.graph);
        QSignalSpy made(&a.graph, &QWPainter::s_newColorFile);
        for (const bool show : {true, false}) {
            const Messages said([&] { a.graph.createGRPXML(path, show); });
            QCOMPARE(said.texts, QStringList{exists});
            QCOMPARE(said.buttons.first(), QMessageBox::StandardButtons(QMessageBox::Ok)); // and no other
            QVERIFY(said.onTopWithoutAFrame);
            QVERIFY(said.inTheMiddle);
        }
        QCOMPARE(made.count(), 0);
        QCOMPARE(contentOf(path), QByteArray("something else"));
    }
    void whatCantBeWrittenIsToldWithItsPath_data() {
        QTest::addColumn<bool>("fullDisk");
        QTest::newRow("no such folder") << false;
        QTest::newRow("full disk") << true;
    }
    void whatCantBeWrittenIsToldWithItsPath() {
        QFETCH(bool, fullDisk);
        const QTemporaryDir folder;
        const QString path =
            folder.filePath(fullDisk ? QStringLiteral("mine.grp") : QStringLiteral("no/mine.grp"));
        DeckGraph a;
        giveAreas(a.graph);
        QSignalSpy made(&a.graph, &QWPainter::s_newColorFile);
        const std::optional<FullDisk> disk = fullDisk ? std::make_optional<FullDisk>(16) : std::nullopt;
        QVERIFY(!disk || disk->isSet());
        const Messages said([&] { a.graph.createGRPXML(path); });
        QCOMPARE(said.texts.size(), 1);
        QVERIFY(said.texts[0] != created);
        QVERIFY2(said.texts[0].contains(path), qPrintable(said.texts[0]));
        QVERIFY(said.onTopWithoutAFrame);
        QVERIFY(said.inTheMiddle);
        QVERIFY(said.asTheyAre);
        QCOMPARE(made.count(), 0);
        QVERIFY(!QFile::exists(path)); // nor half a file
        const Messages silent([&] { a.graph.createGRPXML(path, false); });
        QVERIFY(silent.texts.isEmpty());
    }
    void areasThatCantBeReadBackAreKeptButNotCalledLoaded() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("mine.grp"));
        DeckGraph a;
        a.graph.colorAreas()->setListPhrasing({area(0.0, 90.0), area(45.0, 180.0)});
        QSignalSpy made(&a.graph, &QWPainter::s_newColorFile);
        const Messages said([&] { a.graph.createGRPXML(path); });
        QCOMPARE(said.texts, QStringList{QStringLiteral("Non-compliant file !")});
        QCOMPARE(made.count(), 0);
        QVERIFY(contentOf(path).contains("angleEnd=\"180\""));
    }
    // The second press of the key at rest once made an area that no file gives back.
    void twoPressesAtRestMakeAFileThatReadsBack() {
        DeckGraph a;
        Singleton::instance().vinyl()->setAngle(ModelGraph::INPUT_DECKA, 90.0);
        a.graph.colorAreas()->addArea();
        a.graph.colorAreas()->addArea();
        QSignalSpy made(&a.graph, &QWPainter::s_newColorFile);
        const Messages said([&] { a.graph.createGRPXMLFromDlg(QStringLiteral("two")); });
        QCOMPARE(said.texts, QStringList{created});
        QCOMPARE(made.count(), 1);
        const auto read = readGRPFile(pathColor(QStringLiteral("two.grp")));
        QVERIFY(read != nullptr);
        QCOMPARE(read->listPhrasing().size(), 1);
    }
    void aNameFromTheDialogGoesIntoTheColourFolder() {
        DeckGraph a;
        giveAreas(a.graph);
        QSignalSpy made(&a.graph, &QWPainter::s_newColorFile);
        const Messages said([&] { a.graph.createGRPXMLFromDlg(QStringLiteral("mine")); });
        QCOMPARE(said.texts, QStringList{created});
        QCOMPARE(made[0][0].toString(), pathColor(QStringLiteral("mine.grp")));
        QVERIFY(readGRPFile(pathColor(QStringLiteral("mine.grp"))) != nullptr);
    }

    void theSaveDialogSavesUnderTheNameAndGoes_data() {
        QTest::addColumn<ModelGraph::EnumGraph>("deck");
        QTest::newRow("deck A") << ModelGraph::INPUT_DECKA;
        QTest::newRow("deck B") << ModelGraph::INPUT_DECKB;
    }
    void theSaveDialogSavesUnderTheNameAndGoes() {
        QFETCH(ModelGraph::EnumGraph, deck);
        DeckGraph d(deck);
        giveAreas(d.graph);
        const auto ask = [&] {
            if (deck == ModelGraph::INPUT_DECKA) {
                d.graph.saveToColorFileA();
            } else {
                d.graph.saveToColorFileB();
            }
        };
        ask();
        const QPointer<SaveColorPhrasing> dialog(openDialog(d.graph));
        QVERIFY(dialog != nullptr && dialog->isVisible());
        ask(); // one is enough
        QCOMPARE(d.graph.findChildren<SaveColorPhrasing*>().size(), 1);
        QTest::keyClicks(dialog->fileNameEdit(), QStringLiteral("from dialog"));
        const Messages said([&] { QTest::keyClick(dialog->fileNameEdit(), Qt::Key_Return); });
        QCOMPARE(said.texts, QStringList{created});
        QVERIFY(QFile::exists(pathColor(QStringLiteral("from dialog.grp"))));
        QTRY_VERIFY(dialog.isNull());
        ask(); // and again
        QVERIFY(openDialog(d.graph) != nullptr);
    }
    void aRejectedSaveDialogSavesNothing() {
        DeckGraph a;
        giveAreas(a.graph);
        a.graph.saveToColorFileA();
        const QPointer<SaveColorPhrasing> dialog(openDialog(a.graph));
        QTest::keyClicks(dialog->fileNameEdit(), QStringLiteral("never"));
        QTest::keyClick(dialog, Qt::Key_Escape);
        QTRY_VERIFY(dialog.isNull());
        QVERIFY(QDir(pathColor(QString())).isEmpty());
    }
    void aGraphThatGoesTakesItsDialogAlong() {
        QPointer<SaveColorPhrasing> dialog;
        {
            DeckGraph a;
            a.graph.saveToColorFileA();
            dialog = openDialog(a.graph);
            QVERIFY(dialog != nullptr);
        }
        QVERIFY(dialog.isNull());
    }
};

GRAMO_TEST_MAIN(TestQWPainterPhrasingKeys)
#include "tst_qwpainter_phrasing.moc"
