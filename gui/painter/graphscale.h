#pragma once

#include "graphlayout.h"

#include <cmath>
#include <cstdint>

/// A stretch of an axis: sample frames for x, value units for y.
struct GraphRange {
    double min = 0.0;
    double max = 0.0;
    double span() const { return max - min; }
    bool operator==(const GraphRange&) const = default;
};

/// Between data and pixels. A range that is empty or runs backwards, and a plot without width or height, give
/// the factor 0: all data then falls onto the left and the bottom edge.
class GraphScale {
public:
    /// `following`: the range is rebuilt from the cursor at every paint.
    GraphScale(const GraphLayout& layout, GraphRange x, GraphRange y, bool following)
        : m_x(x)
        , m_y(y)
        , m_plotBottom(layout.plotBottom)
        , m_xFactor(factor(layout.plotWidth, x.span()))
        , m_yFactor(factor(layout.plotHeight, y.span()))
        , m_following(following) {}

    double mapX(double time) const { return GraphLayout::leftMargin + (time - m_x.min) * m_xFactor; }
    double mapY(double value) const { return m_plotBottom - (value - m_y.min) * m_yFactor; }

    /// The whole pixel column of a time. While the graph follows the cursor, a point keeps its distance in
    /// columns to every other point in every frame, so that the picture moves by whole pixels; that is at
    /// most one column off mapX.
    double column(double time) const {
        return m_following
                   ? GraphLayout::leftMargin + std::floor(time * m_xFactor) - std::floor(m_x.min * m_xFactor)
                   : std::trunc(mapX(time));
    }

    /// The whole pixels by which the picture has moved while it follows; 0 for a fixed view.
    std::int64_t anchor() const { return m_following ? std::int64_t(std::floor(m_x.min * m_xFactor)) : 0; }
    /// Whether the picture is that of the other scale, at most moved sideways by the difference of the
    /// anchors.
    bool movedFrom(const GraphScale& other) const {
        return m_following == other.m_following && m_xFactor == other.m_xFactor && m_y == other.m_y &&
               m_yFactor == other.m_yFactor && m_plotBottom == other.m_plotBottom &&
               (m_following || m_x == other.m_x);
    }

    const GraphRange& x() const { return m_x; }
    const GraphRange& y() const { return m_y; }

    /// Frames a pixel, for what the mouse does; 0 for a plot without width.
    static double framesPerPixel(GraphRange x, double plotWidth) {
        return plotWidth > 0.0 ? x.span() / plotWidth : 0.0;
    }

private:
    static double factor(double pixels, double range) {
        return pixels > 0.0 && range > 0.0 ? pixels / range : 0.0;
    }

    GraphRange m_x;
    GraphRange m_y;
    double m_plotBottom;
    double m_xFactor;
    double m_yFactor;
    bool m_following;
};
