#include "painter/curvedrawing.h"

#include "gui/support/curves.h"
#include "painter/curveoffset.h"
#include "support/testmain.h"

#include <QImage>
#include <QTest>

#include <limits>

namespace {

constexpr double step = 10.0; // one point a pixel on the scale below
const QColor red(200, 0, 0);
const QColor blue(10, 100, 240);

GraphScale scaleOf(ModelDisplay::EnumDisplay display) {
    const double height = display == ModelDisplay::NORMAL ? 425.0 : 1000000.0;
    return {GraphLayout::of(1200, 500, false, false), {0.0, 1155.0 * step}, {0.0, height}, false};
}

struct Look {
    ModelDisplay::EnumDisplay display = ModelDisplay::NORMAL;
    ModelGraph::EnumGraph item = ModelGraph::INPUT_DECKA;
    double offset = 0.0;
    AreaColors areas{};
    std::vector<WavePair> wavePairs{};
    GraphOptions options = [] {
        GraphOptions visible;
        visible.curveOnSize = 8;
        visible.curveCrossFaderOff = true;
        return visible;
    }();
};

QImage blackPicture() {
    QImage picture(1200, 500, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::black);
    return picture;
}

// Calls `draw(scene, curve, picture)` with what the look says.
template <typename Draw>
QImage withScene(const CurvePointStore& store, CurveStretch stretch, const Look& look, Draw draw) {
    QImage picture = blackPicture();
    QPainter painter(&picture);
    const GraphScale scale = scaleOf(look.display);
    const CurveScene scene{painter,      scale,       look.options,  QRectF(picture.rect()),
                           look.display, &look.areas, look.wavePairs};
    draw(scene, CurveExtract{look.item, store.view(), stretch}, picture);
    return picture;
}

std::vector<CurveStroke> strokesOf(const CurvePointStore& store, CurveStretch stretch, const Look& look) {
    std::vector<CurveStroke> all;
    withScene(store, stretch, look, [&](const CurveScene& scene, const CurveExtract& curve, const QImage&) {
        CurveDrawing drawing;
        for (const CurveStep& one : curveLine(scene, curve, look.offset)->all()) {
            const CurveStrokes strokes = drawing.strokes(scene, curve, one);
            all.insert(all.end(), strokes.begin(), strokes.end());
        }
    });
    return all;
}

QImage drawn(const CurvePointStore& store, CurveStretch stretch, const Look& look = {}) {
    QImage picture = blackPicture();
    const CapsuleTarget target{reinterpret_cast<std::uint32_t*>(picture.bits()),
                               picture.bytesPerLine() / 4,
                               0,
                               0,
                               picture.width(),
                               picture.height(),
                               0,
                               0};
    for (const CurveStroke& stroke : strokesOf(store, stretch, look)) {
        drawCapsule(target, stroke.capsule, stroke.color);
    }
    return picture;
}

QImage movedUp(const QImage& picture, int rows) {
    QImage moved = blackPicture();
    QPainter painter(&moved);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, -rows, picture);
    return moved;
}

// The stroke to the second of three points that are `point` but for their time.
CurveStroke strokeOf(const CurvePoint& point, const Look& look = {}) {
    CurvePointStore store;
    addPoints(store, 3, 3.0 * step, [&](int, CurvePoint& p) {
        const double time = p.time;
        p = point;
        p.time = time;
    });
    const auto strokes = strokesOf(store, {0, 2}, look);
    return strokes.empty() ? CurveStroke{} : strokes[1];
}

CurvePoint at(double angle, bool soundOn = true, double pitch = 1.0) {
    CurvePoint point = curvePoint(0.0, 100.0, soundOn, pitch);
    turn(point, angle);
    return point;
}

} // namespace

