#pragma once

#include "areacolors.h"
#include "capsule.h"
#include "curveline.h"
#include "curvepen.h"

#include <optional>

/// A line as it is drawn.
struct CurveStroke {
    Capsule capsule; ///< pixels of the widget
    QRgb color = 0;  ///< premultiplied
};

/// The strokes of a step in the order of drawing: its lines and the direct wave.
struct CurveStrokes {
    std::array<CurveStroke, 3> strokes;
    std::size_t count = 0;
    std::optional<CurveStroke> last() const {
        return count > 0 ? std::optional(strokes[count - 1]) : std::nullopt;
    }
    const CurveStroke* begin() const { return strokes.data(); }
    const CurveStroke* end() const { return strokes.data() + count; }
};

/// Gives the lines of a curve the pens of their points. Left out is what can't be seen: lines without a style
/// or a colour, outside the view, or to no number.
class CurveDrawing {
public:
    CurveStrokes strokes(const CurveScene& scene, const CurveExtract& curve, const CurveStep& step);

private:
    void add(CurveStrokes& strokes, const CurveScene& scene, CurvePen& pens, ModelGraph::EnumGraph item,
             const CurvePoint& point, const CurveSegment& segment);

    CurvePen m_pens;
    CurvePen m_wavePens;
};

/// Draws the history of a curve's crossfader along the top of the plot. `ground`: what is there already,
/// where that is one colour; letting it through takes several times as long.
void drawSoundStrip(const CurveScene& scene, const CurveExtract& curve, const std::optional<QColor>& ground);
