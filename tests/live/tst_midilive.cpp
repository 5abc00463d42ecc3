// The crossfader through a real sound server: the virtual deck's cuts on their way through its MIDI port, the
// MIDI thread and `Midi` into the points of a running session.

#include "liverig.h"
#include "session.h"

#include "curve/qcurve.h"
#include "module/qmidiin.h"
#include "state/midi.h"
#include "state/portaudiosession.h"
#include "support/testmain.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int takeSeconds = 5;
constexpr double framesPerBeat = JackServer::rate * 60.0 / 84.0;
const QString fader = u"0:Virtual Deck:crossfader"_s;

/// The stretches of a curve that sound and those that are cut, ends left out.
struct Stretches {
    std::size_t points = 0;
    std::size_t silent = 0; ///< points that are cut
    double beats = 0.0;     ///< from the first point to the last
    std::vector<int> cuts;  ///< length of each whole cut, frames
};

Stretches stretchesOf(const QWPainter* painter) {
    Stretches found;
    const auto points = painter->mainCurve()->points();
    found.points = points.size();
    if (points.empty()) {
        return found;
    }
    found.beats = (points[points.size() - 1].time - points[0].time) / framesPerBeat;
    double from = -1.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const bool on = points[i].soundOn != 0;
        found.silent += on ? 0U : 1U;
        if (i > 0 && on != (points[i - 1].soundOn != 0)) {
            if (on && from >= 0.0) {
                found.cuts.push_back(static_cast<int>(points[i].time - from));
            }
            from = on ? -1.0 : points[i].time;
        }
    }
    return found;
}

} // namespace

class tst_MidiLive : public QObject {
    Q_OBJECT

    QTemporaryDir m_data;
    std::unique_ptr<JackServer> m_server;

    static Setting& setting() { return *Singleton::instance().setting(); }
    static void storeFader() {
        setting().setInputMidi(fader);
        setting().setLearnMidi(0, 8);
    }

private Q_SLOTS:
    void initTestCase() {
        // As delivered: the program sets itself up.
        QDir().mkpath(m_data.filePath(u"AppData/Input"_s));
        QVERIFY(
            QFile::copy(QDir(QStringLiteral(GRAMO_TEST_DIR)).filePath(u"../appdata/Input/MixerWindows.ini"_s),
                        m_data.filePath(u"AppData/Input/MixerWindows.ini"_s)));
        useDataFolder(m_data.filePath(u"AppData"_s));
        Singleton::instance().recordingLooperTraining()->setBpmEffective(400.0); // a short count-in
    }
    void init() {
        m_server = std::make_unique<JackServer>();
        QVERIFY(m_server->start());
    }
    void cleanup() { m_server.reset(); }

    void aPortIsListedOpenedAndHeard() {
        QMidiIn midi;
        QVERIFY(midi.devices().isEmpty()); // the server alone has none
        VirtualDeck deck({u"--fader"_s, u"transform"_s});
        QVERIFY(deck.start());
        QCOMPARE(midi.devices(), QStringList{fader});
        QList<uint> words;
        connect(&midi, &QMidiIn::midiEvent, this, [&words](uint word, uint) { words << word; });
        midi.open(u"0"_s);
        QVERIFY(midi.connected());
        // Both ends of a cut have come.
        QTRY_VERIFY_WITH_TIMEOUT(words.contains(0x7F08B0U) && words.contains(0x3F08B0U), 15000);
        midi.close();
        QVERIFY(!midi.connected());
        for (const uint word : words) {
            QCOMPARE(word & 0xFFFFU, 0x08B0U); // controller 8 of the first channel
            QVERIFY((word >> 16) >= 63 && (word >> 16) <= 127);
        }
    }

    void atItsFirstStartTheProgramFindsTheFaderAndCutsTheCurve() {
        VirtualDeck deck({u"--pattern"_s, u"baby"_s, u"--fader"_s, u"transform"_s});
        QVERIFY(deck.start());
        Session session;
        QCOMPARE(setting().inputMidi()->text(), fader);
        QCOMPARE(setting().learnMidi(), u"0/8"_s);
        Midi& midi = *Singleton::instance().midi();
        QCOMPARE(midi.crossFader(), ModelCrossFader::MIDDLE);
        QSignalSpy changes(&midi, &Midi::crossFaderChanged);
        QVERIFY(session.start());
        QVERIFY(session.hear(takeSeconds));
        QVERIFY(session.stop());

        // Zones: the middle and the right end in turn, never the left one.
        QVERIFY(changes.size() > 20);
        bool right = false;
        for (const QList<QVariant>& change : changes) {
            const auto reading = change.first().value<ObjectMidi>();
            QCOMPARE(reading.name(), u"XFader"_s);
            QCOMPARE(reading.controller(), 8);
            right = !right;
            QCOMPARE(reading.crossFader(), right ? ModelCrossFader::RIGHT : ModelCrossFader::MIDDLE);
        }

        const Stretches a = stretchesOf(session.connection().view()->painterDeckA());
        const Stretches b = stretchesOf(session.connection().view()->painterDeckB());
        std::vector<int> lengths = a.cuts;
        std::sort(lengths.begin(), lengths.end());
        QVERIFY(!lengths.empty());
        // The fader is at its right end for 0.25 - (0.19 - 0.06) beats less a ramp of 0.015.
        qInfo("deck A: %zu points, %zu cut, %zu cuts in %.2f beats, median length %d frames (sent: %.0f)",
              a.points, a.silent, a.cuts.size(), a.beats, lengths[lengths.size() / 2],
              (0.25 - 0.13 - 0.015) * framesPerBeat);
        QVERIFY(a.beats > 5.0);
        const double sent = a.beats * 4.0;
        QVERIFY2(std::abs(double(a.cuts.size()) - sent) <= 3.0, qPrintable(QString::number(sent)));
        QVERIFY(a.silent > 0 && a.silent < a.points);
        // The right end is deck B's side.
        QVERIFY(b.points > 0);
        QCOMPARE(b.silent, std::size_t{0});
    }

