#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class RtMidiIn;

/// One MIDI input port. The library offers the ports of one system interface at a time: of ALSA or, where
/// that can't be opened or has no port, of JACK. devices() chooses the interface and open() keeps to it, so
/// that a port's number means the same to both. A failure leaves the port closed; nothing is reported or
/// printed. All methods belong to the object's own thread. A server that doesn't answer may keep any of them,
/// and the destructor, for ever: no thread that must stay alive calls them while a session runs.
class QMidiIn : public QObject {
    Q_OBJECT
public:
    explicit QMidiIn(QObject* parent = nullptr);
    /// Closes the port.
    ~QMidiIn() override;

    /// "number:name" of every input port that there is now.
    QStringList devices();
    /// Opens the port of this number, a text as devices() has it before the colon. An open port is closed
    /// first.
    void open(const QString& port);
    void close();

    bool connected() const { return m_input != nullptr; }
    /// The text that the port was last opened with.
    const QString& portName() const { return m_portName; }

Q_SIGNALS:
    // Both come from the library's own thread, which may be the sound server's: connect them queued.

    /// A short message: up to four bytes, the first one lowest. `timing` is the low 32 bits of the
    /// milliseconds since 1970.
    void midiEvent(uint message, uint timing);
    /// A system-exclusive message, whole.
    void midiSysExEvent(QByteArray data);

private:
    static void onMessage(double timeStamp, std::vector<unsigned char>* bytes, void* self);

    std::unique_ptr<RtMidiIn> m_input; ///< while open
    QString m_portName;
    int m_interface = 0; ///< RtMidi::Api; 0 until devices() has found one
};
