#pragma once

#include "model/objectaudiodevice.h"
#include "model/objectmididevice.h"

#include <QObject>
#include <QSettings>
#include <QString>
#include <QTranslator>

#include <memory>

/// "config.ini": every choice of the user, written at once. A first start leaves a complete file; a key that
/// is missing from an old file is filled in. A value that can't be used counts as the default: an unknown
/// timecode, language or size of a buffer, a number that is none or lies where nothing could be made of it.
/// A device line that was pasted into the file without quotes is put into quotes, with all its blanks.
/// GUI thread, but inputMidiName, crossFaderLeft and crossFaderRight may be read from the MIDI thread.
class Setting : public QObject {
    Q_OBJECT
public:
    explicit Setting(QObject* parent = nullptr);
    /// For another file than the data folder's.
    Setting(const QString& fileName, QObject* parent);

    /// Writes to the file now what would be written at the process's end.
    void save() { m_settings.sync(); }

    // Devices. Each call parses the text anew; the pointer is good until the next call of the same getter.
    ObjectAudioDevice* inputDeckA();
    ObjectAudioDevice* inputDeckB();
    ObjectAudioDevice* inputMaster();
    ObjectAudioDevice* outputMaster();
    ObjectAudioDevice* outputDeckA();
    ObjectAudioDevice* outputDeckB();
    ObjectMidiDevice* inputMidi();
    /// The name that inputMidi() gives, without its cache.
    QString inputMidiName() const;
    void setInputDeckA(const QString& text);
    void setInputDeckB(const QString& text);
    void setInputMaster(const QString& text);
    void setOutputMaster(const QString& text);
    void setOutputDeckA(const QString& text);
    void setOutputDeckB(const QString& text);
    void setInputMidi(const QString& text);

    QString learnMidi() const; ///< "channel/controller"
    void setLearnMidi(int channel, int controller);
    int crossFaderLeft() const;
    void setCrossFaderLeft(int value);
    int crossFaderRight() const;
    void setCrossFaderRight(int value);
    QString name() const;
    void setName(const QString& name);
    QString timecode() const; ///< key of ModelTimecode::EnumTimecode
    void setTimecode(const QString& name);

    double vinylDeltaPositionA() const; ///< degrees
    void setVinylDeltaPositionA(double degrees);
    double vinylDeltaPositionB() const;
    void setVinylDeltaPositionB(double degrees);

    // Volumes, 0 to 100.
    double volumeLooper() const;
    void setVolumeLooper(double value);
    double volumeDeck() const;
    void setVolumeDeck(double value);
    double volumeRecord() const;
    void setVolumeRecord(double value);
    double volumeMetronum() const;
    void setVolumeMetronum(double value);

    // Numbers that combo boxes keep as text.
    QString inputBufferA() const; ///< frames a buffer
    void setInputBufferA(const QString& text);
    QString inputBufferB() const;
    void setInputBufferB(const QString& text);
    QString outputBuffer() const;
    void setOutputBuffer(const QString& text);
    QString displayFrequency() const; ///< repaints a second
    void setDisplayFrequency(const QString& text);

    bool optionGenerateCutOffSound() const;
    void setOptionGenerateCutOffSound(bool on);
    bool optionHamsterMode() const;
    void setOptionHamsterMode(bool on);
    bool latency() const;
    void setLatency(bool on);

    int curveOnSize() const; ///< width of a curve that sounds, pixels
    void setCurveOnSize(int width);
    bool graphGrid() const;
    void setGraphGrid(bool on);
    bool graphCurveCrossFaderOff() const;
    void setGraphCurveCrossFaderOff(bool on);
    bool graphCurveCrossFaderOffInvertColor() const;
    void setGraphCurveCrossFaderOffInvertColor(bool on);
    bool graphCurveNoSound() const;
    void setGraphCurveNoSound(bool on);
    int graphShiniMode() const; ///< ModelShini::EnumShini
    void setGraphShiniMode(int mode);
    bool graphVinylPosition() const;
    void setGraphVinylPosition(bool on);
    bool graphVinylColorRotation() const;
    void setGraphVinylColorRotation(bool on);
    bool graphDirectSound() const;
    void setGraphDirectSound(bool on);
    bool graphLogo() const;
    void setGraphLogo(bool on);

    QString language() const;
    void setLanguage(const QString& name);
    QString style() const;
    /// Stores the style's name and announces it.
    void setStyle(const QString& name);

    /// Replaces the translator by that of `name`, e.g. "fr_FR". Without such a file the interface falls back
    /// to the source language.
    void applyLanguage(const QString& name);

    /// Counts the writes: who draws may keep what it has read for as long as this stands still.
    unsigned generation() const { return m_generation; }

Q_SIGNALS:
    void s_updateStyle(QString name);

private:
    QString text(QLatin1StringView key) const;
    bool flag(QLatin1StringView key) const;
    // The default stands in for what is no number, lies outside the two bounds or isn't among the choices.
    int integer(QLatin1StringView key, int lowest, int highest) const;
    double number(QLatin1StringView key, double lowest, double highest) const;
    QString choice(QLatin1StringView key, const QStringList& choices) const;
    void write(QLatin1StringView key, const QVariant& value);

    std::unique_ptr<ObjectAudioDevice> m_inputDeckA;
    std::unique_ptr<ObjectAudioDevice> m_inputDeckB;
    std::unique_ptr<ObjectAudioDevice> m_inputMaster;
    std::unique_ptr<ObjectAudioDevice> m_outputMaster;
    std::unique_ptr<ObjectAudioDevice> m_outputDeckA;
    std::unique_ptr<ObjectAudioDevice> m_outputDeckB;
    std::unique_ptr<ObjectMidiDevice> m_inputMidi;
    QSettings m_settings;
    QTranslator m_translator;
    unsigned m_generation = 0;
};
