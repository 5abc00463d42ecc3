#include "fakeportaudio.h"

#include <chrono>
#include <cstdio>
#include <thread>

namespace {

// Counts a call for as long as it is under way.
class Call {
public:
    Call() {
        if (++FakePortAudio::instance().inside > 1) {
            ++FakePortAudio::instance().crowded;
        }
    }
    ~Call() { --FakePortAudio::instance().inside; }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
};

void countIfDeadly(bool onServer = true) {
    FakePortAudio& fake = FakePortAudio::instance();
    if (onServer && fake.serverGone()) {
        ++fake.deadly;
    }
}

} // namespace

bool FakePortAudio::serverAnswers() const {
    while (hostApi == paJACK && server == StandsStill) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return !serverGone();
}

extern "C" {

PaError Pa_Initialize() {
    FakePortAudio& fake = FakePortAudio::instance();
    ++fake.initialiseCalls;
    if (!fake.startable) {
        return paUnanticipatedHostError;
    }
    ++fake.initialised;
    return paNoError;
}

PaError Pa_Terminate() {
    countIfDeadly();
    --FakePortAudio::instance().initialised;
    return paNoError;
}

PaDeviceIndex Pa_GetDeviceCount() {
    const FakePortAudio& fake = FakePortAudio::instance();
    return fake.initialised > 0 ? static_cast<PaDeviceIndex>(fake.devices.size())
                                : static_cast<PaDeviceIndex>(paNotInitialized);
}

PaHostApiIndex Pa_HostApiTypeIdToHostApiIndex(PaHostApiTypeId type) {
    return type == FakePortAudio::instance().hostApi ? 0 : static_cast<PaHostApiIndex>(paHostApiNotFound);
}

const PaHostApiInfo* Pa_GetHostApiInfo(PaHostApiIndex) {
    FakePortAudio& fake = FakePortAudio::instance();
    fake.hostApiInfo.type = fake.hostApi;
    fake.hostApiInfo.defaultInputDevice = fake.devices.empty() ? paNoDevice : 0;
    fake.hostApiInfo.defaultOutputDevice = paNoDevice;
    return &fake.hostApiInfo;
}

const PaDeviceInfo* Pa_GetDeviceInfo(PaDeviceIndex device) {
    FakePortAudio& fake = FakePortAudio::instance();
    if (device < 0 || static_cast<std::size_t>(device) >= fake.devices.size()) {
        return nullptr;
    }
    fake.infos.resize(fake.devices.size());
    const FakeDevice& wanted = fake.devices[static_cast<std::size_t>(device)];
    PaDeviceInfo& info = fake.infos[static_cast<std::size_t>(device)];
    info = PaDeviceInfo{};
    info.name = wanted.name.c_str();
    info.hostApi = wanted.hostApi;
    info.maxInputChannels = wanted.inputs;
    info.maxOutputChannels = wanted.outputs;
    info.defaultLowInputLatency = 0.0125;
    info.defaultSampleRate = wanted.rate;
    return &info;
}

PaError Pa_IsFormatSupported(const PaStreamParameters*, const PaStreamParameters*, double) {
    return paInvalidSampleRate; // whoever asks mustn't care
}

PaError Pa_OpenStream(PaStream** stream, const PaStreamParameters* input, const PaStreamParameters* output,
                      double rate, unsigned long frames, PaStreamFlags flags, PaStreamCallback* callback,
                      void* user) {
    FakePortAudio& fake = FakePortAudio::instance();
    const Call call;
    if (!fake.serverAnswers()) {
        return paInsufficientMemory;
    }
    if (!fake.openable) {
        std::fputs("Expression 'open' failed\n", stderr);
        return paDeviceUnavailable;
    }
    auto* opened = new FakeStream;
    opened->input = *input;
    opened->rate = rate;
    opened->frames = frames;
    opened->flags = flags;
    opened->callback = callback;
    opened->user = user;
    opened->hadOutput = output != nullptr;
    opened->onServer = fake.hostApi == paJACK;
    fake.streams.push_back(opened);
    *stream = opened;
    return paNoError;
}

PaError Pa_StartStream(PaStream* stream) {
    const Call call;
    if (!FakePortAudio::instance().serverAnswers()) {
        return paUnanticipatedHostError;
    }
    if (!FakePortAudio::instance().streamStartable) {
        std::fputs("Expression 'start' failed\n", stderr);
        return paUnanticipatedHostError;
    }
    static_cast<FakeStream*>(stream)->started = true;
    return paNoError;
}

PaError Pa_IsStreamActive(PaStream* stream) {
    FakePortAudio& fake = FakePortAudio::instance();
    const auto* asked = static_cast<FakeStream*>(stream);
    if (!asked->started || asked->stopped || (asked->onServer && fake.serverGone())) {
        return 0;
    }
    if (asked->onServer && fake.server == FakePortAudio::Runs) {
        asked->call(nullptr, 0);
    }
    return 1;
}

PaError Pa_StopStream(PaStream* stream) {
    const Call call;
    countIfDeadly(static_cast<FakeStream*>(stream)->onServer);
    while (FakePortAudio::instance().hang || static_cast<FakeStream*>(stream)->hang) {
        std::this_thread::yield();
    }
    if (!FakePortAudio::instance().streamStoppable) {
        return paUnanticipatedHostError;
    }
    static_cast<FakeStream*>(stream)->stopped = true;
    return paNoError;
}

PaError Pa_CloseStream(PaStream* stream) {
    const Call call;
    countIfDeadly(static_cast<FakeStream*>(stream)->onServer);
    static_cast<FakeStream*>(stream)->closed = true;
    return paNoError;
}

} // extern "C"
