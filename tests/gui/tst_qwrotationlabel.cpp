#include "qwrotationlabel.h"

#include "support/testmain.h"

#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QTest>

namespace {

QImage pictureOf(QWidget& widget, double ratio = 1.0) {
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    widget.render(&image);
    return image;
}

QRect ink(const QImage& image) {
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qRed(image.pixel(x, y)) < 200) {
                found |= QRect(x, y, 1, 1);
            }
        }
    }
    return found;
}

void paintBlackOnWhite(QWidget& widget) {
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::black);
    widget.setPalette(palette);
}

} // namespace

class TestQWRotationLabel : public QObject {
    Q_OBJECT

    static void ratios() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("100 %") << 1.0;
        QTest::newRow("125 %") << 1.25;
        QTest::newRow("200 %") << 2.0;
    }

private Q_SLOTS:
    void itIsPartOfTheMenu() {
        const QWRotationLabel label(QStringLiteral("Looper"));
        QCOMPARE(label.objectName(), QStringLiteral("menu"));
        QCOMPARE(label.text(), QStringLiteral("Looper"));
        QCOMPARE(label.accessibleName(), QStringLiteral("Looper"));
    }
    void theTextStartsAtTheLowerLeftAndReadsUpwards_data() { ratios(); }
    void theTextStartsAtTheLowerLeftAndReadsUpwards() {
        QFETCH(double, ratio);
        QWRotationLabel label(QStringLiteral("LLLLL"));
        paintBlackOnWhite(label);
        label.resize(30, 120);
        const QImage image = pictureOf(label, ratio);
        const QRect found = ink(image);
        QVERIFY(!found.isNull());
        // The baseline is 5 pixels from the right edge.
        QVERIFY(std::abs(found.right() + 1 - 25 * ratio) <= 1.0);
        QVERIFY(std::abs(found.height() - label.fontMetrics().horizontalAdvance(label.text()) * ratio) <=
                6.0 * ratio);
        QVERIFY(found.bottom() >= image.height() - 4 * ratio); // near the lower end
        // The stem of the first L, a level line after the turn, is the lowest thing there is.
        int stem = 0;
        for (int x = 0; x < image.width(); ++x) {
            stem +=
                qRed(image.pixel(x, found.bottom())) < 200 || qRed(image.pixel(x, found.bottom() - 1)) < 200;
        }
        QVERIFY(stem >= found.width() - 2);
    }
    void aLowercaseTailReachesRightOfTheBaseline() {
        QWRotationLabel label(QStringLiteral("g"));
        paintBlackOnWhite(label);
        label.resize(30, 60);
        const QRect found = ink(pictureOf(label));
        QVERIFY(found.right() > 25);
    }
    void itTakesTheRoomOfItsText() {
        QWRotationLabel label(QStringLiteral("Looper"));
        paintBlackOnWhite(label);
        QCOMPARE(label.sizeHint(), label.minimumSizeHint());
        QVERIFY(label.sizeHint().height() >= label.fontMetrics().horizontalAdvance(QStringLiteral("Looper")));
        label.resize(label.sizeHint());
        const QRect whole = ink(pictureOf(label));
        label.resize(label.size() + QSize(20, 20));
        QCOMPARE(ink(pictureOf(label)).size(), whole.size()); // nothing was cut off
        const QSize before = label.sizeHint();
        label.setText(QStringLiteral("A far longer text"));
        QCOMPARE(label.accessibleName(), QStringLiteral("A far longer text"));
        QVERIFY(label.sizeHint().height() > before.height());
    }
    void anEmptyTextIsNoTrouble() {
        QWRotationLabel label{QString()};
        paintBlackOnWhite(label);
        label.resize(20, 40);
        QVERIFY(ink(pictureOf(label)).isNull());
    }
};

GRAMO_TEST_MAIN(TestQWRotationLabel)
#include "tst_qwrotationlabel.moc"
