#pragma once
// Stands in for the PortAudio library, so that a test decides which devices there are and drives the streams
// itself. The definitions in fakeportaudio.cpp take the library's place in the test programs that link it.

#include <portaudio.h>

#include <atomic>
#include <string>
#include <vector>

struct FakeDevice {
    std::string name;
    double rate = 48000.0;
    int inputs = 0;
    int outputs = 0;
    int hostApi = 0;
};

/// What a stream was opened with.
struct FakeStream {
    PaStreamParameters input{};
    double rate = 0.0;
    unsigned long frames = 0;
    PaStreamFlags flags = 0;
    PaStreamCallback* callback = nullptr;
    void* user = nullptr;
    bool hadOutput = false;
    bool started = false;
    bool stopped = false;
    bool closed = false;

    /// One buffer, as the library's thread would bring it. Returns what the callback returns.
    int call(const void* samples, unsigned long count) const {
        return callback(samples, nullptr, count, nullptr, 0, user);
    }
};

struct FakePortAudio {
    std::vector<FakeDevice> devices;
    std::vector<FakeStream*> streams; ///< all that were ever opened; never freed
    std::atomic<int> initialiseCalls{0};
    std::atomic<int> initialised{0}; ///< less the terminations
    bool startable = true;           ///< Pa_Initialize succeeds
    bool openable = true;            ///< Pa_OpenStream succeeds
    bool streamStartable = true;     ///< Pa_StartStream succeeds; if not, it complains as the library does
    std::atomic<bool> hang{false};   ///< Pa_StopStream doesn't come back while this is set
    std::vector<PaDeviceInfo> infos;

    static FakePortAudio& instance() {
        static auto& fake = *new FakePortAudio; // outlives every thread that may still call
        return fake;
    }
};
