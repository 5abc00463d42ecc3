#pragma once

#include "inputcallback.h"

#include <chrono>
#include <memory>

class QSample;

/// One PortAudio input stream and its callback's state. Every call returns in bounded time: the library is
/// called on a thread of its own, and what a sound server keeps from returning is left to it. A stream whose
/// server has gone is parked: no call of the library reaches it again, nor is the library ended. GUI thread.
class InputStream {
public:
    /// How long starting PortAudio, opening and starting may keep the caller waiting: on a machine with many
    /// devices, or a busy one, the library takes seconds to look at them.
    static constexpr std::chrono::milliseconds openDeadline{3000};
    /// How long a close may.
    static constexpr std::chrono::milliseconds closeDeadline{800};
    /// A stream on a server that brings no buffer for so long is closed only after the server has answered.
    static constexpr std::chrono::milliseconds bufferWithin{400};

    /// Starts PortAudio. `state` is kept alive for as long as the stream may call.
    explicit InputStream(std::shared_ptr<InputCallbackState> state);
    /// Closes what is still open.
    ~InputStream();
    InputStream(const InputStream&) = delete;
    InputStream& operator=(const InputStream&) = delete;

    /// Opens `sample`'s device with all its channels as 16-bit frames at its rate. A device is its name:
    /// where another one has its index by now it is looked for in the library's list. False where it isn't
    /// there, can't be opened, or the sample names none.
    bool open(const QSample& sample, unsigned long framesPerBuffer);
    bool isOpen() const { return m_open; }
    /// False if the stream can't start.
    bool start();
    /// Stops and closes the stream and ends PortAudio. With `wait` 0 it returns at once. False if the stream
    /// is parked, or if the deadline passed first: PortAudio is then blocked until the library comes back.
    bool close(std::chrono::milliseconds wait = closeDeadline);

private:
    struct Stream; // what the library's thread works on

    static void park(const std::shared_ptr<Stream>& stream);
    static void openNow(const std::shared_ptr<Stream>& stream, const QSample& sample, unsigned long frames);
    static void closeNow(const std::shared_ptr<Stream>& stream);

    std::shared_ptr<Stream> m_stream; ///< null once closed
    std::shared_ptr<InputCallbackState> m_state;
    bool m_usable = false; ///< PortAudio is up
    bool m_open = false;
};
