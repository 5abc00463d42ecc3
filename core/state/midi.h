#pragma once

#include "model/objectmidi.h"

#include <QObject>

#include <atomic>
#include <mutex>

/// The crossfader's last reading. The decoders take the zone from it at every point that they publish.
class Midi : public QObject {
    Q_OBJECT
public:
    explicit Midi(QObject* parent = nullptr) : QObject(parent) {}

    /// A copy of the whole record. Thread-safe: yes. Realtime-safe: no, a callback asks for crossFader().
    ObjectMidi object() const;
    /// Where the fader stands. Thread-safe: yes. Realtime-safe: yes.
    ModelCrossFader::EnumCrossFader crossFader() const { return m_zone.load(std::memory_order_relaxed); }

    /// Takes a new reading and announces it from the caller's thread: the MIDI thread while a session runs,
    /// the GUI thread when a control is chosen. Thread-safe: yes. Realtime-safe: no.
    void setObject(const ObjectMidi& object);

Q_SIGNALS:
    void crossFaderChanged(ObjectMidi midi);

private:
    mutable std::mutex m_lock; // of the record; never taken on a callback
    ObjectMidi m_object;
    // The zone as one word: a callback never sees half of a reading.
    std::atomic<ModelCrossFader::EnumCrossFader> m_zone{ModelCrossFader::MIDDLE};
    static_assert(std::atomic<ModelCrossFader::EnumCrossFader>::is_always_lock_free);
};
