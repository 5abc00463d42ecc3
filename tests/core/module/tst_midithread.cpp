#include "module/midithread.h"
#include "module/workermidiobject.h"
#include "state/midi.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "support/datafolder.h"
#include "support/fakertmidi.h"
#include "support/testmain.h"

#include <QPointer>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

class tst_MidiThread : public QObject {
    Q_OBJECT

    static FakeMidi& fake() { return FakeMidi::instance(); }
    static void start(const MidiThread& midi) {
        QMetaObject::invokeMethod(midi.worker(), &WorkerMidiObject::startRun, Qt::QueuedConnection);
    }

private Q_SLOTS:
    void initTestCase() {
        ownDataFolder();
        Singleton::instance().setting()->setInputMidi(u"0:Mixer"_s);
    }
    void init() {
        fake().reset();
        fake().interfaces[RtMidi::LINUX_ALSA].ports = {"Mixer"};
    }

    void theWorkerLivesOnAThreadOfHighPriority() {
        const MidiThread midi;
        QVERIFY(midi.thread()->isRunning());
        QCOMPARE(midi.worker()->thread(), midi.thread());
        QVERIFY(midi.thread() != QThread::currentThread());
        QCOMPARE(midi.thread()->priority(), QThread::HighPriority);
    }

    void readingsAreTakenThere() {
        const MidiThread midi;
        Midi& state = *Singleton::instance().midi();
        std::atomic<QThread*> taker{nullptr};
        connect(
            &state, &Midi::crossFaderChanged, this, [&taker] { taker = QThread::currentThread(); },
            Qt::DirectConnection);
        start(midi);
        QTRY_VERIFY(fake().portIsOpen());
        QTRY_VERIFY(fake().send({0xB0, 0x00, 0x7F}) && taker == midi.thread());
        QCOMPARE(state.crossFader(), ModelCrossFader::RIGHT);
        state.disconnect(this);
    }

    void anOpenPortIsClosedAtTheEndAndNothingIsLeft() {
        QPointer<QThread> thread;
        QPointer<WorkerMidiObject> worker;
        {
            const MidiThread midi;
            thread = midi.thread();
            worker = midi.worker();
            start(midi);
            QTRY_VERIFY(fake().portIsOpen());
        }
        QVERIFY(thread.isNull());
        QVERIFY(worker.isNull());
        QCOMPARE(fake().alive, 0);
    }

    // The port hangs in its closing, as it does under a sound server that doesn't answer.
    void whatHangsIsLeftToItselfAndGoesWhenItComesBack() {
        QPointer<QThread> thread;
        auto midi = std::make_unique<MidiThread>();
        thread = midi->thread();
        start(*midi);
        QTRY_VERIFY(fake().portIsOpen());
        QVERIFY(!MidiThread::leftBehind());
        fake().hang = true;
        midi.reset(); // returns
        QVERIFY(MidiThread::leftBehind());
        QVERIFY(!thread.isNull());
        QVERIFY(thread->isRunning());
        QCOMPARE(fake().alive, 1);
        fake().hang = false;
        QTRY_VERIFY_WITH_TIMEOUT(thread.isNull(), 10000);
        QCOMPARE(fake().alive, 0);
        QVERIFY(!MidiThread::leftBehind());
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_MidiThread)
#include "tst_midithread.moc"
