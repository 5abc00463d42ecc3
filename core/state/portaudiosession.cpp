#include "portaudiosession.h"

#include "jackclients.h"
#include "quieterroroutput.h"

#include <portaudio.h>

#include <atomic>

namespace {

std::atomic<int> blocks{0};

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

void PortAudioSession::block() {
    blocks.fetch_add(1);
}
void PortAudioSession::unblock() {
    blocks.fetch_sub(1);
}
bool PortAudioSession::blocked() {
    return blocks.load() > 0;
}
