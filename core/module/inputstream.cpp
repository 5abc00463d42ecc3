#include "inputstream.h"

#include "librarythread.h"
#include "model/qsample.h"
#include "soundserver.h"
#include "state/devicecatalogue.h"
#include "state/portaudiosession.h"
#include "state/quieterroroutput.h"

#include <portaudio.h>

#include <thread>
#include <vector>

struct InputStream::Stream {
    std::shared_ptr<InputCallbackState> state;
    PaStream* stream = nullptr;
    bool initialised = false; ///< this stream's share of Pa_Initialize stands
    bool onServer = false;
    bool started = false;
    bool parked = false;
};

namespace {

int callback(const void* input, void*, unsigned long frames, const PaStreamCallbackTimeInfo*,
             PaStreamCallbackFlags, void* user) {
    processInput(*static_cast<InputCallbackState*>(user), static_cast<const std::int16_t*>(input), frames);
    return paContinue;
}

// A running stream whose server lives: it brings a buffer. One that stands still stays active, one that has
// gone doesn't.
bool bringsBuffers(PaStream* stream, const InputCallbackState& state, bool& active) {
    const std::uint64_t seen = state.buffers.load(std::memory_order_relaxed);
    const auto end = std::chrono::steady_clock::now() + InputStream::bufferWithin;
    do {
        active = Pa_IsStreamActive(stream) == 1;
        if (!active || state.buffers.load(std::memory_order_relaxed) != seen) {
            return active;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    } while (std::chrono::steady_clock::now() < end);
    return false;
}

} // namespace

void InputStream::park(const std::shared_ptr<Stream>& stream) {
    static auto& parked = *new std::vector<std::shared_ptr<Stream>>; // to the end of the process
    parked.push_back(stream);
    stream->parked = true;
    SoundServer::instance().lose();
}

void InputStream::openNow(const std::shared_ptr<Stream>& stream, const QSample& sample,
                          unsigned long frames) {
    const int index =
        deviceIndexOf(listedDevices(), sample.deviceName(), sample.deviceIndex(), sample.channelCount());
    const PaDeviceInfo* device = Pa_GetDeviceInfo(index);
    if (device == nullptr) {
        return;
    }
    PaStreamParameters parameters{};
    parameters.device = index;
    parameters.channelCount = sample.channelCount();
    parameters.sampleFormat = paInt16;
    parameters.suggestedLatency = device->defaultLowInputLatency;
    stream->onServer = SoundServer::carries(index);
    const QuietErrorOutput quiet;
    Pa_IsFormatSupported(&parameters, nullptr, sample.sampleRate()); // some drivers want to be asked first
    PaStream* opened = nullptr;
    const PaError error = Pa_OpenStream(&opened, &parameters, nullptr, sample.sampleRate(), frames, paNoFlag,
                                        &callback, stream->state.get());
    if (error == paNoError) {
        stream->stream = opened;
    } else if (stream->onServer && !SoundServer::answers()) {
        park(stream);
    }
}

void InputStream::closeNow(const std::shared_ptr<Stream>& stream) {
    if (stream->parked) {
        return;
    }
    bool answered = false;
    if (stream->stream != nullptr) {
        if (stream->onServer) {
            bool active = true;
            answered = (stream->started && bringsBuffers(stream->stream, *stream->state, active)) ||
                       (active && SoundServer::answers());
            if (!answered) {
                park(stream);
                return;
            }
        }
        const PaError stopped = stream->started ? Pa_StopStream(stream->stream) : paNoError;
        if (stream->onServer && stopped != paNoError) {
            park(stream); // it has gone meanwhile
            return;
        }
        Pa_CloseStream(stream->stream);
    }
    // The library lets the server's client go as well, whatever the stream's own device was.
    if (stream->initialised && !SoundServer::instance().lost()) {
        if (answered || SoundServer::answers()) {
            Pa_Terminate();
        } else {
            SoundServer::instance().lose();
        }
    }
}

InputStream::InputStream(std::shared_ptr<InputCallbackState> state)
    : m_stream(std::make_shared<Stream>()), m_state(std::move(state)) {
    m_stream->state = m_state;
    if (PortAudioSession::blocked()) {
        return;
    }
    const bool finished = LibraryThread::instance().run(
        [stream = m_stream] {
            PortAudioSession session;
            stream->initialised = session.ok();
            session.release(); // ended by close
        },
        openDeadline);
    m_usable = finished && m_stream->initialised;
}

InputStream::~InputStream() {
    close();
}

bool InputStream::open(const QSample& sample, unsigned long framesPerBuffer) {
    if (!m_usable || sample.deviceName().isEmpty() || PortAudioSession::blocked()) {
        return false;
    }
    const bool finished = LibraryThread::instance().run(
        [stream = m_stream, sample, framesPerBuffer] { openNow(stream, sample, framesPerBuffer); },
        openDeadline);
    m_open = finished && m_stream->stream != nullptr;
    return m_open;
}

bool InputStream::start() {
    if (!m_open || PortAudioSession::blocked()) {
        return false;
    }
    const bool finished = LibraryThread::instance().run(
        [stream = m_stream] {
            const QuietErrorOutput quiet;
            stream->started = Pa_StartStream(stream->stream) == paNoError;
            if (!stream->started && stream->onServer && !SoundServer::answers()) {
                park(stream);
            }
        },
        openDeadline);
    return finished && m_stream->started;
}

bool InputStream::close(std::chrono::milliseconds wait) {
    m_state->open.store(false, std::memory_order_release);
    const std::shared_ptr<Stream> stream = std::exchange(m_stream, nullptr);
    m_open = false;
    if (stream == nullptr) {
        return true;
    }
    return LibraryThread::instance().run([stream] { closeNow(stream); }, wait) && !stream->parked;
}
