#include "painter/curvepen.h"

#include "painter/curvecolor.h"
#include "support/testmain.h"

#include <QTest>

namespace {

GraphOptions options(bool closedDrawn = true, bool invert = false, int width = 8) {
    GraphOptions o;
    o.curveOnSize = width;
    o.curveCrossFaderOff = closedDrawn;
    o.curveCrossFaderOffInvertColor = invert;
    return o;
}

QPen penOf(ModelGraph::EnumGraph item, bool soundOn, const GraphOptions& o, const QColor& color) {
    CurvePen pens;
    return pens.pen(item, soundOn, color, o);
}

} // namespace

class TestCurvePen : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void coloursOfTheCurves() {
        QCOMPARE(curveColor(ModelGraph::INPUT_DECKA), QColor(0, 255, 0));
        QCOMPARE(curveColor(ModelGraph::INPUT_DECKB), QColor(0, 255, 255));
        QCOMPARE(curveColor(ModelGraph::INPUT_1), QColor(0, 105, 0));
        QCOMPARE(curveColor(ModelGraph::INPUT_2), QColor(0, 105, 105));
        QCOMPARE(curveColor(ModelGraph::WAV_DIRECT), QColor(128, 128, 128)); // on a dark grey ground
    }
    void coloursOfTheStrips() {
        QCOMPARE(stripColor(ModelGraph::INPUT_DECKA), QColor(0, 255, 0, 100));
        QCOMPARE(stripColor(ModelGraph::INPUT_1), QColor(0, 255, 0, 100));
        QCOMPARE(stripColor(ModelGraph::INPUT_DECKB), QColor(0, 255, 255, 100));
        QCOMPARE(stripColor(ModelGraph::INPUT_2), QColor(0, 255, 255, 100));
        QCOMPARE(stripColor(ModelGraph::WAV_DIRECT).alpha(), 0);
    }
    void whatSoundsIsThick() {
        const QPen pen = penOf(ModelGraph::INPUT_DECKA, true, options(), Qt::green);
        QCOMPARE(pen.width(), 8);
        QCOMPARE(pen.style(), Qt::SolidLine);
        QCOMPARE(pen.capStyle(), Qt::RoundCap);
        QCOMPARE(pen.joinStyle(), Qt::RoundJoin);
        QCOMPARE(pen.color(), QColor(Qt::green));
    }
    void theThicknessIsTheUsersChoice() {
        QCOMPARE(penOf(ModelGraph::INPUT_1, true, options(true, false, 3), Qt::green).width(), 3);
    }
    void theDirectWaveIsAlwaysThreeWide() {
        QCOMPARE(penOf(ModelGraph::WAV_DIRECT, true, options(), Qt::black).width(), 3);
        QCOMPARE(penOf(ModelGraph::WAV_DIRECT, false, options(), Qt::black).width(), 1);
    }
    void aClosedFaderGivesAThinLine() {
        const QPen pen = penOf(ModelGraph::INPUT_DECKB, false, options(), Qt::cyan);
        QCOMPARE(pen.width(), 1);
        QCOMPARE(pen.style(), Qt::SolidLine);
        QCOMPARE(pen.color(), QColor(Qt::cyan));
    }
    void aClosedFaderVanishesUnlessTheOptionShowsIt() {
        QCOMPARE(penOf(ModelGraph::INPUT_DECKA, false, options(false), Qt::green).style(), Qt::NoPen);
        QCOMPARE(penOf(ModelGraph::INPUT_DECKA, true, options(false), Qt::green).style(), Qt::SolidLine);
    }
    void aClosedFaderMayInvertTheColour() {
        const QColor color(10, 200, 255, 90);
        QCOMPARE(penOf(ModelGraph::INPUT_DECKA, false, options(true, true), color).color(),
                 QColor(245, 55, 0, 90));
        QCOMPARE(penOf(ModelGraph::INPUT_DECKA, true, options(true, true), color).color(), color);
    }
    void theSamePointsMakeOnePen() {
        CurvePen pens;
        for (int i = 0; i < 5; ++i) {
            pens.pen(ModelGraph::INPUT_DECKA, true, Qt::green, options());
        }
        QCOMPARE(pens.made(), 1U);
        pens.pen(ModelGraph::INPUT_DECKA, false, Qt::green, options());
        pens.pen(ModelGraph::INPUT_DECKA, true, Qt::green, options());
        pens.pen(ModelGraph::INPUT_1, true, Qt::green, options());
        pens.pen(ModelGraph::INPUT_1, true, Qt::red, options());
        QCOMPARE(pens.made(), 5U);
    }
    void aChangedOptionShowsAtOnce() {
        CurvePen pens;
        QCOMPARE(pens.pen(ModelGraph::INPUT_DECKA, true, Qt::green, options(true, false, 8)).width(), 8);
        QCOMPARE(pens.pen(ModelGraph::INPUT_DECKA, true, Qt::green, options(true, false, 2)).width(), 2);
        QCOMPARE(pens.pen(ModelGraph::INPUT_DECKA, false, Qt::green, options(true)).style(), Qt::SolidLine);
        QCOMPARE(pens.pen(ModelGraph::INPUT_DECKA, false, Qt::green, options(false)).style(), Qt::NoPen);
    }
};

GRAMO_TEST_GUILESS_MAIN(TestCurvePen)
#include "tst_curvepen.moc"
