// Broken, hostile and huge phrasing files: none of them ends the process, hangs it or eats its memory.

#include "phrasing/managephrasing.h"
#include "phrasing/phrasingfile.h"
#include "support/datafolder.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <cmath>
#include <optional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<ManagePhrasing> parsed(const QByteArray& content) {
    return parsePhrasing(content, u"somewhere.grp"_s);
}

// What stands in the file, as the DOM library reads it: the second reader that ours is held against.
struct Plain {
    QString name;
    QString scratchTools;
    QPhrasingList areas;
};
std::optional<Plain> plainlyRead(const QByteArray& content) {
    QDomDocument document;
    if (!document.setContent(content) || document.documentElement().tagName() != u"Phrasing"_s) {
        return std::nullopt;
    }
    const QDomElement root = document.documentElement();
    Plain plain{root.attribute(u"name"_s), root.attribute(u"scratchTools"_s), {}};
    for (QDomNode node = root.firstChild(); !node.isNull(); node = node.nextSibling()) {
        const QDomElement element = node.toElement();
        if (element.isNull() || element.tagName() != u"Section"_s) {
            continue;
        }
        const QStringList parts = element.attribute(u"color"_s).split(u',');
        if (parts.size() < 3) {
            return std::nullopt;
        }
        int rgb[3];
        bool inRange = true;
        for (int i = 0; i < 3; ++i) {
            rgb[i] = parts[i].toInt();
            inRange = inRange && rgb[i] >= 0 && rgb[i] <= 255;
        }
        const auto angle = [&](const QString& key) {
            bool ok = false;
            const double value = element.attribute(key).toDouble(&ok);
            return ok && std::isfinite(value) ? value : 0.0;
        };
        plain.areas << area(angle(u"angleStart"_s), angle(u"angleEnd"_s),
                            inRange ? QColor(rgb[0], rgb[1], rgb[2]) : QColor(),
                            element.attribute(u"label"_s));
    }
    ManagePhrasing judge(ModelGraph::NOT_USED);
    judge.setListPhrasing(plain.areas);
    return judge.isValid() ? std::optional(plain) : std::nullopt;
}

const QByteArray wholeFile = R"(<?xml version="1.0" encoding="utf-8"?>
<!-- by hand -->
<Phrasing name="caf&#xe9; &amp; co" scratchTools="ahh.wav">
 <Section label="first &lt;b>" color="208,0,24" angleStart="0" angleEnd="90.5"/>
 <Section label="zwéi" color="1,194,193" angleStart="90.5" angleEnd="180"></Section>
 text <Other/><![CDATA[ <Section/> ]]>
 <Section label="" color="300,0,0" angleStart="300" angleEnd="200"/>
</Phrasing>
)";

void checkAgainstThePlainReader(const QByteArray& content) {
    const auto phrasing = parsed(content);
    const auto plain = plainlyRead(content);
    static const QRegularExpression declaration(u"^<\\?xml[^>]*encoding=\"(?!utf-8\")"_s,
                                                QRegularExpression::CaseInsensitiveOption);
    if (content.contains('\0') || content.contains("<!DOCTYPE") ||
        declaration.match(QString::fromLatin1(content)).hasMatch()) {
        QVERIFY(phrasing == nullptr);
        return;
    }
    QVERIFY2((phrasing != nullptr) == plain.has_value(), content.constData());
    if (phrasing == nullptr) {
        return;
    }
    QCOMPARE(phrasing->name(), plain->name);
    QCOMPARE(phrasing->scratchTools(), plain->scratchTools);
    QCOMPARE(phrasing->listPhrasing().size(), plain->areas.size());
    for (qsizetype i = 0; i < plain->areas.size(); ++i) {
        const QPhrasing& read = *phrasing->listPhrasing()[i];
        const QPhrasing& expected = *plain->areas[i];
        QCOMPARE(read.label(), expected.label());
        QCOMPARE(read.color(), expected.color());
        QCOMPARE(read.angleStart(), expected.angleStart());
        QCOMPARE(read.angleEnd(), expected.angleEnd());
    }
}

// A number that the system keeps about this process, from a line that starts with `name`.
double kept(const QString& file, const QByteArray& name) {
    QFile table(file);
    if (table.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : table.readAll().split('\n')) {
            if (line.startsWith(name)) {
                return line.mid(name.size()).simplified().split(' ').value(0).toDouble();
            }
        }
    }
    qFatal("no %s", name.constData());
    return 0.0;
}

