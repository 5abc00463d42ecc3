#include "painter/capsule.h"

#include "support/testmain.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>

namespace {

constexpr int side = 160;

QImage canvas(const QColor& ground = Qt::transparent) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(ground);
    return image;
}

CapsuleTarget whole(QImage& image) {
    return {reinterpret_cast<std::uint32_t*>(image.bits()),
            image.bytesPerLine() / 4,
            0,
            0,
            image.width(),
            image.height(),
            0,
            0};
}

QImage drawn(const Capsule& capsule, const QColor& color, const QColor& ground = Qt::transparent) {
    QImage image = canvas(ground);
    drawCapsule(whole(image), capsule, qPremultiply(color.rgba()));
    return image;
}

QImage painted(const Capsule& capsule, const QColor& color, const QColor& ground = Qt::transparent) {
    QImage image = canvas(ground);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, capsule.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawLine(QLineF(capsule.x1, capsule.y1, capsule.x2, capsule.y2));
    return image;
}

// A white line, each pixel at its edge measured at 16 x 16 places.
QImage sampled(const Capsule& capsule) {
    constexpr int places = 16;
    const double dx = capsule.x2 - capsule.x1;
    const double dy = capsule.y2 - capsule.y1;
    const double square = dx * dx + dy * dy;
    const double radius = capsule.width / 2.0;
    const auto distance = [&](double x, double y) {
        const double along = ((x - capsule.x1) * dx + (y - capsule.y1) * dy) / square;
        const double t = std::clamp(along, 0.0, 1.0);
        const double offX = x - capsule.x1 - t * dx;
        const double offY = y - capsule.y1 - t * dy;
        return std::sqrt(offX * offX + offY * offY);
    };
    const auto share = [&](int x, int y) {
        const double inside = radius - distance(x + 0.5, y + 0.5);
        if (std::abs(inside) > 1.0) {
            return inside > 0.0 ? 1.0 : 0.0;
        }
        int hits = 0;
        for (int i = 0; i < places * places; ++i) {
            hits += distance(x + (i % places + 0.5) / places, y + (i / places + 0.5) / places) <= radius;
        }
        return double(hits) / (places * places);
    };
    QImage image = canvas();
    for (int y = 0; y < side; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < side; ++x) {
            row[x] = 0x01010101U * QRgb(std::lround(share(x, y) * 255.0));
        }
    }
    return image;
}

struct Difference {
    int largest = 0;   // of a channel
    double mean = 0.0; // of the channels that either picture has drawn on
};

Difference between(const QImage& a, const QImage& b) {
    Difference result;
    double sum = 0.0;
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = reinterpret_cast<const QRgb*>(a.constScanLine(y))[x];
            const QRgb q = reinterpret_cast<const QRgb*>(b.constScanLine(y))[x];
            if (p == 0 && q == 0) {
                continue;
            }
            for (const int shift : {0, 8, 16, 24}) {
                const int u = int(p >> shift & 255U);
                const int v = int(q >> shift & 255U);
                result.largest = std::max(result.largest, std::abs(u - v));
                sum += std::abs(u - v);
                ++count;
            }
        }
    }
    result.mean = count > 0 ? sum / count : 0.0;
    return result;
}

// Of a white line through three points, drawn as two that are joined.
QImage bent(QPointF a, QPointF b, QPointF c, double width, const QColor& color = Qt::white) {
    QImage image = canvas();
    const QRgb pixel = qPremultiply(color.rgba());
    Capsule first{a.x(), a.y(), b.x(), b.y(), width};
    first.endCap = false;
    Capsule second{b.x(), b.y(), c.x(), c.y(), width};
    second.startCap = false;
    second.before = a;
    drawCapsule(whole(image), first, pixel);
    drawCapsule(whole(image), second, pixel);
    return image;
}

int alphaAt(const QImage& image, int x, int y) {
    return qAlpha(reinterpret_cast<const QRgb*>(image.constScanLine(y))[x]);
}

class Lines {
public:
    explicit Lines(unsigned seed) : m_random(seed) {}
    /// Somewhere in the middle of the canvas, with ends on quarters of a pixel.
    Capsule next(double width) {
        const auto end = [this] { return std::round(m_end(m_random) * 4.0) / 4.0; };
        const double x1 = end();
        const double y1 = end();
        const double x2 = end();
        const double y2 = end();
        return {x1, y1, x2, y2, width};
    }

private:
    std::mt19937 m_random;
    std::uniform_real_distribution<double> m_end{side * 0.3, side * 0.7};
};

} // namespace

class TestCapsule : public QObject {
    Q_OBJECT

