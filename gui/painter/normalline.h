#pragma once

#include "curveline.h"

/// The line of the normal display: the position, moved by an offset, over time.
class NormalLine : public CurveLine {
public:
    NormalLine(const CurveExtract& curve, const GraphScale& scale, double offset,
               std::span<const WavePair> wavePairs = {})
        : CurveLine(curve, scale, wavePairs), m_offset(offset) {}

protected:
    double value(const CurvePoint& point) const override { return point.position + m_offset; }
    void connect(const Vertex& from, const Vertex& to, CurveStep& step) const override {
        step.add(from.pixel, to.pixel, to.point);
    }

private:
    double m_offset;
};
