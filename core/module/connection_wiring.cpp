// All signal wiring of the program, by what it serves. Nothing is connected later.
#include "connection.h"

#include "audionotifier.h"
#include "button/qb2push.h"
#include "button/qbselectinput.h"
#include "button/qbtoggle.h"
#include "button/qbtogglecircular.h"
#include "button/qdled.h"
#include "combobox/qcomboboxbpm.h"
#include "curve/qcurve.h"
#include "deviceobject.h"
#include "menu/qwgridtool.h"
#include "painter/qwpainter.h"
#include "qwview.h"
#include "receivetimecodedvsobject.h"
#include "soundserver.h"
#include "state/learnedcontrol.h"
#include "state/midi.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/sessionswitch.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "state/timecodechoice.h"
#include "workermidiobject.h"
#include "workerrecordermultichannelobject.h"

#include <QCoreApplication>
#include <QTimer>

using Recorder = WorkerRecorderMultiChannelObject;

// Connects the next receiver of a sequence and notes it.
#define IN_TURN(sequence, sender, signal, receiver, slot)                                                    \
    (connect(sender, signal, receiver, slot), (sequence).push_back({receiver, #slot}))

void Connection::wireDevices() {
    connect(m_deviceObject.get(), &DeviceObject::s_SampleInputMultiChannel_All, m_workerRecorder1.get(),
            &Recorder::load);
    connect(m_deviceObject.get(), &DeviceObject::s_SampleInputMultiChannel_DeckB, m_workerRecorder2.get(),
            &Recorder::load);
    connect(m_deviceObject.get(), &DeviceObject::s_SampleInputMultiChannel_Master, m_workerRecorder3.get(),
            &Recorder::load);
    connect(Singleton::instance().performance(), &Performance::s_InputSample, m_view,
            &QWView::updateBpmSamplerate);
    for (Recorder* recorder : recorders()) {
        connect(m_view, &QWView::s_Record, recorder, &Recorder::record);
    }
    for (QWPainter* painter : {m_view->painterDeckA(), m_view->painterDeckB()}) {
        connect(m_deviceObject.get(), &DeviceObject::s_MissingDevice, painter, &QWPainter::missingDevice);
        connect(&SoundServer::instance(), &SoundServer::s_Lost, painter, &QWPainter::serverLost);
    }
}

void Connection::wireGraphs() {
    QWPainter* a = m_view->painterDeckA();
    QWPainter* b = m_view->painterDeckB();
    for (Recorder* recorder : recorders()) {
        connect(recorder->decoderDeckA(), &ReceiveTimecodeDVSObject::s_ringBufferLatencyMs, a,
                &QWPainter::ringBufferLatencyMs);
        connect(recorder->decoderDeckB(), &ReceiveTimecodeDVSObject::s_ringBufferLatencyMs, b,
                &QWPainter::ringBufferLatencyMs);
        connect(a, &QWPainter::s_InitStart, recorder, &Recorder::timecodeUpdateBPM_DeckA);
        connect(b, &QWPainter::s_InitStart, recorder, &Recorder::timecodeUpdateBPM_DeckB);
        connect(recorder, &Recorder::s_UpdateBPM_DeckA, a, &QWPainter::resetCurve_Main);
        connect(recorder, &Recorder::s_UpdateBPM_DeckB, b, &QWPainter::resetCurve_Main);
        for (QWPainter* painter : {a, b}) {
            connect(recorder, &Recorder::s_Overflow, painter, &QWPainter::overflow);
            connect(recorder, &Recorder::s_SilentInput, painter, &QWPainter::silentInput);
            connect(recorder, &Recorder::s_NotWritten, painter, &QWPainter::notWritten);
            connect(recorder->notifier(), &AudioNotifier::audioLevelChanged, painter->mainCurve(),
                    &QCurve::initStartTimecode);
        }
    }
    for (QWPainter* painter : {a, b}) {
        // Both tell it: one of them may be hidden.
        connect(a->mainCurve(), &QCurve::s_NotWritten, painter, &QWPainter::notWritten);
        connect(b->mainCurve(), &QCurve::s_NotWritten, painter, &QWPainter::notWritten);
    }
    // The two graphs show the same stretch of time. Neither slot sends, so nothing goes round.
    connect(a, &QWPainter::s_XRange, b, &QWPainter::updateXRange);
    connect(b, &QWPainter::s_XRange, a, &QWPainter::updateXRange);
    for (QWPainter* painter : {a, b}) {
        connect(painter, &QWPainter::s_EndSelectArea, Singleton::instance().mode(),
                &Mode::modeSelectArea_off);
        // Queued: it is sent from within a paint, and both graphs are painted before the mode goes off.
        connect(painter, &QWPainter::s_EndAutoresize, m_view, &QWView::endAutoresize, Qt::QueuedConnection);
    }
    RecordingLooperTraining* entry = Singleton::instance().recordingLooperTraining();
    connect(entry, &RecordingLooperTraining::s_OpenCurve_1, a, &QWPainter::importCurve_Secondary);
    connect(entry, &RecordingLooperTraining::s_OpenCurve_2, b, &QWPainter::importCurve_Secondary);
    connect(entry, &RecordingLooperTraining::s_ResetCurve_1, a, &QWPainter::resetCurve_Secondary);
    connect(entry, &RecordingLooperTraining::s_ResetCurve_1, a, &QWPainter::resetCurve_Main);
    connect(entry, &RecordingLooperTraining::s_ResetCurve_2, b, &QWPainter::resetCurve_Secondary);
    connect(entry, &RecordingLooperTraining::s_ResetCurve_2, b, &QWPainter::resetCurve_Main);
}

void Connection::wireTimers() {
    connect(m_displayTimer, &QTimer::timeout, m_view->painterDeckA(), &QWPainter::refresh);
    connect(m_displayTimer, &QTimer::timeout, m_view->painterDeckB(), &QWPainter::refresh);
    connect(m_metronomTimer, &QTimer::timeout, this, &Connection::controller);
    connect(m_countdownTimer, &QTimer::timeout, this, &Connection::updateCountdown);
    connect(Singleton::instance().performance(), &Performance::signalDisplayFrequency, this,
            &Connection::updateDisplayFrequency);
    connect(this, &Connection::s_metronum, m_view->gridTool()->metronomLamp(), &QDLed::trigger);
}

void Connection::wireControls() {
    Mode* mode = Singleton::instance().mode();
    QWGridTool* tool = m_view->gridTool();
    connect(tool->playButton(), &QB2Push::s_push, m_sessionSwitch, &SessionSwitch::press);
    connect(tool->recordToggle(), &QBToggle::s_Toogle_on, mode, &Mode::modeRecorder_on);
    connect(tool->recordToggle(), &QBToggle::s_Toogle_on, Singleton::instance().pathFile(),
            &PathFile::newPathDirectory_recording);
    connect(tool->recordToggle(), &QBToggle::s_Toogle_off, mode, &Mode::modeRecorder_off);
    connect(mode, &Mode::s_RecorderModeStatus, this, &Connection::updatePlayStopIcon);
    connect(tool->mixToggle(), &QBToggle::s_Toogle_on, mode, &Mode::modeMix_on);
    connect(tool->mixToggle(), &QBToggle::s_Toogle_off, mode, &Mode::modeMix_off);
    connect(tool->reverseToggle(), &QBToggle::s_Toogle_on, mode, &Mode::modeReverse_on);
    connect(tool->reverseToggle(), &QBToggle::s_Toogle_off, mode, &Mode::modeReverse_off);
    connect(tool->holdToggle(), &QBToggleCircular::s_Toogle_on, mode, &Mode::modeHold_on);
    connect(tool->holdToggle(), &QBToggleCircular::s_Toogle_off, mode, &Mode::modeHold_off);
    connect(tool->selectInput(), &QBSelectInput::s_toogle_value, m_view, &QWView::showInput);
    for (QWPainter* graph : {m_view->painterDeckA(), m_view->painterDeckB()}) {
        connect(tool->bpmComboBox(), &QComboBoxBpm::s_Textchanged, graph, &QWPainter::beatsChanged);
    }
}

void Connection::wireRunSequence() {
    Mode* mode = Singleton::instance().mode();
    QWGridTool* tool = m_view->gridTool();
    // The order of these connections is the order of the start.
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, tool->playButton(), &QB2Push::checked);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, tool->recordToggle(), &QBToggle::disabled);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, m_view->painterDeckA(), &QWPainter::resetCurve_Main);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, m_view->painterDeckB(), &QWPainter::resetCurve_Main);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, m_view->painterDeckA(), &QWPainter::forgetTrouble);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, m_view->painterDeckB(), &QWPainter::forgetTrouble);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, mode, &Mode::modeCurrentTimerAutoresize_on);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, this, &Connection::timerRunAllSound);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, tool->bpmComboBox(), &QComboBoxBpm::disabled);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, m_threadMidi->worker(), &WorkerMidiObject::startRun);
    for (Recorder* recorder : recorders()) {
        IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, recorder, &Recorder::timecodePrepare);
    }
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, m_view->painterDeckA(), &QWPainter::initGraph);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, m_view->painterDeckB(), &QWPainter::initGraph);
    IN_TURN(m_sequences.run, mode, &Mode::s_RunApp, m_deviceObject.get(), &DeviceObject::runDevices);

    // And this is the order at the end of the count-in.
    for (Recorder* recorder : recorders()) {
        IN_TURN(m_sequences.start, this, &Connection::s_startTraining, recorder,
                &Recorder::timecodeInitialise);
    }
    IN_TURN(m_sequences.start, this, &Connection::s_startTraining, m_view, &QWView::playSound);
    IN_TURN(m_sequences.start, this, &Connection::s_startTraining, mode, &Mode::modeRun_on);
}

