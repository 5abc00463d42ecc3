#include "qmidiin.h"

#include "state/jackclients.h"
#include "state/libraryturn.h"
#include "state/quieterroroutput.h"

#include <QDateTime>

#include <RtMidi.h>

#include <algorithm>

namespace {

constexpr auto clientName = "RtMidi Input Client";
constexpr unsigned queueLimit = 100;
constexpr unsigned char systemExclusive = 0xF0;
constexpr std::size_t wordBytes = 4;

// The system's own interface first.
std::vector<RtMidi::Api> interfaces() {
    std::vector<RtMidi::Api> compiled;
    RtMidi::getCompiledApi(compiled);
    std::vector<RtMidi::Api> usable;
    for (const RtMidi::Api api :
         {RtMidi::WINDOWS_MM, RtMidi::MACOSX_CORE, RtMidi::LINUX_ALSA, RtMidi::UNIX_JACK}) {
        if (std::count(compiled.begin(), compiled.end(), api) != 0) {
            usable.push_back(api);
        }
    }
    return usable;
}

// With an error callback set, the library prints and throws nothing.
void ignoreError(RtMidiError::Type, const std::string&, void*) {}
void noteError(RtMidiError::Type, const std::string&, void* failed) {
    *static_cast<bool*>(failed) = true;
}

// Null if the interface can't be opened. The constructor prints by itself, and so do the libraries below.
std::unique_ptr<RtMidiIn> makeInput(RtMidi::Api api) {
    guardJackClients();
    try {
        auto input = std::make_unique<RtMidiIn>(api, clientName, queueLimit);
        input->setErrorCallback(ignoreError, nullptr);
        return input;
    } catch (const RtMidiError&) {
        return nullptr;
    }
}

} // namespace

QMidiIn::QMidiIn(QObject* parent) : QObject(parent) {}

QMidiIn::~QMidiIn() {
    close();
}

QStringList QMidiIn::devices() {
    const LibraryTurn turn;
    const QuietErrorOutput quiet;
    QStringList ports;
    for (const RtMidi::Api api : interfaces()) {
        const std::unique_ptr<RtMidiIn> input = makeInput(api);
        if (input == nullptr) {
            continue;
        }
        m_interface = api;
        const unsigned count = input->getPortCount();
        for (unsigned i = 0; i < count; ++i) {
            ports << QStringLiteral("%1:%2").arg(i).arg(QString::fromStdString(input->getPortName(i)));
        }
        if (!ports.isEmpty()) {
            break;
        }
    }
    return ports;
}

void QMidiIn::open(const QString& port) {
    close();
    bool isNumber = false;
    const unsigned number = port.toUInt(&isNumber);
    if (!isNumber) {
        return;
    }
    if (m_interface == RtMidi::UNSPECIFIED) {
        devices();
    }
    const LibraryTurn turn;
    const QuietErrorOutput quiet;
    std::unique_ptr<RtMidiIn> input = makeInput(static_cast<RtMidi::Api>(m_interface));
    if (input == nullptr || number >= input->getPortCount()) {
        return;
    }
    bool failed = false;
    input->setErrorCallback(noteError, &failed);
    input->setCallback(&QMidiIn::onMessage, this);
    input->ignoreTypes(false, true, true);
    try {
        input->openPort(number);
    } catch (const RtMidiError&) {
        failed = true;
    }
    input->setErrorCallback(ignoreError, nullptr);
    if (failed || !input->isPortOpen()) {
        return;
    }
    m_input = std::move(input);
    m_portName = port;
}

void QMidiIn::close() {
    if (m_input == nullptr) {
        return;
    }
    const LibraryTurn turn;
    const QuietErrorOutput quiet;
    // The library's thread reads the callback anew for each message. Cancelling it while the port still
    // brings messages would take it away between the test and the call; so the port goes first, and with the
    // input the thread. Where the thread is still in a cycle, the destructor waits for it.
    m_input->closePort();
    m_input.reset();
}

void QMidiIn::onMessage(double, std::vector<unsigned char>* bytes, void* self) {
    if (bytes == nullptr || bytes->empty()) {
        return;
    }
    auto* port = static_cast<QMidiIn*>(self);
    if (bytes->front() == systemExclusive) {
        Q_EMIT port->midiSysExEvent(
            QByteArray(reinterpret_cast<const char*>(bytes->data()), static_cast<qsizetype>(bytes->size())));
        return;
    }
    uint word = 0;
    for (std::size_t i = 0; i < std::min(bytes->size(), wordBytes); ++i) {
        word |= static_cast<uint>((*bytes)[i]) << (8 * i);
    }
    Q_EMIT port->midiEvent(word, static_cast<uint>(QDateTime::currentMSecsSinceEpoch()));
}
