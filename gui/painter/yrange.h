#pragma once
// Which stretch of values a graph shows.

#include "graphscale.h"

#include "model/modeldisplay.h"

#include <optional>

/// Value units of an angle plot.
namespace AnglePlot {
inline constexpr double height = 1000000.0; ///< the full height
inline constexpr double perDegree = 2777.0; ///< one turn ends at 999720, just below the top
} // namespace AnglePlot

/// True for the displays that plot the platter's angle.
inline bool plotsAngle(ModelDisplay::EnumDisplay display) {
    return display == ModelDisplay::PHRASING || display == ModelDisplay::DRUMMING;
}

/// Smallest and largest value of what both curves show. `secondary` moves by `shift` first, as its drawing
/// does, but only if it stands beside a main curve. None where neither shows anything.
std::optional<GraphRange> visibleExtremes(std::optional<GraphRange> main, std::optional<GraphRange> secondary,
                                          double shift);

/// The range of the normal display for the next paint. It stays while the data leaves enough and not too much
/// room, 35 percent of the data's range above and 15 below, and else jumps to just that. Data that hardly
/// moves gets fixed room.
GraphRange followingYRange(GraphRange current, GraphRange data);

/// The range when a graph is set up: what lies outside the display's usual bounds is put right.
GraphRange initialYRange(GraphRange current, ModelDisplay::EnumDisplay display);
