#pragma once
// A thick line with round caps, drawn straight into a picture. What the painter does with such a line is
// exact too, but takes some ten times as long, and a graph has a thousand of them.

#include <QPointF>
#include <QRectF>
#include <QRgb>

#include <cstddef>
#include <cstdint>
#include <optional>

/// A piece of a picture in QImage::Format_ARGB32_Premultiplied. `left` to `bottom` is what may be drawn on,
/// the last two exclusive; the shifts are added to whatever is drawn. In rows that are drawn on, pixels
/// beside it may be read and written again as they are.
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
    /// What is drawn of it: the cap before its start, the strip beside the line, the cap beyond its end. No
    /// pixel belongs to two of them.
    bool startCap = true;
    bool strip = true;
    bool endCap = true;
    /// Where a line begins that ends at this one's start and has no cap there. Drawn is what lies between the
    /// two, as a cap without an edge; the start should have no cap either. A line of no length counts as one
    /// that points down.
    std::optional<QPointF> before = std::nullopt;
};

/// Beyond it no pixel is drawn on.
QRectF boundsOf(const Capsule& capsule);

/// Draws over what is there. Every pixel takes as much of the colour as the line covers of it. Ends are
/// rounded to 1/256 pixel, and what a pixel gets depends on nothing but where it lies relative to them: moved
/// by whole pixels or cut by another edge of the target, the line has the same pixels. Coordinates within
/// 250,000; no number (NaN, infinity) may be among them.
void drawCapsule(const CapsuleTarget& target, const Capsule& capsule, QRgb premultiplied);
