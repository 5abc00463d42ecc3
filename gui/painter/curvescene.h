#pragma once

#include "curvestride.h"
#include "graphoptions.h"
#include "graphscale.h"

#include "model/modelgraph.h"

#include <QPainter>
#include <QRectF>

/// What the drawings of one paint share.
struct CurveScene {
    QPainter& painter;
    const GraphScale& scale;
    const GraphOptions& options;
    QRectF view; ///< pixels that can be seen
};

/// A curve's points as a drawing takes them: once.
struct CurveExtract {
    ModelGraph::EnumGraph item = ModelGraph::NOT_USED;
    CurvePointStore::View points;
    CurveStretch stretch;
};