/// What happens from its making on: the most memory in use above that at the start, and bytes read.
class Cost {
public:
    Cost() {
        QFile peak(u"/proc/self/clear_refs"_s);
        if (!peak.open(QIODevice::WriteOnly) || peak.write("5") != 1) {
            qFatal("the peak can't be set back");
        }
        peak.close();
        m_memory = kept(u"/proc/self/status"_s, "VmRSS:");
        m_read = kept(u"/proc/self/io"_s, "rchar:");
    }
    double megabytes() const { return (kept(u"/proc/self/status"_s, "VmHWM:") - m_memory) / 1024.0; }
    double megabytesRead() const { return (kept(u"/proc/self/io"_s, "rchar:") - m_read) / 1e6; }

private:
    double m_memory = 0.0; // kB
    double m_read = 0.0;
};

// As many of `piece` as fit into the largest file, between `head` and `tail`.
QByteArray filled(const QByteArray& head, const QByteArray& piece, const QByteArray& tail) {
    return head + piece.repeated((largestPhrasingFile - head.size() - tail.size()) / piece.size()) + tail;
}

} // namespace

class tst_PhrasingFileBroken : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString fileWith(const QByteArray& content) {
        const QString path = m_folder.filePath(u"x.grp"_s);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("no file in the temporary folder");
        }
        return path;
    }

