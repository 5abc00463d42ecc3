#include "curve/curvepointring.h"
#include "curve/curvepointstore.h"
#include "model/qsample.h"
#include "module/audionotifier.h"
#include "module/managewav.h"
#include "module/receivetimecodedvsobject.h"
#include "module/takestore.h"
#include "module/wavedata.h"
#include "module/workerrecordermultichannelobject.h"
#include "state/mode.h"
#include "state/performance.h"
#include "state/portaudiosession.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "state/time.h"
#include "support/datafolder.h"
#include "support/fakeportaudio.h"
#include "support/testmain.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;
constexpr auto master = ModelGraph::INPUT_MASTER;
using Recorder = WorkerRecorderMultiChannelObject;

Singleton& shared() {
    return Singleton::instance();
}
FakePortAudio& library() {
    return FakePortAudio::instance();
}
FakeStream& lastStream() {
    return *library().streams.back();
}

// Samples of one card of six channels.
struct Card {
    QSample a{deckA, 0, u"card"_s, 44100.0, 6, 0};
    QSample b{deckB, 0, u"card"_s, 44100.0, 6, 1};
    QSample m{master, 0, u"card"_s, 44100.0, 6, 2};
};

struct Rig {
    CurvePointRing ringA;
    CurvePointRing ringB;
    CurvePointStore pointsA;
    CurvePointStore pointsB;
    Recorder recorder{ringA, pointsA, ringB, pointsB};
};

std::vector<std::int16_t> numbered(std::size_t frames) {
    std::vector<std::int16_t> samples(frames * 6);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<std::int16_t>(i);
    }
    return samples;
}

void feed(std::size_t frames) {
    const std::vector<std::int16_t> samples = numbered(frames);
    lastStream().call(samples.data(), frames);
}

QStringList filesIn(const QString& folder) {
    return QDir(folder).entryList(QDir::Files, QDir::Name);
}

} // namespace

class tst_WorkerRecorderMultiChannelObject : public QObject {
    Q_OBJECT

    QString m_data;

private Q_SLOTS:
    void initTestCase() { m_data = ownDataFolder(); }

    void init() {
        library().devices = {{"card", 44100.0, 6, 2, 0}};
        library().openable = true;
        library().streamStartable = true;
        Mode& mode = *shared().mode();
        mode.modeRecorder_off();
        mode.modeStartSynchronized_on();
        Performance& performance = *shared().performance();
        performance.setInputBuffer(deckA, 64.9);
        performance.setInputBuffer(deckB, 512.0);
        performance.setOutputBuffer(64.0);
        shared().pathFile()->newPathDirectory_recording();
        for (const auto name : {deckA, deckB}) {
            shared().time()->clearFrameCounter(name);
            shared().time()->observeFrameCounter(name);
        }
    }
    void cleanup() {
        QTRY_VERIFY(!PortAudioSession::blocked());
        QCOMPARE(int(library().initialised), 0);
    }

    void aNewRecorderHasTwoDecodersAndNoStream() {
        const Rig rig;
        QVERIFY(rig.recorder.decoderDeckA() != rig.recorder.decoderDeckB());
        QCOMPARE(rig.recorder.decoderDeckA()->state().name, deckA);
        QCOMPARE(rig.recorder.decoderDeckB()->state().name, deckB);
        QVERIFY(!rig.recorder.isOpen() && !rig.recorder.isRunning());
        QVERIFY(rig.recorder.callbackState() == nullptr);
        QVERIFY(rig.recorder.notifier() != nullptr);
        QCOMPARE(rig.recorder.overflows(), std::uint64_t{0});
    }

