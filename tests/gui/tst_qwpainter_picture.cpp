// What the graph looks like: colours of single pixels and the sameness of pictures, away from all fonts.
#include "gui/support/deckgraph.h"
#include "painter/soundstrip.h"
#include "state/pathfile.h"
#include "support/testmain.h"

#include <QTest>

#include <algorithm>
#include <cmath>

namespace {

constexpr double step = 64.0;
const QColor ground(43, 43, 43);
const QColor grey(175, 176, 177);

// Straight curves at position 0: with a range below 200 the plot runs from -30 to 70.
void level(int, CurvePoint& p) {
    p.position = 0.0;
}
void levelClosed(int, CurvePoint& p) {
    p.soundOn = 0;
}

QColor at(const QImage& image, double x, double y) {
    const double ratio = image.devicePixelRatio();
    return image.pixelColor(int(std::floor((x + 0.5) * ratio)), int(std::floor((y + 0.5) * ratio)));
}

// Half of the ground shows through a strip's alpha of 100.
QColor onGround(const QColor& color) {
    const auto mix = [&](int over, int under) { return (over * 100 + under * 155) / 255; };
    return QColor(mix(color.red(), 43), mix(color.green(), 43), mix(color.blue(), 43));
}

bool near(const QColor& a, const QColor& b, int tolerance = 2) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

int countOf(const QImage& image, const QRect& where, const QColor& color) {
    int count = 0;
    for (int y = where.top(); y <= where.bottom(); ++y) {
        for (int x = where.left(); x <= where.right(); ++x) {
            count += near(at(image, x, y), color, 1) ? 1 : 0;
        }
    }
    return count;
}

// Pixels of the column that aren't ground.
int inkInColumn(const QImage& image, int x, int top, int bottom) {
    int ink = 0;
    for (int y = top; y <= bottom; ++y) {
        ink += near(at(image, x, y), ground) ? 0 : 1;
    }
    return ink;
}

} // namespace

