// The controller with no sound hardware at all: the whole program in this process, its timers and its order.

#include "session.h"

#include "button/qdled.h"
#include "combobox/qcomboboxbpm.h"
#include "curve/qcurve.h"
#include "module/inputcallback.h"
#include "support/testmain.h"

#include <QApplication>
#include <QSplashScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace Qt::Literals::StringLiterals;

namespace {

// Counts the paint events of a widget.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

int visibleSplashes() {
    int count = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        count += qobject_cast<const QSplashScreen*>(widget) != nullptr && widget->isVisible() ? 1 : 0;
    }
    return count;
}

// "receiver: slot" for each step of a sequence.
QStringList wordsOf(const std::vector<Connection::Step>& sequence, const Connection& connection) {
    const auto recorders = connection.recorders();
    QStringList words;
    for (const Connection::Step& step : sequence) {
        QString receiver = QString::fromLatin1(step.receiver->metaObject()->className());
        receiver = step.receiver == connection.view()->painterDeckA()   ? u"graph A"_s
                   : step.receiver == connection.view()->painterDeckB() ? u"graph B"_s
                                                                        : receiver;
        for (std::size_t i = 0; i < recorders.size(); ++i) {
            receiver = step.receiver == recorders[i] ? u"recorder %1"_s.arg(i + 1) : receiver;
        }
        words << receiver + u": "_s + QString::fromLatin1(step.slot.mid(step.slot.lastIndexOf(':') + 1));
    }
    return words;
}

RecordingLooperTraining& entry() {
    return *Singleton::instance().recordingLooperTraining();
}

} // namespace

class tst_Connection : public QObject {
    Q_OBJECT

    QTemporaryDir m_data;

    // Repaints within `ms`.
    static int repaints(Session& session, int ms) {
        PaintCounter counter(session.connection().view()->painterDeckA());
        QTest::qWait(ms);
        return counter.count;
    }

private Q_SLOTS:
    void initTestCase() {
        qputenv("JACK_DEFAULT_SERVER", "no-such-server");
        useDataFolder(m_data.filePath(u"AppData"_s));
    }

    void init() { entry().setBpmEffective(1200.0); }

    void withNoDeviceTheWindowComesUpAndTheGraphKeepsRepainting() {
        Session session;
        QVERIFY(session.connection().isVisible());
        QVERIFY(session.connection().view()->painterDeckA()->isVisible());
        QVERIFY(!session.connection().view()->painterDeckB()->isVisible());
        QVERIFY(repaints(session, 1000) > 15);
        QVERIFY(session.start());
        for (const auto* recorder : session.connection().recorders()) {
            QVERIFY(!recorder->isOpen());
        }
        QVERIFY(repaints(session, 1000) > 15);
        QVERIFY(session.stop());
    }

    void aNewDisplayFrequencyTakesEffectWithoutARestartOfTheTimer() {
        Session session;
        Performance& performance = *Singleton::instance().performance();
        QTimer* display = nullptr;
        for (QTimer* timer : session.connection().findChildren<QTimer*>(Qt::FindDirectChildrenOnly)) {
            if (timer->isActive() && timer->interval() == 16) {
                display = timer;
            }
        }
        QVERIFY(display != nullptr);
        QCOMPARE(display->timerType(), Qt::PreciseTimer);
        QVERIFY(session.start());
        performance.setDisplayFrequency(30);
        QCOMPARE(display->interval(), 33);
        QVERIFY(display->isActive());
        performance.setDisplayFrequency(120);
        QCOMPARE(display->interval(), 8);
        QVERIFY(display->isActive());
        QVERIFY(session.stop());
        QVERIFY(display->isActive());
        performance.setDisplayFrequency(60);
    }

