#include "module/qmidiin.h"
#include "support/fakertmidi.h"
#include "support/testmain.h"

#include <QDateTime>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QTest>
#include <QThread>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

FakeMidi& fake() {
    return FakeMidi::instance();
}

// What is printed to the error output while this lives.
class ErrorOutput {
public:
    ErrorOutput() : m_saved(dup(STDERR_FILENO)) {
        if (!m_file.open() || dup2(m_file.handle(), STDERR_FILENO) < 0) {
            qFatal("the error output can't be redirected");
        }
    }
    ~ErrorOutput() { restore(); }
    QByteArray text() {
        restore();
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    void restore() {
        if (m_saved >= 0) {
            dup2(m_saved, STDERR_FILENO);
            ::close(m_saved);
            m_saved = -1;
        }
    }
    QTemporaryFile m_file;
    int m_saved;
};

QList<RtMidi::Api> asked() {
    QList<RtMidi::Api> apis;
    for (const auto& [api, name] : fake().made) {
        apis << api;
    }
    return apis;
}

} // namespace

class tst_QMidiIn : public QObject {
    Q_OBJECT

    static void offer(std::vector<std::string> alsa, std::vector<std::string> jack) {
        fake().interfaces[RtMidi::LINUX_ALSA].ports = std::move(alsa);
        fake().interfaces[RtMidi::UNIX_JACK].ports = std::move(jack);
    }

private Q_SLOTS:
    void init() { fake().reset(); }
    void cleanup() { QCOMPARE(fake().alive, 0); }

    // ---- which ports there are ----

    void eachPortIsANumberAndAName() {
        offer({"Mixer:Mixer MIDI 1 20:0", "Pad %1"}, {});
        QMidiIn midi;
        QCOMPARE(midi.devices(), (QStringList{u"0:Mixer:Mixer MIDI 1 20:0"_s, u"1:Pad %1"_s}));
        QVERIFY(!midi.connected());
        QCOMPARE(fake().alive, 0); // the input that it took to find out is gone
    }

    void namesAreUtf8() {
        offer({"Mischpult für zwei"}, {});
        QCOMPARE(QMidiIn().devices(), QStringList{u"0:Mischpult für zwei"_s});
    }

    void withAPortOnAlsaJackIsNotAsked() {
        offer({"alsa"}, {"jack"});
        QCOMPARE(QMidiIn().devices(), QStringList{u"0:alsa"_s});
        QCOMPARE(asked(), QList{RtMidi::LINUX_ALSA});
    }

    void withoutAPortOnAlsaJackIsAsked() {
        offer({}, {"jack a", "jack b"});
        QCOMPARE(QMidiIn().devices(), (QStringList{u"0:jack a"_s, u"1:jack b"_s}));
        QCOMPARE(asked(), (QList{RtMidi::LINUX_ALSA, RtMidi::UNIX_JACK}));
    }

    void whereAlsaCannotBeOpenedJackIsAsked() {
        offer({"alsa"}, {"jack"});
        fake().interfaces[RtMidi::LINUX_ALSA].opens = false;
        QCOMPARE(QMidiIn().devices(), QStringList{u"0:jack"_s});
    }

    void withNothingAtAllTheListIsEmptyAndNothingIsPrinted() {
        fake().interfaces[RtMidi::LINUX_ALSA].opens = false;
        fake().interfaces[RtMidi::UNIX_JACK].opens = false;
        ErrorOutput output;
        QMidiIn midi;
        const QStringList ports = midi.devices();
        midi.open(u"0"_s);
        QCOMPARE(output.text(), QByteArray());
        QVERIFY(ports.isEmpty());
        QVERIFY(!midi.connected());
    }

