#include "curvedrawing.h"

#include "curvecolor.h"
#include "devicepixels.h"
#include "soundstrip.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double farAway = 16000.0; // pixels beyond any screen

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

double withinReach(double coordinate) {
    return std::clamp(coordinate, -farAway, farAway);
}

} // namespace

void CurveDrawing::add(CurveStrokes& strokes, const CurveScene& scene, CurvePen& pens,
                       ModelGraph::EnumGraph item, const CurvePoint& point, const CurveSegment& segment) {
    const AreaColors::Area* area = scene.areas ? scene.areas->at(point.angle) : nullptr;
    const QColor color = curvePointColor(item, area ? std::optional(area->color) : std::nullopt,
                                         scene.areas && !scene.areas->empty(), scene.options.curveNoSound);
    const QPen& pen = pens.pen(item, point.soundOn != 0, color, scene.options);
    const double width = pen.widthF();
    if (pen.style() == Qt::NoPen || pen.color().alpha() == 0 || !finite(segment.line) ||
        outside(segment.line, scene.view, width)) {
        return;
    }
    const QLineF& line = segment.line;
    strokes.strokes[strokes.count++] = {{withinReach(line.x1()), withinReach(line.y1()),
                                         withinReach(line.x2()), withinReach(line.y2()), width},
                                        qPremultiply(pen.color().rgba())};
}

CurveStrokes CurveDrawing::strokes(const CurveScene& scene, const CurveExtract& curve,
                                   const CurveStep& step) {
    CurveStrokes strokes;
    for (std::size_t i = 0; i < step.lines; ++i) {
        const CurveSegment& segment = step.segments[i];
        add(strokes, scene, m_pens, curve.item, curve.points[segment.point], segment);
    }
    if (step.tick) {
        add(strokes, scene, m_wavePens, ModelGraph::WAV_DIRECT, curve.points[step.tick->point], *step.tick);
    }
    return strokes;
}

void drawSoundStrip(const CurveScene& scene, const CurveExtract& curve, const std::optional<QColor>& ground) {
    const QColor strip = stripColor(curve.item);
    const QColor color = ground ? laidOver(strip, *ground) : strip;
    // On whole device pixels neighbours meet without a seam.
    const DevicePixels device(scene.painter);
    const OnDevicePixels onPixels(scene.painter);
    for (const QRect& bar : soundStrip(curve.points, curve.stretch, scene.scale, curve.item)) {
        scene.painter.fillRect(device.pixels(bar), color);
    }
}