    void theCountInHasFiveTicksAndTheSessionStartsOnTheFifth() {
        Session session;
        QSignalSpy started(&session.connection(), &Connection::s_startTraining);
        QTimer* countdown = nullptr;
        session.mode().modeTraining_on();
        for (QTimer* timer : session.connection().findChildren<QTimer*>(Qt::FindDirectChildrenOnly)) {
            if (timer->isActive() && timer->interval() == 50) {
                countdown = timer;
            }
        }
        QVERIFY(countdown != nullptr);
        QSignalSpy ticks(countdown, &QTimer::timeout);
        QVERIFY(QTest::qWaitFor([&] { return started.size() == 1; }, 5000));
        QCOMPARE(ticks.size(), 5);
        QVERIFY(!countdown->isActive());
        QVERIFY(session.mode().modeRun());
        QVERIFY(session.mode().modeStartSynchronized());
        session.mode().modeTraining_off();
        QVERIFY(!session.mode().modeRun());
        QVERIFY(!session.mode().modeStartSynchronized());
    }

    void theCountInsIntervalIsTheTemposTruncated_data() {
        QTest::addColumn<double>("bpm");
        QTest::addColumn<int>("interval");
        QTest::newRow("1200") << 1200.0 << 50;
        QTest::newRow("1130, 53.097 ms") << 1130.0 << 53;
        QTest::newRow("100, a whole number") << 100.0 << 600;
        QTest::newRow("97, 618.557 ms") << 97.0 << 618;
        QTest::newRow("84, 714.286 ms") << 84.0 << 714;
        QTest::newRow("79.93, 750.657 ms") << 79.93 << 750;
        QTest::newRow("61, 983.607 ms") << 61.0 << 983;
    }
    void theCountInsIntervalIsTheTemposTruncated() {
        QFETCH(double, bpm);
        QFETCH(int, interval);
        Session session;
        QSet<QTimer*> before;
        const auto timers = session.connection().findChildren<QTimer*>(Qt::FindDirectChildrenOnly);
        for (QTimer* timer : timers) {
            if (timer->isActive()) {
                before << timer;
            }
        }
        entry().setBpmEffective(bpm);
        session.connection().timerRunAllSound();
        QList<int> started;
        for (const QTimer* timer : timers) {
            if (timer->isActive() && !before.contains(const_cast<QTimer*>(timer))) {
                QCOMPARE(timer->timerType(), Qt::PreciseTimer);
                started << timer->interval();
            }
        }
        QCOMPARE(started, QList<int>{interval});
    }

    // ---- who comes when ----

    void aSessionsStartReachesItsReceiversInTheirOrder() {
        Session session;
        const Connection& connection = session.connection();
        QCOMPARE(
            wordsOf(connection.sequences().run, connection),
            (QStringList{u"QB2Push: checked"_s, u"QBToggle: disabled"_s, u"graph A: resetCurve_Main"_s,
                         u"graph B: resetCurve_Main"_s, u"graph A: forgetTrouble"_s,
                         u"graph B: forgetTrouble"_s, u"Mode: modeCurrentTimerAutoresize_on"_s,
                         u"Connection: timerRunAllSound"_s, u"QComboBoxBpm: disabled"_s,
                         u"WorkerMidiObject: startRun"_s, u"recorder 1: timecodePrepare"_s,
                         u"recorder 2: timecodePrepare"_s, u"recorder 3: timecodePrepare"_s,
                         u"graph A: initGraph"_s, u"graph B: initGraph"_s, u"DeviceObject: runDevices"_s}));
        QCOMPARE(connection.sequences().run[1].receiver, session.tool().recordToggle());
    }

    void theCountInsEndReachesItsReceiversInTheirOrder() {
        Session session;
        const Connection& connection = session.connection();
        QCOMPARE(wordsOf(connection.sequences().start, connection),
                 (QStringList{u"recorder 1: timecodeInitialise"_s, u"recorder 2: timecodeInitialise"_s,
                              u"recorder 3: timecodeInitialise"_s, u"QWView: playSound"_s,
                              u"Mode: modeRun_on"_s}));
    }

