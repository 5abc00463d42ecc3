#pragma once
// The icons that mark the cuts of the crossfader on a curve.

#include "curveline.h"

#include "model/modelshini.h"

#include <QPointF>

#include <vector>

enum class ShiniIcon { ArrowDownRight, ArrowDownLeft, ArrowUpRight, ArrowUpLeft, CircleEmpty, CircleFull };

struct ShiniMark {
    ShiniIcon icon;
    QPointF corner; ///< upper left, pixels
};

/// Pixels; a mark's middle lies on its point.
inline constexpr int shiniSide = 20;

/// The icon at a cut to that state of the fader. `mode` is Arrows or Circles.
ShiniIcon shiniIcon(ModelShini::EnumShini mode, bool soundOn, bool reverse);

/// The marks of a curve's visible stretch: at every chosen point where the fader cuts, or in the middle of
/// every closed passage. Where no line leads to a point it has no mark. `reverse`: the fader's direction is
/// reversed. Walks the chosen points at every paint, so that a mark doesn't depend on what was drawn before.
std::vector<ShiniMark> shiniMarks(const CurveLine& line, ModelShini::EnumShini mode, bool reverse);
