#include "painter/scrollpicture.h"

#include "support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

namespace {

constexpr QRgb green = 0xff00ff00U;
constexpr int tile = ScrollPicture::tileWidth;
constexpr int wide = 2 * tile + tile / 2; // pixels of a picture on several tiles

std::uint32_t* rowOf(QImage& image, int y) {
    return reinterpret_cast<std::uint32_t*>(image.scanLine(y));
}

QImage transparent(QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// The same as a ScrollPicture, by moving every pixel.
class PlainPicture {
public:
    explicit PlainPicture(QSize size) : m_image(transparent(size)) {}
    const QImage& image() const { return m_image; }
    void scroll(int columns) {
        const int width = m_image.width();
        for (int y = 0; y < m_image.height(); ++y) {
            std::uint32_t* row = rowOf(m_image, y);
            for (int x = 0; x < width; ++x) {
                row[x] = columns < width - x ? row[x + columns] : 0U;
            }
        }
    }
    void clearBefore(int to) {
        for (int y = 0; y < m_image.height(); ++y) {
            std::fill_n(rowOf(m_image, y), std::clamp(to, 0, m_image.width()), 0U);
        }
    }
    void draw(const Capsule& capsule, QRgb color, int to) {
        const CapsuleTarget target{rowOf(m_image, 0),
                                   m_image.bytesPerLine() / 4,
                                   0,
                                   0,
                                   std::clamp(to, 0, m_image.width()),
                                   m_image.height(),
                                   0,
                                   0};
        drawCapsule(target, capsule, color);
    }

private:
    QImage m_image;
};

QImage shown(ScrollPicture& picture, const QColor& ground = Qt::transparent) {
    QImage image(picture.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(ground);
    QPainter painter(&image);
    picture.paintTo(painter);
    return image;
}

/// The same where the painter has more to do than to lay down pixels.
QImage shownClipped(ScrollPicture& picture, const QRect& clip) {
    QImage image = transparent(picture.size());
    QPainter painter(&image);
    painter.setClipRect(clip);
    picture.paintTo(painter);
    return image;
}

QImage onGround(const QImage& picture, const QColor& ground) {
    QImage image(picture.size(), picture.format());
    image.fill(ground);
    QPainter painter(&image);
    painter.drawImage(0, 0, picture);
    return image;
}

} // namespace

class TestScrollPicture : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aNewPictureIsEmpty() {
        ScrollPicture picture;
        picture.reset({300, 40});
        QCOMPARE(picture.size(), QSize(300, 40));
        QCOMPARE(shown(picture), transparent({300, 40}));
    }
    void aPictureWithoutSizeShowsNothing() {
        ScrollPicture picture;
        QImage image = transparent({20, 20});
        QPainter painter(&image);
        picture.paintTo(painter);
        painter.end();
        QCOMPARE(image, transparent({20, 20}));
    }
    void aLineOverAllTilesIsOneLine() {
        ScrollPicture picture;
        PlainPicture plain({wide, 60});
        picture.reset({wide, 60});
        const Capsule line{3.0, 5.0, wide - 10.0, 55.0, 7.0};
        picture.draw(line, green, wide);
        plain.draw(line, green, wide);
        QCOMPARE(shown(picture), plain.image());
        QVERIFY(plain.image() != transparent({wide, 60}));
    }
    void whatLeavesAtTheLeftComesBackEmpty() {
        ScrollPicture picture;
        picture.reset({300, 40});
        picture.draw({0.0, 20.0, 300.0, 20.0, 9.0}, green, 300);
        for (int i = 0; i < 3 * tile / 17; ++i) {
            picture.scroll(17);
            QVERIFY(i * 17 < 300 || shown(picture) == transparent({300, 40}));
        }
    }
    void aMoveOverMoreThanThePictureEmptiesIt() {
        ScrollPicture picture;
        picture.reset({300, 40});
        picture.draw({0.0, 20.0, 300.0, 20.0, 9.0}, green, 300);
        picture.scroll(5000);
        QCOMPARE(shown(picture), transparent({300, 40}));
    }
    void noMoveChangesNothing() {
        ScrollPicture picture;
        picture.reset({300, 40});
        picture.draw({0.0, 20.0, 300.0, 20.0, 9.0}, green, 300);
        const QImage before = shown(picture);
        picture.scroll(0);
        QCOMPARE(shown(picture), before);
    }
    // What is drawn past the right edge isn't there when it has scrolled in.
    void nothingIsDrawnBeyondTheRightEdge() {
        for (const int moved : {0, 1, 100, tile - 301, tile - 250, tile - 1, tile, tile + 1}) {
            ScrollPicture picture;
            picture.reset({300, 40});
            picture.scroll(moved);
            picture.draw({250.0, 20.0, 900.0, 20.0, 9.0}, green, 900);
            picture.scroll(50);
            const QImage image = shown(picture);
            QCOMPARE(image.pixel(249, 20), green);
            QCOMPARE(image.copy(250, 0, 50, 40), transparent({50, 40}));
        }
    }
    void drawingStopsAtItsBorder() {
        for (const int border : {-5, 0, 1, tile - 1, tile, tile + 1, wide - 1}) {
            ScrollPicture picture;
            PlainPicture plain({wide, 40});
            picture.reset({wide, 40});
            const Capsule line{0.0, 3.0, wide, 37.0, 5.0};
            picture.draw(line, green, border);
            plain.draw(line, green, border);
            QCOMPARE(shown(picture), plain.image());
        }
    }
    void clearingStopsAtItsBorder() {
        for (const int border : {-5, 0, 1, tile - 1, tile, tile + 1, wide, wide + 100}) {
            ScrollPicture picture;
            PlainPicture plain({wide, 40});
            picture.reset({wide, 40});
            const Capsule line{0.0, 3.0, wide, 37.0, 5.0};
            picture.draw(line, green, wide);
            plain.draw(line, green, wide);
            picture.clearBefore(border);
            plain.clearBefore(border);
            QCOMPARE(shown(picture), plain.image());
        }
    }
    void farLinesAreCutToThePicture() {
        ScrollPicture picture;
        PlainPicture plain({300, 40});
        picture.reset({300, 40});
        for (const Capsule& line :
             {Capsule{-16000.0, 20.0, 16000.0, 25.0, 8.0}, Capsule{150.0, -16000.0, 160.0, 16000.0, 3.0},
              Capsule{-16000.0, 0.0, -15000.0, 9.0, 3.0}, Capsule{16000.0, 0.0, 15000.0, 9.0, 3.0}}) {
            picture.draw(line, green, 300);
            plain.draw(line, green, 300);
        }
        QCOMPARE(shown(picture), plain.image());
    }
    void anotherSizeStartsEmpty() {
        ScrollPicture picture;
        for (const QSize size :
             {QSize(300, 40), QSize(700, 40), QSize(700, 90), QSize(1, 1), QSize(tile, 8), QSize(wide, 8)}) {
            picture.reset(size);
            picture.scroll(30);
            QCOMPARE(shown(picture), transparent(size));
            picture.draw({0.0, 4.0, wide, 4.0, 30.0}, green, size.width());
            QCOMPARE(shown(picture).pixel(0, 0), green);
        }
    }
    void theSameSizeStartsEmptyToo() {
        ScrollPicture picture;
        for (int i = 0; i < 3; ++i) {
            picture.reset({300, 40});
            QCOMPARE(shown(picture), transparent({300, 40}));
            picture.draw({0.0, 3.0 + 10.0 * i, 300.0, 37.0, 5.0}, green, 300);
            picture.scroll(150);
        }
    }
    void whereverAPainterDrawsThePictureIsTheSame_data() {
        QTest::addColumn<int>("format");
        QTest::addColumn<QPointF>("corner");
        QTest::addColumn<double>("opacity");
        QTest::newRow("straight") << int(QImage::Format_RGB32) << QPointF(0, 0) << 1.0;
        QTest::newRow("to the right, below") << int(QImage::Format_RGB32) << QPointF(7, 5) << 1.0;
        QTest::newRow("cut at the left and above") << int(QImage::Format_RGB32) << QPointF(-13, -6) << 1.0;
        QTest::newRow("outside") << int(QImage::Format_RGB32) << QPointF(-5000, 900) << 1.0;
        QTest::newRow("between pixels") << int(QImage::Format_RGB32) << QPointF(0.5, 0.25) << 1.0;
        QTest::newRow("half there") << int(QImage::Format_RGB32) << QPointF(3, 0) << 0.5;
        QTest::newRow("not premultiplied") << int(QImage::Format_ARGB32) << QPointF(3, 0) << 1.0;
        QTest::newRow("two bytes a pixel") << int(QImage::Format_RGB16) << QPointF(3, 0) << 1.0;
        QTest::newRow("three bytes a pixel") << int(QImage::Format_RGB888) << QPointF(3, 0) << 1.0;
    }
    void whereverAPainterDrawsThePictureIsTheSame() {
        QFETCH(int, format);
        QFETCH(QPointF, corner);
        QFETCH(double, opacity);
        ScrollPicture picture;
        PlainPicture plain({600, 90});
        picture.reset({600, 90});
        for (const Capsule& line :
             {Capsule{2.0, 2.0, 580.0, 80.0, 9.0}, Capsule{30.0, 85.0, 599.0, 3.0, 2.0}}) {
            picture.draw(line, green, 600);
            plain.draw(line, green, 600);
        }
        const auto onScreen = [&](auto draw) {
            QImage image(620, 100, QImage::Format(format));
            image.fill(QColor(43, 60, 90));
            QPainter painter(&image);
            painter.translate(corner);
            painter.setOpacity(opacity);
            draw(painter);
            return image;
        };
        const QImage wanted = onScreen([&](QPainter& painter) { painter.drawImage(0, 0, plain.image()); });
        for (int round = 0; round < 3; ++round) {
            QCOMPARE(onScreen([&](QPainter& painter) { picture.paintTo(painter); }), wanted);
        }
    }
    void anyScriptGivesThePictureOfAPlainImage_data() {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 60; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }
    void anyScriptGivesThePictureOfAPlainImage() {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const QColor ground(43, 43, 43);
        QSize size(1 + random.bounded(wide), 1 + random.bounded(120));
        ScrollPicture picture;
        picture.reset(size);
        PlainPicture plain(size);
        const auto somewhere = [&](int side) {
            return random.bounded(1.6 * side + 40.0) - 0.3 * side - 20.0;
        };
        for (int act = 0; act < 120; ++act) {
            switch (random.bounded(12)) {
            case 0: {
                const int columns = random.bounded(random.bounded(6) == 0 ? 2 * size.width() + tile : 12);
                picture.scroll(columns);
                plain.scroll(columns);
                break;
            }
            case 1: {
                const int to = random.bounded(size.width() + 20) - 10;
                picture.clearBefore(to);
                plain.clearBefore(to);
                break;
            }
            case 2:
                if (random.bounded(6) == 0) {
                    size = random.bounded(2) == 0 ? size
                                                  : QSize(1 + random.bounded(wide), 1 + random.bounded(120));
                    picture.reset(size);
                    plain = PlainPicture(size);
                }
                break;
            default: {
                const Capsule capsule{somewhere(size.width()), somewhere(size.height()),
                                      somewhere(size.width()), somewhere(size.height()),
                                      1.0 + random.bounded(9.0)};
                const QRgb color = qPremultiply((random.generate() & 0xffffffU) |
                                                (random.bounded(3) == 0 ? 0x80000000U : 0xff000000U));
                const int to = random.bounded(3) == 0 ? random.bounded(size.width() + 20) : size.width();
                picture.draw(capsule, color, to);
                plain.draw(capsule, color, to);
            }
            }
            QCOMPARE(shown(picture), plain.image());
            if (act % 8 == 0) {
                QCOMPARE(shown(picture), plain.image()); // once more the same
                QCOMPARE(shownClipped(picture, QRect(QPoint(0, 0), size)), plain.image());
            }
        }
        QCOMPARE(shown(picture, ground), onGround(plain.image(), ground));
    }
};

GRAMO_TEST_MAIN(TestScrollPicture)
#include "tst_scrollpicture.moc"
