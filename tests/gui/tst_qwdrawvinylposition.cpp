// The disc as pixels, and which point it shows.
#include "painter/qwdrawvinylposition.h"

#include "gui/support/deckgraph.h"
#include "painter/graphstyle.h"
#include "phrasing/managephrasing.h"
#include "support/testmain.h"

#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <numbers>

namespace {

constexpr double step = 64.0;
const QColor ground(43, 43, 43);
const QColor red(208, 0, 24);
const QColor teal(1, 194, 193);
const QColor green(0, 255, 0);
const QColor cyan(0, 255, 255);

QPhrasingPtr area(double from, double to, const QColor& color, const QString& label = {}) {
    return std::make_shared<QPhrasing>(label, color, from, to);
}

void addAngle(CurvePointStore& store, double angle, bool soundOn = true) {
    addPoints(store, 1, step, [&](int, CurvePoint& point) {
        point.angle = angle;
        point.soundOn = soundOn ? 1 : 0;
    });
}

struct Disc {
    explicit Disc(ModelGraph::EnumGraph deck = ModelGraph::INPUT_DECKA)
        : mainCurve(deck, main)
        , secondaryCurve(deck == ModelGraph::INPUT_DECKA ? ModelGraph::INPUT_1 : ModelGraph::INPUT_2,
                         secondary) {}

    QImage draw(double time = 0.0, bool rotate = false, double ratio = 1.0, QPointF corner = {},
                double plotBottom = 320.0) {
        QImage image((QSizeF(640, 320) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(ground);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.translate(corner);
        const QTransform before = painter.transform();
        disc.draw(painter, time, rotate, plotBottom, names);
        stateKept = painter.transform() == before && painter.testRenderHint(QPainter::Antialiasing);
        return image;
    }

    CurvePointStore main;
    CurvePointStore secondary;
    QCurve mainCurve;
    QCurve secondaryCurve;
    ManagePhrasing areas{ModelGraph::INPUT_DECKA};
    QWDrawVinylPosition disc{&mainCurve, &secondaryCurve, &areas, nullptr};
    LabelCache names;
    bool stateKept = false;
};

/// A place on the disc; clockwise from the top.
QColor at(const QImage& image, double degrees, double radius, QPointF corner = {}) {
    const double angle = degrees * std::numbers::pi / 180.0;
    const double ratio = image.devicePixelRatio();
    return image.pixelColor(int(std::floor((corner.x() + 125.0 + radius * std::sin(angle)) * ratio)),
                            int(std::floor((corner.y() + 125.0 - radius * std::cos(angle)) * ratio)));
}

bool near(const QColor& a, const QColor& b, int tolerance = 3) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

QColor over(const QColor& top, const QColor& below) {
    const double alpha = top.alphaF();
    const auto mix = [&](int a, int b) { return int(std::lround(a * alpha + b * (1.0 - alpha))); };
    return QColor(mix(top.red(), below.red()), mix(top.green(), below.green()),
                  mix(top.blue(), below.blue()));
}

int inkOf(const QImage& image, const QRect& where, const QColor& color) {
    int count = 0;
    for (int y = where.top(); y <= where.bottom(); ++y) {
        for (int x = where.left(); x <= where.right(); ++x) {
            count += near(image.pixelColor(x, y), color, 10) ? 1 : 0;
        }
    }
    return count;
}

int inkOf(const QImage& image, const QRect& where) {
    return where.width() * where.height() - inkOf(image, where, ground);
}

const QRect mainName(45, 234, 580, 25);
const QRect secondaryName(45, 262, 580, 40);

} // namespace

class TestQWDrawVinylPosition : public QObject {
    Q_OBJECT

    static void ratios() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("100 %") << 1.0;
        QTest::newRow("125 %") << 1.25;
        QTest::newRow("150 %") << 1.5;
        QTest::newRow("200 %") << 2.0;
    }

private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() {
        resetSharedState();
        training().setActivatedMode(ModelActivatedMode::Training);
    }

    void itNeverShowsByItself() {
        QWidget graph;
        Disc parts;
        const QWDrawVinylPosition disc(&parts.mainCurve, &parts.secondaryCurve, &parts.areas, &graph);
        graph.show();
        QVERIFY(!disc.isVisible());
    }

