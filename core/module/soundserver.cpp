#include "soundserver.h"

#include "state/portaudiosession.h"
#include "state/quieterroroutput.h"

#include <portaudio.h>

#include <atomic>

namespace {

std::atomic<bool> gone{false};

int ignore(const void*, void*, unsigned long, const PaStreamCallbackTimeInfo*, PaStreamCallbackFlags, void*) {
    return paContinue;
}

} // namespace

SoundServer& SoundServer::instance() {
    static auto& server = *new SoundServer; // the library's thread may outlive everything else
    return server;
}

bool SoundServer::carries(int device) {
    const PaDeviceInfo* info = Pa_GetDeviceInfo(device);
    const PaHostApiInfo* hostApi = info != nullptr ? Pa_GetHostApiInfo(info->hostApi) : nullptr;
    return hostApi != nullptr && hostApi->type == paJACK;
}

bool SoundServer::answers() {
    const PaHostApiIndex index = Pa_HostApiTypeIdToHostApiIndex(paJACK);
    const PaHostApiInfo* hostApi = index >= 0 ? Pa_GetHostApiInfo(index) : nullptr;
    if (hostApi == nullptr) {
        return true;
    }
    // Either direction may be another program's, and that program may have quit: a server that opens one of
    // them lives.
    bool asked = false;
    for (const bool input : {true, false}) {
        PaStreamParameters parameters{};
        parameters.device = input ? hostApi->defaultInputDevice : hostApi->defaultOutputDevice;
        parameters.channelCount = 1;
        parameters.sampleFormat = paInt16;
        const PaDeviceInfo* device = Pa_GetDeviceInfo(parameters.device);
        if (device == nullptr) {
            continue;
        }
        asked = true;
        const QuietErrorOutput quiet;
        PaStream* stream = nullptr;
        if (Pa_OpenStream(&stream, input ? &parameters : nullptr, input ? nullptr : &parameters,
                          device->defaultSampleRate, paFramesPerBufferUnspecified, paNoFlag, &ignore,
                          nullptr) == paNoError) {
            return Pa_CloseStream(stream) == paNoError;
        }
    }
    return !asked; // nothing to ask
}

void SoundServer::lose() {
    if (!gone.exchange(true)) {
        PortAudioSession::block();
        Q_EMIT s_Lost();
    }
}

bool SoundServer::lost() const {
    return gone.load();
}
