#include "state/pathfile.h"
#include "support/datafolder.h"
#include "support/fulldisk.h"
#include "support/testmain.h"
#include "support/unprivileged.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

bool put(const QString& name, const QByteArray& content) {
    QDir().mkpath(QFileInfo(name).path());
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray got(const QString& name) {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

QString clean(const QString& path) {
    return QDir::cleanPath(path);
}

const QString asksForTheDataFolder = u"--data-folder"_s;
const QString isCalled = u"--called"_s; // a name of the application follows
const QString onlyReads = u"--only-reads"_s;
const QString unprivileged = u"--unprivileged"_s; // may write only where everybody may
const QString fullDisk = u"--full-disk"_s;

// Runs a copy of this program, which says where it finds its data; `given` is where it is told to have it, or
// what else is special about it.
QString dataFolderOf(const QString& program, const QString& workingDirectory, const QString& userData,
                     const QStringList& given = {}) {
    QProcess process;
    if (given.contains(unprivileged)) {
        runUnprivileged(process, [full = given.contains(fullDisk)] {
            if (full) {
                static const FullDisk disk(16);
            }
        });
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_s, userData);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workingDirectory);
    process.start(program, QStringList{u"tst_pathfile"_s, asksForTheDataFolder} + given);
    process.waitForFinished();
    return clean(QString::fromUtf8(process.readAllStandardOutput()));
}

} // namespace

class tst_PathFile : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QString m_data;