    void aSessionsEndReachesItsReceiversInTheirOrder() {
        Session session;
        const Connection& connection = session.connection();
        QCOMPARE(wordsOf(connection.sequences().stop, connection),
                 (QStringList{u"recorder 1: halt"_s, u"recorder 2: halt"_s, u"recorder 3: halt"_s,
                              u"QWView: exportFile"_s, u"recorder 1: stop"_s, u"recorder 2: stop"_s,
                              u"recorder 3: stop"_s, u"Connection: stopAllSound"_s, u"QB2Push: unchecked"_s,
                              u"QBToggle: enabled"_s, u"QComboBoxBpm: enabled"_s,
                              u"Mode: modeCurrentTimerAutoresize_off"_s, u"WorkerMidiObject: stopRun"_s,
                              u"Mode: modeRun_off"_s}));
        QCOMPARE(connection.sequences().stop[9].receiver, session.tool().recordToggle());
    }

    // Every receiver of the three signals is one of a sequence.
    void nobodyElseHearsOfAStartOrAnEnd() {
        class Counted : public Mode {
        public:
            static int receiversOf(const Mode& mode, const char* signal) {
                return (mode.*(&Counted::receivers))(signal);
            }
        };
        class CountedConnection : public Connection {
        public:
            static int receiversOf(const Connection& connection, const char* signal) {
                return (connection.*(&CountedConnection::receivers))(signal);
            }
        };
        const int run = Counted::receiversOf(Session::mode(), SIGNAL(s_RunApp()));
        const int stop = Counted::receiversOf(Session::mode(), SIGNAL(s_StopApp()));
        Session session;
        const Connection::Sequences& sequences = session.connection().sequences();
        QCOMPARE(Counted::receiversOf(Session::mode(), SIGNAL(s_RunApp())) - run, int(sequences.run.size()));
        QCOMPARE(Counted::receiversOf(Session::mode(), SIGNAL(s_StopApp())) - stop,
                 int(sequences.stop.size()));
        QCOMPARE(CountedConnection::receiversOf(session.connection(), SIGNAL(s_startTraining())),
                 int(sequences.start.size()));
    }

    void stoppingInTheCountInStillEndsInRunAllSoundAndLeavesTheSynchronisedFlagSet() {
        Session session;
        QSignalSpy started(&session.connection(), &Connection::s_startTraining);
        QSignalSpy beats(&session.connection(), &Connection::s_metronum);
        session.mode().modeTraining_on();
        QTest::qWait(120);
        session.mode().modeTraining_off();
        QCOMPARE(started.size(), 0);
        QVERIFY(QTest::qWaitFor([&] { return started.size() == 1; }, 5000));
        QVERIFY(session.mode().modeStartSynchronized());
        for (const auto* recorder : session.connection().recorders()) {
            QVERIFY(!recorder->isOpen());
        }
        QTest::qWait(200);
        QCOMPARE(beats.size(), 0);
        session.mode().modeTraining_off();
    }

    void theFirstFourthBeatComesOnTheFourthBeatAfterTheStart() {
        Session session;
        QStringList order;
        QVERIFY(session.start());
        connect(&session.connection(), &Connection::s_metronum, this, [&] { order << u"beat"_s; });
        connect(&session.connection(), &Connection::s_metronum_All4, this, [&] { order << u"four"_s; });
        session.connection().runAllSound();
        QVERIFY(QTest::qWaitFor([&] { return order.size() >= 10; }, 5000));
        QCOMPARE(order.first(10), (QStringList{u"beat"_s, u"beat"_s, u"beat"_s, u"beat"_s, u"four"_s,
                                               u"beat"_s, u"beat"_s, u"beat"_s, u"beat"_s, u"four"_s}));
        QVERIFY(session.stop());
        const qsizetype atStop = order.size();
        QTest::qWait(200);
        QCOMPARE(order.size(), atStop);
    }

