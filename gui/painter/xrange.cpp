#include "xrange.h"

#include "model/wholenumber.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr double longestRange = 36000.0; // beats

} // namespace

std::int64_t absoluteSpan(FrameRange range) {
    return std::abs(std::int64_t{range.to} - std::int64_t{range.from});
}

bool acceptsRange(FrameRange range, double beatLength) {
    const auto span = static_cast<double>(absoluteSpan(range));
    return span > beatLength && span < longestRange * beatLength;
}

FrameRange CursorWindow::around(double cursorTime) const {
    return {truncated(cursorTime + before), truncated(cursorTime + after)};
}

CursorWindow cursorWindow(ModelActivatedMode::EnumActivatedMode mode, double beats, double beatLength) {
    const double length = beats * beatLength;
    const bool ahead = mode == ModelActivatedMode::Recording || mode == ModelActivatedMode::Training;
    return ahead ? CursorWindow{-2.0 / 3.0 * length, 1.0 / 3.0 * length}
                 : CursorWindow{-0.96 * length, 0.04 * length};
}

std::optional<FrameRange> fittingRange(std::optional<FrameRange> main, std::optional<FrameRange> secondary,
                                       double beatLength) {
    if (!main && !secondary) {
        return std::nullopt;
    }
    FrameRange all = main ? *main : *secondary;
    if (main && secondary) {
        const bool mainHasNoTime = main->from == 0 && main->to == 0;
        all = mainHasNoTime
                  ? *secondary
                  : FrameRange{std::min(main->from, secondary->from), std::max(main->to, secondary->to)};
    }
    if (all.to == 0) {
        return std::nullopt;
    }
    const double end = double(all.to) + double(truncated(beatLength));
    return FrameRange{std::min(all.from, 0), truncated(end)};
}
