// Sessions through a real sound server with virtual decks: what is kept is what the decks sent.

#include "gui/support/redpixels.h"
#include "liverig.h"
#include "session.h"
#include "takecheck.h"

#include "curve/qcurve.h"
#include "module/wavedata.h"
#include "state/portaudiosession.h"
#include "support/testmain.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int takeSeconds = 4;
constexpr int bpm = 400; // a short count-in
constexpr int sourceSeconds = 60;

QString decodeProgram() {
    return QDir(QStringLiteral(GRAMO_BIN_DIR)).filePath(u"gramoscope-decode"_s);
}

int xrunsSaid(const QString& said) {
    static const QRegularExpression count(u"xruns (\\d+)"_s);
    return count.match(said).captured(1).toInt();
}

} // namespace

class tst_LiveRecording : public QObject {
    Q_OBJECT

    QTemporaryDir m_data;
    JackServer m_server;
    QStringList m_deckArguments{u"--pattern"_s, u"walk,baby"_s, u"--noise"_s, u"1"_s, u"--seed"_s, u"7"_s};

    // How the take of one role follows the source file that its deck makes.
    TakeCheck follow(const QString& wav, const QString& source) {
        const auto take = readWave(wav);
        const auto sent = readWave(source);
        const TakeCheck check = followTake(*take, *sent, std::size_t(m_server.period()), stepsOnTheWay);
        qInfo("%s: %zu frames from %zu on, %d gaps (%zu skipped, %zu repeated), %zu wrong, largest step %d",
              qPrintable(QFileInfo(wav).fileName()), check.frames, check.start, check.gaps, check.skipped,
              check.repeated, check.wrong, check.largestStep);
        return check;
    }
    void compareTake(const QString& wav, const QString& source, int xruns) {
        const TakeCheck check = follow(wav, source);
        QVERIFY2(check.frames > std::size_t(48000 * (takeSeconds - 1)), qPrintable(wav));
        QVERIFY(check.found);
        QVERIFY(!check.lost);
        QCOMPARE(check.wrong, std::size_t{0});
        // No period is lost that nobody has told of.
        QVERIFY2(check.gaps <= xruns, qPrintable(u"%1 gaps, %2 told"_s.arg(check.gaps).arg(xruns)));
    }

    // The recorded curve against the decode of the recorded take.
    void compareCurve(const QString& wav, const QString& grw) {
        const QString again = m_data.filePath(u"again.grw"_s);
        QCOMPARE(QProcess::execute(decodeProgram(), {u"--timecode"_s, u"generic_V2"_s, wav, again}), 0);
        QFile live(grw);
        QFile decoded(again);
        QVERIFY(live.open(QIODevice::ReadOnly) && decoded.open(QIODevice::ReadOnly));
        const QByteArray a = live.readAll();
        const QByteArray b = decoded.readAll();
        QVERIFY(a.size() > 8 + 23 * 1000);
        QCOMPARE((a.size() - 8) % 23, 0);
        QCOMPARE(a.size(), b.size());
        for (qsizetype at = 8; at < a.size(); at += 23) {
            // All of a point but the fader, which the file of a record knows nothing about.
            QVERIFY2(a.mid(at, 22) == b.mid(at, 22), qPrintable(u"point %1"_s.arg((at - 8) / 23)));
        }
    }

    void compareTimes(const QString& grw, int step) {
        QFile file(grw);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QDataStream stream(file.readAll());
        stream.setByteOrder(QDataStream::LittleEndian);
        qint32 written = 0;
        qint32 count = 0;
        stream >> written >> count;
        QCOMPARE(written, bpm);
        for (qint32 i = 0; i < count; ++i) {
            qint32 time = 0;
            stream >> time;
            QCOMPARE(time, i * step);
            stream.skipRawData(19);
        }
    }

    void compareAll(const QStringList& wavs, const QStringList& sources, const QList<int>& xruns) {
        QCOMPARE(wavs.size(), sources.size());
        for (qsizetype i = 0; i < wavs.size(); ++i) {
            compareTake(wavs[i], sources[i], xruns[i]);
        }
    }

    // The longest time, ms, that the event loop was away while a session ends by itself.
    static qint64 longestPassUntilTheSessionEnds() {
        QElapsedTimer lost;
        lost.start();
        qint64 longest = 0;
        while (Session::mode().modeTraining() && lost.elapsed() < 20000) {
            QElapsedTimer pass;
            pass.start();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            longest = std::max(longest, pass.elapsed());
        }
        qInfo("session ended after %lld ms; longest pass of the event loop %lld ms", lost.elapsed(), longest);
        return longest;
    }

    QString role(const QString& deck) const { return Session::folder().filePath(deck + u".wav"_s); }

private Q_SLOTS:
    void initTestCase() {
        useDataFolder(m_data.filePath(u"AppData"_s));
        Singleton::instance().recordingLooperTraining()->setBpmEffective(bpm);
        QVERIFY(m_server.start());
    }

