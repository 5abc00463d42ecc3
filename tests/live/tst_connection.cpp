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
        // A busy machine delivers single beats late, and lateness doesn't add up: the earliest of the last
        // beats against their due times shows the drift.
        const double truncatedDrift = beatsToCount * (60000.0 / 1130.0 - 53.0);
        double drift = 1e9;
        for (int k = beatsToCount - 20; k < beatsToCount; ++k) {
            drift = std::min(drift, at[k] - double(k + 1) * 60000.0 / 1130.0);
        }
        qInfo("drift after %d beats: %.3f ms", beatsToCount, drift);
        QVERIFY2(std::abs(drift) < truncatedDrift / 2,
                 "the truncated interval alone would be twice as far off");
        QVERIFY(session.stop());
    }
};

GRAMO_TEST_MAIN(tst_Connection)
#include "tst_connection.moc"
