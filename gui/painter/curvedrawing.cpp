#include "curvedrawing.h"

#include "curvecolor.h"
#include "soundstrip.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double farAway = 16000.0; // pixels beyond any screen and within what the painter can take

bool finite(const QLineF& line) {
    return std::isfinite(line.x1()) && std::isfinite(line.y1()) && std::isfinite(line.x2()) &&
           std::isfinite(line.y2());
}

// Nothing of the line can be seen. `margin` is the room that its width takes.
bool outside(const QLineF& line, const QRectF& view, double margin) {
    return std::max(line.y1(), line.y2()) < view.top() - margin ||
           std::min(line.y1(), line.y2()) > view.bottom() + margin ||
           std::max(line.x1(), line.x2()) < view.left() - margin ||
           std::min(line.x1(), line.x2()) > view.right() + margin;
}

QPointF withinReach(const QPointF& point) {
    return {std::clamp(point.x(), -farAway, farAway), std::clamp(point.y(), -farAway, farAway)};
}

} // namespace

void SegmentDrawing::draw(QPainter& painter, const QRectF& view, const CurveExtract& curve,
                          const GraphOptions& options, const CurveSegment& segment) {
    const bool soundOn = curve.points[segment.point].soundOn != 0;
    const QPen& pen = m_pen.pen(curve.item, soundOn, curveColor(curve.item), options);
    if (pen.style() == Qt::NoPen || !finite(segment.line) || outside(segment.line, view, pen.widthF())) {
        return;
    }
    if (painter.pen() != pen) {
        painter.setPen(pen);
    }
    painter.drawLine(withinReach(segment.line.p1()), withinReach(segment.line.p2()));
}

void drawSoundStrip(const CurveScene& scene, const CurveExtract& curve) {
    const QColor color = stripColor(curve.item);
    for (const QRect& bar : soundStrip(curve.points, curve.stretch, scene.scale, curve.item)) {
        scene.painter.fillRect(bar, color);
    }
}
