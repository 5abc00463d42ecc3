#include "module/quitsignals.h"

#include "support/testmain.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

const QString sendsItself = u"--send"_s;
constexpr int wentOn = 3;
constexpr int patienceMs = 1000; // far beyond the pass of the event loop in which a heeded signal quits

// What a program does that sends itself this signal, started with the signal ignored or not: 0 if it quits in
// good order, wentOn if it goes on.
int outcome(int signal, bool ignored) {
    QProcess process;
    process.setChildProcessModifier([=] { std::signal(signal, ignored ? SIG_IGN : SIG_DFL); });
    process.start(QCoreApplication::applicationFilePath(),
                  {u"tst_quitsignals"_s, sendsItself, QString::number(signal)});
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit ? process.exitCode()
                                                                                     : -1;
}

int sendToItself(int signal) {
    quitOnSystemSignals();
    std::raise(signal);
    QTimer::singleShot(patienceMs, [] { QCoreApplication::exit(wentOn); });
    return QCoreApplication::exec();
}

} // namespace

class tst_QuitSignals : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aSignalQuitsUnlessItWasIgnoredAtTheStart_data() {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGHUP") << SIGHUP;
    }
    void aSignalQuitsUnlessItWasIgnoredAtTheStart() {
        QFETCH(int, signal);
        QCOMPARE(outcome(signal, false), 0);
        QCOMPARE(outcome(signal, true), wentOn);
    }
};

namespace {
int runOrSendToItself(int argc, char* argv[]) {
    if (argc > 2 && QString::fromLocal8Bit(argv[1]) == sendsItself) {
        QCoreApplication application(argc, argv);
        return sendToItself(QString::fromLocal8Bit(argv[2]).toInt());
    }
    return TestMain::run<QCoreApplication, tst_QuitSignals>(argc, argv);
}
} // namespace

GRAMO_TEST_RUN(runOrSendToItself)
#include "tst_quitsignals.moc"
