#pragma once

#include "model/objectmidi.h"
#include "qmidiin.h"

#include <QObject>

/// Listens to the crossfader while a session runs: of all that comes from the MIDI input of the settings it
/// passes one controller of one channel, and of that only the changes of zone, to `Midi`. Where the input
/// isn't there it stays silent, and the fader at its last state. Lives on the MIDI thread; its slots are
/// called through the queue.
class WorkerMidiObject : public QObject {
    Q_OBJECT
public:
    explicit WorkerMidiObject(QObject* parent = nullptr);

    /// The port is open. On the MIDI thread.
    bool isOpen() const { return m_midiIn.connected(); }

public Q_SLOTS:
    /// Takes channel and controller from `Midi` and opens the port. From any state.
    void startRun();
    /// Closes the port. What is in the queue already still counts.
    void stopRun();
    /// One message of the port, packed as QMidiIn packs it.
    void message(uint message, uint timing);

Q_SIGNALS:
    void s_OutData(ObjectMidi midi);

private:
    void openPort();
    void closePort();

    QMidiIn m_midiIn; // a child: it moves to the thread with its worker
    ObjectMidi m_control;
    /// The last zone reported. It outlives a stop, as `Midi` does.
    ModelCrossFader::EnumCrossFader m_lastZone = ModelCrossFader::MIDDLE;
};
