#include "painter/qwpainterphrasing.h"

#include "gui/support/guiprocess.h"
#include "phrasing/managephrasing.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <cmath>
#include <memory>
#include <numbers>

namespace {

const QColor background(53, 53, 53);
const QColor darkDisc(43, 43, 43);
const QColor light(175, 176, 177);
const QColor red(208, 0, 24);
const QColor yellow(254, 194, 0);

QImage pictureOf(QWidget& widget, double ratio = 1.0) {
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    widget.render(&image);
    return image;
}

// The picture of these areas, asked by angle (0 at twelve o'clock, clockwise) and distance from the middle.
class Disc {
public:
    explicit Disc(const QPhrasingList& areas) : m_phrasing(ModelGraph::NOT_USED) {
        m_phrasing.setListPhrasing(areas);
        QWPainterPhrasing widget(&m_phrasing);
        m_picture = pictureOf(widget);
    }
    QColor at(double angle, double distance = 30.0) const {
        const double radians = angle * std::numbers::pi / 180.0;
        return pixel(int(std::floor(48.0 + distance * std::sin(radians))),
                     int(std::floor(48.0 - distance * std::cos(radians))));
    }
    QColor pixel(int x, int y) const { return m_picture.pixelColor(x, y); }

private:
    ManagePhrasing m_phrasing;
    QImage m_picture;
};

} // namespace