    void everyInputIsAClientOfTheSameNameAndQueue() {
        offer({"alsa"}, {});
        QMidiIn midi;
        midi.devices();
        midi.open(u"0"_s);
        midi.close();
        QVERIFY(fake().made.size() >= 2);
        for (const auto& [api, name] : fake().made) {
            QCOMPARE(name, std::string("RtMidi Input Client"));
        }
        for (const unsigned limit : fake().queueLimits) {
            QCOMPARE(limit, 100U);
        }
    }

    // ---- opening and closing ----

    void aPortIsOpenedByItsNumber() {
        offer({"one", "two", "three"}, {});
        QMidiIn midi;
        midi.open(u"2"_s);
        QVERIFY(midi.connected());
        QCOMPARE(midi.portName(), u"2"_s);
        QCOMPARE(fake().opened, (std::vector<std::pair<RtMidi::Api, unsigned>>{{RtMidi::LINUX_ALSA, 2U}}));
        midi.close();
        QVERIFY(!midi.connected());
        QVERIFY(!fake().portIsOpen());
    }

    void systemExclusiveMessagesPassTimingAndSensingDont() {
        offer({"one"}, {});
        QMidiIn midi;
        midi.open(u"0"_s);
        QCOMPARE(fake().ignored(), 2 + 4);
    }

    void openSpeaksOfTheInterfaceThatDevicesHasListed() {
        offer({}, {"jack"});
        QMidiIn midi;
        QCOMPARE(midi.devices(), QStringList{u"0:jack"_s});
        offer({"plugged in since"}, {"jack"});
        midi.open(u"0"_s);
        QVERIFY(midi.connected());
        QCOMPARE(fake().opened.back().first, RtMidi::UNIX_JACK);
        midi.close();
        QCOMPARE(midi.devices(), QStringList{u"0:plugged in since"_s});
        midi.open(u"0"_s);
        QCOMPARE(fake().opened.back().first, RtMidi::LINUX_ALSA);
    }

    void withoutAListOpenChoosesAsDevicesWould() {
        offer({}, {"jack"});
        QMidiIn midi;
        midi.open(u"0"_s);
        QVERIFY(midi.connected());
        QCOMPARE(fake().opened.back().first, RtMidi::UNIX_JACK);
    }

    void openingClosesWhatIsOpen() {
        offer({"one", "two"}, {});
        QMidiIn midi;
        midi.open(u"0"_s);
        midi.open(u"1"_s);
        QVERIFY(midi.connected());
        QCOMPARE(fake().alive, 1);
        QCOMPARE(midi.portName(), u"1"_s);
    }

    void aPortThatFailsStaysClosedAndSilent() {
        offer({"one"}, {});
        fake().portsOpen = false;
        ErrorOutput output;
        QMidiIn midi;
        midi.open(u"0"_s);
        QCOMPARE(output.text(), QByteArray());
        QVERIFY(!midi.connected());
        QVERIFY(midi.portName().isEmpty());
        fake().portsOpen = true;
        midi.open(u"0"_s);
        QVERIFY(midi.connected());
    }

    void anInterfaceThatGoesAwayLeavesThePortClosed() {
        offer({"one"}, {});
        QMidiIn midi;
        midi.devices();
        fake().interfaces[RtMidi::LINUX_ALSA].opens = false;
        ErrorOutput output;
        midi.open(u"0"_s);
        QCOMPARE(output.text(), QByteArray());
        QVERIFY(!midi.connected());
    }

    void whatIsNoPortNumberOpensNothing_data() {
        QTest::addColumn<QString>("port");
        QTest::newRow("empty") << QString();
        QTest::newRow("a word") << u"one"_s;
        QTest::newRow("negative") << u"-1"_s;
        QTest::newRow("a fraction") << u"0.5"_s;
        QTest::newRow("number and name") << u"0:one"_s;
        QTest::newRow("beyond the last port") << u"1"_s;
        QTest::newRow("beyond 32 bits") << u"4294967296"_s;
    }
    void whatIsNoPortNumberOpensNothing() {
        QFETCH(QString, port);
        offer({"one"}, {});
        QMidiIn midi;
        midi.open(u"0"_s);
        midi.open(port);
        QVERIFY(!midi.connected()); // and the open port is closed all the same
        QVERIFY(!fake().portIsOpen());
    }

