// The sample of the deck's areas on the graph: its bars, the needles in it and the room that they take.
#include "gui/support/deckgraph.h"
#include "gui/support/phrasingwave.h"
#include "painter/qwpainterwav.h"
#include "painter/wavemarkers.h"
#include "phrasing/managephrasing.h"
#include "phrasing/wavphrasing.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QTest>

#include <cmath>
#include <cstdlib>
#include <tuple>

namespace {

constexpr double step = 64.0;
const QColor ground(43, 43, 43);
const QColor red(208, 0, 24);
const QColor teal(1, 194, 193);
const QSize size(1200, 500);

void giveWave(QWPainter& graph) {
    Singleton::instance().wavPhrasing()->setWav(graph.deckName(), halfLoudWave());
    graph.generateWavPhrasing();
}

void addAngle(CurvePointStore& store, double angle) {
    addPoints(store, 1, step, [angle](int, CurvePoint& p) {
        p.angle = angle;
        p.rawAngle = angle;
    });
}

QColor at(const QImage& image, double x, double y) {
    const double ratio = image.devicePixelRatio();
    return image.pixelColor(int(std::floor(x * ratio)), int(std::floor(y * ratio)));
}

bool near(const QColor& a, const QColor& b, int tolerance = 4) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

} // namespace

class TestQWPainterWave : public QObject {
    Q_OBJECT

    static void ratios() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("100 %") << 1.0;
        QTest::newRow("125 %") << 1.25;
    }