    void whatHasNoRoomIsCountedAndTold() {
        Card card;
        Rig rig;
        shared().mode()->modeRecorder_on();
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        QSignalSpy told(&rig.recorder, &Recorder::s_Overflow);
        // More than the blocks made ahead hold, while the GUI thread is too busy to make more.
        constexpr std::size_t chunk = 1 << 16;
        constexpr std::size_t room = (TakeStore::blocksAhead + 1) * TakeStore::blockSamples / 2; // frames
        const std::vector<std::int16_t> silence(chunk * 6);
        for (std::size_t sent = 0; sent < room + 2 * chunk; sent += chunk) {
            lastStream().call(silence.data(), chunk);
        }
        const std::uint64_t lost = rig.recorder.overflows();
        QVERIFY(lost > 0);
        QTRY_COMPARE(told.size(), 1);
        QCOMPARE(told.at(0).at(0).toULongLong(), quint64(lost));
        QTest::qWait(2 * Recorder::housekeepingInterval);
        QCOMPARE(told.size(), 1); // once for a number
        shared().mode()->modeRecorder_off();
        rig.recorder.stop();
    }

    // ---- opening ----

    void theRoleChoosesTheDeviceThatIsOpened() {
        QSample a(deckA, 0, u"one"_s, 44100.0, 2, 0);
        QSample b(deckB, 1, u"two"_s, 48000.0, 4, 1);
        QSample m(master, 2, u"three"_s, 96000.0, 6, 2);
        library().devices = {
            {"one", 44100.0, 2, 0, 0}, {"two", 48000.0, 4, 0, 0}, {"three", 96000.0, 6, 0, 0}};
        Rig rig;
        struct Expected {
            ModelGraph::EnumGraph name;
            int device;
            int channels;
            double rate;
            unsigned long frames; // the buffer of the role, truncated
        };
        for (const Expected& e : {Expected{deckA, 0, 2, 44100.0, 64}, Expected{deckB, 1, 4, 48000.0, 512},
                                  Expected{master, 2, 6, 96000.0, 512}}) {
            rig.recorder.load(e.name, &m, &a, &b);
            QVERIFY(rig.recorder.isOpen());
            QVERIFY(!rig.recorder.isRunning());
            const FakeStream& stream = lastStream();
            QCOMPARE(stream.input.device, e.device);
            QCOMPARE(stream.input.channelCount, e.channels);
            QCOMPARE(stream.input.sampleFormat, PaSampleFormat{paInt16});
            QCOMPARE(stream.rate, e.rate);
            QCOMPARE(stream.frames, e.frames);
            QCOMPARE(stream.flags, PaStreamFlags{0});
            QVERIFY(!stream.hadOutput && !stream.started);
            rig.recorder.stop();
            QVERIFY(stream.closed);
        }
    }

    void anyOtherRoleOpensNothing() {
        Rig rig;
        Card card;
        const std::size_t before = library().streams.size();
        for (const auto name : {ModelGraph::OUTPUT_MASTER, ModelGraph::INPUT_1, ModelGraph::NOT_USED}) {
            rig.recorder.load(name, &card.m, &card.a, &card.b);
            QVERIFY(!rig.recorder.isOpen());
            rig.recorder.record();
            QVERIFY(!rig.recorder.isRunning());
            rig.recorder.stop();
        }
        QCOMPARE(library().streams.size(), before);
    }

    void aSampleWithoutADeviceOpensNothing() {
        Rig rig;
        QSample none(deckA);
        const std::size_t before = library().streams.size();
        shared().mode()->modeRecorder_on();
        rig.recorder.load(deckA, nullptr, &none, nullptr);
        QVERIFY(!rig.recorder.isOpen());
        rig.recorder.record();
        rig.recorder.stop();
        rig.recorder.load(deckA, nullptr, nullptr, nullptr);
        rig.recorder.record();
        rig.recorder.stop();
        QCOMPARE(library().streams.size(), before);
        QVERIFY(!QFileInfo::exists(m_data + u"/Recording/"_s + shared().pathFile()->directoryRecording()));
    }

    void aDeviceThatCantBeOpenedGivesARecorderThatNeverRuns() {
        Rig rig;
        Card card;
        library().openable = false;
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        QVERIFY(!rig.recorder.isOpen());
        rig.recorder.record();
        QVERIFY(!rig.recorder.isRunning());
        QVERIFY(!rig.recorder.decoderDeckA()->isFed());
        rig.recorder.stop();
    }

    void loadingAgainClosesTheOldStream() {
        Rig rig;
        Card card;
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        const FakeStream& first = lastStream();
        rig.recorder.load(deckB, nullptr, nullptr, &card.b);
        QVERIFY(first.closed);
        QVERIFY(rig.recorder.isOpen());
        QCOMPARE(int(library().initialised), 1);
        rig.recorder.stop();
    }

