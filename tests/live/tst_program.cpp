// The program as a process of its own under a real X server and window manager.

#include "liverig.h"
#include "support/testmain.h"
#include "support/unprivileged.h"

#include <QApplication>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

// Runs a command and returns what it printed; empty if it failed.
QString run(const QString& program, const QStringList& arguments) {
    TiedProcess process;
    process.start(program, arguments);
    return process.waitForFinished(10000) && process.exitCode() == 0
               ? QString::fromUtf8(process.readAllStandardOutput()).trimmed()
               : QString();
}

// Xvfb with openbox: a screen on which a window can be maximised and asked to close.
class Screen {
public:
    bool start() {
        m_server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1920x1080x24"_s,
                                   u"-nolisten"_s, u"tcp"_s, u"-noreset"_s});
        if (!m_server.waitForReadyRead(15000)) {
            return false;
        }
        qputenv("DISPLAY", ":" + m_server.readAllStandardOutput().trimmed());
        m_manager.start(u"openbox"_s, {u"--sm-disable"_s});
        return m_manager.waitForStarted() &&
               QTest::qWaitFor(
                   [] {
                       return run(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTING_WM_CHECK"_s})
                           .contains(u"window id"_s);
                   },
                   10000);
    }
    ~Screen() {
        for (QProcess* process : {&m_manager, &m_server}) {
            process->terminate();
            process->waitForFinished(5000);
        }
    }

private:
    TiedProcess m_server;
    TiedProcess m_manager;
};

} // namespace

class tst_Program : public QObject {
    Q_OBJECT

    Screen m_screen;

    // The program with the delivered data folder, in a place of its own.
    static QString installed(const QTemporaryDir& place) {
        const QDir bin(QStringLiteral(GRAMO_BIN_DIR));
        QFile::copy(bin.filePath(u"gramoscope"_s), place.filePath(u"gramoscope"_s));
        QProcess::execute(u"cp"_s, {u"-R"_s, QDir(QStringLiteral(GRAMO_TEST_DIR)).filePath(u"../appdata"_s),
                                    place.filePath(u"AppData"_s)});
        return place.filePath(u"gramoscope"_s);
    }

