#include "curve/curvepointstore.h"
#include "support/seededpoint.h"
#include "support/testmain.h"

#include <QTest>

#include <cstring>

namespace {

constexpr std::uint32_t firstBlock = CurvePointStore::firstBlock;
constexpr std::uint32_t blockPoints = CurvePointStore::blockPoints;

bool holds(const CurvePointStore::View& view, std::int32_t grid, std::uint32_t from, std::uint32_t to) {
    if (view.size() != to - from) {
        return false;
    }
    for (std::uint32_t i = from; i < to; ++i) {
        const CurvePoint& point = view[i - from];
        if (!isWhole(point) || point.timecode != grid || point.time != double(i)) {
            return false;
        }
    }
    return true;
}

void append(CurvePointStore& store, std::int32_t grid, std::uint32_t from, std::uint32_t to) {
    for (std::uint32_t i = from; i < to; ++i) {
        store.append(seededPoint(grid, i));
    }
}

} // namespace

class tst_CurvePointStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void anEmptyStoreHasAnEmptyView() {
        const CurvePointStore store;
        QCOMPARE(store.size(), std::size_t{0});
        QVERIFY(store.view().empty());
        QVERIFY(CurvePointStore::View().empty());
        QCOMPARE(CurvePointStore::View().size(), std::size_t{0});
    }

    void withoutABlockAPointIsCountedAsLost() {
        CurvePointStore store;
        QVERIFY(!store.append(seededPoint(1, 0)));
        QVERIFY(!store.append(seededPoint(1, 1)));
        QCOMPARE(store.overflows(), std::uint64_t{2});
        QVERIFY(store.view().empty());
    }

    void aRenewedStoreHasRoomAndNothingInIt() {
        CurvePointStore store;
        store.renew(1000); // without a block yet
        append(store, 1, 0, 1000);
        QVERIFY(holds(store.view(), 1, 0, 1000));
        const std::uint64_t generation = store.generation();
        store.renew(firstBlock + 10);
        QVERIFY(store.view().empty());
        QVERIFY(store.generation() != generation);
        append(store, 2, 0, 500);
        QVERIFY(holds(store.view(), 2, 0, 500));
        QCOMPARE(store.overflows(), std::uint64_t{0});
    }

    void zerosLieBehindWhatWasAppended() {
        CurvePointStore store;
        store.renew(firstBlock + 10);
        append(store, 1, 0, 1000);
        store.renew(firstBlock + 10);
        append(store, 2, 0, 5);
        store.appendZeros(firstBlock);
        QCOMPARE(store.size(), std::size_t{firstBlock} + 5);
        const CurvePointStore::View view = store.view();
        QCOMPARE(view[4].time, 4.0);
        const CurvePoint zero;
        for (std::size_t i = 5; i < view.size(); ++i) {
            QCOMPARE(std::memcmp(&view[i], &zero, sizeof zero), 0);
        }
        store.append(seededPoint(3, 1));
        QCOMPARE(store.view().back().timecode, 3);
    }

    void noMoreZerosAreAppendedThanThereIsRoomFor() {
        CurvePointStore store;
        store.appendZeros(7);
        QCOMPARE(store.size(), std::size_t{0});
        store.renew(1);
        store.appendZeros(std::size_t{firstBlock} + 7);
        QCOMPARE(store.size(), std::size_t{firstBlock});
    }

    void pointsComeBackInTheirOrder() {
        CurvePointStore store;
        store.reserve();
        append(store, 1, 0, 1000);
        QVERIFY(holds(store.view(), 1, 0, 1000));
        QCOMPARE(store.view().front().time, 0.0);
        QCOMPARE(store.view().back().time, 999.0);
        QCOMPARE(store.overflows(), std::uint64_t{0});
    }

    void pointsStandOn64ByteBordersAndNeverMove() {
        CurvePointStore store;
        store.reserve();
        append(store, 1, 0, 10);
        const CurvePoint* first = &store.view()[0];
        QCOMPARE(reinterpret_cast<std::uintptr_t>(first) % 64, std::uintptr_t{0});
        append(store, 1, 10, 200000);
        store.prepare();
        QCOMPARE(&store.view()[0], first);
    }

    void reservingAgainChangesNothing() {
        CurvePointStore store;
        store.reserve();
        append(store, 1, 0, 10);
        const CurvePoint* first = &store.view()[0];
        store.reserve();
        QCOMPARE(&store.view()[0], first);
        QVERIFY(holds(store.view(), 1, 0, 10));
    }

    void aViewStaysAsItWasTaken() {
        CurvePointStore store;
        store.reserve();
        append(store, 1, 0, 10);
        const CurvePointStore::View view = store.view();
        append(store, 1, 10, 20);
        QCOMPARE(view.size(), std::size_t{10});
        QVERIFY(holds(view, 1, 0, 10));
        QCOMPARE(store.size(), std::size_t{20});
    }

    void pastTheFirstFiveMillionTheNextBlockHasToBeMadeAhead() {
        CurvePointStore store;
        store.reserve();
        append(store, 1, 0, firstBlock);
        QCOMPARE(store.size(), std::size_t{firstBlock});
        QCOMPARE(store.overflows(), std::uint64_t{0});
        QVERIFY(!store.append(seededPoint(1, firstBlock))); // nobody has prepared it
        QCOMPARE(store.overflows(), std::uint64_t{1});
        QCOMPARE(store.size(), std::size_t{firstBlock});

        const CurvePoint* first = &store.view()[0];
        store.prepare();
        append(store, 1, firstBlock, firstBlock + blockPoints);
        QCOMPARE(store.overflows(), std::uint64_t{1});
        store.prepare();
        append(store, 1, firstBlock + blockPoints, firstBlock + blockPoints + 10);
        QCOMPARE(store.overflows(), std::uint64_t{1});
        const CurvePointStore::View view = store.view();
        QCOMPARE(view.size(), std::size_t{firstBlock + blockPoints + 10});
        QCOMPARE(&view[0], first);
        for (const std::uint32_t i :
             {0U, 1U, firstBlock - 1, firstBlock, firstBlock + 1, firstBlock + blockPoints - 1,
              firstBlock + blockPoints, firstBlock + blockPoints + 9}) {
            QVERIFY(isWhole(view[i]));
            QCOMPARE(view[i].time, double(i));
        }

        store.clear();
        append(store, 2, 0, firstBlock + 5); // the memory stayed
        QCOMPARE(store.overflows(), std::uint64_t{1});
        QCOMPARE(store.view()[firstBlock + 4].timecode, 2);
    }

    void preparingOftenEnoughNeverLosesAPoint() {
        CurvePointStore store;
        store.prepare(); // makes the first block as well
        for (std::uint32_t at = 0; at < firstBlock + 3 * blockPoints; at += 60000) {
            append(store, 1, at, at + 60000);
            store.prepare();
        }
        QCOMPARE(store.overflows(), std::uint64_t{0});
        QCOMPARE(store.view().back().time, double(store.size() - 1));
    }

    void aClearWhileNothingFeedsEmptiesAtOnce() {
        CurvePointStore store;
        store.reserve();
        append(store, 1, 0, 100);
        const CurvePoint* first = &store.view()[0];
        store.clear();
        QVERIFY(store.view().empty());
        append(store, 2, 0, 10);
        QVERIFY(holds(store.view(), 2, 0, 10));
        QCOMPARE(&store.view()[0], first); // from the start of the memory
    }

    void aClearWhileLiveIsSeenAtOnceAndCarriedOutByTheProducer() {
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        QVERIFY(store.isLive());
        append(store, 1, 0, 100);
        const CurvePointStore::View old = store.view();
        store.clear();
        QVERIFY(store.view().empty());
        QCOMPARE(store.size(), std::size_t{0});
        QVERIFY(holds(old, 1, 0, 100)); // a reader may still walk it
        append(store, 2, 0, 50);
        QVERIFY(holds(store.view(), 2, 0, 50));
        QVERIFY(holds(old, 1, 0, 100)); // the new points lie behind the old ones
    }

    void severalClearsBetweenTwoPointsAreOne() {
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        append(store, 1, 0, 5);
        store.clear();
        store.clear();
        append(store, 2, 0, 3);
        QVERIFY(holds(store.view(), 2, 0, 3));
    }

    void aRestartByTheProducerLeavesOldViewsValid() {
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        append(store, 1, 0, 100);
        const CurvePointStore::View first = store.view();
        store.restart();
        QVERIFY(store.view().empty());
        append(store, 2, 0, 100);
        const CurvePointStore::View second = store.view();
        store.restart();
        append(store, 3, 0, 100);
        QVERIFY(holds(first, 1, 0, 100));
        QVERIFY(holds(second, 2, 0, 100));
        QVERIFY(holds(store.view(), 3, 0, 100));
    }

    void aRestartCarriesOutAWaitingClearAsWell() {
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        append(store, 1, 0, 5);
        store.clear();
        store.restart();
        append(store, 2, 0, 5);
        QVERIFY(holds(store.view(), 2, 0, 5));
    }

    void aClearThatNoPointFollowedIsDoneWhenTheStreamEnds() {
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        append(store, 1, 0, 100);
        store.clear();
        store.setLive(false);
        QVERIFY(!store.isLive());
        QVERIFY(store.view().empty());
        append(store, 2, 0, 5);
        QVERIFY(holds(store.view(), 2, 0, 5));
    }

    void theEndOfAStreamKeepsItsPoints() {
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        append(store, 1, 0, 100);
        store.setLive(false);
        QVERIFY(holds(store.view(), 1, 0, 100));
        store.setLive(false);
        QVERIFY(holds(store.view(), 1, 0, 100));
    }

    void aClearAfterARestartStartsAtTheMemorysBeginningAgain() {
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        append(store, 1, 0, 100);
        const CurvePoint* first = &store.view()[0];
        store.restart();
        append(store, 2, 0, 10);
        QVERIFY(&store.view()[0] != first);
        store.setLive(false);
        store.clear();
        append(store, 3, 0, 10);
        QCOMPARE(&store.view()[0], first);
    }

    void restartsWithoutEndStillFindRoomWhilePreparingGoesOn() {
        CurvePointStore store;
        store.reserve();
        store.setLive(true);
        for (std::int32_t grid = 0; grid < 120; ++grid) {
            append(store, grid, 0, 50000);
            store.restart();
            store.prepare();
        }
        append(store, 1000, 0, 10);
        QCOMPARE(store.overflows(), std::uint64_t{0});
        QVERIFY(holds(store.view(), 1000, 0, 10));
    }

    void anAmendmentReachesThePointsInOrderUntilItSaysStop() {
        CurvePointStore store;
        store.reserve();
        append(store, 1, 0, 10);
        std::vector<std::size_t> seen;
        store.amend([&](std::size_t i, CurvePoint& point) {
            seen.push_back(i);
            point.pitch = 7.0;
            return i < 3;
        });
        QCOMPARE(seen, (std::vector<std::size_t>{0, 1, 2, 3}));
        QCOMPARE(store.view()[3].pitch, 7.0);
        QVERIFY(isWhole(store.view()[4]));
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_CurvePointStore)
#include "tst_curvepointstore.moc"
