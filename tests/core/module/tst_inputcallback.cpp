// What the input callback does with a buffer, driven by hand.

#include "module/inputcallback.h"
#include "state/time.h"
#include "support/drivendecks.h"
#include "support/testmain.h"

#include <QTest>

#include <atomic>
#include <memory>
#include <thread>

namespace {

constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;

Time& clock_() {
    return *Singleton::instance().time();
}
Mode& mode() {
    return *Singleton::instance().mode();
}

std::vector<std::int16_t> valuesOf(const ManageWAV& take) {
    std::vector<std::int16_t> values;
    take.samples().forEachPiece([&](std::span<const std::int16_t> piece) {
        values.insert(values.end(), piece.begin(), piece.end());
        return true;
    });
    return values;
}

// A buffer of exactly its size, so that a read beyond it shows. Every sample is its own index.
struct NumberedBuffer {
    std::unique_ptr<std::int16_t[]> samples;
    std::size_t frames;
    NumberedBuffer(std::size_t frameCount, std::size_t channels)
        : samples(new std::int16_t[frameCount * channels]), frames(frameCount) {
        for (std::size_t i = 0; i < frameCount * channels; ++i) {
            samples[i] = static_cast<std::int16_t>(i + 1);
        }
    }
};

void process(DrivenDecks& decks, const NumberedBuffer& buffer) {
    processInput(decks.state, buffer.samples.get(), buffer.frames);
}

using Values = std::vector<std::int16_t>;

} // namespace

