#include "painter/convexshape.h"

#include "support/testmain.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace {

constexpr int side = 160;

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

QImage ground() {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(43, 43, 43));
    return image;
}

// A rectangle turned about the picture's middle.
std::array<QPointF, 4> bar(double degrees, double width = 28.0, double length = 101.0) {
    const double angle = degrees * std::numbers::pi / 180.0;
    const auto placed = [angle](double x, double y) {
        return QPointF(side / 2.0 + x * std::cos(angle) - y * std::sin(angle),
                       side / 2.0 + x * std::sin(angle) + y * std::cos(angle));
    };
    return {placed(-width / 2.0, -length / 2.0), placed(width / 2.0, -length / 2.0),
            placed(width / 2.0, length / 2.0), placed(-width / 2.0, length / 2.0)};
}

QImage byPainter(std::span<const QPointF> corners, const QColor& fill, const QColor& outline, double width) {
    QImage image = ground();
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(outline, width);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(outline.alpha() == 0 ? QPen(Qt::NoPen) : pen);
    painter.setBrush(fill);
    painter.drawConvexPolygon(corners.data(), int(corners.size()));
    return image;
}

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

class TestConvexShape : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aTurnedBarIsThatOfThePainter_data() {
        QTest::addColumn<double>("degrees");
        for (const double degrees : {0.0, 3.0, 30.0, 45.0, 77.7, 90.0, 135.0, 180.0, 200.5, 359.0}) {
            QTest::addRow("%g degrees", degrees) << degrees;
        }
    }
    void aTurnedBarIsThatOfThePainter() {
        QFETCH(double, degrees);
        const auto corners = bar(degrees);
        const QColor green(0, 255, 0);
        QImage filled = ground();
        drawConvexShape(whole(filled), corners, green.rgba(), 0U, 1.0);
        // But for the smoothing at edges and corners.
        QVERIFY(largestDifference(filled, byPainter(corners, green, QColor(0, 0, 0, 0), 0.0)) <= 70);
        QImage outlined = ground();
        const QColor outline(43, 43, 43, 100);
        drawConvexShape(whole(outlined), corners, green.rgba(), qPremultiply(outline.rgba()), 1.0);
        QVERIFY(largestDifference(outlined, byPainter(corners, green, outline, 1.0)) <= 90);
        QVERIFY(outlined != filled);
    }
    void aTriangleIsThatOfThePainter() {
        const std::array<QPointF, 3> corners{QPointF(40, 90), QPointF(80.5, 20.25), QPointF(121, 90)};
        const QColor cyan(0, 255, 255, 150);
        QImage image = ground();
        drawConvexShape(whole(image), corners, qPremultiply(cyan.rgba()), 0U, 1.0);
        QVERIFY(largestDifference(image, byPainter(corners, cyan, QColor(0, 0, 0, 0), 0.0)) <= 70);
        QCOMPARE(image.pixelColor(80, 70), byPainter(corners, cyan, Qt::transparent, 0.0).pixelColor(80, 70));
    }
    void whatLiesOutsideTheTargetStays() {
        QImage image = ground();
        CapsuleTarget target = whole(image);
        target.left = 70;
        target.top = 60;
        target.right = 90;
        target.bottom = 100;
        drawConvexShape(target, bar(45.0), 0xff00ff00U, 0xffffffffU, 1.0);
        QImage all = ground();
        drawConvexShape(whole(all), bar(45.0), 0xff00ff00U, 0xffffffffU, 1.0);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const bool inside = x >= 70 && x < 90 && y >= 60 && y < 100;
                QCOMPARE(image.pixel(x, y), inside ? all.pixel(x, y) : ground().pixel(x, y));
            }
        }
    }
    void aShiftedTargetShiftsThePicture() {
        QImage image = ground();
        CapsuleTarget target = whole(image);
        target.shiftX = 7;
        target.shiftY = -3;
        drawConvexShape(target, bar(20.0), 0xff00ff00U, 0U, 1.0);
        QImage plain = ground();
        drawConvexShape(whole(plain), bar(20.0), 0xff00ff00U, 0U, 1.0);
        QCOMPARE(image.copy(10, 0, 140, 150), plain.copy(3, 3, 140, 150));
    }
    void aShapeOutsideThePictureDrawsNothing() {
        QImage image = ground();
        std::array<QPointF, 4> far = bar(10.0);
        for (QPointF& corner : far) {
            corner += QPointF(1000, -1000);
        }
        drawConvexShape(whole(image), far, 0xff00ff00U, 0xffffffffU, 1.0);
        QCOMPARE(image, ground());
    }
};

GRAMO_TEST_GUILESS_MAIN(TestConvexShape)
#include "tst_convexshape.moc"
