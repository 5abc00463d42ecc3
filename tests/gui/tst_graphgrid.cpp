// The grid as pixels: where its lines stand, how strong they are, and where its texts are.
#include "painter/graphgrid.h"

#include "painter/graphstyle.h"
#include "phrasing/managephrasing.h"
#include "support/testmain.h"

#include <QImage>
#include <QTest>

#include <algorithm>
#include <cmath>

namespace {

constexpr int width = 1200;
constexpr int height = 500;
constexpr int plotTop = 35;
constexpr int plotBottom = 460;
constexpr double beat = 24000.0; // 120 beats a minute at 48000 Hz
const QColor ground(43, 43, 43);
const QColor half(109, 110, 110); // grid lines are half a pixel wide

/// What a picture shows. 16 beats on 1155 pixels are 72.1875 pixels each.
struct Shown {
    GraphRange x{0.0, 16.0 * beat};
    GraphRange y{-300.0, 1300.0};
    bool following = false;
    ModelDisplay::EnumDisplay display = ModelDisplay::NORMAL;
    double beatLength = beat;
    double firstMetronome = 0.0;
    std::optional<QString> latency;
    QPointF corner; ///< of the graph, in pixels of the screen
    double ratio = 1.0;
};

class Fixture {
public:
    ManagePhrasing areas{ModelGraph::INPUT_DECKA};
    LabelCache labels;

    QImage draw(const Shown& shown) {
        QImage image((QSizeF(width, height) * shown.ratio).toSize() + QSize(20, 20),
                     QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(shown.ratio);
        image.fill(ground);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.translate(shown.corner);
        painter.setClipRect(0, 0, width, height);
        const GraphLayout layout = GraphLayout::of(width, height, false, false);
        const GraphScale scale(layout, shown.x, shown.y, shown.following);
        drawGrid(painter, {scale, layout, width, shown.display, areas, shown.beatLength, shown.firstMetronome,
                           48000.0, 120.0, ground, shown.latency, labels});
        hintsKept = painter.testRenderHint(QPainter::Antialiasing) &&
                    painter.testRenderHint(QPainter::SmoothPixmapTransform);
        return image;
    }
    bool hintsKept = false;
};

QColor at(const QImage& image, double x, double y) {
    const double ratio = image.devicePixelRatio();
    return image.pixelColor(int(std::floor((x + 0.5) * ratio)), int(std::floor((y + 0.5) * ratio)));
}

bool near(const QColor& a, const QColor& b, int tolerance = 2) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

/// Pixels across a line, at 100 %.
int breadthAt(const QImage& image, int x, int y, int dx, int dy) {
    int breadth = 0;
    for (int i = -8; i <= 8; ++i) {
        breadth += near(at(image, x + i * dx, y + i * dy), ground) ? 0 : 1;
    }
    return breadth;
}

/// The columns of the upright lines behind the axis, in a row between two level lines.
std::vector<int> uprights(const QImage& image, bool heavy) {
    std::vector<int> columns;
    for (int x = 50; x < width; ++x) {
        if (near(at(image, x, 58), heavy ? graphGrey : half) &&
            (!heavy || !near(at(image, x - 1, 58), graphGrey))) {
            columns.push_back(x);
        }
    }
    return columns;
}

/// The rows of the level lines, in a column between two upright ones.
std::vector<int> levels(const QImage& image, int column = 90) {
    std::vector<int> rows;
    for (int y = 0; y < plotBottom - 5; ++y) {
        if (near(at(image, column, y), half)) {
            rows.push_back(y);
        }
    }
    return rows;
}

/// What isn't ground within the rectangle; device pixels.
QRect ink(const QImage& image, const QRectF& where) {
    const double ratio = image.devicePixelRatio();
    const QRect area = QRectF(where.topLeft() * ratio, where.size() * ratio).toRect();
    QRect found;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (!near(image.pixelColor(x, y), ground, 8)) {
                found |= QRect(x, y, 1, 1);
            }
        }
    }
    return found;
}

/// To a pixel.
bool alike(const QRect& a, const QRect& b, double ratio) {
    const int pixel = int(std::ceil(ratio));
    return std::abs(a.left() - b.left()) <= pixel && std::abs(a.right() - b.right()) <= pixel &&
           std::abs(a.top() - b.top()) <= pixel && std::abs(a.bottom() - b.bottom()) <= pixel;
}

