#include "fakeportaudio.h"

#include <cstdio>
#include <thread>

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
    --FakePortAudio::instance().initialised;
    return paNoError;
}

PaDeviceIndex Pa_GetDeviceCount() {
    const FakePortAudio& fake = FakePortAudio::instance();
    return fake.initialised > 0 ? static_cast<PaDeviceIndex>(fake.devices.size())
                                : static_cast<PaDeviceIndex>(paNotInitialized);
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
    if (!fake.openable) {
        std::fputs("Expression 'open' failed\n", stderr);
        return paDeviceUnavailable;
    }
    auto* opened = new FakeStream{*input, rate, frames, flags, callback, user, output != nullptr};
    fake.streams.push_back(opened);
    *stream = opened;
    return paNoError;
}

PaError Pa_StartStream(PaStream* stream) {
    if (!FakePortAudio::instance().streamStartable) {
        std::fputs("Expression 'start' failed\n", stderr);
        return paUnanticipatedHostError;
    }
    static_cast<FakeStream*>(stream)->started = true;
    return paNoError;
}

PaError Pa_StopStream(PaStream* stream) {
    while (FakePortAudio::instance().hang) {
        std::this_thread::yield();
    }
    static_cast<FakeStream*>(stream)->stopped = true;
    return paNoError;
}

PaError Pa_CloseStream(PaStream* stream) {
    static_cast<FakeStream*>(stream)->closed = true;
    return paNoError;
}

} // extern "C"
