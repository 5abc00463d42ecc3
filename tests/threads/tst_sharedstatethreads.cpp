// The words that cross threads one by one: a reader sees values that were written, whole, and a clock that
// runs on.

#include "model/objectmidi.h"
#include "motion.h"
#include "state/midi.h"
#include "state/mode.h"
#include "state/time.h"
#include "state/timecode.h"
#include "state/vinyl.h"
#include "support/loadfactor.h"
#include "support/testmain.h"

#include <QTest>

#include <atomic>
#include <bit>
#include <thread>

namespace {

constexpr std::uint64_t writes = 2'000'000 / loadFactor;

/// A double that tells whether it is whole: its two halves belong together.
double halves(std::uint32_t number) {
    const std::uint32_t other = static_cast<std::uint32_t>(scatter(1, number));
    return std::bit_cast<double>(std::uint64_t{number & 0x3FFFFFFFU} << 32 | other);
}

bool halvesMatch(double value) {
    const auto word = std::bit_cast<std::uint64_t>(value);
    return std::bit_cast<std::uint64_t>(halves(static_cast<std::uint32_t>(word >> 32))) == word;
}

constexpr ModelGraph::EnumGraph deckA = ModelGraph::INPUT_DECKA;
constexpr ModelGraph::EnumGraph deckB = ModelGraph::INPUT_DECKB;

} // namespace