void Connection::wireStopSequence() {
    Mode* mode = Singleton::instance().mode();
    QWGridTool* tool = m_view->gridTool();
    // The order of these connections is the order of the stop. The small files are written before the large
    // ones, so that a disk that fills up costs the end of a take and not the curves.
    for (Recorder* recorder : recorders()) {
        IN_TURN(m_sequences.stop, mode, &Mode::s_StopApp, recorder, &Recorder::halt);
    }
    IN_TURN(m_sequences.stop, mode, &Mode::s_StopApp, m_view, &QWView::exportFile);
    for (Recorder* recorder : recorders()) {
        IN_TURN(m_sequences.stop, mode, &Mode::s_StopApp, recorder, &Recorder::stop);
        // Queued: the session is not taken apart under the recorder that reports the loss.
        connect(recorder, &Recorder::s_StreamLost, this, &Connection::endSession, Qt::QueuedConnection);
    }
    IN_TURN(m_sequences.stop, mode, &Mode::s_StopApp, this, &Connection::stopAllSound);
    IN_TURN(m_sequences.stop, mode, &Mode::s_StopApp, tool->playButton(), &QB2Push::unchecked);
    IN_TURN(m_sequences.stop, mode, &Mode::s_StopApp, tool->recordToggle(), &QBToggle::enabled);
    IN_TURN(m_sequences.stop, mode, &Mode::s_StopApp, tool->bpmComboBox(), &QComboBoxBpm::enabled);
    IN_TURN(m_sequences.stop, mode, &Mode::s_StopApp, mode, &Mode::modeCurrentTimerAutoresize_off);
    IN_TURN(m_sequences.stop, mode, &Mode::s_StopApp, m_threadMidi->worker(), &WorkerMidiObject::stopRun);
    IN_TURN(m_sequences.stop, mode, &Mode::s_StopApp, mode, &Mode::modeRun_off);
}

void Connection::wireShutdown() {
    connect(m_view, &QWView::s_killApp, this, &Connection::killApp);
    // A session that runs while the program is closed is stopped like any other: its take is saved.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &Connection::endSession);
}

void Connection::showStoredState() {
    QWGridTool* tool = m_view->gridTool();
    Singleton& shared = Singleton::instance();
    shared.midi()->setObject(learnedControl(shared.setting()->learnMidi()));
    if (shared.setting()->optionHamsterMode()) {
        tool->reverseToggle()->toggle_on();
    }
    applyTimecodeChoice(shared.setting()->timecode(), *shared.mode());
    m_view->showInput(ModelInput::TEXT_A);
    tool->mixToggle()->toggle_on();
    if (SoundServer::instance().lost()) { // before this window came
        m_view->painterDeckA()->serverLost();
        m_view->painterDeckB()->serverLost();
    }
}