    void closingAClosedPortDoesNothing() {
        QMidiIn midi;
        midi.close();
        QVERIFY(!midi.connected());
        QVERIFY(fake().made.empty());
    }

    // ---- messages ----

    void aShortMessageIsOneWordWithTheFirstByteLowest_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<uint>("word");
        QTest::newRow("one byte") << QByteArray::fromHex("FA") << 0x000000FAU;
        QTest::newRow("two") << QByteArray::fromHex("C305") << 0x000005C3U;
        QTest::newRow("a control change") << QByteArray::fromHex("B0087F") << 0x007F08B0U;
        QTest::newRow("four") << QByteArray::fromHex("B0087F99") << 0x997F08B0U;
        QTest::newRow("more than four") << QByteArray::fromHex("B0087F99AA") << 0x997F08B0U;
    }
    void aShortMessageIsOneWordWithTheFirstByteLowest() {
        QFETCH(QByteArray, bytes);
        offer({"one"}, {});
        QMidiIn midi;
        QSignalSpy events(&midi, &QMidiIn::midiEvent);
        QSignalSpy exclusive(&midi, &QMidiIn::midiSysExEvent);
        midi.open(u"0"_s);
        const auto before = static_cast<uint>(QDateTime::currentMSecsSinceEpoch());
        QVERIFY(fake().send({bytes.begin(), bytes.end()}));
        const auto after = static_cast<uint>(QDateTime::currentMSecsSinceEpoch());
        QCOMPARE(exclusive.size(), 0);
        QCOMPARE(events.size(), 1);
        QTEST(events.first().at(0).toUInt(), "word");
        const uint timing = events.first().at(1).toUInt();
        QVERIFY(timing - before <= after - before); // in this order, also where the low 32 bits wrap
    }

    void anEmptyMessageIsNone() {
        offer({"one"}, {});
        QMidiIn midi;
        QSignalSpy events(&midi, &QMidiIn::midiEvent);
        QSignalSpy exclusive(&midi, &QMidiIn::midiSysExEvent);
        midi.open(u"0"_s);
        QVERIFY(fake().send({}));
        QCOMPARE(events.size() + exclusive.size(), 0);
    }

    void aSystemExclusiveMessageComesWholeAndByItself() {
        offer({"one"}, {});
        QMidiIn midi;
        QSignalSpy events(&midi, &QMidiIn::midiEvent);
        QSignalSpy exclusive(&midi, &QMidiIn::midiSysExEvent);
        midi.open(u"0"_s);
        QVERIFY(fake().send({0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7}));
        QCOMPARE(events.size(), 0);
        QCOMPARE(exclusive.size(), 1);
        QCOMPARE(exclusive.first().at(0).toByteArray(), QByteArray::fromHex("F07E000601F7"));
    }

    void signalsComeFromTheLibrarysThread() {
        offer({"one"}, {});
        QMidiIn midi;
        QThread* emitter = nullptr;
        connect(
            &midi, &QMidiIn::midiEvent, this, [&emitter] { emitter = QThread::currentThread(); },
            Qt::DirectConnection);
        midi.open(u"0"_s);
        std::thread([] { fake().send({0xB0, 0x08, 0x00}); }).join();
        QVERIFY(emitter != nullptr);
        QVERIFY(emitter != thread());
    }

    void afterClosingNothingComes() {
        offer({"one"}, {});
        QMidiIn midi;
        QSignalSpy events(&midi, &QMidiIn::midiEvent);
        midi.open(u"0"_s);
        midi.close();
        QVERIFY(!fake().send({0xB0, 0x08, 0x00}));
        QCOMPARE(events.size(), 0);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_QMidiIn)
#include "tst_qmidiin.moc"
