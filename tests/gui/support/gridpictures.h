#pragma once
// The stored pictures of the grid. Its letters are looked for, not compared.

#include "gui/support/graphpictures.h"

#include <cmath>

namespace GraphPictures {

/// All letters of a grid: values at the left, beats, cursor and caption below.
inline std::vector<QRectF> gridMasks(const DeckGraph& deck) {
    const double below = deck.graph.layoutPixels().plotBottom + 4.0;
    return {QRectF(0, 0, 42, deck.graph.height()),
            QRectF(0, below, deck.graph.width(), deck.graph.height() - below)};
}

inline std::vector<Text> gridTexts(const DeckGraph& deck) {
    const GraphScale scale = deck.scale();
    const GraphLayout& layout = deck.graph.layoutPixels();
    std::vector<Text> texts;
    const auto value = [&](double y) { texts.push_back({QRectF(2, scale.mapY(y) - 6, 33, 12)}); };
    if (mode().displayMode() == ModelDisplay::NORMAL) {
        for (const double y : {1000.0, 2000.0}) {
            value(y);
        }
        // Half-way between two lines there is none.
        texts.push_back({QRectF(2, scale.mapY(1500.0) - 6, 33, 12), false});
    } else {
        for (int i = 0; i <= 10; ++i) {
            value(i * 100000.0);
        }
    }
    texts.push_back({QRectF(0, 0, 42, 20), false});
    const double cursor = scale.mapX(clocks().cursor(deck.graph.deckName()));
    texts.push_back({QRectF(cursor - 16, layout.plotBottom + 4, 32, 15), true, true});
    const double beat = training().beatLength(deck.graph.deckName());
    for (int i = 1; i <= 4; ++i) {
        texts.push_back({QRectF(scale.mapX(i * beat) - 8, layout.plotBottom + 4, 16, 13)});
        if (const double between = scale.mapX((i + 0.5) * beat); std::abs(between - cursor) > 40.0) {
            texts.push_back({QRectF(between - 10, layout.plotBottom + 4, 20, 13), false});
        }
    }
    texts.push_back({QRectF(320, layout.captionBottom - 13, 100, 12)});
    texts.push_back({QRectF(46, layout.captionBottom - 13, 150, 12), false}); // no latency
    return texts;
}

inline void addGrids(std::vector<Row>& rows) {
    const double beat = 48000.0 * 60.0 / 84.0;
    const auto grid = [&](const QString& name, const QString& shows, Look look) {
        look.size = {420, 300};
        look.grid = true;
        look.cursor = 120000.0;
        look.curves = [](DeckGraph& deck) { GraphHand::play(deck.main, 115000.0); };
        look.masks = gridMasks;
        look.texts = gridTexts;
        add(rows, QStringLiteral("grid_") + name, shows, look);
    };
    const QString common = QStringLiteral(
        "; axes left and below, the red cursor, a stretch of a live curve on top, letters masked");
    grid(QStringLiteral("normal"),
         QStringLiteral(
             "upright lines at the beats 1 to 4, the fourth heavy, level lines at 1k and 2k units") +
             common,
         {});
    grid(QStringLiteral("normal_shifted"),
         QStringLiteral("the first click is at the second beat: that one is heavy, 1, 3 and 4 thin") + common,
         {.firstMetronome = 2.0 * beat});
    grid(QStringLiteral("phrasing"),
         QStringLiteral("eleven level lines at each tenth, the fourth beat heavy") + common,
         {.display = ModelDisplay::PHRASING});
    grid(QStringLiteral("phrasing_areas"),
         QStringLiteral("eleven level lines at each tenth in spite of the areas, the fourth beat heavy") +
             common,
         {.display = ModelDisplay::PHRASING, .areas = Areas::Gaps});
    grid(QStringLiteral("drumming"),
         QStringLiteral("eleven level lines at each tenth, the fourth beat heavy") + common,
         {.display = ModelDisplay::DRUMMING});
    grid(QStringLiteral("drumming_areas"),
         QStringLiteral("four level lines at 40, 150, 170 and 320 degrees where the areas start and end, the "
                        "fourth beat heavy") +
             common,
         {.display = ModelDisplay::DRUMMING, .areas = Areas::Gaps});
}

} // namespace GraphPictures
