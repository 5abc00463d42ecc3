#pragma once

#include "curvestride.h"
#include "graphoptions.h"
#include "graphscale.h"
#include "wavepicture.h"

#include "model/modeldisplay.h"
#include "model/modelgraph.h"

#include <QPainter>
#include <QRectF>

#include <cstdint>
#include <span>

class AreaColors;
class ShiniIcons;

/// What the drawings of one paint share.
struct CurveScene {
    QPainter& painter;
    const GraphScale& scale;
    const GraphOptions& options;
    QRectF view; ///< pixels that can be seen
    ModelDisplay::EnumDisplay display = ModelDisplay::NORMAL;
    const AreaColors* areas = nullptr;     ///< of the deck; null: none
    std::span<const WavePair> wavePairs{}; ///< of one turn of the record; empty: the deck has no wave
    ShiniIcons* icons = nullptr;           ///< null: cuts aren't marked
    bool reverse = false;                  ///< the crossfader is reversed
};

/// A curve's points as a drawing takes them: once.
struct CurveExtract {
    ModelGraph::EnumGraph item = ModelGraph::NOT_USED;
    CurvePointStore::View points;
    CurveStretch stretch;
    std::uint64_t generation = 0; ///< of the points: another one after they were emptied or changed
};
