// gramoscope-draw as a program: what it refuses, with which message and exit code, and that nothing of the
// user's is touched.
#include "tools/drawrun.h"

#include "support/testmain.h"

#include <QDateTime>
#include <QMap>
#include <QTest>
#include <QtEndian>

#include <csignal>
#include <limits>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int usage = 2;
constexpr int file = 1;

QByteArray withCount(QByteArray curve, qint32 count) {
    qToLittleEndian(count, curve.data() + 4);
    return curve;
}

QByteArray withPoint(std::size_t index, const std::function<void(TakePoint&)>& change) {
    Points points = levelTake();
    change(points.at(index));
    return curveFile(points);
}

QByteArray changed(QByteArray bytes, qsizetype at, char value) {
    bytes[at] = value;
    return bytes;
}

QByteArray areas(const QByteArray& sections) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Phrasing name=\"a\" scratchTools=\"\">" + sections +
           "</Phrasing>";
}

const QByteArray firstArea = "<Section label=\"a\" color=\"1,2,3\" angleStart=\"0\" angleEnd=\"90\"/>";

} // namespace

class tst_DrawRefusals : public QObject {
    Q_OBJECT

    DrawRun m_run;

    // One line that begins with the program's name.
    static bool isOneLine(const Drawn& drawn) {
        return drawn.complaint.startsWith(u"gramoscope-draw: "_s) && drawn.complaint.count(u'\n') == 1 &&
               drawn.complaint.endsWith(u'\n') && drawn.said.isEmpty();
    }
    QMap<QString, QByteArray> everything() const {
        QMap<QString, QByteArray> files;
        for (const QString& name : m_run.work().entryList(QDir::Files | QDir::Hidden)) {
            files[name] = m_run.get(name);
        }
        return files;
    }

private Q_SLOTS:
    void init() {
        m_run = DrawRun();
        QVERIFY(m_run.put(u"in.grw"_s, levelTake()));
        QVERIFY(m_run.put(u"ref.grw"_s, levelTake()));
        QVERIFY(m_run.put(u"areas.grp"_s, areasFile()));
        QVERIFY(m_run.put(u"sample.wav"_s, waveFile(1000)));
        QVERIFY(m_run.put(u"out.png"_s, QByteArray("an older picture")));
    }
    void cleanup() { QCOMPARE(m_run.leftBehind(), QStringList()); }

    void wrongUsageIsRefusedAndNothingIsTouched_data() {
        QTest::addColumn<QStringList>("arguments");
        const QStringList files{u"in.grw"_s, u"out.png"_s};
        QTest::newRow("nothing") << QStringList();
        QTest::newRow("one file") << QStringList{u"in.grw"_s};
        QTest::newRow("three files") << files + QStringList{u"more.png"_s};
        QTest::newRow("a second take instead of a picture") << QStringList{u"in.grw"_s, u"ref.grw"_s};
        QTest::newRow("an empty name") << QStringList{u"in.grw"_s, QString()};
        QTest::newRow("an unknown option") << files + QStringList{u"--faster"_s};
        QTest::newRow("an option of Qt's") << files + QStringList{u"-platform"_s, u"xcb"_s};
        const auto row = [&](const QString& option, const QString& value) {
            QTest::addRow("%s %s", qPrintable(option), qPrintable(value))
                << files + QStringList{option, value};
        };
        row(u"--mode"_s, u"polar"_s);
        row(u"--shini"_s, u"stars"_s);
        row(u"--deck"_s, u"c"_s);
        row(u"--fader"_s, u"open"_s);
        row(u"--disc"_s, u"yes"_s);
        row(u"--direct"_s, u"yes"_s);
        row(u"--grid"_s, u"yes"_s);
        row(u"--logo"_s, u"yes"_s);
        row(u"--width"_s, u"0"_s);
        row(u"--bpm"_s, u"0"_s);
        row(u"--bpm"_s, u"nan"_s);
        row(u"--rate"_s, u"1"_s);
        row(u"--size"_s, u"63x500"_s);
        row(u"--size"_s, u"16385x500"_s);
        row(u"--size"_s, u"16384x16384"_s);
        row(u"--scale"_s, u"0.4"_s);
        row(u"--scale"_s, u"9"_s);
        row(u"--beats"_s, u"0"_s);
        row(u"--beats"_s, u"-4"_s);
        row(u"--beats"_s, u"nan"_s);
        row(u"--beats"_s, u"inf"_s);
        row(u"--beats"_s, u"some"_s);
        row(u"--from"_s, u"2"_s);
        row(u"--cursor"_s, u"end"_s);
        const auto stretch = [&](const char* name, const QString& from, const QString& beats) {
            QTest::newRow(name) << files + QStringList{u"--from"_s, from, u"--beats"_s, beats};
        };
        stretch("from nan", u"nan"_s, u"4"_s);
        stretch("from infinity", u"inf"_s, u"4"_s);
        stretch("from words", u"start"_s, u"4"_s);
        stretch("behind the take", u"8"_s, u"4"_s);
        stretch("before the take", u"-8"_s, u"8"_s);
        stretch("beyond the frames that a graph counts", u"-1000000"_s, u"4"_s);
        stretch("one beat in whole frames", u"0"_s, u"1.00001"_s);
    }
    void wrongUsageIsRefusedAndNothingIsTouched() {
        QFETCH(QStringList, arguments);
        const auto before = everything();
        const Drawn drawn = m_run.run(arguments);
        QVERIFY2(drawn.exitCode == usage, qPrintable(drawn.said + drawn.complaint));
        QVERIFY2(isOneLine(drawn), qPrintable(drawn.complaint));
        QCOMPARE(everything(), before);
    }