    void aSplashGoesWithTheProgram() {
        {
            Session session;
            QVERIFY(visibleSplashes() > 0);
        }
        QCOMPARE(visibleSplashes(), 0);
    }
    void aSecondCallShowsASecondSplashForTwoSeconds() {
        Session session;
        QTRY_COMPARE_WITH_TIMEOUT(visibleSplashes(), 0, 6000);
        session.connection().actionSplashscreen();
        QCOMPARE(visibleSplashes(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(visibleSplashes(), 0, 6000);
    }

    void theControlsOfARunningSessionAreLockedAndFreedAgain() {
        Session session;
        QVERIFY(session.start());
        QVERIFY(!session.tool().recordToggle()->isEnabled());
        QVERIFY(!session.tool().bpmComboBox()->isEnabled());
        QVERIFY(session.mode().modeCurrentTimerAutoresize());
        QVERIFY(session.stop());
        QVERIFY(session.tool().recordToggle()->isEnabled());
        QVERIFY(session.tool().bpmComboBox()->isEnabled());
        QVERIFY(!session.mode().modeCurrentTimerAutoresize());
    }

    void theSpaceKeyStartsAndStopsASession() {
        Session session;
        session.connection().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&session.connection()));
        QTest::keyClick(&session.connection(), Qt::Key_Space);
        QVERIFY(QTest::qWaitFor([&] { return session.mode().modeRun(); }, 5000));
        QTest::keyClick(&session.connection(), Qt::Key_Space);
        QVERIFY(QTest::qWaitFor([&] { return !session.mode().modeTraining(); }, 5000));
    }

    void aPressDuringTheCountInIsKeptOut() {
        Session session;
        QTest::mouseClick(session.tool().playButton(), Qt::LeftButton);
        QTest::mouseClick(session.tool().playButton(), Qt::LeftButton);
        QTest::qWait(150);
        QVERIFY(session.mode().modeTraining());
        QTest::mouseClick(session.tool().playButton(), Qt::LeftButton);
        QVERIFY(session.mode().modeTraining());
        QVERIFY(QTest::qWaitFor([&] { return session.mode().modeRun(); }, 5000));
        QVERIFY(session.stop());
    }

    void theStoredReverseIsTakenOverAndMixIsOn() {
        Singleton::instance().setting()->setOptionHamsterMode(true);
        {
            Session session;
            QVERIFY(session.mode().modeReverse());
            QVERIFY(session.tool().reverseToggle()->isChecked());
            QVERIFY(session.mode().modeMix());
            session.tool().reverseToggle()->toggle_off();
        }
        QVERIFY(!Singleton::instance().setting()->optionHamsterMode());
        Session session;
        QVERIFY(!session.mode().modeReverse());
    }

    void aFullDvsTimecodeIsAppliedAtTheStart() {
        Singleton::instance().setting()->setTimecode(u"serato_sideB_FullDVS"_s);
        {
            Session session;
            QVERIFY(session.mode().modeFullDVS());
        }
        Singleton::instance().setting()->setTimecode(u"traktor_sideA"_s);
        Session session;
        QVERIFY(!session.mode().modeFullDVS());
        Singleton::instance().setting()->setTimecode(u"generic_V2"_s);
    }

