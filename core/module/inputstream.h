#pragma once

#include "inputcallback.h"

#include <chrono>
#include <memory>

class QSample;

/// One PortAudio input stream and its callback's state. Every call returns in bounded time: closing is done
/// by a thread of its own, and what a lost server keeps from returning is left to it. GUI thread.
class InputStream {
public:
    /// How long a close may keep the caller waiting.
    static constexpr std::chrono::milliseconds closeDeadline{1500};

    /// Starts PortAudio. `state` is kept alive for as long as the stream may call.
    explicit InputStream(std::shared_ptr<InputCallbackState> state);
    /// Closes what is still open.
    ~InputStream();
    InputStream(const InputStream&) = delete;
    InputStream& operator=(const InputStream&) = delete;

    /// Opens `sample`'s device with all its channels as 16-bit frames at its rate. False where that fails or
    /// the sample names no device.
    bool open(const QSample& sample, unsigned long framesPerBuffer);
    bool isOpen() const { return m_stream != nullptr; }
    /// False if the stream can't start.
    bool start();
    /// Stops and closes the stream and ends PortAudio. With `wait` 0 it returns at once. False if the
    /// deadline passed first: PortAudio is then blocked until the library comes back.
    bool close(std::chrono::milliseconds wait = closeDeadline);

private:
    std::shared_ptr<InputCallbackState> m_state;
    void* m_stream = nullptr; ///< PaStream
    bool m_initialised = false;
};
