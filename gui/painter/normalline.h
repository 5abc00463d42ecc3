#pragma once

#include "curvescene.h"

#include <QLineF>

#include <optional>
#include <vector>

/// One line of a curve, in the pen of one of its points.
struct CurveSegment {
    QLineF line;           ///< pixels
    std::size_t point = 0; ///< whose pen it takes
};

/// The line of the normal display: the position, moved by an offset, over time, through the chosen points.
class NormalLine {
public:
    NormalLine(const CurveExtract& curve, const GraphScale& scale, double offset);

    CurveWalk walk() const { return m_walk; }
    /// The last chosen point; none where the stride passes over the whole stretch.
    std::optional<std::size_t> lastChosen() const { return m_lastChosen; }
    double column(std::size_t point) const { return m_scale.column(m_points[point].time); }

    /// From the first visible point to the first chosen one.
    CurveSegment entry() const;
    /// From the chosen point before `chosen` to it; `chosen` lies behind the first chosen one.
    CurveSegment segment(std::size_t chosen) const;
    /// From where the chosen points end to the point before the end of the stretch, so that thinning never
    /// cuts the tail; none where that is the same pixel.
    std::optional<CurveSegment> tail() const;
    /// All of them in the order of drawing.
    std::vector<CurveSegment> all() const;

private:
    QPointF pixel(std::size_t point) const;
    QPointF firstPixel() const;

    CurvePointStore::View m_points;
    CurveStretch m_stretch;
    GraphScale m_scale;
    double m_offset;
    CurveWalk m_walk;
    std::optional<std::size_t> m_lastChosen;
};