    // ---- running ----

    void nothingIsTakenBeforeTheStreamIsStarted() {
        Rig rig;
        Card card;
        rig.recorder.timecodeInitialise();
        rig.recorder.load(deckA, nullptr, &card.a, &card.b);
        feed(64);
        QCOMPARE(shared().time()->frameCounter(deckA), 0.0);
        rig.recorder.record();
        QVERIFY(lastStream().started);
        QVERIFY(rig.recorder.isRunning());
        feed(64);
        QCOMPARE(shared().time()->frameCounter(deckA), 64.0);
        QCOMPARE(shared().time()->frameCounter(deckB), 64.0);
        rig.recorder.stop();
        QVERIFY(!rig.recorder.isRunning());
    }

    void onlyTheDecksThatAreServedAreFed() {
        Rig rig;
        Card card;
        rig.recorder.timecodeInitialise();
        rig.recorder.load(deckB, nullptr, nullptr, &card.b);
        QVERIFY(!rig.recorder.decoderDeckB()->isFed());
        rig.recorder.record();
        QVERIFY(rig.recorder.decoderDeckB()->isFed());
        QVERIFY(!rig.recorder.decoderDeckA()->isFed());
        feed(128);
        QCOMPARE(shared().time()->frameCounter(deckB), 128.0);
        QCOMPARE(shared().time()->frameCounter(deckA), 0.0);
        QCOMPARE(rig.pointsB.view().size(), std::size_t{2});
        QVERIFY(rig.pointsA.view().empty());
        rig.recorder.stop();
        QVERIFY(!rig.recorder.decoderDeckB()->isFed());
        QVERIFY(!rig.pointsB.isLive());
        QCOMPARE(rig.pointsB.view().size(), std::size_t{2}); // the curve stays
    }

    void aSecondStartChangesNothing() {
        Rig rig;
        Card card;
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        lastStream().started = false;
        rig.recorder.record();
        QVERIFY(!lastStream().started);
        rig.recorder.stop();
    }

    void stopTwiceIsStopOnce() {
        Rig rig;
        Card card;
        rig.recorder.stop(); // before anything
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        rig.recorder.stop();
        QVERIFY(lastStream().stopped && lastStream().closed);
        QCOMPARE(int(library().initialised), 0);
        QVERIFY(rig.recorder.callbackState() == nullptr);
        rig.recorder.stop();
        QCOMPARE(int(library().initialised), 0);
    }

    void aDestroyedRecorderClosesItsStream() {
        Card card;
        {
            Rig rig;
            shared().mode()->modeRecorder_on();
            rig.recorder.load(deckA, &card.m, &card.a, &card.b);
            rig.recorder.record();
            feed(64);
        }
        QVERIFY(lastStream().closed);
    }

    // ---- takes ----

    void aRecordedSessionWritesATakeForEachInputServed() {
        Rig rig;
        Card card;
        shared().mode()->modeRecorder_on();
        rig.recorder.timecodeInitialise();
        rig.recorder.load(deckA, &card.m, &card.a, &card.b);
        rig.recorder.record();
        feed(1000);
        feed(24);
        const QString folder = m_data + u"/Recording/"_s + shared().pathFile()->directoryRecording();
        QVERIFY(!QFileInfo::exists(folder)); // made with the first file
        rig.recorder.stop();
        QStringList expected{card.a.fileName(), card.b.fileName(), card.m.fileName()};
        expected.sort();
        QCOMPARE(filesIn(folder), expected);
        const std::vector<std::int16_t> samples = numbered(1000);
        int pair = 0;
        for (QSample* sample : {&card.a, &card.b, &card.m}) {
            const auto wave = readWave(folder + u'/' + sample->fileName());
            QCOMPARE(wave->sampleRate(), 44100U);
            QCOMPARE(wave->channels(), 2U);
            QCOMPARE(wave->length(), std::size_t{1024});
            for (std::size_t i = 0; i < 1000; ++i) {
                QCOMPARE(wave->samples(0)[i], samples[i * 6 + std::size_t(pair) * 2]);
                QCOMPARE(wave->samples(1)[i], samples[i * 6 + std::size_t(pair) * 2 + 1]);
            }
            ++pair;
        }
    }

