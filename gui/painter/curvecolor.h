#pragma once

#include "graphstyle.h"

#include "model/modelgraph.h"

#include <QColor>

#include <optional>

/// Colour of a curve on a deck without areas. The wave above the plot is of a grey that inverted is as light.
inline QColor curveColor(ModelGraph::EnumGraph item) {
    switch (item) {
    case ModelGraph::INPUT_DECKA:
        return QColor(0, 255, 0);
    case ModelGraph::INPUT_DECKB:
        return QColor(0, 255, 255);
    case ModelGraph::INPUT_1:
        return QColor(0, 105, 0);
    case ModelGraph::INPUT_2:
        return QColor(0, 105, 105);
    case ModelGraph::WAV_DIRECT:
        return QColor(128, 128, 128);
    default:
        return QColor(0, 0, 0);
    }
}

/// Whether a curve is a reference, not what a hand does now.
inline bool isReference(ModelGraph::EnumGraph item) {
    return item == ModelGraph::INPUT_1 || item == ModelGraph::INPUT_2;
}

/// Colour of a curve in an area of that colour: a reference is lighter than the live curve.
inline QColor curveColorInArea(ModelGraph::EnumGraph item, const QColor& area) {
    if (!isReference(item)) {
        return area;
    }
    const auto raised = [](int value) { return value < 205 ? value + 50 : value; };
    return QColor(raised(area.red()), raised(area.green()), raised(area.blue()), area.alpha());
}

/// Colour of a point of a curve: that of the area it lies in. Where the deck has areas and the point lies in
/// none it is grey or, without `noSoundGrey`, fully transparent.
inline QColor curvePointColor(ModelGraph::EnumGraph item, const std::optional<QColor>& area,
                              bool deckHasAreas, bool noSoundGrey) {
    if (area) {
        return curveColorInArea(item, *area);
    }
    if (deckHasAreas) {
        return noSoundGrey ? graphGrey : QColor(0, 0, 0, 0);
    }
    return curveColor(item);
}

/// Colour of a curve's needle; `referenceAlpha` is that of a reference.
inline QColor needleColor(ModelGraph::EnumGraph item, int referenceAlpha = 150) {
    const bool deckA = item == ModelGraph::INPUT_DECKA || item == ModelGraph::INPUT_1;
    return QColor(0, 255, deckA ? 0 : 255, isReference(item) ? referenceAlpha : 255);
}

/// Colour of a curve's sound strip.
inline QColor stripColor(ModelGraph::EnumGraph item) {
    switch (item) {
    case ModelGraph::INPUT_DECKA:
    case ModelGraph::INPUT_1:
        return QColor(0, 255, 0, 100);
    case ModelGraph::INPUT_DECKB:
    case ModelGraph::INPUT_2:
        return QColor(0, 255, 255, 100);
    default:
        return QColor(0, 0, 0, 0);
    }
}

/// What is seen where a colour lies over an opaque one.
inline QColor laidOver(const QColor& color, const QColor& ground) {
    const auto mix = [alpha = color.alpha()](int over, int under) {
        return (over * alpha + under * (255 - alpha) + 127) / 255;
    };
    return QColor(mix(color.red(), ground.red()), mix(color.green(), ground.green()),
                  mix(color.blue(), ground.blue()));
}
