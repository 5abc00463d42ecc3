// Long after its sound server was lost the program lives. The libraries below give up what they wait for
// after ten minutes, and would end the process then.

#include "liverig.h"
#include "session.h"
#include "state/portaudiosession.h"
#include "support/testmain.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::Literals::StringLiterals;

namespace {
constexpr int elevenMinutes = 11 * 60 * 1000;
} // namespace

class tst_LostServer_long : public QObject {
    Q_OBJECT

    QTemporaryDir m_data;

private Q_SLOTS:
    void initTestCase() { useDataFolder(m_data.filePath(u"AppData"_s)); }

    void elevenMinutesLaterTheProgramLivesAndEndsAtOnce() {
        JackServer server;
        QVERIFY(server.start());
        auto deck = std::make_unique<VirtualDeck>(QStringList{u"--pattern"_s, u"chirp"_s});
        QVERIFY(deck->start());
        Session::store({u"Virtual Deck"_s, u"4p0"_s}, {}, {u"system"_s});
        auto session = std::make_unique<Session>();
        QVERIFY(session->start());
        QVERIFY(session->connection().recorders()[0]->isRunning());
        QVERIFY(session->connection().recorders()[2]->isRunning());
        QTest::qWait(1000);
        server.kill();
        QVERIFY(QTest::qWaitFor([] { return !Session::mode().modeTraining(); }, 20000));
        QVERIFY(PortAudioSession::blocked());
        QTest::qWait(elevenMinutes);
        QVERIFY(PortAudioSession::blocked());
        QVERIFY(session->start()); // the window is worked as ever
        QVERIFY(session->stop());
        QElapsedTimer clock;
        clock.start();
        session.reset();
        QVERIFY(clock.elapsed() < 1000);
    }
};

namespace {
int runPatiently(int argc, char* argv[]) {
    qputenv("QTEST_FUNCTION_TIMEOUT",
            QByteArray::number(2 * elevenMinutes)); // else Qt Test ends it after five
    return TestMain::run<QApplication, tst_LostServer_long>(argc, argv);
}
} // namespace

GRAMO_TEST_RUN(&runPatiently)
#include "tst_lostserver_long.moc"
