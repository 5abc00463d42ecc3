#include "curveline.h"

#include "areacolors.h"
#include "drummingline.h"
#include "normalline.h"
#include "phrasingline.h"
#include "standstill.h"

#include "curve/angle.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double waveMiddle = 85.0; // pixels; the strip stands above the plot
constexpr double quietTop = 84.0;

bool samePixel(double a, double b) {
    return std::abs(a - b) <= 1e-12 * std::min(std::abs(a), std::abs(b));
}

} // namespace

CurveLine::CurveLine(const CurveExtract& curve, const GraphScale& scale, std::span<const WavePair> wavePairs)
    : m_points(curve.points)
    , m_stretch(curve.stretch)
    , m_scale(scale)
    , m_wavePairs(wavePairs)
    , m_walk(curveWalk(curve.stretch, curveStride(curve.points, curve.stretch, scale))) {
    if (m_walk.start <= m_stretch.to) {
        m_lastChosen = m_walk.start + (m_stretch.to - m_walk.start) / m_walk.stride * m_walk.stride;
    }
}

CurveLine::Vertex CurveLine::vertex(std::size_t point) const {
    return {point, {column(point), std::trunc(m_scale.mapY(value(m_points[point])))}};
}

CurveLine::Vertex CurveLine::firstVertex() const {
    return {m_stretch.first, {column(m_stretch.first), m_scale.mapY(value(m_points[m_stretch.first]))}};
}

QPointF CurveLine::markPixel(std::size_t point) const {
    return {column(point), std::trunc(m_scale.mapY(markValue(m_points[point])))};
}

CurveSegment CurveLine::waveTick(const Vertex& from, const Vertex& to) const {
    const double x = (from.pixel.x() + to.pixel.x()) / 2.0;
    const CurvePoint& point = m_points[to.point];
    const double index = std::trunc(reducedAngle(point.rawAngle) / 360.0 * double(m_wavePairs.size()));
    const bool heard = point.soundOn != 0 && std::abs(point.pitch) > standstillPitch;
    if (!heard || !(index >= 0.0 && index < double(m_wavePairs.size()))) {
        return {{x, quietTop, x, waveMiddle}, to.point};
    }
    const auto& [low, high] = m_wavePairs[std::size_t(index)];
    return {{x, waveMiddle + low, x, waveMiddle + high}, to.point};
}

CurveStep CurveLine::stepBetween(const Vertex& from, const Vertex& to) const {
    CurveStep step;
    step.point = to.point;
    connect(from, to, step);
    if (!m_wavePairs.empty()) {
        step.tick = waveTick(from, to);
    }
    return step;
}

std::optional<CurveStep> CurveLine::entry() const {
    if (!m_lastChosen || !enters()) {
        return std::nullopt;
    }
    return stepBetween(firstVertex(), vertex(m_walk.start));
}

CurveStep CurveLine::step(std::size_t chosen) const {
    return stepBetween(vertex(chosen - m_walk.stride), vertex(chosen));
}

std::optional<CurveStep> CurveLine::tail() const {
    const Vertex from = m_lastChosen ? vertex(*m_lastChosen) : firstVertex();
    const Vertex to = vertex(m_stretch.to - 1);
    if (samePixel(from.pixel.x(), to.pixel.x()) && samePixel(from.pixel.y(), to.pixel.y())) {
        return std::nullopt;
    }
    return stepBetween(from, to);
}

std::vector<CurveStep> CurveLine::all() const {
    std::vector<CurveStep> steps;
    if (const auto first = entry()) {
        steps.push_back(*first);
    }
    if (m_lastChosen) {
        for (std::size_t i = m_walk.start + m_walk.stride; i <= *m_lastChosen; i += m_walk.stride) {
            steps.push_back(step(i));
        }
    }
    if (const auto last = tail()) {
        steps.push_back(*last);
    }
    return steps;
}

std::unique_ptr<CurveLine> curveLine(const CurveScene& scene, const CurveExtract& curve, double offset) {
    static const AreaColors none;
    const AreaColors& areas = scene.areas ? *scene.areas : none;
    const auto wave = scene.options.directSound ? scene.wavePairs : std::span<const WavePair>();
    switch (scene.display) {
    case ModelDisplay::NORMAL:
        return std::make_unique<NormalLine>(curve, scene.scale, offset, wave);
    case ModelDisplay::PHRASING:
        return std::make_unique<PhrasingLine>(curve, scene.scale, areas, !scene.options.curveCrossFaderOff,
                                              wave);
    case ModelDisplay::DRUMMING:
        return std::make_unique<DrummingLine>(curve, scene.scale, areas, wave);
    default:
        return nullptr;
    }
}
