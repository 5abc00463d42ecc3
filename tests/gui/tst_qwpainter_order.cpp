// What of the graph lies over what: two of its layers at a time, where both can be seen.
#include "gui/support/deckgraph.h"
#include "gui/support/phrasingwave.h"
#include "painter/curvecolor.h"
#include "phrasing/managephrasing.h"
#include "phrasing/wavphrasing.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr double step = 1200.0;
constexpr double frames = 20.0 * 34285.0; // shown
const QColor darkGround(43, 43, 43);
const QColor otherGround(230, 240, 250);

enum Layer {
    None = 0,
    Logo = 1,
    Wave = 2,
    Tag = 4,
    Grid = 8,
    Reference = 16,
    Live = 32,
    Cursor = 64,
    Disc = 128,
    Count = 256
};

/// A graph on which two layers meet.
struct Meeting {
    QSize size;
    ModelDisplay::EnumDisplay display = ModelDisplay::DRUMMING;
    double angle = 180.0;      ///< of all points, degrees
    double cursorColumn = 450; ///< pixels
    int beats = 20;            ///< shown; from 80 on every line is a bar
    QRect where{};             ///< where to look; everywhere if it is null
};

QImage draw(const Meeting& meeting, int layers, const QColor& ground = darkGround) {
    mode().setDisplayMode(meeting.display);
    setting().setGraphLogo((layers & Logo) != 0);
    setting().setGraphGrid((layers & Grid) != 0);
    setting().setGraphVinylPosition((layers & Disc) != 0);
    Singleton::instance().wavPhrasing()->setWav(ModelGraph::INPUT_DECKA,
                                                (layers & Wave) != 0 ? halfLoudWave() : nullptr);
    DeckGraph deck(ModelGraph::INPUT_DECKA, meeting.size);
    QPalette palette;
    palette.setColor(QPalette::Window, ground);
    deck.graph.setPalette(palette);
    deck.graph.generateWavPhrasing();
    const double shown = meeting.beats * 34285.0;
    const auto level = [&](int, CurvePoint& point) { turn(point, meeting.angle); };
    for (const auto& [layer, store] : {std::pair(Live, &deck.main), std::pair(Reference, &deck.secondary)}) {
        if ((layers & layer) != 0) {
            addPoints(*store, int(shown / step), step, level);
        }
    }
    deck.graph.setXRange({0, int(shown)});
    const double framesPerPixel = shown / deck.graph.layoutPixels().plotWidth;
    deck.setCursor((layers & Cursor) != 0 ? (meeting.cursorColumn + 0.5 - 45.0) * framesPerPixel : -1e7);
    if ((layers & Tag) != 0) {
        deck.graph.drawTagNumber_4();
    }
    if ((layers & Count) != 0) {
        deck.graph.showCountIn(3);
    }
    return pictureOf(deck.graph);
}

