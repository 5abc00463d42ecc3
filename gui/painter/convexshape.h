#pragma once
// A small convex shape, drawn straight into a picture. The painter fills a turned rectangle by the stretches
// of its edge pixels, on several threads, which for the few shapes of a frame takes longer than all else.

#include "capsule.h"

#include <QPointF>

#include <span>

/// At most as many corners.
inline constexpr std::size_t maxCorners = 4;

/// Fills the shape with `fill` and draws its outline, `outlineWidth` pixels wide with pointed corners, over
/// that; both colours premultiplied, none for an alpha of 0. `corners` in pixels, clockwise as seen on the
/// screen, at least three, no two of them on the same place. Edges are smooth over a pixel.
void drawConvexShape(const CapsuleTarget& target, std::span<const QPointF> corners, QRgb fill, QRgb outline,
                     double outlineWidth);
