#include "painter/shinimarks.h"

#include "gui/support/curves.h"
#include "gui/support/curvescreen.h"
#include "painter/drummingline.h"
#include "painter/normalline.h"
#include "painter/phrasingline.h"
#include "support/testmain.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <memory>

namespace {

const QColor red(200, 0, 0);
const QColor blue(0, 0, 200);
constexpr double step = 30.0; // three pixels

// 10 frames a pixel; the plot's lower left corner lies at 45, 460.
GraphScale scaleTo(double yMax, double xMin = 0.0, bool following = false) {
    return {GraphLayout::of(1200, 500, false, false), {xMin, xMin + 11550.0}, {0.0, yMax}, following};
}

const AreaColors& noAreas() {
    static const AreaColors none;
    return none;
}

std::unique_ptr<CurveLine> lineOf(ModelDisplay::EnumDisplay display, const CurveExtract& curve,
                                  const GraphScale& scale, const AreaColors& areas = noAreas(),
                                  double offset = 0.0) {
    if (display == ModelDisplay::PHRASING) {
        return std::make_unique<PhrasingLine>(curve, scale, areas);
    }
    if (display == ModelDisplay::DRUMMING) {
        return std::make_unique<DrummingLine>(curve, scale, areas);
    }
    return std::make_unique<NormalLine>(curve, scale, offset);
}

/// Three pixels from point to point. A fader that is open at an 'o', in any other case closed.
struct Take {
    CurvePointStore store;
    explicit Take(const QByteArray& fader, double distance = step) {
        addPoints(store, int(fader.size()), distance, [&](int i, CurvePoint& p) {
            p.position = 10.0;
            turn(p, 50.0);
            p.soundOn = fader[i] == 'o';
        });
    }
    CurveExtract all(std::size_t first = 0) const {
        return {ModelGraph::INPUT_DECKA, store.view(), {first, store.size() - 1}};
    }
    std::vector<ShiniMark> marks(ModelShini::EnumShini mode, std::size_t first = 0, double xMin = 0.0,
                                 bool following = false) const {
        return shiniMarks(*lineOf(ModelDisplay::NORMAL, all(first), scaleTo(425.0, xMin, following)), mode,
                          false);
    }
};

// The mark on a point whose pixel that is.
bool isMark(const ShiniMark& mark, ShiniIcon icon, double x, double y = 450.0) {
    return mark.icon == icon && mark.corner == QPointF(x - 10.0, y - 10.0);
}

bool same(const std::vector<ShiniMark>& a, const std::vector<ShiniMark>& b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(),
                      [](const auto& p, const auto& q) { return p.icon == q.icon && p.corner == q.corner; });
}

/// The marks by the rule's own words, point by point.
class Rule {
public:
    Rule(ModelDisplay::EnumDisplay display, const CurveLine& line, const GraphScale& scale,
         const AreaColors& areas)
        : m_display(display), m_line(line), m_scale(scale), m_areas(areas) {}

    std::vector<ShiniMark> marks(ModelShini::EnumShini mode, bool reverse) const {
        std::vector<ShiniMark> marks;
        if (!m_line.lastChosen() || mode == ModelShini::Undefined) {
            return marks;
        }
        const CurveWalk walk = m_line.walk();
        std::optional<std::size_t> remembered;
        if (!sound(walk.start)) {
            for (std::size_t i = walk.start; i > 0 && !remembered; --i) {
                remembered = sound(i - 1) ? std::optional(i - 1) : std::nullopt;
            }
        }
        for (std::size_t i = walk.start; i <= *m_line.lastChosen(); i += walk.stride) {
            const bool before = sound(i < walk.stride ? i : i - walk.stride);
            if (sound(i) == before) {
                continue;
            }
            if (mode != ModelShini::Middle) {
                add(marks, i, shiniIcon(mode, sound(i), reverse), i, plotted(i));
            } else if (!sound(i)) {
                remembered = i;
            } else if (remembered) {
                const double from = time(*remembered);
                std::size_t middle = i;
                while (middle > 0 && !(time(middle) < from + (time(i) - from) / 2.0)) {
                    --middle;
                }
                if (m_scale.column(time(middle)) >= 45.0) {
                    add(marks, i, ShiniIcon::CircleFull, middle, marked(middle));
                }
            }
        }
        return marks;
    }

private:
    bool sound(std::size_t i) const { return m_line.points()[i].soundOn != 0; }
    double time(std::size_t i) const { return m_line.points()[i].time; }
    double plotted(std::size_t i) const {
        const CurvePoint& point = m_line.points()[i];
        return m_display == ModelDisplay::PHRASING   ? phrasingY(point, m_areas)
               : m_display == ModelDisplay::DRUMMING ? drummingY(point)
                                                     : point.position;
    }
    double marked(std::size_t i) const {
        return m_display == ModelDisplay::DRUMMING ? m_line.points()[i].angle * 2777.0 : plotted(i);
    }
    void add(std::vector<ShiniMark>& marks, std::size_t reached, ShiniIcon icon, std::size_t at,
             double value) const {
        const auto leads =
            reached == m_line.walk().start ? m_line.entry() : std::optional(m_line.step(reached));
        if (leads && leads->lines > 0) {
            marks.push_back(
                {icon, QPointF(m_scale.column(time(at)) - 10.0, std::trunc(m_scale.mapY(value)) - 10.0)});
        }
    }

