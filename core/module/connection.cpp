// The controller's life and its run and stop logic. The wiring is in connection_wiring.cpp.
#include "connection.h"

#include "button/qb2push.h"
#include "curve/curvepointstore.h"
#include "deviceobject.h"
#include "menu/qwgridtool.h"
#include "painter/qwpainter.h"
#include "qmidiin.h"
#include "qwview.h"
#include "state/devicewizard.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/sessionswitch.h"
#include "state/singleton.h"
#include "workermidiobject.h"
#include "workerrecordermultichannelobject.h"

#include <QCoreApplication>
#include <QPixmap>
#include <QSplashScreen>
#include <QTimer>

namespace {

constexpr int countInFrom = 4;
constexpr int splashMs = 2000;
constexpr int beatsOfBar = 4;

double tempo() {
    return Singleton::instance().recordingLooperTraining()->bpmEffective();
}

} // namespace

Connection::Connection() : m_displayTimer(new QTimer(this)), m_metronomTimer(new QTimer(this)) {
    actionSplashscreen();
    m_view = new QWView(m_curveDeckA, m_curveSecondaryA, m_curveDeckB, m_curveSecondaryB, this);
    setCentralWidget(m_view);
    m_threadMidi.emplace();
    m_deviceObject = std::make_unique<DeviceObject>();
    m_sessionSwitch = new SessionSwitch(this);
    makeWorkers();
    m_countdownTimer = new QTimer(this);
    m_countdownTimer->setTimerType(Qt::PreciseTimer);
    m_metronomTimer->setTimerType(Qt::PreciseTimer);

    wireDevices();
    wireGraphs();
    wireTimers();
    wireControls();
    wireRunSequence();
    wireStopSequence();
    wireShutdown();
    showStoredState();

    m_deviceObject->controllerDevices();
    m_displayTimer->setTimerType(Qt::PreciseTimer);
    m_displayTimer->setInterval(int(Singleton::instance().performance()->displayInterval()));
    m_displayTimer->start();
    if (autoSetUpDevices([] { return QMidiIn().devices(); })) {
        m_deviceObject->controllerDevices();
    }
}

// The recorders go before the rings and the stores that their streams write to.
Connection::~Connection() {
    m_threadMidi.reset();
    m_workerRecorder1.reset();
    m_workerRecorder2.reset();
    m_workerRecorder3.reset();
    m_deviceObject.reset();
    // The graphs read the stores, which are members: they must be gone before these are.
    delete m_view;
}

std::array<WorkerRecorderMultiChannelObject*, 3> Connection::recorders() const {
    return {m_workerRecorder1.get(), m_workerRecorder2.get(), m_workerRecorder3.get()};
}

void Connection::makeWorkers() {
    for (auto* worker : {&m_workerRecorder1, &m_workerRecorder2, &m_workerRecorder3}) {
        *worker = std::make_unique<WorkerRecorderMultiChannelObject>(m_ringDeckA, m_curveDeckA, m_ringDeckB,
                                                                     m_curveDeckB);
    }
}

void Connection::actionSplashscreen() {
    const QPixmap picture(pathImage(QStringLiteral("Logo - Gramo Works V4-black.png")));
    auto* splash = new QSplashScreen(picture, Qt::WindowStaysOnTopHint);
    splash->show();
    QTimer::singleShot(splashMs, Qt::CoarseTimer, splash, &QObject::deleteLater);
    connect(this, &QObject::destroyed, splash, [splash] { delete splash; }); // a run that is shorter still
}

void Connection::timerRunAllSound() {
    m_countdownValue = countInFrom;
    m_countdownTimer->stop();
    m_countdownTimer->setInterval(wholeMilliseconds((60.0 / tempo()) * 1000.0));
    m_countdownTimer->start();
}

void Connection::updateCountdown() {
    m_view->painterDeckA()->showCountIn(m_countdownValue);
    m_view->painterDeckB()->showCountIn(m_countdownValue);
    if (m_countdownValue == 0) {
        m_countdownTimer->stop();
        runAllSound();
    } else {
        --m_countdownValue;
    }
}

void Connection::runAllSound() {
    m_metronomCount = 0;
    Mode& mode = *Singleton::instance().mode();
    if (mode.modeTraining()) {
        startTimerBpm();
    }
    mode.modeTrainingLock_off();
    mode.modeStartSynchronized_on();
    Q_EMIT s_startTraining();
}

void Connection::stopAllSound() {
    stopTimerBpm();
    Singleton::instance().mode()->modeStartSynchronized_off();
}

void Connection::startTimerBpm() {
    m_sinceFirstBeat.start();
    m_metronomTimer->setInterval(m_beatClock.start(tempo()));
    m_metronomTimer->start();
}

void Connection::stopTimerBpm() {
    m_metronomTimer->stop();
}

void Connection::controller() {
    m_metronomTimer->setInterval(m_beatClock.beat(double(m_sinceFirstBeat.nsecsElapsed()) / 1e6));
    ++m_metronomCount;
    Q_EMIT s_metronum();
    if (m_metronomCount >= beatsOfBar) {
        m_metronomCount = 0;
        Q_EMIT s_metronum_All4();
    }
}

void Connection::updateTimerBPM() {
    const bool training = Singleton::instance().mode()->modeTraining();
    if (training) {
        stopTimerBpm();
    }
    m_view->painterDeckA()->initStart();
    m_view->painterDeckB()->initStart();
    if (training) {
        startTimerBpm();
    }
}

void Connection::updateDisplayFrequency() {
    m_displayTimer->setInterval(int(Singleton::instance().performance()->displayInterval()));
}

void Connection::updatePlayStopIcon(bool status) {
    m_view->gridTool()->playButton()->changePicture(
        status ? QStringLiteral("play_record-button.png") : QStringLiteral("play-button.png"),
        status ? QStringLiteral("pause_record-button.png") : QStringLiteral("pause-button.png"));
}

void Connection::endSession() {
    Mode& mode = *Singleton::instance().mode();
    if (mode.modeTraining()) {
        mode.modeTraining_off();
    }
}

void Connection::killApp() {
    // Before the recorders stop by themselves: a session's end writes its files in their order.
    QTimer::singleShot(0, this, &Connection::endSession);
    QTimer::singleShot(0, m_threadMidi->worker(), &WorkerMidiObject::stopRun);
    for (WorkerRecorderMultiChannelObject* worker : recorders()) {
        QTimer::singleShot(0, worker, &WorkerRecorderMultiChannelObject::stop);
    }
    QCoreApplication::quit();
}
