// The virtual deck as a JACK client, heard by another client on a server of the test's own.

#include "liverig.h"
#include "support/testmain.h"
#include "syntheticrecord.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <jack/jack.h>
#include <jack/midiport.h>

#include <array>
#include <atomic>
#include <csignal>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr double rate = 48000.0;

struct MidiMessage {
    std::uint64_t frame; // of the recording
    std::array<std::uint8_t, 3> bytes;
};

// Records what comes out of the deck, from the connection on, into memory made beforehand.
class Listener {
public:
    Listener(const JackServer& server, double seconds) : m_room(static_cast<std::size_t>(seconds * rate)) {
        for (auto& channel : m_audio) {
            channel.resize(m_room);
        }
        m_midi.reserve(100000);
        m_client =
            jack_client_open("listener", static_cast<jack_options_t>(JackNoStartServer | JackServerName),
                             nullptr, server.name().toLatin1().constData());
        if (m_client == nullptr) {
            qFatal("the listener can't join the server");
        }
        for (std::size_t i = 0; i < 4; ++i) {
            m_ports[i] = jack_port_register(m_client, names[i], JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
        }
        m_midiPort = jack_port_register(m_client, "crossfader", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
        jack_set_process_callback(
            m_client,
            [](jack_nframes_t count, void* self) {
                static_cast<Listener*>(self)->process(count);
                return 0;
            },
            this);
        jack_set_xrun_callback(
            m_client,
            [](void* self) {
                ++static_cast<Listener*>(self)->xruns;
                return 0;
            },
            this);
        jack_activate(m_client);
    }
    ~Listener() { jack_client_close(m_client); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    bool connectTo(const char* deck) {
        bool connected = true;
        for (const char* name : {names[0], names[1], names[2], names[3], "crossfader"}) {
            const std::string from = std::string(deck) + ":" + name;
            connected =
                jack_connect(m_client, from.c_str(), (std::string("listener:") + name).c_str()) == 0 &&
                connected;
        }
        return connected;
    }
    std::size_t recorded() const { return m_recorded.load(std::memory_order_acquire); }
    int sample(std::size_t channel, std::size_t frame) const {
        const float value = m_audio[channel][frame] * 32768.0F;
        return value == std::floor(value) ? static_cast<int>(value) : 99999; // a value that no frame has
    }
    const std::vector<MidiMessage>& midi() const { return m_midi; }
    std::atomic<int> xruns{0};

private:
    static constexpr std::array<const char*, 4> names{"deckA_left", "deckA_right", "deckB_left",
                                                      "deckB_right"};

    void process(jack_nframes_t count) {
        const std::size_t first = m_recorded.load(std::memory_order_relaxed);
        if (first + count > m_room) {
            return;
        }
        for (std::size_t i = 0; i < 4; ++i) {
            const auto* in = static_cast<const float*>(jack_port_get_buffer(m_ports[i], count));
            std::copy(in, in + count, m_audio[i].begin() + static_cast<std::ptrdiff_t>(first));
        }
        void* buffer = jack_port_get_buffer(m_midiPort, count);
        for (jack_nframes_t e = 0; e < jack_midi_get_event_count(buffer); ++e) {
            jack_midi_event_t event;
            jack_midi_event_get(&event, buffer, e);
            if (event.size == 3 && m_midi.size() < m_midi.capacity()) {
                m_midi.push_back({first + event.time, {event.buffer[0], event.buffer[1], event.buffer[2]}});
            }
        }
        m_recorded.store(first + count, std::memory_order_release);
    }

    jack_client_t* m_client = nullptr;
    std::array<jack_port_t*, 4> m_ports{};
    jack_port_t* m_midiPort = nullptr;
    std::size_t m_room;
    std::array<std::vector<float>, 4> m_audio;
    std::vector<MidiMessage> m_midi;
    std::atomic<std::size_t> m_recorded{0};
};

// The program, started on `server` and known to have joined it.
class Deck : public TiedProcess {
public:
    Deck(const JackServer& server, const QStringList& arguments) {
        start(QStringLiteral(GRAMO_BIN_DIR "/gramoscope-virtualdeck"),
              QStringList{u"--server"_s, server.name()} + arguments);
        while (!m_said.contains('\n') && waitForReadyRead(10000)) {
            m_said += readAllStandardOutput();
        }
    }
    ~Deck() override {
        if (state() != NotRunning) {
            kill();
            waitForFinished();
        }
    }
    // All that it printed so far.
    QByteArray said() { return m_said += readAllStandardOutput(); }

private:
    QByteArray m_said;
};

std::array<SyntheticRecord, 2> records() {
    RecordOptions a;
    a.noisePercent = 0.5;
    a.seed = 21;
    RecordOptions b = a;
    b.seed = 22;
    const TimecodeDefinition def = createTimecodeDefinitions()[3];
    return {SyntheticRecord(def, rate, Motion(MotionPattern::Transform, 120.0, Motion::defaultStart, 21), a),
            SyntheticRecord(def, rate, Motion(MotionPattern::Walk, 120.0, Motion::defaultStart, 22), b)};
}

const QStringList& recordArguments() {
    static const QStringList words =
        u"--timecode traktor_sideA --pattern transform,walk --bpm 120 --noise 0.5 --seed 21"_s.split(u' ');
    return words;
}

} // namespace

class tst_VirtualDeckLive : public QObject {
    Q_OBJECT
    JackServer m_server;

private Q_SLOTS:
    void initTestCase() { QVERIFY2(m_server.start(), "jackd doesn't start"); }

    void theLiveSignalIsTheLibrarysFrameByFrame() {
        const std::array<SyntheticRecord, 2> record = records();
        Listener listener(m_server, 30.0);
        Deck deck(m_server, recordArguments() + QStringList{u"--seconds"_s, u"8"_s});
        QVERIFY2(deck.said().contains("JACK client \"Virtual Deck\" at 48000 Hz"), deck.said().constData());
        QVERIFY(listener.connectTo("Virtual Deck"));
        QVERIFY(deck.waitForFinished(30000));
        QCOMPARE(deck.exitCode(), 0);
        QVERIFY2(deck.said().contains("frames 384000, xruns "), deck.said().constData());

        // Where in the record the recording is at each of its frames; -1 before the connection, after the end
        // and in a spoilt cycle. A cycle is spoilt when the deck was late: it is silent, old, or new in part.
        std::vector<std::int64_t> place(listener.recorded(), -1);
        const auto fits = [&](std::size_t at, std::int64_t frame) {
            const StereoFrame a = record[0].frame(static_cast<std::uint64_t>(frame));
            const StereoFrame b = record[1].frame(static_cast<std::uint64_t>(frame));
            return listener.sample(0, at) == a.left && listener.sample(1, at) == a.right &&
                   listener.sample(2, at) == b.left && listener.sample(3, at) == b.right;
        };
        const auto cycle = static_cast<std::size_t>(m_server.period());
        constexpr std::int64_t total = 384000;
        std::int64_t next = 0;
        std::size_t heard = 0;
        int spoilt = 0;
        for (std::size_t at = 0; at + cycle <= place.size() && next < total; at += cycle) {
            // The deck's cycles are the listener's, so frame `next` can stand at the head of a cycle only.
            std::int64_t head = next;
            while (head < total && !fits(at, head) && heard == 0) {
                head += cycle; // the connection may come at any cycle
            }
            while (head < std::min<std::int64_t>(total, next + 100 * cycle) && !fits(at, head)) {
                head += cycle; // cycles that nobody heard
            }
            std::size_t good = 0;
            while (head < total && good < cycle && fits(at + good, head + static_cast<std::int64_t>(good))) {
                ++good;
            }
            if (good == cycle) {
                spoilt += heard > 0 && head != next ? 1 : 0;
                for (std::size_t k = 0; k < cycle; ++k) {
                    place[at + k] = head++;
                }
                next = head;
                heard += cycle;
            } else if (heard > 0) {
                ++spoilt;
            }
        }
        QVERIFY2(heard > 6 * 48000, qPrintable(QString::number(heard)));
        qInfo("%d spoilt cycles, %d xruns", spoilt, listener.xruns.load());
        QVERIFY2(spoilt <= listener.xruns,
                 qPrintable(u"%1 spoilt cycles, %2 xruns"_s.arg(spoilt).arg(listener.xruns)));

        // Each message comes with the very frame at which the fader of deck A changes, and none is missing.
        std::size_t told = 0;
        for (const MidiMessage& message : listener.midi()) {
            QCOMPARE(int{message.bytes[0]}, 0xB0);
            QCOMPARE(int{message.bytes[1]}, 8);
            const std::int64_t frame = place[message.frame];
            if (frame < 0) {
                continue;
            }
            const auto f = static_cast<std::uint64_t>(frame);
            QCOMPARE(int{message.bytes[2]}, record[0].truth(f).crossfader);
            QVERIFY(f == 0 || record[0].truth(f - 1).crossfader != record[0].truth(f).crossfader);
            ++told;
        }
        std::size_t changes = 0;
        for (std::size_t at = 1; at < place.size(); ++at) {
            if (place[at] > 0 && place[at - 1] == place[at] - 1) {
                const auto f = static_cast<std::uint64_t>(place[at]);
                changes += record[0].truth(f).crossfader != record[0].truth(f - 1).crossfader ? 1U : 0U;
            }
        }
        QVERIFY2(changes > 1000, qPrintable(QString::number(changes)));
        QVERIFY2(told >= changes && told <= changes + 1 + static_cast<std::size_t>(spoilt),
                 qPrintable(u"%1 told, %2 changes"_s.arg(told).arg(changes)));
    }

    void aTakenNameIsReplacedAndSaid() {
        Deck first(m_server, {});
        Deck second(m_server, {});
        QVERIFY(first.said().contains("\"Virtual Deck\""));
        QVERIFY2(second.said().contains("\"Virtual Deck-"), second.said().constData());
    }

    void aSignalEndsItWithSuccess() {
        for (const int number : {SIGINT, SIGTERM}) {
            Deck deck(m_server, {});
            QTest::qWait(200);
            ::kill(static_cast<pid_t>(deck.processId()), number);
            QVERIFY(deck.waitForFinished(5000));
            QCOMPARE(deck.exitStatus(), QProcess::NormalExit);
            QCOMPARE(deck.exitCode(), 0);
            QVERIFY2(deck.said().contains("frames ") && deck.said().contains(", xruns "),
                     deck.said().constData());
        }
    }

    void aServerThatGoesIsReported_data() {
        QTest::addColumn<bool>("crash");
        QTest::newRow("in good order") << false;
        QTest::newRow("by a crash") << true;
    }
    void aServerThatGoesIsReported() {
        QFETCH(bool, crash);
        JackServer server;
        QVERIFY(server.start());
        Deck deck(server, {});
        QTest::qWait(200);
        if (crash) {
            server.kill();
        } else {
            server.stop();
        }
        QVERIFY(deck.waitForFinished(15000));
        QCOMPARE(deck.exitStatus(), QProcess::NormalExit);
        QCOMPARE(deck.exitCode(), 1);
        QVERIFY(deck.readAllStandardError().contains("the JACK server is gone"));
    }

    // The listing finds the known devices where the program keeps them.
    void theListingReadsTheUsersFolderWhereItsOwnCantBeHad() {
        JackServer server;
        QVERIFY(server.start());
        Deck deck(server, {});
        QTemporaryDir place;
        const QString listing = place.filePath(u"gramoscope-devices"_s);
        QVERIFY(QFile::copy(QDir(QStringLiteral(GRAMO_BIN_DIR)).filePath(u"gramoscope-devices"_s), listing));
        const QString input = place.filePath(u"user/Gramo Scope/AppData/Input"_s);
        QVERIFY(QDir().mkpath(input));
        for (const auto& [name, content] :
             {std::pair{input + u"/MixerWindows.ini"_s, "[Virtual%20Deck]\nname=deck\ninputA=1\n"},
              std::pair{place.filePath(u"AppData"_s), "a file in the way"}}) {
            QFile file(name);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) > 0);
        }
        TiedProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"JACK_DEFAULT_SERVER"_s, server.name());
        environment.insert(u"XDG_DATA_HOME"_s, place.filePath(u"user"_s));
        process.setProcessEnvironment(environment);
        process.start(listing, QStringList());
        QVERIFY(process.waitForFinished(15000));
        QCOMPARE(process.exitCode(), 0);
        const QString said = QString::fromUtf8(process.readAllStandardOutput());
        static const QRegularExpression labelled(u"\\[Virtual Deck\\]-48000/4p1-\\w*-Input DeckA\n"_s);
        QVERIFY2(labelled.match(said).hasMatch(), qPrintable(said));
    }

    void aServerThatFallsSilentIsReported() {
        JackServer server;
        QVERIFY(server.start());
        Deck deck(server, {});
        QTest::qWait(200);
        ::kill(static_cast<pid_t>(server.pid()), SIGSTOP);
        const bool finished = deck.waitForFinished(15000);
        ::kill(static_cast<pid_t>(server.pid()), SIGCONT);
        QVERIFY(finished);
        QCOMPARE(deck.exitCode(), 1);
        QVERIFY(deck.readAllStandardError().contains("no frames"));
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_VirtualDeckLive)
#include "tst_virtualdecklive.moc"
