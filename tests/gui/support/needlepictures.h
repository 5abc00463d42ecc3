#pragma once
// The stored pictures that show needles without curves: the disc, and the bars of a sample.

#include "gui/support/graphpictures.h"

namespace GraphPictures {

/// Names below the disc: the live needle's, then the reference's.
inline std::vector<Text> discTexts(bool main, bool reference) {
    return {{QRectF(45, 236, 60, 22), main}, {QRectF(45, 266, 60, 22), reference}};
}

inline void addDiscs(std::vector<Row>& rows) {
    const auto disc = [&](const QString& name, const QString& shows, Look look, bool main, bool reference) {
        look.size = {270, main || reference ? 340 : 310}; // with room for names above the axis
        look.disc = true;
        look.masks = [](const DeckGraph& deck) {
            return std::vector<QRectF>{QRectF(0, 234, 270, deck.graph.height() - 234)};
        };
        look.texts = [=](const DeckGraph&) { return discTexts(main, reference); };
        add(rows, QStringLiteral("disc_") + name, shows, look);
    };
    disc(
        QStringLiteral("still"),
        QStringLiteral("no areas: the disc in the ground's colour with the black line at 12 o'clock and dots "
                       "at 3, 6 and 9, grey hub and rim with eight ticks, the live needle at 300 degrees (10 "
                       "o'clock) under hub and rim, its head over the rim; looper: no reference"),
        {.looper = true, .curves = needles(300.0, 30.0)}, false, false);
    disc(QStringLiteral("reference"),
         QStringLiteral("no areas: the live needle light green at 90 degrees, the reference let through at "
                        "225 degrees, paler than the live one"),
         {.curves = needles(90.0, 225.0)}, false, false);
    disc(QStringLiteral("areas"),
         QStringLiteral("grey disc, red slice from 40 to 150 and teal one from 170 to 320 degrees clockwise "
                        "from 12; the live needle light green at 90 in the red slice, the reference let "
                        "through at 250 in the teal one; both names below"),
         {.areas = Areas::Gaps, .curves = needles(90.0, 250.0)}, true, true);
    disc(QStringLiteral("areas_rotated"),
         QStringLiteral("the same slices turned with the record by 90 degrees back (red from 310 to 60, teal "
                        "from 80 to 230), the black line at 9 o'clock, the live needle at 12, the reference "
                        "at its own 250; both names below"),
         {.areas = Areas::Gaps, .rotate = true, .curves = needles(90.0, 250.0)}, true, true);
    disc(QStringLiteral("areas_closed"),
         QStringLiteral("slices as still, the live needle at 90 without a head and without a name: closed; "
                        "the reference at 250 with its name"),
         {.areas = Areas::Gaps, .curves = needles(90.0, 250.0, false)}, false, true);
    disc(QStringLiteral("areas_outside"),
         QStringLiteral(
             "slices as still, the live needle at 160 between them: no name; the reference at 350: no name"),
         {.areas = Areas::Gaps, .curves = needles(160.0, 350.0)}, false, false);
    disc(QStringLiteral("deckb"),
         QStringLiteral("no areas, deck B: both needles cyan, the live one at 90, the reference at 225"),
         {.deck = ModelGraph::INPUT_DECKB, .curves = needles(90.0, 225.0)}, false, false);
}

inline void addWaves(std::vector<Row>& rows) {
    const auto wave = [&](const QString& name, const QString& shows, Look look) {
        look.areas = Areas::Wave;
        look.size = {420, 260};
        add(rows, QStringLiteral("wave_") + name, shows, look);
    };
    wave(
        QStringLiteral("bar_start"),
        QStringLiteral("the bar of the sample over the width below the plot: at angle 0 its start stands "
                       "under the needle at a third, red from 40 to 150 degrees right of it, teal from 170 "
                       "on round the end; eight sounds that die away to the right; no room for a lane above"),
        {.curves = needles(0.0, 0.0)});
    wave(
        QStringLiteral("bar_turned"),
        QStringLiteral(
            "the bar moved left by 225 degrees: teal under the needle, red left and right ends as they wrap"),
        {.curves = needles(225.0, 0.0)});
    wave(QStringLiteral("side_phrasing"),
         QStringLiteral("the bar at the right holds the red area's sample alone, from its start below; the "
                        "live needle in the middle of it (95 of 40 to 150), the reference a quarter up, "
                        "which is its place in the teal area"),
         {.display = ModelDisplay::PHRASING, .curves = needles(95.0, 208.0)});
    wave(QStringLiteral("side_outside"),
         QStringLiteral("the live needle outside all areas since the start: no sample in the bar and no live "
                        "needle; the reference a quarter up"),
         {.display = ModelDisplay::PHRASING, .curves = needles(160.0, 208.0)});
    wave(QStringLiteral("side_drumming"),
         QStringLiteral("the bar at the right holds the whole sample from below, grey with a red and a teal "
                        "stretch; the live needle at 300 degrees, the reference at 120, let through"),
         {.display = ModelDisplay::DRUMMING, .curves = needles(300.0, 120.0)});
    wave(QStringLiteral("side_looper"), QStringLiteral("the same without the reference's needle"),
         {.display = ModelDisplay::DRUMMING, .looper = true, .curves = needles(300.0, 120.0)});
    wave(QStringLiteral("side_deckb"), QStringLiteral("the same with the reference, both needles cyan"),
         {.display = ModelDisplay::DRUMMING,
          .deck = ModelGraph::INPUT_DECKB,
          .curves = needles(300.0, 120.0)});
}

} // namespace GraphPictures