    void slicesRunClockwiseFromTheTop_data() { ratios(); }
    void slicesRunClockwiseFromTheTop() {
        QFETCH(double, ratio);
        for (const QPointF corner : {QPointF(0, 0), QPointF(3, 1)}) {
            Disc disc;
            disc.areas.setListPhrasing({area(0.0, 90.0, red), area(180.0, 270.0, teal)});
            addAngle(disc.main, 300.0);
            addAngle(disc.secondary, 300.0);
            const QImage image = disc.draw(0.0, false, ratio, corner);
            QVERIFY(disc.stateKept);
            for (const double radius : {30.0, 60.0, 90.0}) {
                for (const double angle : {5.0, 45.0, 85.0}) {
                    QCOMPARE(at(image, angle, radius, corner), red);
                    QCOMPARE(at(image, 180.0 + angle, radius, corner), teal);
                    QCOMPARE(at(image, 90.0 + angle, radius, corner), graphGrey);
                }
            }
            // Within a degree and a half, at the rim, lies the next colour.
            QVERIFY(near(at(image, 88.5, 90.0, corner), red));
            QVERIFY(near(at(image, 92.0, 90.0, corner), graphGrey));
        }
    }
    void withoutAreasTheDiscIsTheGround() {
        Disc disc;
        addAngle(disc.main, 300.0);
        addAngle(disc.secondary, 300.0);
        const QImage image = disc.draw();
        QCOMPARE(at(image, 45.0, 60.0), ground);
        QCOMPARE(at(image, 200.0, 80.0), ground);
        QCOMPARE(at(image, 0.0, 60.0), QColor(Qt::black)); // the mark at 0 degrees
    }
    void hubAndRim() {
        Disc disc;
        addAngle(disc.main, 0.0);
        const QImage image = disc.draw();
        for (const double angle : {20.0, 110.0, 200.0, 290.0}) {
            QCOMPARE(at(image, angle, 0.0), graphGrey);
            QCOMPARE(at(image, angle, 13.0), graphGrey);
            QCOMPARE(at(image, angle, 94.0), graphGrey);
            QCOMPARE(at(image, angle, 105.0), graphGrey);
            QCOMPARE(at(image, angle, 109.0), ground);
        }
        QCOMPARE(at(image, 110.0, 88.0), ground);
        for (const double angle : {90.0, 180.0, 270.0}) {
            QVERIFY(near(at(image, angle, 100.0), Qt::black));
        }
        for (const double angle : {45.0, 135.0, 225.0, 315.0}) { // thin
            const QRect tick(QPoint(int(125 + 100 * std::sin(angle * 0.017453) - 3),
                                    int(125 - 100 * std::cos(angle * 0.017453) - 3)),
                             QSize(6, 6));
            int darkest = 255;
            for (int y = tick.top(); y <= tick.bottom(); ++y) {
                for (int x = tick.left(); x <= tick.right(); ++x) {
                    darkest = std::min(darkest, qRed(image.pixel(x, y)));
                }
            }
            QVERIFY(darkest < 120);
        }
    }
    void theUpperTickStandsInTheMiddle() {
        Disc disc;
        addAngle(disc.main, 90.0);
        const QImage image = disc.draw();
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(image.pixel(125 + i, 25), image.pixel(124 - i, 25));
        }
    }