class tst_InputCallback : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        const DrivenDecks first; // moves the data folder before anything else asks for Singleton
    }

    void init() {
        for (const auto name : {deckA, deckB}) {
            clock_().clearFrameCounter(name);
            clock_().clearCursor(name);
        }
    }

    void whileTheGateIsShutNothingHappensAtAll() {
        DrivenDecks decks;
        mode().modeStartSynchronized_off();
        clock_().setFrameCounter(deckA, 500.0);
        clock_().setCursor(deckA, 77.0);
        decks.state.deckA.restartRequested = true;
        process(decks, NumberedBuffer(256, 6));
        QCOMPARE(clock_().frameCounter(deckA), 500.0);
        QCOMPARE(clock_().cursor(deckA), 77.0);
        QVERIFY(!decks.state.started);
        QVERIFY(decks.state.deckA.restartRequested);
        QCOMPARE(decks.takeA.samples().size() + decks.takeB.samples().size() +
                     decks.takeMaster.samples().size(),
                 std::size_t{0});
        QVERIFY(decks.pointsA.view().empty());
        QCOMPARE(decks.state.buffers.load(), std::uint64_t{1}); // but the stream is seen to live
    }

    void aStateThatIsntOpenDropsTheBuffer() {
        DrivenDecks decks;
        decks.state.open = false;
        process(decks, NumberedBuffer(256, 6));
        QVERIFY(!decks.state.started);
        QCOMPARE(clock_().frameCounter(deckA), 0.0);
        QCOMPARE(decks.state.buffers.load(), std::uint64_t{1});
    }

    void theDecksClocksStartAtTheFirstBufferBehindTheGate() {
        DrivenDecks decks;
        clock_().setFrameCounter(deckA, 500.0);
        clock_().setFrameCounter(deckB, 600.0);
        clock_().setCursor(deckB, 77.0);
        const double before = Time::msecsNow();
        process(decks, NumberedBuffer(64, 6));
        QVERIFY(decks.state.started);
        QCOMPARE(clock_().frameCounter(deckA), 64.0);
        QCOMPARE(clock_().frameCounter(deckB), 64.0);
        QCOMPARE(clock_().cursor(deckB), 0.0);
        QVERIFY(clock_().startTime(deckA) >= before);
        process(decks, NumberedBuffer(64, 6));
        QCOMPARE(clock_().frameCounter(deckA), 128.0); // and only once
    }

    void onlyTheDecksThatTheStreamServesAreStarted() {
        DrivenDecks decks;
        decks.state.deckB.served = false;
        clock_().setFrameCounter(deckB, 600.0);
        clock_().setCursor(deckB, 77.0);
        process(decks, NumberedBuffer(64, 6));
        QCOMPARE(clock_().frameCounter(deckA), 64.0);
        QCOMPARE(clock_().frameCounter(deckB), 600.0); // another card's deck runs on
        QCOMPARE(clock_().cursor(deckB), 77.0);
        QVERIFY(decks.pointsB.view().empty());
        QCOMPARE(decks.takeB.samples().size(), std::size_t{0});
    }

    void eachGroupTakesItsOwnPairOfAFourChannelFrame() {
        DrivenDecks decks({.channels = 4, .pairDeckA = 0, .pairDeckB = 1, .pairMaster = 1});
        process(decks, NumberedBuffer(3, 4)); // 1 2 3 4 | 5 6 7 8 | 9 10 11 12
        QCOMPARE(valuesOf(decks.takeA), (Values{1, 2, 5, 6, 9, 10}));
        QCOMPARE(valuesOf(decks.takeB), (Values{3, 4, 7, 8, 11, 12}));
        QCOMPARE(valuesOf(decks.takeMaster), (Values{3, 4, 7, 8, 11, 12}));
    }

    void pairsOutsideTheFrameReadTheFollowingSamplesAndZerosBeyondTheBuffer() {
        DrivenDecks decks({.channels = 4, .pairDeckA = 2, .pairDeckB = 3, .pairMaster = 40});
        process(decks, NumberedBuffer(3, 4));
        QCOMPARE(valuesOf(decks.takeA), (Values{5, 6, 9, 10, 0, 0}));
        QCOMPARE(valuesOf(decks.takeB), (Values{7, 8, 11, 12, 0, 0}));
        QCOMPARE(valuesOf(decks.takeMaster), (Values{0, 0, 0, 0, 0, 0}));
    }

    void aPairThatReachesHalfOutOfTheBufferIsCutThere() {
        DrivenDecks decks({.channels = 3, .pairDeckA = 1});
        process(decks, NumberedBuffer(2, 3)); // 1 2 3 | 4 5 6
        QCOMPARE(valuesOf(decks.takeA), (Values{3, 4, 6, 0}));
    }

    void aMonoStreamIsReadWithoutHarm() {
        DrivenDecks decks({.channels = 1, .pairDeckA = 0, .pairDeckB = 1});
        process(decks, NumberedBuffer(3, 1));
        QCOMPARE(valuesOf(decks.takeA), (Values{1, 2, 2, 3, 3, 0}));
        QCOMPARE(valuesOf(decks.takeB), (Values{3, 0, 0, 0, 0, 0}));
    }

    void aFrameIsTakenByMasterThenDeckAThenDeckB() {
        DrivenDecks decks({.channels = 6, .pairDeckA = 0, .pairDeckB = 1, .pairMaster = 2});
        decks.state.deckA.take = &decks.takeMaster; // all into one
        decks.state.deckB.take = &decks.takeMaster;
        process(decks, NumberedBuffer(2, 6));
        QCOMPARE(valuesOf(decks.takeMaster), (Values{5, 6, 1, 2, 3, 4, 11, 12, 7, 8, 9, 10}));
    }

    void theTakesGoOnFromBufferToBuffer() {
        DrivenDecks decks({.channels = 2, .pairDeckA = 0});
        process(decks, NumberedBuffer(2, 2));
        process(decks, NumberedBuffer(1, 2));
        QCOMPARE(valuesOf(decks.takeA), (Values{1, 2, 3, 4, 1, 2}));
    }

    void withoutRecordingTheDecksAreDecodedAndNothingIsKept() {
        DrivenDecks decks;
        mode().modeRecorder_off();
        process(decks, NumberedBuffer(128, 6));
        QCOMPARE(clock_().frameCounter(deckA), 128.0);
        QCOMPARE(decks.pointsA.view().size(), std::size_t{2});
        QCOMPARE(decks.takeA.samples().size() + decks.takeMaster.samples().size(), std::size_t{0});
    }

    void aSessionWithoutTakesKeepsNothingWhenRecordingIsSwitchedOn() {
        DrivenDecks decks({.recording = false});
        mode().modeRecorder_on();
        process(decks, NumberedBuffer(128, 6));
        QCOMPARE(clock_().frameCounter(deckA), 128.0);
    }

    void whetherToRecordIsAskedOnceABuffer() {
        DrivenDecks decks;
        decks.state.deckA.served = false;
        decks.state.deckB.served = false;
        std::atomic<bool> done{false};
        std::thread toggle([&] {
            while (!done) {
                mode().modeRecorder_on();
                mode().modeRecorder_off();
            }
        });
        const NumberedBuffer buffer(20000, 6);
        std::size_t before = 0;
        bool whole = true;
        for (int i = 0; i < 100; ++i) {
            process(decks, buffer);
            const std::size_t added = decks.takeMaster.samples().size() - before;
            whole = whole && (added == 0 || added == 2 * buffer.frames);
            before += added;
        }
        done = true;
        toggle.join();
        QVERIFY(whole);
    }

    void aRestartThatTheGuiAskedForComesBeforeTheNextBuffersFrames() {
        DrivenDecks decks;
        process(decks, NumberedBuffer(192, 6));
        QCOMPARE(decks.pointsA.view().size(), std::size_t{3});
        decks.state.deckA.restartRequested = true;
        process(decks, NumberedBuffer(64, 6));
        QVERIFY(!decks.state.deckA.restartRequested);
        QCOMPARE(clock_().frameCounter(deckA), 64.0);
        QCOMPARE(clock_().frameCounter(deckB), 256.0);
        QCOMPARE(decks.pointsA.view().size(), std::size_t{1}); // the old grid's points went with it
        QCOMPARE(decks.pointsA.view()[0].time, 0.0);
        QCOMPARE(decks.pointsB.view().size(), std::size_t{4});
        process(decks, NumberedBuffer(64, 6));
        QCOMPARE(clock_().frameCounter(deckA), 128.0); // once a request
    }

    void aRequestForADeckThatIsntServedWaits() {
        DrivenDecks decks;
        decks.state.deckB.served = false;
        decks.state.deckB.restartRequested = true;
        clock_().setFrameCounter(deckB, 600.0);
        process(decks, NumberedBuffer(64, 6));
        QCOMPARE(clock_().frameCounter(deckB), 600.0);
        QVERIFY(decks.state.deckB.restartRequested);
    }

    void aRequestThatCameBeforeTheFirstBufferIsDoneWithIt() {
        DrivenDecks decks;
        decks.state.deckA.restartRequested = true;
        process(decks, NumberedBuffer(64, 6));
        QVERIFY(!decks.state.deckA.restartRequested);
        QCOMPARE(clock_().frameCounter(deckA), 64.0);
        QCOMPARE(decks.pointsA.view().size(), std::size_t{1});
    }

    void aBufferWithoutSamplesStillStartsTheDecks() {
        DrivenDecks decks;
        clock_().setFrameCounter(deckA, 500.0);
        processInput(decks.state, nullptr, 64);
        QVERIFY(decks.state.started);
        QCOMPARE(clock_().frameCounter(deckA), 0.0);
        QCOMPARE(decks.takeA.samples().size(), std::size_t{0});
        process(decks, NumberedBuffer(0, 6));
        QCOMPARE(clock_().frameCounter(deckA), 0.0);
    }

    void aStreamOfNoChannelsEndsAtOnce() {
        DrivenDecks decks;
        decks.state.channels = 0;
        process(decks, NumberedBuffer(64, 6));
        QCOMPARE(clock_().frameCounter(deckA), 0.0);
        QVERIFY(decks.state.started);
    }

    void theMasterIsNeverDecoded() {
        DrivenDecks decks;
        decks.state.deckA.served = false;
        decks.state.deckB.served = false;
        process(decks, NumberedBuffer(640, 6));
        QVERIFY(decks.pointsA.view().empty() && decks.pointsB.view().empty());
        QCOMPARE(decks.takeMaster.samples().size(), std::size_t{1280});
    }

    void whatTheDecodersMakeOfABufferDoesntDependOnItsSize() {
        const DrivenSetup setup;
        const TimecodeDefinition def = definitionNamed(setup.timecode);
        const SyntheticRecord recordA(def, setup.rate, Motion(MotionPattern::Baby));
        const SyntheticRecord recordB(def, setup.rate, Motion(MotionPattern::Walk));
        constexpr std::size_t total = 48000;
        const std::vector<std::int16_t> frames = streamFrames(setup, recordA, recordB, 0, total);
        std::vector<CurvePoint> points;
        for (const std::size_t size : {total, std::size_t{64}, std::size_t{1}, std::size_t{777}}) {
            DrivenDecks decks(setup);
            for (std::size_t at = 0; at < total; at += size) {
                processInput(decks.state, frames.data() + at * setup.channels, std::min(size, total - at));
            }
            const CurvePointStore::View a = decks.pointsA.view();
            const CurvePointStore::View b = decks.pointsB.view();
            QCOMPARE(a.size(), total / 64);
            QCOMPARE(b.size(), total / 64);
            std::vector<CurvePoint> seen;
            for (std::size_t i = 0; i < a.size(); ++i) {
                seen.push_back(a[i]);
                seen.push_back(b[i]);
            }
            if (points.empty()) {
                points = seen;
            }
            QVERIFY(std::memcmp(seen.data(), points.data(), points.size() * sizeof(CurvePoint)) == 0);
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_InputCallback)
#include "tst_inputcallback.moc"