    void bothDecksOnOneCardWithTheMasterBesideThem() {
        VirtualDeck deck(m_deckArguments);
        QVERIFY(deck.start());
        Session::store({u"Virtual Deck"_s, u"4p0"_s}, {u"Virtual Deck"_s, u"4p1"_s},
                       {u"Virtual Deck"_s, u"4p1"_s});
        Session session;
        session.setRecording(true);
        QVERIFY(session.start());
        QVERIFY(session.connection().recorders()[0]->isRunning());
        QVERIFY(!session.connection().recorders()[1]->isOpen());
        QVERIFY(!session.connection().recorders()[2]->isOpen());
        QVERIFY(session.hear(takeSeconds));
        QCOMPARE(session.connection().recorders()[0]->overflows(), 0U);
        QVERIFY(session.stop());
        PathFile& files = *Singleton::instance().pathFile();
        const QString a = role(files.fileDeckA());
        const QString b = role(files.fileDeckB());
        const QString master = role(files.fileMaster());
        const int xruns = m_server.reportedSkips() + xrunsSaid(deck.stop());
        const QString sourceA = m_data.filePath(u"a.wav"_s);
        const QString sourceB = m_data.filePath(u"b.wav"_s);
        QVERIFY(deck.write(u'A', sourceSeconds, sourceA));
        QVERIFY(deck.write(u'B', sourceSeconds, sourceB));
        compareAll({a, b, master}, {sourceA, sourceB, sourceB}, {xruns, xruns, xruns});
        for (const QString& file : {files.fileDeckA(), files.fileDeckB()}) {
            const QString grw = Session::folder().filePath(file + u".grw"_s);
            compareTimes(grw, 64);
            compareCurve(role(file), grw);
        }
    }

    void aSecondSessionTakesAFolderOfItsOwn() {
        VirtualDeck deck(m_deckArguments);
        QVERIFY(deck.start());
        Session::store({u"Virtual Deck"_s, u"4p0"_s}, {}, {});
        Session session;
        session.setRecording(true);
        QVERIFY(session.start());
        QVERIFY(session.hear(0.5));
        QVERIFY(session.stop());
        const QString first = Session::folder().path();
        const QStringList firstFiles = Session::files(u"*"_s);
        QCOMPARE(firstFiles.size(), 2);
        QVERIFY(session.start());
        QVERIFY(session.hear(0.5));
        QVERIFY(session.stop());
        QVERIFY(Session::folder().path() != first);
        const QStringList secondFiles = Session::files(u"*"_s);
        QCOMPARE(secondFiles.size(), 2);
        QVERIFY(QSet<QString>(firstFiles.begin(), firstFiles.end())
                    .intersect(QSet<QString>(secondFiles.begin(), secondFiles.end()))
                    .isEmpty());
        QCOMPARE(QDir(first).entryList(QDir::Files).size(), 2);
    }