    void theNeedleStandsAtTheAngle_data() { ratios(); }
    void theNeedleStandsAtTheAngle() {
        QFETCH(double, ratio);
        for (const double angle : {0.0, 37.0, 90.0, 211.5, 359.0}) {
            Disc disc;
            training().setActivatedMode(ModelActivatedMode::Looper);
            addAngle(disc.main, angle);
            const QImage image = disc.draw(0.0, false, ratio);
            for (const double radius : {25.0, 60.0, 90.0}) {
                QVERIFY(near(at(image, angle, radius), green));
                // 28 pixels across.
                const double edge = std::atan2(14.0, radius) * 180.0 / std::numbers::pi;
                const double pixel = 180.0 / std::numbers::pi / radius;
                QVERIFY(near(at(image, angle + edge - 2.5 * pixel, std::hypot(radius, 14.0)), green));
                QVERIFY(!near(at(image, angle + edge + 2.5 * pixel, std::hypot(radius, 14.0)), green, 60));
                QVERIFY(near(at(image, angle - edge + 2.5 * pixel, std::hypot(radius, 14.0)), green));
                QVERIFY(!near(at(image, angle - edge - 2.5 * pixel, std::hypot(radius, 14.0)), green, 60));
            }
            QVERIFY(near(at(image, angle, 100.0), green)); // the head lies over the rim
            QVERIFY(near(at(image, angle, 105.0), green, 40));
            QVERIFY(!near(at(image, angle, 111.0), green, 60));
            QVERIFY(near(at(image, angle, 5.0), graphGrey)); // and the hub over the bar
        }
    }
    void theRimLiesOverTheBarAndUnderTheHead() {
        Disc disc;
        training().setActivatedMode(ModelActivatedMode::Looper);
        addAngle(disc.main, 0.0, false); // no head
        const QImage image = disc.draw();
        QVERIFY(near(at(image, 3.0, 96.0), graphGrey));
        QVERIFY(near(at(image, 0.0, 80.0), green));
    }
    void theDecksHaveTheirColours() {
        Disc disc(ModelGraph::INPUT_DECKB);
        addAngle(disc.main, 60.0);
        addAngle(disc.secondary, 200.0);
        const QImage image = disc.draw();
        QVERIFY(near(at(image, 60.0, 60.0), cyan));
        QVERIFY(near(at(image, 60.0, 100.0), cyan));
        QVERIFY(near(at(image, 200.0, 60.0), over(QColor(0, 255, 255, 150), ground)));
        QVERIFY(near(at(image, 200.0, 100.0), over(QColor(0, 255, 255, 100), graphGrey)));
    }
    void theReferencesNeedleLetsTheDiscThrough() {
        Disc disc;
        disc.areas.setListPhrasing({area(180.0, 270.0, red)});
        addAngle(disc.main, 60.0);
        addAngle(disc.secondary, 225.0);
        const QImage image = disc.draw();
        QVERIFY(near(at(image, 225.0, 60.0), over(QColor(0, 255, 0, 150), red)));
        QVERIFY(near(at(image, 225.0, 100.0), over(QColor(0, 255, 0, 100), graphGrey)));
    }
    void theMainNeedleLiesOnTop() {
        Disc disc;
        addAngle(disc.main, 90.0);
        addAngle(disc.secondary, 90.0);
        QVERIFY(near(at(disc.draw(), 90.0, 60.0), green));
    }
    // Where the two needles cross, the reference's outline doesn't show on the live one.
    void nothingOfTheReferenceShowsOnTheMainNeedle() {
        for (const double apart : {3.0, 8.0, -5.0}) {
            Disc disc;
            addAngle(disc.main, 90.0);
            addAngle(disc.secondary, 90.0 + apart);
            const QImage both = disc.draw();
            training().setActivatedMode(ModelActivatedMode::Looper);
            const QImage alone = disc.draw();
            training().setActivatedMode(ModelActivatedMode::Training);
            int bar = 0;
            int head = 0;
            for (int y = 100; y < 150; ++y) {
                for (int x = 140; x < 234; ++x) {
                    if (alone.pixelColor(x, y) == green) {
                        QCOMPARE(both.pixelColor(x, y), green);
                        ++(x < 215 ? bar : head);
                    }
                }
            }
            QVERIFY(bar > 1000 && head > 80);
        }
    }
    void aReferenceWithoutSoundHasNoName() {
        Disc disc;
        disc.areas.setListPhrasing({area(0.0, 90.0, red, QStringLiteral("aaah"))});
        addAngle(disc.main, 45.0);
        addAngle(disc.secondary, 45.0, false);
        const QImage image = disc.draw();
        QVERIFY(inkOf(image, mainName) > 0);
        QCOMPARE(inkOf(image, secondaryName), 0);
    }
    void namesStandBelowTheDiscOrBesideItButNeverBelowThePlot() {
        for (const double bottom : {560.0, 290.0}) {
            QCOMPARE(areaNamePlace(false, bottom).topLeft(), QPoint(45, 230));
            QCOMPARE(areaNamePlace(true, bottom).topLeft(), QPoint(45, 260));
        }
        for (const double bottom : {289.5, 230.0, 110.0}) {
            const QRect main = areaNamePlace(false, bottom);
            const QRect reference = areaNamePlace(true, bottom);
            QVERIFY(main.left() > 234 && reference.left() > 234);
            QVERIFY(reference.top() + 30 <= bottom);
            QCOMPARE(main.top() + 30, reference.top());
        }
    }
    void onALowGraphTheNamesKeepOffItsAxis() {
        for (const double bottom : {230.0, 270.0}) {
            Disc disc;
            training().setActivatedMode(ModelActivatedMode::Training);
            disc.areas.setListPhrasing({area(0.0, 180.0, red, QStringLiteral("Qgjy")),
                                        area(180.0, 360.0, teal, QStringLiteral("Qgjy"))});
            addAngle(disc.main, 90.0);
            addAngle(disc.secondary, 270.0);
            const QImage image = disc.draw(0.0, false, 1.0, {}, bottom);
            const int above = int(bottom);
            QCOMPARE(inkOf(image, QRect(240, above - 1, 400, 320 - above)), 0);
            QVERIFY(inkOf(image, QRect(240, above - 60, 390, 30)) > 50);
            QVERIFY(inkOf(image, QRect(240, above - 30, 390, 28)) > 50);
        }
    }
    void theReferencesHeadStaysWithoutSound() {
        Disc disc;
        addAngle(disc.main, 60.0, false);
        addAngle(disc.secondary, 200.0, false);
        const QImage image = disc.draw();
        QVERIFY(near(at(image, 200.0, 100.0), over(QColor(0, 255, 0, 100), graphGrey)));
        QVERIFY(near(at(image, 60.0, 100.0), graphGrey));
    }
    void aLooperHasNoReference() {
        training().setActivatedMode(ModelActivatedMode::Looper);
        Disc disc;
        disc.areas.setListPhrasing({area(0.0, 360.0, ground, QStringLiteral("name"))});
        addAngle(disc.main, 60.0, false);
        addAngle(disc.secondary, 200.0);
        const QImage image = disc.draw();
        QCOMPARE(at(image, 200.0, 60.0), ground);
        QCOMPARE(at(image, 200.0, 100.0), graphGrey);
        QCOMPARE(inkOf(image, secondaryName), 0);
    }

