#pragma once
// What a picture of curves must show, in words.

#include "gui/support/graphpictures.h"

namespace GraphPictures {

/// The display alone: what the height means and where the line breaks.
inline QString displayInWords(const Look& look) {
    switch (look.display) {
    case ModelDisplay::NORMAL:
        return QStringLiteral("the hand's position, one unbroken path per curve, the reference 34 pixels "
                              "later and lifted to the live curve's start");
    case ModelDisplay::PHRASING:
        return look.areas == Areas::None
                   ? QStringLiteral("the angle from 0 below to 360 above, broken at top and bottom where it "
                                    "crosses 0 (x 79, back and forth at 120 to 200), the reference 55 "
                                    "degrees lower and not lifted")
                   : QStringLiteral("in each area the angle from its start below to its end above, entered "
                                    "and left at top or bottom, nothing outside the areas");
    default:
        return look.areas == Areas::None
                   ? QStringLiteral("the angle from 0 below to 360 above, broken at top and bottom where it "
                                    "crosses 0 (x 79, back and forth at 120 to 200), the reference 55 "
                                    "degrees lower and not lifted")
                   : QStringLiteral(
                         "the angle from 0 below to 360 above whatever the areas, broken where a seen line "
                         "goes from above 270 to below 90 degrees or back, the reference 55 degrees lower");
    }
}

inline QString areasInWords(const Look& look) {
    const bool angleOfAreas = look.display == ModelDisplay::PHRASING;
    switch (look.areas) {
    case Areas::None:
        return look.deck == ModelGraph::INPUT_DECKA
                   ? QStringLiteral("no areas: light green live over dark green reference")
                   : QStringLiteral("no areas, deck B: light cyan live over dark cyan reference");
    case Areas::Gaps:
        return angleOfAreas ? QStringLiteral("areas with gaps: red from 40 to 150 degrees, teal from 170 to "
                                             "320, both over the full height, the first piece inside an area "
                                             "still in the pen of the area before; the reference paler")
                            : QStringLiteral("areas with gaps: red from 40 to 150 degrees, teal from 170 to "
                                             "320, no line in the gaps; the reference paler");
    case Areas::Touching:
        return angleOfAreas
                   ? QStringLiteral("touching areas: one red line through the border of the two red areas at "
                                    "100 degrees, across the whole height and not broken; teal from 150 to "
                                    "250 is another colour: broken at 150; nothing outside the areas")
                   : QStringLiteral("touching areas of one colour: red from 40 to 150 degrees without a seam "
                                    "at 100, teal from 150 to 250, grey elsewhere; the reference paler");
    default:
        switch (look.display) {
        case ModelDisplay::NORMAL:
            return QStringLiteral(
                "sample: colours as with gaps, above the plot the lane of what is heard with upright lines "
                "that are high where the sample is loud and short where closed or at rest, below it the bar "
                "of the sample, grey with a red and a teal stretch, and the needle at a third");
        case ModelDisplay::PHRASING:
            return QStringLiteral("sample: areas as with gaps, above the plot the lane of what is heard, at "
                                  "the right upright the teal area's sample with the two needles in it");
        default:
            return QStringLiteral(
                "sample: areas as with gaps, above the plot the lane of what is heard, at the right upright "
                "the whole sample with a red and a teal stretch and the two needles");
        }
    }
}

inline QString faderInWords(const Look& look) {
    switch (look.fader) {
    case Fader::Shown:
        return QStringLiteral("a thin line of the same colour while closed, the strips low there");
    case Fader::Hidden:
        return (look.areas == Areas::Wave
                    ? QStringLiteral("no line and nothing in the lane while closed, the strips low there")
                    : QStringLiteral("no line while closed, the strips low there"));
    default:
        return look.areas == Areas::None
                   ? QStringLiteral("a thin line in magenta (live) and light magenta (reference) while "
                                    "closed, the strips low there in their own colour")
                   : QStringLiteral("a thin line in the inverted colour while closed (cyan for red, red for "
                                    "teal, dark for grey), the strips low there in their own colour");
    }
}

inline QString shiniInWords(const Look& look) {
    const bool gaps = look.areas == Areas::Gaps || look.areas == Areas::Wave;
    const QString where =
        look.display == ModelDisplay::PHRASING
            ? look.areas == Areas::None
                  ? QString()
                  : QStringLiteral(", if a line comes or goes there; at the bottom if the point is outside")
        : gaps ? QStringLiteral(", in the gaps as well")
               : QString();
    switch (look.shini) {
    case ModelShini::Arrows:
        return (look.reverse ? QStringLiteral("arrows with the fader reversed: down-left where it closes, "
                                              "up-right where it opens")
                             : QStringLiteral("arrows: down-right where it closes, up-left where it opens")) +
               where;
    case ModelShini::Circles:
        return (look.reverse
                    ? QStringLiteral(
                          "circles with the fader reversed: full where it closes, empty where it opens")
                    : QStringLiteral("circles: empty where it closes, full where it opens")) +
               where;
    case ModelShini::Middle:
        return QStringLiteral("a full circle in the middle of each closed passage") +
               (look.display == ModelDisplay::PHRASING && look.areas != Areas::None
                    ? QStringLiteral(
                          " if a line is there where it opens; at the bottom if the middle is outside")
                    : where);
    default:
        return QStringLiteral("no marks");
    }
}

/// Both curves, or the live one alone, in full.
inline QString curvesInWords(const Look& look) {
    const QString all = displayInWords(look) + QStringLiteral("; ") + areasInWords(look) +
                        QStringLiteral("; ") + faderInWords(look) + QStringLiteral("; ") + shiniInWords(look);
    return look.looper ? QStringLiteral("looper: no reference, neither line nor strip nor marks; else ") + all
                       : all;
}

} // namespace GraphPictures
