#include "inputstream.h"

#include "model/qsample.h"
#include "state/portaudiosession.h"
#include "state/quieterroroutput.h"

#include <portaudio.h>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

int callback(const void* input, void*, unsigned long frames, const PaStreamCallbackTimeInfo*,
             PaStreamCallbackFlags, void* user) {
    processInput(*static_cast<InputCallbackState*>(user), static_cast<const std::int16_t*>(input), frames);
    return paContinue;
}

// What the closing thread and the one that waits for it share.
struct Closing {
    std::mutex mutex;
    std::condition_variable changed;
    bool done = false;
    bool abandoned = false;
};

} // namespace

InputStream::InputStream(std::shared_ptr<InputCallbackState> state) : m_state(std::move(state)) {
    PortAudioSession session;
    m_initialised = session.ok();
    session.release(); // ended by close
}

InputStream::~InputStream() {
    close();
}

bool InputStream::open(const QSample& sample, unsigned long framesPerBuffer) {
    if (!m_initialised || sample.deviceName().isEmpty()) {
        return false;
    }
    const PaDeviceInfo* device = Pa_GetDeviceInfo(sample.deviceIndex());
    if (device == nullptr) {
        return false;
    }
    PaStreamParameters parameters{};
    parameters.device = sample.deviceIndex();
    parameters.channelCount = sample.channelCount();
    parameters.sampleFormat = paInt16;
    parameters.suggestedLatency = device->defaultLowInputLatency;
    const QuietErrorOutput quiet;
    Pa_IsFormatSupported(&parameters, nullptr, sample.sampleRate()); // some drivers want to be asked first
    PaStream* stream = nullptr;
    if (Pa_OpenStream(&stream, &parameters, nullptr, sample.sampleRate(), framesPerBuffer, paNoFlag,
                      &callback, m_state.get()) != paNoError) {
        return false;
    }
    m_stream = stream;
    return true;
}

bool InputStream::start() {
    if (m_stream == nullptr) {
        return false;
    }
    const QuietErrorOutput quiet;
    return Pa_StartStream(m_stream) == paNoError;
}

bool InputStream::close(std::chrono::milliseconds wait) {
    m_state->open.store(false, std::memory_order_release);
    if (!m_initialised) {
        return true;
    }
    m_initialised = false;
    PaStream* stream = std::exchange(m_stream, nullptr);
    auto closing = std::make_shared<Closing>();
    // Nobody else calls the library until this is over, or is known to hang.
    std::thread closer([closing, stream, state = m_state] {
        if (stream != nullptr) {
            Pa_StopStream(stream);
            Pa_CloseStream(stream);
        }
        Pa_Terminate();
        const std::lock_guard lock(closing->mutex);
        closing->done = true;
        if (closing->abandoned) {
            PortAudioSession::setBlocked(false);
        }
        closing->changed.notify_one();
    });
    std::unique_lock lock(closing->mutex);
    if (closing->changed.wait_for(lock, wait, [&] { return closing->done; })) {
        lock.unlock();
        closer.join();
        return true;
    }
    closing->abandoned = true;
    PortAudioSession::setBlocked(true);
    closer.detach();
    return false;
}
