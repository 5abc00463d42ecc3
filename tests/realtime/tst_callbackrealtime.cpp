// The callbacks' promise: no allocation, no lock, no system call. The real input callback and the ring's
// other end run a million times, each on a thread of its own, with all of these counted, while a third thread
// does what the GUI does meanwhile.

#include "countedcalls.h"
#include "model/objectmidi.h"
#include "state/midi.h"
#include "state/time.h"
#include "support/drivendecks.h"
#include "support/testmain.h"

#include <QTest>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <thread>

#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using CountedCalls::Counts;

namespace {

/// A thread whose calls can be counted. `run` is called on it once.
class CountedThread {
public:
    explicit CountedThread(std::function<void()> run) : m_run(std::move(run)) {
        pthread_create(&m_thread, nullptr, &enter, this);
    }
    ~CountedThread() { join(); }
    void join() {
        if (!m_joined) {
            pthread_join(m_thread, nullptr);
            m_joined = true;
        }
    }
    /// Why system calls weren't counted, or null. After join.
    const char* refusal() const { return m_refusal; }

private:
    static void* enter(void* self) {
        auto* thread = static_cast<CountedThread*>(self);
        thread->m_refusal = CountedCalls::watchSystemCalls();
        thread->m_run();
        if (thread->m_refusal == nullptr) {
            CountedCalls::leaveThread();
        }
        return nullptr;
    }
    std::function<void()> m_run;
    const char* m_refusal = nullptr;
    bool m_joined = false;
    pthread_t m_thread{};
};

/// A thread's first allocation sets up memory of the allocator itself.
void warmAllocator() {
    void* volatile block = std::malloc(1);
    std::free(block);
}

constexpr std::uint64_t mostAhead = 500'000; // frames that the callback may run ahead of the housekeeping

/// One session and what its three threads share.
struct Session {
    DrivenDecks decks;
    std::vector<std::int16_t> tape; ///< a loop of frames
    std::size_t tapeFrames;
    std::uint64_t callbacks;
    std::atomic<std::uint64_t> frames{0};
    std::atomic<std::uint64_t> prepared{0}; ///< frames at the last housekeeping
    std::atomic<bool> ended{false};
    Counts inputCounts;
    Counts outputCounts;
    std::uint64_t popped = 0;

    Session(const DrivenSetup& setup, std::uint64_t runs)
        : decks(setup), tapeFrames(static_cast<std::size_t>(setup.rate)), callbacks(runs) {
        RecordOptions dusty;
        dusty.noisePercent = 0.5;
        dusty.dustPerSecond = 5.0;
        const TimecodeDefinition def = definitionNamed(setup.timecode);
        const SyntheticRecord a(def, setup.rate, Motion(MotionPattern::Baby), dusty);
        const SyntheticRecord b(def, setup.rate, Motion(MotionPattern::Walk, 120.0, 60.0, 3));
        tape = streamFrames(setup, a, b, 48000, tapeFrames);
    }

    /// The input stream's thread: buffers of 1 to 64 frames, now and then one without samples. Those that
    /// find the gate closed don't count as callbacks: they are over at once.
    void playInput() {
        CountedCalls::start();
        std::size_t at = 0;
        std::uint64_t fed = 0;
        std::uint64_t played = 0;
        for (std::uint64_t i = 0; played < callbacks; ++i) {
            while (fed > prepared.load(std::memory_order_acquire) + mostAhead) {
            }
            const std::uint64_t chance = scatter(11, i);
            const std::size_t wanted = 1 + chance % 64;
            const std::size_t n = std::min(wanted, tapeFrames - at);
            const bool silent = (chance >> 32) % 5000 == 0;
            played += decks.state.mode->modeStartSynchronized() && !silent ? 1U : 0U;
            processInput(decks.state, silent ? nullptr : tape.data() + at * decks.state.channels, n);
            at = (at + n) % tapeFrames;
            fed += silent ? 0 : n;
            frames.store(fed, std::memory_order_release);
        }
        inputCounts = CountedCalls::stop();
        ended.store(true, std::memory_order_release);
    }

    /// The output stream's thread: takes what the rings hold.
    void playOutput() {
        CountedCalls::start();
        CurvePoint point;
        while (!ended.load(std::memory_order_acquire)) {
            while (decks.ringA.pop(point) || decks.ringB.pop(point)) {
                ++popped;
            }
        }
        outputCounts = CountedCalls::stop();
    }