    void anInputThatIsntServedGetsNoTake() {
        Rig rig;
        Card card;
        shared().mode()->modeRecorder_on();
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(64);
        rig.recorder.stop();
        QCOMPARE(filesIn(shared().pathFile()->pathDirectoryRecording()), QStringList(card.a.fileName()));
    }

    void anInputThatDeliveredNothingGetsNoTake_data() {
        QTest::addColumn<bool>("openable");
        QTest::addColumn<bool>("startable");
        QTest::newRow("its stream couldn't be opened") << false << true;
        QTest::newRow("its stream couldn't be started") << true << false;
        QTest::newRow("no buffer came") << true << true;
    }
    void anInputThatDeliveredNothingGetsNoTake() {
        QFETCH(bool, openable);
        QFETCH(bool, startable);
        library().openable = openable;
        library().streamStartable = startable;
        Rig rig;
        Card card;
        shared().mode()->modeRecorder_on();
        rig.recorder.load(deckA, &card.m, &card.a, &card.b);
        rig.recorder.record();
        rig.recorder.stop();
        QVERIFY(!QFileInfo::exists(m_data + u"/Recording/"_s + shared().pathFile()->directoryRecording()));
    }

    void withoutRecordingNoFileExistsAfterwards() {
        Rig rig;
        Card card;
        rig.recorder.load(deckA, &card.m, &card.a, &card.b);
        rig.recorder.record();
        feed(64);
        rig.recorder.stop();
        QVERIFY(!QFileInfo::exists(m_data + u"/Recording/"_s + shared().pathFile()->directoryRecording()));
    }

    void aTakeWhoseFolderCantBeHadIsWrittenElsewhere() {
        Rig rig;
        Card card;
        shared().mode()->modeRecorder_on();
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(64);
        // A file stands where the folder belongs.
        QFile inTheWay(m_data + u"/Recording/"_s + shared().pathFile()->directoryRecording());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        rig.recorder.stop();
        const QString folder = shared().pathFile()->pathDirectoryRecording();
        QVERIFY(folder != inTheWay.fileName());
        QCOMPARE(filesIn(folder), QStringList(card.a.fileName()));
        QCOMPARE(readWave(folder + u'/' + card.a.fileName())->length(), std::size_t{64});
    }

    void aTakeThatCantBeWrittenIsLeftInSilence() {
        Rig rig;
        Card card;
        shared().mode()->modeRecorder_on();
        rig.recorder.load(deckA, nullptr, &card.a, &card.b);
        rig.recorder.record();
        feed(64);
        // A folder stands where the file belongs.
        const QString folder = shared().pathFile()->pathDirectoryRecording();
        QVERIFY(QDir(folder).mkpath(card.a.fileName()));
        rig.recorder.stop();
        QVERIFY(!rig.recorder.isOpen());
        QCOMPARE(filesIn(folder), QStringList(card.b.fileName())); // the other one is saved
    }

    void initForgetsWhatWasLoaded() {
        Rig rig;
        Card card;
        shared().mode()->modeRecorder_on();
        library().openable = false;
        rig.recorder.load(deckA, &card.m, &card.a, &card.b);
        const InputCallbackState& state = *rig.recorder.callbackState();
        const std::unique_ptr<ManageWAV> takes[] = {std::unique_ptr<ManageWAV>(state.master.take),
                                                    std::unique_ptr<ManageWAV>(state.deckA.take),
                                                    std::unique_ptr<ManageWAV>(state.deckB.take)};
        const std::int16_t sample = 7;
        for (const auto& take : takes) {
            QVERIFY(take != nullptr);
            take->append(&sample);
        }
        QSignalSpy silent(&rig.recorder, &Recorder::s_SilentInput);
        rig.recorder.record();
        QCOMPARE(silent.count(), 3);
        rig.recorder.init();
        rig.recorder.record();
        QCOMPARE(silent.count(), 3); // no input is known any more
        rig.recorder.stop();         // nor a main one, so nothing is ended or written
        QVERIFY(rig.recorder.callbackState() != nullptr);
        QVERIFY(!QFileInfo::exists(m_data + u"/Recording/"_s + shared().pathFile()->directoryRecording()));
        for (const auto& take : takes) { // nothing was freed
            QCOMPARE(take->samples().size(), std::size_t{1});
        }
        QCOMPARE(card.a.deviceName(), u"card"_s);
    }

