#include "phrasingline.h"

namespace {

// How many chosen points without an area are passed over in search of the pen that stands. More than any plot
// has columns; a record that rested outside all areas for an hour isn't searched to its start.
constexpr std::size_t longestSearch = 4096;

} // namespace

// Only points in areas set a pen. At the entry to an area the one that stands is that of the last such point.
// Where nothing is drawn while the fader is closed, a closed entry has its own pen, which draws nothing.
std::size_t PhrasingLine::entryPen(const Vertex& from, const Vertex& to) const {
    if (m_closedHidden && points()[to.point].soundOn == 0) {
        return to.point;
    }
    const std::size_t stride = walk().stride;
    std::size_t point = from.point / stride * stride;
    for (std::size_t steps = 0; steps < longestSearch; ++steps) {
        if (areaOf(point)) {
            return point;
        }
        if (point < stride) {
            break;
        }
        point -= stride;
    }
    return to.point; // nothing has set one
}

void PhrasingLine::connect(const Vertex& from, const Vertex& to, CurveStep& step) const {
    if (areas().empty()) {
        connectWithoutAreas(from, to, step);
        return;
    }
    const AreaColors::Area* before = areaOf(from.point);
    const AreaColors::Area* now = areaOf(to.point);
    if (before && now) {
        if (before->color == now->color) {
            addPlain(from, to, step);
        } else {
            addWrap(from, to, low(to.pixel), step);
        }
    } else if (before) {
        step.add(from.pixel, low(from.pixel) ? bottomBetween(from, to) : topBetween(from, to), from.point);
    } else if (now) {
        step.add(low(to.pixel) ? bottomBetween(from, to) : topBetween(from, to), to.pixel,
                 entryPen(from, to));
    }
}
