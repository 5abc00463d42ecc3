#include "painter/curvelayer.h"

#include "gui/support/curves.h"

#include <QImage>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr int width = 700;
constexpr int height = 300;
constexpr double span = 300000.0; // frames shown
constexpr double pointStep = 64.0;

GraphOptions thickAndThin() {
    GraphOptions options;
    options.curveOnSize = 8;
    options.curveCrossFaderOff = true;
    return options;
}

GraphScale scaleAt(double cursor, bool following = true, GraphRange y = {-1100.0, 1100.0}) {
    const double xMin = std::trunc(cursor - 0.96 * span);
    return {GraphLayout::of(width, height, false, false), {xMin, xMin + span}, y, following};
}

// A hand that scratches with cuts.
void scratch(int i, CurvePoint& p) {
    p.position = 700.0 * std::sin(i * 0.011) + 350.0 * std::sin(i * 0.043);
    p.soundOn = i / 170 % 3 != 0 ? 1 : 0;
}

std::optional<CurveExtract> extractAt(const CurvePointStore& store, const GraphScale& scale) {
    const auto points = store.view();
    std::size_t first = 0;
    while (first + 1 < points.size() && points[first].time < scale.x().min) {
        ++first;
    }
    std::size_t last = points.size() - 1;
    while (last > first && points[last].time >= scale.x().max) {
        --last;
    }
    const auto stretch = curveStretch(points, first, last);
    return stretch ? std::optional(CurveExtract{ModelGraph::INPUT_DECKA, points, *stretch}) : std::nullopt;
}

/// A piece of a screen with that pixel ratio, on which the graph's corner lies at `corner`.
struct Screen {
    double ratio = 1.0;
    QPointF corner;

    template <typename Draw>
    QImage draw(const GraphScale& scale, const GraphOptions& options, Draw draw) const {
        QImage image(int(std::ceil(width * ratio)) + 20, int(std::ceil(height * ratio)) + 20,
                     QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(QColor(43, 43, 43));
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.translate(corner);
        draw(CurveScene{painter, scale, options, QRectF(0, 0, width, height)});
        return image;
    }
    QImage layered(CurveLayer& layer, const CurvePointStore& store, const GraphScale& scale,
                   const GraphOptions& options = thickAndThin()) const {
        return draw(scale, options, [&](const CurveScene& scene) {
            if (const auto curve = extractAt(store, scale)) {
                layer.draw(scene, *curve, 0.0);
            }
        });
    }
    QImage fromScratch(const CurvePointStore& store, const GraphScale& scale,
                       const GraphOptions& options = thickAndThin()) const {
        CurveLayer fresh;
        return layered(fresh, store, scale, options);
    }
    /// Each line straight onto the screen.
    QImage direct(const CurvePointStore& store, const GraphScale& scale) const {
        const GraphOptions options = thickAndThin();
        return draw(scale, options, [&](const CurveScene& scene) {
            SegmentDrawing drawing;
            const auto curve = extractAt(store, scale);
            for (const CurveSegment& segment : NormalLine(*curve, scale, 0.0).all()) {
                drawing.draw(scene.painter, scene.view, *curve, options, segment);
            }
        });
    }
};

int largestDifference(const QImage& a, const QImage& b) {
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return largest;
}

} // namespace

class TestCurveLayer : public QObject {
    Q_OBJECT