    // ---- the decoders ----

    void initialisingReachesBothDecoders() {
        Rig rig;
        shared().setting()->setTimecode(u"traktor_sideB"_s);
        rig.recorder.timecodePrepare();
        rig.recorder.timecodeInitialise();
        QCOMPARE(rig.recorder.decoderDeckA()->definition().name(), std::string("traktor_sideB"));
        QCOMPARE(rig.recorder.decoderDeckB()->definition().name(), std::string("traktor_sideB"));
        shared().setting()->setTimecode(u"generic_V2"_s);
    }

    void aNewGridOfADeckThatNothingFeedsIsDoneAndAnnounced() {
        Rig rig;
        QSignalSpy a(&rig.recorder, &Recorder::s_UpdateBPM_DeckA);
        QSignalSpy b(&rig.recorder, &Recorder::s_UpdateBPM_DeckB);
        shared().time()->setFrameCounter(deckA, 500.0);
        shared().time()->setFrameCounter(deckB, 600.0);
        rig.recorder.timecodeUpdateBPM_DeckA();
        QCOMPARE(a.count(), 1);
        QCOMPARE(b.count(), 0);
        QCOMPARE(shared().time()->frameCounter(deckA), 0.0);
        QCOMPARE(shared().time()->frameCounter(deckB), 600.0);
        rig.recorder.timecodeUpdateBPM_DeckB();
        QCOMPARE(b.count(), 1);
        QCOMPARE(shared().time()->frameCounter(deckB), 0.0);
    }

    void aNewGridOfADeckThatThisStreamFeedsIsDoneByTheCallback() {
        Rig rig;
        Card card;
        QSignalSpy a(&rig.recorder, &Recorder::s_UpdateBPM_DeckA);
        rig.recorder.timecodeInitialise();
        rig.recorder.load(deckA, nullptr, &card.a, &card.b);
        rig.recorder.record();
        feed(192);
        shared().time()->observeFrameCounter(deckA); // the GUI has seen the deck run
        rig.recorder.timecodeUpdateBPM_DeckA();
        QCOMPARE(shared().time()->frameCounter(deckA), 192.0); // not yet
        QCOMPARE(rig.pointsA.view().size(), std::size_t{3});
        feed(64);
        QCOMPARE(shared().time()->frameCounter(deckA), 64.0);
        QCOMPARE(shared().time()->frameCounter(deckB), 256.0);
        QCOMPARE(rig.pointsA.view().size(), std::size_t{1});
        QCOMPARE(a.count(), 0); // the curve is emptied already
        rig.recorder.stop();
    }

    void aDeckThatTheGuiHasntSeenRunIsRestartedByItsFirstBufferAlone() {
        Rig rig;
        Card card;
        rig.recorder.timecodeInitialise();
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(64);
        rig.recorder.timecodeUpdateBPM_DeckA();
        feed(64);
        QCOMPARE(shared().time()->frameCounter(deckA), 128.0);
        rig.recorder.stop();
    }

    void aDeckThatAnotherRecorderFeedsIsLeftAlone() {
        Rig rig;
        Recorder other(rig.ringA, rig.pointsA, rig.ringB, rig.pointsB);
        Card card;
        QSignalSpy a(&other, &Recorder::s_UpdateBPM_DeckA);
        rig.recorder.timecodeInitialise();
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(64);
        shared().time()->observeFrameCounter(deckA);
        other.timecodeUpdateBPM_DeckA();
        QCOMPARE(a.count(), 0);
        QCOMPARE(shared().time()->frameCounter(deckA), 64.0);
        feed(64);
        QCOMPARE(shared().time()->frameCounter(deckA), 128.0);
        rig.recorder.stop();
        other.timecodeUpdateBPM_DeckA();
        QCOMPARE(a.count(), 1);
    }

