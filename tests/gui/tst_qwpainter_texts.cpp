// Where the texts of the graph stand, how large they are and in which colour, against the same text as a
// painter puts it there: whatever the font, both have the same one.
#include "gui/support/deckgraph.h"
#include "gui/support/phrasingwave.h"
#include "painter/curvecolor.h"
#include "phrasing/managephrasing.h"
#include "phrasing/wavphrasing.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QFont>
#include <QPainter>
#include <QTest>

#include <cmath>

namespace {

const QColor ground(43, 43, 43);
const QColor grey(175, 176, 177);
const QColor tagGrey(95, 96, 97);
const QColor red(208, 0, 24);
const QColor teal(1, 194, 193);
constexpr int regular = 400;
constexpr int bold = 700;

/// A text as it has to look.
struct Text {
    QString text;
    QRect rect;
    int flags;
    QColor color;
    int points;
    int weight = regular;
    bool italic = false;
    double scale = 1.0; ///< about the middle of `rect`
};

/// That text alone on the ground of the graph.
QImage textOn(const QWPainter& graph, const Text& text, double ratio) {
    QImage image((QSizeF(graph.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(ground);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QFont font(graph.font().family(), text.points, text.weight, text.italic);
    painter.setFont(font);
    painter.setPen(text.color);
    const QPointF middle = QRectF(text.rect).center();
    painter.translate(middle);
    painter.scale(text.scale, text.scale);
    painter.translate(-middle);
    painter.drawText(text.rect, text.flags, text.text);
    return image;
}

/// The device pixels within `where` that aren't ground.
QRect ink(const QImage& image, const QRectF& where) {
    const double ratio = image.devicePixelRatio();
    const QRect area = QRectF(where.topLeft() * ratio, where.size() * ratio).toRect() & image.rect();
    QRect found;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixelColor(x, y) != ground) {
                found |= QRect(x, y, 1, 1);
            }
        }
    }
    return found;
}

int countOf(const QImage& image, const QColor& color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

/// Half a pixel to either side: the parts of a text are laid out one by one.
bool alike(const QRect& a, const QRect& b, double ratio) {
    const int rounding = ratio == 1.0 ? 0 : 1; // of the base line, device pixels
    return a.height() == b.height() && std::abs(a.top() - b.top()) <= rounding &&
           std::abs((a.left() + a.right()) - (b.left() + b.right())) <= 1 &&
           std::abs(a.width() - b.width()) <= 1;
}

QString inWords(const QRect& rect) {
    return QStringLiteral("%1,%2 %3x%4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
}

} // namespace

class TestQWPainterTexts : public QObject {
    Q_OBJECT

    static void ratios() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("100 %") << 1.0;
        QTest::newRow("125 %") << 1.25;
        QTest::newRow("200 %") << 2.0;
    }

private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() {
        resetSharedState();
        setting().setGraphLogo(false);
        setting().setGraphGrid(false);
        setting().setGraphVinylPosition(false);
    }

    void theTagNumberStandsOnTheMiddleOfTheGraph_data() { ratios(); }
    void theTagNumberStandsOnTheMiddleOfTheGraph() {
        QFETCH(double, ratio);
        for (const QSize size : {QSize(900, 400), QSize(1201, 601)}) {
            DeckGraph deck(ModelGraph::INPUT_DECKA, size);
            deck.setCursor(-1e7);
            deck.graph.drawTagNumber_3();
            const Text expected{.text = QStringLiteral("3"),
                                .rect = QRect(0, 0, size.width(), size.height() / 2),
                                .flags = Qt::AlignHCenter | Qt::AlignBottom,
                                .color = tagGrey,
                                .points = 60,
                                .weight = bold};
            QCOMPARE(pictureOf(deck.graph, ratio), textOn(deck.graph, expected, ratio));
        }
    }
    void eachTagNumberIsItself() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 400});
        deck.setCursor(-1e7);
        deck.graph.drawTagNumber_1();
        const QImage one = pictureOf(deck.graph);
        deck.graph.drawTagNumber_2();
        const QImage two = pictureOf(deck.graph);
        QVERIFY(one != two);
        deck.graph.drawTagNumber_1();
        QCOMPARE(pictureOf(deck.graph), one);
    }

    void theCursorsNumberStandsBelowIt_data() { ratios(); }
    void theCursorsNumberStandsBelowIt() {
        QFETCH(double, ratio);
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 400});
        training().setFirstMetronome(1000000.0); // counts for the grid alone
        deck.graph.setXRange({0, 855 * 500});
        const QRectF below(0, 362, 900, 38);
        for (const int column : {100, 333, 845}) {
            const double time = (column - 45 + 0.5) * 500.0;
            deck.setCursor(time);
            const Text expected{.text =
                                    QString::number(time / (60.0 * 48000.0 / 84.0), 'f', 2), // 84 a minute
                                .rect = QRect(column - 50, 360, 100, 20),
                                .flags = Qt::AlignHCenter | Qt::AlignBottom,
                                .color = Qt::red,
                                .points = 8};
            const QRect shown = ink(pictureOf(deck.graph, ratio), below);
            const QRect wanted = ink(textOn(deck.graph, expected, ratio), below);
            QVERIFY2(alike(shown, wanted, ratio), qPrintable(inWords(shown) + u' ' + inWords(wanted)));
        }
        training().setFirstMetronome(0.0);
    }
    void theCursorsNumberIsRed() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 400});
        deck.graph.setXRange({0, 855 * 500});
        deck.setCursor(200000.0);
        const QImage picture = pictureOf(deck.graph, 4.0); // strokes wider than a pixel
        const QRect place = ink(picture, QRectF(0, 363, 900, 37));
        QVERIFY(countOf(picture.copy(place), QColor(255, 0, 0)) > 20);
        for (int y = place.top(); y <= place.bottom(); ++y) {
            for (int x = place.left(); x <= place.right(); ++x) {
                QVERIFY(picture.pixelColor(x, y).green() <= 43);
            }
        }
    }

    void aCursorBesideTheGraphLeavesNothing() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 400});
        deck.graph.setXRange({20000000, 20000000 + 855 * 500});
        for (const int column : {-52, -12, 912, 953}) {
            deck.setCursor(20000000.0 + (column - 45) * 500.0);
            QVERIFY(ink(pictureOf(deck.graph), deck.graph.rect()).isNull());
        }
        deck.setCursor(20000000.0 + (800 - 45) * 500.0);
        QVERIFY(!ink(pictureOf(deck.graph), deck.graph.rect()).isNull());
    }
    void whatIsWrongIsToldBelowThePlot() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 400});
        deck.setCursor(-1e7);
        const auto told = [&](const QString& words) {
            const Text expected{.text = words,
                                .rect = QRect(205, 360, 900 - 365, 40),
                                .flags = Qt::AlignLeft | Qt::AlignBottom,
                                .color = Qt::red,
                                .points = 8};
            return pictureOf(deck.graph) == textOn(deck.graph, expected, 1.0);
        };
        deck.graph.overflow(4711);
        QVERIFY(told(QStringLiteral("Out of memory: 4711 samples lost")));
        deck.graph.silentInput(ModelGraph::INPUT_DECKA, true);
        QVERIFY(told(QStringLiteral("No sound from the device")));
    }

    // With the disc, the numbers, the curves and the wave's bar where the words are.
    void whatIsWrongCanBeReadWhateverLiesThere() {
        setting().setGraphGrid(true);
        setting().setGraphVinylPosition(true);
        for (const bool wave : {false, true}) {
            Singleton::instance().wavPhrasing()->setWav(ModelGraph::INPUT_DECKA,
                                                        wave ? halfLoudWave() : nullptr);
            DeckGraph deck(ModelGraph::INPUT_DECKA, {1200, 270});
            deck.graph.generateWavPhrasing();
            addPoints(deck.main, 8000, 64.0, [](int i, CurvePoint& p) { p.position = 2000.0 * std::sin(i); });
            deck.graph.setXRange({0, 512000});
            deck.setCursor(200000.0);
            QStringList words;
            for (int line = 0; line < 7; ++line) {
                const QString path = QStringLiteral("/home/somebody/Recording/%1.wav").arg(line);
                words << QStringLiteral("Not written: ") + path;
                deck.graph.notWritten(path);
                const GraphLayout& layout = deck.graph.layoutPixels();
                QCOMPARE(layout.hasWaveBar(), wave);
                const Text expected{
                    .text = words.join(u'\n'),
                    .rect = QRect(205, layout.plotTop, 1200 - 365, layout.captionBottom - layout.plotTop),
                    .flags = Qt::AlignLeft | Qt::AlignBottom,
                    .color = Qt::red,
                    .points = 8};
                const QImage wanted = textOn(deck.graph, expected, 1.0);
                const QRect place = ink(wanted, deck.graph.rect());
                QVERIFY(place.height() > 10 * line);
                QCOMPARE(pictureOf(deck.graph).copy(place), wanted.copy(place));
            }
        }
        Singleton::instance().wavPhrasing()->setWav(ModelGraph::INPUT_DECKA, nullptr);
    }

    void theCountInStandsInTheMiddle_data() { ratios(); }
    void theCountInStandsInTheMiddle() {
        QFETCH(double, ratio);
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 401});
        deck.setCursor(-1e7);
        deck.graph.showCountIn(4);
        Text expected{.text = QStringLiteral("4"),
                      .rect = deck.graph.rect(),
                      .flags = Qt::AlignCenter,
                      .color = grey,
                      .points = 80,
                      .weight = bold,
                      .scale = double(2.6F)};
        QCOMPARE(pictureOf(deck.graph, ratio), textOn(deck.graph, expected, ratio));
        QTRY_COMPARE(deck.graph.countIn().scale(), 1.0F);
        expected.scale = 1.0;
        QCOMPARE(pictureOf(deck.graph, ratio), textOn(deck.graph, expected, ratio));
    }

    void theNamesOfTheAreasHaveTheirFontAndLine_data() { ratios(); }
    void theNamesOfTheAreasHaveTheirFontAndLine() {
        QFETCH(double, ratio);
        training().setActivatedMode(ModelActivatedMode::Training);
        setting().setGraphVinylPosition(true);
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 400});
        deck.setCursor(-1e7);
        const auto at = [](double angle) { return [angle](int, CurvePoint& point) { turn(point, angle); }; };
        addPoints(deck.main, 1, 64.0, at(45.0));
        addPoints(deck.secondary, 1, 64.0, at(100.0));
        deck.graph.colorAreas()->setListPhrasing(
            {area(0.0, 90.0, red, QStringLiteral("aaah")), area(90.0, 180.0, teal, QStringLiteral("fresh"))});
        deck.graph.setXRange({1000, 101000});
        const QImage picture = pictureOf(deck.graph, ratio);
        const QColor lighter(51, 244, 243);
        for (const auto& [name, top, color] : {std::tuple(QStringLiteral("aaah"), 230, red),
                                               std::tuple(QStringLiteral("fresh"), 260, lighter)}) {
            const Text expected{.text = name,
                                .rect = QRect(QPoint(45, top), QPoint(625, top + 40)),
                                .flags = Qt::AlignLeft,
                                .color = color,
                                .points = 15,
                                .weight = bold,
                                .italic = true};
            const QRectF line(0, top + 5, 900, 24);
            const QImage wanted = textOn(deck.graph, expected, ratio);
            const QRect place = ink(wanted, line);
            const QRect shown = ink(picture, line);
            QCOMPARE(shown.top(), place.top());
            QCOMPARE(shown.size(), place.size());
            QVERIFY(shown.left() >= int(45 * ratio) - 1);
            QCOMPARE(countOf(picture.copy(shown), color), countOf(wanted.copy(place), color));
            QVERIFY(countOf(picture.copy(shown), color) > 20);
        }
    }
};

GRAMO_TEST_MAIN(TestQWPainterTexts)
#include "tst_qwpainter_texts.moc"
