#include "portaudiosession.h"

#include "jackclients.h"
#include "quieterroroutput.h"

#include <portaudio.h>

#include <atomic>

namespace {

std::atomic<bool> libraryBlocked{false};

} // namespace

PortAudioSession::PortAudioSession() {
    guardJackClients();
    if (!blocked()) {
        const QuietErrorOutput quiet;
        m_ok = Pa_Initialize() == paNoError;
    }
}

PortAudioSession::~PortAudioSession() {
    if (m_ok && !blocked()) {
        const QuietErrorOutput quiet;
        Pa_Terminate();
    }
}

void PortAudioSession::setBlocked(bool blocked) {
    libraryBlocked.store(blocked, std::memory_order_release);
}
bool PortAudioSession::blocked() {
    return libraryBlocked.load(std::memory_order_acquire);
}
