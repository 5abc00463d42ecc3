// The kept picture in the displays of the angle, with areas, marks and the direct wave: pixel for pixel that
// of a drawing from scratch.
#include "gui/support/curvescreen.h"
#include "gui/support/picturedifference.h"
#include "support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>

namespace {

using Screen = CurveScreen;

constexpr double pointStep = 64.0;
constexpr double frameStep = 800.0; // from picture to picture
const QColor red(208, 0, 24);
const QColor yellow(254, 194, 0);
const QColor blue(1, 94, 193, 120); // shows what lies below it

// A hand that turns the record to and fro over all its angles, with cuts and with rests.
void hand(int i, CurvePoint& p) {
    p.position = 700.0 * std::sin(i * 0.011) + 350.0 * std::sin(i * 0.043);
    turn(p, 0.02 * i + 160.0 * std::sin(i * 0.0031) + 40.0 * std::sin(i * 0.017));
    p.soundOn = i / 170 % 3 != 0 ? 1 : 0;
    p.pitch = i / 230 % 4 == 0 ? 0.005 : -0.7;
}

AreaColors gaps() {
    return AreaColors({{0.0, 100.0, red}, {150.0, 220.0, blue}, {300.0, 340.0, yellow}});
}
AreaColors touchingAlike() {
    return AreaColors({{0.0, 120.0, red}, {120.0, 240.0, red}, {240.0, 360.0, red}});
}
AreaColors touchingApart() {
    return AreaColors({{0.0, 120.0, red}, {120.0, 240.0, yellow}, {240.0, 360.0, blue}});
}

std::vector<WavePair> someWave() {
    std::vector<WavePair> pairs;
    for (int i = 0; i < 2700; ++i) {
        const double height = 40.0 * std::abs(std::sin(i * 0.01));
        pairs.emplace_back(-height, height);
    }
    return pairs;
}

// Whether the layer's picture of the moment is that of a drawing from scratch.
bool same(CurveLayer& layer, const Screen& screen, const CurvePointStore& store, double cursor,
          const CurveLook& look) {
    const GraphScale scale = Screen::scaleAt(cursor, look);
    return screen.layered(layer, store, scale, look) == screen.fromScratch(store, scale, look);
}

} // namespace

class TestCurveLayerDisplays : public QObject {
    Q_OBJECT

    ShiniIcons m_icons;

    // Points that are so far apart that something may end between two of them.
    static CurvePointStore& farApart(CurvePointStore& store, double pixels) {
        addPoints(store, int(900.0 / pixels) + 40, pixels * Screen::span / 656.0, [](int i, CurvePoint& p) {
            p.position = 600.0 * std::sin(i * 0.7);
            turn(p, i * 37.0);
            p.soundOn = 1;
            p.pitch = 1.0;
        });
        return store;
    }

    // The look of a row of `looks`.
    CurveLook fetchLook() {
        QFETCH(ModelDisplay::EnumDisplay, display);
        QFETCH(AreaColors, areas);
        QFETCH(ModelShini::EnumShini, shini);
        QFETCH(bool, wave);
        CurveLook look;
        look.display = display;
        look.areas = areas;
        look.options.shini = shini;
        look.icons = &m_icons;
        if (wave) {
            look.wavePairs = someWave();
            look.options.directSound = true;
        }
        return look;
    }

