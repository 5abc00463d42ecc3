#pragma once

#include "model/modeldisplay.h"
#include "model/modelinput.h"

#include <QObject>
#include <QString>
#include <QUuid>

#include <atomic>

/// The run-time state of the program as a row of flags, two small values and eight signals. A toggle's two
/// signals connect straight to a flag's two slots; readers look at the point of use and cache nothing.
/// Slots and setters: GUI thread. Flag getters: Thread-safe: yes. Realtime-safe: yes; a reader on a callback
/// may see a value one tick old.
class Mode : public QObject {
    Q_OBJECT
public:
    explicit Mode(QObject* parent = nullptr);

    /// The colour page is open.
    bool modeColor() const { return m_modeColor.load(std::memory_order_relaxed); }
    /// A menu page is open.
    bool modeMenu() const { return m_modeMenu.load(std::memory_order_relaxed); }
    /// The graph follows the time cursor; on while a session runs.
    bool modeCurrentTimerAutoresize() const {
        return m_modeCurrentTimerAutoresize.load(std::memory_order_relaxed);
    }
    /// The graph fits all data.
    bool modeAutoresize() const { return m_modeAutoresize.load(std::memory_order_relaxed); }
    /// An area of the graph is being selected.
    bool modeSelectArea() const { return m_modeSelectArea.load(std::memory_order_relaxed); }
    /// The crossfader's direction is reversed.
    bool modeReverse() const { return m_modeReverse.load(std::memory_order_relaxed); }
    /// The graph stops scrolling while the vinyl stands still.
    bool modeHold() const { return m_modeHold.load(std::memory_order_relaxed); }
    /// The session is recorded to files.
    bool modeRecorder() const { return m_modeRecorder.load(std::memory_order_relaxed); }
    /// The session runs; true from the end of the count-in.
    bool modeRun() const { return m_modeRun.load(std::memory_order_relaxed); }
    /// The timecode keeps the vinyl's zero angle.
    bool modeFullDVS() const { return m_modeFullDVS.load(std::memory_order_relaxed); }
    /// A session is on, count-in included.
    bool modeTraining() const { return m_modeTraining.load(std::memory_order_relaxed); }
    /// A session is being armed; presses of the play button are kept out.
    bool modeTrainingLock() const { return m_modeTrainingLock.load(std::memory_order_relaxed); }
    /// The crossfader's position decides per deck; off, only its middle lets a deck sound.
    bool modeMix() const { return m_modeMix.load(std::memory_order_relaxed); }
    /// The metronome sounds.
    bool modeMetronom() const { return m_modeMetronom.load(std::memory_order_relaxed); }
    /// The output stream generates the deck sound.
    bool modeGenerateSound() const { return m_modeGenerateSound.load(std::memory_order_relaxed); }
    /// A menu widget has the keyboard focus.
    bool modeMenuFocus() const { return m_modeMenuFocus.load(std::memory_order_relaxed); }
    /// The graph doesn't scroll.
    bool modeGraphicScrollStop() const { return m_modeGraphicScrollStop.load(std::memory_order_relaxed); }
    /// The gate of the input callbacks: false, they drop all input.
    bool modeStartSynchronized() const { return m_modeStartSynchronized.load(std::memory_order_relaxed); }

    ModelDisplay::EnumDisplay displayMode() const { return m_displayMode; }
    ModelInput::EnumInput inputMode() const { return m_inputMode; }
    /// Beats that the graph shows; 0 shows none.
    double graphBeats() const { return m_graphBeats; }

    void setDisplayMode(ModelDisplay::EnumDisplay value);
    void setInputMode(ModelInput::EnumInput value) { m_inputMode = value; }
    void setGraphBeats(double value) { m_graphBeats = value; }

Q_SIGNALS:
    void s_RunApp();
    void s_StopApp();
    void s_RefreshMenu(QUuid id, QString tabName);
    void s_RecorderModeStatus(bool on);
    void s_ModeColor_On();
    void s_ModeColor_Off();
    void s_ModeGenerateSound(bool on);
    void s_ModeDisplayChanged();

public Q_SLOTS:
    void modeAutoresize_off();
    void modeAutoresize_on();
    void modeCurrentTimerAutoresize_off();
    void modeCurrentTimerAutoresize_on();
    void modeColor_off();
    void modeColor_on();
    void modeMenuRefresh(QUuid id, QString tabName);
    void modeMenu_off();
    void modeMenu_on();
    void modeMix_off();
    void modeMix_on();
    void modeMetronom_off();
    void modeMetronom_on();
    void modeGenerateSound_off();
    void modeGenerateSound_on();
    void modeRecorder_off();
    void modeRecorder_on();
    void modeReverse_off();
    void modeReverse_on();
    void modeHold_off();
    void modeHold_on();
    void modeRun_off();
    void modeRun_on();
    void modeFullDVS_off();
    void modeFullDVS_on();
    void modeSelectArea_off();
    void modeSelectArea_on();
    void modeTraining_off();
    void modeTraining_on();
    void modeTrainingLock_off();
    void modeTrainingLock_on();
    void modeMenuFocus_off();
    void modeMenuFocus_on();
    void modeGraphicScrollStop_off();
    void modeGraphicScrollStop_on();
    void modeStartSynchronized_off();
    void modeStartSynchronized_on();

private:
    using Flag = std::atomic<bool>;
    static_assert(Flag::is_always_lock_free);

    Flag m_modeColor{false};
    Flag m_modeMenu{false};
    Flag m_modeCurrentTimerAutoresize{false};
    Flag m_modeAutoresize{false};
    Flag m_modeSelectArea{false};
    Flag m_modeReverse{false};
    Flag m_modeHold{false};
    Flag m_modeRecorder{false};
    Flag m_modeRun{false};
    Flag m_modeFullDVS{false};
    Flag m_modeTraining{false};
    Flag m_modeTrainingLock{false};
    Flag m_modeMix{false};
    Flag m_modeMetronom{false};
    Flag m_modeGenerateSound{false};
    Flag m_modeMenuFocus{false};
    Flag m_modeGraphicScrollStop{false};
    Flag m_modeStartSynchronized{false};
    ModelDisplay::EnumDisplay m_displayMode = ModelDisplay::NORMAL;
    ModelInput::EnumInput m_inputMode = ModelInput::UNDEFINED;
    double m_graphBeats = 0.0;
};