    static void widths(double least) {
        QTest::addColumn<double>("width");
        for (const double width : {1.0, 1.25, 2.0, 3.0, 8.0, 10.0, 40.0, 100.0}) {
            if (width >= least) {
                QTest::addRow("%g", width) << width;
            }
        }
    }

private Q_SLOTS:
    void straightEdgesOnPixelBordersAreSharp() {
        const QImage image = drawn({20, 50, 120, 50, 8}, Qt::green);
        for (const int x : {30, 70, 110}) {
            for (int y = 46; y <= 53; ++y) {
                QCOMPARE(image.pixelColor(x, y), QColor(Qt::green));
            }
            QCOMPARE(image.pixelColor(x, 45).alpha(), 0);
            QCOMPARE(image.pixelColor(x, 54).alpha(), 0);
        }
    }
    void aLineOfOnePixelBetweenTwoRowsHasHalfOfBoth() {
        const QImage image = drawn({20, 50, 120, 50, 1}, Qt::green);
        QCOMPARE(image.pixelColor(70, 49).alpha(), 128);
        QCOMPARE(image.pixelColor(70, 50).alpha(), 128);
        QCOMPARE(image.pixelColor(70, 48).alpha(), 0);
        QCOMPARE(image.pixelColor(70, 51).alpha(), 0);
    }
    void theMiddleRowOfADiscIsMixedOnce() {
        for (const double width : {2.5, 9.0, 40.0}) {
            const QImage onRow = drawn({60.5, 60.5, 60.5, 60.5, width}, Qt::white);
            for (int x = 0; x < side; ++x) { // a disc is as wide as it is high
                QCOMPARE(alphaAt(onRow, x, 60), alphaAt(onRow, 60, x));
            }
        }
    }
    void theEndsMayLieAsFarOffAsPromised() {
        constexpr double far = 250'000.0;
        for (const bool left : {false, true}) {
            QImage image = canvas();
            CapsuleTarget target = whole(image);
            target.shiftX = (left ? 1 : -1) * int(far) + 80;
            drawCapsule(target, {-far, 80, far, 80, 40}, qRgb(255, 0, 0));
            QCOMPARE(alphaAt(image, left ? 61 : 98, 80), 255);
            QCOMPARE(alphaAt(image, left ? 58 : 101, 80), 0);
        }
    }
    void aLineOfNoLengthIsADisc() {
        const QImage image = drawn({60, 60, 60, 60, 20}, Qt::red);
        double area = 0.0;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                area += image.pixelColor(x, y).alphaF();
            }
        }
        QVERIFY(std::abs(area - 3.14159265 * 100.0) < 1.5);
        QCOMPARE(image.pixelColor(60, 51), QColor(Qt::red));
        QCOMPARE(image.pixelColor(60, 48).alpha(), 0);
    }

    void everyPixelTakesItsShare_data() { widths(1.0); }
    void everyPixelTakesItsShare() {
        QFETCH(double, width);
        Lines lines(7);
        int largest = 0;
        for (int i = 0; i < 40; ++i) {
            const Capsule line = lines.next(width);
            largest = std::max(largest, between(drawn(line, Qt::white), sampled(line)).largest);
        }
        // The round ends of a line as thin as a pixel are a little too heavy.
        QVERIFY2(largest <= (width < 2.0 ? 40 : 24), qPrintable(QString::number(largest)));
    }
    // The painter rounds its lines to a polygon on a grid of its own; one of a single pixel it draws quite
    // another way, thinner the more it slopes.
    void itLooksLikeThePaintersLine_data() { widths(1.25); }
    void itLooksLikeThePaintersLine() {
        QFETCH(double, width);
        Lines lines(7);
        Difference worst;
        for (int i = 0; i < 200; ++i) {
            const Capsule line = lines.next(width);
            const QColor color(40 + i % 200, 255, 10 + i % 90);
            const Difference d = between(drawn(line, color), painted(line, color));
            worst.largest = std::max(worst.largest, d.largest);
            worst.mean = std::max(worst.mean, d.mean);
        }
        QVERIFY2(worst.largest <= 48, qPrintable(QString::number(worst.largest)));
        QVERIFY2(worst.mean <= 10.0, qPrintable(QString::number(worst.mean)));
    }
    void everySlopeIsAsHeavyAsAnother() {
        for (const double width : {1.0, 2.0, 8.0}) {
            for (int degrees = 0; degrees < 360; degrees += 3) {
                const double a = degrees * 3.14159265358979 / 180.0;
                const Capsule line{80.25, 79.5, 80.25 + 50.0 * std::cos(a), 79.5 + 50.0 * std::sin(a), width};
                double area = 0.0;
                const QImage image = drawn(line, Qt::white);
                for (int y = 0; y < side; ++y) {
                    for (int x = 0; x < side; ++x) {
                        area += image.pixelColor(x, y).alphaF();
                    }
                }
                const double wanted = 50.0 * width + 3.14159265 * width * width / 4.0;
                QVERIFY(std::abs(area - wanted) < 0.02 * wanted);
            }
        }
    }
    void aLineAndItsReverseHaveTheSamePixels() {
        Lines lines(3);
        for (int i = 0; i < 100; ++i) {
            const Capsule line = lines.next(1.0 + i % 12);
            const Capsule reverse{line.x2, line.y2, line.x1, line.y1, line.width};
            QCOMPARE(drawn(line, Qt::cyan), drawn(reverse, Qt::cyan));
        }
    }
    void aLineThatIsMovedByWholePixelsHasTheSamePixels() {
        Lines lines(5);
        for (int i = 0; i < 200; ++i) {
            Capsule line = lines.next(1.0 + i % 9);
            line.x1 += 0.1 * i;
            line.y2 += 0.013 * i;
            const int dx = i % 23 - 11;
            const int dy = i % 17 - 8;
            QImage moved = canvas();
            drawCapsule(whole(moved), {line.x1 + dx, line.y1 + dy, line.x2 + dx, line.y2 + dy, line.width},
                        qPremultiply(qRgb(255, 200, 0)));
            QImage shifted = canvas();
            CapsuleTarget target = whole(shifted);
            target.shiftX = dx;
            target.shiftY = dy;
            drawCapsule(target, line, qPremultiply(qRgb(255, 200, 0)));
            QCOMPARE(moved, shifted);
            QCOMPARE(moved.copy(20 + dx, 20 + dy, 120, 120),
                     drawn(line, QColor(255, 200, 0)).copy(20, 20, 120, 120));
        }
    }
    void itsThreePartsAreTheLine() {
        Lines lines(13);
        for (int i = 0; i < 200; ++i) {
            const Capsule line = lines.next(1.0 + i % 20);
            for (const QColor& color : {QColor(Qt::yellow), QColor(255, 200, 0, 90)}) {
                QImage parts = canvas();
                for (int part = 0; part < 3; ++part) {
                    Capsule one = line;
                    one.startCap = part == 0;
                    one.strip = part == 1;
                    one.endCap = part == 2;
                    drawCapsule(whole(parts), one, qPremultiply(color.rgba()));
                }
                QCOMPARE(parts, drawn(line, color));
            }
        }
    }
    void noPixelLiesBeyondTheBounds() {
        Lines lines(17);
        for (int i = 0; i < 200; ++i) {
            Capsule line = lines.next(1.0 + i % 20);
            line.startCap = i % 2 == 0;
            line.strip = i % 3 == 0;
            const QImage image = drawn(line, Qt::white);
            const QRectF bounds = boundsOf(line);
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x) {
                    QVERIFY(alphaAt(image, x, y) == 0 || bounds.contains(QRectF(x, y, 1.0, 1.0)));
                }
            }
        }
    }
    // Every direction whose ends cut through the middles of pixels is among them.
    void aStraightJointDoesntShow() {
        const QPointF middle(80.0, 80.0);
        for (const double width : {1.0, 3.0, 8.0, 9.5}) {
            for (int x = -6; x <= 6; ++x) {
                for (int y = -6; y <= 6; ++y) {
                    if (x == 0 && y == 0) {
                        continue;
                    }
                    const QPointF step(x, y);
                    const QPointF start = middle - 3.0 * step;
                    const QPointF end = middle + 5.0 * step;
                    const QImage joined = bent(start, middle, end, width);
                    const QImage whole = drawn({start.x(), start.y(), end.x(), end.y(), width}, Qt::white);
                    const int largest = between(joined, whole).largest;
                    QVERIFY2(largest <= 1,
                             qPrintable(QStringLiteral("%1 by %2: %3").arg(x).arg(y).arg(largest)));
                }
            }
        }
    }
    // What is missing would be a hole or a notch; on the inner side of the corner the edges of both are
    // mixed.
    void aJointFillsWhatLiesBetweenTheLines_data() { widths(1.0); }
    void aJointFillsWhatLiesBetweenTheLines() {
        QFETCH(double, width);
        Lines lines(19);
        for (int i = 0; i < 40; ++i) {
            const Capsule a = lines.next(width);
            Capsule b = lines.next(width);
            b.x1 = a.x2;
            b.y1 = a.y2;
            if (i % 5 == 0) { // back the way it came
                b.x2 = a.x1;
                b.y2 = a.y1;
            }
            if ((a.x1 == a.x2 && a.y1 == a.y2) || (b.x1 == b.x2 && b.y1 == b.y2)) {
                continue;
            }
            const QImage joined = bent({a.x1, a.y1}, {a.x2, a.y2}, {b.x2, b.y2}, width);
            const QImage one = sampled(a);
            const QImage two = sampled(b);
            const int slack = width < 2.0 ? 40 : 24;
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x) {
                    const int first = alphaAt(one, x, y);
                    const int second = alphaAt(two, x, y);
                    const int there = alphaAt(joined, x, y);
                    QVERIFY(there >= std::max(first, second) - slack);
                    QVERIFY(there <= std::min(first + second, 255) + slack);
                }
            }
        }
    }
    void aJointThatIsMovedOrCutHasTheSamePixels() {
        Lines lines(23);
        for (int i = 0; i < 200; ++i) {
            const double width = 1.0 + i % 12;
            const Capsule a = lines.next(width);
            Capsule line = lines.next(width);
            line.x1 = a.x2;
            line.y1 = a.y2;
            line.startCap = false;
            line.before = QPointF(a.x1, a.y1);
            const QImage all = drawn(line, Qt::yellow);
            const int dx = i % 23 - 11;
            const int dy = i % 17 - 8;
            QImage pieces = canvas();
            for (int piece = 0; piece < 4; ++piece) {
                CapsuleTarget target = whole(pieces);
                target.shiftX = dx;
                target.shiftY = dy;
                (piece % 2 == 0 ? target.right : target.left) = 60 + i % 40;
                (piece < 2 ? target.bottom : target.top) = 70 + i % 30;
                drawCapsule(target, line, qPremultiply(QColor(Qt::yellow).rgba()));
            }
            QCOMPARE(pieces.copy(20 + dx, 20 + dy, 120, 120), all.copy(20, 20, 120, 120));
        }
    }
    void aCutLineHasThePixelsOfTheWholeOne() {
        Lines lines(11);
        for (int i = 0; i < 200; ++i) {
            const Capsule line = lines.next(1.0 + i % 20);
            const QImage all = drawn(line, Qt::yellow);
            QImage pieces = canvas();
            const int seam = 40 + i % 80;
            CapsuleTarget left = whole(pieces);
            left.right = seam;
            drawCapsule(left, line, qPremultiply(QColor(Qt::yellow).rgba()));
            CapsuleTarget right = whole(pieces);
            right.left = seam;
            right.bottom = 70;
            drawCapsule(right, line, qPremultiply(QColor(Qt::yellow).rgba()));
            CapsuleTarget below = right;
            below.top = 70;
            below.bottom = side;
            drawCapsule(below, line, qPremultiply(QColor(Qt::yellow).rgba()));
            QCOMPARE(pieces, all);
        }
    }
    void aPictureMayBeNarrowerThanFourPixels() {
        Lines lines(29);
        for (int i = 0; i < 120; ++i) {
            const Capsule line = lines.next(1.0 + i % 20);
            const int wide = 1 + i % 4;
            const int left = 50 + i % 60;
            QImage narrow(wide, side, QImage::Format_ARGB32_Premultiplied);
            narrow.fill(Qt::transparent);
            CapsuleTarget target = whole(narrow);
            target.shiftX = -left;
            drawCapsule(target, line, qPremultiply(QColor(Qt::yellow).rgba()));
            QCOMPARE(narrow, drawn(line, Qt::yellow).copy(left, 0, wide, side));
        }
    }
    void nothingIsDrawnBeyondTheTarget() {
        QImage image = canvas(QColor(1, 2, 3));
        const QImage before = image;
        CapsuleTarget target = whole(image);
        target.left = 50;
        target.right = 60;
        target.top = 40;
        target.bottom = 90;
        for (const Capsule& line : {Capsule{-500, -500, 900, 900, 100}, Capsule{0, 60, 160, 60, 30},
                                    Capsule{55, -16000, 55, 16000, 3}, Capsule{-16000, 65, 16000, 64, 1}}) {
            drawCapsule(target, line, qRgb(255, 0, 0));
        }
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const bool inside = x >= 50 && x < 60 && y >= 40 && y < 90;
                QVERIFY(inside || image.pixel(x, y) == before.pixel(x, y));
            }
        }
        QCOMPARE(image.pixelColor(55, 60), QColor(255, 0, 0));
    }
    void whatIsOpaqueCoversAndWhatIsntMixes() {
        const QColor ground(43, 43, 43);
        const QColor strong(200, 100, 0);
        const QColor weak(200, 100, 0, 100);
        const Capsule line{20, 50, 120, 50, 8};
        QCOMPARE(drawn(line, strong, ground).pixelColor(70, 50), strong);
        QVERIFY(between(drawn(line, weak, ground), painted(line, weak, ground)).largest <= 16);
        const QColor mixed = drawn(line, weak, ground).pixelColor(70, 50);
        QCOMPARE(mixed.alpha(), 255);
        QVERIFY(std::abs(mixed.red() - (200 * 100 + 43 * 155) / 255) <= 1);
        QCOMPARE(drawn(line, QColor(200, 100, 0, 0), ground), canvas(ground));
    }
};

GRAMO_TEST_GUILESS_MAIN(TestCapsule)
#include "tst_capsule.moc"