    void reversedDeckBIsCutAndDeckAIsHeard() {
        VirtualDeck deck({u"--pattern"_s, u"baby"_s, u"--fader"_s, u"flare"_s});
        QVERIFY(deck.start());
        Session session;
        QTest::mouseClick(session.tool().reverseToggle(), Qt::LeftButton);
        QVERIFY(session.start());
        QVERIFY(session.hear(3));
        QVERIFY(session.stop());
        QTest::mouseClick(session.tool().reverseToggle(), Qt::LeftButton);
        const Stretches a = stretchesOf(session.connection().view()->painterDeckA());
        const Stretches b = stretchesOf(session.connection().view()->painterDeckB());
        QCOMPARE(a.silent, std::size_t{0});
        QVERIFY2(b.cuts.size() >= 3, qPrintable(QString::number(b.cuts.size())));
    }

    void aFaderInTheMiddleCutsNothing() {
        VirtualDeck deck({u"--pattern"_s, u"chirp"_s, u"--fader"_s, u"none"_s});
        QVERIFY(deck.start());
        storeFader();
        Session session;
        QVERIFY(session.start());
        QVERIFY(session.hear(2));
        QVERIFY(session.stop());
        const Stretches a = stretchesOf(session.connection().view()->painterDeckA());
        QVERIFY(a.points > 500);
        QCOMPARE(a.silent, std::size_t{0});
    }

    void thePatternOfDeckAMovesTheFaderInEverySession() {
        VirtualDeck deck({u"--pattern"_s, u"chirp,baby"_s});
        QVERIFY(deck.start());
        storeFader();
        Session session;
        for (int i = 0; i < 2; ++i) {
            QVERIFY(session.start());
            QVERIFY(session.hear(3));
            QVERIFY(session.stop());
            const Stretches a = stretchesOf(session.connection().view()->painterDeckA());
            qInfo("session %d: %zu cuts in %.2f beats", i + 1, a.cuts.size(), a.beats);
            QVERIFY2(std::abs(double(a.cuts.size()) - a.beats) <= 2.0, qPrintable(QString::number(a.beats)));
        }
    }

    void anotherControllerIsNotTheFader() {
        VirtualDeck deck({u"--pattern"_s, u"chirp"_s});
        QVERIFY(deck.start());
        storeFader();
        setting().setLearnMidi(0, 7);
        Session session;
        QVERIFY(session.start());
        QVERIFY(session.hear(2));
        QVERIFY(session.stop());
        const Stretches a = stretchesOf(session.connection().view()->painterDeckA());
        QVERIFY(a.points > 500);
        QCOMPARE(a.silent, std::size_t{0});
    }

    void theToolListsTheLineThatTheSettingsTake() {
        VirtualDeck deck({});
        QVERIFY(deck.start());
        TiedProcess tool;
        tool.start(QDir(QStringLiteral(GRAMO_BIN_DIR)).filePath(u"gramoscope-devices"_s), QStringList());
        QVERIFY(tool.waitForFinished(30000));
        QCOMPARE(tool.exitCode(), 0);
        const QString said = QString::fromUtf8(tool.readAllStandardOutput());
        QVERIFY2(said.endsWith(u"MIDI inputs\n  %1\n"_s.arg(fader)), qPrintable(said));
        QCOMPARE(tool.readAllStandardError(), QByteArray());
    }

    void aServerThatDoesntAnswerKeepsNobodyWaiting() {
        VirtualDeck deck({u"--pattern"_s, u"chirp"_s});
        QVERIFY(deck.start());
        storeFader();
        auto session = std::make_unique<Session>();
        QVERIFY(session->start());
        QVERIFY(session->connection().recorders()[0]->isRunning());
        QVERIFY(session->hear(0.5));
        ::kill(static_cast<pid_t>(m_server->pid()), SIGSTOP);
        const bool ended = QTest::qWaitFor([] { return !Session::mode().modeTraining(); }, 20000);
        QElapsedTimer closing;
        closing.start();
        session.reset();
        qInfo("closed in %lld ms", closing.elapsed());
        ::kill(static_cast<pid_t>(m_server->pid()), SIGCONT);
        QVERIFY(ended);
        // What was left to itself has come back.
        QTRY_VERIFY_WITH_TIMEOUT(!PortAudioSession::blocked(), 20000);
    }

    // The last one: the sound library may not come back from this for minutes.
    void aServerThatDiesKeepsNobodyWaiting() {
        auto deck = std::make_unique<VirtualDeck>(QStringList{u"--pattern"_s, u"chirp"_s});
        QVERIFY(deck->start());
        storeFader();
        auto session = std::make_unique<Session>();
        QVERIFY(session->start());
        QVERIFY(session->connection().recorders()[0]->isRunning());
        QVERIFY(session->hear(0.5));
        m_server->kill();
        QVERIFY(QTest::qWaitFor([] { return !Session::mode().modeTraining(); }, 20000));
        QElapsedTimer closing;
        closing.start();
        session.reset();
        qInfo("closed in %lld ms", closing.elapsed());
    }
};

GRAMO_TEST_MAIN(tst_MidiLive)
#include "tst_midilive.moc"