    ModelDisplay::EnumDisplay m_display;
    const CurveLine& m_line;
    const GraphScale& m_scale;
    const AreaColors& m_areas;
};

} // namespace

class TestShiniMarks : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void arrowsPointToWhereTheFaderGoes() {
        QCOMPARE(shiniIcon(ModelShini::Arrows, true, false), ShiniIcon::ArrowUpLeft);
        QCOMPARE(shiniIcon(ModelShini::Arrows, true, true), ShiniIcon::ArrowUpRight);
        QCOMPARE(shiniIcon(ModelShini::Arrows, false, false), ShiniIcon::ArrowDownRight);
        QCOMPARE(shiniIcon(ModelShini::Arrows, false, true), ShiniIcon::ArrowDownLeft);
    }
    void circlesAreFullWhereSoundAndReverseDiffer() {
        QCOMPARE(shiniIcon(ModelShini::Circles, true, false), ShiniIcon::CircleFull);
        QCOMPARE(shiniIcon(ModelShini::Circles, true, true), ShiniIcon::CircleEmpty);
        QCOMPARE(shiniIcon(ModelShini::Circles, false, false), ShiniIcon::CircleEmpty);
        QCOMPARE(shiniIcon(ModelShini::Circles, false, true), ShiniIcon::CircleFull);
    }
    void noModeNoMarks() {
        const Take take("oo--oo--oo");
        QVERIFY(take.marks(ModelShini::Undefined).empty());
    }
    void everyCutHasItsMark() {
        const Take take("ooo--o-oo");
        const auto marks = take.marks(ModelShini::Arrows); // column 48 + 3 i
        QCOMPARE(marks.size(), std::size_t{4});
        QVERIFY(isMark(marks[0], ShiniIcon::ArrowDownRight, 57));
        QVERIFY(isMark(marks[1], ShiniIcon::ArrowUpLeft, 63));
        QVERIFY(isMark(marks[2], ShiniIcon::ArrowDownRight, 66));
        QVERIFY(isMark(marks[3], ShiniIcon::ArrowUpLeft, 69));
        const auto circles = take.marks(ModelShini::Circles);
        QCOMPARE(circles.size(), std::size_t{4});
        QVERIFY(isMark(circles[0], ShiniIcon::CircleEmpty, 57));
        QVERIFY(isMark(circles[1], ShiniIcon::CircleFull, 63));
    }
    void aReversedFaderTurnsTheMarks() {
        const Take take("ooo--ooo");
        const auto line = lineOf(ModelDisplay::NORMAL, take.all(), scaleTo(425.0));
        const auto arrows = shiniMarks(*line, ModelShini::Arrows, true);
        QVERIFY(isMark(arrows[0], ShiniIcon::ArrowDownLeft, 57));
        QVERIFY(isMark(arrows[1], ShiniIcon::ArrowUpRight, 63));
        const auto circles = shiniMarks(*line, ModelShini::Circles, true);
        QVERIFY(isMark(circles[0], ShiniIcon::CircleFull, 57));
        QVERIFY(isMark(circles[1], ShiniIcon::CircleEmpty, 63));
        QVERIFY(
            same(shiniMarks(*line, ModelShini::Middle, true), shiniMarks(*line, ModelShini::Middle, false)));
    }
    // The take's first point has none before it and is held against itself.
    void theFirstStrideIsHeldAgainstItself() {
        for (const char* fader : {"------", "oooooo"}) {
            QVERIFY(Take(fader).marks(ModelShini::Arrows).empty());
        }
    }
    void theFirstVisiblePointIsHeldAgainstTheOneBeforeIt() {
        const Take take("oo------");
        const auto marks = take.marks(ModelShini::Arrows, 2);
        QCOMPARE(marks.size(), std::size_t{1});
        QVERIFY(isMark(marks[0], ShiniIcon::ArrowDownRight, 54));
        QVERIFY(take.marks(ModelShini::Arrows, 3).empty());
    }
    // Every second point is chosen: the fader is looked at a stride back, between them it isn't.
    void aCutIsHeldAgainstThePointOneStrideBack() {
        QByteArray fader(40, 'o');
        fader[11] = '-'; // passed over
        fader[20] = fader[21] = fader[22] = '-';
        const Take take(fader, 10.0);
        for (const std::size_t first : {std::size_t{0}, std::size_t{5}}) {
            const auto marks = take.marks(ModelShini::Arrows, first);
            QCOMPARE(marks.size(), std::size_t{2});
            QVERIFY(isMark(marks[0], ShiniIcon::ArrowDownRight, 46 + 20));
            QVERIFY(isMark(marks[1], ShiniIcon::ArrowUpLeft, 46 + 24));
        }
        const auto marks = take.marks(ModelShini::Arrows, 23); // enters at 24, a stride before it is closed
        QCOMPARE(marks.size(), std::size_t{1});
        QVERIFY(isMark(marks[0], ShiniIcon::ArrowUpLeft, 46 + 24));
    }
    void noLineNoMark() {
        const AreaColors areas({{0.0, 100.0, red}});
        CurvePointStore store;
        addPoints(store, 8, step, [](int i, CurvePoint& p) {
            turn(p, i < 4 ? 200.0 : 50.0); // outside, then inside
            p.soundOn = i == 0 || i == 2 || i == 4 || i == 6;
        });
        const CurveExtract curve{ModelGraph::INPUT_DECKA, store.view(), {0, 7}};
        const auto line = lineOf(ModelDisplay::PHRASING, curve, scaleTo(1000000.0), areas);
        const auto arrows = shiniMarks(*line, ModelShini::Arrows, false);
        QCOMPARE(arrows.size(), std::size_t{4}); // from the point that enters the area on
        QVERIFY(isMark(arrows[0], ShiniIcon::ArrowUpLeft, 48 + 12, 247));
        const auto middles = shiniMarks(*line, ModelShini::Middle, false);
        QCOMPARE(middles.size(), std::size_t{2}); // not of the passage that ends outside
    }
    void inTheDrummingDisplayTheFirstPointHasNoMark() {
        CurvePointStore store;
        addPoints(store, 60, 10.0, [](int i, CurvePoint& p) { p.soundOn = i < 4; });
        const CurveExtract curve{ModelGraph::INPUT_DECKA, store.view(), {0, 59}};
        const auto line = lineOf(ModelDisplay::DRUMMING, curve, scaleTo(1000000.0));
        QCOMPARE(shiniMarks(*line, ModelShini::Arrows, false).size(), std::size_t{1}); // at point 4
    }

    void aClosedPassageIsMarkedInItsMiddle() {
        //               0123456789
        const Take take("oo------oo");
        const auto marks = take.marks(ModelShini::Middle);
        // Closed at point 2, open at point 8: halfway is point 5's time, the last point below it is 4.
        QCOMPARE(marks.size(), std::size_t{1});
        QVERIFY(isMark(marks[0], ShiniIcon::CircleFull, 48 + 12));
        const auto uneven = Take("oo-----oo").marks(ModelShini::Middle); // halfway between 4 and 5
        QCOMPARE(uneven.size(), std::size_t{1});
        QVERIFY(isMark(uneven[0], ShiniIcon::CircleFull, 48 + 12));
    }
    void everyClosedPassageHasOneMark() {
        QCOMPARE(Take("o--oo---o-o----").marks(ModelShini::Middle).size(), std::size_t{3});
    }
    void aPassageThatIsStillClosedHasNoMark() {
        QVERIFY(Take("ooo------").marks(ModelShini::Middle).empty());
    }
    void aPassageThatWasClosedFromTheStartHasNoMark() {
        QVERIFY(Take("---------oo").marks(ModelShini::Middle).empty());
        QVERIFY(Take("---------oo").marks(ModelShini::Middle, 4).empty());
    }
    void aPassageThatIsClosedAtTheFirstChosenPointIsSearchedBackwards() {
        //               01234567890123
        const Take take("oo----------oo");
        // Point 2 is out of the view; the last sounding one is point 1: halfway to 12 is 6.5, below it 6.
        const auto marks = take.marks(ModelShini::Middle, 4);
        QCOMPARE(marks.size(), std::size_t{1});
        QVERIFY(isMark(marks[0], ShiniIcon::CircleFull, 48 + 18));
        // From the first point on the cut itself counts: halfway from 2 is 7, below it 6.
        QVERIFY(isMark(take.marks(ModelShini::Middle, 0)[0], ShiniIcon::CircleFull, 48 + 18));
    }
    void aSearchedPointCountsThoughTheStridePassesOverIt() {
        QByteArray fader(60, '-');
        fader[7] = 'o'; // odd: never chosen
        fader[30] = fader[31] = 'o';
        const auto marks = Take(fader, 10.0).marks(ModelShini::Middle, 10);
        QCOMPARE(marks.size(), std::size_t{1}); // halfway from 7 to 30 is 18.5
        QVERIFY(isMark(marks[0], ShiniIcon::CircleFull, 46 + 18));
    }
    void aSecondPassageIsMarkedFromItsOwnCut() {
        //               0123456789012345
        const Take take("oo----oo------oo");
        const auto marks = take.marks(ModelShini::Middle, 3);
        QCOMPARE(marks.size(), std::size_t{2});
        QVERIFY(isMark(marks[0], ShiniIcon::CircleFull, 48 + 9));  // from 1 to 6: 3.5
        QVERIFY(isMark(marks[1], ShiniIcon::CircleFull, 48 + 30)); // from 8 to 14: 11
    }
    void aMiddleLeftOfThePlotIsLeftOut() {
        //               0123456789
        const Take take("oo------oo"); // the middle is point 4, at 150
        QCOMPARE(take.marks(ModelShini::Middle, 6, 150.0).size(), std::size_t{1}); // column 45
        QVERIFY(take.marks(ModelShini::Middle, 6, 151.0).empty());
        QVERIFY(take.marks(ModelShini::Middle, 6, 180.0).empty());
    }
    // While the graph follows, a time just left of the edge may share its column.
    void whatCountsForTheLeftEdgeIsTheColumn() {
        const Take take("oo------oo");
        QCOMPARE(take.marks(ModelShini::Middle, 6, 159.0, true).size(), std::size_t{1});
        QVERIFY(take.marks(ModelShini::Middle, 6, 160.0, true).empty());
        // The same where the passage's start is searched for: 8 to 20, the middle is the point at 12.
        CurvePointStore store;
        addPoints(store, 25, 1.0, [](int i, CurvePoint& p) {
            p.time = i < 5 ? 4.0 * (i + 1) : 30.0 * i;
            p.soundOn = i == 1 || i > 3;
        });
        const auto countAt = [&](double xMin) {
            const CurveExtract curve{ModelGraph::INPUT_DECKA, store.view(), {3, 24}};
            const auto line = lineOf(ModelDisplay::NORMAL, curve, scaleTo(425.0, xMin, true));
            return shiniMarks(*line, ModelShini::Middle, false).size();
        };
        QCOMPARE(countAt(15.0), std::size_t{1});
        QCOMPARE(countAt(19.0), std::size_t{1});
        QCOMPARE(countAt(20.0), std::size_t{0});
    }
    void theMiddlesHeightGoesByTheDisplay() {
        CurvePointStore store;
        addPoints(store, 10, step, [](int i, CurvePoint& p) {
            p.soundOn = i < 2 || i > 7;
            p.position = 10.0 * i;
            p.rawAngle = 30.0 + 10.0 * i;
            p.angle = 20.0 + 10.0 * i; // an amended curve
        });
        const CurveExtract curve{ModelGraph::INPUT_DECKA, store.view(), {0, 9}};
        const AreaColors areas({{40.0, 100.0, red}});
        const GraphScale angles = scaleTo(1000000.0);
        const auto middleY = [&](const CurveLine& line) {
            return shiniMarks(line, ModelShini::Middle, false).at(0).corner.y() + 10.0;
        };
        // Point 4: position 40, rawAngle 70, angle 60.
        QCOMPARE(middleY(NormalLine(curve, scaleTo(425.0), 100.0)), 460.0 - 140.0);
        QCOMPARE(middleY(PhrasingLine(curve, angles, areas)), std::trunc(460.0 - 0.5 * 425.0));
        QCOMPARE(middleY(DrummingLine(curve, angles, areas)),
                 std::trunc(460.0 - 60.0 * 2777.0 * 425.0 / 1000000.0));
    }
    void anArrowLiesOnTheLine() {
        CurvePointStore store;
        addPoints(store, 10, step, [](int i, CurvePoint& p) {
            p.soundOn = i < 4;
            p.rawAngle = 30.0 + 10.0 * i;
            p.angle = 20.0 + 10.0 * i; // an amended curve
        });
        const CurveExtract curve{ModelGraph::INPUT_DECKA, store.view(), {0, 9}};
        const DrummingLine line(curve, scaleTo(1000000.0), noAreas());
        const auto marks = shiniMarks(line, ModelShini::Arrows, false);
        QCOMPARE(marks.size(), std::size_t{1});
        QVERIFY(isMark(marks[0], ShiniIcon::ArrowDownRight, 48 + 12, line.step(4).segments[0].line.y2()));
    }

    void anyTakeHasTheMarksOfTheRule_data() {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 150; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }
    void anyTakeHasTheMarksOfTheRule() {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const double steps[] = {16.0, 64.0, 300.0, 1500.0};
        const double distance = steps[random.bounded(4)];
        const int cuts = 2 + random.bounded(300);
        double angle = 0.0;
        int sound = random.bounded(2);
        CurvePointStore store;
        addPoints(store, 2 + int(random.bounded(600000.0) / distance), distance, [&](int, CurvePoint& p) {
            sound = random.bounded(cuts) == 0 ? 1 - sound : sound;
            angle += random.bounded(3.0) - 1.0;
            p.position = angle;
            turn(p, angle);
            p.angle = random.bounded(40) == 0 ? 17.0 : p.angle;
            p.soundOn = sound != 0;
        });
        const AreaColors areas =
            random.bounded(2) == 0
                ? AreaColors()
                : AreaColors({{0.0, 100.0, red}, {120.0, 200.0, blue}, {200.0, 280.0, red}});
        int found = 0;
        for (int view = 0; view < 20; ++view) {
            for (const auto display :
                 {ModelDisplay::NORMAL, ModelDisplay::PHRASING, ModelDisplay::DRUMMING}) {
                CurveLook look;
                look.display = display;
                const GraphScale scale = CurveScreen::scaleAt(random.bounded(1.1 * store.view().back().time),
                                                              look, random.bounded(2) == 0);
                const auto curve = CurveScreen::extractAt(store, scale);
                if (!curve) {
                    continue;
                }
                const auto line = lineOf(display, *curve, scale, areas);
                const Rule rule(display, *line, scale, areas);
                for (const auto mode :
                     {ModelShini::Undefined, ModelShini::Arrows, ModelShini::Circles, ModelShini::Middle}) {
                    const bool reverse = random.bounded(2) == 0;
                    const auto marks = shiniMarks(*line, mode, reverse);
                    QVERIFY(same(marks, rule.marks(mode, reverse)));
                    found += int(marks.size());
                }
            }
        }
        s_found += found;
    }
    void theTakesHadMarks() { QVERIFY(s_found > 10000); }

private:
    static inline int s_found = 0;
};

GRAMO_TEST_MAIN(TestShiniMarks)
#include "tst_shinimarks.moc"
