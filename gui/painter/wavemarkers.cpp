#include "wavemarkers.h"

#include <cmath>

namespace {

constexpr double barHeight = 100.0;
constexpr double markerBreadth = 6.0;
constexpr double fullTurn = 360.0;

// At `angle` of a bar that holds `span` degrees.
QRectF sideMarker(const GraphLayout& layout, const QRectF& sideBar, double angle, double span) {
    return {sideBar.left(), layout.markerBottom - angle * layout.plotHeight / span, sideBar.width(),
            markerBreadth};
}

} // namespace

QRectF waveSideBar(const GraphLayout& layout, int widgetWidth) {
    const double left = std::trunc(0.9675 * widgetWidth);
    const double breadth = std::trunc(0.03 * widgetWidth);
    return {left, double(layout.plotTop), breadth, layout.plotBottom - layout.plotTop};
}

QRectF waveBar(const GraphLayout& layout) {
    return {GraphLayout::leftMargin, double(layout.waveBarTop), layout.stripWidth, barHeight};
}

double waveBarSplit(double angle) {
    const double turns = angle / fullTurn + 2.0 / 3.0;
    return turns - std::trunc(turns);
}

QRectF normalMarker(const GraphLayout& layout) {
    return {GraphLayout::leftMargin + layout.stripWidth / 3.0, double(layout.waveBarTop), markerBreadth,
            barHeight};
}

std::optional<QRectF> phrasingMarker(const GraphLayout& layout, const QRectF& sideBar, double angle,
                                     double areaStart, double areaSpan) {
    if (areaSpan == 0.0) {
        return std::nullopt;
    }
    return sideMarker(layout, sideBar, angle - areaStart, areaSpan);
}

QRectF drummingMarker(const GraphLayout& layout, const QRectF& sideBar, double angle) {
    return sideMarker(layout, sideBar, angle, fullTurn);
}
