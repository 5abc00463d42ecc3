#pragma once

#include "curvepen.h"
#include "normalline.h"

/// Draws the lines of curves, each in the pen of its point and each by itself.
class SegmentDrawing {
public:
    /// Draws with `painter` what can be seen in `view`. Lines that lead to no number are left out.
    void draw(QPainter& painter, const QRectF& view, const CurveExtract& curve, const GraphOptions& options,
              const CurveSegment& segment);

private:
    CurvePen m_pen;
};

/// Draws the history of a curve's crossfader along the top of the plot.
void drawSoundStrip(const CurveScene& scene, const CurveExtract& curve);
