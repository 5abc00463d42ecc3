#include "midi.h"

void Midi::setObject(const ObjectMidi& object) {
    m_object = object;
    m_zone.store(object.crossFader(), std::memory_order_relaxed);
    Q_EMIT crossFaderChanged(m_object);
}
