#include "painter/wavebars.h"

#include "support/testmain.h"

#include <QTest>

namespace {

const QColor ground(43, 43, 43);

// Four quarters, each in a colour of its own.
QImage quarters() {
    QImage image(2700, 100, QImage::Format_ARGB32);
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            image.setPixelColor(x, y, QColor(50 + 50 * (x / 675), y < 50 ? 200 : 100, 0));
        }
    }
    return image;
}

template <typename Draw> QImage drawn(double ratio, Draw draw) {
    QImage image((QSizeF(800, 400) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(ground);
    QPainter painter(&image);
    draw(painter);
    return image;
}

QColor at(const QImage& image, double x, double y) {
    const double ratio = image.devicePixelRatio();
    return image.pixelColor(int(x * ratio), int(y * ratio));
}

} // namespace

class TestWaveBars : public QObject {
    Q_OBJECT

    static void ratios() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("100 %") << 1.0;
        QTest::newRow("125 %") << 1.25;
        QTest::newRow("200 %") << 2.0;
    }

private Q_SLOTS:
    void anUprightBarStartsAtItsLowerEdge_data() { ratios(); }
    void anUprightBarStartsAtItsLowerEdge() {
        QFETCH(double, ratio);
        WaveBars bars;
        const QImage image = drawn(ratio, [&](QPainter& painter) {
            bars.drawUpright(painter, quarters(), QRectF(700, 40, 36, 320));
        });
        QCOMPARE(at(image, 705, 340), QColor(50, 200, 0)); // the picture's upper edge lies left
        QCOMPARE(at(image, 730, 340), QColor(50, 100, 0));
        QCOMPARE(at(image, 705, 260), QColor(100, 200, 0));
        QCOMPARE(at(image, 705, 60), QColor(200, 200, 0));
        QCOMPARE(at(image, 705, 38), ground);
        QCOMPARE(at(image, 705, 362), ground);
        QCOMPARE(at(image, 698, 200), ground);
        QCOMPARE(at(image, 738, 200), ground);
    }
    void aLevelBarBeginsAtTheSplit_data() { ratios(); }
    void aLevelBarBeginsAtTheSplit() {
        QFETCH(double, ratio);
        WaveBars bars;
        const QImage image = drawn(ratio, [&](QPainter& painter) {
            bars.drawSplit(painter, quarters(), QRectF(45, 280, 700, 100), 0.5);
        });
        QCOMPARE(at(image, 50, 300), QColor(150, 200, 0)); // the third quarter
        QCOMPARE(at(image, 50, 370), QColor(150, 100, 0));
        QCOMPARE(at(image, 300, 300), QColor(200, 200, 0));
        QCOMPARE(at(image, 400, 300), QColor(50, 200, 0)); // what lay before the split
        QCOMPARE(at(image, 740, 300), QColor(100, 200, 0));
        QCOMPARE(at(image, 43, 300), ground);
        QCOMPARE(at(image, 747, 300), ground);
    }
    void anUnsplitBarIsThePicture() {
        WaveBars bars;
        const QImage image = drawn(1.0, [&](QPainter& painter) {
            bars.drawSplit(painter, quarters(), QRectF(45, 280, 700, 100), 0.0);
        });
        QCOMPARE(at(image, 46, 300), QColor(50, 200, 0));
        QCOMPARE(at(image, 743, 300), QColor(200, 200, 0));
    }
    void aPictureIsScaledOnce() {
        WaveBars bars;
        const QImage wave = quarters();
        for (const double split : {0.0, 0.1, 0.9}) {
            drawn(1.0, [&](QPainter& p) { bars.drawSplit(p, wave, QRectF(45, 280, 700, 100), split); });
        }
        QCOMPARE(bars.scalings(), 1U);
        drawn(1.0, [&](QPainter& p) { bars.drawSplit(p, wave, QRectF(45, 280, 600, 100), 0.0); });
        drawn(1.25, [&](QPainter& p) { bars.drawSplit(p, wave, QRectF(45, 280, 600, 100), 0.0); });
        drawn(1.25, [&](QPainter& p) { bars.drawUpright(p, wave, QRectF(45, 80, 30, 300)); });
        drawn(1.25, [&](QPainter& p) { bars.drawUpright(p, quarters(), QRectF(45, 80, 30, 300)); });
        QCOMPARE(bars.scalings(), 5U);
    }
    void theSameSizeUprightAndLevelAreTwoPictures() {
        const QImage wave = quarters();
        const auto level = [&](WaveBars& bars) {
            return drawn(1.0, [&](QPainter& p) { bars.drawSplit(p, wave, QRectF(45, 80, 200, 200), 0.0); });
        };
        WaveBars fresh;
        WaveBars used;
        drawn(1.0, [&](QPainter& p) { used.drawUpright(p, wave, QRectF(45, 80, 200, 200)); });
        QCOMPARE(level(used), level(fresh));
    }
    void withoutAPictureOrRoomThereIsNone() {
        WaveBars bars;
        const QImage image = drawn(1.0, [&](QPainter& painter) {
            bars.drawUpright(painter, QImage(), QRectF(45, 80, 30, 300));
            bars.drawUpright(painter, quarters(), QRectF(45, 80, 0, 300));
            bars.drawUpright(painter, quarters(), QRectF(45, 80, 30, -20));
            bars.drawSplit(painter, QImage(), QRectF(45, 280, 700, 100), 0.5);
            bars.drawSplit(painter, quarters(), QRectF(45, 280, -9, 100), 0.5);
        });
        QImage empty(800, 400, QImage::Format_ARGB32_Premultiplied);
        empty.setDevicePixelRatio(1.0);
        empty.fill(ground);
        QCOMPARE(image, empty);
        QCOMPARE(bars.scalings(), 0U);
    }
};

GRAMO_TEST_MAIN(TestWaveBars)
#include "tst_wavebars.moc"
