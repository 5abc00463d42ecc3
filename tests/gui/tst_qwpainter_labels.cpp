// The texts round a graph's plot and its cursor: whole, apart from each other, and sharp on every screen.
#include "gui/support/deckgraph.h"
#include "module/wavedata.h"
#include "phrasing/wavphrasing.h"
#include "support/testmain.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

const QColor ground(43, 43, 43);
const QSize lowGraph(1200, 270); // one of two in a window of 1200 by 600
constexpr int textTop = 4;       // below the plot's axis

bool isGround(const QImage& image, int x, int y) {
    const QColor color = image.pixelColor(x, y);
    return std::abs(color.red() - ground.red()) <= 6 && std::abs(color.green() - ground.green()) <= 6;
}

int inkIn(const QImage& image, const QRect& where) {
    int ink = 0;
    for (int y = where.top(); y <= where.bottom(); ++y) {
        for (int x = where.left(); x <= where.right(); ++x) {
            ink += isGround(image, x, y) ? 0 : 1;
        }
    }
    return ink;
}

/// Heights of the texts in a strip at the left of the plot, and of the gaps between them, from top to bottom.
struct Stacked {
    std::vector<int> texts;
    std::vector<int> gaps;
};
Stacked stackedTexts(const QImage& image, int bottom) {
    Stacked found;
    int gap = 0;
    for (int y = 20; y < bottom; ++y) {
        const bool ink = inkIn(image, QRect(0, y, 38, 1)) > 0;
        if (!ink) {
            ++gap;
        } else if (gap > 0 || found.texts.empty()) {
            if (!found.texts.empty()) {
                found.gaps.push_back(gap);
            }
            found.texts.push_back(1);
            gap = 0;
        } else {
            ++found.texts.back();
        }
    }
    return found;
}

std::shared_ptr<const WaveData> loudWave() {
    auto wave = std::make_shared<WaveData>(48000, 1, 72000);
    for (std::size_t i = 0; i < 72000; ++i) {
        wave->samples(0)[i] = std::int16_t(i % 2 == 0 ? 1000 : -1000);
    }
    wave->setPeaks(-1000, 1000);
    return wave;
}

void giveWave(QWPainter& graph) {
    Singleton::instance().wavPhrasing()->setWav(graph.deckName(), loudWave());
    graph.generateWavPhrasing();
    graph.refreshVariable();
}

double beatLength() {
    return training().beatLength(ModelGraph::INPUT_DECKA);
}

void showBeats(DeckGraph& deck, double from, double to) {
    deck.graph.setXRange({int(from * beatLength()), int(to * beatLength()) + 1});
}

/// The graph with its grid and without.
struct WithAndWithout {
    explicit WithAndWithout(QWidget& graph) {
        setting().setGraphGrid(false);
        without = pictureOf(graph);
        setting().setGraphGrid(true);
        with = pictureOf(graph);
    }
    QImage with;
    QImage without;
};

} // namespace

