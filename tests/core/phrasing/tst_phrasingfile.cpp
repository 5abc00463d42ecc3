// The phrasing file: what stands in it, and what is read from it.

#include "module/wavedata.h"
#include "phrasing/managephrasing.h"
#include "phrasing/phrasingfile.h"
#include "state/pathfile.h"
#include "support/datafolder.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QDomDocument>
#include <QFile>
#include <QSet>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString& name) {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

// A file with these sections.
QByteArray withSections(const QByteArray& sections) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Phrasing name=\"n\" scratchTools=\"\">" + sections +
           "</Phrasing>\n";
}

std::unique_ptr<ManagePhrasing> parsed(const QByteArray& content) {
    return parsePhrasing(content, u"somewhere.grp"_s);
}

QByteArray section(const QByteArray& color, const QByteArray& start = "0", const QByteArray& end = "90") {
    return "<Section label=\"l\" color=\"" + color + "\" angleStart=\"" + start + "\" angleEnd=\"" + end +
           "\"/>";
}

// Any label that XML can carry: letters of all planes, quotes, line ends, tags.
QString randomLabel(QRandomGenerator& random) {
    static const QStringList parts = {u"a"_s, u" "_s,          u"<"_s,  u">"_s,  u"&"_s,  u"\""_s,
                                      u"'"_s, u"é"_s,          u"漢"_s, u"\n"_s, u"\t"_s, u"&lt;"_s,
                                      u"="_s, u"\U0001F3A7"_s, u","_s,  u"]]>"_s};
    QString label;
    for (int i = random.bounded(12); i > 0; --i) {
        label += parts[random.bounded(int(parts.size()))];
    }
    return label;
}

} // namespace

class tst_PhrasingFile : public QObject {
    Q_OBJECT

    QString m_data;
    QTemporaryDir m_folder;
    int m_files = 0;

    QString newFile() { return m_folder.filePath(u"%1.grp"_s.arg(++m_files)); }
    QString fileWith(const QByteArray& content, const QString& name = QString()) {
        const QString path = name.isEmpty() ? newFile() : m_folder.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("no file in the temporary folder");
        }
        return path;
    }

