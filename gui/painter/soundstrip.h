#pragma once

#include "curvestride.h"

#include "model/modelgraph.h"

#include <QRect>

#include <vector>

/// The history of a curve's crossfader along the top of its plot: one bar for each passage, flat while the
/// fader is closed, high while it lets the deck be heard, and higher still for a reference. The corners are
/// pixels that belong to the bar. A passage that ends in the column where it began has none.
std::vector<QRect> soundStrip(const CurvePointStore::View& points, CurveStretch stretch,
                              const GraphScale& scale, ModelGraph::EnumGraph item);