private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }

    void theWholeFileIsRead() {
        const auto phrasing = parsed(wholeFile);
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->name(), u"café & co"_s);
        QCOMPARE(phrasing->listPhrasing().size(), 3);
        checkAgainstThePlainReader(wholeFile);
    }

    void aFileCutAtAnyByteIsRefused() {
        const qsizetype complete = wholeFile.lastIndexOf('>');
        for (qsizetype length = 0; length <= wholeFile.size(); ++length) {
            const QByteArray cut = wholeFile.left(length);
            QCOMPARE(parsed(cut) != nullptr, length > complete);
            checkAgainstThePlainReader(cut);
            if (QTest::currentTestFailed()) {
                return;
            }
        }
    }

    void anyFlippedBitIsJudgedAsThePlainReaderJudgesIt() {
        int read = 0;
        for (qsizetype place = 0; place < wholeFile.size(); ++place) {
            for (int bit = 0; bit < 8; ++bit) {
                QByteArray flipped = wholeFile;
                flipped[place] = char(flipped[place] ^ (1 << bit));
                checkAgainstThePlainReader(flipped);
                if (QTest::currentTestFailed()) {
                    return;
                }
                read += parsed(flipped) != nullptr ? 1 : 0;
            }
        }
        QVERIFY(read > 100); // labels, digits, blanks
    }

    void manyRandomChangesAreJudgedAsThePlainReaderJudgesThem() {
        QRandomGenerator random(31);
        static const QByteArrayList pieces = {
            "<",   ">",    "/>",  "\"",        "&",    "&#",   ";",
            "]]>", "<!--", "-->", "<![CDATA[", "<?",   "=",    "\0",
            ",",   "-",    "e",   "99",        "\xff", "\xc3", "<Section color=''/>"};
        for (int round = 0; round < 3000; ++round) {
            QByteArray content = wholeFile;
            for (int i = 1 + random.bounded(3); i > 0; --i) {
                const int place = random.bounded(int(content.size()));
                content.replace(place, random.bounded(4), pieces[random.bounded(int(pieces.size()))]);
            }
            checkAgainstThePlainReader(content);
            if (QTest::currentTestFailed()) {
                return;
            }
        }
    }

    void randomBytesAreReadWithoutHarm() {
        QRandomGenerator random(37);
        for (int round = 0; round < 300; ++round) {
            QByteArray bytes(random.bounded(300), '\0');
            for (char& byte : bytes) {
                byte = char(random.bounded(256));
            }
            QVERIFY(parsed(bytes) == nullptr);
        }
    }

    // ---- size ----

    void aFileOfTheLargestSizeIsReadAndOneByteMoreIsNot() {
        QByteArray content = filled("<Phrasing>", " ", "</Phrasing>");
        QCOMPARE(content.size(), largestPhrasingFile);
        QVERIFY(readGRPFile(fileWith(content)) != nullptr);
        QVERIFY(readGRPFile(fileWith(content + "\n")) == nullptr);
    }

    void tenThousandAreasAreRead() {
        QPhrasingList areas;
        for (int i = 0; i < 10000; ++i) {
            areas << area(i * 0.036, (i + 1) * 0.036);
        }
        const QByteArray content = phrasingText(areas, u"many"_s).toUtf8();
        QVERIFY(content.size() <= largestPhrasingFile);
        const auto phrasing = readGRPFile(fileWith(content));
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->listPhrasing().size(), 10000);
    }

    void theCostOfAReadIsSeen() {
        const QString path = fileWith(QByteArray(30'000'000, 'x'));
        const Cost cost;
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll().size(), 30'000'000); // and it is gone again
        QVERIFY(cost.megabytes() > 28.0);
        QVERIFY(cost.megabytesRead() >= 30.0);
    }

    void aHundredMegabytesAreRefusedUnread_data() {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QByteArray>("piece");
        QTest::addColumn<QByteArray>("tail");
        // A file full of holes takes no room on the disk, but would in memory.
        QTest::newRow("holes") << QByteArray("<Phrasing>") << QByteArray() << QByteArray();
        QTest::newRow("well-formed") << QByteArray("<?xml version=\"1.0\"?>\n<Phrasing>\n")
                                     << QByteArray("<Section color='1,2,3' angleStart='9'/>\n").repeated(4096)
                                     << QByteArray("</Phrasing>\n");
    }
    void aHundredMegabytesAreRefusedUnread() {
        QFETCH(QByteArray, head);
        QFETCH(QByteArray, piece);
        QFETCH(QByteArray, tail);
        constexpr qint64 size = 100'000'000;
        const QString path = m_folder.filePath(u"huge.grp"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(head) == head.size());
        while (!piece.isEmpty() && file.size() < size) {
            QCOMPARE(file.write(piece), piece.size());
        }
        QCOMPARE(file.write(tail), tail.size());
        QVERIFY(!piece.isEmpty() || file.resize(size));
        file.close();
        QVERIFY(QFileInfo(path).size() >= size);
        const Cost cost;
        QVERIFY(readGRPFile(path) == nullptr);
        QVERIFY2(cost.megabytes() < 5.0, qPrintable(QString::number(cost.megabytes())));
        QVERIFY2(cost.megabytesRead() < 0.1, qPrintable(QString::number(cost.megabytesRead())));
        QVERIFY(QFile::remove(path));
    }

    void aPipeIsRefusedUnopened() {
        const QString path = m_folder.filePath(u"pipe.grp"_s);
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        QVERIFY(readGRPFile(path) == nullptr); // opening it would wait for a writer
    }

    // ---- what would take long or much memory ----

    void entitiesThatExpandAreRefusedWithTheirDeclaration_data() {
        QTest::addColumn<QByteArray>("entities");
        QTest::addColumn<QByteArray>("use");
        // Each level ten times the one below it: three gigabytes.
        QByteArray laughs = "<!ENTITY lol \"lol\">\n";
        QByteArray previous = "lol";
        for (int i = 1; i < 10; ++i) {
            const QByteArray name = "lol" + QByteArray::number(i);
            laughs += "<!ENTITY " + name + " \"" + ("&" + previous + ";").repeated(10) + "\">\n";
            previous = name;
        }
        QTest::newRow("ten times ten, in an attribute") << laughs << QByteArray("name=\"&lol9;\">");
        QTest::newRow("ten times ten, in a text") << laughs << QByteArray(">&lol9;");
        // Without levels: half a megabyte, a hundred thousand times.
        QTest::newRow("a long one, often") << "<!ENTITY a \"" + QByteArray(500'000, 'a') + "\">"
                                           << ">" + QByteArray("&a;").repeated(100'000);
        QTest::newRow("one that holds itself")
            << QByteArray("<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">") << QByteArray(">&a;");
    }
    void entitiesThatExpandAreRefusedWithTheirDeclaration() {
        QFETCH(QByteArray, entities);
        QFETCH(QByteArray, use);
        const QByteArray content =
            "<?xml version=\"1.0\"?>\n<!DOCTYPE lolz [\n" + entities + "]>\n<Phrasing " + use + "</Phrasing>";
        QVERIFY(content.size() <= largestPhrasingFile);
        const QString path = fileWith(content);
        const Cost cost;
        QVERIFY(parsed(content) == nullptr);
        QVERIFY(readGRPFile(path) == nullptr);
        QVERIFY2(cost.megabytes() < 5.0, qPrintable(QString::number(cost.megabytes())));
    }

    void everyDocumentTypeIsRefused_data() {
        QTest::addColumn<QByteArray>("type");
        QTest::newRow("empty") << QByteArray("<!DOCTYPE Phrasing>");
        QTest::newRow("a file") << QByteArray("<!DOCTYPE Phrasing SYSTEM \"file:///etc/passwd\">");
        QTest::newRow("an entity") << QByteArray("<!DOCTYPE Phrasing [<!ENTITY a \"b\">]>");
        QTest::newRow("a parameter entity")
            << QByteArray("<!DOCTYPE Phrasing [<!ENTITY % a SYSTEM \"file:///etc/passwd\"> %a;]>");
    }
    void everyDocumentTypeIsRefused() {
        QFETCH(QByteArray, type);
        for (const QByteArray& head :
             {QByteArray(), QByteArray("<?xml version=\"1.0\"?>\n"), QByteArray("\xEF\xBB\xBF")}) {
            QVERIFY(parsed(head + "<Phrasing name='n'/>") != nullptr);
            QVERIFY(parsed(head + type + "<Phrasing name='n'/>") == nullptr);
        }
    }

    void anotherEncodingHidesNothing() {
        const QString text = u"<?xml version=\"1.0\" encoding=\"utf-16\"?><!DOCTYPE a><Phrasing/>"_s;
        const QByteArray wide(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
        QVERIFY(parsed(wide) == nullptr);
        QVERIFY(parsed("\xFF\xFE" + wide) == nullptr);
        QVERIFY(parsed("<?xml version=\"1.0\" encoding=\"utf-16\"?><Phrasing/>") == nullptr);
    }

    void onlyUtf8IsReadWhateverTheLibraryKnows_data() {
        QTest::addColumn<QByteArray>("encoding");
        QTest::addColumn<QByteArray>("rest");
        QTest::addColumn<bool>("read");
        QTest::newRow("utf-8") << QByteArray("utf-8") << QByteArray("<Phrasing/>") << true;
        QTest::newRow("UTF-8") << QByteArray("UTF-8") << QByteArray("<Phrasing/>") << true;
        QTest::newRow("iso-8859-1") << QByteArray("iso-8859-1") << QByteArray("<Phrasing/>") << false;
        QTest::newRow("utf-7") << QByteArray("utf-7") << QByteArray("+ADw-Phrasing/+AD4-") << false;
        QTest::newRow("utf-7 with a document type")
            << QByteArray("utf-7") << QByteArray("+ADwAIQ-DOCTYPE a+AD4APA-Phrasing/+AD4-") << false;
        QTest::newRow("ebcdic") << QByteArray("cp870")
                                << QByteArray("\x4C\xD7\x88\x99\x81\xA2\x89\x95\x87\x61\x6E") << false;
        QTest::newRow("no such") << QByteArray("x") << QByteArray("<Phrasing/>") << false;
    }
    void onlyUtf8IsReadWhateverTheLibraryKnows() {
        QFETCH(QByteArray, encoding);
        QFETCH(QByteArray, rest);
        QFETCH(bool, read);
        QCOMPARE(parsed("<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>" + rest) != nullptr, read);
    }

    void aFloodOfAttributesIsRefusedUnread() {
        QByteArray flood = "<Phrasing";
        for (int i = 0; flood.size() < largestPhrasingFile - 20; ++i) {
            flood += " a" + QByteArray::number(i, 36) + "=\">\"";
        }
        QVERIFY(parsed(flood + "/>") == nullptr);
    }

    void aFewHundredEqualSignsInOneElementAreFine() {
        const QByteArray signs(200, '=');
        const QByteArray rules = (QByteArray(78, '=') + '\n').repeated(20);
        QVERIFY(parsed("<!--\n" + rules + "-->\n<Phrasing name='x'><!-- " + rules + " --></Phrasing>") !=
                nullptr);
        QVERIFY(parsed("<Phrasing name='x' " + QByteArray("a = '' ").repeated(300) + "/>") == nullptr);
        const auto phrasing = parsed("<!-- " + signs + " --><Phrasing name='" + signs + "'/>");
        QVERIFY(phrasing != nullptr);
        QCOMPARE(phrasing->name(), QString::fromLatin1(signs));
    }

    void elementsNestedAsDeepAsAFileAllowsAreReadWithoutHarm() {
        QVERIFY(parsed(filled("<Phrasing>", "<a>", "")) == nullptr);
        const qsizetype depth = (largestPhrasingFile - 30) / 7;
        QVERIFY(parsed("<Phrasing>" + QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth) +
                       "</Phrasing>") != nullptr);
    }

    void asManySectionsAsAFileAllowsAreJudged() {
        const auto many = [](const QByteArray& piece) {
            return parsed(filled("<Phrasing>", piece, "</Phrasing>"));
        };
        QVERIFY(many("<Section color=',,'/>") == nullptr);
        QVERIFY(many("<Section color=',,' angleEnd='9'/>") == nullptr); // all of them overlap
        const auto reversed = many("<Section color=',,' angleStart='9'/>");
        QVERIFY(reversed != nullptr);
        QVERIFY(reversed->listPhrasing().size() > 20000);
    }

    void oneTextAsLongAsAFileAllowsIsRead() {
        const auto phrasing = parsed(filled("<Phrasing name='", "x", "'/>"));
        QVERIFY(phrasing != nullptr);
        QVERIFY(phrasing->name().size() > 1'000'000);
        QVERIFY(parsed(filled("<Phrasing name='", "&amp;", "'/>")) != nullptr);
        QVERIFY(parsed(filled("<Phrasing><Section angleEnd='9' color='", ",", "'/></Phrasing>")) != nullptr);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_PhrasingFileBroken)
#include "tst_phrasingfile_broken.moc"
