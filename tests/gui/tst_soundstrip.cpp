#include "painter/soundstrip.h"

#include "gui/support/curves.h"
#include "support/testmain.h"

#include <QTest>

namespace {

// One point a pixel: point i lies in column 45 + i + 1.
constexpr double step = 10.0;

GraphScale scale() {
    return {GraphLayout::of(1200, 500, false, false), {0.0, 1155.0 * step}, {0.0, 1.0}, false};
}

std::vector<QRect> strip(const CurvePointStore& store, CurveStretch stretch,
                         ModelGraph::EnumGraph item = ModelGraph::INPUT_DECKA) {
    return soundStrip(store.view(), stretch, scale(), item);
}

QRect bar(int left, int right, int top) {
    return {QPoint(left, top), QPoint(right, 30)};
}

} // namespace

class TestSoundStrip : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void anOpenFaderIsOneHighBar() {
        CurvePointStore store;
        addPoints(store, 100, step);
        QCOMPARE(strip(store, {0, 99}), (std::vector<QRect>{bar(46, 145, 9)}));
    }
    void aClosedFaderIsOneFlatBar() {
        CurvePointStore store;
        addPoints(store, 100, step, [](int, CurvePoint& p) { p.soundOn = 0; });
        QCOMPARE(strip(store, {0, 99}), (std::vector<QRect>{bar(46, 145, 27)}));
    }
    void aReferenceIsHigherThanADeck() {
        CurvePointStore store;
        addPoints(store, 100, step);
        for (const auto deck : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
            QCOMPARE(strip(store, {0, 99}, deck).front().top(), 9);
        }
        for (const auto reference : {ModelGraph::INPUT_1, ModelGraph::INPUT_2}) {
            QCOMPARE(strip(store, {0, 99}, reference).front().top(), 4);
        }
    }
    void eachCutClosesABarInTheColumnBeforeIt() {
        CurvePointStore store;
        addPoints(store, 100, step, [](int i, CurvePoint& p) { p.soundOn = i >= 20 && i < 50 ? 0 : 1; });
        // Points 20 and 50 lie in the columns 66 and 96.
        QCOMPARE(strip(store, {0, 99}),
                 (std::vector<QRect>{bar(46, 65, 9), bar(66, 95, 27), bar(96, 145, 9)}));
    }
    void theStripStartsWithTheFirstVisiblePoint() {
        CurvePointStore store;
        addPoints(store, 100, step, [](int i, CurvePoint& p) { p.soundOn = i < 50 ? 0 : 1; });
        QCOMPARE(strip(store, {30, 69}), (std::vector<QRect>{bar(76, 95, 27), bar(96, 115, 9)}));
    }
    void theWalkIsThinnedWithoutRoundingToAPowerOfTwo() {
        CurvePointStore store;
        // Six points a pixel; 3000 points on 500 pixels give a stride of 12.
        addPoints(store, 3001, step / 6.0, [](int i, CurvePoint& p) { p.soundOn = i < 13 ? 1 : 0; });
        QCOMPARE(curveStride(store.view(), {0, 3000}, scale()), std::size_t{12});
        // Point 24 is the first one on the walk that is closed; it lies at 25 / 6 pixels.
        QCOMPARE(strip(store, {0, 3000}), (std::vector<QRect>{bar(45, 48, 9), bar(49, 545, 27)}));
    }
    void aPassageWithinOneColumnHasNoBar() {
        CurvePointStore store;
        addPoints(store, 300, step / 3.0, [](int i, CurvePoint& p) { p.soundOn = i == 151 ? 0 : 1; });
        QCOMPARE(curveStride(store.view(), {0, 299}, scale()), std::size_t{6});
        addPoints(store, 1, step);
        for (const QRect& r : strip(store, {148, 154})) {
            QVERIFY(r.width() > 0);
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(TestSoundStrip)
#include "tst_soundstrip.moc"
