#include "module/takestore.h"
#include "motion.h"
#include "support/testmain.h"

#include <QTest>

namespace {

constexpr std::size_t block = TakeStore::blockSamples;

std::int16_t value(std::size_t i) {
    return static_cast<std::int16_t>(scatter(11, i));
}

void append(TakeStore& store, std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) {
        store.append(value(i));
    }
}

// The number of values that stand where they should, walked piece by piece.
std::size_t rightValues(const TakeStore& store, std::size_t* pieces = nullptr) {
    std::size_t at = 0;
    std::size_t right = 0;
    std::size_t count = 0;
    store.forEachPiece([&](std::span<const std::int16_t> piece) {
        ++count;
        for (const std::int16_t sample : piece) {
            right += sample == value(at++) ? 1U : 0U;
        }
        return true;
    });
    if (pieces != nullptr) {
        *pieces = count;
    }
    return right;
}

} // namespace

class tst_TakeStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aNewStoreIsEmptyAndReady() {
        TakeStore store;
        QCOMPARE(store.size(), std::size_t{0});
        QCOMPARE(store.overflows(), std::uint64_t{0});
        QVERIFY(store.append(-32768));
        QCOMPARE(store.size(), std::size_t{1});
    }

    void anEmptyStoreHandsOverNothing() {
        const TakeStore store;
        bool called = false;
        QVERIFY(store.forEachPiece([&](std::span<const std::int16_t>) { return called = true; }));
        QVERIFY(!called);
    }

    void theValuesComeBackInOrderAcrossBlocks() {
        TakeStore store;
        append(store, 0, 3 * block + 5);
        QCOMPARE(store.size(), 3 * block + 5);
        std::size_t pieces = 0;
        QCOMPARE(rightValues(store, &pieces), 3 * block + 5);
        QCOMPARE(pieces, std::size_t{4});
    }

    void aFullBlockIsOnePiece() {
        TakeStore store;
        append(store, 0, block);
        std::size_t pieces = 0;
        QCOMPARE(rightValues(store, &pieces), block);
        QCOMPARE(pieces, std::size_t{1});
    }

    void theWalkEndsWhereTheTakerSaysSo() {
        TakeStore store;
        append(store, 0, 2 * block + 1);
        int pieces = 0;
        QVERIFY(!store.forEachPiece([&](std::span<const std::int16_t>) { return ++pieces < 2; }));
        QCOMPARE(pieces, 2);
    }

    void whatFindsNoRoomIsCountedAndTheRestStays() {
        TakeStore store;
        const std::size_t room = (1 + TakeStore::blocksAhead) * block;
        append(store, 0, room);
        QCOMPARE(store.overflows(), std::uint64_t{0});
        QVERIFY(!store.append(1));
        QVERIFY(!store.append(2));
        QCOMPARE(store.overflows(), std::uint64_t{2});
        QCOMPARE(store.size(), room);
        store.prepare();
        append(store, room, room + 10);
        QCOMPARE(store.overflows(), std::uint64_t{2});
        QCOMPARE(rightValues(store), room + 10);
    }

    void preparingNowAndThenNeverLosesAValue() {
        TakeStore store;
        for (std::size_t at = 0; at < 20 * block; at += block) {
            append(store, at, at + block);
            store.prepare();
        }
        QCOMPARE(store.overflows(), std::uint64_t{0});
        QCOMPARE(rightValues(store), 20 * block);
    }

    void aClearedStoreStartsAnewInTheSameMemory() {
        TakeStore store;
        append(store, 1000, 1000 + 2 * block);
        store.clear();
        QCOMPARE(store.size(), std::size_t{0});
        append(store, 0, 100);
        QCOMPARE(rightValues(store), std::size_t{100});
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_TakeStore)
#include "tst_takestore.moc"