    void withoutRecordingNothingIsWritten() {
        VirtualDeck deck(m_deckArguments);
        QVERIFY(deck.start());
        Session::store({u"Virtual Deck"_s, u"4p0"_s}, {}, {});
        const QStringList before =
            QDir(pathRecording(QString())).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        Session session;
        session.setRecording(false);
        QVERIFY(session.start());
        QVERIFY(session.hear(0.5));
        QVERIFY(session.stop());
        QCOMPARE(QDir(pathRecording(QString())).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
    }

    void decksOnTwoCardsAndTheMasterOnAThird() {
        VirtualDeck one(m_deckArguments);
        QVERIFY(one.start());
        const QStringList twoArguments{u"--pattern"_s, u"walk,walk"_s, u"--noise"_s,
                                       u"1"_s,         u"--seed"_s,    u"70"_s};
        VirtualDeck two(twoArguments);
        QVERIFY(two.start());
        const QStringList threeArguments{u"--pattern"_s, u"walk,walk"_s, u"--noise"_s,
                                         u"1"_s,         u"--seed"_s,    u"700"_s};
        VirtualDeck three(threeArguments);
        QVERIFY(three.start());
        Session::store({u"[Virtual Deck]"_s, u"4p0"_s}, {u"[Virtual Deck-01]"_s, u"4p1"_s},
                       {u"[Virtual Deck-02]"_s, u"4p0"_s});
        QVERIFY(!Singleton::instance().setting()->inputMaster()->text().isEmpty());
        Session session;
        session.setRecording(true);
        QVERIFY(session.start());
        for (const auto* recorder : session.connection().recorders()) {
            QVERIFY(recorder->isRunning());
        }
        QVERIFY(session.hear(takeSeconds));
        QVERIFY(session.stop());
        PathFile& files = *Singleton::instance().pathFile();
        const QStringList takes{role(files.fileDeckA()), role(files.fileDeckB()), role(files.fileMaster())};
        const int skips = m_server.reportedSkips();
        const QList<int> xruns{skips + xrunsSaid(one.stop()), skips + xrunsSaid(two.stop()),
                               skips + xrunsSaid(three.stop())};
        const QStringList sources{m_data.filePath(u"1a.wav"_s), m_data.filePath(u"2b.wav"_s),
                                  m_data.filePath(u"3a.wav"_s)};
        QVERIFY(one.write(u'A', sourceSeconds, sources[0]));
        QVERIFY(two.write(u'B', sourceSeconds, sources[1]));
        QVERIFY(three.write(u'A', sourceSeconds, sources[2]));
        compareAll(takes, sources, xruns);
        for (const QString& file : {files.fileDeckA(), files.fileDeckB()}) {
            const QString grw = Session::folder().filePath(file + u".grw"_s);
            compareTimes(grw, 64);
            compareCurve(role(file), grw);
        }
    }

    // The program's own period: such a server loses time whenever the machine stalls for a millisecond. What
    // it brings is kept and decoded all the same.
    void aServerAtTheProgramsOwnPeriodIsHeard() {
        JackServer server(64);
        QVERIFY(server.start());
        VirtualDeck deck(m_deckArguments);
        QVERIFY(deck.start());
        Session::store({u"Virtual Deck"_s, u"4p0"_s}, {}, {});
        Session session;
        session.setRecording(true);
        QVERIFY(session.start());
        QVERIFY(session.hear(2));
        QVERIFY(session.stop());
        PathFile& files = *Singleton::instance().pathFile();
        const QString wav = role(files.fileDeckA());
        const QString source = m_data.filePath(u"64.wav"_s);
        QVERIFY(deck.write(u'A', sourceSeconds, source));
        const TakeCheck check = follow(wav, source);
        QVERIFY(check.found);
        QVERIFY(check.frames > 0);
        QVERIFY(check.largestStep <= stepsOnTheWay);
        const QString grw = Session::folder().filePath(files.fileDeckA() + u".grw"_s);
        compareTimes(grw, 64);
        compareCurve(wav, grw);
    }

    // A server that stands still keeps the library's calls from returning; it comes back, and so does the
    // sound.
    void aHungServerEndsTheSessionTheTakeIsKeptAndTheNextSessionRuns() {
        VirtualDeck deck(m_deckArguments);
        QVERIFY(deck.start());
        Session::store({u"Virtual Deck"_s, u"4p0"_s}, {}, {});
        Session session;
        session.setRecording(true);
        QVERIFY(session.start());
        QVERIFY(session.hear(1.5));
        QCOMPARE(::kill(pid_t(m_server.pid()), SIGSTOP), 0);
        const qint64 longest = longestPassUntilTheSessionEnds();
        QCOMPARE(::kill(pid_t(m_server.pid()), SIGCONT), 0);
        QVERIFY(!Session::mode().modeTraining());
        QVERIFY(longest < 3000);
        QCOMPARE(Session::files(u"*.wav"_s).size(), 1);
        QCOMPARE(Session::files(u"*.grw"_s).size(), 1);
        QVERIFY(QTest::qWaitFor([] { return !PortAudioSession::blocked(); }, 20000));
        // The server drops clients that it has waited for in vain; a deck that was dropped is started again.
        deck.stop();
        VirtualDeck another(m_deckArguments);
        QVERIFY(another.start());
        QVERIFY(session.start());
        QVERIFY(QTest::qWaitFor(
            [&] { return session.connection().view()->painterDeckA()->mainCurve()->points().size() > 500; },
            5000));
        QVERIFY(session.stop());
    }

    // Last: it takes the server away.
    void aKilledServerEndsTheSessionWithinSecondsTheTakeIsKeptAndTheUserIsTold() {
        VirtualDeck deck(m_deckArguments);
        QVERIFY(deck.start());
        Session::store({u"Virtual Deck"_s, u"4p0"_s}, {u"Virtual Deck"_s, u"4p1"_s}, {});
        Session session;
        session.setRecording(true);
        QVERIFY(session.start());
        QVERIFY(session.hear(2));
        QWPainter& graph = *session.connection().view()->painterDeckA();
        const int before = redPixelsBelowThePlot(graph);
        m_server.kill();
        const qint64 longest = longestPassUntilTheSessionEnds();
        QVERIFY(!Session::mode().modeTraining());
        QVERIFY(longest < 3000);
        QCOMPARE(Session::files(u"*.wav"_s).size(), 2);
        QCOMPARE(Session::files(u"*.grw"_s).size(), 2);
        for (const QString& file : Session::files(u"*.wav"_s)) {
            QVERIFY(readWave(Session::folder().filePath(file))->length() > 48000);
        }

        QTRY_VERIFY(redPixelsBelowThePlot(graph) > before + 20);

        const QString first = Session::folder().path();
        QVERIFY(session.start());
        QVERIFY(redPixelsBelowThePlot(graph) > before + 20);
        QVERIFY(session.stop());
        QVERIFY(Session::folder().path() != first);
        QVERIFY(!Session::folder().exists());
    }
};

GRAMO_TEST_MAIN(tst_LiveRecording)
#include "tst_liverecording.moc"
