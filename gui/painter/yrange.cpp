#include "yrange.h"

#include <algorithm>

namespace {

constexpr double smallRange = 200.0; // position units; below it the room is fixed
constexpr double smallRoomBelow = 30.0;
constexpr double smallRoomAbove = 70.0;
constexpr double roomAbove = 0.35; // of the data's range
constexpr double roomBelow = 0.15;

double within(double value, double low, double high, double otherwise) {
    return value >= low && value <= high ? value : otherwise;
}

} // namespace

std::optional<GraphRange> visibleExtremes(std::optional<GraphRange> main, std::optional<GraphRange> secondary,
                                          double shift) {
    if (!main) {
        return secondary;
    }
    if (!secondary) {
        return main;
    }
    return GraphRange{std::min(main->min, secondary->min + shift),
                      std::max(main->max, secondary->max + shift)};
}

GraphRange followingYRange(GraphRange current, GraphRange data) {
    const double range = data.span();
    if (range < smallRange) {
        return {data.min - smallRoomBelow, data.max + smallRoomAbove};
    }
    const double highest = data.max + roomAbove * range;
    const double lowest = data.min - roomBelow * range;
    return {within(current.min, lowest, data.min, lowest), within(current.max, data.max, highest, highest)};
}

GraphRange initialYRange(GraphRange current, ModelDisplay::EnumDisplay display) {
    if (plotsAngle(display)) {
        return {within(current.min, -150000.0, 0.0, -150000.0),
                within(current.max, AnglePlot::height, 1350000.0, 1350000.0)};
    }
    return {within(current.min, -30.0, 0.0, -30.0), within(current.max, 200.0, 270.0, 270.0)};
}