    static void looks() {
        QTest::addColumn<ModelDisplay::EnumDisplay>("display");
        QTest::addColumn<AreaColors>("areas");
        QTest::addColumn<ModelShini::EnumShini>("shini");
        QTest::addColumn<bool>("wave");
        QTest::addColumn<double>("ratio");
        const std::pair<const char*, ModelDisplay::EnumDisplay> displays[] = {
            {"normal", ModelDisplay::NORMAL},
            {"phrasing", ModelDisplay::PHRASING},
            {"drumming", ModelDisplay::DRUMMING}};
        const std::pair<const char*, AreaColors> areas[] = {{"no areas", AreaColors()},
                                                            {"gaps", gaps()},
                                                            {"touching alike", touchingAlike()},
                                                            {"touching apart", touchingApart()}};
        const std::tuple<const char*, ModelShini::EnumShini, bool> extras[] = {
            {"plain", ModelShini::Undefined, false}, {"arrows", ModelShini::Arrows, false},
            {"circles", ModelShini::Circles, false}, {"middle", ModelShini::Middle, false},
            {"wave", ModelShini::Undefined, true},   {"middle and wave", ModelShini::Middle, true}};
        for (const auto& [displayName, display] : displays) {
            for (const auto& [areasName, list] : areas) {
                for (const auto& [extraName, shini, wave] : extras) {
                    for (const double ratio : {1.0, 1.25}) {
                        QTest::addRow("%s, %s, %s, %g", displayName, areasName, extraName, ratio)
                            << display << list << shini << wave << ratio;
                    }
                }
            }
        }
    }

private Q_SLOTS:
    void initTestCase() { m_icons.load(); }

    // What ends between two points and isn't joined has its end wherever the left edge cuts the curve.
    void theLeftEdgeCutsNoEndOff_data() {
        QTest::addColumn<ModelDisplay::EnumDisplay>("display");
        QTest::addColumn<bool>("wave");
        QTest::addColumn<int>("width");
        QTest::addColumn<double>("pixels");
        for (const double pixels : {5.0, 8.0, 13.0, 24.0, 40.0}) {
            for (const int width : {2, 8, 20}) {
                QTest::addRow("wave, %d wide, %g apart", width, pixels)
                    << ModelDisplay::NORMAL << true << width << pixels;
                QTest::addRow("phrasing, %d wide, %g apart", width, pixels)
                    << ModelDisplay::PHRASING << false << width << pixels;
                QTest::addRow("drumming, %d wide, %g apart", width, pixels)
                    << ModelDisplay::DRUMMING << false << width << pixels;
            }
        }
    }
    void theLeftEdgeCutsNoEndOff() {
        QFETCH(ModelDisplay::EnumDisplay, display);
        QFETCH(bool, wave);
        QFETCH(int, width);
        QFETCH(double, pixels);
        CurveLook look;
        look.display = display;
        look.options.curveOnSize = width;
        if (wave) {
            look.options.directSound = true;
            look.wavePairs.assign(2700, {-30.0, 30.0});
        } else {
            look.areas = AreaColors({{0.0, 100.0, red}, {150.0, 220.0, yellow}, {300.0, 340.0, red}});
        }
        CurvePointStore store;
        farApart(store, pixels);
        const Screen screen;
        const int withoutTail = 500; // which is laid over the rest
        for (int i = 0; i < 60; ++i) {
            const GraphScale scale = Screen::scaleAt(1.05 * Screen::span + i * Screen::span / 656.0, look);
            QCOMPARE(screen.fromScratch(store, scale, look).copy(0, 0, withoutTail, Screen::height),
                     Screen::chained(store, scale, look).copy(0, 0, withoutTail, Screen::height));
        }
    }

