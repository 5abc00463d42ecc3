#include "midi.h"

ObjectMidi Midi::object() const {
    const std::scoped_lock lock(m_lock);
    return m_object;
}

void Midi::setObject(const ObjectMidi& object) {
    {
        const std::scoped_lock lock(m_lock);
        m_object = object;
        m_zone.store(object.crossFader(), std::memory_order_relaxed);
    }
    Q_EMIT crossFaderChanged(object);
}
