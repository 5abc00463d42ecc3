#include "soundstrip.h"

#include "model/wholenumber.h"

#include <algorithm>

namespace {

constexpr int farthest = 1'000'000; // pixels beyond any screen
constexpr int bottom = 30;
constexpr int closedTop = 27;
constexpr int deckTop = 9;
constexpr int referenceTop = 4;

int topOf(ModelGraph::EnumGraph item, bool soundOn) {
    if (!soundOn) {
        return closedTop;
    }
    return item == ModelGraph::INPUT_DECKA || item == ModelGraph::INPUT_DECKB ? deckTop : referenceTop;
}

} // namespace

std::vector<QRect> soundStrip(const CurvePointStore::View& points, CurveStretch stretch,
                              const GraphScale& scale, ModelGraph::EnumGraph item) {
    std::vector<QRect> bars;
    const auto columnOf = [&](std::size_t i) {
        return std::clamp(truncated(scale.column(points[i].time)), -farthest, farthest);
    };
    const auto close = [&](int from, int to, bool soundOn) {
        if (from <= to) {
            bars.emplace_back(QPoint(from, topOf(item, soundOn)), QPoint(to, bottom));
        }
    };
    const std::size_t stride = curveStride(points, stretch, scale);
    int from = columnOf(stretch.first);
    bool soundOn = points[stretch.first].soundOn != 0;
    for (std::size_t i = stretch.first; i <= stretch.to; i += stride) {
        const bool now = points[i].soundOn != 0;
        if (now != soundOn) {
            const int column = columnOf(i);
            close(from, column - 1, soundOn);
            from = column;
            soundOn = now;
        }
    }
    close(from, columnOf(stretch.to), soundOn);
    return bars;
}
