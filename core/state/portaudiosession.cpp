#include "portaudiosession.h"

#include "jackclients.h"
#include "libraryturn.h"
#include "quieterroroutput.h"

#include <portaudio.h>

#include <atomic>

namespace {

std::atomic<int> blocks{0};
constexpr std::chrono::milliseconds patience{
    3000}; // what another library's call may keep the GUI thread waiting

} // namespace

PortAudioSession::PortAudioSession() {
    guardJackClients();
    if (blocked()) {
        return;
    }
    const LibraryTurn turn(patience);
    if (turn.taken() && !blocked()) {
        const QuietErrorOutput quiet;
        m_ok = Pa_Initialize() == paNoError;
    }
}

PortAudioSession::~PortAudioSession() {
    if (!m_ok || blocked()) {
        return;
    }
    const LibraryTurn turn(patience);
    if (turn.taken() && !blocked()) {
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
