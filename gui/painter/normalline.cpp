#include "normalline.h"

#include <algorithm>
#include <cmath>

namespace {

bool samePixel(double a, double b) {
    return std::abs(a - b) <= 1e-12 * std::min(std::abs(a), std::abs(b));
}

} // namespace

NormalLine::NormalLine(const CurveExtract& curve, const GraphScale& scale, double offset)
    : m_points(curve.points)
    , m_stretch(curve.stretch)
    , m_scale(scale)
    , m_offset(offset)
    , m_walk(curveWalk(curve.stretch, curveStride(curve.points, curve.stretch, scale))) {
    if (m_walk.start <= m_stretch.to) {
        m_lastChosen = m_walk.start + (m_stretch.to - m_walk.start) / m_walk.stride * m_walk.stride;
    }
}

QPointF NormalLine::pixel(std::size_t point) const {
    return {column(point), std::trunc(m_scale.mapY(m_points[point].position + m_offset))};
}

QPointF NormalLine::firstPixel() const {
    return {column(m_stretch.first), m_scale.mapY(m_points[m_stretch.first].position + m_offset)};
}

CurveSegment NormalLine::entry() const {
    return {{firstPixel(), pixel(m_walk.start)}, m_walk.start};
}

CurveSegment NormalLine::segment(std::size_t chosen) const {
    return {{pixel(chosen - m_walk.stride), pixel(chosen)}, chosen};
}

std::optional<CurveSegment> NormalLine::tail() const {
    const QPointF from = m_lastChosen ? pixel(*m_lastChosen) : firstPixel();
    const QPointF to = pixel(m_stretch.to - 1);
    if (samePixel(from.x(), to.x()) && samePixel(from.y(), to.y())) {
        return std::nullopt;
    }
    return CurveSegment{{from, to}, m_stretch.to - 1};
}

std::vector<CurveSegment> NormalLine::all() const {
    std::vector<CurveSegment> segments;
    if (m_lastChosen) {
        segments.push_back(entry());
        for (std::size_t i = m_walk.start + m_walk.stride; i <= *m_lastChosen; i += m_walk.stride) {
            segments.push_back(segment(i));
        }
    }
    if (const auto last = tail()) {
        segments.push_back(*last);
    }
    return segments;
}