    void brokenFilesAreRefusedAndNothingIsTouched_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("named");
        const QByteArray good = curveFile(levelTake());
        constexpr double nan = std::numeric_limits<double>::quiet_NaN();
        constexpr double infinity = std::numeric_limits<double>::infinity();
        for (const char* curve : {"in.grw", "ref.grw"}) {
            const auto row = [&](const char* what, const QByteArray& content, const QString& named) {
                QTest::addRow("%s: %s", curve, what) << QString::fromLatin1(curve) << content << named;
            };
            row("an empty file", {}, u"too short"_s);
            row("a header cut short", good.first(7), u"too short"_s);
            row("a header alone", good.first(8), u"cut short"_s);
            row("cut short", good.chopped(1), u"promises 801 points and holds 800"_s);
            row("more points than it holds", withCount(good, 802), u"cut short"_s);
            row("the most points", withCount(good, 0x7fffffff), u"cut short"_s);
            row("fewer than none", withCount(good, -1), u"no curve file"_s);
            row("no points", withCount(good, 0), u"holds no curve"_s);
            row("one point", withCount(good, 1), u"holds no curve"_s);
            row("a sound", waveFile(1000), u"no curve file"_s);
            row("a text", QByteArray("a text that is no curve at all, but long"), u"no curve file"_s);
            row("no number as position", withPoint(5, [](TakePoint& p) { p.position = nan; }), u"point 6"_s);
            row("an endless position", withPoint(0, [](TakePoint& p) { p.position = infinity; }),
                u"point 1"_s);
            row("no number as angle", withPoint(800, [](TakePoint& p) { p.angle = nan; }), u"point 801"_s);
            row("an endless angle", withPoint(3, [](TakePoint& p) { p.angle = -infinity; }), u"point 4"_s);
            row("a time that falls", withPoint(7, [](TakePoint& p) { p.time = 3; }), u"point 8"_s);
            row("no time at all", curveFile(Points(9, TakePoint{4711})), u"lasts no time"_s);
        }
        const auto phrasing = [](const char* what, const QByteArray& content) {
            QTest::addRow("areas.grp: %s", what) << u"areas.grp"_s << content << u"no phrasing file"_s;
        };
        phrasing("an empty file", {});
        phrasing("another root", "<Areas/>");
        phrasing("broken", areas(firstArea).chopped(4));
        phrasing("areas that overlap", areas(firstArea + firstArea));
        phrasing("an area without a size",
                 areas("<Section label=\"a\" color=\"1,2,3\" angleStart=\"9\" angleEnd=\"9\"/>"));
        phrasing("a colour of two parts", areas("<Section color=\"1,2\" angleStart=\"0\" angleEnd=\"9\"/>"));
        phrasing("too large", areas(QByteArray(1 << 20, ' ')));
        phrasing("a curve", good);
        const auto wave = [](const char* what, const QByteArray& content, const QString& named) {
            QTest::addRow("sample.wav: %s", what) << u"sample.wav"_s << content << named;
        };
        const QByteArray sound = waveFile(1000);
        wave("an empty file", {}, u"no 16-bit PCM file"_s);
        wave("a header cut short", sound.first(30), u"no 16-bit PCM file"_s);
        wave("a header without its end", sound.first(40), u"holds no sound"_s);
        wave("a header alone", sound.first(44), u"holds no sound"_s);
        wave("24 bit", changed(sound, 34, 24), u"no 16-bit PCM file"_s);
        wave("floating point", changed(sound, 20, 3), u"no 16-bit PCM file"_s);
        wave("no channel", changed(sound, 22, 0), u"no 16-bit PCM file"_s);
        wave("no RIFF file", changed(sound, 0, 'X'), u"no 16-bit PCM file"_s);
        wave("a curve", good, u"no 16-bit PCM file"_s);
    }
    void brokenFilesAreRefusedAndNothingIsTouched() {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, named);
        QVERIFY(m_run.put(name, content));
        const auto before = everything();
        const Drawn drawn = m_run.run({u"in.grw"_s, u"out.png"_s, u"--reference"_s, u"ref.grw"_s,
                                       u"--phrasing"_s, u"areas.grp"_s, u"--wave"_s, u"sample.wav"_s});
        QVERIFY2(drawn.exitCode == file, qPrintable(drawn.said + drawn.complaint));
        QVERIFY2(isOneLine(drawn), qPrintable(drawn.complaint));
        QVERIFY2(drawn.complaint.contains(named) && drawn.complaint.contains(name),
                 qPrintable(drawn.complaint));
        QCOMPARE(everything(), before);
    }

    void whatIsNoFileIsRefused_data() {
        QTest::addColumn<QString>("option");
        for (const char* option : {"", "--reference", "--phrasing", "--wave"}) {
            QTest::newRow(option) << QString::fromLatin1(option);
        }
    }
    void whatIsNoFileIsRefused() {
        QFETCH(QString, option);
        QVERIFY(m_run.work().mkdir(u"folder.grp"_s));
        QCOMPARE(mkfifo(QFile::encodeName(m_run.path(u"pipe.grp"_s)).constData(), 0600), 0);
        QVERIFY(QFile::link(m_run.path(u"nowhere"_s), m_run.path(u"dangling.grp"_s)));
        for (const QString& name :
             {u"missing.grp"_s, u"folder.grp"_s, u"pipe.grp"_s, u"dangling.grp"_s, u"/dev/zero"_s}) {
            const Drawn drawn =
                m_run.run(option.isEmpty() ? QStringList{name, u"out.png"_s}
                                           : QStringList{u"in.grw"_s, u"out.png"_s, option, name});
            QCOMPARE(drawn.exitCode, file);
            QVERIFY2(isOneLine(drawn) && drawn.complaint.contains(u"cannot read "_s + name),
                     qPrintable(drawn.complaint));
        }
        QCOMPARE(m_run.get(u"out.png"_s), QByteArray("an older picture"));
    }

    void aPhrasingFileOfAnotherNameIsRefused() {
        QVERIFY(m_run.put(u"areas.xml"_s, areasFile()));
        const Drawn drawn = m_run.run({u"in.grw"_s, u"out.png"_s, u"--phrasing"_s, u"areas.xml"_s});
        QCOMPARE(drawn.exitCode, file);
        QVERIFY2(isOneLine(drawn) && drawn.complaint.contains(u".grp"_s), qPrintable(drawn.complaint));
    }

    void theInputsAreNoOutput_data() {
        QTest::addColumn<QString>("name");
        for (const char* name : {"in.grw", "ref.grw", "areas.grp", "sample.wav"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }
    void theInputsAreNoOutput() {
        QFETCH(QString, name);
        const auto path = [this](const QString& of) { return QFile::encodeName(m_run.path(of)); };
        QCOMPARE(link(path(name).constData(), path(u"hard.png"_s).constData()), 0);
        QCOMPARE(symlink(path(name).constData(), path(u"soft.png"_s).constData()), 0);
        const auto before = everything();
        for (const QString& output : {u"hard.png"_s, u"soft.png"_s, u"../work/hard.png"_s}) {
            const Drawn drawn = m_run.run({u"in.grw"_s, output, u"--reference"_s, u"ref.grw"_s,
                                           u"--phrasing"_s, u"areas.grp"_s, u"--wave"_s, u"sample.wav"_s});
            QCOMPARE(drawn.exitCode, file);
            QVERIFY2(isOneLine(drawn) && drawn.complaint.contains(u"the same file as "_s + name),
                     qPrintable(drawn.complaint));
        }
        QCOMPARE(everything(), before);
    }

    void aTakeThatIsCalledAPictureIsNoOutput() {
        QVERIFY(m_run.put(u"take.png"_s, levelTake()));
        const QByteArray before = m_run.get(u"take.png"_s);
        QCOMPARE(m_run.run({u"take.png"_s, u"./take.png"_s}).exitCode, file);
        QCOMPARE(m_run.get(u"take.png"_s), before);
        QCOMPARE(m_run.run({u"take.png"_s, u"out.png"_s}).exitCode, 0);
    }

    void anOutputThatCannotBeWrittenIsRefused() {
        QVERIFY(m_run.work().mkdir(u"folder.png"_s));
        QCOMPARE(mkfifo(QFile::encodeName(m_run.path(u"pipe.png"_s)).constData(), 0600), 0);
        QVERIFY(QFile::link(u"/dev/null"_s, m_run.path(u"device.png"_s)));
        const auto before = everything();
        for (const QString& output :
             {u"no/such/folder/out.png"_s, u"in.grw/out.png"_s, u"folder.png"_s, u"pipe.png"_s,
              u"device.png"_s, u"/proc/out.png"_s, QString(300, u'x') + u".png"_s}) {
            const Drawn drawn = m_run.run({u"in.grw"_s, output});
            QCOMPARE(drawn.exitCode, file);
            QVERIFY2(isOneLine(drawn) && drawn.complaint.contains(u"cannot write"_s),
                     qPrintable(drawn.complaint));
        }
        QCOMPARE(everything(), before);
        QVERIFY(!QFileInfo(u"/dev/null"_s).isFile());
    }

    void aFullDiskLeavesTheOldPictureAndNoHalfOne() {
        m_run.inChild([] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit small{8192, 8192};
            setrlimit(RLIMIT_FSIZE, &small);
        });
        const auto before = everything();
        const Drawn drawn = m_run.run({u"in.grw"_s, u"out.png"_s});
        QCOMPARE(drawn.exitCode, file);
        QVERIFY2(isOneLine(drawn) && drawn.complaint.contains(u"cannot write out.png"_s),
                 qPrintable(drawn.complaint));
        QCOMPARE(everything(), before);
        QCOMPARE(m_run.run({u"in.grw"_s, u"new.png"_s}).exitCode, file);
        QCOMPARE(everything(), before);
    }

    void aPictureTakesThePlaceOfAnOlderOne() {
        QCOMPARE(m_run.run({u"in.grw"_s, u"out.png"_s}).exitCode, 0);
        const QByteArray picture = m_run.get(u"out.png"_s);
        QVERIFY(picture.startsWith("\x89PNG"));
        // A link to one stays a link.
        QVERIFY(m_run.put(u"far.png"_s, QByteArray("old")));
        QVERIFY(QFile::link(m_run.path(u"far.png"_s), m_run.path(u"link.png"_s)));
        QCOMPARE(m_run.run({u"in.grw"_s, u"link.png"_s}).exitCode, 0);
        QVERIFY(QFileInfo(m_run.path(u"link.png"_s)).isSymLink());
        QCOMPARE(m_run.get(u"far.png"_s), picture);
        QCOMPARE(m_run.work().entryList(QDir::Files | QDir::Hidden).size(), 7);
    }

    void aFolderForTemporaryFilesIsNeeded() {
        for (const QString& folder : {m_run.path(u"nowhere"_s), m_run.path(u"in.grw"_s), u"/proc"_s}) {
            m_run.set("TMPDIR", folder);
            const Drawn drawn = m_run.run({u"in.grw"_s, u"out.png"_s});
            QCOMPARE(drawn.exitCode, file);
            QVERIFY2(isOneLine(drawn) && drawn.complaint.contains(u"temporary folder"_s),
                     qPrintable(drawn.complaint));
        }
        QCOMPARE(m_run.get(u"out.png"_s), QByteArray("an older picture"));
    }

    void whatAFullDiskLeftBehindTheLastPointIsPassedOver() {
        const QByteArray good = curveFile(levelTake());
        const Drawn whole = m_run.draw();
        QVERIFY(m_run.put(u"in.grw"_s, good + good.last(11)));
        const Drawn torn = m_run.draw();
        QCOMPARE(torn.said, whole.said);
        QCOMPARE(torn.picture, whole.picture);
    }

    void wildNumbersAreDrawnWithoutHarm() {
        const auto wild = [this](const QByteArray& content) {
            m_run.put(u"in.grw"_s, content);
            const Drawn drawn = m_run.draw({u"--mode"_s, u"normal"_s});
            return drawn.exitCode == 0 && !drawn.picture.isNull();
        };
        QVERIFY(wild(withPoint(400, [](TakePoint& p) { p.position = 1e308; })));
        QVERIFY(wild(withPoint(400, [](TakePoint& p) { p.position = -1e308; })));
        QVERIFY(wild(withPoint(400, [](TakePoint& p) { p.angle = 1e308; })));
        QVERIFY(wild(withPoint(0, [](TakePoint& p) { p.time = -2'000'000; })));
        QVERIFY(wild(withPoint(800, [](TakePoint& p) { p.time = 800'000'000; })));
    }

    void aTakeTooLongForAGraphIsRefusedButForAPart() {
        QVERIFY(m_run.put(u"in.grw"_s, withPoint(800, [](TakePoint& p) { p.time = 2'000'000'000; })));
        const Drawn whole = m_run.run({u"in.grw"_s, u"out.png"_s});
        QCOMPARE(whole.exitCode, file);
        QVERIFY2(isOneLine(whole) && whole.complaint.contains(u"longer than a graph can show"_s),
                 qPrintable(whole.complaint));
        QCOMPARE(m_run.run({u"in.grw"_s, u"out.png"_s, u"--beats"_s, u"16"_s}).exitCode, 0);
    }

    void helpAndVersionEndWithZero() {
        const Drawn help = m_run.run({u"--help"_s});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.complaint.isEmpty());
        QVERIFY(help.says(u"IN.grw OUT.png"_s) && help.says(u"--phrasing"_s));
        const Drawn version = m_run.run({u"--version"_s});
        QCOMPARE(version.exitCode, 0);
        QVERIFY(version.says(u"2.6.5-2412"_s));
    }

    void theUsersSettingsAreLeftAlone() {
        // What the program beside this one has.
        const QString config = QDir(QStringLiteral(GRAMO_BIN_DIR)).filePath(u"AppData/Input/config.ini"_s);
        const bool existed = QFile::exists(config);
        const QDateTime before = QFileInfo(config).lastModified();
        QCOMPARE(m_run.run({u"in.grw"_s, u"out.png"_s}).exitCode, 0);
        QCOMPARE(QFile::exists(config), existed);
        QCOMPARE(QFileInfo(config).lastModified(), before);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_DrawRefusals)
#include "tst_draw_refusals.moc"
