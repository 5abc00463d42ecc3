// What runs on an input stream's thread. No allocation, no lock, no system call, no signal.
#include "inputcallback.h"

#include "managewav.h"
#include "receivetimecodedvsobject.h"
#include "state/mode.h"

namespace {

struct Buffer {
    const std::int16_t* samples;
    std::size_t total;
};

void restartIfServed(InputGroup& group) {
    if (group.served) {
        group.restartRequested.store(false, std::memory_order_relaxed);
        group.decoder->restartRT();
    }
}

void restartIfRequested(InputGroup& group) {
    if (group.served && group.restartRequested.load(std::memory_order_relaxed) &&
        group.restartRequested.exchange(false, std::memory_order_acquire)) {
        group.decoder->restartRT();
    }
}

void takeFrame(const InputGroup& group, const Buffer& buffer, std::size_t base, bool recording,
               AudioNotifier& notifier) {
    const std::size_t left = base + group.left;
    std::int16_t pair[Constant::Audio::STEREO] = {
        left < buffer.total ? buffer.samples[left] : std::int16_t{0},
        left + 1 < buffer.total ? buffer.samples[left + 1] : std::int16_t{0}};
    if (recording && group.take != nullptr) {
        group.take->append(&pair[0]);
        group.take->append(&pair[1]);
    }
    if (group.decoder != nullptr) {
        std::int16_t* channels[Constant::Audio::STEREO] = {&pair[0], &pair[1]};
        group.decoder->executeRT(channels, notifier);
    }
}

} // namespace

void processInput(InputCallbackState& state, const std::int16_t* input, std::size_t frames) {
    state.buffers.fetch_add(1, std::memory_order_relaxed);
    if (!state.open.load(std::memory_order_acquire) || !state.mode->modeStartSynchronized()) {
        return;
    }
    if (!state.started) {
        // Only the decks that this stream serves: another card's deck may run already.
        restartIfServed(state.deckA);
        restartIfServed(state.deckB);
        state.started = true;
    }
    restartIfRequested(state.deckA);
    restartIfRequested(state.deckB);
    if (input == nullptr) {
        return;
    }
    const Buffer buffer{input, frames * state.channels};
    const bool recording = state.mode->modeRecorder();
    for (std::size_t base = 0; base < buffer.total; base += state.channels) {
        for (const InputGroup* group : {&state.master, &state.deckA, &state.deckB}) {
            if (group->served) {
                takeFrame(*group, buffer, base, recording, *state.notifier);
            }
        }
    }
}
