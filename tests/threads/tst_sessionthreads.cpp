// A whole session in one process: the input callback at full speed on a thread of its own, the output
// callback's end of the rings on another, and a GUI thread that runs its event loop, searches the curves,
// reads the latency, moves the crossfader and restarts the grid.

#include "model/objectmidi.h"
#include "state/midi.h"
#include "state/time.h"
#include "state/timecode.h"
#include "state/vinyl.h"
#include "support/drivendecks.h"
#include "support/loadfactor.h"
#include "support/testmain.h"

#include <QTest>
#include <QTimer>

#include <atomic>
#include <cmath>
#include <thread>

namespace {

constexpr std::uint64_t sessionFrames = 8'000'000 / loadFactor;
constexpr std::size_t bufferFrames = 64;
constexpr double curveStep = 64.0;

struct Faults {
    std::uint64_t disorder = 0; ///< two points of a curve whose times don't rise
    std::uint64_t offGrid = 0;  ///< a point at no multiple of the curve step
    std::uint64_t badAngle = 0;
    std::uint64_t badRange = 0; ///< a smallest value above the largest
    bool operator==(const Faults&) const = default;
};

} // namespace

class TestSessionThreads : public QObject {
    Q_OBJECT

private:
    static void checkView(const CurvePointStore::View& view, std::uint64_t seed, Faults& faults) {
        const std::size_t tail = std::min<std::size_t>(view.size(), 200);
        const auto check = [&](std::size_t i) {
            faults.disorder += i == 0 || view[i - 1].time < view[i].time ? 0U : 1U;
            faults.offGrid += std::fmod(view[i].time, curveStep) == 0.0 ? 0U : 1U;
            faults.badAngle += view[i].angle >= 0.0 && view[i].angle < 360.0 ? 0U : 1U;
        };
        for (std::size_t i = view.size() - tail; i < view.size(); ++i) {
            check(i);
        }
        for (std::uint64_t k = 0; k < 50 && !view.empty(); ++k) {
            check(scatter(seed, k) % view.size());
        }
    }

    // What a display tick does with one deck.
    static void look(QCurve& curve, ModelGraph::EnumGraph deck, Faults& faults) {
        const Singleton& shared = Singleton::instance();
        const double counted = shared.time()->observeFrameCounter(deck);
        shared.time()->setCursor(deck, counted);
        const auto to = static_cast<std::int32_t>(counted);
        double min = 1.0;
        double max = 0.0;
        bool found = false;
        curve.minMaxPosition(to - 500000, to, min, max, found);
        faults.badRange += found && min > max ? 1U : 0U;
        static_cast<void>(curve.findFirstIndex(to / 2));
        static_cast<void>(curve.findLastIndex(to));
        static_cast<void>(curve.pointAt(to / 3));
        shared.vinyl()->setDeltaPosition(deck, shared.vinyl()->angle(deck));
        static_cast<void>(shared.timecode()->isTimecodeOn(deck));
    }

private Q_SLOTS:
    void aSessionAtFullSpeed() {
        DrivenDecks decks;
        const TimecodeDefinition def = definitionNamed(DrivenSetup().timecode);
        const SyntheticRecord recordA(def, 48000.0, Motion(MotionPattern::Baby));
        const SyntheticRecord recordB(def, 48000.0, Motion(MotionPattern::Flare, 100.0));
        const std::size_t tapeFrames = 480 * bufferFrames;
        const std::vector<std::int16_t> tape = streamFrames(DrivenSetup(), recordA, recordB, 0, tapeFrames);

        std::atomic<std::uint64_t> fed{0};
        std::atomic<std::uint64_t> prepared{0};
        std::atomic<bool> ended{false};
        std::thread input([&] {
            for (std::uint64_t at = 0; at < sessionFrames; at += bufferFrames) {
                while (at > prepared.load(std::memory_order_acquire) + 1'000'000) {
                }
                processInput(decks.state, tape.data() + (at % tapeFrames) * decks.state.channels,
                             bufferFrames);
                fed.store(at, std::memory_order_release);
            }
            ended.store(true, std::memory_order_release);
        });
        std::uint64_t popped = 0;
        std::thread output([&] {
            CurvePoint point;
            while (!ended.load(std::memory_order_acquire)) {
                popped += decks.ringA.pop(point) ? 1U : 0U;
                popped += decks.ringB.pop(point) ? 1U : 0U;
            }
        });

        Faults faults;
        std::uint64_t ticks = 0;
        std::uint64_t latencies = 0;
        std::uint64_t badLatencies = 0;
        for (ReceiveTimecodeDVSObject* deck : {&decks.deckA, &decks.deckB}) {
            connect(deck, &ReceiveTimecodeDVSObject::s_ringBufferLatencyMs, this,
                    [&](double ms, std::size_t highest, std::size_t capacity) {
                        ++latencies;
                        badLatencies += ms < 0.0 || ms > 1.0 || highest >= capacity ? 1U : 0U;
                    });
        }
        const Singleton& shared = Singleton::instance();
        QTimer display;
        connect(&display, &QTimer::timeout, this, [&] {
            const std::uint64_t seen = fed.load(std::memory_order_acquire);
            decks.housekeeping();
            prepared.store(seen, std::memory_order_release);
            look(decks.curveA, ModelGraph::INPUT_DECKA, faults);
            look(decks.curveB, ModelGraph::INPUT_DECKB, faults);
            checkView(decks.curveA.points(), ticks, faults);
            checkView(decks.curveB.points(), ticks, faults);
            ++ticks;
        });
        display.start(2);
        QTimer hand;
        std::uint64_t deeds = 0;
        connect(&hand, &QTimer::timeout, this, [&] {
            switch (deeds++ % 6) {
            case 0:
                decks.state.deckA.restartRequested.store(true, std::memory_order_release);
                break;
            case 1:
                decks.state.deckB.restartRequested.store(true, std::memory_order_release);
                break;
            case 2:
                decks.curveA.resetCurve();
                break;
            case 3:
                deeds % 4 == 0 ? shared.mode()->modeMix_on() : shared.mode()->modeMix_off();
                break;
            case 4: {
                ObjectMidi reading;
                reading.setValue(static_cast<int>(scatter(8, deeds) % 128));
                shared.midi()->setObject(reading);
                break;
            }
            default:
                decks.curveB.resetCurve();
                break;
            }
        });
        hand.start(25);
        // The session lasts at least two latency reports, however fast the machine is.
        QTRY_VERIFY_WITH_TIMEOUT(ended.load(std::memory_order_acquire), 200'000);
        QTRY_VERIFY_WITH_TIMEOUT(latencies >= 2, 5000);
        hand.stop();
        display.stop();
        input.join();
        output.join();

        QVERIFY(faults == Faults());
        QCOMPARE(badLatencies, std::uint64_t{0});
        QCOMPARE(decks.overflows(), std::uint64_t{0});
        QCOMPARE_GT(ticks, std::uint64_t{10});
        QCOMPARE_GT(deeds, std::uint64_t{6});
        QCOMPARE_GT(popped, std::uint64_t{0});
        QCOMPARE(decks.takeA.samples().size(), sessionFrames * 2);
        QCOMPARE(shared.time()->frameCounter(ModelGraph::INPUT_MASTER), 0.0);

        // The stream is over; a fresh one starts behind it on the same stores.
        decks.stop();
        decks.curveA.resetCurve();
        QVERIFY(decks.curveA.points().empty());
    }
};

GRAMO_TEST_GUILESS_MAIN(TestSessionThreads)

#include "tst_sessionthreads.moc"