private Q_SLOTS:
    void initTestCase() { m_data = ownDataFolder(); }

    // ---- writing ----

    void theTextOfASmallFile() {
        const QPhrasingList areas = {area(0.0, 90.0, QColor(208, 0, 24), u"aaah \"é\""_s),
                                     area(90.0, 100.1, QColor(1, 194, 193))};
        QCOMPARE(phrasingText(areas, u"my colours"_s), uR"(<?xml version="1.0" encoding="utf-8"?>
<Phrasing name="my colours" scratchTools="">
 <Section label="aaah &quot;é&quot;" color="208,0,24" angleStart="0" angleEnd="90"/>
 <Section label="" color="1,194,193" angleStart="90" angleEnd="100.09999999999999"/>
</Phrasing>
)"_s);
    }

    void withoutAreasThereIsTheRootAlone() {
        QCOMPARE(phrasingText({}, u"Default color"_s), uR"(<?xml version="1.0" encoding="utf-8"?>
<Phrasing name="Default color" scratchTools=""/>
)"_s);
    }

    void theDeliveredDefaultIsAnEmptyPhrasingOfThatName() {
        const QString path = QStringLiteral(GRAMO_TEST_DIR "/../appdata/Color/Default color.grp");
        QCOMPARE(contentOf(path), phrasingText({}, u"Default color"_s).toUtf8());
        const auto phrasing = readGRPFile(path);
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->name(), u"Default color"_s);
        QVERIFY(phrasing->listPhrasing().isEmpty());
    }

    void anglesAreWrittenAsTheDomLibraryWritesThem() {
        QRandomGenerator random(3);
        QList<double> angles = {0.0, 360.0, -0.0, 0.1, 1.0 / 3.0, 1e-7, 1e20, -12.5, 359.99999999999994};
        for (int i = 0; i < 500; ++i) {
            angles << random.generateDouble() * 360.0;
        }
        QDomDocument document;
        for (const double angle : std::as_const(angles)) {
            QDomElement element = document.createElement(u"Section"_s);
            element.setAttribute(u"angleStart"_s, angle);
            QDomDocument written;
            QVERIFY(written.setContent(phrasingText({area(angle, 1.0)}, {})));
            QCOMPARE(written.documentElement().firstChildElement().attribute(u"angleStart"_s),
                     element.attribute(u"angleStart"_s));
        }
    }

    void anInvalidColourIsWrittenAsBlack() {
        QVERIFY(phrasingText({area(0.0, 1.0, QColor())}, {}).contains(u"color=\"0,0,0\""_s));
    }

    void transparencyIsNotKept() {
        const auto phrasing = parsed(phrasingText({area(0.0, 1.0, QColor(9, 8, 7, 100))}, {}).toUtf8());
        QCOMPARE(phrasing->listPhrasing().constFirst()->color(), QColor(9, 8, 7));
    }

    void whatXmlCantCarryIsLeftOut() {
        const QString odd = u"a\x01"_s + QChar(0) + u"\x1F\uFFFE\uFFFF"_s + u"b"_s;
        const auto phrasing = parsed(phrasingText({area(0.0, 1.0, Qt::red, odd)}, odd).toUtf8());
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->name(), u"ab"_s);
        QCOMPARE(phrasing->listPhrasing().constFirst()->label(), u"ab"_s);
    }

    // ---- saving ----

    void aSavedFileHoldsTheText() {
        const QString path = newFile();
        const QPhrasingList areas = {area(0.0, 90.0, Qt::red, u"é"_s)};
        QCOMPARE(saveGRPFile(path, areas), PhrasingSave::Saved);
        QCOMPARE(contentOf(path), phrasingText(areas, QFileInfo(path).baseName()).toUtf8());
    }

    void theNameIsTheBaseNameCutAtTheFirstPoint() {
        const QString path = m_folder.filePath(u"my.best.colours.grp"_s);
        QCOMPARE(saveGRPFile(path, {}), PhrasingSave::Saved);
        QCOMPARE(readGRPFile(path)->name(), u"my"_s);
    }

    void anExistingFileIsNotTouched() {
        const QString path = fileWith("what was there");
        QCOMPARE(saveGRPFile(path, {area(0.0, 90.0)}), PhrasingSave::Exists);
        QCOMPARE(contentOf(path), QByteArray("what was there"));
    }

    void aFolderOfThatNameCountsAsThere() {
        QVERIFY(QDir().mkpath(m_folder.filePath(u"folder.grp"_s)));
        QCOMPARE(saveGRPFile(m_folder.filePath(u"folder.grp"_s), {}), PhrasingSave::Exists);
    }

    void aLinkThatLeadsNowhereIsNotFollowed() {
        const QString link = m_folder.filePath(u"link.grp"_s);
        const QString target = m_folder.filePath(u"target.grp"_s);
        QVERIFY(QFile::link(target, link));
        QCOMPARE(saveGRPFile(link, {}), PhrasingSave::NotOpened);
        QVERIFY(!QFileInfo::exists(target));
    }

    void aFileThatCantBeMadeIsTold() {
        QCOMPARE(saveGRPFile(m_folder.filePath(u"no such folder/x.grp"_s), {}), PhrasingSave::NotOpened);
        QVERIFY(!QFileInfo::exists(m_folder.filePath(u"no such folder"_s)));
    }

    void halfAFileIsNotLeftBehind() {
        // A limit on the size of files stands for a disk that is full.
        rlimit before{};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small{50, before.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
        const QString path = newFile();
        const PhrasingSave result = saveGRPFile(path, {area(0.0, 90.0)});
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        QCOMPARE(result, PhrasingSave::NotWritten);
        QVERIFY(!QFileInfo::exists(path));
    }

    // ---- reading ----

    void aWrittenFileIsReadBack() {
        const QString path = newFile();
        const QPhrasingList areas = {area(10.5, 90.0, QColor(208, 0, 24), u"aaah"_s), area(90.0, 100.1)};
        QCOMPARE(saveGRPFile(path, areas), PhrasingSave::Saved);
        const auto phrasing = readGRPFile(path);
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->deck(), ModelGraph::NOT_USED);
        QCOMPARE(phrasing->path(), path);
        QCOMPARE(phrasing->name(), QFileInfo(path).baseName());
        QVERIFY(phrasing->scratchTools().isEmpty());
        QVERIFY(phrasing->scratchToolWav() == nullptr);
        QCOMPARE(phrasing->listPhrasing().size(), 2);
        QCOMPARE(phrasing->listPhrasing()[0]->label(), u"aaah"_s);
        QCOMPARE(phrasing->listPhrasing()[0]->color(), QColor(208, 0, 24));
        QCOMPARE(phrasing->listPhrasing()[0]->angleStart(), 10.5);
        QCOMPARE(phrasing->listPhrasing()[1]->angleEnd(), 100.1);
    }

    void randomPhrasingsComeBackAsTheyWere() {
        QRandomGenerator random(29);
        for (int round = 0; round < 300; ++round) {
            const QPhrasingList areas = randomAreas(random, 40);
            for (const QPhrasingPtr& one : areas) {
                one->setLabel(randomLabel(random));
            }
            const QString name = randomLabel(random);
            const QString text = phrasingText(areas, name);
            const auto phrasing = parsed(text.toUtf8());
            QVERIFY2(phrasing != nullptr, qPrintable(text));
            QCOMPARE(phrasing->name(), name);
            QCOMPARE(phrasing->listPhrasing().size(), areas.size());
            for (qsizetype i = 0; i < areas.size(); ++i) {
                const QPhrasing& read = *phrasing->listPhrasing()[i];
                QCOMPARE(read.label(), areas[i]->label());
                QCOMPARE(read.color(), areas[i]->color());
                QVERIFY(read.angleStart() == areas[i]->angleStart()); // to the last bit
                QVERIFY(read.angleEnd() == areas[i]->angleEnd());
            }
            QCOMPARE(phrasingText(phrasing->listPhrasing(), name), text);
        }
    }

    void readingMakesNewIds() {
        const QPhrasingPtr one = area(0.0, 90.0);
        const QByteArray content = phrasingText({one}, {}).toUtf8();
        QSet<QUuid> ids = {one->id()};
        for (int i = 0; i < 3; ++i) {
            ids << parsed(content)->listPhrasing().constFirst()->id();
        }
        QCOMPARE(ids.size(), 4);
    }

    void aRootWithoutSectionsIsAnEmptyPhrasing() {
        const auto phrasing = parsed("<Phrasing/>");
        QVERIFY(phrasing != nullptr);
        QVERIFY(phrasing->listPhrasing().isEmpty());
        QVERIFY(phrasing->name().isEmpty() && phrasing->scratchTools().isEmpty());
    }

    void theCaseOfTheExtensionCountsForNothing() {
        for (const auto& name : {u"X.GRP"_s, u"x.Grp"_s, u".grp"_s}) {
            QVERIFY(readGRPFile(fileWith("<Phrasing/>", name)) != nullptr);
        }
    }

    void areasThatTouchAreReadAndTheCutLiesInTheSecond() {
        const auto phrasing =
            parsed(withSections(section("1,1,1", "0.0", "90.0") + section("2,2,2", "90.0", "180")));
        QVERIFY(phrasing != nullptr);
        int index = -1;
        phrasing->areaAt(90.0, index);
        QCOMPARE(index, 1);
    }

    void aWholeTurnIsRead() {
        const auto phrasing = parsed(withSections(section("1,1,1", "0.0", "360.0")));
        QVERIFY(phrasing != nullptr);
        int index = -1;
        QVERIFY(phrasing->areaAt(360.0, index) == nullptr);
        QVERIFY(phrasing->areaAt(0.0, index) != nullptr);
    }

    void theOrderOfAttributesCarriesNoMeaning() {
        const auto phrasing =
            parsed("<Phrasing scratchTools=\"\" name=\"n\">"
                   "<Section angleEnd='20' color='1,2,3' angleStart='10' label='l' other='x'/></Phrasing>");
        QCOMPARE(phrasing->name(), u"n"_s);
        const QPhrasing& read = *phrasing->listPhrasing().constFirst();
        QCOMPARE(read.angleStart(), 10.0);
        QCOMPARE(read.angleEnd(), 20.0);
        QCOMPARE(read.label(), u"l"_s);
    }

    void whatIsNoSectionOfTheRootIsSkipped() {
        const auto phrasing =
            parsed(withSections("text<!-- <Section color='1'/> --><Other color='1'/><section color='1'/>"
                                "<Other><Section color='1'/></Other><?php x?><x:Section color='1'/>" +
                                section("1,2,3")));
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->listPhrasing().size(), 1);
    }

    void whatStandsInASectionIsSkipped() {
        const auto phrasing =
            parsed(withSections("<Section color='1,2,3' angleEnd='9'><Section color='1'/>text</Section>"));
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->listPhrasing().size(), 1);
    }

    void aMissingLabelIsEmpty() {
        const auto phrasing = parsed(withSections("<Section color='1,2,3' angleStart='1' angleEnd='9'/>"));
        QVERIFY(phrasing->listPhrasing().constFirst()->label().isEmpty());
    }

    void colours_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QColor>("color");
        QTest::newRow("plain") << QByteArray("1,22,255") << QColor(1, 22, 255);
        QTest::newRow("more than three parts") << QByteArray("1,2,3,4,x") << QColor(1, 2, 3);
        QTest::newRow("spaces") << QByteArray(" 1, 2 ,3") << QColor(1, 2, 3);
        QTest::newRow("a word") << QByteArray("1,red,3") << QColor(1, 0, 3);
        QTest::newRow("empty parts") << QByteArray(",,") << QColor(0, 0, 0);
        QTest::newRow("a fraction") << QByteArray("1.5,2,3") << QColor(0, 2, 3);
        QTest::newRow("no decimal number") << QByteArray("0x10,2,3") << QColor(0, 2, 3);
        QTest::newRow("beyond 32 bits") << QByteArray("99999999999,2,3") << QColor(0, 2, 3);
        QTest::newRow("too large") << QByteArray("256,2,3") << QColor();
        QTest::newRow("negative") << QByteArray("1,2,-3") << QColor();
    }
    void colours() {
        QFETCH(QByteArray, text);
        QFETCH(QColor, color);
        const auto phrasing = parsed(withSections(section(text)));
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->listPhrasing().constFirst()->color(), color);
    }

    void angles_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<double>("angle");
        QTest::newRow("whole") << QByteArray("45") << 45.0;
        QTest::newRow("fraction") << QByteArray("100.09999999999999") << 100.1;
        QTest::newRow("exponent") << QByteArray("1e1") << 10.0;
        QTest::newRow("negative") << QByteArray("-5.5") << -5.5;
        QTest::newRow("a word") << QByteArray("abc") << 0.0;
        QTest::newRow("empty") << QByteArray() << 0.0;
        QTest::newRow("another locale's") << QByteArray("45,5") << 0.0;
        QTest::newRow("not a number") << QByteArray("nan") << 0.0;
        QTest::newRow("endless") << QByteArray("inf") << 0.0;
        QTest::newRow("beyond all numbers") << QByteArray("1e999") << 0.0;
    }
    void angles() {
        QFETCH(QByteArray, text);
        QFETCH(double, angle);
        const auto phrasing = parsed(withSections(section("1,2,3", text, "200")));
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->listPhrasing().constFirst()->angleStart(), angle);
    }

    void aMissingAngleIsZero() {
        const auto phrasing = parsed(withSections("<Section color='1,2,3' angleEnd='9'/>"));
        QCOMPARE(phrasing->listPhrasing().constFirst()->angleStart(), 0.0);
        QVERIFY(parsed(withSections("<Section color='1,2,3'/>")) == nullptr); // both: no size
    }

    void anAreaThatStartsBehindItsEndIsRead() {
        const auto phrasing = parsed(withSections(section("1,2,3", "300", "60")));
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->listPhrasing().constFirst()->size(), -240.0);
    }

    // ---- the sample ----

    void theSampleThatTheFileNamesComesWithIt() {
        QByteArray wave(44 + 32, '\0');
        wave[22] = 1;  // channel
        wave[34] = 16; // bits
        wave[40] = 32; // bytes
        QFile file(pathScratchTools(u"ahh fresh.wav"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(wave) == wave.size());
        file.close();
        const auto phrasing = parsed("<Phrasing scratchTools='ahh fresh.wav'/>");
        QCOMPARE(phrasing->scratchTools(), u"ahh fresh.wav"_s);
        QVERIFY(phrasing->scratchToolWav() != nullptr);
        QCOMPARE(phrasing->scratchToolWav()->length(), std::size_t{16});
    }

    void aSampleThatIsNoFileLeavesThePhrasingValid() {
        const auto phrasing = parsed("<Phrasing scratchTools='there is none.wav'/>");
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->scratchTools(), u"there is none.wav"_s);
        QVERIFY(phrasing->scratchToolWav() == nullptr);
    }

    void theAreasLiveOnWithoutTheirPhrasing() {
        auto phrasing = parsed(withSections(section("1,2,3")));
        const QPhrasingList areas = phrasing->listPhrasing();
        phrasing.reset();
        QCOMPARE(areas.constFirst()->angleEnd(), 90.0);
    }

    // ---- refusals ----

    void anotherExtensionIsRefused() {
        for (const auto& name : {u"x.xml"_s, u"x.grp.bak"_s, u"xgrp"_s, u"grp"_s}) {
            QVERIFY(readGRPFile(fileWith("<Phrasing/>", name)) == nullptr);
        }
    }

    void whatIsNoPlainFileIsRefused() {
        QVERIFY(readGRPFile(m_folder.filePath(u"there is none.grp"_s)) == nullptr);
        QVERIFY(QDir().mkpath(m_folder.filePath(u"a folder.grp"_s)));
        QVERIFY(readGRPFile(m_folder.filePath(u"a folder.grp"_s)) == nullptr);
        const QString device = m_folder.filePath(u"device.grp"_s);
        QVERIFY(QFile::link(u"/dev/zero"_s, device));
        QVERIFY(readGRPFile(device) == nullptr);
    }

    void whatIsNoValidPhrasingIsRefused_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("blanks") << QByteArray("  \n");
        QTest::newRow("text") << QByteArray("Phrasing");
        QTest::newRow("no end tag") << QByteArray("<Phrasing>");
        QTest::newRow("wrong end tag") << QByteArray("<Phrasing></phrasing>");
        QTest::newRow("two roots") << QByteArray("<Phrasing/><Phrasing/>");
        QTest::newRow("an attribute twice") << QByteArray("<Phrasing name='a' name='b'/>");
        QTest::newRow("an unknown entity") << QByteArray("<Phrasing name='&a;'/>");
        QTest::newRow("broken behind the sections") << withSections(section("1,2,3")) + "<";
        QTest::newRow("another root") << QByteArray("<Phrasings/>");
        QTest::newRow("the root's case") << QByteArray("<phrasing/>");
        QTest::newRow("a prefixed root") << QByteArray("<p:Phrasing/>");
        QTest::newRow("the root further down") << QByteArray("<x><Phrasing/></x>");
        QTest::newRow("colour of two parts") << withSections(section("1,2"));
        QTest::newRow("empty colour") << withSections(section(""));
        QTest::newRow("no colour") << withSections("<Section angleStart='0' angleEnd='9'/>");
        QTest::newRow("a bad colour last") << withSections(section("1,2,3") + section("1,2", "90", "91"));
        QTest::newRow("size 0") << withSections(section("1,2,3", "7", "7"));
        QTest::newRow("above 360") << withSections(section("1,2,3", "0", "360.0001"));
        QTest::newRow("malformed end") << withSections(section("1,2,3", "0", "x"));
        QTest::newRow("overlap") << withSections(section("1,2,3", "0", "91") + section("1,2,3", "90", "100"));
    }
    void whatIsNoValidPhrasingIsRefused() {
        QFETCH(QByteArray, content);
        QVERIFY(parsed(content) == nullptr);
        QVERIFY(readGRPFile(fileWith(content)) == nullptr);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_PhrasingFile)
#include "tst_phrasingfile.moc"
