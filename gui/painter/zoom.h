#pragma once
// What the mouse makes of the stretch of time that a graph shows. Pixels are the widget's; a range is taken
// as the graph takes any other, so one that is too short or too long changes nothing.

#include "graphscale.h"
#include "model/wholenumber.h"
#include "xrange.h"

#include <QPoint>
#include <QPointF>

#include <algorithm>
#include <cmath>
#include <cstdint>

/// The whole pixel nearest to a place, halves away from 0, held within 32 bits.
inline QPoint nearestPixel(QPointF place) {
    return {truncated(std::round(place.x())), truncated(std::round(place.y()))};
}

/// The frame under a pixel; the range's start for a plot without width.
inline double frameAt(GraphRange x, double plotWidth, double pixel) {
    return x.min + (pixel - GraphLayout::leftMargin) * GraphScale::framesPerPixel(x, plotWidth);
}

/// One event of the wheel with the pointer at pixel `pointer`: an angle of 1 or more halves the span, every
/// other one adds half of it. The frame under the pointer stays where it is. A plot without width stays as it
/// is.
inline FrameRange wheelZoom(GraphRange x, double plotWidth, double pointer, int angle) {
    if (!(plotWidth > 0.0)) {
        return {truncated(x.min), truncated(x.max)};
    }
    const double mouse = frameAt(x, plotWidth, truncated(pointer));
    const double share = angle >= 1 ? -0.5 : 0.5;
    return {truncated(x.min - share * (mouse - x.min)), truncated(x.max + share * (x.max - mouse))};
}

/// The frames between the pixels of press and release, whichever comes first.
inline FrameRange selectedRange(GraphRange x, double plotWidth, int press, int release) {
    const auto [left, right] = std::minmax(press, release);
    return {truncated(frameAt(x, plotWidth, left)), truncated(frameAt(x, plotWidth, right))};
}

/// A drag from pixel `press` to pixel `release`: the picture moves with the pointer. A press at the very left
/// edge of the widget takes the graph back to its start instead, at the same span.
inline FrameRange draggedRange(GraphRange x, double plotWidth, int press, int release) {
    if (press < 1) {
        return {0, truncated(x.span())};
    }
    const double shift =
        double(truncated(frameAt(x, plotWidth, press))) - double(truncated(frameAt(x, plotWidth, release)));
    return {truncated(x.min + shift), truncated(x.max + shift)};
}

/// The same stretch of time for a deck that counts `ownRate` frames a second where the sender counts
/// `otherRate`; as it stands if that is 0.
inline FrameRange rescaledRange(double from, double to, double ownRate, double otherRate) {
    // The product first: whole numbers of frames stay exact.
    const auto rescaled = [=](double frame) {
        return otherRate == 0.0 ? frame : frame * ownRate / otherRate;
    };
    return {truncated(rescaled(from)), truncated(rescaled(to))};
}
