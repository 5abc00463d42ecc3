// What the tests and the demo stand on: nothing that they start outlives them, and servers that were killed
// stop nobody.

#include "liverig.h"
#include "support/testmain.h"

#include <QApplication>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString holds = u"--hold"_s;
constexpr int endMs = 5000; // a killed process is gone long before

bool runs(qint64 pid) {
    QFile stat(u"/proc/%1/stat"_s.arg(pid));
    if (!stat.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray text = stat.readAll();
    return !text.mid(text.lastIndexOf(')') + 1).trimmed().startsWith('Z'); // ended, and nobody has asked yet
}

/// Whether a program of this name runs from somewhere below a folder.
bool runsBelow(const QString& folder, const QString& program) {
    for (const QString& pid : QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs)) {
        QFile line(u"/proc/%1/cmdline"_s.arg(pid));
        if (line.open(QIODevice::ReadOnly) && runs(pid.toLongLong())) {
            const QByteArray command = line.readAll().split('\0').first();
            if (command.startsWith(folder.toUtf8()) && command.endsWith(program.toUtf8())) {
                return true;
            }
        }
    }
    return false;
}

QStringList registeredServers() {
    QFile file(u"/dev/shm/jack-shm-registry"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    static const QRegularExpression entry(u"jack-\\d+:([^:]+):"_s);
    QStringList names;
    auto all = entry.globalMatch(QString::fromLatin1(file.readAll()));
    while (all.hasNext()) {
        names << all.next().captured(1);
    }
    return names;
}

/// A name under which a server starts: where the register is full already, that of a dead one.
QString nameThatMayStart() {
    const QStringList names = registeredServers();
    if (names.size() < 8) {
        return u"gramoscope-rig-foreign"_s;
    }
    for (const QString& name : names) {
        if (!serverAnswers(name)) {
            return name;
        }
    }
    return {};
}

/// A server that knows nothing of our rules for names.
class PlainServer {
public:
    explicit PlainServer(const QString& name) : m_name(name) {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(u"jackd"_s, {u"-r"_s, u"-n"_s, name, u"-d"_s, u"dummy"_s, u"-p"_s, u"1024"_s});
        m_process.waitForStarted();
    }
    ~PlainServer() { end(SIGTERM); }
    /// Whether it comes up; false if it ends first.
    bool starts() {
        return QTest::qWaitFor([this] { return answers() || m_process.state() != QProcess::Running; },
                               10000) &&
               answers();
    }
    bool answers() const { return m_process.state() == QProcess::Running && serverAnswers(m_name); }
    void end(int signal) {
        if (m_process.state() == QProcess::Running) {
            ::kill(pid_t(m_process.processId()), signal);
            m_process.waitForFinished(10000);
        }
    }

private:
    QString m_name;
    TiedProcess m_process;
};

} // namespace

class tst_Rig : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aKilledTestTakesServerDeckAndScreenAlong() {
        TiedProcess test;
        test.start(QCoreApplication::applicationFilePath(), {u"tst_rig"_s, holds});
        QVERIFY(QTest::qWaitFor([&] { return test.canReadLine(); }, 30000));
        const QStringList pids = QString::fromLatin1(test.readLine()).trimmed().split(u' ');
        QCOMPARE(pids.size(), 3);
        for (const QString& pid : pids) {
            QVERIFY2(runs(pid.toLongLong()), qPrintable(pid));
        }
        test.kill();
        QVERIFY(test.waitForFinished(5000));
        for (const QString& pid : pids) {
            QVERIFY2(QTest::qWaitFor([&] { return !runs(pid.toLongLong()); }, endMs), qPrintable(pid));
        }
    }

    void aKilledDemoTakesEverythingAlong() {
        QTemporaryDir place;
        TiedProcess demo;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"DISPLAY"_s);
        environment.insert(u"TMPDIR"_s, place.path());
        environment.insert(u"JACK_DEFAULT_SERVER"_s, u"no-such-server"_s);
        demo.setProcessEnvironment(environment);
        demo.start(QDir(QStringLiteral(GRAMO_TEST_DIR)).filePath(u"../tools/demo/demo.sh"_s),
                   {u"60"_s, place.filePath(u"out"_s)});
        // The program is the last thing that it starts.
        QVERIFY(QTest::qWaitFor([&] { return runsBelow(place.path(), u"/home/gramoscope"_s); }, 60000));
        QFile children(u"/proc/%1/task/%1/children"_s.arg(demo.processId()));
        QVERIFY(children.open(QIODevice::ReadOnly));
        const QStringList pids = QString::fromLatin1(children.readAll()).split(u' ', Qt::SkipEmptyParts);
        QVERIFY2(pids.size() >= 5, qPrintable(pids.join(u' '))); // server, screen, manager, deck, program
        demo.kill();
        QVERIFY(demo.waitForFinished(5000));
        for (const QString& pid : pids) {
            QVERIFY2(QTest::qWaitFor([&] { return !runs(pid.toLongLong()); }, endMs), qPrintable(pid));
        }
    }

    void deadServersStopNobodyAndNothingIsTakenOutOfTheRegister() {
        const QString foreignName = nameThatMayStart();
        PlainServer foreign(foreignName);
        QVERIFY(foreign.starts());
        QStringList dead;
        for (bool full = false; !full;) {
            const QString name = u"gramoscope-rig-dead-%1"_s.arg(dead.size());
            PlainServer server(name);
            full = !server.starts();
            server.end(SIGKILL);
            if (!full) {
                dead << name;
            }
        }
        const QStringList before = registeredServers();
        QCOMPARE(before.size(), 8);
        {
            JackServer ours;
            QVERIFY(ours.start());
            QStringList after = registeredServers();
            QVERIFY(after.contains(foreignName));
            QVERIFY(ours.name() != foreignName);
            QCOMPARE(after.size(), 8);
            QVERIFY(foreign.answers());
        }
        QVERIFY(foreign.answers());
        // A server that comes and goes in good order gives the place back.
        for (const QString& name : dead) {
            PlainServer server(name);
            server.starts();
        }
        for (const QString& name : dead) {
            QVERIFY2(!registeredServers().contains(name), qPrintable(name));
        }
    }

    void twoServersAtOnceHaveTwoNames() {
        JackServer one;
        JackServer two;
        QVERIFY(one.start());
        QVERIFY(two.start());
        QVERIFY(one.name() != two.name());
    }
};

namespace {
// Three children, and no end.
int hold(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    JackServer server;
    VirtualDeck deck({});
    if (!server.start() || !deck.start()) {
        return 1;
    }
    TiedProcess screen;
    screen.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s});
    if (!screen.waitForReadyRead(15000)) {
        return 1;
    }
    std::printf("%lld %lld %lld\n", server.pid(), deck.pid(), screen.processId());
    std::fflush(stdout);
    return QCoreApplication::exec();
}

int runOrHold(int argc, char* argv[]) {
    return argc > 1 && QString::fromLocal8Bit(argv[1]) == holds
               ? hold(argc, argv)
               : TestMain::run<QApplication, tst_Rig>(argc, argv);
}
} // namespace

GRAMO_TEST_RUN(runOrHold)
#include "tst_rig.moc"
