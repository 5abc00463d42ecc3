#include "mode.h"

#include "setting.h"
#include "singleton.h"

Mode::Mode(QObject* parent) : QObject(parent) {}

void Mode::setDisplayMode(ModelDisplay::EnumDisplay value) {
    m_displayMode = value;
    Q_EMIT s_ModeDisplayChanged();
}

void Mode::modeMenuRefresh(QUuid id, QString tabName) {
    Q_EMIT s_RefreshMenu(id, tabName);
}

void Mode::modeAutoresize_on() {
    m_modeAutoresize.store(true, std::memory_order_relaxed);
}

void Mode::modeAutoresize_off() {
    m_modeAutoresize.store(false, std::memory_order_relaxed);
}

void Mode::modeCurrentTimerAutoresize_on() {
    m_modeCurrentTimerAutoresize.store(true, std::memory_order_relaxed);
}

void Mode::modeCurrentTimerAutoresize_off() {
    m_modeCurrentTimerAutoresize.store(false, std::memory_order_relaxed);
}

void Mode::modeColor_on() {
    m_modeColor.store(true, std::memory_order_relaxed);
    Q_EMIT s_ModeColor_On();
}

void Mode::modeColor_off() {
    m_modeColor.store(false, std::memory_order_relaxed);
    Q_EMIT s_ModeColor_Off();
}

void Mode::modeMenu_on() {
    m_modeMenu.store(true, std::memory_order_relaxed);
}

void Mode::modeMenu_off() {
    m_modeMenu.store(false, std::memory_order_relaxed);
}

void Mode::modeMix_on() {
    m_modeMix.store(true, std::memory_order_relaxed);
}

void Mode::modeMix_off() {
    m_modeMix.store(false, std::memory_order_relaxed);
}

void Mode::modeMetronom_on() {
    m_modeMetronom.store(true, std::memory_order_relaxed);
}

void Mode::modeMetronom_off() {
    m_modeMetronom.store(false, std::memory_order_relaxed);
}

void Mode::modeGenerateSound_on() {
    m_modeGenerateSound.store(true, std::memory_order_relaxed);
    Q_EMIT s_ModeGenerateSound(true);
}

void Mode::modeGenerateSound_off() {
    m_modeGenerateSound.store(false, std::memory_order_relaxed);
    Q_EMIT s_ModeGenerateSound(false);
}

void Mode::modeRecorder_on() {
    m_modeRecorder.store(true, std::memory_order_relaxed);
    Q_EMIT s_RecorderModeStatus(true);
}

void Mode::modeRecorder_off() {
    m_modeRecorder.store(false, std::memory_order_relaxed);
    Q_EMIT s_RecorderModeStatus(false);
}

void Mode::modeReverse_on() {
    m_modeReverse.store(true, std::memory_order_relaxed);
    Singleton::instance().setting()->setOptionHamsterMode(true);
}

void Mode::modeReverse_off() {
    m_modeReverse.store(false, std::memory_order_relaxed);
    Singleton::instance().setting()->setOptionHamsterMode(false);
}

void Mode::modeHold_on() {
    m_modeHold.store(true, std::memory_order_relaxed);
}

void Mode::modeHold_off() {
    m_modeHold.store(false, std::memory_order_relaxed);
}

void Mode::modeRun_on() {
    m_modeRun.store(true, std::memory_order_relaxed);
}

void Mode::modeRun_off() {
    m_modeRun.store(false, std::memory_order_relaxed);
}

void Mode::modeFullDVS_on() {
    m_modeFullDVS.store(true, std::memory_order_relaxed);
}

void Mode::modeFullDVS_off() {
    m_modeFullDVS.store(false, std::memory_order_relaxed);
}

void Mode::modeSelectArea_on() {
    m_modeSelectArea.store(true, std::memory_order_relaxed);
}

void Mode::modeSelectArea_off() {
    m_modeSelectArea.store(false, std::memory_order_relaxed);
}

void Mode::modeTraining_on() {
    m_modeTraining.store(true, std::memory_order_relaxed);
    Q_EMIT s_RunApp();
}

void Mode::modeTraining_off() {
    m_modeTraining.store(false, std::memory_order_relaxed);
    Q_EMIT s_StopApp();
}

void Mode::modeTrainingLock_on() {
    m_modeTrainingLock.store(true, std::memory_order_relaxed);
}

void Mode::modeTrainingLock_off() {
    m_modeTrainingLock.store(false, std::memory_order_relaxed);
}

void Mode::modeMenuFocus_on() {
    m_modeMenuFocus.store(true, std::memory_order_relaxed);
}

void Mode::modeMenuFocus_off() {
    m_modeMenuFocus.store(false, std::memory_order_relaxed);
}

void Mode::modeGraphicScrollStop_on() {
    m_modeGraphicScrollStop.store(true, std::memory_order_relaxed);
}

void Mode::modeGraphicScrollStop_off() {
    m_modeGraphicScrollStop.store(false, std::memory_order_relaxed);
}

void Mode::modeStartSynchronized_on() {
    m_modeStartSynchronized.store(true, std::memory_order_relaxed);
}

void Mode::modeStartSynchronized_off() {
    m_modeStartSynchronized.store(false, std::memory_order_relaxed);
}
