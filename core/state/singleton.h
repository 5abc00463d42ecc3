#pragma once

#include "model/modelaudiodeviceinfo.h"
#include "model/modelgraph.h"

#include <QObject>
#include <QStringList>

class Autoresize;
class Midi;
class Mode;
class ObjectAudioDevice;
class PathFile;
class Performance;
class Phrasing;
class QSample;
class RecordingLooperTraining;
class Setting;
class SettingMixer;
class Time;
class Timecode;
class Vinyl;
class WavPhrasing;

/// The one process-wide object through which every class reaches the shared state. Made at the first use, on
/// the GUI thread. The pointers don't change after that, so any thread may follow them; what each object
/// allows from where stands in its own header.
class Singleton : public QObject {
    Q_OBJECT
public:
    static Singleton& instance();

    Mode* mode() const { return m_mode; }
    Performance* performance() const { return m_performance; }
    Setting* setting() const { return m_setting; }
    SettingMixer* settingMixer() const { return m_settingMixer; }
    Midi* midi() const { return m_midi; }
    Time* time() const { return m_time; }
    WavPhrasing* wavPhrasing() const { return m_wavPhrasing; }
    Timecode* timecode() const { return m_timecode; }
    Vinyl* vinyl() const { return m_vinyl; }
    PathFile* pathFile() const { return m_pathFile; }
    Autoresize* autoresize() const { return m_autoresize; }
    Phrasing* phrasing() const { return m_phrasing; }
    RecordingLooperTraining* recordingLooperTraining() const { return m_recordingLooperTraining; }

    /// The device strings that the machine offers now. Slow: it starts and stops PortAudio. GUI thread.
    QStringList audioDeviceList(ModelAudioDeviceInfo::EnumAudioDeviceInfo direction) const;

    /// A new sample for the stored device, or null where none is stored or the machine doesn't offer exactly
    /// that text now. An input's recording file name is fixed here and given to PathFile. GUI thread.
    QSample* sampleInputDeckA();
    QSample* sampleInputDeckB();
    QSample* sampleInputMaster();
    QSample* sampleOutputMaster();

public Q_SLOTS:
    /// The platter's present angle becomes the new zero; kept in the settings with a full DVS timecode.
    void calculVinylDeltaPositionA();
    void calculVinylDeltaPositionB();

private:
    Singleton();
    ~Singleton() override;

    bool offered(const ObjectAudioDevice& device, ModelAudioDeviceInfo::EnumAudioDeviceInfo direction) const;
    QSample* sampleInput(const ObjectAudioDevice& device, ModelGraph::EnumGraph name, double sampleRate);
    /// Moves the deck's zero mark and returns it.
    double moveZero(ModelGraph::EnumGraph name);

    Mode* m_mode;
    Performance* m_performance;
    Setting* m_setting;
    SettingMixer* m_settingMixer;
    Midi* m_midi;
    Time* m_time;
    WavPhrasing* m_wavPhrasing;
    Timecode* m_timecode;
    Vinyl* m_vinyl;
    PathFile* m_pathFile;
    Autoresize* m_autoresize;
    Phrasing* m_phrasing;
    RecordingLooperTraining* m_recordingLooperTraining;
};