class TestQWPainterPhrasing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }

    void itHasOneSize() {
        const ManagePhrasing phrasing(ModelGraph::NOT_USED);
        const QWPainterPhrasing widget(&phrasing);
        QCOMPARE(widget.minimumSize(), QSize(96, 96));
        QCOMPARE(widget.maximumSize(), QSize(96, 96));
    }

    void anEmptyPhrasingIsADarkDiscWithLightRimAndHub() {
        const Disc disc({});
        for (int angle = 0; angle < 360; angle += 5) {
            QCOMPARE(disc.at(angle, 20.0), darkDisc);
            QCOMPARE(disc.at(angle, 38.0), darkDisc);
            QCOMPARE(disc.at(angle, 45.0), light); // the rim: 42 to 48
            QCOMPARE(disc.at(angle, 3.0), light);  // the hub
        }
        QCOMPARE(disc.pixel(48, 48), light);
        for (const QPoint corner : {QPoint(0, 0), QPoint(95, 0), QPoint(0, 95), QPoint(95, 95)}) {
            QCOMPARE(disc.pixel(corner.x(), corner.y()), background);
        }
    }

    // The whole picture against one that is drawn here.
    void eachPartHasItsPlace() {
        for (const QPhrasingList& areas :
             {QPhrasingList{}, QPhrasingList{area(0.0, 90.0, red), area(120.5, 200.25, yellow)}}) {
            ManagePhrasing phrasing(ModelGraph::NOT_USED);
            phrasing.setListPhrasing(areas);
            QWPainterPhrasing widget(&phrasing);
            QImage expected(96, 96, QImage::Format_ARGB32_Premultiplied);
            expected.fill(background);
            QPainter painter(&expected);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(areas.isEmpty() ? darkDisc : light);
            painter.drawEllipse(3, 3, 90, 90);
            for (const QPhrasingPtr& one : areas) {
                painter.setBrush(one->color());
                painter.drawPie(3, 3, 90, 90, int((90.0 - one->angleStart()) * 16.0),
                                int((one->angleStart() - one->angleEnd()) * 16.0));
            }
            painter.setPen(QPen(light, 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
            painter.setBrush(light);
            painter.drawEllipse(42, 42, 12, 12);
            painter.setPen(QPen(light, 6.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
            painter.setBrush(Qt::NoBrush);
            painter.drawEllipse(3, 3, 90, 90);
            painter.end();
            QCOMPARE(pictureOf(widget), expected);
        }
    }

    void theRimIsSixPixelsWideAndEndsAtTheEdge() {
        const Disc disc({});
        for (const int y : {1, 4, 91, 94}) {
            QCOMPARE(disc.pixel(48, y), light);
        }
        QVERIFY(disc.pixel(48, 0).red() > 160); // a curve touches the edge: nearly all of the pixel
        QVERIFY(disc.pixel(48, 95).red() > 160);
        QCOMPARE(disc.pixel(48, 7), darkDisc);
        QCOMPARE(disc.pixel(48, 88), darkDisc);
    }

    void theHubFillsItsBox() {
        const Disc disc({});
        // The box from 42 to 53, corners included, with a pen of two pixels around its edge.
        for (const QPoint inside : {QPoint(43, 47), QPoint(52, 47), QPoint(47, 43), QPoint(47, 52)}) {
            QCOMPARE(disc.pixel(inside.x(), inside.y()), light);
        }
        for (const QPoint outside : {QPoint(39, 48), QPoint(56, 48), QPoint(48, 39), QPoint(48, 56)}) {
            QCOMPARE(disc.pixel(outside.x(), outside.y()), darkDisc);
        }
    }

    void anAreaFromZeroTo90FillsTheQuarterFromTwelveToThree() {
        const Disc disc({area(0.0, 90.0, red)});
        for (int angle = 3; angle <= 87; angle += 3) {
            QCOMPARE(disc.at(angle), red);
        }
        for (int angle = 93; angle <= 357; angle += 3) {
            QCOMPARE(disc.at(angle), light); // what no area covers
        }
        QCOMPARE(disc.at(45.0, 3.0), light); // hub and rim lie above
        QCOMPARE(disc.at(45.0, 45.0), light);
    }

    void eachAreaIsASliceInItsColour() {
        const Disc disc({area(180.0, 225.0, yellow), area(0.0, 45.0, red)});
        QCOMPARE(disc.at(20.0), red);
        QCOMPARE(disc.at(200.0), yellow);
        QCOMPARE(disc.at(100.0), light);
        QCOMPARE(disc.at(300.0), light);
    }

    void aLaterAreaLiesAboveAnEarlierOne() {
        QCOMPARE(Disc({area(0.0, 90.0, red), area(0.0, 90.0, yellow)}).at(45.0), yellow);
    }

    void anAreaOf360FillsTheWholeDisc() {
        const Disc disc({area(0.0, 360.0, red)});
        for (int angle = 0; angle < 360; angle += 3) {
            QCOMPARE(disc.at(angle, 20.0), red);
            QCOMPARE(disc.at(angle, 38.0), red);
        }
    }

    void aReversedAreaIsDrawnAnticlockwiseFromItsStart() {
        const Disc disc({area(90.0, 30.0, red)}); // from three o'clock back to one
        for (int angle = 33; angle <= 87; angle += 3) {
            QCOMPARE(disc.at(angle), red);
        }
        for (int angle = 93; angle <= 387; angle += 3) {
            QCOMPARE(disc.at(angle), light);
        }
    }

    void anAreaAcrossTwelveIsDrawnAcrossIt() {
        const Disc disc({area(-45.0, 45.0, red)});
        QCOMPARE(disc.at(0.0), red);
        QCOMPARE(disc.at(320.0), red);
        QCOMPARE(disc.at(40.0), red);
        QCOMPARE(disc.at(180.0), light);
    }

    void anInvalidColourIsBlack() { QCOMPARE(Disc({area(0.0, 90.0, QColor())}).at(45.0), QColor(Qt::black)); }

    void anglesBeyondAllBoundsAreDrawnWithoutHarm() {
        const Disc disc({area(1e300, -1e300, red), area(-1e300, 1e300, red), area(0.0, -1e300, yellow)});
        QCOMPARE(disc.at(45.0), yellow); // anticlockwise, all of the disc
        QCOMPARE(disc.at(225.0), yellow);
    }

    void itShowsTheListAsItStandsAtTheRepaint() {
        ManagePhrasing phrasing(ModelGraph::NOT_USED);
        QWPainterPhrasing widget(&phrasing);
        QCOMPARE(pictureOf(widget).pixelColor(68, 28), darkDisc);
        phrasing.setListPhrasing({area(0.0, 90.0, red)});
        QCOMPARE(pictureOf(widget).pixelColor(68, 28), red);
    }

    void withoutItsPhrasingTheDiscIsEmpty() {
        auto phrasing = std::make_unique<ManagePhrasing>(ModelGraph::NOT_USED);
        phrasing->setListPhrasing({area(0.0, 360.0, red)});
        QWPainterPhrasing widget(phrasing.get());
        QCOMPARE(pictureOf(widget).pixelColor(68, 28), red);
        phrasing.reset();
        QCOMPARE(pictureOf(widget).pixelColor(68, 28), darkDisc);
    }

    void aPhrasingThatComesWithASampleHasItsIconInTheCorner() {
        ManagePhrasing phrasing(ModelGraph::NOT_USED);
        QWPainterPhrasing widget(&phrasing);
        const QImage without = pictureOf(widget);
        phrasing.setScratchTools(QStringLiteral("ahh.wav"));
        const QImage with = pictureOf(widget);
        int changed = 0;
        for (int y = 0; y < 96; ++y) {
            for (int x = 0; x < 96; ++x) {
                if (with.pixel(x, y) != without.pixel(x, y)) {
                    QVERIFY2(x < 13 && y < 13, qPrintable(QStringLiteral("%1 %2").arg(x).arg(y)));
                    ++changed;
                }
            }
        }
        QVERIFY(changed > 20); // an eighth of 100 by 100 pixels
    }

    void onADenseScreenItIsTheSamePicture() {
        ManagePhrasing phrasing(ModelGraph::NOT_USED);
        phrasing.setListPhrasing({area(0.0, 90.0, red)});
        phrasing.setScratchTools(QStringLiteral("ahh.wav"));
        QWPainterPhrasing widget(&phrasing);
        const QImage picture = pictureOf(widget, 2.0);
        QCOMPARE(picture.size(), QSize(192, 192));
        QCOMPARE(picture.pixelColor(136, 56), red);
        QCOMPARE(picture.pixelColor(136, 136), light);
        QCOMPARE(picture.pixelColor(191, 191), background);
    }
};

GRAMO_TEST_MAIN(TestQWPainterPhrasing)
#include "tst_qwpainterphrasing.moc"
