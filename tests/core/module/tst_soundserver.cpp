// What becomes of streams whose sound server has gone or stands still. A lost server stays lost, so each case
// runs in a process of its own; `step` numbers what it looks at.

#include "curve/curvepointring.h"
#include "curve/curvepointstore.h"
#include "model/qsample.h"
#include "module/inputcallback.h"
#include "module/inputstream.h"
#include "module/soundserver.h"
#include "module/wavedata.h"
#include "module/workerrecordermultichannelobject.h"
#include "state/devicecatalogue.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/portaudiosession.h"
#include "state/singleton.h"
#include "state/time.h"
#include "support/datafolder.h"
#include "support/fakeportaudio.h"
#include "support/ownprocess.h"
#include "support/testmain.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

FakePortAudio& library() {
    return FakePortAudio::instance();
}

QSample card() {
    return QSample(ModelGraph::INPUT_DECKA, 0, u"card"_s, 44100.0, 4, 0);
}

// A stream on the server, and what is counted of it.
struct Rig {
    Mode mode;
    std::shared_ptr<InputCallbackState> state = std::make_shared<InputCallbackState>();
    std::unique_ptr<InputStream> stream;
    FakeStream* opened = nullptr;
    QSignalSpy lost{&SoundServer::instance(), &SoundServer::s_Lost};

    explicit Rig(bool open = true) {
        library().hostApi = paJACK;
        library().devices = {{"card", 44100.0, 4, 0, 0}};
        state->mode = &mode;
        stream = std::make_unique<InputStream>(state);
        if (open && stream->open(card(), 64)) {
            opened = library().streams.back();
        }
    }
    bool untouched() const { return !opened->stopped && !opened->closed && library().deadly == 0; }
    // Its server is lost for good, and nothing calls the library any more.
    bool over() const {
        const int initialised = library().initialised;
        const int calls = library().initialiseCalls;
        return SoundServer::instance().lost() && PortAudioSession::blocked() && lost.size() == 1 &&
               library().deadly == 0 && presentDevices().empty() && !PortAudioSession().ok() &&
               library().initialised == initialised && library().initialiseCalls == calls && initialised > 0;
    }
};

#define STEP(number, condition)                                                                              \
    if (!(condition)) {                                                                                      \
        return number;                                                                                       \
    }

} // namespace