    static void screens() {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QPointF>("corner");
        QTest::newRow("100 %") << 1.0 << QPointF(0, 0);
        QTest::newRow("125 %") << 1.25 << QPointF(0, 0);
        QTest::newRow("125 %, off the pixel grid") << 1.25 << QPointF(3, 1);
        QTest::newRow("150 %, off the pixel grid") << 1.5 << QPointF(1, 3);
        QTest::newRow("200 %") << 2.0 << QPointF(5, 0);
        QTest::newRow("110 %") << 1.1 << QPointF(0, 0);
    }

private Q_SLOTS:
    void aMovedPictureIsThatOfADrawingFromScratch_data() { screens(); }
    void aMovedPictureIsThatOfADrawingFromScratch() {
        QFETCH(double, ratio);
        QFETCH(QPointF, corner);
        const Screen screen{ratio, corner};
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        double cursor = 6000 * pointStep + 900.0;
        for (int frame = 0; frame < 80; ++frame) {
            addPoints(store, 12 + frame % 3, pointStep, scratch);
            cursor += 800.0;
            const GraphScale scale = scaleAt(cursor);
            QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
        }
        // 110 % has no picture to move; the others draw one for each step between two device pixels.
        QVERIFY(layer.redraws() <= 4);
    }
    void thePictureIsThatOfTheSingleLines_data() { screens(); }
    void thePictureIsThatOfTheSingleLines() {
        QFETCH(double, ratio);
        QFETCH(QPointF, corner);
        const Screen screen{ratio, corner};
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        for (const bool following : {true, false}) {
            const GraphScale scale = scaleAt(6000 * pointStep, following);
            // Only the rounding of the colours differs.
            QVERIFY(largestDifference(screen.fromScratch(store, scale), screen.direct(store, scale)) <= 2);
        }
    }
    void aFewPointsFarApartAreDrawnAlike() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 5, 40000.0, [](int i, CurvePoint& p) { p.position = i % 2 == 0 ? 500.0 : -500.0; });
        CurveLayer layer;
        for (double cursor = 200000.0; cursor < 480000.0; cursor += 800.0) {
            const GraphScale scale = scaleAt(cursor);
            QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
        }
    }
    // As a reference does: its points are all there and come into view at the right edge.
    void aCurveThatGoesOnBeyondTheRightEdgeScrollsIn_data() { screens(); }
    void aCurveThatGoesOnBeyondTheRightEdgeScrollsIn() {
        QFETCH(double, ratio);
        QFETCH(QPointF, corner);
        const Screen screen{ratio, corner};
        CurvePointStore store;
        addPoints(store, 9000, pointStep, scratch);
        CurveLayer layer;
        for (double cursor = 300000.0; cursor < 350000.0; cursor += 800.0) {
            const GraphScale scale = scaleAt(cursor);
            QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
        }
        QVERIFY(layer.redraws() <= 4);
    }
    // All points lie in one column: the stride passes over the stretch and over the curve's end.
    void aStretchWithoutAChosenPointIsItsTail() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 100, 0.5, [](int i, CurvePoint& p) { p.position = i; });
        const GraphScale scale = scaleAt(100000.0);
        const CurveExtract curve{ModelGraph::INPUT_DECKA, store.view(), {1, 99}};
        QVERIFY(!NormalLine(curve, scale, 0.0).lastChosen());
        QCOMPARE(NormalLine(curve, scale, 0.0).all().size(), std::size_t{1});
        CurveLayer layer;
        const QImage picture = screen.draw(scale, thickAndThin(),
                                           [&](const CurveScene& scene) { layer.draw(scene, curve, 0.0); });
        QImage empty(picture.size(), picture.format());
        empty.setDevicePixelRatio(1.0);
        empty.fill(QColor(43, 43, 43));
        QVERIFY(picture != empty);
        QCOMPARE(layer.redraws(), 0U);
    }
    void theSecondPictureIsNotDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        screen.layered(layer, store, scaleAt(380000.0));
        screen.layered(layer, store, scaleAt(380000.0));
        screen.layered(layer, store, scaleAt(390000.0));
        QCOMPARE(layer.redraws(), 1U);
    }
    void aJumpBackIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        screen.layered(layer, store, scaleAt(390000.0));
        const GraphScale back = scaleAt(200000.0);
        QCOMPARE(screen.layered(layer, store, back), screen.fromScratch(store, back));
        QCOMPARE(layer.redraws(), 2U);
    }
    void anotherValueRangeIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        screen.layered(layer, store, scaleAt(390000.0));
        const GraphScale taller = scaleAt(390000.0, true, {-2000.0, 2000.0});
        QCOMPARE(screen.layered(layer, store, taller), screen.fromScratch(store, taller));
    }
    void aFixedViewThatMovesIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        for (const double cursor : {380000.0, 380001.0, 390000.0}) {
            const GraphScale scale = scaleAt(cursor, false);
            QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
        }
        QCOMPARE(layer.redraws(), 3U);
    }
    void aChangedOptionIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        screen.layered(layer, store, scale);
        GraphOptions thin = thickAndThin();
        thin.curveOnSize = 2;
        thin.curveCrossFaderOff = false;
        QCOMPARE(screen.layered(layer, store, scale, thin), screen.fromScratch(store, scale, thin));
    }
    void anotherSizeOfTheScreenIsDrawnAnew() {
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        for (const double ratio : {1.0, 2.0, 1.0, 1.25}) {
            const Screen screen{ratio, {}};
            QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
        }
    }
    void anEmptiedAndRefilledCurveIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        screen.layered(layer, store, scale);
        store.clear();
        addPoints(store, 6000, pointStep, [](int i, CurvePoint& p) { p.position = i % 900; });
        layer.forget();
        QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
    }
    void aRestartedCurveIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        screen.layered(layer, store, scale);
        store.restart(); // by its producer
        addPoints(store, 6000, pointStep, [](int i, CurvePoint& p) {
            scratch(i, p);
            p.soundOn = 1;
        });
        QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
    }
    void anAmendedCurveIsDrawnAnew() {
        const Screen screen;
        CurvePointStore store;
        addPoints(store, 6000, pointStep, scratch);
        CurveLayer layer;
        const GraphScale scale = scaleAt(390000.0);
        screen.layered(layer, store, scale);
        store.amend([](std::size_t, CurvePoint& p) {
            p.position += 200.0;
            return true;
        });
        QCOMPARE(screen.layered(layer, store, scale), screen.fromScratch(store, scale));
    }
};

QTEST_MAIN(TestCurveLayer)
#include "tst_curvelayer.moc"
