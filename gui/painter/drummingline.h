#pragma once

#include "angleline.h"

/// The line of the drumming display: the angle of the record, one turn over the height of the plot. No line
/// leads to a curve's very first point.
class DrummingLine : public AngleLine {
public:
    /// `areas` must outlive the line.
    DrummingLine(const CurveExtract& curve, const GraphScale& scale, const AreaColors& areas,
                 std::span<const WavePair> wavePairs = {})
        : AngleLine(curve, scale, areas, wavePairs) {}

protected:
    double value(const CurvePoint& point) const override { return drummingY(point); }
    double markValue(const CurvePoint& point) const override;
    bool enters() const override { return walk().start != 0; }
    void connect(const Vertex& from, const Vertex& to, CurveStep& step) const override;
};
