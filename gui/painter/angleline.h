#pragma once

#include "areacolors.h"
#include "curveline.h"

/// What the phrasing display plots: how far the needle is through the area that it lies in, from 0 to
/// AnglePlot::height; 0 outside all areas; without any areas the angle.
double phrasingY(const CurvePoint& point, const AreaColors& areas);
/// What the drumming display plots: the angle, AnglePlot::perDegree for each degree.
double drummingY(const CurvePoint& point);

/// A line over an angle that wraps: where it passes the end of the scale it leaves the plot through the one
/// edge and comes in again through the other, midway in time between its two points.
class AngleLine : public CurveLine {
protected:
    /// `areas` must outlive the line.
    AngleLine(const CurveExtract& curve, const GraphScale& scale, const AreaColors& areas,
              std::span<const WavePair> wavePairs)
        : CurveLine(curve, scale, wavePairs), m_areas(areas) {}

    const AreaColors& areas() const { return m_areas; }
    /// Whether the pixel lies in the lower half of the plot.
    bool low(const QPointF& pixel) const { return pixel.y() > middle(); }
    /// Over a whole turn: the angle tells a wrap from a stroke.
    void connectByAngle(const Vertex& from, const Vertex& to, CurveStep& step) const;
    /// Whether the two are so many pixels apart that it isn't a stroke.
    bool wrapsByDistance(const Vertex& from, const Vertex& to) const;
    /// The same without areas: the distance in pixels tells, but while the wave stands above the plot the
    /// angle does, since the distance is held against where the middle of the plot lies in the widget, not
    /// against half its height.
    void connectWithoutAreas(const Vertex& from, const Vertex& to, CurveStep& step) const;
    void addPlain(const Vertex& from, const Vertex& to, CurveStep& step) const {
        step.add(from.pixel, to.pixel, to.point);
    }
    /// Forward: through the top edge and in from the bottom. The line that leaves has the pen that stands:
    /// the one of the point before, of which it is the last.
    void addWrap(const Vertex& from, const Vertex& to, bool forward, CurveStep& step) const;
    QPointF topBetween(const Vertex& from, const Vertex& to) const;
    QPointF bottomBetween(const Vertex& from, const Vertex& to) const;

private:
    double middle() const;
    double columnBetween(const Vertex& from, const Vertex& to) const;

    const AreaColors& m_areas;
};
