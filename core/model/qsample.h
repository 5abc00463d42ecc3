#pragma once

#include "constants.h"
#include "modelgraph.h"

#include <QString>

/// One audio endpoint: a device, the place of its channels, and what follows from its rate. A plain record,
/// passed by pointer. An empty device name means that there is no device, everywhere.
class QSample {
public:
    /// No device: index -1, 48000 Hz, two channels.
    explicit QSample(ModelGraph::EnumGraph name);
    /// An input. `channelFirst` is a pair index: the left sample of a frame lies at twice this number.
    QSample(ModelGraph::EnumGraph name, int deviceIndex, const QString& deviceName, double sampleRate,
            int channelCount, int channelFirst);
    /// An output. The channel fields are channel numbers, -1 where none was chosen.
    QSample(ModelGraph::EnumGraph name, int deviceIndex, const QString& deviceName, double sampleRate,
            int channelCount, int channelFirst, int channelDeckA, int channelDeckB);

    ModelGraph::EnumGraph name() const { return m_name; }
    int deviceIndex() const { return m_deviceIndex; } ///< PortAudio's index, -1 for none
    const QString& deviceName() const { return m_deviceName; }
    double sampleRate() const { return m_sampleRate; }  ///< Hz
    int channelCount() const { return m_channelCount; } ///< channels of the stream
    int channelFirst() const { return m_channelFirst; } ///< the number behind "p"
    int channelDeckA() const { return m_channelDeckA; }
    int channelDeckB() const { return m_channelDeckB; }
    double samplesPerMinute() const { return m_samplesPerMinute; }
    double samplesPerMs() const { return m_samplesPerMs; }
    double degreesPerSample() const { return m_degreesPerSample; } ///< at 33 1/3 rpm
    bool isOutput() const { return m_isOutput; }

    /// Name of the recording file. Made at the first request, with the time of that request, and kept; an
    /// output has none. GUI thread.
    const QString& fileName();
    /// Forgets the name, so that the next take gets one of its own.
    void renewFileName() { m_fileName.clear(); }

private:
    ModelGraph::EnumGraph m_name;
    int m_deviceIndex = -1;
    QString m_deviceName;
    QString m_fileName;
    double m_sampleRate = Constant::Audio::defaultSampleRate;
    int m_channelCount = Constant::Audio::defaultChannels;
    int m_channelFirst = 0;
    int m_channelDeckA = 0;
    int m_channelDeckB = 0;
    double m_samplesPerMinute;
    double m_samplesPerMs;
    double m_degreesPerSample;
    bool m_isOutput = false;
};

/// A copy of `sample` that stays for the life of the process: a worker may hold its address for as long. GUI
/// thread.
QSample* lastingSample(const QSample& sample);