    void turningTheSlicesLeavesTheMainNeedleAtTheTop_data() { ratios(); }
    void turningTheSlicesLeavesTheMainNeedleAtTheTop() {
        QFETCH(double, ratio);
        for (const double angle : {0.0, 1.0, 33.3, 90.0, 200.0, 359.9}) {
            Disc disc;
            disc.areas.setListPhrasing({area(0.0, 90.0, red), area(90.0, 180.0, teal)});
            addAngle(disc.main, angle);
            addAngle(disc.secondary, 250.0);
            const QImage image = disc.draw(0.0, true, ratio);
            QVERIFY(near(at(image, 0.0, 60.0), green));
            QVERIFY(near(at(image, 0.0, 100.0), green));
            const QColor reference = at(image, 250.0, 100.0); // turns by its own angle
            QVERIFY(near(reference, over(QColor(0, 255, 0, 100), graphGrey)));
            // What stands at 45 degrees of the screen lies that far beyond the needle on the record.
            for (const double place : {30.0, 100.0, 150.0, 190.0, 330.0}) {
                const double onRecord = std::fmod(place + angle, 360.0);
                const QColor expected = onRecord < 90.0 ? red : onRecord < 180.0 ? teal : graphGrey;
                const double border = std::fmod(onRecord, 90.0);
                if (border > 4.0 && border < 86.0) {
                    QVERIFY(near(at(image, place, 85.0), expected));
                }
            }
        }
    }
    void theSlicesTurnAboutTheirMiddle() {
        for (double angle = 0.0; angle < 360.0; angle += 15.0) {
            Disc disc;
            disc.areas.setListPhrasing({area(0.0, 360.0, red)});
            addAngle(disc.main, angle);
            const QImage image = disc.draw(0.0, true);
            for (const double place : {100.0, 160.0, 215.0, 280.0}) {
                QCOMPARE(at(image, place, 109.0), ground); // nothing looks out beyond the rim
                const QColor inside = at(image, place, 90.0);
                QVERIFY(near(inside, red) || inside.red() < 150); // but for the lines
            }
        }
    }
    void theDiscIsBuiltForItsAreasAndItsScreenAlone() {
        Disc disc;
        for (int i = 0; i < 20; ++i) {
            addAngle(disc.main, i * 10.0);
            disc.draw(i * step, true);
        }
        QCOMPARE(disc.disc.discsBuilt(), 1U);
        disc.draw(0.0, false, 1.25);
        QCOMPARE(disc.disc.discsBuilt(), 2U);
        disc.areas.setListPhrasing({area(0.0, 90.0, red)});
        disc.draw(0.0, false, 1.25);
        QCOMPARE(disc.disc.discsBuilt(), 3U);
        disc.draw(0.0, false, 1.25);
        QCOMPARE(disc.disc.discsBuilt(), 3U);
    }
    void anAreaThatIsEditedElsewhereIsSeen() {
        Disc disc;
        addAngle(disc.main, 300.0);
        const QPhrasingPtr shared = area(0.0, 90.0, red);
        disc.areas.setListPhrasing({shared});
        QVERIFY(near(at(disc.draw(), 45.0, 60.0), red));
        shared->setColor(teal); // by the other deck, whose list holds it too
        QVERIFY(near(at(disc.draw(), 45.0, 60.0), teal));
    }
    void thePictureIsBuiltOnlyWhenSomethingMoves() {
        Disc disc;
        addAngle(disc.main, 10.0);
        addAngle(disc.secondary, 30.0);
        for (int i = 0; i < 5; ++i) {
            disc.draw(0.0, true);
        }
        QCOMPARE(disc.disc.picturesBuilt(), 1U);
        disc.draw(0.0, false);
        QCOMPARE(disc.disc.picturesBuilt(), 2U);
        training().setActivatedMode(ModelActivatedMode::Looper);
        disc.draw(0.0, false);
        QCOMPARE(disc.disc.picturesBuilt(), 3U);
    }
    // Only the needles' surroundings are drawn anew from picture to picture.
    void anyMoveGivesThePictureOfANewDisc_data() { ratios(); }
    void anyMoveGivesThePictureOfANewDisc() {
        QFETCH(double, ratio);
        training().setActivatedMode(ModelActivatedMode::Training);
        QRandomGenerator random(5);
        Disc moved;
        for (int i = 0; i < 40; ++i) {
            const double mainAngle = random.bounded(360.0);
            const double secondaryAngle = random.bounded(4) == 0 ? 0.0 : random.bounded(360.0);
            const bool soundOn = random.bounded(3) != 0;
            const bool rotate = random.bounded(5) == 0;
            QPhrasingList areas;
            if (random.bounded(3) != 0) {
                areas.append(area(40.0, 40.0 + 100.0 * (1 + random.bounded(2)), red));
            }
            training().setActivatedMode(random.bounded(6) == 0 ? ModelActivatedMode::Looper
                                                               : ModelActivatedMode::Training);
            Disc fresh;
            for (Disc* disc : {&moved, &fresh}) {
                disc->areas.setListPhrasing(areas);
                disc->main.clear();
                disc->secondary.clear();
                addAngle(disc->main, mainAngle, soundOn);
                addAngle(disc->secondary, secondaryAngle);
            }
            QCOMPARE(moved.draw(step, rotate, ratio), fresh.draw(step, rotate, ratio));
        }
    }
    void anEditOfTheAreasShowsAtOnce() {
        Disc disc;
        disc.areas.setListPhrasing({area(0.0, 180.0, red)});
        addAngle(disc.main, 300.0);
        addAngle(disc.secondary, 300.0);
        QCOMPARE(at(disc.draw(), 45.0, 60.0), red);
        disc.areas.initAreas();
        QCOMPARE(at(disc.draw(), 45.0, 60.0), ground);
    }
    void anAreaWithoutSizeIsNoSlice() {
        Disc disc;
        disc.areas.setListPhrasing({area(45.0, 45.0, red)});
        addAngle(disc.main, 300.0);
        addAngle(disc.secondary, 300.0);
        const QImage image = disc.draw();
        QCOMPARE(inkOf(image, QRect(0, 0, 250, 250), red), 0);
        QCOMPARE(at(image, 45.0, 60.0), graphGrey);
    }
    void aFullTurnIsOneSlice() {
        Disc disc;
        disc.areas.setListPhrasing({area(0.0, 360.0, red)});
        addAngle(disc.main, 300.0);
        addAngle(disc.secondary, 300.0);
        const QImage image = disc.draw();
        for (const double angle : {10.0, 100.0, 190.0, 260.0}) {
            QCOMPARE(at(image, angle, 60.0), red);
        }
    }