class TestQWPainterPicture : public QObject {
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
        // Of what lies below and above the curves each test shows what it is about.
        setting().setGraphLogo(false);
        setting().setGraphGrid(false);
        setting().setGraphVinylPosition(false);
    }

    void anEmptyPlotIsGroundAndCursor_data() { ratios(); }
    void anEmptyPlotIsGroundAndCursor() {
        QFETCH(double, ratio);
        DeckGraph deck;
        deck.graph.setXRange({0, 1155 * 100});
        deck.setCursor(500 * 100.0);
        const QImage picture = pictureOf(deck.graph, ratio);
        QCOMPARE(at(picture, 544.75, 35), QColor(255, 0, 0));
        QCOMPARE(at(picture, 544.75, 247), QColor(255, 0, 0));
        QCOMPARE(at(picture, 544.75, 459), QColor(255, 0, 0));
        QCOMPARE(at(picture, 544.75, 33), ground);
        for (const int x : {0, 45, 300, 543, 547, 1199}) {
            QCOMPARE(inkInColumn(picture, x, 0, 460), 0);
        }
    }
    void theCursorStandsAtNinetySixPercentWhileFollowing() {
        DeckGraph deck;
        mode().modeCurrentTimerAutoresize_on();
        for (const double cursor : {0.0, 48000.0, 1234567.0, 99999999.0}) {
            deck.setCursor(cursor);
            const QImage picture = pictureOf(deck.graph);
            QCOMPARE(at(picture, 45 + int(0.96 * 1155), 300), QColor(255, 0, 0));
        }
    }

    void whatSoundsIsThickAndInTheDecksColour_data() { ratios(); }
    void whatSoundsIsThickAndInTheDecksColour() {
        QFETCH(double, ratio);
        for (const auto name : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
            DeckGraph deck(name);
            addPoints(deck.main, 2000, step, level);
            deck.graph.setXRange({0, 128000});
            const QImage picture = pictureOf(deck.graph, ratio);
            QCOMPARE(deck.graph.yRange(), (GraphRange{-30.0, 70.0}));
            const QColor color = name == ModelGraph::INPUT_DECKA ? QColor(0, 255, 0) : QColor(0, 255, 255);
            const double y = std::trunc(deck.scale().mapY(0.0)); // 332: rows 328 to 335
            for (const int x : {100, 333, 700, 1100}) {
                for (const double row : {-3.0, -1.0, 0.0, 2.0}) {
                    QCOMPARE(at(picture, x, y + row), color);
                }
                QCOMPARE(at(picture, x, y - 6.0), ground);
                QCOMPARE(at(picture, x, y + 5.0), ground);
            }
        }
    }
    void theThicknessIsTheUsersChoice() {
        setting().setCurveOnSize(2);
        DeckGraph deck;
        addPoints(deck.main, 2000, step, level);
        deck.graph.setXRange({0, 128000});
        QCOMPARE(inkInColumn(pictureOf(deck.graph), 500, 40, 459), 2);
        setting().setCurveOnSize(12);
        QCOMPARE(inkInColumn(pictureOf(deck.graph), 500, 40, 459), 12);
    }
    void aClosedFaderIsOnePixelWide() {
        DeckGraph deck;
        addPoints(deck.main, 2000, step, levelClosed);
        deck.graph.setXRange({0, 128000});
        const QImage picture = pictureOf(deck.graph);
        const int y = int(deck.scale().mapY(0.0));
        // One pixel, smoothed over the two rows that it lies between.
        QCOMPARE(inkInColumn(picture, 500, 40, 459), 2);
        QVERIFY(at(picture, 500, y).green() > 130);
        QVERIFY(at(picture, 500, y - 1).green() > 130);
    }
    void aClosedFaderVanishesByOptionButForTheStrip() {
        setting().setGraphCurveCrossFaderOff(false);
        DeckGraph deck;
        addPoints(deck.main, 2000, step, levelClosed);
        deck.graph.setXRange({0, 128000});
        const QImage picture = pictureOf(deck.graph);
        QCOMPARE(inkInColumn(picture, 500, 40, 459), 0);
        QVERIFY(near(at(picture, 500, 28), onGround(QColor(0, 255, 0))));
    }
    void aClosedFaderMayBeInverted() {
        setting().setGraphCurveCrossFaderOffInvertColor(true);
        DeckGraph deck;
        addPoints(deck.main, 2000, step, levelClosed);
        deck.graph.setXRange({0, 128000});
        const QImage closed = pictureOf(deck.graph);
        const QColor pixel = at(closed, 500, int(deck.scale().mapY(0.0)));
        QVERIFY(pixel.red() > 130 && pixel.blue() > 130 && pixel.green() < 43);
        // The deck sounds in its own colour.
        addPoints(deck.main, 1000, step);
        deck.graph.setXRange({100000, 192000});
        const QImage open = pictureOf(deck.graph);
        QCOMPARE(at(open, 1000, int(deck.scale().mapY(0.0))), QColor(0, 255, 0));
    }
    void aCutChangesThePenAtItsPoint() {
        DeckGraph deck;
        addPoints(deck.main, 2000, step, [](int i, CurvePoint& p) { p.soundOn = i < 1000 ? 1 : 0; });
        deck.graph.setXRange({0, 128000});
        const QImage picture = pictureOf(deck.graph);
        const int cut = int(deck.scale().column(1000 * step));
        QVERIFY(inkInColumn(picture, cut - 12, 40, 459) >= 8);
        QCOMPARE(inkInColumn(picture, cut + 12, 40, 459), 2);
    }

    void theStripShowsTheFader_data() { ratios(); }
    void theStripShowsTheFader() {
        QFETCH(double, ratio);
        DeckGraph deck;
        addPoints(deck.main, 2000, step, [](int i, CurvePoint& p) { p.soundOn = i / 400 % 2 == 0 ? 1 : 0; });
        deck.graph.setXRange({0, 128000});
        const QImage picture = pictureOf(deck.graph, ratio);
        const QColor strip = onGround(QColor(0, 255, 0));
        const int firstCut = int(deck.scale().column(400 * step));
        for (const int x : {100, firstCut - 4}) {
            QVERIFY(near(at(picture, x, 10), strip));
            QVERIFY(near(at(picture, x, 29), strip));
            QCOMPARE(at(picture, x, 7), ground);
            QCOMPARE(at(picture, x, 32), ground);
        }
        for (const int x : {firstCut + 4, firstCut + 100}) {
            QCOMPARE(at(picture, x, 10), ground);
            QCOMPARE(at(picture, x, 25), ground);
            QVERIFY(near(at(picture, x, 28), strip));
        }
        QCOMPARE(at(picture, 43, 20), ground);
    }
    void aReferenceHasAHigherStrip() {
        training().setActivatedMode(ModelActivatedMode::Training);
        DeckGraph deck(ModelGraph::INPUT_DECKB);
        addPoints(deck.secondary, 2000, step, level);
        deck.graph.setXRange({0, 128000});
        const QImage picture = pictureOf(deck.graph);
        QVERIFY(near(at(picture, 500, 5), onGround(QColor(0, 255, 255))));
        QCOMPARE(at(picture, 500, 2), ground);
    }

    void theLiveCurveLiesAboveTheReference() {
        training().setActivatedMode(ModelActivatedMode::Recording);
        DeckGraph deck;
        addPoints(deck.main, 1000, step, level);
        addPoints(deck.secondary, 2000, step, level);
        deck.graph.setXRange({0, 128000});
        const QImage picture = pictureOf(deck.graph);
        const int y = int(deck.scale().mapY(0.0));
        QCOMPARE(at(picture, 300, y), QColor(0, 255, 0));
        QCOMPARE(at(picture, 900, y), QColor(0, 105, 0));
    }
    void aLooperShowsNoReference() {
        DeckGraph deck;
        addPoints(deck.secondary, 2000, step, level);
        deck.graph.setXRange({0, 128000});
        const QImage picture = pictureOf(deck.graph);
        QCOMPARE(inkInColumn(picture, 900, 0, 459), 0);
    }
    void aReferenceThatStartsBelowIsLiftedToTheLiveCurve() {
        training().setActivatedMode(ModelActivatedMode::Training);
        DeckGraph deck;
        addPoints(deck.main, 1000, step, [](int, CurvePoint& p) { p.position = 1000.0; });
        addPoints(deck.secondary, 2000, step, level);
        deck.graph.setXRange({0, 128000});
        const QImage picture = pictureOf(deck.graph);
        QCOMPARE(deck.graph.yRange(), (GraphRange{970.0, 1070.0}));
        QCOMPARE(at(picture, 900, int(deck.scale().mapY(1000.0))), QColor(0, 105, 0));
    }
    void aReferenceThatStartsAboveIsGone() {
        training().setActivatedMode(ModelActivatedMode::Training);
        DeckGraph deck;
        addPoints(deck.main, 1000, step, level);
        addPoints(deck.secondary, 2000, step, [](int, CurvePoint& p) { p.position = 1000.0; });
        deck.graph.setXRange({0, 128000});
        const QImage picture = pictureOf(deck.graph);
        QCOMPARE(inkInColumn(picture, 900, 31, 459), 0);
        QVERIFY(inkInColumn(picture, 900, 0, 30) > 0); // its strip stays
    }
    void aReferenceIsNotDrawnThroughThePlotOfALooperInAnglesEither() {
        mode().setDisplayMode(ModelDisplay::DRUMMING);
        DeckGraph deck;
        addPoints(deck.secondary, 2000, step, level);
        deck.graph.setXRange({0, 128000});
        QCOMPARE(inkInColumn(pictureOf(deck.graph), 900, 0, 459), 0);
    }

    void theCurveEndsAtItsLastPoints() {
        DeckGraph deck;
        addPoints(deck.main, 1003, step, level); // a stride that doesn't meet the end
        deck.graph.setXRange({0, 128000});
        const QImage picture = pictureOf(deck.graph);
        const int end = int(deck.scale().column(1002 * step));
        QVERIFY(inkInColumn(picture, end, 40, 459) >= 6);
        QCOMPARE(inkInColumn(picture, end + 6, 40, 459), 0);
    }
    void theLogoStandsAboveTheLowerLeftCorner() {
        setting().setGraphLogo(true);
        DeckGraph deck(ModelGraph::INPUT_DECKA, {1200, 600}); // plotBottom 560
        deck.setCursor(-1e6);
        const QImage with = pictureOf(deck.graph);
        setting().setGraphLogo(false);
        const QImage without = pictureOf(deck.graph);
        QRect differs;
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x) {
                if (with.pixel(x, y) != without.pixel(x, y)) {
                    differs |= QRect(x, y, 1, 1);
                }
            }
        }
        QVERIFY(QRect(65, 140, 400, 400).contains(differs));
        QVERIFY(differs.width() > 300 && differs.height() > 300);
    }
    void theLogoStandsWhereItBelongs_data() { ratios(); }
    void theLogoStandsWhereItBelongs() {
        QFETCH(double, ratio);
        setting().setGraphLogo(true);
        for (const int height : {600, 301}) { // in its full size, and as high as a low plot has room
            DeckGraph deck(ModelGraph::INPUT_DECKA, {900, height});
            deck.setCursor(-1e7);
            const int plotBottom = height - 40;
            const int side = int(std::lround(std::min(400, plotBottom - 35 - 20) * ratio));
            const QImage logo = pathIcon(QStringLiteral("graphlogo/Logo - Gramo Works-WhiteDark.png"))
                                    .toImage()
                                    .scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            QImage expected((QSizeF(900, height) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
            expected.fill(ground);
            QPainter(&expected).drawImage(qRound(65 * ratio),
                                          qRound((plotBottom - 20) * ratio) - logo.height(), logo);
            expected.setDevicePixelRatio(ratio);
            QCOMPARE(pictureOf(deck.graph, ratio), expected);
        }
    }
    void theLogoIsThatOfTheStyle() {
        setting().setGraphLogo(true);
        const QString before = setting().style();
        DeckGraph deck(ModelGraph::INPUT_DECKA, {900, 600});
        deck.setCursor(-1e7);
        const QImage first = pictureOf(deck.graph);
        setting().setStyle(QStringLiteral("RedGuillotine"));
        deck.graph.initIcon();
        const QImage red = pictureOf(deck.graph);
        QVERIFY(red != first);
        setting().setStyle(before);
        deck.graph.initIcon();
        QCOMPARE(pictureOf(deck.graph), first);
    }
    void aLowGraphHasASmallLogo() {
        setting().setGraphLogo(true);
        DeckGraph deck(ModelGraph::INPUT_DECKA, {1200, 270});
        const QImage picture = pictureOf(deck.graph);
        QCOMPARE(countOf(picture, QRect(50, 0, 500, 35), ground), 500 * 35);
    }
    void theTagNumberIsLargeInTheUpperHalf() {
        DeckGraph deck;
        const QRect upper(500, 0, 200, 250);
        deck.setCursor(-1e6);
        QCOMPARE(countOf(pictureOf(deck.graph), upper, QColor(95, 96, 97)), 0);
        deck.graph.drawTagNumber_4();
        QVERIFY(countOf(pictureOf(deck.graph), upper, QColor(95, 96, 97)) > 100);
    }
    void theCountInIsLargeInTheMiddle() {
        DeckGraph deck;
        const QRect middle(500, 150, 200, 200);
        deck.setCursor(-1e6);
        QCOMPARE(countOf(pictureOf(deck.graph), middle, grey), 0); // -1 at start
        deck.graph.showCountIn(3);
        const int large = countOf(pictureOf(deck.graph), middle, grey);
        QTRY_COMPARE(deck.graph.countIn().scale(), 1.0F);
        const int small = countOf(pictureOf(deck.graph), middle, grey);
        QVERIFY(large > 2 * small && small > 200);
        deck.graph.showCountIn(0);
        QCOMPARE(countOf(pictureOf(deck.graph), middle, grey), 0);
    }
    void theLatencyStandsBelowThePlotIfItIsWanted() {
        DeckGraph deck;
        const QRect caption(0, 482, 200, 18); // below the numbers of the beats
        const auto ink = [&] { return 200 * 18 - countOf(pictureOf(deck.graph), caption, ground); };
        deck.setCursor(-1e6);
        deck.graph.ringBufferLatencyMs(1.0, 3, 32);
        setting().setGraphGrid(true);
        QCOMPARE(ink(), 0);
        setting().setLatency(true);
        QVERIFY(ink() > 50);
        setting().setGraphGrid(false); // the labels go with the grid
        QCOMPARE(ink(), 0);
    }

    // The widget that has followed the cursor for a while shows what a new one shows.
    void whatHasScrolledIsWhatIsDrawnFromScratch_data() { ratios(); }
    void whatHasScrolledIsWhatIsDrawnFromScratch() {
        QFETCH(double, ratio);
        training().setActivatedMode(ModelActivatedMode::Training);
        mode().modeCurrentTimerAutoresize_on();
        const auto scratch = [](int i, CurvePoint& p) {
            p.position = 800.0 * std::sin(i * 0.013);
            p.soundOn = i / 150 % 3 != 0 ? 1 : 0;
        };
        DeckGraph old(ModelGraph::INPUT_DECKA, {900, 300});
        addPoints(old.secondary, 9000, step, scratch);
        addPoints(old.main, 6000, step, scratch);
        double cursor = 6000 * step;
        for (int frame = 0; frame < 40; ++frame) {
            addPoints(old.main, 12, step, scratch);
            cursor += 800.0;
            old.setCursor(cursor);
            const QImage scrolled = pictureOf(old.graph, ratio);
            if (frame % 8 == 7) {
                DeckGraph fresh(ModelGraph::INPUT_DECKA, {900, 300});
                addPoints(fresh.secondary, 9000, step, scratch);
                addPoints(fresh.main, int(old.main.size()), step, scratch);
                fresh.setCursor(cursor);
                QCOMPARE(scrolled, pictureOf(fresh.graph, ratio));
            }
        }
    }
    void thePictureIsTheSameOnAndOffTheScreen() {
        DeckGraph deck;
        addPoints(deck.main, 2000, step,
                  [](int i, CurvePoint& p) { p.position = 300.0 * std::sin(i * 0.02); });
        deck.graph.setXRange({0, 128000});
        const QImage hidden = pictureOf(deck.graph);
        deck.graph.show();
        QVERIFY(QTest::qWaitForWindowExposed(&deck.graph));
        QCOMPARE(deck.graph.grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied), hidden);
    }
};

GRAMO_TEST_MAIN(TestQWPainterPicture)
#include "tst_qwpainter_picture.moc"
