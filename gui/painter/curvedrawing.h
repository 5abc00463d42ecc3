#pragma once

#include "curvepen.h"
#include "curvestride.h"
#include "graphscale.h"

#include <QLineF>
#include <QPainter>

#include <vector>

/// One line of a curve, in the pen of one of its points.
struct CurveSegment {
    QLineF line;           ///< pixels
    std::size_t point = 0; ///< whose pen it takes
};

/// The lines of the normal display: the position, moved by `offset`, over time. The last one leads to the
/// point before the end of the stretch, so that thinning never cuts the tail.
std::vector<CurveSegment> normalSegments(const CurvePointStore::View& points, CurveStretch stretch,
                                         const GraphScale& scale, double offset);

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

/// Draws curves. Lines whose points share a pen go to the painter together; each is still a line of its own.
class CurveDrawing {
public:
    void drawNormal(const CurveScene& scene, const CurveExtract& curve, double offset);
    static void drawStrip(const CurveScene& scene, const CurveExtract& curve);

private:
    CurvePen m_pen;
    std::vector<QLineF> m_batch;
};