/// The text as the painter itself puts it there.
QRect plainText(double ratio, const QRect& rect, int flags, const QString& text, const QRectF& where) {
    QImage image((QSizeF(width, height) * ratio).toSize() + QSize(20, 20),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(ground);
    QPainter painter(&image);
    const TextStyle style(painter, ModelGraph::LABEL);
    painter.drawText(rect, flags, text);
    return ink(image, where);
}

} // namespace

class TestGraphGrid : public QObject {
    Q_OBJECT

    static void ratios() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("100 %") << 1.0;
        QTest::newRow("125 %") << 1.25;
        QTest::newRow("150 %") << 1.5;
        QTest::newRow("200 %") << 2.0;
    }

private Q_SLOTS:
    void everyBeatHasALineAndEveryFourthAHeavyOne() {
        Fixture grid;
        const QImage image = grid.draw({});
        std::vector<int> thin;
        std::vector<int> bars;
        for (int i = 1; i <= 16; ++i) { // the last one is cut by the edge
            const int x = 45 + int(i * 1155 / 16.0);
            if (i % 4 == 0) {
                bars.push_back(x - 2);
            } else {
                thin.push_back(x);
            }
        }
        QCOMPARE(uprights(image, false), thin);
        QCOMPARE(uprights(image, true), bars);
        QVERIFY(grid.hintsKept);
    }
    void linesAreAsWideAsTheirPens() {
        Fixture grid;
        Shown shown;
        shown.firstMetronome = beat; // no bar on the axis
        const QImage image = grid.draw(shown);
        const int bar = 45 + int(5 * 1155 / 16.0);
        QCOMPARE(breadthAt(image, bar, 58, 1, 0), 4);
        QCOMPARE(breadthAt(image, 45 + 144, 58, 1, 0), 1);
        QCOMPARE(breadthAt(image, 45, 58, 1, 0), 3);
        QCOMPARE(breadthAt(image, 90, plotBottom, 0, 1), 3);
        QCOMPARE(at(image, bar, 58), graphGrey);
        QCOMPARE(at(image, 45, 58), graphGrey);
        QCOMPARE(at(image, 90, plotBottom), graphGrey);
    }
    void linesRunFromTheTopOfThePlotToTheAxis() {
        Fixture grid;
        Shown shown;
        shown.firstMetronome = beat; // no bar on the axis
        const QImage image = grid.draw(shown);
        const int bar = 45 + int(5 * 1155 / 16.0);
        QCOMPARE(ink(image, QRectF(bar - 10, 0, 20, plotBottom)).top(), plotTop - 2); // the pen's square cap
        QCOMPARE(ink(image, QRectF(45 + 144 - 5, 0, 10, plotBottom)).top(), plotTop);
        QCOMPARE(ink(image, QRectF(40, 0, 10, plotBottom)).top(), plotTop - 1);
        QCOMPARE(at(image, 1199, plotBottom), graphGrey);
        QCOMPARE(at(image, 44, plotBottom), graphGrey);
        QCOMPARE(at(image, 42, plotBottom), ground);
        QCOMPARE(at(image, 45 + 144, plotBottom + 3), ground);
    }
    void onAnyScreenLinesAreSharp_data() { ratios(); }
    void onAnyScreenLinesAreSharp() {
        QFETCH(double, ratio);
        Fixture grid;
        for (const QPointF corner : {QPointF(0, 0), QPointF(3, 5)}) {
            Shown shown;
            shown.ratio = ratio;
            shown.corner = corner;
            const QImage image = grid.draw(shown);
            const int row = int((58 + corner.y()) * ratio);
            int bars = 0;
            int thin = 0;
            const double cover = std::min(1.0, 0.5 * ratio);
            const int level = int(std::lround(43 + (175 - 43) * cover));
            for (int x = int((50 + corner.x()) * ratio); x < int((width - 5) * ratio); ++x) {
                const int red = qRed(image.pixel(x, row));
                QVERIFY2(red == 43 || red == 175 || std::abs(red - level) <= 1,
                         qPrintable(QString::number(red)));
                bars += red == 175 ? 1 : 0;
                thin += red != 175 && red != 43 ? 1 : 0;
            }
            const int barPixels = 3 * int(std::floor(4 * ratio + 0.5));
            QCOMPARE(bars + thin, barPixels + 12);
        }
    }
    void linesBeforeTheFirstClickCountBackwards() {
        Fixture grid;
        Shown shown;
        shown.firstMetronome = 6.0 * beat;
        const QImage image = grid.draw(shown);
        // -4 at two beats, 0 at six, 4 at ten, 8 at fourteen.
        std::vector<int> bars;
        for (const int i : {2, 6, 10, 14}) {
            bars.push_back(45 + int(i * 1155 / 16.0) - 2);
        }
        QCOMPARE(uprights(image, true), bars);
    }
    void aRangeThatStartsBelowZero() {
        Fixture grid;
        Shown shown;
        shown.x = {-6.0 * beat, 10.0 * beat};
        const QImage image = grid.draw(shown);
        QCOMPARE(uprights(image, true).size(), std::size_t{4}); // -4, 0, 4, 8
        QCOMPARE(uprights(image, false).size(), std::size_t{11});
    }
    void aZeroBeatLeavesAxesAndLevels() {
        Fixture grid;
        Shown shown;
        shown.beatLength = 0.0;
        const QImage image = grid.draw(shown);
        QVERIFY(uprights(image, true).empty());
        QVERIFY(uprights(image, false).empty());
        QVERIFY(ink(image, QRectF(0, plotBottom + 3, width, 17)).left() < 45); // the lowest value's label
        QVERIFY(ink(image, QRectF(60, plotBottom + 3, width - 60, 15)).isNull());
        QCOMPARE(at(image, 600, plotBottom), graphGrey);
        QCOMPARE(levels(image).size(), std::size_t{16});
    }
    void theLevelsOfTheNormalDisplay() {
        Fixture grid;
        const QImage image = grid.draw({}); // -300 to 1300 in steps of 100, the lowest on the axis
        const GraphScale scale(GraphLayout::of(width, height, false, false), {0.0, 1.0}, {-300.0, 1300.0},
                               false);
        std::vector<int> rows;
        for (int value = 1300; value > -300; value -= 100) {
            rows.push_back(int(scale.mapY(value)));
        }
        QCOMPARE(levels(image), rows);
        QVERIFY(near(at(image, 1196, rows[3]), half)); // to the widget's edge
        QCOMPARE(at(image, 42, rows[3]), ground);
    }
    void theLevelsOfTheAngleDisplays() {
        for (const auto display : {ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
            Fixture grid;
            Shown shown;
            shown.display = display;
            shown.y = {0.0, 1000000.0};
            const QImage image = grid.draw(shown);
            std::vector<int> rows;
            for (int i = 10; i > 0; --i) {
                rows.push_back(int(plotBottom - i * 42.5));
            }
            QCOMPARE(levels(image), rows);
        }
    }
    void drummingHasALevelAtBothEndsOfEachArea() {
        Fixture grid;
        grid.areas.setListPhrasing(
            {std::make_shared<QPhrasing>(QString(), QColor(208, 0, 24), 0.0, 90.0),
             std::make_shared<QPhrasing>(QString(), QColor(1, 194, 193), 180.0, 270.0)});
        Shown shown;
        shown.display = ModelDisplay::DRUMMING;
        shown.y = {0.0, 1000000.0};
        const auto row = [](double angle) { return int(plotBottom - angle * 2777.0 * 425.0 / 1e6); };
        const std::vector<int> rows{row(270.0), row(180.0), row(90.0)}; // 0 lies on the axis
        QCOMPARE(levels(grid.draw(shown)), rows);
        // The other two displays don't care.
        shown.display = ModelDisplay::PHRASING;
        QCOMPARE(levels(grid.draw(shown)).size(), std::size_t{10});
    }
    void anAreaThatEndsAtAFullTurnHasItsLevelAtZero() {
        Fixture grid;
        grid.areas.setListPhrasing({std::make_shared<QPhrasing>(QString(), Qt::red, 300.0, 360.0)});
        Shown shown;
        shown.display = ModelDisplay::DRUMMING;
        shown.y = {0.0, 1000000.0};
        QCOMPARE(levels(grid.draw(shown)),
                 (std::vector<int>{int(plotBottom - 300.0 * 2777.0 * 425.0 / 1e6)}));
    }
    void levelsDontCutTheBars() {
        Fixture grid;
        const QImage image = grid.draw({});
        const int bar = 45 + int(4 * 1155 / 16.0);
        for (int y = plotTop; y < plotBottom; ++y) {
            QVERIFY(near(at(image, bar, y), graphGrey));
            QVERIFY(near(at(image, 45, y), graphGrey));
        }
    }

    // The picture moves by whole pixels, beat lines and numbers with it.
    void whileFollowingTheGridMovesByWholePixels() {
        Fixture grid;
        Shown shown;
        shown.following = true;
        const GraphLayout layout = GraphLayout::of(width, height, false, false);
        const auto scaleAt = [&](double xMin) {
            return GraphScale(layout, {xMin, xMin + 16.0 * beat}, shown.y, true);
        };
        shown.x = scaleAt(100000.0).x();
        const QImage first = grid.draw(shown);
        for (double xMin = 100000.0; xMin < 120000.0; xMin += 797.0) {
            const GraphScale scale = scaleAt(xMin);
            shown.x = scale.x();
            const QImage image = grid.draw(shown);
            const int moved = int(scale.anchor() - scaleAt(100000.0).anchor());
            for (int y : {58, 300, 470}) {
                for (int x = 60; x < 900; ++x) {
                    QCOMPARE(image.pixel(x, y), first.pixel(x + moved, y));
                }
            }
            // Each line stands in the column that a point of its time has.
            const std::vector<int> bars = uprights(image, true);
            for (double tick = 4.0 * beat; tick <= scale.x().max; tick += 4.0 * beat) {
                const int column = int(scale.column(tick));
                if (column > 60 && column < width - 5) {
                    QVERIFY(std::find(bars.begin(), bars.end(), column - 2) != bars.end());
                    QVERIFY(std::abs(column - scale.mapX(tick)) <= 1.0);
                }
            }
        }
    }

    void theTextsStandWhereThePainterPutsThem_data() { ratios(); }
    void theTextsStandWhereThePainterPutsThem() {
        QFETCH(double, ratio);
        Fixture grid;
        Shown shown;
        shown.ratio = ratio;
        shown.latency = QStringLiteral("1.3ms / 13%");
        const QImage image = grid.draw(shown);
        const QRectF right(1060, 480, 140, 20);
        const QRectF left(0, 482, 300, 18);
        QVERIFY(alike(ink(image, right),
                      plainText(ratio, QRect(1047, plotBottom, 150, 40), Qt::AlignRight | Qt::AlignBottom,
                                QStringLiteral("Frequency (bpm)"), right),
                      ratio));
        QVERIFY(alike(ink(image, left),
                      plainText(ratio, QRect(3, plotBottom, 200, 40), Qt::AlignLeft | Qt::AlignBottom,
                                *shown.latency, left),
                      ratio));
        for (const int number : {4, 7, 13}) {
            const int x = 45 + int(number * 1155 / 16.0);
            const QRectF below(x - 30, 463, 60, 17);
            QVERIFY(alike(ink(image, below),
                          plainText(ratio, QRect(x - 50, plotBottom, 100, 20),
                                    Qt::AlignHCenter | Qt::AlignTop | Qt::AlignVCenter,
                                    QString::number(number), below),
                          ratio));
        }
        const GraphScale scale(GraphLayout::of(width, height, false, false), shown.x, shown.y, false);
        for (const auto& [value, text] :
             {std::pair(1000, "1k"), std::pair(0, "0"), std::pair(-200, "-200")}) {
            const int y = int(scale.mapY(value));
            const QRectF beside(0, y - 10, 40, 20);
            QVERIFY(alike(ink(image, beside),
                          plainText(ratio, QRect(0, y - 10, 35, 20), Qt::AlignRight | Qt::AlignVCenter,
                                    QString::fromLatin1(text), beside),
                          ratio));
        }
    }
    void anglesAreLabelledInPercent() {
        Fixture grid;
        Shown shown;
        shown.display = ModelDisplay::DRUMMING;
        shown.y = {0.0, 1000000.0};
        grid.areas.setListPhrasing({std::make_shared<QPhrasing>(QString(), Qt::red, 0.0, 90.0)});
        const QImage image = grid.draw(shown);
        for (int i = 0; i <= 10; ++i) { // with areas as well
            const int y = int(plotBottom - i * 42.5);
            const QRectF beside(0, y - 10, 40, 20);
            QVERIFY(alike(ink(image, beside),
                          plainText(1.0, QRect(0, y - 10, 35, 20), Qt::AlignRight | Qt::AlignVCenter,
                                    QString::number(i * 10) + QLatin1Char('%'), beside),
                          1.0));
        }
    }
    void noLatencyNoText() {
        Fixture grid;
        QVERIFY(ink(grid.draw({}), QRectF(0, 482, 300, 18)).isNull());
    }
    void numbersThatWouldRunIntoEachOtherStandAtTheBarsAlone() {
        Fixture grid;
        Shown shown;
        shown.x = {99.5 * beat, 163.5 * beat}; // three digits every 18 pixels
        const QImage image = grid.draw(shown);
        const GraphScale scale(GraphLayout::of(width, height, false, false), shown.x, shown.y, false);
        for (int number = 102; number < 160; ++number) {
            const int x = int(scale.mapX(number * beat));
            QCOMPARE(ink(image, QRectF(x - 3, 464, 6, 15)).isNull(), number % 4 != 0);
        }
        shown.x = {9.5 * beat, 73.5 * beat}; // two digits have room
        const QImage two = grid.draw(shown);
        const GraphScale scaleOfTwo(GraphLayout::of(width, height, false, false), shown.x, shown.y, false);
        for (int number = 11; number < 70; ++number) {
            const int x = int(scaleOfTwo.mapX(number * beat));
            QVERIFY(!ink(two, QRectF(x - 7, 464, 14, 15)).isNull());
        }
    }
    void textsAreLaidOutOnce() {
        Fixture grid;
        Shown shown;
        shown.following = true;
        grid.draw(shown);
        const unsigned first = grid.labels.layouts();
        QCOMPARE(first, 1U + 17U + 16U); // caption, 0 to 16, and 16 values that are no beat's number
        for (int frame = 0; frame < 100; ++frame) {
            shown.x = {shown.x.min + 400.0, shown.x.max + 400.0};
            grid.draw(shown);
        }
        QCOMPARE(grid.labels.layouts(), first + 1U); // one more beat came into view
    }
    void anEndlessSessionKeepsFewTexts() {
        Fixture grid;
        Shown shown;
        for (int bars = 0; bars < 2000; bars += 4) {
            shown.x = {bars * 4.0 * beat, (bars * 4.0 + 16.0) * beat};
            grid.draw(shown);
        }
        shown.x = {0.0, 16.0 * beat};
        const QImage image = grid.draw(shown);
        QCOMPARE(image, Fixture().draw(shown));
    }
    void aPlotWithoutRoomIsNoTrouble() {
        Fixture grid;
        const GraphLayout layout = GraphLayout::of(30, 20, false, false);
        const GraphScale scale(layout, {0.0, 16.0 * beat}, {0.0, 100.0}, false);
        QImage image(30, 20, QImage::Format_ARGB32_Premultiplied);
        image.fill(ground);
        QPainter painter(&image);
        drawGrid(painter, {scale, layout, 30, ModelDisplay::NORMAL, grid.areas, beat, 0.0, 48000.0, 120.0,
                           ground, std::nullopt, grid.labels});
        QVERIFY(painter.isActive());
    }
    void rangesBeyondAllMeasure() {
        Fixture grid;
        Shown shown;
        shown.y = {-1e300, 1e300};
        shown.beatLength = 1.0;
        shown.x = {-2147483648.0, 2147483647.0};
        const QImage image = grid.draw(shown);
        QVERIFY(levels(image).empty());
        QVERIFY(uprights(image, true).empty());
        QCOMPARE(at(image, 600, plotBottom), graphGrey);
    }
};

GRAMO_TEST_MAIN(TestGraphGrid)
#include "tst_graphgrid.moc"
