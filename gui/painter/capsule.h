#pragma once
// A thick line with round caps, drawn straight into a picture. What the painter does with such a line is
// exact too, but takes some ten times as long, and a graph has a thousand of them.

#include <QRgb>

#include <cstddef>
#include <cstdint>

/// A piece of a picture in QImage::Format_ARGB32_Premultiplied. `left` to `bottom` is what may be drawn on,
/// the last two exclusive; the shifts are added to whatever is drawn.
struct CapsuleTarget {
    std::uint32_t* pixels = nullptr; ///< of the picture's upper left corner
    std::ptrdiff_t stride = 0;       ///< pixels from row to row
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    int shiftX = 0;
    int shiftY = 0;
};

/// All points within half a `width` of a line, in pixels; a pixel reaches from its whole coordinates to the
/// next ones.
struct Capsule {
    double x1 = 0.0;
    double y1 = 0.0;
    double x2 = 0.0;
    double y2 = 0.0;
    double width = 1.0; ///< at least 1
};

/// Draws over what is there. Every pixel takes as much of the colour as the line covers of it. Ends are
/// rounded to 1/256 pixel, and what a pixel gets depends on nothing but where it lies relative to them: moved
/// by whole pixels or cut by another edge of the target, the line has the same pixels. Coordinates within
/// 250,000; no number (NaN, infinity) may be among them.
void drawCapsule(const CapsuleTarget& target, const Capsule& capsule, QRgb premultiplied);
