#pragma once

#include "model/objectmidi.h"

#include <QObject>

#include <atomic>

/// The crossfader's last reading. The decoders take the zone from it at every point that they publish.
class Midi : public QObject {
    Q_OBJECT
public:
    explicit Midi(QObject* parent = nullptr) : QObject(parent) {}

    /// The whole record. On the thread that calls setObject.
    const ObjectMidi& object() const { return m_object; }
    /// Where the fader stands. Thread-safe: yes. Realtime-safe: yes.
    ModelCrossFader::EnumCrossFader crossFader() const { return m_zone.load(std::memory_order_relaxed); }

    /// Takes a new reading and announces it.
    void setObject(const ObjectMidi& object);

Q_SIGNALS:
    void crossFaderChanged(ObjectMidi midi);

private:
    ObjectMidi m_object;
    // The zone as one word: a callback never sees half of a reading.
    std::atomic<ModelCrossFader::EnumCrossFader> m_zone{ModelCrossFader::MIDDLE};
    static_assert(std::atomic<ModelCrossFader::EnumCrossFader>::is_always_lock_free);
};
