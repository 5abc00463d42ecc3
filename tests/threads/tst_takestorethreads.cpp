// The take between the callback that appends and a GUI that makes room and reads.

#include "module/takestore.h"
#include "motion.h"
#include "support/loadfactor.h"
#include "support/testmain.h"

#include <QTest>

#include <atomic>
#include <thread>

namespace {

std::int16_t valueAt(std::size_t i) {
    return static_cast<std::int16_t>(scatter(3, i));
}

constexpr std::size_t sampleCount = std::size_t{30} * TakeStore::blockSamples / loadFactor;

} // namespace

class TestTakeStoreThreads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsReadIsWhatWasAppended() {
        TakeStore take;
        std::atomic<std::size_t> prepared{0};
        std::thread producer([&] {
            for (std::size_t i = 0; i < sampleCount; ++i) {
                while (i > prepared.load(std::memory_order_acquire) + TakeStore::blockSamples) {
                }
                take.append(valueAt(i));
            }
        });
        std::uint64_t wrong = 0;
        std::uint64_t backward = 0;
        std::size_t before = 0;
        for (std::size_t size = 0; size < sampleCount;) {
            size = take.size();
            take.prepare();
            prepared.store(size, std::memory_order_release);
            backward += size < before ? 1U : 0U;
            before = size;
            std::size_t at = 0;
            take.forEachPiece([&](std::span<const std::int16_t> piece) {
                // The ends of each piece: the newest value above all.
                wrong += piece.front() == valueAt(at) ? 0U : 1U;
                wrong += piece.back() == valueAt(at + piece.size() - 1) ? 0U : 1U;
                at += piece.size();
                return true;
            });
            backward += at < size ? 1U : 0U;
        }
        producer.join();
        QCOMPARE(wrong, std::uint64_t{0});
        QCOMPARE(backward, std::uint64_t{0});
        QCOMPARE(take.overflows(), std::uint64_t{0});
        std::size_t at = 0;
        take.forEachPiece([&](std::span<const std::int16_t> piece) {
            for (const std::int16_t value : piece) {
                wrong += value == valueAt(at++) ? 0U : 1U;
            }
            return true;
        });
        QCOMPARE(at, sampleCount);
        QCOMPARE(wrong, std::uint64_t{0});
    }

    // A GUI that is late costs the values for which there was no room, and nothing else.
    void aLateGuiCostsCountedValuesOnly() {
        TakeStore take;
        const std::size_t room = (TakeStore::blocksAhead + 1) * TakeStore::blockSamples;
        std::atomic<bool> full{false};
        std::atomic<bool> widened{false};
        std::thread producer([&] {
            for (std::size_t i = 0; i < room + 1000; ++i) {
                take.append(valueAt(i));
            }
            full.store(true, std::memory_order_release);
            while (!widened.load(std::memory_order_acquire)) {
            }
            take.append(77);
        });
        while (!full.load(std::memory_order_acquire)) {
        }
        const std::size_t sizeWhenFull = take.size();
        const std::uint64_t lost = take.overflows();
        take.prepare();
        widened.store(true, std::memory_order_release);
        producer.join();
        QCOMPARE(sizeWhenFull, room);
        QCOMPARE(lost, std::uint64_t{1000});
        QCOMPARE(take.size(), room + 1);
        std::int16_t last = 0;
        take.forEachPiece([&last](std::span<const std::int16_t> piece) {
            last = piece.back();
            return true;
        });
        QCOMPARE(last, std::int16_t{77});
    }
};

GRAMO_TEST_GUILESS_MAIN(TestTakeStoreThreads)

#include "tst_takestorethreads.moc"
