// The frame's way through the decoder, and a whole buffer of the callback.

#include "ratio.h"
#include "support/drivendecks.h"

#include <QCoreApplication>

namespace {

constexpr std::size_t tapeFrames = 480'000; // ten seconds
constexpr std::size_t bufferFrames = 64;

/// Ten seconds of a record at nominal speed, deck A on the first pair and deck B on the second.
const std::vector<std::int16_t>& tape() {
    static const std::vector<std::int16_t> frames = [] {
        const DrivenSetup setup;
        const TimecodeDefinition def = definitionNamed(setup.timecode);
        return streamFrames(setup, SyntheticRecord(def, setup.rate, Motion()),
                            SyntheticRecord(def, setup.rate, Motion(MotionPattern::Play, 84.0, 100.0)), 0,
                            tapeFrames);
    }();
    return frames;
}

const std::vector<std::int16_t>& stereoTape() {
    static const std::vector<std::int16_t> frames = [] {
        const std::size_t channels = DrivenSetup().channels;
        std::vector<std::int16_t> pairs(tapeFrames * 2);
        for (std::size_t i = 0; i < tapeFrames; ++i) {
            pairs[2 * i] = tape()[i * channels];
            pairs[2 * i + 1] = tape()[i * channels + 1];
        }
        return pairs;
    }();
    return frames;
}

/// Ten seconds through one deck's decoder. The first pass, before the clock runs, brings it into lock.
void executeRT(benchmark::State& state) {
    DrivenDecks decks;
    decks.stop();
    AudioNotifier notifier;
    const std::int16_t* frames = stereoTape().data();
    const auto play = [&] {
        for (std::size_t i = 0; i < tapeFrames; ++i) {
            std::int16_t pair[] = {frames[2 * i], frames[2 * i + 1]};
            std::int16_t* channels[] = {pair, pair + 1};
            decks.deckA.executeRT(channels, notifier);
        }
    };
    play();
    for (auto _ : state) {
        play();
        decks.pointsA.clear();
    }
    if (decks.deckA.state().timecoder.validCounter <= 24) {
        state.SkipWithError("the decoder lost its lock");
    }
}

/// What no decoder of this kind can do without: the zero line of either channel and the pitch filter, with a
/// crossing as often as the record has one.
void zeroLinesAndPitchFilter(benchmark::State& state) {
    constexpr double dt = 1.0 / 48000.0;
    constexpr double zeroAlpha = dt / (dt + 0.001);
    constexpr std::size_t framesPerCrossing = 12;
    const auto follow = [](std::int32_t zero, std::int16_t sample) {
        const std::int64_t off = std::int64_t{sample} * 65536 - zero;
        return static_cast<std::int32_t>(double(zero) + double(off) * zeroAlpha);
    };
    const std::int16_t* frames = stereoTape().data();
    for (auto _ : state) {
        std::int32_t left = 0;
        std::int32_t right = 0;
        PitchFilter pitch{dt, 0.0, 0.0};
        std::size_t untilCrossing = framesPerCrossing;
        for (std::size_t i = 0; i < tapeFrames; ++i) {
            left = follow(left, frames[2 * i]);
            right = follow(right, frames[2 * i + 1]);
            double dx = 0.0;
            if (--untilCrossing == 0) {
                dx = 1.0 / 1000 * 0.25;
                untilCrossing = framesPerCrossing;
            }
            const double predicted = pitch.x + pitch.v * pitch.dt;
            const double residual = dx - predicted;
            pitch.x = predicted + residual * (1.0 / 512) - dx;
            pitch.v = pitch.v + residual * (1.0 / 131072) / pitch.dt;
        }
        benchmark::DoNotOptimize(left);
        benchmark::DoNotOptimize(right);
        benchmark::DoNotOptimize(pitch);
    }
}

/// One buffer of the input stream: two decks decoded, three takes recorded.
void callbackOf64Frames(benchmark::State& state) {
    DrivenDecks decks;
    const std::size_t channels = decks.state.channels;
    std::size_t at = 0;
    for (auto _ : state) {
        processInput(decks.state, tape().data() + at * channels, bufferFrames);
        at += bufferFrames;
        if (at == tapeFrames) {
            state.PauseTiming();
            at = 0;
            // The takes start anew so that the benchmark may run for as long as it likes.
            for (ManageWAV* take : {&decks.takeMaster, &decks.takeA, &decks.takeB}) {
                take->clear();
            }
            decks.housekeeping();
            state.ResumeTiming();
        }
    }
    if (decks.overflows() != 0) {
        state.SkipWithError("samples or points found no room");
    }
}

BENCHMARK(executeRT)->Unit(benchmark::kMillisecond);
BENCHMARK(zeroLinesAndPitchFilter)->Unit(benchmark::kMillisecond);
BENCHMARK(callbackOf64Frames)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    constexpr double periodNs = bufferFrames / 48000.0 * 1e9;
    return measureRatios(
        argc, argv,
        {{"ten seconds of a locked record through executeRT", "executeRT", "zeroLinesAndPitchFilter", 5.0},
         {"callback of 64 frames, two decks, recording", "callbackOf64Frames", "", 0.0, periodNs}});
}