    void emptyCurvesStandAtZeroAndSound() {
        Disc disc;
        disc.areas.setListPhrasing({area(10.0, 90.0, red, QStringLiteral("name"))});
        const QImage image = disc.draw(5000.0);
        QVERIFY(near(at(image, 0.0, 60.0), green));
        QVERIFY(near(at(image, 0.0, 100.0), green)); // the head of a needle that sounds
        QCOMPARE(inkOf(image, mainName), 0);
        QCOMPARE(inkOf(image, secondaryName), 0);
    }
    void emptyCurvesNameAnAreaThatStartsAtZero() {
        Disc disc;
        disc.areas.setListPhrasing({area(0.0, 90.0, red, QStringLiteral("name"))});
        const QImage image = disc.draw(5000.0);
        QVERIFY(inkOf(image, mainName, red) > 20);
        QVERIFY(inkOf(image, secondaryName, QColor(208, 50, 74)) > 20); // 208 is bright enough already
    }
    void whileARunIsOnTheLastPointCounts() {
        Disc disc;
        training().setActivatedMode(ModelActivatedMode::Looper);
        addAngle(disc.main, 0.0);
        addAngle(disc.main, 90.0);
        addAngle(disc.main, 180.0);
        QVERIFY(near(at(disc.draw(2.5 * step), 90.0, 60.0), green));
        mode().modeRun_on();
        QVERIFY(near(at(disc.draw(2.5 * step), 180.0, 60.0), green));
    }
    void theReferenceStandsWhereTheCursorIs() {
        Disc disc;
        addAngle(disc.main, 300.0);
        addAngle(disc.secondary, 0.0);
        addAngle(disc.secondary, 90.0);
        addAngle(disc.secondary, 180.0);
        mode().modeRun_on();
        const QColor bar = over(QColor(0, 255, 0, 150), ground);
        // Beside the dotted line that shines through the bar.
        QVERIFY(near(at(disc.draw(2.5 * step), 86.0, 60.0), bar));
        QVERIFY(near(at(disc.draw(99.0 * step), 176.0, 60.0), bar));
    }

