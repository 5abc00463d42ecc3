#pragma once

#include "beatclock.h"
#include "curve/curvepointring.h"
#include "curve/curvepointstore.h"
#include "midithread.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QMainWindow>

#include <array>
#include <memory>
#include <optional>
#include <vector>

class DeviceObject;
class QTimer;
class QWView;
class SessionSwitch;
class WorkerRecorderMultiChannelObject;

/// The main window and the controller: it owns the workers, the timers, the rings and the point stores, does
/// all signal wiring once, in its constructor, and runs the count-in, the start and the stop of a session.
/// GUI thread.
class Connection : public QMainWindow {
    Q_OBJECT
public:
    Connection();
    ~Connection() override;

    QWView* view() const { return m_view; }
    std::array<WorkerRecorderMultiChannelObject*, 3> recorders() const;

    /// One receiver of a signal that runs or stops a session.
    struct Step {
        const QObject* receiver;
        QByteArray slot; ///< "&Class::name"
        bool operator==(const Step&) const = default;
    };
    /// The receivers of s_RunApp, s_startTraining and s_StopApp in the order in which they were connected,
    /// which is the order in which they run.
    struct Sequences {
        std::vector<Step> run;
        std::vector<Step> start;
        std::vector<Step> stop;
    };
    const Sequences& sequences() const { return m_sequences; }

Q_SIGNALS:
    void s_status(QString text);
    void s_startPlotTimer();
    void s_stopPlotTimer();
    /// The count-in is over: everything starts within this pass of the event loop.
    void s_startTraining();
    void s_metronum();
    /// Every fourth beat, after its s_metronum.
    void s_metronum_All4();

public Q_SLOTS:
    /// Starts the count-in: five ticks at the tempo.
    void timerRunAllSound();
    void runAllSound();
    void stopAllSound();
    void updatePlayStopIcon(bool status);
    /// Ends a session that runs, as the stop button does.
    void endSession();
    void killApp();
    void updateDisplayFrequency();
    /// One beat.
    void controller();
    /// The tempo has changed: the grid restarts, and the beat if it is running.
    void updateTimerBPM();
    void startTimerBpm();
    void stopTimerBpm();
    void updateCountdown();
    void actionSplashscreen();

private:
    void makeWorkers();
    // The wiring, by what it serves.
    void wireDevices();
    void wireGraphs();
    void wireTimers();
    void wireControls();
    void wireRunSequence();
    void wireStopSequence();
    void wireShutdown();
    void showStoredState();

    std::optional<MidiThread> m_threadMidi; // made when the settings are there
    std::unique_ptr<WorkerRecorderMultiChannelObject> m_workerRecorder1;
    std::unique_ptr<WorkerRecorderMultiChannelObject> m_workerRecorder2;
    std::unique_ptr<WorkerRecorderMultiChannelObject> m_workerRecorder3;
    QWView* m_view = nullptr;
    QTimer* m_displayTimer = nullptr;
    std::unique_ptr<DeviceObject> m_deviceObject;
    QTimer* m_metronomTimer = nullptr;
    int m_metronomCount = 0; ///< beats since the last fourth one
    CurvePointRing m_ringDeckA;
    CurvePointRing m_ringDeckB;
    CurvePointRing m_ringSpare;
    CurvePointStore m_curveDeckA;
    CurvePointStore m_curveSecondaryA;
    CurvePointStore m_curveDeckB;
    CurvePointStore m_curveSecondaryB;
    CurvePointStore m_curveExtra;
    int m_countdownValue = 4;
    QTimer* m_countdownTimer = nullptr;
    SessionSwitch* m_sessionSwitch = nullptr;
    Sequences m_sequences;
    BeatClock m_beatClock;
    QElapsedTimer m_sinceFirstBeat;
};