private Q_SLOTS:
    void initTestCase() { m_data = ownDataFolder(); }

    void everyPathFunctionHasItsFolder() {
        const QString name = u"a name.x"_s;
        QCOMPARE(pathData(name), m_data + u"/a name.x"_s);
        QCOMPARE(pathInput(name), m_data + u"/Input/a name.x"_s);
        QCOMPARE(pathLooper(name), m_data + u"/Looper/a name.x"_s);
        QCOMPARE(pathColor(name), m_data + u"/Color/a name.x"_s);
        QCOMPARE(pathExport(name), m_data + u"/Export/a name.x"_s);
        QCOMPARE(pathRecording(name), m_data + u"/Recording/a name.x"_s);
        QCOMPARE(pathScratchTools(name), m_data + u"/Scratch Tools/a name.x"_s);
        QCOMPARE(pathCss(name), m_data + u"/Css/a name.x"_s);
    }

    void noPathContainsABackslash() {
        for (const auto path :
             {&pathData, &pathInput, &pathLooper, &pathColor, &pathExport, &pathRecording}) {
            QVERIFY(!path(u"x"_s).contains(u'\\'));
        }
    }

    void aPathIsGivenWhetherOrNotItExists() {
        QCOMPARE(pathLooper(u"no such folder/x"_s), m_data + u"/Looper/no such folder/x"_s);
        QVERIFY(!QFileInfo::exists(pathLooper(u"no such folder"_s)));
    }

    void resourcesHaveTheirPrefixes() {
        QCOMPARE(pathImage(u"x.png"_s), u":/Image/gui/image/x.png"_s);
        QCOMPARE(pathTranslation(u"x.qm"_s), u":/translations/x.qm"_s);
        QCOMPARE(pathGenerate(u"x"_s), u":/generate/x"_s);
        QCOMPARE(pathSound(u"beep1.wav"_s), u"qrc:/Fx/core/fx/beep1.wav"_s);
        QVERIFY(pathIcon(u"there is none.png"_s).isNull());
    }

    void whatOpensFilesTakesTheOtherFormOfAResourceName() {
        QCOMPARE(resourceFile(pathSound(u"beep1.wav"_s)), u":/Fx/core/fx/beep1.wav"_s);
        QCOMPARE(resourceFile(u":/generate/x"_s), u":/generate/x"_s);
        QCOMPARE(resourceFile(u"/home/qrc:/x.wav"_s), u"/home/qrc:/x.wav"_s);
        QCOMPARE(resourceFile(QString()), QString());
    }

    // ---- where the data lie ----

    void theDataLieBesideTheExecutableWhateverTheWorkingDirectory() {
        const QString program = m_folder.filePath(u"here/program"_s);
        QVERIFY(QDir().mkpath(m_folder.filePath(u"here"_s)));
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
        const QString expected = QFileInfo(m_folder.filePath(u"here"_s)).canonicalFilePath() + u"/AppData"_s;
        const QString userData = m_folder.filePath(u"user"_s);
        QCOMPARE(dataFolderOf(program, u"/"_s, userData), expected);
        QCOMPARE(dataFolderOf(program, m_folder.path(), userData), expected);
        QCOMPARE(dataFolderOf(program, QDir::tempPath(), userData), expected);
        QVERIFY(!QFileInfo::exists(userData));
    }

    void whereTheExecutablesFolderCantBeWrittenTheUsersDataLocationIsUsed() {
        const QString program = m_folder.filePath(u"there/program"_s);
        QVERIFY(QDir().mkpath(m_folder.filePath(u"there"_s)));
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
        QVERIFY(put(m_folder.filePath(u"there/AppData"_s), "a file in the way"));
        const QString userData = m_folder.filePath(u"user2"_s);
        const QString folder = dataFolderOf(program, u"/"_s, userData);
        QVERIFY2(folder.startsWith(userData + u'/') && folder.endsWith(u"/AppData"_s), qPrintable(folder));
        QVERIFY(QFileInfo(folder).isDir());
    }

    void theUsersDataLocationIsTheSameForTheProgramAndItsTools() {
        const QString program = m_folder.filePath(u"same/program"_s);
        QVERIFY(QDir().mkpath(m_folder.filePath(u"same"_s)));
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
        QVERIFY(put(m_folder.filePath(u"same/AppData"_s), "a file in the way"));
        const QString userData = m_folder.filePath(u"user4"_s);
        const QString expected = userData + u"/Gramo Scope/AppData"_s;
        for (const QString& name : {u"Gramo Works / Scope V2.6.5-2412"_s, u"gramoscope-devices"_s, u""_s}) {
            QCOMPARE(dataFolderOf(program, u"/"_s, userData, {isCalled, name}), expected);
            QCOMPARE(dataFolderOf(program, u"/"_s, userData, {isCalled, name, onlyReads}), expected);
        }
        QCOMPARE(QDir(userData).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList(u"Gramo Scope"_s));
    }

    void whoOnlyReadsMakesNoFolder() {
        const QString program = m_folder.filePath(u"reader/program"_s);
        const QString beside = m_folder.filePath(u"reader/AppData"_s);
        const QString userData = m_folder.filePath(u"user5"_s);
        QVERIFY(QDir().mkpath(m_folder.filePath(u"reader"_s)));
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
        QVERIFY(dataFolderOf(program, u"/"_s, userData, {onlyReads}).endsWith(u"/reader/AppData"_s));
        QVERIFY(!QFileInfo::exists(beside));
        QVERIFY(put(beside, "a file in the way"));
        dataFolderOf(program, u"/"_s, userData, {onlyReads});
        QVERIFY(!QFileInfo::exists(userData));
    }

    void whoOnlyReadsFindsWhatTheProgramWouldUse() {
        const QString fallback = m_folder.filePath(u"g/user/AppData"_s);
        // A folder that can be written, and one that isn't there but can be made.
        const QString beside = m_folder.filePath(u"g/AppData"_s);
        QCOMPARE(presentDataFolder(beside, fallback), beside);
        QVERIFY(!QFileInfo::exists(beside));
        QVERIFY(QDir().mkpath(beside));
        QCOMPARE(presentDataFolder(beside, fallback), beside);
        // One that can't be had: the fallback, once it is filled.
        QVERIFY(put(m_folder.filePath(u"g/plain"_s), "x"));
        const QString nowhere = m_folder.filePath(u"g/plain/AppData"_s);
        QCOMPARE(presentDataFolder(nowhere, fallback), nowhere);
        QVERIFY(!QFileInfo::exists(fallback));
        QCOMPARE(chooseDataFolder(nowhere, fallback), fallback);
        QCOMPARE(presentDataFolder(nowhere, fallback), fallback);
        QCOMPARE(presentDataFolder(beside, fallback), beside);
        // A link that leads nowhere can't be made a folder of.
        QVERIFY(QFile::link(m_folder.filePath(u"g/gone"_s), m_folder.filePath(u"g/link"_s)));
        QCOMPARE(presentDataFolder(m_folder.filePath(u"g/link"_s), fallback), fallback);
    }

    void whatCantBeFilledIsntChosen_data() {
        QTest::addColumn<bool>("full");
        QTest::newRow("the user's data location can't be written") << false;
        QTest::newRow("it is full") << true;
    }
    void whatCantBeFilledIsntChosen() {
        QFETCH(bool, full);
        // A delivered folder that the program can't write, in a place that it can reach.
        QTemporaryDir place;
        const QString program = place.filePath(u"program"_s);
        const QString delivered = place.filePath(u"AppData"_s);
        const QString userData = place.filePath(u"user"_s);
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
        QVERIFY(put(delivered + u"/Css/Gramoscope.css"_s, QByteArray(1000, 'x')));
        QVERIFY(QDir().mkpath(userData));
        const auto readable = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
        const auto writable = readable | QFile::WriteOwner | QFile::WriteOther;
        QVERIFY(QFile::setPermissions(place.path(), writable));
        QVERIFY(QFile::setPermissions(delivered, readable));
        QVERIFY(QFile::setPermissions(userData, full ? writable : readable));
        const auto removable = qScopeGuard([&] {
            for (const QString& folder : {delivered, userData}) {
                QFile::setPermissions(folder, writable);
            }
        });
        const QStringList special =
            QStringList(unprivileged) + (full ? QStringList(fullDisk) : QStringList());
        const QString canonical = QFileInfo(delivered).canonicalFilePath();
        QCOMPARE(dataFolderOf(program, u"/"_s, userData, special), canonical);
        QVERIFY(!QFileInfo::exists(userData + u"/Gramo Scope/AppData"_s));
        QVERIFY(!QFileInfo::exists(userData + u"/Gramo Scope/AppData.part"_s)); // no room is left taken
        // With room there it is the one after all.
        QVERIFY(QFile::setPermissions(userData, writable));
        const QString filled = dataFolderOf(program, u"/"_s, userData, {unprivileged});
        QCOMPARE(filled, userData + u"/Gramo Scope/AppData"_s);
        QCOMPARE(QFileInfo(filled + u"/Css/Gramoscope.css"_s).size(), qint64{1000});
    }

    void aFileWhereTheFallbackBelongsIsntChosen() {
        QVERIFY(put(m_folder.filePath(u"h/plain"_s), "x"));
        QVERIFY(put(m_folder.filePath(u"h/user"_s), "in the way"));
        const QString nowhere = m_folder.filePath(u"h/plain/AppData"_s);
        QCOMPARE(chooseDataFolder(nowhere, m_folder.filePath(u"h/user"_s)), nowhere);
        QCOMPARE(got(m_folder.filePath(u"h/user"_s)), QByteArray("in the way"));
    }

    void aFolderThatIsGivenLeavesTheOthersAlone() {
        const QString program = m_folder.filePath(u"given/program"_s);
        QVERIFY(QDir().mkpath(m_folder.filePath(u"given"_s)));
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
        const QString userData = m_folder.filePath(u"user3"_s);
        const QString own = m_folder.filePath(u"own"_s);
        QCOMPARE(dataFolderOf(program, m_folder.path(), userData, {own}), own);
        QVERIFY(!QFileInfo::exists(m_folder.filePath(u"given/AppData"_s)));
        QVERIFY(!QFileInfo::exists(m_folder.filePath(u"AppData"_s)));
        QVERIFY(!QFileInfo::exists(userData));
    }

    void aFolderThatCanBeWrittenIsTheOne() {
        const QString beside = m_folder.filePath(u"a/AppData"_s);
        const QString fallback = m_folder.filePath(u"a/user"_s);
        QCOMPARE(chooseDataFolder(beside, fallback), beside); // made here
        QVERIFY(QFileInfo(beside).isDir());
        QCOMPARE(chooseDataFolder(beside, fallback), beside); // there already
        QVERIFY(!QFileInfo::exists(fallback));
    }

    void aFolderThatCantBeMadeGivesTheFallback() {
        QVERIFY(put(m_folder.filePath(u"b/plain"_s), "x"));
        const QString fallback = m_folder.filePath(u"b/user/AppData"_s);
        QCOMPARE(chooseDataFolder(m_folder.filePath(u"b/plain/AppData"_s), fallback), fallback);
        QVERIFY(QFileInfo(fallback).isDir());
    }

    void whatTheDeliveredFolderHoldsIsCopiedOnceAndNeverAgain() {
        const QString beside = m_folder.filePath(u"d/AppData"_s);
        const QString fallback = m_folder.filePath(u"d/user/AppData"_s);
        QVERIFY(put(beside + u"/Input/MixerWindows.ini"_s, "mixers"));
        QVERIFY(put(beside + u"/Css/Gramoscope.css"_s, "style"));
        QVERIFY(put(beside + u"/Looper/K4rTo/.hidden"_s, "hidden"));
        QVERIFY(QDir().mkpath(beside + u"/Recording"_s));
        fillDataFolder(beside, fallback);
        QCOMPARE(got(fallback + u"/Input/MixerWindows.ini"_s), QByteArray("mixers"));
        QCOMPARE(got(fallback + u"/Css/Gramoscope.css"_s), QByteArray("style"));
        QCOMPARE(got(fallback + u"/Looper/K4rTo/.hidden"_s), QByteArray("hidden"));
        QVERIFY(QFileInfo(fallback + u"/Recording"_s).isDir());

        QVERIFY(put(fallback + u"/Css/Gramoscope.css"_s, "the user's own"));
        QVERIFY(QFile::remove(fallback + u"/Input/MixerWindows.ini"_s));
        QVERIFY(put(beside + u"/Css/Later.css"_s, "later"));
        fillDataFolder(beside, fallback);
        QCOMPARE(got(fallback + u"/Css/Gramoscope.css"_s), QByteArray("the user's own"));
        QVERIFY(!QFileInfo::exists(fallback + u"/Input/MixerWindows.ini"_s));
        QVERIFY(!QFileInfo::exists(fallback + u"/Css/Later.css"_s));
    }

    void aCopyThatWasCutShortIsMadeAgain() {
        const QString beside = m_folder.filePath(u"e/AppData"_s);
        const QString fallback = m_folder.filePath(u"e/user/AppData"_s);
        QVERIFY(put(beside + u"/Css/a.css"_s, "a"));
        QVERIFY(put(beside + u"/Css/b.css"_s, "b"));
        QVERIFY(put(fallback + u".part/Css/a.css"_s, "half"));
        fillDataFolder(beside, fallback);
        QCOMPARE(got(fallback + u"/Css/a.css"_s), QByteArray("a"));
        QCOMPARE(got(fallback + u"/Css/b.css"_s), QByteArray("b"));
        QVERIFY(!QFileInfo::exists(fallback + u".part"_s));
    }

    void whatCantBeReadIsLeftOutOfTheCopy() {
        const QString beside = m_folder.filePath(u"i/AppData"_s);
        const QString fallback = m_folder.filePath(u"i/user/AppData"_s);
        QVERIFY(put(beside + u"/Css/a.css"_s, "a"));
        QVERIFY(QFile::link(m_folder.filePath(u"i/gone"_s), beside + u"/Css/b.css"_s));
        QVERIFY(fillDataFolder(beside, fallback));
        QCOMPARE(QDir(fallback + u"/Css"_s).entryList(QDir::Files | QDir::System), QStringList(u"a.css"_s));
    }

    void aCopiedFileCanBeWrittenByTheUser() {
        const QString beside = m_folder.filePath(u"f/AppData"_s);
        const QString fallback = m_folder.filePath(u"f/user/AppData"_s);
        QVERIFY(put(beside + u"/Input/x.ini"_s, "x"));
        QVERIFY(QFile::setPermissions(beside + u"/Input/x.ini"_s, QFile::ReadOwner));
        fillDataFolder(beside, fallback);
        QVERIFY(QFile::permissions(fallback + u"/Input/x.ini"_s).testFlag(QFile::WriteOwner));
    }

    // ---- the names of the running recording ----

    void allNamesAreEmptyAtStart() {
        const PathFile files;
        QVERIFY(files.fileDeckA().isEmpty() && files.fileDeckB().isEmpty() && files.fileMaster().isEmpty());
        QVERIFY(files.directoryRecording().isEmpty());
    }

    void aFileNameComesWithoutItsEnding() {
        PathFile files;
        files.setFileDeckA(u"deck a.wav"_s);
        files.setFileDeckB(u"deck b.wav"_s);
        files.setFileMaster(u"master.wav"_s);
        QCOMPARE(files.fileDeckA(), u"deck a"_s);
        QCOMPARE(files.fileDeckB(), u"deck b"_s);
        QCOMPARE(files.fileMaster(), u"master"_s);
    }

    void onlyTheLengthOfTheEndingIsCut() {
        PathFile files;
        files.setFileDeckA(u"take.flac"_s);
        QCOMPARE(files.fileDeckA(), u"take."_s);
        files.setFileDeckA(u"abcde"_s);
        QCOMPARE(files.fileDeckA(), u"a"_s);
    }

    void aNameNoLongerThanTheEndingComesBackWhole() {
        PathFile files;
        for (const QString& name : {u""_s, u"a"_s, u"abc"_s, u".wav"_s}) {
            files.setFileDeckA(name);
            files.setFileDeckB(name);
            files.setFileMaster(name);
            QCOMPARE(files.fileDeckA(), name);
            QCOMPARE(files.fileDeckB(), name);
            QCOMPARE(files.fileMaster(), name);
        }
    }

    void withoutRecordingTheFolderIsRecordingItself() {
        PathFile files;
        QCOMPARE(clean(files.pathDirectoryRecording()), m_data + u"/Recording"_s);
        QVERIFY(files.directoryRecording().isEmpty());
    }

    void aRecordingsFolderIsNamedByTheMomentAndMadeWithItsFirstFile() {
        PathFile files;
        files.newPathDirectory_recording();
        static const QRegularExpression form(u"^\\d{8}-\\d{6},\\d{3}$"_s);
        QVERIFY2(form.match(files.directoryRecording()).hasMatch(), qPrintable(files.directoryRecording()));
        const QString path = m_data + u"/Recording/"_s + files.directoryRecording();
        QVERIFY(!QFileInfo::exists(path));
        QCOMPARE(files.pathDirectoryRecording(), path);
        QVERIFY(QFileInfo(path).isDir());
        QCOMPARE(files.pathDirectoryRecording(), path); // and again, now that it is there
    }

    void theFolderIsMadeEvenWhereSomebodyRemovedRecording() {
        QVERIFY(QDir(m_data + u"/Recording"_s).removeRecursively());
        PathFile files;
        files.newPathDirectory_recording();
        QVERIFY(QFileInfo(files.pathDirectoryRecording()).isDir());
    }

    void twoRecordingsNeverShareAFolder() {
        PathFile files;
        QSet<QString> seen;
        for (int i = 0; i < 100; ++i) {
            files.newPathDirectory_recording();
            QVERIFY(!seen.contains(files.directoryRecording()));
            seen.insert(files.directoryRecording());
        }
    }

    void aTakeIntoAFreshFolderKeepsIt() {
        PathFile files;
        files.newPathDirectory_recording();
        const QString folder = files.directoryRecording();
        QVERIFY(!files.beginTake());
        QVERIFY(!files.beginTake()); // nothing was written yet
        QCOMPARE(files.directoryRecording(), folder);
    }

    void aTakeAfterAWrittenOneGetsAFolderOfItsOwn() {
        PathFile files;
        files.newPathDirectory_recording();
        QVERIFY(!files.beginTake());
        const QString first = files.pathDirectoryRecording();
        QVERIFY(files.beginTake());
        const QString second = files.pathDirectoryRecording();
        QVERIFY(second != first);
        QVERIFY(files.beginTake());
        QVERIFY(files.pathDirectoryRecording() != second);
    }

    void switchingRecordingOnStartsAFreshFolder() {
        PathFile files;
        files.newPathDirectory_recording();
        files.pathDirectoryRecording();
        files.newPathDirectory_recording();
        const QString fresh = files.directoryRecording();
        QVERIFY(files.beginTake()); // the file names were used in the other folder
        QCOMPARE(files.directoryRecording(), fresh);
        QVERIFY(!files.beginTake());
    }

    void aRecordingFolderThatCannotBeHadIsReplacedByOneOfTheUser() {
        QStandardPaths::setTestModeEnabled(true);
        QTemporaryDir data;
        useDataFolder(data.path());
        QFile blocker(data.filePath(QStringLiteral("Recording")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        PathFile files;
        files.newPathDirectory_recording();
        const QString folder = files.pathDirectoryRecording();
        QVERIFY(QFileInfo(folder).isDir());
        QVERIFY(!folder.startsWith(data.path()));
        QVERIFY(folder.endsWith(files.directoryRecording()));
        QVERIFY(QDir(folder).removeRecursively());
        QStandardPaths::setTestModeEnabled(false);
    }
};

namespace {
int runOrTellTheDataFolder(int argc, char* argv[]) {
    QGuiApplication application(argc, argv); // pathIcon gives a picture
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.contains(asksForTheDataFolder)) {
        if (const qsizetype at = arguments.indexOf(isCalled); at > 0) {
            QCoreApplication::setApplicationName(arguments[at + 1]);
        }
        if (arguments.contains(onlyReads)) {
            onlyReadDataFolder();
        } else if (arguments.size() > 2 && !arguments[2].startsWith(u"--"_s)) {
            useDataFolder(arguments[2]);
        }
        std::fputs(qPrintable(pathData(QString::fromLatin1("."))), stdout);
        return 0;
    }
    tst_PathFile test;
    return QTest::qExec(&test, argc, argv);
}
} // namespace

GRAMO_TEST_RUN(runOrTellTheDataFolder)
#include "tst_pathfile.moc"