    void wordFromTheCallbackIsDeliveredOnTheGuiThread() {
        Rig rig;
        Card card;
        QSignalSpy level(rig.recorder.notifier(), &AudioNotifier::audioLevelChanged);
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        rig.recorder.notifier()->request();
        QCOMPARE(level.count(), 0);
        QTRY_COMPARE(level.count(), 1);
        rig.recorder.stop();
    }

    // ---- a sound server that is gone ----

    void aStreamThatCallsNoMoreIsReportedOnce() {
        Rig rig;
        Card card;
        QSignalSpy lost(&rig.recorder, &Recorder::s_StreamLost);
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(64);
        QTRY_COMPARE_WITH_TIMEOUT(lost.count(), 1, 4 * Recorder::lostAfter);
        QTest::qWait(2 * Recorder::housekeepingInterval);
        QCOMPARE(lost.count(), 1);
        rig.recorder.stop();
    }

    void aLostMasterThatNothingReadsEndsNoSession_data() {
        QTest::addColumn<bool>("recording");
        QTest::newRow("not recorded") << false;
        QTest::newRow("recorded") << true;
    }
    void aLostMasterThatNothingReadsEndsNoSession() {
        QFETCH(bool, recording);
        Rig rig;
        Card card;
        if (recording) {
            shared().mode()->modeRecorder_on();
        }
        QSignalSpy lost(&rig.recorder, &Recorder::s_StreamLost);
        QSignalSpy silent(&rig.recorder, &Recorder::s_SilentInput);
        rig.recorder.load(master, &card.m, nullptr, nullptr);
        rig.recorder.record();
        feed(64);
        QTest::qWait(Recorder::lostAfter + 4 * Recorder::housekeepingInterval);
        QCOMPARE(lost.count(), recording ? 1 : 0);
        QCOMPARE(silent.count(), recording ? 0 : 1);
        rig.recorder.stop();
    }

    void anInputWhoseStreamCantBeHadIsReportedSilent_data() {
        QTest::addColumn<bool>("openable");
        QTest::addColumn<int>("atLoading"); // times that each input is reported
        QTest::newRow("it couldn't be opened") << false << 1;
        QTest::newRow("it couldn't be started") << true << 0;
    }
    void anInputWhoseStreamCantBeHadIsReportedSilent() {
        QFETCH(bool, openable);
        QFETCH(int, atLoading);
        library().openable = openable;
        library().streamStartable = false;
        Rig rig;
        Card card;
        QSignalSpy silent(&rig.recorder, &Recorder::s_SilentInput);
        rig.recorder.load(deckB, &card.m, nullptr, &card.b);
        QCOMPARE(silent.count(), 2 * atLoading);
        silent.clear();
        rig.recorder.record();
        QCOMPARE(silent.count(), 2); // the inputs that it serves
        QCOMPARE(silent.at(0).at(0).value<ModelGraph::EnumGraph>(), master);
        QCOMPARE(silent.at(1).at(0).value<ModelGraph::EnumGraph>(), deckB);
        QVERIFY(silent.at(0).at(1).toBool() && silent.at(1).at(1).toBool());
        rig.recorder.stop();
        silent.clear();
        rig.recorder.record(); // nothing is loaded any more
        QCOMPARE(silent.count(), 0);
    }

    void anInputThatBringsNoBufferIsReportedSilentUntilOneComes() {
        Rig rig;
        Card card;
        QSignalSpy silent(&rig.recorder, &Recorder::s_SilentInput);
        QSignalSpy lost(&rig.recorder, &Recorder::s_StreamLost);
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        QTRY_COMPARE_WITH_TIMEOUT(silent.count(), 1, 4 * Recorder::lostAfter);
        QCOMPARE(silent.at(0).at(0).value<ModelGraph::EnumGraph>(), deckA);
        QVERIFY(silent.at(0).at(1).toBool());
        QTest::qWait(2 * Recorder::housekeepingInterval);
        QCOMPARE(silent.count(), 1);
        feed(64);
        QTRY_COMPARE(silent.count(), 2);
        QVERIFY(!silent.at(1).at(1).toBool());
        QCOMPARE(lost.count(), 0);
        rig.recorder.stop();
    }

