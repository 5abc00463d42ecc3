#include "model/qsample.h"
#include "module/inputcallback.h"
#include "module/inputstream.h"
#include "state/mode.h"
#include "state/portaudiosession.h"
#include "support/fakeportaudio.h"
#include "support/testmain.h"

#include <QElapsedTimer>
#include <QTemporaryFile>
#include <QTest>

#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
FakePortAudio& library() {
    return FakePortAudio::instance();
}
QSample card(int index, int channels = 4) {
    return QSample(ModelGraph::INPUT_DECKA, index, u"card"_s, 44100.0, channels, 0);
}
} // namespace

class tst_InputStream : public QObject {
    Q_OBJECT

    Mode m_mode;
    std::shared_ptr<InputCallbackState> m_state;

private Q_SLOTS:
    void init() {
        library().devices = {{"other", 48000.0, 2, 2, 0}, {"card", 44100.0, 4, 0, 0}};
        library().openable = true;
        library().startable = true;
        library().streamStartable = true;
        library().hostApi = paALSA;
        library().crowded = 0;
        m_state = std::make_shared<InputCallbackState>();
        m_state->mode = &m_mode;
    }
    void cleanup() { QCOMPARE(int(library().initialised), 0); }

    void aStreamIsOpenedWithAllChannelsAndTheDevicesLowLatency() {
        InputStream stream(m_state);
        QCOMPARE(int(library().initialised), 1);
        QVERIFY(!stream.isOpen());
        QVERIFY(stream.open(card(1), 64));
        QVERIFY(stream.isOpen());
        const FakeStream& opened = *library().streams.back();
        QCOMPARE(opened.input.device, 1);
        QCOMPARE(opened.input.channelCount, 4);
        QCOMPARE(opened.input.sampleFormat, PaSampleFormat{paInt16});
        QCOMPARE(opened.input.suggestedLatency, 0.0125);
        QVERIFY(opened.input.hostApiSpecificStreamInfo == nullptr);
        QVERIFY(!opened.hadOutput);
        QCOMPARE(opened.rate, 44100.0);
        QCOMPARE(opened.frames, 64UL);
        QCOMPARE(opened.flags, PaStreamFlags{0});
        QVERIFY(!opened.started);
        QVERIFY(stream.start());
        QVERIFY(opened.started);
        QVERIFY(stream.close());
        QVERIFY(opened.stopped && opened.closed);
        QVERIFY(!stream.isOpen());
        QVERIFY(stream.close()); // and again
    }

    void theCallbackAlwaysGoesOn() {
        InputStream stream(m_state);
        QVERIFY(stream.open(card(1), 64));
        const std::int16_t samples[8] = {};
        QCOMPARE(library().streams.back()->call(samples, 2), int(paContinue));
        QCOMPARE(library().streams.back()->call(nullptr, 2), int(paContinue));
        QCOMPARE(m_state->buffers.load(), std::uint64_t{2});
    }

    // ---- a device is its name ----

    void aDeviceThatHasMovedIsFoundByItsName() {
        library().devices = {
            {"card", 44100.0, 2, 0, 0}, {"other", 48000.0, 8, 8, 0}, {"card", 44100.0, 4, 0, 0}};
        InputStream stream(m_state);
        QVERIFY(stream.open(card(1), 64));                   // another one has its place
        QCOMPARE(library().streams.back()->input.device, 2); // the first of that name has too few channels
        QVERIFY(stream.close());
        InputStream beyond(m_state);
        QVERIFY(beyond.open(card(7), 64));
        QCOMPARE(library().streams.back()->input.device, 2);
    }

    void aDeviceThatIsntThereGetsNoStream() {
        library().devices = {
            {"other", 48000.0, 4, 2, 0}, {"another", 44100.0, 4, 0, 0}, {"card", 44100.0, 2, 0, 0}};
        const std::size_t before = library().streams.size();
        InputStream stream(m_state);
        QVERIFY(!stream.open(card(1), 64)); // not what stands at its index, however many channels that has
        QVERIFY(!stream.open(card(2), 64)); // nor with too few channels
        QVERIFY(!stream.isOpen());
        QCOMPARE(library().streams.size(), before);
    }

    void whatCantBeOpenedIsntOpen() {
        const std::size_t before = library().streams.size();
        InputStream stream(m_state);
        QVERIFY(!stream.open(QSample(ModelGraph::INPUT_DECKA), 64)); // names no device
        QVERIFY(!stream.open(QSample(ModelGraph::INPUT_DECKA, 1, u"none"_s, 44100.0, 4, 0), 64));
        library().openable = false;
        QVERIFY(!stream.open(card(1), 64));
        QVERIFY(!stream.isOpen());
        QVERIFY(!stream.start());
        QCOMPARE(library().streams.size(), before);
    }