class TestCurveDrawing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void offsetsUpwardsAreWholeNumbers() {
        QCOMPARE(wrappedOffset(1000.9), std::uint64_t{1000});
        QCOMPARE(wrappedOffset(0.0), std::uint64_t{0});
        QCOMPARE(wrappedOffset(-0.9), std::uint64_t{0});
    }
    void offsetsDownwardsWrap() {
        QCOMPARE(wrappedOffset(-1.0), std::numeric_limits<std::uint64_t>::max());
        QCOMPARE(wrappedOffset(-1000.9), std::numeric_limits<std::uint64_t>::max() - 999);
    }
    void offsetsThatAreNoDistanceAreNone() {
        QCOMPARE(wrappedOffset(std::numeric_limits<double>::quiet_NaN()), std::uint64_t{0});
        QCOMPARE(wrappedOffset(std::numeric_limits<double>::infinity()), std::uint64_t{0});
        QCOMPARE(wrappedOffset(-1e300), std::uint64_t{0});
    }
    void anEmptyCurveGivesNoOffset() {
        CurvePointStore main;
        CurvePointStore reference;
        QCOMPARE(referenceOffset(main.view(), reference.view()), 0.0);
        addPoints(main, 3, step, [](int, CurvePoint& p) { p.position = 700.0; });
        QCOMPARE(referenceOffset(main.view(), reference.view()), 0.0);
        QCOMPARE(referenceOffset(reference.view(), main.view()), 0.0);
    }
    void aReferenceThatStartsBelowIsLifted() {
        CurvePointStore main;
        CurvePointStore reference;
        addPoints(main, 3, step, [](int, CurvePoint& p) { p.position = 700.0; });
        addPoints(reference, 3, step, [](int, CurvePoint& p) { p.position = -300.0; });
        QCOMPARE(referenceOffset(main.view(), reference.view()), 1000.0);
    }
    void theLiftIsSeenInTheNormalDisplayAndInNoOther() {
        CurvePointStore reference;
        addPoints(reference, 300, step, [](int i, CurvePoint& p) {
            p.position = 50.0 + i % 60;
            turn(p, 3.0 * i);
        });
        for (const auto display : {ModelDisplay::NORMAL, ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
            Look look;
            look.item = ModelGraph::INPUT_1;
            look.display = display;
            const QImage before = drawn(reference, {0, 299}, look);
            QVERIFY(before != blackPicture());
            look.offset = 200.0;
            QCOMPARE(drawn(reference, {0, 299}, look),
                     display == ModelDisplay::NORMAL ? movedUp(before, 200) : before);
        }
    }
    void aReferenceThatStartsAboveIsGone() {
        CurvePointStore main;
        CurvePointStore reference;
        addPoints(main, 100, step, [](int, CurvePoint& p) { p.position = 100.0; });
        addPoints(reference, 100, step, [](int, CurvePoint& p) { p.position = 101.0; });
        Look look;
        look.item = ModelGraph::INPUT_1;
        look.offset = referenceOffset(main.view(), reference.view());
        QVERIFY(look.offset > 1.8e19);
        QCOMPARE(drawn(reference, {0, 99}, look), blackPicture());
    }
    void brokenPointsDrawNothing() {
        const double none = std::numeric_limits<double>::quiet_NaN();
        const double endless = std::numeric_limits<double>::infinity();
        CurvePointStore store;
        addPoints(store, 50, step, [&](int i, CurvePoint& p) {
            p.position = i % 3 == 0 ? none : i % 3 == 1 ? endless : -1e300;
        });
        QCOMPARE(drawn(store, {0, 49}), blackPicture());
    }
    void aFarPointIsReachedByALineUpright() {
        CurvePointStore store;
        addPoints(store, 50, step, [](int i, CurvePoint& p) { p.position = i < 25 ? 100.0 : 1e12; });
        const QImage picture = drawn(store, {0, 49});
        QCOMPARE(picture.pixelColor(71, 200), QColor(0, 255, 0)); // the way up between points 24 and 25
        QCOMPARE(picture.pixelColor(90, 200), QColor(Qt::black));
    }

    void aSegmentHasThePenOfThePointItEndsIn() {
        CurvePointStore store;
        addPoints(store, 4, 3.0 * step, [](int i, CurvePoint& p) { p.soundOn = i == 1 || i == 2; });
        const auto strokes = strokesOf(store, {0, 3}, {});
        const double widths[] = {1.0, 8.0, 8.0, 1.0, 8.0}; // entry, three lines, the tail back to point 2
        QCOMPARE(strokes.size(), std::size(widths));
        for (std::size_t i = 0; i < strokes.size(); ++i) {
            QCOMPARE(strokes[i].capsule.width, widths[i]);
        }
    }
    void aClosedFaderVanishesByOptionAndKeepsItsStrip() {
        CurvePointStore store;
        addPoints(store, 200, step, [](int, CurvePoint& p) {
            p.soundOn = 0;
            turn(p, 100.0);
        });
        for (const auto display : {ModelDisplay::NORMAL, ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
            Look look;
            look.display = display;
            QVERIFY(!strokesOf(store, {0, 199}, look).empty());
            look.options.curveCrossFaderOff = false;
            QVERIFY(strokesOf(store, {0, 199}, look).empty());
            const QImage strip = withScene(store, {0, 199}, look,
                                           [](const CurveScene& scene, const CurveExtract& curve, auto&&) {
                                               drawSoundStrip(scene, curve, std::nullopt);
                                           });
            QImage wanted = blackPicture();
            QPainter(&wanted).fillRect(QRect(QPoint(46, 27), QPoint(245, 30)), QColor(0, 255, 0, 100));
            QCOMPARE(strip, wanted);
        }
    }
    void onADeckWithoutAreasEachCurveHasItsColour() {
        Look look;
        QCOMPARE(strokeOf(at(20.0), look).color, QColor(0, 255, 0).rgba());
        look.item = ModelGraph::INPUT_2;
        QCOMPARE(strokeOf(at(20.0), look).color, QColor(0, 105, 105).rgba());
    }
    void aPointHasTheColourOfItsArea() {
        for (const auto display : {ModelDisplay::NORMAL, ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
            Look look;
            look.display = display;
            look.areas = AreaColors({{0.0, 90.0, red}, {90.0, 180.0, blue}});
            QCOMPARE(strokeOf(at(89.9), look).color, red.rgba());
            QCOMPARE(strokeOf(at(90.0), look).color, blue.rgba());
            look.item = ModelGraph::INPUT_1; // lighter, but for what is light
            QCOMPARE(strokeOf(at(90.0), look).color, QColor(60, 150, 240).rgba());
        }
    }
    void outsideAllAreasACurveIsGoneOrGrey() {
        Look look;
        look.areas = AreaColors({{0.0, 90.0, red}});
        QCOMPARE(strokeOf(at(200.0), look).color, 0U);
        look.options.curveNoSound = true;
        QCOMPARE(strokeOf(at(200.0), look).color, QColor(175, 176, 177).rgba());
    }
    void aClosedFaderMayInvertTheColour() {
        Look look;
        look.areas = AreaColors({{0.0, 90.0, QColor(10, 200, 255)}});
        look.options.curveCrossFaderOffInvertColor = true;
        QCOMPARE(strokeOf(at(20.0, false), look).color, QColor(245, 55, 0).rgba());
        QCOMPARE(strokeOf(at(20.0, true), look).color, QColor(10, 200, 255).rgba());
    }
    void linesOutsideTheViewAreLeftOut() {
        CurvePointStore store;
        addPoints(store, 3, 3.0 * step, [](int, CurvePoint& p) { p.position = 470.0; }); // y -10
        QVERIFY(strokesOf(store, {0, 2}, {}).empty());
        CurvePointStore nearer; // half of its width is in view
        addPoints(nearer, 3, 3.0 * step, [](int, CurvePoint& p) { p.position = 462.0; });
        QVERIFY(!strokesOf(nearer, {0, 2}, {}).empty());
    }

    void theTickLiesAboveTheLines() {
        Look look;
        look.options.directSound = true;
        look.wavePairs = {{-20.0, 30.0}};
        CurvePointStore store;
        addPoints(store, 3, 3.0 * step);
        const auto strokes = strokesOf(store, {0, 2}, look);
        QCOMPARE(strokes.size(), std::size_t{8}); // a line and a tick: entry, two steps, tail
        const Capsule& line = strokes[2].capsule;
        QCOMPARE(QLineF(line.x1, line.y1, line.x2, line.y2), QLineF(48, 460, 51, 460));
        const Capsule& tick = strokes[3].capsule;
        QCOMPARE(QLineF(tick.x1, tick.y1, tick.x2, tick.y2), QLineF(49.5, 65, 49.5, 115));
        QCOMPARE(tick.width, 3.0);
        QCOMPARE(strokes[3].color, QColor(128, 128, 128).rgba());
    }
    void theTickHasThePenOfTheDirectWave() {
        Look look;
        look.options.directSound = true;
        look.wavePairs = {{-20.0, 30.0}};
        const auto tickOf = [&](const CurvePoint& point) {
            CurvePointStore store;
            addPoints(store, 3, 3.0 * step, [&](int, CurvePoint& p) {
                const double time = p.time;
                p = point;
                p.time = time;
            });
            const auto strokes = strokesOf(store, {0, 2}, look);
            return strokes.size() == 8 ? strokes[3] : CurveStroke{};
        };
        QCOMPARE(tickOf(at(20.0, true, 0.0)).capsule.width, 3.0); // quiet, and it sounds
        QCOMPARE(tickOf(at(20.0, false)).capsule.width, 1.0);
        look.areas = AreaColors({{0.0, 90.0, red}});
        look.item = ModelGraph::INPUT_1;
        QCOMPARE(tickOf(at(20.0)).color, red.rgba()); // not the lighter one of a reference
        look.options.curveNoSound = true;
        QCOMPARE(tickOf(at(200.0)).color, QColor(175, 176, 177).rgba());
    }
    void theTickOfAClosedFaderVanishesWithItsLine() {
        Look look;
        look.options.directSound = true;
        look.wavePairs = {{-20.0, 30.0}};
        look.options.curveCrossFaderOff = false;
        CurvePointStore store;
        addPoints(store, 3, 3.0 * step, [](int, CurvePoint& p) { p.soundOn = 0; });
        QVERIFY(strokesOf(store, {0, 2}, look).empty());
    }
    void noTickUnlessItIsAskedForAndThereIsAWave() {
        CurvePointStore store;
        addPoints(store, 3, 3.0 * step);
        Look look;
        look.wavePairs = {{-20.0, 30.0}};
        QCOMPARE(strokesOf(store, {0, 2}, look).size(), std::size_t{4});
        look.wavePairs.clear();
        look.options.directSound = true;
        QCOMPARE(strokesOf(store, {0, 2}, look).size(), std::size_t{4});
    }
    void aDisplayThatPlotsNothingHasNoLine() {
        CurvePointStore store;
        addPoints(store, 3, 3.0 * step);
        Look look;
        look.display = ModelDisplay::UNDEFINED;
        withScene(store, {0, 2}, look, [](const CurveScene& scene, const CurveExtract& curve, auto&&) {
            QVERIFY(!curveLine(scene, curve, 0.0));
        });
    }
};

GRAMO_TEST_MAIN(TestCurveDrawing)
#include "tst_curvedrawing.moc"
