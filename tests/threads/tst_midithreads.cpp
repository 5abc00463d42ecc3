// A crossfader's message on its way: the library's thread packs it, the MIDI thread filters it, a callback
// asks for the zone, while the GUI thread starts and stops the port, moves the limits and chooses another
// control.

#include "module/deckaudible.h"
#include "module/midithread.h"
#include "module/workermidiobject.h"
#include "motion.h"
#include "state/midi.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "support/datafolder.h"
#include "support/fakertmidi.h"
#include "support/loadfactor.h"
#include "support/testmain.h"

#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {
constexpr int sessions = 200 / loadFactor;
}

class TestMidiThreads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFaderThatMovesThroughManySessions() {
        ownDataFolder();
        FakeMidi& fake = FakeMidi::instance();
        fake.reset();
        fake.interfaces[RtMidi::LINUX_ALSA].ports = {"Mixer"};
        Setting& setting = *Singleton::instance().setting();
        setting.setInputMidi(u"0:Mixer"_s);
        Midi& midi = *Singleton::instance().midi();

        std::atomic<std::uint64_t> announced{0};
        std::atomic<std::uint64_t> strange{0};
        connect(
            &midi, &Midi::crossFaderChanged, this,
            [&](const ObjectMidi& reading) {
                announced.fetch_add(1, std::memory_order_relaxed);
                strange.fetch_add(reading.value() < 0 || reading.value() > 127 ? 1 : 0,
                                  std::memory_order_relaxed);
            },
            Qt::DirectConnection);
        std::atomic<bool> ended{false};
        std::atomic<std::uint64_t> sent{0};
        std::thread library([&] {
            for (std::uint64_t i = 0; !ended.load(std::memory_order_acquire); ++i) {
                const auto value = static_cast<unsigned char>(scatter(4, i) % 3 * 63);
                sent.fetch_add(fake.send({0xB0, 0x08, value}) ? 1 : 0, std::memory_order_relaxed);
                fake.send({0x90, 0x08, 0x7F});
                fake.send({0xF0, 0x08, 0x7F, 0xF7});
                std::this_thread::sleep_for(std::chrono::microseconds(50));
            }
        });
        std::atomic<std::uint64_t> cuts{0};
        std::thread callback([&] {
            bool audible = true;
            while (!ended.load(std::memory_order_acquire)) {
                const bool now = deckAudible(midi.crossFader(), true, false, ModelGraph::INPUT_DECKA);
                cuts.fetch_add(audible && !now ? 1 : 0, std::memory_order_relaxed);
                audible = now;
            }
        });
        {
            const MidiThread thread;
            for (int i = 0; i < sessions || (cuts.load() == 0 && i < 100 * sessions); ++i) {
                setting.setCrossFaderRight(i % 2 == 0 ? 126 : 127);
                midi.setObject(ObjectMidi(0, i % 4 == 3 ? 9 : 8)); // now and then one that nobody moves
                QMetaObject::invokeMethod(thread.worker(), &WorkerMidiObject::startRun, Qt::QueuedConnection);
                QTest::qWait(5);
                static_cast<void>(midi.object().name().size());
                QMetaObject::invokeMethod(thread.worker(), &WorkerMidiObject::stopRun, Qt::QueuedConnection);
            }
        }
        ended.store(true, std::memory_order_release);
        library.join();
        callback.join();
        midi.disconnect(this);
        QCOMPARE(strange.load(), std::uint64_t{0});
        QCOMPARE(fake.alive, 0);
        QCOMPARE_GT(sent.load(), std::uint64_t{10});
        QCOMPARE_GT(announced.load(), static_cast<std::uint64_t>(sessions)); // more than this thread's own
        QCOMPARE_GT(cuts.load(), std::uint64_t{0});
    }
};

GRAMO_TEST_GUILESS_MAIN(TestMidiThreads)

#include "tst_midithreads.moc"