private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() {
        resetSharedState();
        training().setActivatedMode(ModelActivatedMode::Training);
        setting().setGraphLogo(false);
        setting().setGraphGrid(false);
        setting().setGraphVinylPosition(false);
        setting().setGraphDirectSound(false);
    }
    void cleanup() {
        for (const auto deck : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
            Singleton::instance().wavPhrasing()->setWav(deck, nullptr);
        }
    }

    void theNormalDisplayMakesRoomForTheBar() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        QCOMPARE(deck.graph.layoutPixels().bottomMargin, 40);
        giveWave(deck.graph);
        QCOMPARE(deck.graph.layoutPixels().bottomMargin, 120);
        for (const auto display : {ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
            mode().setDisplayMode(display);
            deck.graph.refreshVariable();
            QCOMPARE(deck.graph.layoutPixels().bottomMargin, 40);
        }
    }
    void theOtherDecksWaveChangesNothing() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        Singleton::instance().wavPhrasing()->setWav(ModelGraph::INPUT_DECKB, halfLoudWave());
        deck.graph.generateWavPhrasing();
        QCOMPARE(deck.graph.layoutPixels().bottomMargin, 40);
    }
    void theDirectWaveTakesRoomAboveThePlotWhereThereIsAWave() {
        setting().setGraphDirectSound(true);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        QCOMPARE(deck.graph.layoutPixels().plotTop, 35);
        giveWave(deck.graph);
        QCOMPARE(deck.graph.layoutPixels().plotTop, 135);
        QCOMPARE(deck.graph.layoutPixels().directWaveHeight, 100.0);
        setting().setGraphDirectSound(false);
        pictureOf(deck.graph); // the next paint lays out anew
        QCOMPARE(deck.graph.layoutPixels().plotTop, 35);
    }

    void theBarMovesUnderAStandingNeedle_data() { ratios(); }
    void theBarMovesUnderAStandingNeedle() {
        QFETCH(double, ratio);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        deck.setCursor(-1e6);
        giveWave(deck.graph);
        addAngle(deck.main, 0.0);
        const double strip = deck.graph.layoutPixels().stripWidth;
        const double needle = 45 + strip / 3.0;
        const auto loud = [&](const QImage& picture, double share) {
            return at(picture, 45 + share * strip, 405).red() > 150;
        };
        const QImage start = pictureOf(deck.graph, ratio);
        QVERIFY(near(at(start, needle + 3, 450), QColor(0, 255, 0)));
        QVERIFY(!loud(start, 0.30)); // at angle 0 the wave begins at the needle
        QVERIFY(loud(start, 0.36));
        QVERIFY(loud(start, 0.80));
        QVERIFY(!loud(start, 0.86));
        deck.main.clear();
        addAngle(deck.main, 90.0);
        const QImage quarter = pictureOf(deck.graph, ratio);
        QVERIFY(near(at(quarter, needle + 3, 450), QColor(0, 255, 0)));
        QVERIFY(!loud(quarter, 0.06));
        QVERIFY(loud(quarter, 0.10));
        QVERIFY(loud(quarter, 0.56));
        QVERIFY(!loud(quarter, 0.61));
    }
    void inDrummingTheWholeWaveStandsAtTheRight_data() { ratios(); }
    void inDrummingTheWholeWaveStandsAtTheRight() {
        QFETCH(double, ratio);
        mode().setDisplayMode(ModelDisplay::DRUMMING);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        deck.setCursor(-1e6);
        deck.graph.colorAreas()->setListPhrasing({area(0.0, 90.0, red)});
        giveWave(deck.graph);
        addAngle(deck.main, 300.0);
        addAngle(deck.secondary, 120.0);
        const QImage picture = pictureOf(deck.graph, ratio);
        const QRectF bar = waveSideBar(deck.graph.layoutPixels(), size.width());
        QVERIFY(near(at(picture, bar.left() + 4, 440), red, 12)); // an area's part in its colour
        QVERIFY(near(at(picture, bar.left() + 4, 330), QColor(175, 176, 177), 12));
        QVERIFY(near(at(picture, bar.left() + 4, 200), ground)); // the silent half
        QVERIFY(near(at(picture, bar.left() - 3, 440), ground));
        const double y = drummingMarker(deck.graph.layoutPixels(), bar, 300.0).center().y();
        QVERIFY(near(at(picture, bar.center().x(), y), QColor(0, 255, 0)));
        const double other = drummingMarker(deck.graph.layoutPixels(), bar, 120.0).center().y();
        const QColor reference = at(picture, bar.left() + 4, other);
        QVERIFY(reference.green() > reference.red() + 80); // lets the wave through
    }
    void inPhrasingTheNeedlesAreaStandsAtTheRight_data() { ratios(); }
    void inPhrasingTheNeedlesAreaStandsAtTheRight() {
        QFETCH(double, ratio);
        mode().setDisplayMode(ModelDisplay::PHRASING);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        deck.setCursor(-1e6);
        deck.graph.colorAreas()->setListPhrasing({area(0.0, 90.0, red), area(90.0, 270.0, teal)});
        giveWave(deck.graph);
        addAngle(deck.main, 300.0);
        const QRectF bar = waveSideBar(deck.graph.layoutPixels(), size.width());
        QCOMPARE(deck.graph.currentArea(), -1);
        QVERIFY(near(at(pictureOf(deck.graph, ratio), bar.left() + 4, 440), ground)); // never in an area
        deck.main.clear();
        addAngle(deck.main, 180.0);
        const QImage inside = pictureOf(deck.graph, ratio);
        QCOMPARE(deck.graph.currentArea(), 1);
        QVERIFY(near(at(inside, bar.left() + 4, 440), teal, 12)); // its first half is loud
        QVERIFY(near(at(inside, bar.left() + 4, 100), ground));
        const double y = phrasingMarker(deck.graph.layoutPixels(), bar, 180.0, 90.0, 180.0)->center().y();
        QVERIFY(near(at(inside, bar.center().x(), y), QColor(0, 255, 0)));
        deck.main.clear();
        addAngle(deck.main, 300.0); // out again: the bar stays and the needle goes
        const QImage outside = pictureOf(deck.graph, ratio);
        QCOMPARE(deck.graph.currentArea(), 1);
        QVERIFY(near(at(outside, bar.left() + 4, 440), teal, 12));
        QVERIFY(!near(at(outside, bar.center().x(), y), QColor(0, 255, 0)));
        deck.graph.initStart();
        QCOMPARE(deck.graph.currentArea(), -1);
    }
    void aLooperShowsNoNeedleOfTheReference() {
        mode().setDisplayMode(ModelDisplay::DRUMMING);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        deck.setCursor(-1e6);
        giveWave(deck.graph);
        addAngle(deck.main, 300.0);
        addAngle(deck.secondary, 220.0); // where the wave is silent
        const QRectF bar = waveSideBar(deck.graph.layoutPixels(), size.width());
        const double y = drummingMarker(deck.graph.layoutPixels(), bar, 220.0).center().y();
        QVERIFY(!near(at(pictureOf(deck.graph), bar.left() + 4, y), ground));
        training().setActivatedMode(ModelActivatedMode::Looper);
        QVERIFY(near(at(pictureOf(deck.graph), bar.left() + 4, y), ground));
    }
    void whileARunIsOnTheNeedleIsWhereTheRecordIs() {
        mode().setDisplayMode(ModelDisplay::DRUMMING);
        training().setActivatedMode(ModelActivatedMode::Looper);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        giveWave(deck.graph);
        addAngle(deck.main, 220.0);
        addAngle(deck.main, 330.0);
        deck.setCursor(1.5 * step);
        const QRectF bar = waveSideBar(deck.graph.layoutPixels(), size.width());
        const auto shows = [&](double angle) {
            const double y = drummingMarker(deck.graph.layoutPixels(), bar, angle).center().y();
            return near(at(pictureOf(deck.graph), bar.center().x(), y), QColor(0, 255, 0));
        };
        QVERIFY(shows(220.0) && !shows(330.0));
        mode().modeRun_on();
        QVERIFY(shows(330.0) && !shows(220.0));
    }
    // Where the two meet: the outline of the lower one doesn't show on the upper one.
    void theLiveNeedleLiesOverTheReferences_data() {
        QTest::addColumn<ModelDisplay::EnumDisplay>("display");
        QTest::newRow("phrasing") << ModelDisplay::PHRASING;
        QTest::newRow("drumming") << ModelDisplay::DRUMMING;
    }
    void theLiveNeedleLiesOverTheReferences() {
        QFETCH(ModelDisplay::EnumDisplay, display);
        mode().setDisplayMode(display);
        for (const auto name : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
            DeckGraph deck(name, size);
            deck.setCursor(-1e6);
            deck.graph.colorAreas()->setListPhrasing({area(0.0, 360.0, red)});
            giveWave(deck.graph);
            const double perPixel = 360.0 / deck.graph.layoutPixels().plotHeight;
            addAngle(deck.main, 200.0 * perPixel);
            addAngle(deck.secondary, 203.0 * perPixel); // three pixels higher
            const QImage picture = pictureOf(deck.graph);
            const QRectF bar = waveSideBar(deck.graph.layoutPixels(), size.width());
            const int top = 457 - 200; // of the live one, six pixels high
            const QColor color = name == ModelGraph::INPUT_DECKA ? QColor(0, 255, 0) : QColor(0, 255, 255);
            for (int y = top + 1; y <= top + 4; ++y) {
                QCOMPARE(picture.pixelColor(int(bar.center().x()), y), color);
            }
            QVERIFY(picture.pixelColor(int(bar.center().x()), top - 2) !=
                    color); // the other one lets through
            QVERIFY(picture.pixelColor(int(bar.center().x()), top - 2).green() > 120);
        }
    }
    // A run moves the live needle to the record's place; the reference is where the cursor is.
    void whileARunIsOnTheReferencesNeedleStaysAtTheCursor_data() {
        theLiveNeedleLiesOverTheReferences_data();
    }
    void whileARunIsOnTheReferencesNeedleStaysAtTheCursor() {
        QFETCH(ModelDisplay::EnumDisplay, display);
        mode().setDisplayMode(display);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        deck.graph.colorAreas()->setListPhrasing({area(0.0, 360.0, red)});
        giveWave(deck.graph);
        for (const double angle : {220.0, 330.0}) {
            addAngle(deck.secondary, angle); // where the wave is silent
        }
        for (const double angle : {20.0, 300.0}) {
            addAngle(deck.main, angle);
        }
        deck.setCursor(1.5 * step);
        const QRectF bar = waveSideBar(deck.graph.layoutPixels(), size.width());
        const auto green = [&](double angle) {
            const double y = drummingMarker(deck.graph.layoutPixels(), bar, angle).center().y();
            return at(pictureOf(deck.graph), bar.center().x(), y).green();
        };
        QVERIFY(green(220.0) > 120 && green(330.0) < 60 && green(20.0) == 255 && green(300.0) < 60);
        mode().modeRun_on();
        QVERIFY(green(220.0) > 120 && green(330.0) < 60 && green(20.0) < 60 && green(300.0) == 255);
    }
    void whileARunIsOnTheBarShowsTheAreaOfTheRecord() {
        mode().setDisplayMode(ModelDisplay::PHRASING);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        deck.graph.colorAreas()->setListPhrasing({area(0.0, 90.0, red), area(90.0, 270.0, teal)});
        giveWave(deck.graph);
        addAngle(deck.main, 45.0);
        addAngle(deck.main, 180.0);
        deck.setCursor(1.5 * step);
        const QRectF bar = waveSideBar(deck.graph.layoutPixels(), size.width());
        QVERIFY(near(at(pictureOf(deck.graph), bar.left() + 4, 440), red, 30));
        mode().modeRun_on();
        QVERIFY(near(at(pictureOf(deck.graph), bar.left() + 4, 440), teal, 30));
    }
    void theNeedleOfTheLevelBarIsTheDecks() {
        DeckGraph deck(ModelGraph::INPUT_DECKB, size);
        giveWave(deck.graph);
        addAngle(deck.main, 0.0);
        addAngle(deck.main, 180.0);
        addAngle(deck.secondary, 90.0);
        deck.setCursor(1.5 * step);
        const double strip = deck.graph.layoutPixels().stripWidth;
        const auto loud = [&](double share) {
            return at(pictureOf(deck.graph), 45 + share * strip, 405).red() > 150;
        };
        QVERIFY(near(at(pictureOf(deck.graph), 45 + strip / 3.0 + 3, 450), QColor(0, 255, 255)));
        QVERIFY(!loud(0.30) && loud(0.36) && loud(0.80)); // the wave starts at the needle
        mode().modeRun_on();
        QVERIFY(loud(0.30) && !loud(0.36) && !loud(0.80)); // its second half does
    }
    // First the wave above the plot gives way, then the bar below it.
    void aLowGraphHasNoRoomForTheWave() {
        setting().setGraphDirectSound(true);
        for (const auto& [height, bar, direct] :
             {std::tuple(315, true, true), {314, true, false}, {215, true, false}, {214, false, false}}) {
            DeckGraph deck(ModelGraph::INPUT_DECKA, {900, height});
            deck.setCursor(-1e6);
            giveWave(deck.graph);
            QCOMPARE(deck.graph.layoutPixels().hasWaveBar(), bar);
            QCOMPARE(deck.graph.layoutPixels().hasDirectWave(), direct);
            addAngle(deck.main, 0.0);
            const QImage picture = pictureOf(deck.graph);
            int wave = 0;
            for (int x = 50; x < 850; ++x) {
                wave += near(picture.pixelColor(x, height - 5), ground) ? 0 : 1;
            }
            QCOMPARE(wave > 300, bar);
            QCOMPARE(wave == 0, !bar);
        }
    }
    void anEditedAreaIsDrawnAnewInTheBar() {
        mode().setDisplayMode(ModelDisplay::DRUMMING);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        deck.setCursor(-1e6);
        deck.graph.colorAreas()->setListPhrasing({area(0.0, 90.0, red)});
        giveWave(deck.graph);
        const QRectF bar = waveSideBar(deck.graph.layoutPixels(), size.width());
        QVERIFY(near(at(pictureOf(deck.graph), bar.left() + 4, 440), red, 12));
        deck.graph.colorAreas()->initAreas();
        QVERIFY(deck.graph.wavePainter()->segments().empty());
        QTRY_VERIFY(near(at(pictureOf(deck.graph), bar.left() + 4, 440), QColor(175, 176, 177), 12));
    }
    void anAreaThatTheOtherDeckMovesMovesHereToo() {
        mode().setDisplayMode(ModelDisplay::DRUMMING);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        deck.setCursor(-1e6);
        const QPhrasingPtr shared = area(0.0, 90.0, red);
        deck.graph.colorAreas()->setListPhrasing({shared});
        giveWave(deck.graph);
        const QRectF bar = waveSideBar(deck.graph.layoutPixels(), size.width());
        QVERIFY(near(at(pictureOf(deck.graph), bar.left() + 4, 440), red, 12));
        shared->setColor(teal);
        deck.graph.refresh();
        QTRY_VERIFY(near(at(pictureOf(deck.graph), bar.left() + 4, 440), teal, 12));
    }
    // A file may name more areas than have their pictures at hand.
    void aLateAreasPictureIsDrawnBetweenThePulsesAndNotInAPaint() {
        mode().setDisplayMode(ModelDisplay::PHRASING);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        deck.setCursor(-1e6);
        QPhrasingList areas;
        for (int i = 0; i < 90; ++i) {
            areas << area(i * 4.0, i * 4.0 + 4.0, red);
        }
        deck.graph.colorAreas()->setListPhrasing(areas);
        giveWave(deck.graph);
        constexpr int late = 70;
        addAngle(deck.main, late * 4.0 + 2.0);
        const QWPainterWav& pictures = *deck.graph.wavePainter();
        for (int paint = 0; paint < 5; ++paint) {
            pictureOf(deck.graph);
            QCOMPARE(deck.graph.currentArea(), late);
            QVERIFY(pictures.areaWaveImage(late).isNull());
        }
        deck.graph.refresh();
        QTRY_VERIFY(!pictures.areaWaveImage(late).isNull());
        const qint64 drawn = pictures.areaWaveImage(late).cacheKey();
        pictureOf(deck.graph);
        deck.graph.refresh();
        QTest::qWait(20);
        QCOMPARE(pictures.areaWaveImage(late).cacheKey(), drawn);
    }
    void withoutAPulseThePicturesCanBeFinished() {
        mode().setDisplayMode(ModelDisplay::PHRASING);
        DeckGraph deck(ModelGraph::INPUT_DECKA, size);
        deck.setCursor(-1e6);
        QPhrasingList areas;
        for (int i = 0; i < 90; ++i) {
            areas << area(i * 4.0, i * 4.0 + 4.0, red);
        }
        deck.graph.colorAreas()->setListPhrasing(areas);
        giveWave(deck.graph);
        addAngle(deck.main, 302.0);
        deck.graph.finishWavePictures();
        QVERIFY(!deck.graph.wavePainter()->areaWaveImage(75).isNull());
    }
};

GRAMO_TEST_MAIN(TestQWPainterWave)
#include "tst_qwpainter_wave.moc"