    void aMovedPictureIsThatOfADrawingFromScratch_data() { looks(); }
    void aMovedPictureIsThatOfADrawingFromScratch() {
        QFETCH(double, ratio);
        const CurveLook look = fetchLook();
        const Screen screen{ratio};
        CurvePointStore store;
        addPoints(store, 6000, pointStep, hand);
        CurveLayer layer;
        double cursor = 6000 * pointStep + 900.0;
        for (int frame = 0; frame < 12; ++frame) {
            addPoints(store, 37 + frame % 3, pointStep, hand);
            cursor += 3.0 * frameStep;
            QVERIFY2(same(layer, screen, store, cursor, look), qPrintable(QString::number(frame)));
        }
        QVERIFY(layer.redraws() <= 4); // one for each step between two device pixels

        // Each thing that was asked for is there.
        const GraphScale scale = Screen::scaleAt(cursor, look);
        const QImage picture = screen.fromScratch(store, scale, look);
        QVERIFY(picture != screen.empty(scale));
        CurveLook without = look;
        without.options.shini = ModelShini::Undefined;
        QCOMPARE(picture != screen.fromScratch(store, scale, without),
                 look.options.shini != ModelShini::Undefined);
        without = look;
        without.options.directSound = false;
        QCOMPARE(picture != screen.fromScratch(store, scale, without), look.options.directSound);
    }
    void thePictureIsThatOfTheSingleLines_data() { looks(); }
    void thePictureIsThatOfTheSingleLines() {
        QFETCH(double, ratio);
        const CurveLook look = fetchLook();
        const Screen screen{ratio};
        if (look.options.directSound != (look.options.shini == ModelShini::Middle)) {
            return; // the plain lines, and those with marks and wave, stand for the rest
        }
        CurvePointStore store;
        addPoints(store, 6000, pointStep, hand);
        for (const bool following : {true, false}) {
            const GraphScale scale = Screen::scaleAt(6000 * pointStep, look, following);
            // Only the smoothing at the edges differs.
            const PictureDifference difference =
                differenceOf(screen.fromScratch(store, scale, look), screen.direct(store, scale, look));
            QVERIFY2(difference.largest <= 120, qPrintable(QString::number(difference.largest)));
            QVERIFY2(difference.mean <= 0.5, qPrintable(QString::number(difference.mean)));
        }
    }
    void otherAreasRecolourWhatIsThere_data() {
        QTest::addColumn<ModelDisplay::EnumDisplay>("display");
        QTest::addColumn<double>("ratio");
        for (const double ratio : {1.0, 1.25}) {
            QTest::addRow("normal, %g", ratio) << ModelDisplay::NORMAL << ratio;
            QTest::addRow("phrasing, %g", ratio) << ModelDisplay::PHRASING << ratio;
            QTest::addRow("drumming, %g", ratio) << ModelDisplay::DRUMMING << ratio;
        }
    }
    void otherAreasRecolourWhatIsThere() {
        QFETCH(ModelDisplay::EnumDisplay, display);
        QFETCH(double, ratio);
        const Screen screen{ratio};
        CurvePointStore store;
        addPoints(store, 6000, pointStep, hand);
        CurveLayer layer;
        CurveLook look;
        look.display = display;
        const AreaColors turns[] = {gaps(), touchingApart(), AreaColors(), touchingAlike(), gaps()};
        double cursor = 6000 * pointStep;
        QImage before;
        for (const AreaColors& areas : turns) {
            look.areas = areas;
            const GraphScale scale = Screen::scaleAt(cursor, look);
            QVERIFY(screen.layered(layer, store, scale, look) != before);
            for (int frame = 0; frame < 6; ++frame) {
                addPoints(store, 12, pointStep, hand);
                cursor += frameStep;
                QVERIFY(same(layer, screen, store, cursor, look));
            }
            before = screen.fromScratch(store, Screen::scaleAt(cursor, look), look);
        }
    }
    void anAreaOfAnotherColourIsAnotherArea() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, hand);
        CurveLayer layer;
        CurveLook look;
        const double cursor = 6000 * pointStep;
        look.areas = AreaColors({{0.0, 180.0, red}});
        QVERIFY(same(layer, screen, store, cursor, look));
        look.areas = AreaColors({{0.0, 180.0, yellow}});
        QVERIFY(same(layer, screen, store, cursor, look));
        look.areas = AreaColors({{0.0, 181.0, yellow}});
        QVERIFY(same(layer, screen, store, cursor, look));
        QCOMPARE(layer.redraws(), 3U);
    }
    void anotherWaveRedrawsItsTicks() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, hand);
        CurveLayer layer;
        CurveLook look;
        look.options.directSound = true;
        const double cursor = 6000 * pointStep;
        look.wavePairs = someWave();
        QVERIFY(same(layer, screen, store, cursor, look));
        for (WavePair& pair : look.wavePairs) {
            pair = {-10.0, 10.0};
        }
        QVERIFY(same(layer, screen, store, cursor, look));
        look.wavePairs.clear();
        QVERIFY(same(layer, screen, store, cursor, look));
        QCOMPARE(layer.redraws(), 3U);
    }
    // The marks lie above the kept picture.
    void theReversedFaderTurnsTheMarksAndKeepsThePicture_data() {
        QTest::addColumn<ModelShini::EnumShini>("shini");
        QTest::addColumn<double>("ratio");
        for (const double ratio : {1.0, 1.25}) {
            QTest::addRow("arrows, %g", ratio) << ModelShini::Arrows << ratio;
            QTest::addRow("circles, %g", ratio) << ModelShini::Circles << ratio;
            QTest::addRow("middle, %g", ratio) << ModelShini::Middle << ratio;
        }
    }
    void theReversedFaderTurnsTheMarksAndKeepsThePicture() {
        QFETCH(ModelShini::EnumShini, shini);
        QFETCH(double, ratio);
        const Screen screen{ratio};
        for (const auto display : {ModelDisplay::NORMAL, ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
            CurvePointStore store;
            addPoints(store, 6000, pointStep, hand);
            CurveLayer layer;
            CurveLook look;
            look.display = display;
            look.areas = touchingApart();
            look.options.shini = shini;
            look.icons = &m_icons;
            double cursor = 6000 * pointStep;
            for (int frame = 0; frame < 12; ++frame) {
                addPoints(store, 12, pointStep, hand);
                cursor += frameStep;
                look.reverse = frame / 3 % 2 == 1;
                QVERIFY(same(layer, screen, store, cursor, look));
            }
            QVERIFY(layer.redraws() <= 4);
            const GraphScale scale = Screen::scaleAt(cursor, look);
            CurveLook turned = look;
            turned.reverse = !look.reverse;
            QCOMPARE(screen.fromScratch(store, scale, look) != screen.fromScratch(store, scale, turned),
                     shini != ModelShini::Middle); // full circles both ways
        }
    }
    void anotherDisplayIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, hand);
        CurveLayer layer;
        CurveLook look;
        look.areas = gaps();
        for (const auto display : {ModelDisplay::DRUMMING, ModelDisplay::PHRASING, ModelDisplay::NORMAL}) {
            look.display = display;
            QVERIFY(same(layer, screen, store, 6000 * pointStep, look));
        }
        QCOMPARE(layer.redraws(), 3U);
    }
    // Its last point lies where each picture draws anew what changes with its left edge.
    void aCurveThatLeavesAtTheLeftIsWholeToItsEnd() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, hand);
        for (const auto display : {ModelDisplay::NORMAL, ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
            CurveLayer layer;
            CurveLook look;
            look.display = display;
            look.areas = touchingApart();
            for (int pixels = 25; pixels > 0; --pixels) {
                const double shown = pixels * Screen::span / (Screen::width - 45);
                const double cursor = 6000 * pointStep - shown + 0.96 * Screen::span;
                QVERIFY(same(layer, screen, store, cursor, look));
                const GraphScale scale = Screen::scaleAt(cursor, look);
                QVERIFY(
                    differenceOf(screen.fromScratch(store, scale, look), screen.direct(store, scale, look))
                        .largest <= 120);
            }
        }
    }
    // A reference that starts above the live curve, with its marks.
    void aCurveFarOutsideThePlotIsGoneWithItsMarks() {
        CurvePointStore store;
        addPoints(store, 6000, pointStep, hand);
        CurveLook look;
        look.icons = &m_icons;
        const GraphScale scale = Screen::scaleAt(6000 * pointStep);
        for (const double ratio : {1.0, 1.25}) {
            const Screen screen{ratio};
            for (const auto shini : {ModelShini::Arrows, ModelShini::Circles, ModelShini::Middle}) {
                look.options.shini = shini;
                const QImage picture = screen.draw(scale, look, [&](const CurveScene& scene) {
                    CurveLayer layer;
                    layer.draw(scene, *Screen::extractAt(store, scene.scale), 1.8e19);
                });
                QCOMPARE(picture, screen.empty(scale));
            }
        }
    }
    void aDisplayWithoutALineShowsNothing() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, hand);
        CurveLook look;
        look.display = ModelDisplay::UNDEFINED;
        const GraphScale scale = Screen::scaleAt(6000 * pointStep);
        QCOMPARE(screen.fromScratch(store, scale, look), screen.empty(scale));
    }
    // Anything may change from picture to picture, and the hand does what it wants.
    void whateverHappensThePictureIsThatOfADrawingFromScratch_data() {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 40; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }
    void whateverHappensThePictureIsThatOfADrawingFromScratch() {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const auto chance = [&random](int of) { return random.bounded(of) == 0; };
        const ModelDisplay::EnumDisplay displays[] = {ModelDisplay::PHRASING, ModelDisplay::DRUMMING,
                                                      ModelDisplay::NORMAL};
        const double steps[] = {16.0, 64.0, 300.0, 1500.0};
        const double step = steps[random.bounded(4)];
        const Screen screen{chance(2) ? 1.0 : 1.25, QPointF(random.bounded(4), random.bounded(4))};
        double angle = random.bounded(360.0);
        double speed = 0.0;
        int sound = 1;
        const auto wild = [&](int, CurvePoint& p) {
            speed = chance(40) ? random.bounded(4.0) - 2.0 : speed;
            sound = chance(60) ? 1 - sound : sound;
            angle += speed;
            p.position = std::fmod(angle, 1000.0);
            turn(p, angle);
            p.soundOn = sound != 0;
            p.pitch = speed;
        };
        const auto randomAreas = [&] {
            std::vector<AreaColors::Area> areas;
            for (int i = random.bounded(6); i > 0; --i) {
                const double start = random.bounded(360.0);
                areas.push_back({start, start + random.bounded(120.0) - 10.0,
                                 chance(2)   ? red
                                 : chance(2) ? yellow
                                             : blue});
            }
            return AreaColors(std::move(areas));
        };
        CurvePointStore store;
        addPoints(store, 1 + int(random.bounded(400000.0) / step), step, wild);
        CurveLayer layer;
        CurveLook look;
        look.icons = &m_icons;
        look.display = displays[random.bounded(3)];
        look.areas = randomAreas();
        look.options.shini = ModelShini::EnumShini(random.bounded(4));
        look.options.curveNoSound = chance(2);
        double cursor = store.view().back().time;
        for (int frame = 0; frame < 40; ++frame) {
            const double forward = chance(10) ? -random.bounded(9000.0) : random.bounded(2000.0);
            cursor = std::max(0.0, cursor + forward);
            while (store.view().back().time < cursor - step) {
                addPoints(store, 1, step, wild);
            }
            if (chance(8)) {
                look.areas = randomAreas();
            }
            if (chance(15)) {
                look.wavePairs = look.wavePairs.empty() ? someWave() : std::vector<WavePair>();
                look.options.directSound = !chance(3);
            }
            if (chance(15)) {
                look.display = displays[random.bounded(3)];
            }
            if (chance(6)) {
                look.reverse = !look.reverse;
            }
            QVERIFY2(same(layer, screen, store, cursor, look), qPrintable(QString::number(frame)));
        }
    }
};

GRAMO_TEST_MAIN(TestCurveLayerDisplays)
#include "tst_curvelayer_displays.moc"
