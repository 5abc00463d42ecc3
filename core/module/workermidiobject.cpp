#include "workermidiobject.h"

#include "model/constants.h"
#include "state/midi.h"
#include "state/setting.h"
#include "state/singleton.h"

namespace {

constexpr uint kindMask = 0xF0; // of the first byte, which holds kind and channel
constexpr uint channelMask = 0x0F;
constexpr uint controlChange = 0xB0;

constexpr int byteOf(uint message, int number) {
    return static_cast<int>((message >> (8 * number)) & 0xFF);
}

} // namespace

WorkerMidiObject::WorkerMidiObject(QObject* parent) : QObject(parent), m_midiIn(this) {}

void WorkerMidiObject::startRun() {
    closePort();
    m_control = Singleton::instance().midi()->object();
    m_control.setName(Constant::crossFaderName);
    openPort();
}

void WorkerMidiObject::stopRun() {
    closePort();
}

void WorkerMidiObject::openPort() {
    const QString wanted = Singleton::instance().setting()->inputMidiName();
    if (wanted.isEmpty() || !m_midiIn.devices().contains(wanted)) {
        return;
    }
    m_midiIn.open(wanted.section(u':', 0, 0));
    if (m_midiIn.connected()) {
        // Queued, since the library's thread emits it.
        connect(&m_midiIn, &QMidiIn::midiEvent, this, &WorkerMidiObject::message);
    }
}

void WorkerMidiObject::closePort() {
    if (m_midiIn.connected()) {
        disconnect(&m_midiIn, nullptr, this, nullptr);
        m_midiIn.close();
    }
}

void WorkerMidiObject::message(uint message, uint) {
    if ((message & kindMask) != controlChange || byteOf(message, 1) != m_control.controller() ||
        static_cast<int>(message & channelMask) != m_control.channel()) {
        return;
    }
    ObjectMidi reading(m_control.channel(), m_control.controller(), m_control.kind());
    reading.setName(m_control.name());
    reading.setValue(byteOf(message, 2));
    const Setting& setting = *Singleton::instance().setting();
    reading.setCrossFaderLeft(setting.crossFaderLeft()); // a change counts from the next message on
    reading.setCrossFaderRight(setting.crossFaderRight());
    const ModelCrossFader::EnumCrossFader zone = reading.crossFader();
    // A movement inside one zone doesn't travel: what `Midi` holds is no fader level.
    if (zone != m_lastZone) {
        Singleton::instance().midi()->setObject(reading);
        m_lastZone = zone;
    }
}