class tst_SoundServer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aStreamOnALivingServerIsStoppedAndClosed() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     STEP(1, rig.stream->start());
                     STEP(2, rig.stream->close());
                     STEP(3, rig.opened->stopped && rig.opened->closed);
                     STEP(4, library().initialised == 0 && !PortAudioSession::blocked());
                     STEP(5, rig.lost.empty() && !SoundServer::instance().lost());
                     return 0;
                 }),
                 0);
    }

    void aStreamThatWasNeverStartedIsClosedToo() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     STEP(1, rig.stream->close());
                     STEP(2, rig.opened->closed && library().initialised == 0);
                     return 0;
                 }),
                 0);
    }

    void aStreamWhoseServerHasGoneIsNeitherStoppedNorClosedNorTheLibraryEnded() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     STEP(1, rig.stream->start());
                     library().server = FakePortAudio::IsGone;
                     QElapsedTimer clock;
                     clock.start();
                     STEP(2, !rig.stream->close());
                     STEP(3, clock.elapsed() < 500);
                     STEP(4, rig.untouched() && rig.over());
                     const std::weak_ptr<InputCallbackState> state = rig.state;
                     rig.stream.reset();
                     rig.state.reset();
                     STEP(5, !state.expired()); // it may still call
                     STEP(6, rig.untouched());
                     return 0;
                 }),
                 0);
    }

    void aServerThatGoesWhileAStreamIsStoppedLeavesItUnclosed() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     STEP(1, rig.stream->start());
                     library().streamStoppable = false;
                     STEP(2, !rig.stream->close());
                     STEP(3, rig.untouched() && rig.over());
                     return 0;
                 }),
                 0);
    }

    void aServerThatGoesInTheCountInIsNoticedAtTheStart() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     library().server = FakePortAudio::IsGone;
                     STEP(1, !rig.stream->start());
                     STEP(2, rig.over());
                     STEP(3, !rig.stream->close());
                     STEP(4, rig.untouched() && rig.over());
                     return 0;
                 }),
                 0);
    }

    void aServerThatGoesBeforeAStreamIsStartedIsNoticedAtItsEnd() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     library().server = FakePortAudio::IsGone;
                     STEP(1, !rig.stream->close());
                     STEP(2, rig.untouched() && rig.over());
                     return 0;
                 }),
                 0);
    }

    void aServerThatGoesBeforeAStreamIsOpenedIsNoticedThere() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig(false);
                     library().server = FakePortAudio::IsGone;
                     STEP(1, !rig.stream->open(card(), 64));
                     STEP(2, rig.over());
                     rig.stream.reset();
                     STEP(3, rig.over());
                     return 0;
                 }),
                 0);
    }

    void aStreamThatTheServerRefusesDoesntLoseTheServer() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     library().streamStartable = false;
                     STEP(1, !rig.stream->start());
                     STEP(2, rig.stream->close());
                     STEP(3, rig.opened->closed && library().initialised == 0 && rig.lost.empty());
                     return 0;
                 }),
                 0);
    }

    // It stands still longer than anybody waits, then runs on.
    void aStreamWhoseServerStandsStillIsClosedWhenItRunsOn() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     STEP(1, rig.stream->start());
                     rig.state->buffers = 5;
                     library().server = FakePortAudio::StandsStill;
                     STEP(2, !rig.stream->close(0ms));
                     QTest::qWait(int(InputStream::bufferWithin.count()) + 200);
                     STEP(3, PortAudioSession::blocked() && !SoundServer::instance().lost());
                     STEP(4, rig.untouched());
                     library().server = FakePortAudio::Runs;
                     STEP(5, QTest::qWaitFor([] { return !PortAudioSession::blocked(); }));
                     STEP(6, rig.opened->stopped && rig.opened->closed && library().initialised == 0);
                     STEP(7, rig.lost.empty());
                     return 0;
                 }),
                 0);
    }

    void aServerThatStandsStillAndThenGoesIsLost() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     STEP(1, rig.stream->start());
                     library().server = FakePortAudio::StandsStill;
                     STEP(2, !rig.stream->close(0ms));
                     QTest::qWait(int(InputStream::bufferWithin.count()) + 200);
                     library().server = FakePortAudio::IsGone;
                     STEP(3, QTest::qWaitFor([&] { return rig.lost.size() == 1; }));
                     STEP(4, rig.untouched() && rig.over());
                     return 0;
                 }),
                 0);
    }

    void theStartOfAStreamWhoseServerStandsStillKeepsNobodyLong() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     library().server = FakePortAudio::StandsStill;
                     QElapsedTimer clock;
                     clock.start();
                     STEP(1, !rig.stream->start());
                     STEP(2, !rig.stream->close());
                     STEP(3, clock.elapsed() <
                                 (InputStream::openDeadline + 2 * InputStream::closeDeadline).count());
                     library().server = FakePortAudio::Runs;
                     STEP(4, QTest::qWaitFor([] { return !PortAudioSession::blocked(); }));
                     STEP(5, rig.opened->closed && library().initialised == 0);
                     return 0;
                 }),
                 0);
    }

    void onceLostNothingIsOpenedThoughAServerRunsAgain() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     STEP(1, rig.stream->start());
                     library().server = FakePortAudio::IsGone;
                     STEP(2, !rig.stream->close());
                     library().server = FakePortAudio::Runs;
                     const int initialised = library().initialised;
                     InputStream another(std::make_shared<InputCallbackState>());
                     STEP(3, !another.open(card(), 64));
                     STEP(4, another.close());
                     STEP(5, library().initialised == initialised && rig.untouched());
                     return 0;
                 }),
                 0);
    }

    // The library lets the server's client go along with itself, though nothing of ours was on it.
    void aServerThatGoesBesideACardLeavesTheLibraryStandingAndTheCardClosed() {
        QCOMPARE(inAnOwnProcess([] {
                     Rig rig;
                     rig.stream->close();
                     library().hostApi = paALSA;
                     InputStream onCard(rig.state);
                     STEP(1, onCard.open(card(), 64) && onCard.start());
                     rig.opened = library().streams.back();
                     library().hostApi = paJACK;
                     library().server = FakePortAudio::IsGone;
                     onCard.close();
                     STEP(2, rig.opened->stopped && rig.opened->closed);
                     STEP(3, rig.over());
                     return 0;
                 }),
                 0);
    }

    void aRecorderWhoseServerHasGoneKeepsItsTakeAndNobodyWaiting() {
        QCOMPARE(inAnOwnProcess([] {
                     ownDataFolder();
                     library().hostApi = paJACK;
                     library().devices = {{"card", 44100.0, 4, 0, 0}};
                     Singleton& shared = Singleton::instance();
                     shared.mode()->modeRecorder_on();
                     shared.mode()->modeStartSynchronized_on();
                     shared.pathFile()->newPathDirectory_recording();
                     CurvePointRing ring;
                     CurvePointStore points;
                     WorkerRecorderMultiChannelObject recorder(ring, points, ring, points);
                     QSample sample = card();
                     recorder.load(ModelGraph::INPUT_DECKA, nullptr, &sample, nullptr);
                     recorder.record();
                     STEP(1, recorder.isRunning());
                     const std::vector<std::int16_t> silence(640 * 4);
                     const FakeStream& stream = *library().streams.back();
                     stream.call(silence.data(), 640);
                     library().server = FakePortAudio::IsGone;
                     QElapsedTimer clock;
                     clock.start();
                     recorder.stop(); // at once, before anything is missed
                     STEP(2, clock.elapsed() < 500);
                     STEP(3, SoundServer::instance().lost() && library().deadly == 0);
                     STEP(4, !stream.stopped && !stream.closed);
                     const QString file =
                         shared.pathFile()->pathDirectoryRecording() + u'/' + sample.fileName();
                     STEP(5, readWave(file)->length() == 640);
                     stream.call(silence.data(), 640); // a late call reaches nobody
                     STEP(6, shared.time()->frameCounter(ModelGraph::INPUT_DECKA) == 640.0);
                     QSignalSpy silent(&recorder, &WorkerRecorderMultiChannelObject::s_SilentInput);
                     recorder.load(ModelGraph::INPUT_DECKA, nullptr, &sample, nullptr);
                     STEP(7, !recorder.isOpen() && silent.size() == 1);
                     recorder.stop();
                     STEP(8, library().deadly == 0);
                     return 0;
                 }),
                 0);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_SoundServer)
#include "tst_soundserver.moc"
