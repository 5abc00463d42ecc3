#include "curvedrawing.h"

#include "curvecolor.h"
#include "soundstrip.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double farAway = 16000.0; // pixels beyond any screen and within what the painter can take

// Equal for the eye: the two are whole pixels.
bool samePixel(double a, double b) {
    return std::abs(a - b) <= 1e-12 * std::min(std::abs(a), std::abs(b));
}

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

std::vector<CurveSegment> normalSegments(const CurvePointStore::View& points, CurveStretch stretch,
                                         const GraphScale& scale, double offset) {
    const auto pixelOf = [&](const CurvePoint& point) {
        return QPointF(scale.column(point.time), std::trunc(scale.mapY(point.position + offset)));
    };
    const CurveWalk walk = curveWalk(stretch, curveStride(points, stretch, scale));
    std::vector<CurveSegment> segments;
    segments.reserve((stretch.to - stretch.first) / walk.stride + 2);

    const CurvePoint& first = points[stretch.first];
    QPointF previous(scale.column(first.time), scale.mapY(first.position + offset));
    for (std::size_t i = walk.start; i <= stretch.to; i += walk.stride) {
        const QPointF pixel = pixelOf(points[i]);
        segments.push_back({{previous, pixel}, i});
        previous = pixel;
    }
    const QPointF tail = pixelOf(points[stretch.to - 1]);
    if (!samePixel(previous.x(), tail.x()) || !samePixel(previous.y(), tail.y())) {
        segments.push_back({{previous, tail}, stretch.to - 1});
    }
    return segments;
}

void CurveDrawing::drawNormal(const CurveScene& scene, const CurveExtract& curve, double offset) {
    const QColor color = curveColor(curve.item);
    m_batch.clear();
    QPen pen;
    const auto flush = [&] {
        if (!m_batch.empty() && pen.style() != Qt::NoPen) {
            scene.painter.setPen(pen);
            scene.painter.drawLines(m_batch.data(), static_cast<int>(m_batch.size()));
        }
        m_batch.clear();
    };
    bool first = true;
    bool soundOn = false;
    for (const CurveSegment& segment : normalSegments(curve.points, curve.stretch, scene.scale, offset)) {
        const bool now = curve.points[segment.point].soundOn != 0;
        if (first || now != soundOn) {
            flush();
            pen = m_pen.pen(curve.item, now, color, scene.options);
            soundOn = now;
            first = false;
        }
        if (finite(segment.line) && !outside(segment.line, scene.view, pen.widthF())) {
            m_batch.emplace_back(withinReach(segment.line.p1()), withinReach(segment.line.p2()));
        }
    }
    flush();
}

void CurveDrawing::drawStrip(const CurveScene& scene, const CurveExtract& curve) {
    const QColor color = stripColor(curve.item);
    for (const QRect& bar : soundStrip(curve.points, curve.stretch, scene.scale, curve.item)) {
        scene.painter.fillRect(bar, color);
    }
}