    void whatTheLibraryComplainsOfIsKeptOffTheErrorOutput() {
        QTemporaryFile said;
        QVERIFY(said.open());
        InputStream stream(m_state);
        const int errorOutput = dup(STDERR_FILENO);
        dup2(said.handle(), STDERR_FILENO);
        library().openable = false;
        const bool opened = stream.open(card(1), 64);
        library().openable = true;
        library().streamStartable = false;
        const bool reopened = stream.open(card(1), 64);
        const bool started = stream.start();
        std::fputs("after", stderr);
        std::fflush(stderr);
        dup2(errorOutput, STDERR_FILENO);
        ::close(errorOutput);
        QVERIFY(!opened && reopened && !started);
        QVERIFY(said.seek(0));
        QCOMPARE(said.readAll(), QByteArray("after"));
    }

    void aLibraryThatCantStartOpensNothing() {
        library().startable = false;
        InputStream stream(m_state);
        QVERIFY(!stream.open(card(1), 64));
        QVERIFY(stream.close());
    }

    void aDestroyedStreamIsClosed() {
        {
            InputStream stream(m_state);
            QVERIFY(stream.open(card(1), 64));
            QVERIFY(stream.start());
        }
        QVERIFY(library().streams.back()->stopped && library().streams.back()->closed);
    }

    void aCloseShutsTheGateFirst() {
        InputStream stream(m_state);
        QVERIFY(stream.open(card(1), 64));
        m_state->open = true;
        QVERIFY(stream.close());
        QVERIFY(!m_state->open);
    }

    void aCloseThatHangsReturnsAndBlocksTheLibraryUntilItIsOver() {
        auto stream = std::make_unique<InputStream>(m_state);
        QVERIFY(stream->open(card(1), 64));
        QVERIFY(stream->start());
        const std::weak_ptr<InputCallbackState> state = m_state;
        library().hang = true;
        QVERIFY(!stream->close(std::chrono::milliseconds(20)));
        QVERIFY(PortAudioSession::blocked());
        stream.reset();
        m_state.reset();
        QVERIFY(!state.expired()); // the stream may still call
        {
            InputStream another(std::make_shared<InputCallbackState>());
            QVERIFY(!another.open(card(1), 64));
        }
        library().hang = false;
        QTRY_VERIFY(!PortAudioSession::blocked());
        QTRY_VERIFY(state.expired());
        QVERIFY(library().streams.back()->closed);
    }

    void streamsAreClosedOneAfterTheOther() {
        library().hang = true;
        std::vector<std::unique_ptr<InputStream>> streams;
        for (int i = 0; i < 3; ++i) {
            streams.push_back(std::make_unique<InputStream>(std::make_shared<InputCallbackState>()));
            QVERIFY(streams.back()->open(card(1), 64));
            QVERIFY(streams.back()->start());
        }
        const std::vector<FakeStream*> opened(library().streams.end() - 3, library().streams.end());
        for (const auto& stream : streams) {
            QVERIFY(!stream->close(std::chrono::milliseconds(20)));
        }
        QTest::qWait(50);
        for (const FakeStream* stream : opened) {
            QVERIFY(!stream->stopped && !stream->closed);
        }
        library().hang = false;
        QTRY_VERIFY(!PortAudioSession::blocked());
        for (const FakeStream* stream : opened) {
            QVERIFY(stream->stopped && stream->closed);
        }
        QCOMPARE(int(library().crowded), 0);
    }

    void oneThatComesBackDoesntUnblockAnotherThatStillHangs() {
        InputStream first(m_state);
        InputStream second(std::make_shared<InputCallbackState>());
        QVERIFY(first.open(card(1), 64) && first.start());
        FakeStream& firstOpened = *library().streams.back();
        QVERIFY(second.open(card(1), 64) && second.start());
        FakeStream& secondOpened = *library().streams.back();
        firstOpened.hang = true;
        secondOpened.hang = true;
        QVERIFY(!first.close(std::chrono::milliseconds(0)));
        QVERIFY(!second.close(std::chrono::milliseconds(0)));
        firstOpened.hang = false;
        QTRY_VERIFY(firstOpened.closed);
        QTest::qWait(50);
        QVERIFY(PortAudioSession::blocked());
        secondOpened.hang = false;
        QTRY_VERIFY(!PortAudioSession::blocked());
        QVERIFY(secondOpened.closed);
    }

    // Three streams wait for each other, not three deadlines.
    void behindOneThatHangsNobodyWaits() {
        library().hang = true;
        std::vector<std::unique_ptr<InputStream>> streams;
        for (int i = 0; i < 3; ++i) {
            streams.push_back(std::make_unique<InputStream>(std::make_shared<InputCallbackState>()));
            QVERIFY(streams.back()->open(card(1), 64) && streams.back()->start());
        }
        QElapsedTimer clock;
        clock.start();
        for (const auto& stream : streams) {
            QVERIFY(!stream->close());
        }
        QVERIFY(clock.elapsed() < 2 * InputStream::closeDeadline.count());
        library().hang = false;
        QTRY_VERIFY(!PortAudioSession::blocked());
    }

    void aCloseWithoutWaitingReturnsAtOnce() {
        InputStream stream(m_state);
        QVERIFY(stream.open(card(1), 64) && stream.start());
        library().hang = true;
        QVERIFY(!stream.close(std::chrono::milliseconds(0)));
        library().hang = false;
        QTRY_VERIFY(!PortAudioSession::blocked());
        QTRY_COMPARE(int(library().initialised), 0);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_InputStream)
#include "tst_inputstream.moc"
