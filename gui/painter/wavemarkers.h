#pragma once
// Where the wave of a deck's sample stands on the graph, and where the needle in it. Pixels of the widget.

#include "graphlayout.h"

#include <QColor>
#include <QRectF>

#include <optional>

/// The upright bar at the right that the angle displays have, from the plot's lower edge to its upper one.
QRectF waveSideBar(const GraphLayout& layout, int widgetWidth);

/// The level bar below the plot that the normal display has.
QRectF waveBar(const GraphLayout& layout);
/// Where the picture of the wave starts anew in that bar: the share of it that lies left of the bar's start,
/// 0 up to 1. The needle's place in it is then the bar's first third.
double waveBarSplit(double angle);

/// The needle in the level bar: it stands still and the wave moves.
QRectF normalMarker(const GraphLayout& layout);
/// The needle in the side bar that shows `area`; none for an area without a span.
std::optional<QRectF> phrasingMarker(const GraphLayout& layout, const QRectF& sideBar, double angle,
                                     double areaStart, double areaSpan);
/// The needle in the side bar that shows the whole turn.
QRectF drummingMarker(const GraphLayout& layout, const QRectF& sideBar, double angle);

inline const QColor markerOutline(43, 43, 43, 100);