    void housekeeping() {
        const std::uint64_t seen = frames.load(std::memory_order_acquire);
        decks.housekeeping();
        prepared.store(seen, std::memory_order_release);
    }
};

/// One deed of the GUI: what a user, a timer or a paint does while a session runs.
void disturb(Session& session, std::uint64_t step) {
    const Singleton& shared = Singleton::instance();
    DrivenDecks& decks = session.decks;
    const std::uint64_t chance = scatter(23, step);
    switch (chance % 12) {
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
        decks.curveB.resetCurve();
        break;
    case 4:
        chance >> 63 ? shared.mode()->modeMix_on() : shared.mode()->modeMix_off();
        break;
    case 5:
        chance >> 63 ? shared.mode()->modeReverse_on() : shared.mode()->modeReverse_off();
        break;
    case 6:
        // Takes that pause show that the flag decides, buffer by buffer.
        chance >> 63 ? shared.mode()->modeRecorder_on() : shared.mode()->modeRecorder_off();
        break;
    case 7:
        shared.mode()->modeStartSynchronized_off();
        std::this_thread::sleep_for(std::chrono::microseconds(100));
        shared.mode()->modeStartSynchronized_on();
        break;
    case 8:
    case 9: {
        constexpr int values[] = {0, 63, 127};
        ObjectMidi reading;
        reading.setValue(values[(chance >> 32) % 3]);
        shared.midi()->setObject(reading);
        break;
    }
    default: {
        double min = 0.0;
        double max = 0.0;
        bool found = false;
        decks.curveA.minMaxPosition(1000, 100000, min, max, found);
        decks.curveB.minMaxPosition(1000, 100000, min, max, found);
        break;
    }
    }
}

/// Plays the session to its end. Why system calls weren't counted, or null.
const char* run(Session& session, bool disturbed) {
    CountedThread input([&session] { session.playInput(); });
    CountedThread output([&session] { session.playOutput(); });
    for (std::uint64_t step = 0; !session.ended.load(std::memory_order_acquire); ++step) {
        session.housekeeping();
        if (disturbed) {
            disturb(session, step);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
    input.join();
    output.join();
    return input.refusal();
}

constexpr std::uint64_t million = 1'000'000;

} // namespace

class TestCallbackRealtime : public QObject {
    Q_OBJECT

private:
    std::uint64_t m_callbacks = 0;

private Q_SLOTS:
    void plantedCallsAreCounted() {
        if (const char* reason = CountedCalls::callsUncounted()) {
            QSKIP(reason);
        }
        Counts nothing;
        Counts each;
        Counts objects;
        Counts systemOnly;
        long parent = 0;
        CountedThread thread([&] {
            pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
            warmAllocator();
            CountedCalls::start();
            nothing = CountedCalls::stop();

            CountedCalls::start();
            void* volatile block = std::malloc(100);
            pthread_mutex_lock(&mutex);
            std::free(block);
            each = CountedCalls::stop();
            pthread_mutex_unlock(&mutex);

            CountedCalls::start();
            std::mutex other;
            std::uint64_t* volatile object = new std::uint64_t[100]();
            { const std::lock_guard lock(other); }
            delete[] object;
            objects = CountedCalls::stop();

            CountedCalls::start();
            parent = syscall(SYS_getppid);
            systemOnly = CountedCalls::stop();
        });
        thread.join();
        QCOMPARE(parent, long(getppid()));
        QVERIFY(nothing == Counts());
        QVERIFY((each == Counts{1, 1, 1, 0}));
        QVERIFY((objects == Counts{1, 1, 1, 0}));
        if (thread.refusal() != nullptr) {
            QSKIP(thread.refusal());
        }
        QVERIFY((systemOnly == Counts{0, 0, 0, 1}));
    }

    // A call that has to wait for another thread goes to the kernel by itself, whoever makes the lock.
    void contendedLockIsASystemCall() {
        if (const char* reason = CountedCalls::callsUncounted()) {
            QSKIP(reason);
        }
        std::mutex mutex;
        mutex.lock();
        std::atomic<bool> waits{false};
        Counts counts;
        CountedThread thread([&] {
            CountedCalls::start();
            waits.store(true);
            mutex.lock();
            counts = CountedCalls::stop();
            mutex.unlock();
        });
        while (!waits.load()) {
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        mutex.unlock();
        thread.join();
        QCOMPARE(counts.locks, std::uint64_t{1});
        if (thread.refusal() != nullptr) {
            QSKIP(thread.refusal());
        }
        QCOMPARE_GE(counts.systemCalls, std::uint64_t{1});
    }

    void callbackCallsNothing_data() {
        QTest::addColumn<DrivenSetup>("setup");
        QTest::addColumn<quint64>("callbacks");
        QTest::addColumn<bool>("grows");

        DrivenSetup everyFrame;
        everyFrame.outputBuffer = 1.0;
        QTest::newRow("past five million points") << everyFrame << quint64{200'000} << true;
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            DrivenSetup setup;
            setup.timecode = QString::fromStdString(def.name());
            QTest::newRow(def.name().c_str()) << setup << quint64{100'000} << false;
        }
        DrivenSetup fractional;
        fractional.rate = 44100.0;
        fractional.outputBuffer = 100.0;
        QTest::newRow("44100 Hz against 48000 Hz") << fractional << quint64{100'000} << false;
        DrivenSetup narrow;
        narrow.rate = 96000.0;
        narrow.channels = 4;
        narrow.pairDeckB = 2;
        narrow.pairMaster = 1;
        QTest::newRow("a pair outside the frame") << narrow << quint64{100'000} << false;
        DrivenSetup unrecorded;
        unrecorded.channels = 4;
        unrecorded.recording = false;
        QTest::newRow("without takes") << unrecorded << quint64{100'000} << false;
    }

    void callbackCallsNothing() {
        QFETCH(DrivenSetup, setup);
        QFETCH(quint64, callbacks);
        QFETCH(bool, grows);
        const char* uncounted = CountedCalls::callsUncounted();
        if (uncounted != nullptr) {
            callbacks /= 20; // a sanitizer judges them instead, and takes its time
        }
        Session session(setup, callbacks);
        const char* refusal = run(session, !grows);

        QCOMPARE(session.decks.overflows(), std::uint64_t{0});
        QCOMPARE_GT(session.popped, std::uint64_t{0});
        QCOMPARE_GT(Singleton::instance().time()->frameCounter(ModelGraph::INPUT_DECKA), 0.0);
        if (grows && uncounted == nullptr) {
            // Nothing was restarted: both curves run on into their second block and the takes over several.
            QCOMPARE_GT(session.decks.pointsA.size(), CurvePointStore::firstBlock);
            QCOMPARE_GT(session.decks.pointsB.size(), CurvePointStore::firstBlock);
            for (const ManageWAV* take :
                 {&session.decks.takeMaster, &session.decks.takeA, &session.decks.takeB}) {
                QCOMPARE(take->samples().size(), session.frames.load() * 2);
                QCOMPARE_GT(take->samples().size(), 8 * TakeStore::blockSamples);
            }
        }
        if (uncounted != nullptr) {
            QSKIP(uncounted);
        }
        QCOMPARE(session.inputCounts.allocations, std::uint64_t{0});
        QCOMPARE(session.inputCounts.frees, std::uint64_t{0});
        QCOMPARE(session.inputCounts.locks, std::uint64_t{0});
        QCOMPARE(session.inputCounts.systemCalls, std::uint64_t{0});
        QVERIFY(session.outputCounts == Counts());
        m_callbacks += callbacks;
        if (refusal != nullptr) {
            QSKIP(refusal);
        }
    }

    void thatWasAMillionCallbacks() {
        if (const char* reason = CountedCalls::callsUncounted()) {
            QSKIP(reason);
        }
        QCOMPARE_GE(m_callbacks, million);
    }

    // The count is worth something only if the path itself is seen: one allocation among its calls shows.
    void oneAllocationOnTheCallbackShows() {
        if (const char* reason = CountedCalls::callsUncounted()) {
            QSKIP(reason);
        }
        Session session(DrivenSetup(), 1000);
        Counts counts;
        CountedThread thread([&] {
            warmAllocator();
            CountedCalls::start();
            for (std::size_t i = 0; i < 1000; ++i) {
                processInput(session.decks.state, session.tape.data(), 16);
                if (i == 500) {
                    void* volatile block = std::malloc(1);
                    std::free(block);
                }
            }
            counts = CountedCalls::stop();
        });
        thread.join();
        QCOMPARE(counts.allocations, std::uint64_t{1});
        QCOMPARE(counts.frees, std::uint64_t{1});
        QCOMPARE(counts.locks, std::uint64_t{0});
        QCOMPARE(counts.systemCalls, std::uint64_t{0});
    }
};

GRAMO_TEST_GUILESS_MAIN(TestCallbackRealtime)

#include "tst_callbackrealtime.moc"
