#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

class AudioNotifier;
class ManageWAV;
class Mode;
class ReceiveTimecodeDVSObject;

/// One input that a stream serves: where its samples lie in a frame and who takes them.
struct InputGroup {
    bool served = false;
    std::size_t left = 0;      ///< index of the left sample within a frame; the right one is the next
    ManageWAV* take = nullptr; ///< null when the session isn't recorded
    ReceiveTimecodeDVSObject* decoder = nullptr; ///< null for the master
    std::atomic<bool> restartRequested{false};   ///< set by the GUI, carried out at the next buffer
};

/// All that an input stream's callback touches. The recorder's slots prepare it while the stream stands
/// still and open it last; it lives as long as the stream may still call.
struct InputCallbackState {
    const Mode* mode = nullptr;
    AudioNotifier* notifier = nullptr;
    std::size_t channels = 0; ///< of a frame
    InputGroup master;
    InputGroup deckA;
    InputGroup deckB;
    bool started = false; ///< the first buffer after the gate has run; the callback's own
    /// False: a buffer is dropped unseen. Raised after everything above is set, lowered before it is taken
    /// apart.
    std::atomic<bool> open{false};
    std::atomic<std::uint64_t> buffers{0}; ///< buffers seen, dropped ones included: the stream is alive
};

/// One buffer of `frames` interleaved frames: takes are appended, decoders fed, frame by frame, in the order
/// master, deck A, deck B. Samples that would lie beyond the buffer are 0. Realtime-safe.
void processInput(InputCallbackState& state, const std::int16_t* input, std::size_t frames);
