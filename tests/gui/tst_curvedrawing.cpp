#include "painter/curvedrawing.h"

#include "gui/support/curves.h"
#include "painter/curveoffset.h"

#include <QImage>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double step = 10.0; // one point a pixel on the scale below

GraphScale scale() {
    return {GraphLayout::of(1200, 500, false, false), {0.0, 1155.0 * step}, {0.0, 425.0}, false};
}

QImage drawn(const CurvePointStore& store, CurveStretch stretch, double offset = 0.0,
             ModelGraph::EnumGraph item = ModelGraph::INPUT_DECKA) {
    QImage picture(1200, 500, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const GraphScale s = scale();
    GraphOptions options;
    options.curveOnSize = 8;
    options.curveCrossFaderOff = true;
    const CurveExtract curve{item, store.view(), stretch};
    SegmentDrawing drawing;
    for (const CurveSegment& segment : NormalLine(curve, s, offset).all()) {
        drawing.draw(painter, QRectF(picture.rect()), curve, options, segment);
    }
    return picture;
}

std::vector<CurveSegment> segmentsOf(const CurvePointStore& store, CurveStretch stretch) {
    return NormalLine({ModelGraph::INPUT_DECKA, store.view(), stretch}, scale(), 0.0).all();
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
    void aReferenceThatStartsAboveIsGone() {
        CurvePointStore main;
        CurvePointStore reference;
        addPoints(main, 100, step, [](int, CurvePoint& p) { p.position = 100.0; });
        addPoints(reference, 100, step, [](int, CurvePoint& p) { p.position = 101.0; });
        const double offset = referenceOffset(main.view(), reference.view());
        QVERIFY(offset > 1.8e19);
        const QImage with = drawn(reference, {0, 99}, offset, ModelGraph::INPUT_1);
        QImage empty(with.size(), with.format());
        empty.fill(Qt::black);
        QCOMPARE(with, empty);
    }
    void strideOneDrawsTheLastSegmentTwice() {
        CurvePointStore store;
        addPoints(store, 5, 3.0 * step, [](int i, CurvePoint& p) { p.position = 10.0 * i; });
        const auto segments = segmentsOf(store, {0, 4});
        // From the first point to itself, four lines, and the tail back to the point before the last.
        QCOMPARE(segments.size(), std::size_t{6});
        QCOMPARE(segments[0].line, QLineF(48, 460, 48, 460));
        QCOMPARE(segments[4].line, QLineF(57, 430, 60, 420));
        QCOMPARE(segments[4].point, std::size_t{4});
        QCOMPARE(segments[5].line, QLineF(60, 420, 57, 430));
        QCOMPARE(segments[5].point, std::size_t{3});
    }
    void theTailReachesThePointBeforeTheEndOfTheStretch() {
        CurvePointStore store;
        // Ten points a pixel: a stride of 20 becomes 32.
        addPoints(store, 2001, step / 10.0, [](int i, CurvePoint& p) { p.position = i % 400; });
        const auto segments = segmentsOf(store, {5, 1990});
        QCOMPARE(segments[0].point, std::size_t{32});
        QCOMPARE(segments[0].line.x1(), scale().column(store.view()[5].time));
        QCOMPARE(segments[segments.size() - 2].point, std::size_t{1984});
        QCOMPARE(segments.back().point, std::size_t{1989});
        QCOMPARE(segments.back().line.p1(), segments[segments.size() - 2].line.p2());
        QCOMPARE(segments.back().line.x2(), scale().column(store.view()[1989].time));
    }
    void noTailWhereTheLastPixelIsThere() {
        CurvePointStore store;
        addPoints(store, 101, step / 10.0);
        // A stride of 21 becomes 32; 96 and 98 share a pixel.
        const auto segments = segmentsOf(store, {0, 99});
        QCOMPARE(segments.back().point, std::size_t{96});
    }
    void pixelsAreWhole() {
        CurvePointStore store;
        addPoints(store, 50, step * 1.37,
                  [](int i, CurvePoint& p) { p.position = 200.0 + 99.9 * std::sin(i); });
        for (const CurveSegment& segment : segmentsOf(store, {0, 49})) {
            QCOMPARE(segment.line.x2(), std::trunc(segment.line.x2()));
            QCOMPARE(segment.line.y2(), std::trunc(segment.line.y2()));
        }
    }
    void brokenPointsDrawNothing() {
        const double none = std::numeric_limits<double>::quiet_NaN();
        const double endless = std::numeric_limits<double>::infinity();
        CurvePointStore store;
        addPoints(store, 50, step, [&](int i, CurvePoint& p) {
            p.position = i % 3 == 0 ? none : i % 3 == 1 ? endless : -1e300;
        });
        QImage empty(1200, 500, QImage::Format_ARGB32_Premultiplied);
        empty.fill(Qt::black);
        QCOMPARE(drawn(store, {0, 49}), empty);
    }
    void aFarPointIsReachedByALineUpright() {
        CurvePointStore store;
        addPoints(store, 50, step, [](int i, CurvePoint& p) { p.position = i < 25 ? 100.0 : 1e12; });
        const QImage picture = drawn(store, {0, 49});
        QCOMPARE(picture.pixelColor(71, 200), QColor(0, 255, 0)); // the way up between points 24 and 25
        QCOMPARE(picture.pixelColor(90, 200), QColor(Qt::black));
    }
};

QTEST_MAIN(TestCurveDrawing)
#include "tst_curvedrawing.moc"
