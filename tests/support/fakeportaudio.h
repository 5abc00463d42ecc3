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
    bool onServer = false;
    bool started = false;
    std::atomic<bool> stopped{false};
    std::atomic<bool> closed{false};
    std::atomic<bool> hang{false}; ///< its Pa_StopStream doesn't come back while this is set

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
    bool streamStoppable = true;     ///< Pa_StopStream succeeds
    std::atomic<bool> hang{false};   ///< Pa_StopStream doesn't come back while this is set
    /// What all devices lie on. A stream on JACK brings an empty buffer whenever it is asked if it is active,
    /// unless its server is gone or stands still.
    PaHostApiTypeId hostApi = paALSA;
    enum Server { Runs, StandsStill, IsGone };
    std::atomic<Server> server{Runs};
    std::atomic<int> deadly{0};  ///< calls of a kind that ends the process, since its server is gone
    std::atomic<int> inside{0};  ///< calls under way that concern a stream
    std::atomic<int> crowded{0}; ///< such calls that began while another one was under way
    std::vector<PaDeviceInfo> infos;
    PaHostApiInfo hostApiInfo{};

    bool serverGone() const { return hostApi == paJACK && server == IsGone; }
    /// Keeps the caller while the server stands still. False if it is gone.
    bool serverAnswers() const;

    static FakePortAudio& instance() {
        static auto& fake = *new FakePortAudio; // outlives every thread that may still call
        return fake;
    }
};
