#include "painter/qwpainterrec.h"

#include "support/testmain.h"

#include <QTest>

class TestQWPainterRec : public QObject {
    Q_OBJECT

    static QImage pictureOf(QWidget& widget) {
        QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        widget.render(&image);
        return image;
    }

private Q_SLOTS:
    void itHasOneSize() {
        const QWPainterRec sample(Qt::red);
        QCOMPARE(sample.minimumSize(), QSize(50, 25));
        QCOMPARE(sample.maximumSize(), QSize(50, 25));
    }
    void itIsFullOfItsColour() {
        const QColor color(254, 194, 0);
        QWPainterRec sample(color);
        const QImage picture = pictureOf(sample);
        QCOMPARE(picture.size(), QSize(50, 25));
        for (int y = 0; y < 25; ++y) {
            for (int x = 0; x < 50; ++x) {
                QCOMPARE(picture.pixelColor(x, y), color);
            }
        }
    }
    void anInvalidColourIsBlack() {
        QWPainterRec sample{QColor()};
        QCOMPARE(pictureOf(sample).pixelColor(25, 12), QColor(Qt::black));
    }
};

GRAMO_TEST_MAIN(TestQWPainterRec)
#include "tst_qwpainterrec.moc"
