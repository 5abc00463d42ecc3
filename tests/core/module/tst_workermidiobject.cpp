#include "module/workermidiobject.h"
#include "state/midi.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "support/datafolder.h"
#include "support/fakertmidi.h"
#include "support/testmain.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

FakeMidi& fake() {
    return FakeMidi::instance();
}
Midi& midi() {
    return *Singleton::instance().midi();
}
Setting& setting() {
    return *Singleton::instance().setting();
}

constexpr uint controlChange(uint channel, uint controller, uint value) {
    return 0xB0U | channel | controller << 8 | value << 16;
}

const auto left = ModelCrossFader::LEFT;
const auto middle = ModelCrossFader::MIDDLE;
const auto right = ModelCrossFader::RIGHT;

} // namespace

class tst_WorkerMidiObject : public QObject {
    Q_OBJECT

    // A worker that listens to controller 8 of the third channel, with no port behind it.
    static void listen(WorkerMidiObject& worker) {
        midi().setObject(ObjectMidi(2, 8));
        worker.startRun();
    }
    static void move(WorkerMidiObject& worker, uint value) { worker.message(controlChange(2, 8, value), 0); }

private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }

    void init() {
        fake().reset();
        midi().setObject(ObjectMidi());
        setting().setInputMidi(QString());
        setting().setCrossFaderLeft(0);
        setting().setCrossFaderRight(127);
    }
    void cleanup() { QCOMPARE(fake().alive, 0); }

    // ---- what passes ----

    void anEndOfTheFaderIsReported() {
        WorkerMidiObject worker;
        listen(worker);
        QSignalSpy changes(&midi(), &Midi::crossFaderChanged);
        move(worker, 127);
        QCOMPARE(midi().crossFader(), right);
        move(worker, 0);
        QCOMPARE(midi().crossFader(), left);
        move(worker, 63);
        QCOMPARE(midi().crossFader(), middle);
        QCOMPARE(changes.size(), 3);
    }

    void theReadingIsComplete() {
        midi().setObject(ObjectMidi(2, 8, 5));
        setting().setCrossFaderLeft(20);
        setting().setCrossFaderRight(100);
        WorkerMidiObject worker;
        worker.startRun();
        QSignalSpy changes(&midi(), &Midi::crossFaderChanged);
        move(worker, 111);
        QCOMPARE(changes.size(), 1);
        const auto announced = changes.first().at(0).value<ObjectMidi>();
        for (const ObjectMidi& reading : {announced, midi().object()}) {
            QCOMPARE(reading.channel(), 2);
            QCOMPARE(reading.controller(), 8);
            QCOMPARE(reading.kind(), 5);
            QCOMPARE(reading.name(), u"XFader"_s);
            QCOMPARE(reading.value(), 111);
            QCOMPARE(reading.crossFaderLeft(), 20);
            QCOMPARE(reading.crossFaderRight(), 100);
        }
    }

    void allElseIsDropped_data() {
        QTest::addColumn<uint>("word");
        QTest::newRow("a note-on of the same channel and number") << (0x92U | 8U << 8 | 127U << 16);
        QTest::newRow("a note-off") << (0x82U | 8U << 8 | 127U << 16);
        QTest::newRow("poly aftertouch") << (0xA2U | 8U << 8 | 127U << 16);
        QTest::newRow("a program change") << (0xC2U | 8U << 8 | 127U << 16);
        QTest::newRow("channel aftertouch") << (0xD2U | 8U << 8 | 127U << 16);
        QTest::newRow("pitch bend") << (0xE2U | 8U << 8 | 127U << 16);
        QTest::newRow("a system message") << (0xF2U | 8U << 8 | 127U << 16);
        QTest::newRow("another channel") << controlChange(1, 8, 127);
        QTest::newRow("a channel with a bit more") << controlChange(10, 8, 127);
        QTest::newRow("another controller") << controlChange(2, 9, 127);
        QTest::newRow("a controller with a bit more") << controlChange(2, 72, 127);
        QTest::newRow("an empty word") << 0U;
    }
    void allElseIsDropped() {
        QFETCH(uint, word);
        WorkerMidiObject worker;
        listen(worker);
        QSignalSpy changes(&midi(), &Midi::crossFaderChanged);
        worker.message(word, 0);
        QCOMPARE(changes.size(), 0);
        QCOMPARE(midi().crossFader(), middle);
    }

    void aFourthByteDoesntMatter() {
        WorkerMidiObject worker;
        listen(worker);
        worker.message(controlChange(2, 8, 127) | 0xAB000000U, 0);
        QCOMPARE(midi().object().value(), 127);
    }

    void everyChannelAndControllerCanBeTheFader() {
        for (const auto& [channel, controller] : {std::pair{0U, 0U}, {15U, 127U}, {0U, 127U}, {15U, 0U}}) {
            midi().setObject(ObjectMidi(int(channel), int(controller)));
            WorkerMidiObject worker;
            worker.startRun();
            worker.message(controlChange(channel, controller, 127), 0);
            QCOMPARE(midi().crossFader(), right);
        }
    }

    // ---- zones ----

    void theZoneFollowsTheLimits_data() {
        QTest::addColumn<int>("leftLimit");
        QTest::addColumn<int>("rightLimit");
        QTest::addColumn<uint>("value");
        QTest::addColumn<ModelCrossFader::EnumCrossFader>("zone");
        QTest::newRow("defaults, centre") << 0 << 127 << 63U << middle;
        QTest::newRow("defaults, left end") << 0 << 127 << 0U << left;
        QTest::newRow("defaults, right end") << 0 << 127 << 127U << right;
        QTest::newRow("defaults, beside the left end") << 0 << 127 << 1U << middle;
        QTest::newRow("defaults, beside the right end") << 0 << 127 << 126U << middle;
        QTest::newRow("20 and 100, at 20") << 20 << 100 << 20U << left;
        QTest::newRow("20 and 100, at 21") << 20 << 100 << 21U << middle;
        QTest::newRow("20 and 100, at 99") << 20 << 100 << 99U << middle;
        QTest::newRow("20 and 100, at 100") << 20 << 100 << 100U << right;
        QTest::newRow("equal limits, at them") << 64 << 64 << 64U << right;
        QTest::newRow("equal limits, below") << 64 << 64 << 63U << left;
    }
    void theZoneFollowsTheLimits() {
        QFETCH(int, leftLimit);
        QFETCH(int, rightLimit);
        QFETCH(uint, value);
        QFETCH(ModelCrossFader::EnumCrossFader, zone);
        setting().setCrossFaderLeft(leftLimit);
        setting().setCrossFaderRight(rightLimit);
        WorkerMidiObject worker;
        listen(worker);
        // From another zone, since only a change is reported.
        setting().setCrossFaderLeft(zone == left ? 0 : 127);
        setting().setCrossFaderRight(zone == left ? 0 : 128);
        move(worker, 1);
        QVERIFY(midi().crossFader() != zone);
        setting().setCrossFaderLeft(leftLimit);
        setting().setCrossFaderRight(rightLimit);
        move(worker, value);
        QCOMPARE(midi().crossFader(), zone);
    }

    void aRunOfValuesInsideOneZoneIsReportedOnce() {
        setting().setCrossFaderRight(100);
        WorkerMidiObject worker;
        listen(worker);
        QSignalSpy changes(&midi(), &Midi::crossFaderChanged);
        for (uint value = 100; value <= 127; ++value) {
            move(worker, value);
        }
        QCOMPARE(changes.size(), 1);
        QCOMPARE(midi().object().value(), 100); // the first one: it is no fader level
    }

    void aFirstMessageInTheMiddleIsNoChange() {
        WorkerMidiObject worker;
        listen(worker);
        QSignalSpy changes(&midi(), &Midi::crossFaderChanged);
        move(worker, 50);
        QCOMPARE(changes.size(), 0);
        QCOMPARE(midi().object().value(), 63);
    }

    void theLastZoneIsKeptAcrossStopAndStart() {
        WorkerMidiObject worker;
        listen(worker);
        move(worker, 127);
        worker.stopRun();
        worker.startRun();
        QSignalSpy changes(&midi(), &Midi::crossFaderChanged);
        move(worker, 127);
        QCOMPARE(changes.size(), 0);
        move(worker, 63);
        QCOMPARE(changes.size(), 1);
        worker.stopRun();
        worker.startRun();
        move(worker, 70);
        QCOMPARE(changes.size(), 1);
    }

    void newLimitsCountFromTheNextMessageOnWithoutARestart() {
        WorkerMidiObject worker;
        listen(worker);
        QSignalSpy changes(&midi(), &Midi::crossFaderChanged);
        move(worker, 110);
        QCOMPARE(changes.size(), 0);
        setting().setCrossFaderRight(110);
        QCOMPARE(changes.size(), 0);
        move(worker, 110);
        QCOMPARE(midi().crossFader(), right);
        setting().setCrossFaderRight(127);
        setting().setCrossFaderLeft(110);
        move(worker, 110);
        QCOMPARE(midi().crossFader(), left);
    }

    // ---- which control ----

    void aNewControlCountsFromTheNextStartOn() {
        WorkerMidiObject worker;
        listen(worker);
        midi().setObject(ObjectMidi(4, 30));
        worker.message(controlChange(4, 30, 127), 0);
        QCOMPARE(midi().crossFader(), middle);
        move(worker, 127);
        QCOMPARE(midi().crossFader(), right);
        midi().setObject(ObjectMidi(4, 30));
        worker.startRun();
        move(worker, 0);
        QCOMPARE(midi().crossFader(), middle);
        worker.message(controlChange(4, 30, 0), 0);
        QCOMPARE(midi().crossFader(), left);
    }

    void aMessageDoesntChangeWhatIsListenedTo() {
        WorkerMidiObject worker;
        listen(worker);
        for (const uint value : {127U, 0U, 64U, 127U}) {
            move(worker, value);
            QCOMPARE(midi().object().value(), int(value));
        }
    }

    // ---- the port ----

    void startOpensTheStoredPortAndStopClosesIt() {
        fake().interfaces[RtMidi::LINUX_ALSA].ports = {"Pads", "Mixer:Mixer MIDI 1 20:0"};
        setting().setInputMidi(u"1:Mixer:Mixer MIDI 1 20:0"_s);
        WorkerMidiObject worker;
        QVERIFY(!worker.isOpen());
        listen(worker);
        QVERIFY(worker.isOpen());
        QCOMPARE(fake().opened.back().second, 1U);
        worker.stopRun();
        QVERIFY(!worker.isOpen());
        QVERIFY(!fake().portIsOpen());
        worker.stopRun(); // again
        QVERIFY(!worker.isOpen());
    }

    void aMessageOfThePortArrives() {
        fake().interfaces[RtMidi::UNIX_JACK].ports = {"Virtual Deck:crossfader"};
        setting().setInputMidi(u"0:Virtual Deck:crossfader"_s);
        WorkerMidiObject worker;
        listen(worker);
        // The library's thread returns at once, and the reading is taken where the worker lives.
        std::thread([] { fake().send({0xB2, 0x08, 0x7F}); }).join();
        QCOMPARE(midi().crossFader(), middle);
        QTRY_COMPARE(midi().crossFader(), right);
    }

    void aSystemExclusiveMessageNeverArrives() {
        fake().interfaces[RtMidi::LINUX_ALSA].ports = {"Mixer"};
        setting().setInputMidi(u"0:Mixer"_s);
        WorkerMidiObject worker;
        listen(worker);
        QSignalSpy changes(&midi(), &Midi::crossFaderChanged);
        // Its second and third bytes would do; the fader's message comes behind it.
        std::thread([] {
            fake().send({0xF0, 0x08, 0x7F, 0xF7});
            fake().send({0xB2, 0x08, 0x00});
        }).join();
        QTRY_COMPARE(changes.size(), 1);
        QCOMPARE(changes.first().at(0).value<ObjectMidi>().value(), 0);
    }

    void startTwiceStillCountsEachMessageOnce() {
        fake().interfaces[RtMidi::LINUX_ALSA].ports = {"Mixer"};
        setting().setInputMidi(u"0:Mixer"_s);
        WorkerMidiObject worker;
        listen(worker);
        worker.startRun();
        QCOMPARE(fake().alive, 1);
        QSignalSpy changes(&midi(), &Midi::crossFaderChanged);
        std::thread([] {
            for (const std::vector<unsigned char>& message :
                 {std::vector<unsigned char>{0xB2, 0x08, 0x7F}, {0xB2, 0x08, 0x40}, {0xB2, 0x08, 0x00}}) {
                fake().send(message);
            }
        }).join();
        QTRY_COMPARE(midi().crossFader(), left);
        QCOMPARE(changes.size(), 3);
    }

    void withoutThePortTheWorkerStaysClosedAndSilent_data() {
        QTest::addColumn<QString>("stored");
        QTest::newRow("nothing stored") << QString();
        QTest::newRow("an unknown name") << u"0:Other"_s;
        QTest::newRow("another number") << u"1:Mixer"_s;
        QTest::newRow("a part of the name") << u"0:Mix"_s;
        QTest::newRow("other letters") << u"0:mixer"_s;
        QTest::newRow("the name alone") << u"Mixer"_s;
    }
    void withoutThePortTheWorkerStaysClosedAndSilent() {
        QFETCH(QString, stored);
        fake().interfaces[RtMidi::LINUX_ALSA].ports = {"Mixer"};
        setting().setInputMidi(stored);
        WorkerMidiObject worker;
        listen(worker);
        QVERIFY(!worker.isOpen());
        QVERIFY(fake().opened.empty());
    }

    void aFailedOpeningLeavesItClosed() {
        fake().interfaces[RtMidi::LINUX_ALSA].ports = {"Mixer"};
        fake().portsOpen = false;
        setting().setInputMidi(u"0:Mixer"_s);
        WorkerMidiObject worker;
        listen(worker);
        QVERIFY(!worker.isOpen());
        fake().portsOpen = true;
        worker.startRun();
        QVERIFY(worker.isOpen());
    }

    void aWorkerThatGoesClosesItsPort() {
        fake().interfaces[RtMidi::LINUX_ALSA].ports = {"Mixer"};
        setting().setInputMidi(u"0:Mixer"_s);
        {
            WorkerMidiObject worker;
            listen(worker);
            QVERIFY(fake().portIsOpen());
        }
        QVERIFY(!fake().portIsOpen());
    }

    void nothingIsEverSentOut() {
        WorkerMidiObject worker;
        QSignalSpy out(&worker, &WorkerMidiObject::s_OutData);
        listen(worker);
        move(worker, 127);
        move(worker, 0);
        worker.stopRun();
        QCOMPARE(out.size(), 0);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_WorkerMidiObject)
#include "tst_workermidiobject.moc"
