#include "objectmidi.h"

#include <QTime>

ObjectMidi::ObjectMidi(int channel, int controller, int kind)
    : m_channel(channel), m_controller(controller), m_kind(kind) {
    const QTime now = QTime::currentTime();
    m_time = now.isValid() ? now.msecsSinceStartOfDay() : 0;
}

ModelCrossFader::EnumCrossFader ObjectMidi::crossFader() const {
    if (m_value >= m_crossFaderRight) {
        return ModelCrossFader::RIGHT;
    }
    return m_value > m_crossFaderLeft ? ModelCrossFader::MIDDLE : ModelCrossFader::LEFT;
}
