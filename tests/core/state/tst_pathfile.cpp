#include "state/pathfile.h"
#include "support/datafolder.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QRegularExpression>
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

// Runs a copy of this program, which says where it finds its data.
QString dataFolderOf(const QString& program, const QString& workingDirectory, const QString& userData) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_s, userData);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workingDirectory);
    process.start(program, {asksForTheDataFolder});
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

int main(int argc, char* argv[]) {
    QGuiApplication application(argc, argv); // pathIcon gives a picture
    if (QCoreApplication::arguments().contains(asksForTheDataFolder)) {
        std::fputs(qPrintable(pathData(QString::fromLatin1("."))), stdout);
        return 0;
    }
    tst_PathFile test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_pathfile.moc"