    void theEndOfASessionWritesTheCurvesBeforeTheSoundAndTellsWhatItCouldnt_data() {
        QTest::addColumn<bool>("closing");
        QTest::newRow("stopped") << false;
        QTest::newRow("closed") << true;
    }
    void theEndOfASessionWritesTheCurvesBeforeTheSoundAndTellsWhatItCouldnt() {
        QFETCH(bool, closing);
        Singleton& shared = Singleton::instance();
        Session session;
        session.setRecording(true);
        QVERIFY(session.start());
        // A card that isn't there, with a callback all the same.
        QSample* sample = lastingSample(QSample(ModelGraph::INPUT_DECKA, 9999, u"Card"_s, 48000.0, 2, 0));
        shared.performance()->setSample(ModelGraph::INPUT_DECKA, sample, false);
        shared.pathFile()->setFileDeckA(sample->fileName());
        WorkerRecorderMultiChannelObject* recorder = session.connection().recorders()[0];
        recorder->load(ModelGraph::INPUT_DECKA, nullptr, sample, nullptr);
        recorder->timecodeInitialise();
        InputCallbackState* state = recorder->callbackState();
        QVERIFY(state != nullptr);
        state->open.store(true);
        const std::vector<std::int16_t> sound(2 * 4800);
        processInput(*state, sound.data(), 4800);
        QCurve* curve = session.connection().view()->painterDeckA()->mainCurve();
        QVERIFY(!curve->points().empty());

        const QDir folder(shared.pathFile()->pathDirectoryRecording());
        const QStringList names{shared.pathFile()->fileDeckA() + u".grw"_s, sample->fileName()};
        for (const QString& name : names) {
            QVERIFY(folder.mkdir(name)); // where the file should be
        }
        QStringList told;
        connect(curve, &QCurve::s_NotWritten, this, [&](const QString& path) { told << path; });
        connect(recorder, &WorkerRecorderMultiChannelObject::s_NotWritten, this,
                [&](const QString& path) { told << path; });
        if (closing) {
            session.connection().killApp();
            QTRY_VERIFY(!Session::mode().modeTraining());
        } else {
            QVERIFY(session.stop());
        }
        QCOMPARE(told, QStringList({folder.filePath(names[0]), folder.filePath(names[1])}));
        shared.performance()->setSample(ModelGraph::INPUT_DECKA,
                                        lastingSample(QSample(ModelGraph::INPUT_DECKA)), false);
        shared.pathFile()->setFileDeckA(QString());
    }

    void recordingChangesThePlayButtonsPictures() {
        Session session;
        QB2Push& play = *session.tool().playButton();
        const auto shows = [&play](const QString& name) {
            const QImage picture = play.icon().pixmap(50, 50).toImage();
            return !picture.isNull() && picture == QIcon(pathIcon(name)).pixmap(50, 50).toImage();
        };
        QSignalSpy status(Singleton::instance().mode(), &Mode::s_RecorderModeStatus);
        QVERIFY(shows(u"play-button.png"_s));
        session.setRecording(true);
        QCOMPARE(status.size(), 1);
        QVERIFY(!Singleton::instance().pathFile()->directoryRecording().isEmpty());
        QVERIFY(shows(u"play_record-button.png"_s));
        QVERIFY(session.start());
        QVERIFY(shows(u"pause_record-button.png"_s));
        QVERIFY(session.stop());
        QVERIFY(shows(u"play_record-button.png"_s));
        session.setRecording(false);
        QCOMPARE(status.size(), 2);
        QVERIFY(shows(u"play-button.png"_s));
        QVERIFY(session.start());
        QVERIFY(shows(u"pause-button.png"_s));
        QVERIFY(session.stop());
    }

    void bothGraphsShowTheSameStretchOfTime() {
        Session session;
        QWPainter* a = session.connection().view()->painterDeckA();
        QWPainter* b = session.connection().view()->painterDeckB();
        QVERIFY(a->xRange() == b->xRange());
        for (QWPainter* worked : {a, b}) {
            const GraphRange before = worked->xRange();
            QTest::mousePress(worked, Qt::LeftButton, Qt::NoModifier, QPoint(500, 50));
            QTest::mouseRelease(worked, Qt::LeftButton, Qt::NoModifier, QPoint(300, 50));
            QVERIFY(worked->xRange() != before);
            QVERIFY(a->xRange() == b->xRange());
        }
    }

