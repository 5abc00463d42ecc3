#include "shinimarks.h"

#include <optional>

namespace {

constexpr QPointF half(shiniSide / 2.0, shiniSide / 2.0);

bool sounds(const CurveLine& line, std::size_t point) {
    return line.points()[point].soundOn != 0;
}

double middleTime(const CurveLine& line, std::size_t closed, std::size_t opening) {
    const double from = line.points()[closed].time;
    return from + (line.points()[opening].time - from) / 2.0;
}

// The last sounding point before `start`, unless it is so far back that the passage which opens at `opening`
// has its middle left of the plot.
std::optional<std::size_t> lastSounding(const CurveLine& line, std::size_t start, std::size_t opening) {
    for (std::size_t i = start; i > 0; --i) {
        if (line.columnAt(middleTime(line, i - 1, opening)) < GraphLayout::leftMargin) {
            return std::nullopt;
        }
        if (sounds(line, i - 1)) {
            return i - 1;
        }
    }
    return std::nullopt;
}

// The last point before `point` whose time lies below `time`; none if there is none. Times rise.
std::optional<std::size_t> lastBelow(const CurveLine& line, std::size_t point, double time) {
    std::size_t first = 0;
    for (std::size_t count = point; count > 0;) {
        const std::size_t middle = count / 2;
        if (line.points()[first + middle].time < time) {
            first += middle + 1;
            count -= middle + 1;
        } else {
            count = middle;
        }
    }
    return first == 0 ? std::nullopt : std::optional(first - 1);
}

// A closed passage between two points; its mark, unless it lies left of the plot.
std::optional<ShiniMark> middleMark(const CurveLine& line, std::size_t closed, std::size_t opening) {
    const auto point = lastBelow(line, opening, middleTime(line, closed, opening));
    if (!point || line.column(*point) < GraphLayout::leftMargin) {
        return std::nullopt;
    }
    return ShiniMark{ShiniIcon::CircleFull, line.markPixel(*point) - half};
}

// Calls `cut(point)` for every chosen point whose fader differs from the chosen one's before it.
template <typename Cut> void eachCut(const CurveLine& line, Cut cut) {
    if (!line.lastChosen()) {
        return;
    }
    const CurveWalk walk = line.walk();
    bool before = sounds(line, walk.start >= walk.stride ? walk.start - walk.stride : walk.start);
    for (std::size_t i = walk.start; i <= *line.lastChosen(); i += walk.stride) {
        const bool now = sounds(line, i);
        if (now != before) {
            cut(i, now);
            before = now;
        }
    }
}

bool hasLine(const CurveLine& line, std::size_t chosen) {
    if (chosen != line.walk().start) {
        return line.step(chosen).lines > 0;
    }
    const auto entry = line.entry();
    return entry && entry->lines > 0;
}

} // namespace

ShiniIcon shiniIcon(ModelShini::EnumShini mode, bool soundOn, bool reverse) {
    if (mode == ModelShini::Circles) {
        return soundOn != reverse ? ShiniIcon::CircleFull : ShiniIcon::CircleEmpty;
    }
    if (soundOn) {
        return reverse ? ShiniIcon::ArrowUpRight : ShiniIcon::ArrowUpLeft;
    }
    return reverse ? ShiniIcon::ArrowDownLeft : ShiniIcon::ArrowDownRight;
}

std::vector<ShiniMark> shiniMarks(const CurveLine& line, ModelShini::EnumShini mode, bool reverse) {
    std::vector<ShiniMark> marks;
    if (mode == ModelShini::Arrows || mode == ModelShini::Circles) {
        eachCut(line, [&](std::size_t point, bool soundOn) {
            if (hasLine(line, point)) {
                marks.push_back({shiniIcon(mode, soundOn, reverse), line.pixel(point) - half});
            }
        });
    } else if (mode == ModelShini::Middle) {
        const std::size_t start = line.walk().start;
        std::optional<std::size_t> closed;
        eachCut(line, [&](std::size_t point, bool soundOn) {
            if (!soundOn) {
                closed = point;
                return;
            }
            // A passage that was closed before the first chosen point.
            const auto from = closed || sounds(line, start) ? closed : lastSounding(line, start, point);
            const auto mark = from ? middleMark(line, *from, point) : std::nullopt;
            if (mark && hasLine(line, point)) {
                marks.push_back(*mark);
            }
        });
    }
    return marks;
}
