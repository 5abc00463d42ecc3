#include "painter/shiniicons.h"

#include "support/testmain.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr ShiniIcon allIcons[] = {ShiniIcon::ArrowDownRight, ShiniIcon::ArrowDownLeft,
                                  ShiniIcon::ArrowUpRight,   ShiniIcon::ArrowUpLeft,
                                  ShiniIcon::CircleEmpty,    ShiniIcon::CircleFull};

QImage canvas(double ratio) {
    QImage image(QSize(100, 100) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    return image;
}

QImage drawn(ShiniIcons& icons, const std::vector<ShiniMark>& marks, double ratio = 1.0) {
    QImage image = canvas(ratio);
    QPainter painter(&image);
    icons.draw(painter, marks);
    return image;
}

// Device pixels that are drawn on.
QRect inkOf(const QImage& image) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

} // namespace

class TestShiniIcons : public QObject {
    Q_OBJECT

    ShiniIcons m_icons;

private Q_SLOTS:
    void initTestCase() { m_icons.load(); }

    void anIconIsTwentyPixelsWideAndHigh_data() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("100 %") << 1.0;
        QTest::newRow("125 %") << 1.25;
        QTest::newRow("200 %") << 2.0;
    }
    void anIconIsTwentyPixelsWideAndHigh() {
        QFETCH(double, ratio);
        const int side = int(20 * ratio);
        const QRect place(QPoint(int(40 * ratio), int(24 * ratio)), QSize(side, side));
        for (const ShiniIcon icon : allIcons) {
            const QRect ink = inkOf(drawn(m_icons, {{icon, {40.0, 24.0}}}, ratio));
            QVERIFY(place.contains(ink));
            QVERIFY(std::max(ink.width(), ink.height()) >= side / 2);
        }
    }
    void noTwoIconsAreAlike() {
        for (const ShiniIcon a : allIcons) {
            for (const ShiniIcon b : allIcons) {
                QCOMPARE(drawn(m_icons, {{a, {40.0, 40.0}}}) == drawn(m_icons, {{b, {40.0, 40.0}}}), a == b);
            }
        }
    }
    void onlyTheFullCircleIsFilled() {
        const auto picture = [&](ShiniIcon icon) { return drawn(m_icons, {{icon, {40.0, 40.0}}}); };
        QVERIFY(inkOf(picture(ShiniIcon::CircleFull)).contains(QPoint(50, 50)));
        QVERIFY(qAlpha(picture(ShiniIcon::CircleFull).pixel(50, 50)) > 200); // filled
        QVERIFY(qAlpha(picture(ShiniIcon::CircleEmpty).pixel(50, 50)) < 50);
    }
    void theIconsFollowTheScreen() {
        const std::vector<ShiniMark> marks{{ShiniIcon::CircleFull, {40.0, 40.0}}};
        ShiniIcons fresh;
        fresh.load();
        for (const double ratio : {1.0, 2.0, 1.25, 1.0}) {
            ShiniIcons single;
            single.load();
            QCOMPARE(drawn(fresh, marks, ratio), drawn(single, marks, ratio));
        }
    }
    void aMissingIconDrawsNothing() {
        ShiniIcons missing; // never loaded
        QCOMPARE(inkOf(drawn(missing, {{ShiniIcon::ArrowUpLeft, {40.0, 40.0}}})), QRect());
    }
    void noMarksNoIcons() { QCOMPARE(inkOf(drawn(m_icons, {})), QRect()); }
    // As on a reference that starts above the live curve, or on a broken point.
    void marksFarAwayAreNotSeen() {
        const double none = std::numeric_limits<double>::quiet_NaN();
        const double endless = std::numeric_limits<double>::infinity();
        for (const double y : {-1.8e19, 1.8e19, 3e9, -3e9, 2147483648.0, -2147483660.0, 4294967316.0,
                               -4294967256.0, 1e300, endless, -endless, none}) {
            for (const double ratio : {1.0, 1.25}) {
                QCOMPARE(inkOf(drawn(m_icons, {{ShiniIcon::CircleFull, {40.0, y}}}, ratio)), QRect());
                QCOMPARE(inkOf(drawn(m_icons, {{ShiniIcon::CircleFull, {y, 40.0}}}, ratio)), QRect());
            }
        }
    }
};

GRAMO_TEST_MAIN(TestShiniIcons)
#include "tst_shiniicons.moc"