    static QProcessEnvironment environment(const QTemporaryDir& place) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        environment.insert(u"JACK_DEFAULT_SERVER"_s, u"no-such-server"_s);
        environment.insert(u"XDG_RUNTIME_DIR"_s, place.path());
        return environment;
    }

    static bool splashIsGone(qint64 pid) {
        return QTest::qWaitFor(
            [&] {
                return run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--pid"_s, QString::number(pid)})
                           .split(u'\n')
                           .size() == 1;
            },
            20000);
    }
    static bool hasTheKeyboard(const QString& window) {
        return QTest::qWaitFor(
            [&] {
                if (run(u"xdotool"_s, {u"getwindowfocus"_s}) == window) {
                    return true;
                }
                run(u"xdotool"_s, {u"windowactivate"_s, window});
                return false;
            },
            20000);
    }
    // The main window of `program`, started on a server, once it is alone and has the keyboard; empty if it
    // doesn't come.
    static QString comesUp(TiedProcess& program, const QTemporaryDir& place, const JackServer& server) {
        QProcessEnvironment with = environment(place);
        with.insert(u"JACK_DEFAULT_SERVER"_s, server.name());
        program.setProcessEnvironment(with);
        program.start(installed(place), QStringList());
        QString window;
        const bool there =
            QTest::qWaitFor([&] { return !(window = mainWindow(program.processId())).isEmpty(); }, 20000);
        return there && splashIsGone(program.processId()) && hasTheKeyboard(window) ? window : QString();
    }
    // A session runs: behind the count-in its streams are connected. Then two seconds for them.
    // Asked once a second: each question is a client that comes and goes, and a server that is kept busy with
    // them has been seen to leave the program's stream out.
    static bool hears(const JackServer& server) {
        for (int tries = 0; tries < 20; ++tries) {
            QTest::qWait(1000);
            if (run(u"jack_lsp"_s, {u"-c"_s, u"-s"_s, server.name(), u"deckA_left"_s})
                    .contains(u"PortAudio"_s)) {
                QTest::qWait(2000);
                return true;
            }
        }
        return false;
    }
    // The main window: visible, maximised. The splash is smaller and goes by itself.
    static QString mainWindow(qint64 pid) {
        const QStringList windows =
            run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--pid"_s, QString::number(pid)})
                .split(u'\n');
        for (const QString& window : windows) {
            if (!window.isEmpty() &&
                run(u"xprop"_s, {u"-id"_s, window, u"_NET_WM_STATE"_s}).contains(u"MAXIMIZED_VERT"_s)) {
                return window;
            }
        }
        return {};
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_screen.start()); }

    void withNoSoundHardwareItComesUpMaximisedSaysNothingAndClosesCleanly() {
        QTemporaryDir place;
        TiedProcess program;
        program.setProcessEnvironment(environment(place));
        QElapsedTimer since;
        since.start();
        program.start(installed(place), QStringList());
        QVERIFY(program.waitForStarted());
        QString window;
        QVERIFY(
            QTest::qWaitFor([&] { return !(window = mainWindow(program.processId())).isEmpty(); }, 20000));
        qInfo("maximised after %lld ms", since.elapsed());
        const QString geometry = run(u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, window});
        QVERIFY2(geometry.contains(u"WIDTH=1920"_s), qPrintable(geometry));
        QVERIFY(splashIsGone(program.processId()));
        QCOMPARE(program.state(), QProcess::Running);
        run(u"wmctrl"_s, {u"-i"_s, u"-c"_s, window});
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(program.readAllStandardOutput(), QByteArray());
        QCOMPARE(program.readAllStandardError(), QByteArray());
        QVERIFY(QFileInfo::exists(place.filePath(u"AppData/Input/config.ini"_s)));
    }

    void startedFromElsewhereItFindsTheSameData() {
        QTemporaryDir place;
        QTemporaryDir elsewhere;
        TiedProcess program;
        program.setProcessEnvironment(environment(place));
        program.setWorkingDirectory(elsewhere.path());
        program.start(installed(place), QStringList());
        QVERIFY(QTest::qWaitFor([&] { return !mainWindow(program.processId()).isEmpty(); }, 20000));
        program.terminate();
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(QFileInfo::exists(place.filePath(u"AppData/Input/config.ini"_s)));
        QVERIFY(QDir(elsewhere.path()).isEmpty());
    }

    void withNoFolderThatCanBeWrittenItStillRuns() {
        QTemporaryDir place;
        const QString file = installed(place);
        QCOMPARE(QProcess::execute(u"chmod"_s, {u"-R"_s, u"a-w,a+rX"_s, place.path()}), 0);
        const auto removable = qScopeGuard([&] {
            QProcess::execute(u"chmod"_s, {u"-R"_s, u"u+w"_s, place.path()});
        });
        TiedProcess program;
        QProcessEnvironment nowhere = environment(place);
        nowhere.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s); // the screen belongs to somebody else
        nowhere.insert(u"XDG_DATA_HOME"_s, u"/dev/null"_s);
        program.setProcessEnvironment(nowhere);
        runUnprivileged(program);
        program.start(file, QStringList());
        QVERIFY(program.waitForStarted());
        QTest::qWait(4000); // beyond the splash
        QCOMPARE(program.state(), QProcess::Running);
        program.terminate();
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(!QFileInfo::exists(place.filePath(u"AppData/Input/config.ini"_s)));
    }

    void startedToIgnoreTheHangUpItOutlivesIt() {
        QTemporaryDir place;
        TiedProcess program;
        program.setProcessEnvironment(environment(place));
        program.start(u"nohup"_s, {installed(place)});
        QVERIFY(QTest::qWaitFor([&] { return !mainWindow(program.processId()).isEmpty(); }, 20000));
        QCOMPARE(::kill(pid_t(program.processId()), SIGHUP), 0);
        QTest::qWait(1000);
        QCOMPARE(program.state(), QProcess::Running);
        program.terminate();
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitCode(), 0);
    }

    void askedToEndBySignalItSavesTheRunningTake() {
        JackServer server;
        QVERIFY(server.start());
        VirtualDeck deck({u"--pattern"_s, u"baby,play"_s});
        QVERIFY(deck.start());
        QTemporaryDir place;
        TiedProcess program;
        const QString window = comesUp(program, place, server);
        QVERIFY(!window.isEmpty());
        const QString geometry = run(u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, window});
        static const QRegularExpression height(u"HEIGHT=(\\d+)"_s);
        const int bottom = height.match(geometry).captured(1).toInt();
        run(u"xdotool"_s, {u"mousemove"_s, u"--window"_s, window, u"30"_s, QString::number(bottom - 30),
                           u"click"_s, u"1"_s});
        run(u"xdotool"_s, {u"key"_s, u"space"_s});
        QVERIFY(hears(server));
        program.terminate();
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitCode(), 0);
        const QDir recording(place.filePath(u"AppData/Recording"_s));
        const QStringList folders = recording.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(folders.size(), 1);
        const QDir folder(recording.filePath(folders.first()));
        QCOMPARE(folder.entryList({u"*.wav"_s}).size(), 2);
        const QFileInfoList curves = folder.entryInfoList({u"*.grw"_s});
        QCOMPARE(curves.size(), 2);
        for (const QFileInfo& curve : curves) {
            QVERIFY(curve.size() > 8 + 23 * 500);
        }
    }

    // With sound and fader on a server that stops answering: neither may keep the process.
    void aServerThatDoesntAnswerDoesntKeepItFromEnding() {
        JackServer server;
        QVERIFY(server.start());
        VirtualDeck deck({u"--pattern"_s, u"chirp"_s});
        QVERIFY(deck.start());
        QTemporaryDir place;
        TiedProcess program;
        QVERIFY(!comesUp(program, place, server).isEmpty());
        run(u"xdotool"_s, {u"key"_s, u"space"_s});
        QVERIFY(hears(server));
        QVERIFY(run(u"jack_lsp"_s, {u"-c"_s, u"-s"_s, server.name(), u"crossfader"_s}).contains(u"RtMidi"_s));
        ::kill(static_cast<pid_t>(server.pid()), SIGSTOP);
        program.terminate();
        const bool ended = program.waitForFinished(20000);
        ::kill(static_cast<pid_t>(server.pid()), SIGCONT);
        if (!ended) {
            program.kill();
            program.waitForFinished(5000);
        }
        QVERIFY(ended);
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
    }

    void aServerThatIsGoneKeepsItFromEndingNotASecond_data() {
        QTest::addColumn<int>("later"); // ms between the server's end and the program's
        QTest::newRow("at once") << 0;
        QTest::newRow("before the loss is noticed") << 1000;
        QTest::newRow("after the session has ended") << 4000;
    }
    void aServerThatIsGoneKeepsItFromEndingNotASecond() {
        QFETCH(int, later);
        JackServer server;
        QVERIFY(server.start());
        VirtualDeck deck({u"--pattern"_s, u"chirp"_s});
        QVERIFY(deck.start());
        QTemporaryDir place;
        TiedProcess program;
        QVERIFY(!comesUp(program, place, server).isEmpty());
        run(u"xdotool"_s, {u"key"_s, u"space"_s});
        QVERIFY(hears(server));
        QVERIFY(run(u"jack_lsp"_s, {u"-c"_s, u"-s"_s, server.name(), u"crossfader"_s}).contains(u"RtMidi"_s));
        server.kill();
        QTest::qWait(later);
        QElapsedTimer clock;
        clock.start();
        program.terminate();
        const bool ended = program.waitForFinished(20000);
        qInfo("ended after %lld ms", clock.elapsed());
        if (!ended) {
            program.kill();
            program.waitForFinished(5000);
        }
        QVERIFY(ended);
        QVERIFY(clock.elapsed() < 1000);
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
    }
};

GRAMO_TEST_MAIN(tst_Program)
#include "tst_program.moc"