    void aSelectionEndsWithItsDrag() {
        Session session;
        for (QWPainter* graph :
             {session.connection().view()->painterDeckA(), session.connection().view()->painterDeckB()}) {
            session.mode().modeSelectArea_on();
            QTest::mousePress(graph, Qt::LeftButton, Qt::NoModifier, QPoint(300, 50));
            QTest::mouseRelease(graph, Qt::LeftButton, Qt::NoModifier, QPoint(300, 50));
            QVERIFY(!session.mode().modeSelectArea());
        }
    }

    void afterASessionBothGraphsAreFittedOnceAndAreFreeAgain() {
        Session session;
        QWPainter* a = session.connection().view()->painterDeckA();
        QWPainter* b = session.connection().view()->painterDeckB();
        session.connection().view()->showInput(ModelInput::TEXT_A_B);
        for (QWPainter* graph : {a, b}) { // a take of a hundred beats
            graph->mainCurve()->store().reserve();
            CurvePoint point;
            for (int i = 1; i <= 1000; ++i) {
                point.time = i * 240.0;
                graph->mainCurve()->store().append(point);
            }
        }
        session.mode().modeAutoresize_on();
        QVERIFY(QTest::qWaitFor([&] { return !session.mode().modeAutoresize(); }, 5000));
        for (QWPainter* graph : {a, b}) {
            QCOMPARE(graph->xRange(), (GraphRange{0.0, 240000.0 + 2400.0}));
        }
        QTest::mousePress(a, Qt::LeftButton, Qt::NoModifier, QPoint(500, 50));
        QTest::mouseRelease(a, Qt::LeftButton, Qt::NoModifier, QPoint(300, 50));
        const GraphRange panned = a->xRange();
        QVERIFY(panned.min > 0.0);
        QTest::qWait(100);
        QVERIFY(a->xRange() == panned);
    }

    void tempoChangeWhileRunningRestartsGridAndBeat() {
        Session session;
        QVERIFY(session.start());
        QSignalSpy grid(session.connection().view()->painterDeckA(), &QWPainter::s_InitStart);
        QSignalSpy beats(&session.connection(), &Connection::s_metronum);
        session.connection().updateTimerBPM();
        QVERIFY(!grid.isEmpty());
        QVERIFY(QTest::qWaitFor([&] { return beats.size() >= 2; }, 5000));
        QVERIFY(session.stop());
    }

    void theMetronomeStaysOnTheExactTempo() {
        entry().setBpmEffective(1130.0); // 53.097 ms: the truncated interval alone would gain 1.8 ms a second
        Session session;
        QVERIFY(session.start());
        constexpr int beatsToCount = 100;
        int beats = 0;
        QElapsedTimer clock;
        QList<double> at;
        connect(&session.connection(), &Connection::s_metronum, this, [&] {
            ++beats;
            at << double(clock.nsecsElapsed()) / 1e6;
        });
        session.connection().stopTimerBpm();
        clock.start();
        session.connection().startTimerBpm();
        QVERIFY(QTest::qWaitFor([&] { return beats >= beatsToCount; }, 20000));
        // A busy machine delivers beats late, never early, and lateness doesn't add up: the earliest of the
        // last beats against their due times shows the drift. Intervals always truncated would be early by
        // this, intervals always rounded up late by that:
        const double early = beatsToCount * (60000.0 / 1130.0 - 53.0);
        const double late = beatsToCount * (54.0 - 60000.0 / 1130.0);
        double drift = 1e9;
        for (int k = beatsToCount - 20; k < beatsToCount; ++k) {
            drift = std::min(drift, at[k] - double(k + 1) * 60000.0 / 1130.0);
        }
        qInfo("drift after %d beats: %.3f ms", beatsToCount, drift);
        QVERIFY(drift > -early / 2);
        QVERIFY(drift < late / 2);
        QVERIFY(session.stop());
    }
};

GRAMO_TEST_MAIN(tst_Connection)
#include "tst_connection.moc"
