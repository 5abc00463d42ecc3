#pragma once

#include <QString>

/// The parse of one device string. A text that isn't one leaves everything at its start value.
class ObjectAudioDevice {
public:
    explicit ObjectAudioDevice(const QString& text);

    const QString& text() const { return m_text; } ///< as given
    int index() const { return m_index; }          ///< PortAudio's index, -1 until parsed
    const QString& name() const { return m_name; }
    double sampleRate() const { return m_sampleRate; } ///< Hz, through single precision
    int channelCount() const { return m_channelCount; }
    int channelFirst() const { return m_channelFirst; } ///< the number behind "p"
    const QString& hostApi() const { return m_hostApi; }
    const QString& label() const { return m_label; }

    void setName(const QString& name) { m_name = name; }

private:
    QString m_text;
    int m_index = -1;
    QString m_name;
    double m_sampleRate = 0.0;
    int m_channelCount = -1;
    int m_channelFirst = -1;
    QString m_hostApi;
    QString m_label;
};