class TestQWPainterLabels : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() {
        resetSharedState();
        setting().setGraphLogo(false);
        setting().setGraphVinylPosition(false);
        setting().setGraphDirectSound(false);
    }
    void cleanup() { Singleton::instance().wavPhrasing()->setWav(ModelGraph::INPUT_DECKA, nullptr); }

    void theGridsNumberGivesWayToTheCursors() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, lowGraph);
        showBeats(deck, 0.0, 16.0);
        const int top = int(deck.graph.layoutPixels().plotBottom) + textTop;
        const int height = deck.graph.layoutPixels().labelBottom - top;
        const int beat3 = int(deck.scale().mapX(3.0 * beatLength()));
        for (const double cursor : {3.0, 2.9, 3.15, 2.75, 3.3}) {
            deck.setCursor(cursor * beatLength());
            const WithAndWithout pictures(deck.graph);
            const int x = int(deck.scale().mapX(cursor * beatLength()));
            const QRect around(x - 17, top, 34, height); // its own text and next to it
            QCOMPARE(pictures.with.copy(around), pictures.without.copy(around));
            QVERIFY(inkIn(pictures.with, around) > 40);
            const int beat4 = int(deck.scale().mapX(4.0 * beatLength()));
            QVERIFY(inkIn(pictures.with, QRect(beat4 - 8, top, 16, height)) > 5); // others stay
        }
        deck.setCursor(3.5 * beatLength()); // and come back
        QVERIFY(inkIn(pictureOf(deck.graph), QRect(beat3 - 8, top, 16, height)) > 5);
    }
    // A number for each of them had no room.
    void ofManyBarsEverySecondHasItsNumberHoweverTheRangeMoves() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, lowGraph);
        deck.setCursor(-1e9);
        const int top = int(deck.graph.layoutPixels().plotBottom) + textTop;
        const int height = deck.graph.layoutPixels().labelBottom - top;
        for (const double from : {-20.0, -17.0, -13.0, -8.0, 4.0}) {
            showBeats(deck, from, from + 300.0);
            const QImage picture = pictureOf(deck.graph);
            for (int bar = int(from) / 4 + 2; bar < int(from) / 4 + 72; ++bar) {
                const int x = int(deck.scale().mapX(4.0 * bar * beatLength()));
                const bool numbered = inkIn(picture, QRect(x - 2, top, 5, height)) > 0;
                QVERIFY2(numbered == (bar % 2 == 0), qPrintable(QString::number(4 * bar)));
            }
        }
    }
    void theEdgesCutNoTextOff() {
        setting().setLatency(true);
        for (const int beats : {16, 8}) { // their last one stands at the right edge
            DeckGraph deck(ModelGraph::INPUT_DECKA, {1200, 540});
            deck.graph.ringBufferLatencyMs(1.3, 3, 32);
            showBeats(deck, 0.0, beats);
            const int top = int(deck.graph.layoutPixels().plotBottom) + textTop;
            for (const double cursor : {-1.0, 0.1, double(beats), beats - 0.02, beats + 0.1}) {
                deck.setCursor(cursor * beatLength());
                const QImage picture = pictureOf(deck.graph);
                QCOMPARE(inkIn(picture, QRect(0, top, 2, 540 - top)), 0);
                QCOMPARE(inkIn(picture, QRect(1198, top, 2, 540 - top)), 0);
                QCOMPARE(inkIn(picture, QRect(0, 539, 1200, 1)), 0);
            }
            // The last beat's number, or the cursor's in its place, is there; so are both captions.
            const QImage picture = pictureOf(deck.graph);
            QVERIFY(inkIn(picture, QRect(1180, top, 18, 14)) > 10);
            QVERIFY(inkIn(picture, QRect(1100, 522, 98, 17)) > 100);
            QVERIFY(inkIn(picture, QRect(2, 522, 80, 17)) > 100);
        }
    }
    void theCursorsNumberIsWholeAtTheEdges() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, lowGraph);
        setting().setGraphGrid(false);
        showBeats(deck, 0.0, 16.0);
        const int top = int(deck.graph.layoutPixels().plotBottom) + textTop;
        const auto ink = [&](double cursor) {
            deck.setCursor(cursor * beatLength());
            return inkIn(pictureOf(deck.graph), QRect(0, top, 1200, 16));
        };
        // Every number of these has the digits of 11.11 alone.
        const int whole = ink(11.11);
        QVERIFY(whole > 30);
        showBeats(deck, 0.0, 11.11);
        QVERIFY(std::abs(ink(11.11) - whole) <= 12); // smoothed otherwise
        showBeats(deck, 0.0, 11.0);
        QCOMPARE(ink(11.11), 0); // beside the graph
    }
    void noTextLiesOverTheWaveBar() {
        setting().setLatency(true);
        DeckGraph deck(ModelGraph::INPUT_DECKA, {1200, 540});
        giveWave(deck.graph);
        deck.graph.ringBufferLatencyMs(1.3, 3, 32);
        showBeats(deck, 0.0, 16.0);
        deck.setCursor(10.5 * beatLength());
        const WithAndWithout pictures(deck.graph);
        const GraphLayout& layout = deck.graph.layoutPixels();
        QVERIFY(layout.hasWaveBar());
        const QRect bar(0, layout.waveBarTop, 1200, 540 - layout.waveBarTop);
        QCOMPARE(pictures.with.copy(bar), pictures.without.copy(bar));
        // Both captions stand in the row above, and no number lies on them.
        const int top = int(layout.plotBottom) + textTop;
        const int height = layout.labelBottom - top;
        QVERIFY(inkIn(pictures.with, QRect(1100, top, 97, height)) > 100);
        QVERIFY(inkIn(pictures.with, QRect(3, top, 60, height)) > 100);
        const int last = int(deck.scale().mapX(14.0 * beatLength()));
        QVERIFY(inkIn(pictures.with, QRect(last - 8, top, 16, height)) > 5);
        // The cursor's number keeps its place there too.
        deck.setCursor(15.3 * beatLength());
        const WithAndWithout atCaption(deck.graph);
        const int x = int(deck.scale().mapX(15.3 * beatLength()));
        const QRect around(x - 17, top, 34, height);
        QCOMPARE(atCaption.with.copy(around), atCaption.without.copy(around));
    }

    void theValuesOfALowGraphDontTouch() {
        for (const auto display : {ModelDisplay::NORMAL, ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
            mode().setDisplayMode(display);
            for (const int height : {540, 270, 200, 170, 145}) {
                DeckGraph deck(ModelGraph::INPUT_DECKA, {1200, height});
                addPoints(deck.main, 2000, 64.0, [](int i, CurvePoint& p) { p.position = i * 10.0; });
                deck.graph.setXRange({0, 128000});
                deck.setCursor(-1e6);
                const QImage picture = pictureOf(deck.graph);
                const Stacked values = stackedTexts(picture, height - 22);
                QVERIFY2(values.texts.size() >= 2, qPrintable(QString::number(values.texts.size())));
                for (const int text : values.texts) {
                    QVERIFY2(text <= 12, qPrintable(QString::number(text)));
                }
                for (const int gap : values.gaps) {
                    QVERIFY2(gap >= 3, qPrintable(QStringLiteral("%1 at %2").arg(gap).arg(height)));
                }
                if (display == ModelDisplay::PHRASING && height >= 270) {
                    QCOMPARE(values.texts.size(), std::size_t{11}); // those that have room stay
                }
            }
        }
    }
    void theValuesThatAreShownStayThoseWhileTheRangeMoves() {
        DeckGraph deck(ModelGraph::INPUT_DECKA, lowGraph);
        addPoints(deck.main, 2000, 64.0, [](int i, CurvePoint& p) { p.position = i * 8.0; });
        deck.setCursor(-1e6);
        for (const int from : {0, 6400, 12800}) {
            deck.graph.setXRange({from, from + 110000});
            const QImage picture = pictureOf(deck.graph);
            QVERIFY(deck.graph.yRange().span() < 20000.0); // a line each thousand
            for (double value = 6000.0; value <= 14000.0; value += 1000.0) {
                const int y = int(deck.scale().mapY(value));
                QCOMPARE(inkIn(picture, QRect(0, y - 2, 38, 4)) > 0, std::fmod(value, 2000.0) == 0.0);
            }
        }
    }
    void longValuesKeepClearOfTheAxis() {
        for (const double start : {1234560.0, -1234560.0, 98765430.0}) {
            DeckGraph deck(ModelGraph::INPUT_DECKA, {1200, 540});
            addPoints(deck.main, 2000, 64.0,
                      [start](int i, CurvePoint& p) { p.position = start + i / 100.0; });
            deck.graph.setXRange({-20000, 128000}); // the curve keeps clear of the axis
            deck.setCursor(-1e6);
            const QImage picture = pictureOf(deck.graph);
            QVERIFY(inkIn(picture, QRect(3, 40, 38, 440)) > 500);
            QCOMPARE(inkIn(picture, QRect(42, 40, 1, 440)), 0);
            QCOMPARE(inkIn(picture, QRect(0, 40, 2, 440)), 0);
        }
    }

    void theCursorIsAsWideInEveryColumn_data() {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("pixels");
        QTest::newRow("100 %") << 1.0 << 1;
        QTest::newRow("125 %") << 1.25 << 1;
        QTest::newRow("150 %") << 1.5 << 2;
        QTest::newRow("175 %") << 1.75 << 2;
        QTest::newRow("200 %") << 2.0 << 2;
    }
    void theCursorIsAsWideInEveryColumn() {
        QFETCH(double, ratio);
        QFETCH(int, pixels);
        setting().setGraphGrid(false);
        DeckGraph deck(ModelGraph::INPUT_DECKA, lowGraph);
        deck.graph.setXRange({0, 115500});
        for (int column = 100; column < 120; ++column) {
            deck.setCursor((column - 45) * 100.0 + 50.0);
            const QImage picture = pictureOf(deck.graph, ratio);
            const int row = int(150 * ratio);
            std::vector<int> red;
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, row) != ground) {
                    QCOMPARE(picture.pixelColor(x, row), QColor(255, 0, 0));
                    red.push_back(x);
                }
            }
            QCOMPARE(int(red.size()), pixels);
            QCOMPARE(red.back() - red.front() + 1, pixels);
            QVERIFY(std::abs((red.front() + red.back() + 1) / 2.0 - column * ratio) <= ratio);
        }
    }
};

GRAMO_TEST_MAIN(TestQWPainterLabels)
#include "tst_qwpainter_labels.moc"
