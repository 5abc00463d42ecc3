#include "painter/pixelgroups.h"

#include "painter/layover.h"
#include "support/testmain.h"

#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <array>

namespace {

std::uint32_t* pixelsOf(QImage& image) {
    return reinterpret_cast<std::uint32_t*>(image.bits());
}

QRgb anyPixel(QRandomGenerator& random) {
    return qPremultiply(random.generate());
}

/// Empty but for some rectangles of pixels that let more or less through.
QImage sparse(QRandomGenerator& random, QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int i = random.bounded(12); i > 0; --i) {
        const QRect place(random.bounded(size.width()), random.bounded(size.height()), 1 + random.bounded(30),
                          1 + random.bounded(20));
        const bool opaque = random.bounded(2) == 0;
        const QRect cut = place & image.rect();
        for (int y = cut.top(); y <= cut.bottom(); ++y) {
            for (int x = cut.left(); x <= cut.right(); ++x) {
                pixelsOf(image)[y * size.width() + x] = anyPixel(random) | (opaque ? 0xff000000U : 0U);
            }
        }
    }
    return image;
}

QImage noise(QRandomGenerator& random, QSize size, QImage::Format format) {
    QImage image(size, format);
    for (int i = 0; i < size.width() * size.height(); ++i) {
        const QRgb pixel = anyPixel(random);
        pixelsOf(image)[i] = format == QImage::Format_RGB32 ? pixel | 0xff000000U : pixel;
    }
    return image;
}

void updateAll(PixelGroups& groups, QImage& picture, int top, int bottom) {
    for (int group = 0; group < picture.width() / PixelGroups::size; ++group) {
        groups.update(pixelsOf(picture), picture.width(), group, top, bottom);
    }
}

} // namespace

class TestPixelGroups : public QObject {
    Q_OBJECT

    static void formats() {
        QTest::addColumn<int>("format");
        QTest::newRow("opaque") << int(QImage::Format_RGB32);
        QTest::newRow("premultiplied") << int(QImage::Format_ARGB32_Premultiplied);
    }

private Q_SLOTS:
    void everyPixelIsLaidOverAsThePainterDoesIt_data() { formats(); }
    void everyPixelIsLaidOverAsThePainterDoesIt() {
        QFETCH(int, format);
        QRandomGenerator random(3);
        const QSize size(512, 64); // a row is all the groups of a word
        for (int round = 0; round < 60; ++round) {
            const QImage under = noise(random, size, QImage::Format(format));
            QImage above = noise(random, size, QImage::Format_ARGB32_Premultiplied);
            QImage wanted = under;
            QPainter(&wanted).drawImage(0, 0, above);
            for (const LayOver lay : {layOver(), LayOver(layOverPlain)}) {
                QImage image = under;
                for (int y = 0; y < size.height(); ++y) {
                    const std::ptrdiff_t at = std::ptrdiff_t(y) * size.width();
                    lay({pixelsOf(image) + at, pixelsOf(above) + at, 0, 0}, ~std::uint64_t(0));
                }
                QCOMPARE(image, wanted);
            }
        }
    }
    void onlyTheGroupsThatAreNamedAreTouched() {
        for (const LayOver lay : {layOver(), LayOver(layOverPlain)}) {
            std::array<std::uint32_t, 512> under{};
            std::array<std::uint32_t, 512> above{};
            above.fill(0xff102030U);
            const std::uint64_t groups = 0x8000000000000005U;
            lay({under.data(), above.data(), 0, 0}, groups);
            for (std::size_t i = 0; i < under.size(); ++i) {
                QCOMPARE(under[i], (groups >> (i / 8) & 1) != 0 ? 0xff102030U : 0U);
            }
            lay({under.data(), above.data(), 0, 0}, 0);
        }
    }
    void aPictureIsLaidDownAsThePainterDoesIt_data() { formats(); }
    void aPictureIsLaidDownAsThePainterDoesIt() {
        QFETCH(int, format);
        QRandomGenerator random(4);
        for (int round = 0; round < 300; ++round) {
            const QSize size(PixelGroups::wordPixels * (1 + random.bounded(3)), 1 + random.bounded(40));
            QImage picture = sparse(random, size);
            PixelGroups groups(size.width(), size.height());
            updateAll(groups, picture, 0, size.height());
            // A target that may be cut on all sides.
            const QRect part = QRect(random.bounded(size.width()), random.bounded(size.height()),
                                     1 + random.bounded(size.width()), 1 + random.bounded(size.height())) &
                               picture.rect();
            QImage image = noise(random, size, QImage::Format(format));
            QImage wanted = image;
            QPainter(&wanted).drawImage(part.topLeft(), picture, part);
            groups.paint(pixelsOf(picture), size.width(),
                         {pixelsOf(image), size.width(), part.left(), part.top(), part.right() + 1,
                          part.bottom() + 1});
            QCOMPARE(image, wanted);
        }
    }
    void whatHasChangedIsSeenOnceItsGroupsAreUpdated() {
        QRandomGenerator random(5);
        const QSize size(PixelGroups::wordPixels * 2, 24);
        PixelGroups groups(size.width(), size.height());
        for (int round = 0; round < 40; ++round) {
            QImage picture = sparse(random, size);
            updateAll(groups, picture, 0, size.height());
            QImage image = noise(random, size, QImage::Format_RGB32);
            QImage wanted = image;
            QPainter(&wanted).drawImage(0, 0, picture);
            groups.paint(pixelsOf(picture), size.width(),
                         {pixelsOf(image), size.width(), 0, 0, size.width(), size.height()});
            QCOMPARE(image, wanted);
        }
    }
    // Whatever is there: a picture is emptied no further than it has been drawn on.
    void rowsOutsideThoseThatAreLookedAtAreEmpty() {
        QRandomGenerator random(6);
        const QSize size(PixelGroups::wordPixels, 30);
        QImage picture = noise(random, size, QImage::Format_ARGB32_Premultiplied);
        PixelGroups groups(size.width(), size.height());
        updateAll(groups, picture, 0, 30);
        updateAll(groups, picture, 10, 20);
        QImage image = noise(random, size, QImage::Format_RGB32);
        QImage wanted = image;
        QPainter(&wanted).drawImage(0, 10, picture, 0, 10, size.width(), 10);
        groups.paint(pixelsOf(picture), size.width(),
                     {pixelsOf(image), size.width(), 0, 0, size.width(), 30});
        QCOMPARE(image, wanted);
    }
    void aNewOneAndAClearedOneAreEmpty() {
        PixelGroups groups(PixelGroups::wordPixels, 4);
        std::array<std::uint32_t, PixelGroups::wordPixels * 4> above;
        above.fill(0xffffffffU);
        const auto painted = [&] {
            std::array<std::uint32_t, PixelGroups::wordPixels * 4> under{};
            groups.paint(above.data(), PixelGroups::wordPixels,
                         {under.data(), PixelGroups::wordPixels, 0, 0, PixelGroups::wordPixels, 4});
            return std::count(under.begin(), under.end(), 0xffffffffU);
        };
        QCOMPARE(painted(), 0);
        groups.update(above.data(), PixelGroups::wordPixels, 63, 0, 4);
        QCOMPARE(painted(), PixelGroups::size * 4);
        groups.clear();
        QCOMPARE(painted(), 0);
    }
};

GRAMO_TEST_MAIN(TestPixelGroups)
#include "tst_pixelgroups.moc"