    void anInputThatDeliversIsNeverReportedSilent() {
        Rig rig;
        Card card;
        QSignalSpy silent(&rig.recorder, &Recorder::s_SilentInput);
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(64);
        QTest::qWait(2 * Recorder::housekeepingInterval);
        rig.recorder.stop();
        QCOMPARE(silent.count(), 0);
    }

    void afterAHaltNothingChangesTheTakeWhichIsWrittenWithTheStop() {
        Rig rig;
        Card card;
        shared().mode()->modeRecorder_on();
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(640);
        rig.recorder.halt();
        QVERIFY(library().streams.back()->closed);
        feed(64); // a late call reaches nobody
        QCOMPARE(shared().time()->frameCounter(deckA), 640.0);
        const QString file = shared().pathFile()->pathDirectoryRecording() + u'/' + card.a.fileName();
        QVERIFY(!QFile::exists(file));
        rig.recorder.halt();
        rig.recorder.stop();
        QCOMPARE(readWave(file)->length(), std::size_t{640});
        QVERIFY(!rig.recorder.isOpen() && !rig.recorder.decoderDeckA()->isFed());
        rig.recorder.halt(); // of nothing
    }

    void aHaltOfALostServerDoesntCallTheLibrary() {
        Rig rig;
        Card card;
        shared().mode()->modeRecorder_on();
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(640);
        QTest::qWait(1000); // no more buffers
        rig.recorder.halt();
        QVERIFY(!library().streams.back()->stopped && !library().streams.back()->closed);
        feed(64); // a late call reaches nobody
        QCOMPARE(shared().time()->frameCounter(deckA), 640.0);
        rig.recorder.stop();
        const QString file = shared().pathFile()->pathDirectoryRecording() + u'/' + card.a.fileName();
        QCOMPARE(readWave(file)->length(), std::size_t{640});
    }

    void aTakeThatCantBeWrittenIsToldWithItsPath() {
        Rig rig;
        Card card;
        shared().mode()->modeRecorder_on();
        QSignalSpy told(&rig.recorder, &Recorder::s_NotWritten);
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(640);
        const QDir folder(shared().pathFile()->pathDirectoryRecording());
        QVERIFY(folder.mkdir(card.a.fileName()));
        rig.recorder.stop();
        QCOMPARE(told, QList<QVariantList>{{folder.filePath(card.a.fileName())}});
        QVERIFY(folder.rmdir(card.a.fileName()));
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(640);
        rig.recorder.stop();
        QCOMPARE(told.count(), 1);
    }

    void aLostServerCostsNoTakeAndNoTime() {
        Rig rig;
        Card card;
        shared().mode()->modeRecorder_on();
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        rig.recorder.record();
        feed(640);
        QTest::qWait(1000); // no more buffers
        library().hang = true;
        rig.recorder.stop(); // comes back although the library doesn't
        QVERIFY(PortAudioSession::blocked());
        const QString file = shared().pathFile()->pathDirectoryRecording() + u'/' + card.a.fileName();
        QCOMPARE(readWave(file)->length(), std::size_t{640});
        QVERIFY(!rig.recorder.isOpen() && !rig.recorder.decoderDeckA()->isFed());
        feed(64); // a late call reaches nobody
        QCOMPARE(shared().time()->frameCounter(deckA), 640.0);
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        QVERIFY(!rig.recorder.isOpen()); // nobody touches the library meanwhile
        rig.recorder.record();
        rig.recorder.stop();
        QCOMPARE(readWave(file)->length(), std::size_t{640}); // nothing came, so nothing is written over it
        library().hang = false;
        QTRY_VERIFY(!PortAudioSession::blocked());
        rig.recorder.load(deckA, nullptr, &card.a, nullptr);
        QVERIFY(rig.recorder.isOpen());
        rig.recorder.stop();
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_WorkerRecorderMultiChannelObject)
#include "tst_workerrecordermultichannelobject.moc"