class TestSharedStateThreads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The GUI switches, a callback reads. Only what the callbacks ask for, and the flags around it.
    void modeFlags() {
        Mode mode;
        std::atomic<bool> ended{false};
        std::uint64_t changes = 0;
        std::atomic<bool> reads{false};
        std::thread callback([&] {
            bool before = false;
            while (!ended.load(std::memory_order_acquire)) {
                const bool now = mode.modeMix();
                changes += now != before ? 1U : 0U;
                before = now;
                static_cast<void>(mode.modeReverse() || mode.modeRecorder() || mode.modeStartSynchronized() ||
                                  mode.modeMetronom() || mode.modeGenerateSound() || mode.modeRun());
                reads.store(true, std::memory_order_release);
            }
        });
        while (!reads.load(std::memory_order_acquire)) {
        }
        for (std::uint64_t i = 0; i < writes; ++i) {
            const bool on = scatter(2, i) % 2 == 0;
            on ? mode.modeMix_on() : mode.modeMix_off();
            on ? mode.modeStartSynchronized_on() : mode.modeStartSynchronized_off();
            on ? mode.modeMetronom_off() : mode.modeMetronom_on();
            on ? mode.modeRun_off() : mode.modeRun_on();
            on ? mode.modeRecorder_on() : mode.modeRecorder_off();
            on ? mode.modeGenerateSound_on() : mode.modeGenerateSound_off();
        }
        ended.store(true, std::memory_order_release);
        callback.join();
        QCOMPARE_GT(changes, std::uint64_t{0});
    }

    // Callback to GUI and back: angle and delta of both decks.
    void vinylAndTimecodeValuesAreWhole() {
        Vinyl vinyl;
        Timecode timecode;
        std::atomic<bool> ended{false};
        std::thread callback([&] {
            for (std::uint32_t i = 0; i < writes; ++i) {
                vinyl.setAngle(i % 2 == 0 ? deckA : deckB, halves(i));
                timecode.setPositionDelta(i % 2 == 0 ? deckA : deckB, halves(i + 1));
                i % 1000 == 0 ? timecode.modeTimecode_on(deckA) : timecode.modeTimecode_off(deckB);
            }
            ended.store(true, std::memory_order_release);
        });
        std::uint64_t torn = 0;
        const double unset = 0.0;
        const auto whole = [unset](double value) { return value == unset || halvesMatch(value); };
        for (std::uint32_t i = 0; !ended.load(std::memory_order_acquire); ++i) {
            for (const ModelGraph::EnumGraph deck : {deckA, deckB}) {
                torn += whole(vinyl.angle(deck)) ? 0U : 1U;
                torn += whole(timecode.positionDelta(deck)) ? 0U : 1U;
                vinyl.setDeltaPosition(deck, halves(i));
                torn += whole(vinyl.deltaPosition(deck)) ? 0U : 1U;
                static_cast<void>(timecode.isTimecodeOn(deck));
            }
        }
        callback.join();
        QCOMPARE(torn, std::uint64_t{0});
        QVERIFY(timecode.isTimecodeOn(deckA));
        QVERIFY(!timecode.isTimecodeOn(deckB));
    }

    // A deck's clock counts frames and starts anew now and then; the GUI reads it, moves the cursor and looks
    // at the clock that both take the deck's start from.
    void clocksRunOn() {
        Time time;
        const std::uint64_t grid = writes / 8;
        std::atomic<std::uint64_t> grids{0};
        std::atomic<bool> ended{false};
        const double begin = Time::msecsNow();
        time.setStartNow(deckA);
        std::thread callback([&] {
            for (std::uint64_t i = 0; i < writes; ++i) {
                if (i % grid == 0) {
                    time.setStartNow(deckA);
                    time.clearCursor(deckA);
                    time.clearFrameCounter(deckA);
                    grids.fetch_add(1, std::memory_order_release);
                }
                time.advanceFrame(deckA);
                time.advanceFrame(deckB);
            }
            ended.store(true, std::memory_order_release);
        });
        std::uint64_t backward = 0;
        std::uint64_t beyond = 0;
        std::uint64_t wrongStart = 0;
        double lastA = 0.0;
        double lastB = 0.0;
        std::uint64_t lastGrid = 0;
        while (!ended.load(std::memory_order_acquire)) {
            const std::uint64_t gridBefore = grids.load(std::memory_order_acquire);
            const double a = time.observeFrameCounter(deckA);
            const double b = time.frameCounter(deckB);
            const std::uint64_t gridAfter = grids.load(std::memory_order_acquire);
            if (gridBefore == gridAfter && gridBefore == lastGrid && a != 0.0) {
                backward += a < lastA ? 1U : 0U;
            }
            lastA = gridBefore == gridAfter ? a : 0.0;
            lastGrid = gridAfter;
            backward += b < lastB ? 1U : 0U;
            lastB = b;
            beyond += a > double(grid) || b > double(writes) ? 1U : 0U;
            const double start = time.startTime(deckA);
            wrongStart += start < begin || start > Time::msecsNow() ? 1U : 0U;
            time.setCursor(deckA, a);
        }
        callback.join();
        QCOMPARE(backward, std::uint64_t{0});
        QCOMPARE(beyond, std::uint64_t{0});
        QCOMPARE(wrongStart, std::uint64_t{0});
        QCOMPARE(time.frameCounter(deckB), double(writes));
        QCOMPARE(time.frameCounter(deckA), double(grid));
    }

    // The MIDI thread sets the reading, a callback asks for its zone.
    void crossfaderZone() {
        Midi midi;
        std::atomic<bool> ended{false};
        std::uint64_t announced = 0;
        std::thread midiThread([&] {
            connect(
                &midi, &Midi::crossFaderChanged, &midi,
                [&announced](const ObjectMidi& reading) {
                    announced += static_cast<std::uint64_t>(reading.value());
                },
                Qt::DirectConnection);
            for (std::uint64_t i = 0; i < writes / 10; ++i) {
                ObjectMidi reading;
                // All three zones alike: a reader that gets a turn now and then sees changes too.
                reading.setValue(static_cast<int>(scatter(6, i) % 3 * 127 / 2));
                midi.setObject(reading);
            }
            ObjectMidi last;
            last.setValue(127);
            midi.setObject(last);
            ended.store(true, std::memory_order_release);
        });
        std::uint64_t strange = 0;
        std::uint64_t changes = 0;
        ModelCrossFader::EnumCrossFader before = midi.crossFader();
        while (!ended.load(std::memory_order_acquire)) {
            const ModelCrossFader::EnumCrossFader now = midi.crossFader();
            changes += now != before ? 1U : 0U;
            before = now;
            strange += now == ModelCrossFader::LEFT || now == ModelCrossFader::MIDDLE ||
                               now == ModelCrossFader::RIGHT
                           ? 0U
                           : 1U;
        }
        midiThread.join();
        QCOMPARE(strange, std::uint64_t{0});
        QCOMPARE_GT(changes, std::uint64_t{0});
        QCOMPARE_GT(announced, std::uint64_t{0});
        QCOMPARE(midi.crossFader(), ModelCrossFader::RIGHT);
    }
};

GRAMO_TEST_GUILESS_MAIN(TestSharedStateThreads)

#include "tst_sharedstatethreads.moc"