    void theNamesOfTheAreasStandBelow() {
        Disc disc;
        disc.areas.setListPhrasing(
            {area(0.0, 90.0, red, QStringLiteral("aaah")), area(90.0, 180.0, teal, QStringLiteral("fresh"))});
        addAngle(disc.main, 45.0);
        addAngle(disc.secondary, 100.0);
        const QImage image = disc.draw();
        QVERIFY(inkOf(image, mainName, red) > 50);
        QVERIFY(inkOf(image, secondaryName, QColor(51, 244, 243)) > 50); // 50 lighter, a reference's
    }
    void noNameWithoutSoundOrOutsideAllAreas() {
        Disc disc;
        disc.areas.setListPhrasing({area(0.0, 90.0, red, QStringLiteral("aaah"))});
        addAngle(disc.main, 45.0, false);
        addAngle(disc.secondary, 90.0); // where the area has just ended
        const QImage image = disc.draw();
        QCOMPARE(inkOf(image, mainName), 0);
        QCOMPARE(inkOf(image, secondaryName), 0);
    }
    void anAreaWithoutANameIsNoTrouble() {
        Disc disc;
        disc.areas.setListPhrasing({area(0.0, 90.0, red)});
        addAngle(disc.main, 45.0);
        QCOMPARE(inkOf(disc.draw(), mainName), 0);
    }
};

GRAMO_TEST_MAIN(TestQWDrawVinylPosition)
#include "tst_qwdrawvinylposition.moc"
