#include "singleton.h"

#include "curve/autoresize.h"
#include "devicecatalogue.h"
#include "midi.h"
#include "mode.h"
#include "model/objectaudiodevice.h"
#include "model/qsample.h"
#include "pathfile.h"
#include "performance.h"
#include "phrasing/phrasing.h"
#include "phrasing/wavphrasing.h"
#include "recordingloopertraining.h"
#include "setting.h"
#include "settingmixer.h"
#include "time.h"
#include "timecode.h"
#include "vinyl.h"

#include <cmath>

Singleton& Singleton::instance() {
    static Singleton singleton;
    return singleton;
}

Singleton::Singleton()
    : m_mode(new Mode)
    , m_performance(new Performance)
    , m_setting(new Setting(this))
    , m_settingMixer(new SettingMixer)
    , m_midi(new Midi)
    , m_time(new Time)
    , m_wavPhrasing(new WavPhrasing)
    , m_timecode(new Timecode)
    , m_vinyl(new Vinyl)
    , m_pathFile(new PathFile)
    , m_autoresize(new Autoresize)
    , m_phrasing(new Phrasing)
    , m_recordingLooperTraining(new RecordingLooperTraining) {}

Singleton::~Singleton() {
    delete m_mode;
    delete m_performance;
    delete m_setting;
    delete m_settingMixer;
    delete m_midi;
    delete m_time;
    delete m_wavPhrasing;
    delete m_timecode;
    delete m_vinyl;
    delete m_pathFile;
    delete m_autoresize;
    delete m_phrasing;
    delete m_recordingLooperTraining;
}

QStringList Singleton::audioDeviceList(ModelAudioDeviceInfo::EnumAudioDeviceInfo direction) const {
    return deviceStrings(presentDevices(), direction, *m_settingMixer);
}

bool Singleton::offered(const ObjectAudioDevice& device,
                        ModelAudioDeviceInfo::EnumAudioDeviceInfo direction) const {
    // A heading of the catalogue has no index.
    return device.index() >= 0 && audioDeviceList(direction).contains(device.text());
}

QSample* Singleton::sampleInput(const ObjectAudioDevice& device, ModelGraph::EnumGraph name,
                                double sampleRate) {
    if (!offered(device, ModelAudioDeviceInfo::AUDIO_INPUT)) {
        return nullptr;
    }
    return lastingSample(QSample(name, device.index(), device.name(), sampleRate, device.channelCount(),
                                 device.channelFirst()));
}

QSample* Singleton::sampleInputDeckA() {
    const ObjectAudioDevice& device = *m_setting->inputDeckA();
    QSample* sample = sampleInput(device, ModelGraph::INPUT_DECKA, device.sampleRate());
    if (sample != nullptr) {
        m_pathFile->setFileDeckA(sample->fileName());
    }
    return sample;
}

QSample* Singleton::sampleInputDeckB() {
    const ObjectAudioDevice& device = *m_setting->inputDeckB();
    QSample* sample = sampleInput(device, ModelGraph::INPUT_DECKB, std::trunc(device.sampleRate()));
    if (sample != nullptr) {
        m_pathFile->setFileDeckB(sample->fileName());
    }
    return sample;
}

QSample* Singleton::sampleInputMaster() {
    const ObjectAudioDevice& device = *m_setting->inputMaster();
    QSample* sample = sampleInput(device, ModelGraph::INPUT_MASTER, std::trunc(device.sampleRate()));
    if (sample != nullptr) {
        m_pathFile->setFileMaster(sample->fileName());
    }
    return sample;
}

QSample* Singleton::sampleOutputMaster() {
    const ObjectAudioDevice& device = *m_setting->outputMaster();
    if (!offered(device, ModelAudioDeviceInfo::AUDIO_OUTPUT)) {
        return nullptr;
    }
    return lastingSample(QSample(ModelGraph::OUTPUT_MASTER, device.index(), device.name(),
                                 std::trunc(device.sampleRate()), device.channelCount(),
                                 device.channelFirst(), m_setting->outputDeckA()->channelFirst(),
                                 m_setting->outputDeckB()->channelFirst()));
}

double Singleton::moveZero(ModelGraph::EnumGraph name) {
    double zero = std::fmod(m_vinyl->angle(name) + m_vinyl->deltaPosition(name), 360.0);
    if (zero < 0.0) {
        zero += 360.0;
    }
    m_vinyl->setDeltaPosition(name, zero);
    return zero;
}

void Singleton::calculVinylDeltaPositionA() {
    const double zero = moveZero(ModelGraph::INPUT_DECKA);
    if (m_mode->modeFullDVS()) {
        m_setting->setVinylDeltaPositionA(zero);
    }
}

void Singleton::calculVinylDeltaPositionB() {
    const double zero = moveZero(ModelGraph::INPUT_DECKB);
    if (m_mode->modeFullDVS()) {
        m_setting->setVinylDeltaPositionB(zero);
    }
}