int apart(QRgb a, QRgb b) {
    return std::max(
        {std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

/// Pixels that tell which of the two layers lies over the other.
struct Seen {
    int top = 0;    ///< look as the top layer alone
    int bottom = 0; ///< or in another way
};

/// Looks where `solid` lets nothing through - it is the same on any ground - and the other layer is seen when
/// it is alone.
Seen seenOf(const Meeting& meeting, int solid, int other) {
    const QImage nothing = draw(meeting, None);
    const QImage alone = draw(meeting, solid);
    const QImage aloneElsewhere = draw(meeting, solid, otherGround);
    const QImage otherAlone = draw(meeting, other);
    const QImage both = draw(meeting, solid | other);
    const QRect where = meeting.where.isNull() ? nothing.rect() : meeting.where;
    Seen seen;
    for (int y = where.top(); y <= where.bottom(); ++y) {
        for (int x = where.left(); x <= where.right(); ++x) {
            const QRgb pixel = alone.pixel(x, y);
            const bool isSolid = pixel == aloneElsewhere.pixel(x, y) && pixel != nothing.pixel(x, y);
            const QRgb below = otherAlone.pixel(x, y);
            if (isSolid && apart(below, nothing.pixel(x, y)) > 6 && apart(below, pixel) > 6) {
                ++(apart(both.pixel(x, y), pixel) <= 2 ? seen.top : seen.bottom);
            }
        }
    }
    return seen;
}

} // namespace

class TestQWPainterOrder : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() {
        resetSharedState();
        training().setActivatedMode(ModelActivatedMode::Training);
        setting().setGraphDirectSound(false);
    }
    void cleanup() { Singleton::instance().wavPhrasing()->setWav(ModelGraph::INPUT_DECKA, nullptr); }

    void oneLiesOverTheOther_data() {
        QTest::addColumn<int>("top");
        QTest::addColumn<int>("bottom");
        QTest::addColumn<Meeting>("meeting");
        const auto row = [](const char* name, Layer top, Layer bottom, const Meeting& meeting) {
            QTest::newRow(name) << int(top) << int(bottom) << meeting;
        };
        const Meeting wide{.size = {900, 400}};
        row("wave over logo", Wave, Logo, {.size = {400, 600}});
        row("tag number over logo", Tag, Logo, {.size = {530, 600}});
        row("grid over logo", Grid, Logo, {.size = {900, 600}, .beats = 300});
        row("reference over logo", Reference, Logo, {.size = {900, 600}});
        row("live curve over logo", Live, Logo, {.size = {900, 600}});
        row("disc over logo", Disc, Logo, {.size = {900, 300}});

        // So low that the bar is where the number is.
        row("tag number over wave", Tag, Wave, {.size = {300, 130}, .display = ModelDisplay::NORMAL});
        row("grid over wave", Grid, Wave, {.size = {900, 400}, .beats = 300});
        row("live curve over wave", Live, Wave, wide);
        row("cursor over wave", Cursor, Wave, {.size = {900, 400}, .cursorColumn = 880});
        row("disc over wave", Disc, Wave, {.size = {220, 250}});

        row("grid over tag number", Grid, Tag, {.size = {900, 400}, .beats = 300});
        const Meeting onNumber{.size = {900, 400}, .angle = 227.0}; // row 155 of 125 to 185
        row("reference over tag number", Reference, Tag, onNumber);
        row("live curve over tag number", Live, Tag, onNumber);
        row("disc over tag number", Disc, Tag, {.size = {250, 400}});
        row("count-in over tag number", Count, Tag, {.size = {250, 400}});

        row("reference over grid", Reference, Grid, wide);
        row("live curve over grid", Live, Grid, wide);
        row("cursor over grid", Cursor, Grid, {.size = {900, 400}, .cursorColumn = 45 + 855 / 5});
        row("disc over grid", Disc, Grid, {.size = {900, 400}, .beats = 300});

        row("live curve over reference", Live, Reference, wide);
        row("cursor over reference", Cursor, Reference, wide);
        row("cursor over live curve", Cursor, Live, wide);
        const Meeting throughDisc{.size = {900, 220},
                                  .angle = 0.0}; // where the needles are without points too
        row("disc over reference", Disc, Reference, throughDisc);
        row("disc over live curve", Disc, Live, throughDisc);
        row("disc over cursor", Disc, Cursor, {.size = {900, 400}, .cursorColumn = 160});

        row("count-in over cursor", Count, Cursor, wide);
        row("count-in over live curve", Count, Live, wide);
        row("count-in over disc", Count, Disc, {.size = {250, 300}});
    }
    void oneLiesOverTheOther() {
        QFETCH(int, top);
        QFETCH(int, bottom);
        QFETCH(Meeting, meeting);
        const Seen seen = seenOf(meeting, top, bottom);
        QVERIFY2(seen.top >= 6, qPrintable(QString::number(seen.top)));
        QCOMPARE(seen.bottom, 0);
    }

    // The strips let through what they lie on.
    void theStripsLieOverTheTagNumber() {
        const Meeting low{.size = {900, 150}, .where = QRect(45, 10, 855, 20)};
        const QColor tag(95, 96, 97);
        for (const Layer curve : {Live, Reference}) {
            const QImage number = draw(low, Tag);
            const QImage both = draw(low, Tag | curve);
            const QColor expected = laidOver(QColor(0, 255, 0, 100), tag);
            int pixels = 0;
            for (int y = 11; y <= 26; ++y) {
                for (int x = 60; x < 890; ++x) {
                    if (number.pixelColor(x, y) == tag) {
                        ++pixels;
                        const QColor pixel = both.pixelColor(x, y);
                        QVERIFY(std::abs(pixel.green() - expected.green()) <= 2 &&
                                std::abs(pixel.red() - expected.red()) <= 2);
                    }
                }
            }
            QVERIFY(pixels > 20);
        }
    }
    void theLiveStripLiesOverTheReferences() {
        const Meeting wide{.size = {900, 400}};
        const QColor strip(0, 255, 0, 100);
        const QColor once = laidOver(strip, darkGround);
        const QColor twice = laidOver(strip, once);
        const QImage both = draw(wide, Live | Reference);
        const auto isAt = [&](int y, const QColor& color) {
            const QColor pixel = both.pixelColor(450, y);
            return std::abs(pixel.green() - color.green()) <= 2 && std::abs(pixel.red() - color.red()) <= 2;
        };
        for (int y = 4; y <= 8; ++y) {
            QVERIFY(isAt(y, once));
        }
        for (int y = 9; y <= 30; ++y) {
            QVERIFY(isAt(y, twice));
        }
        QCOMPARE(both.pixelColor(450, 3), darkGround);
        QCOMPARE(both.pixelColor(450, 31), darkGround);
    }
    // A thick curve at the upper edge of the plot reaches up to the strips.
    void bothCurvesLieOverBothStrips() {
        setting().setCurveOnSize(14);
        mode().setDisplayMode(ModelDisplay::DRUMMING);
        setting().setGraphLogo(false);
        setting().setGraphGrid(false);
        setting().setGraphVinylPosition(false);
        const QColor red(208, 0, 24);
        for (const bool reference : {false, true}) {
            DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 400});
            deck.setCursor(-1e7);
            deck.graph.colorAreas()->setListPhrasing({area(300.0, 360.0, red)});
            const auto top = [](int, CurvePoint& point) { turn(point, 359.9); };
            const auto outside = [](int, CurvePoint& point) { turn(point, 100.0); };
            addPoints(deck.main, 570, step, reference ? outside : top);
            addPoints(deck.secondary, 570, step, reference ? top : outside);
            deck.graph.setXRange({0, int(frames)});
            const QImage picture = pictureOf(deck.graph);
            const QColor curve = reference ? curveColorInArea(ModelGraph::INPUT_1, red) : red;
            QCOMPARE(picture.pixelColor(450, 30), curve);
            QCOMPARE(picture.pixelColor(450, 33), curve);
        }
    }
};

GRAMO_TEST_MAIN(TestQWPainterOrder)
#include "tst_qwpainter_order.moc"
