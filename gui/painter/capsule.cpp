// How a capsule becomes pixels: its outline, moved outwards by as much as a pixel can reach across it, gives
// for every row of pixels the stretch that has any colour; moved inwards, the stretch that is full. Only the
// few pixels between the two are measured one by one.
#include "capsule.h"

#include "pixelblend.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double grid = 256.0; // steps of a pixel that the ends are rounded to
constexpr int bias = 1 << 20;  // makes every coordinate positive

int floored(double value) {
    return int(value + double(bias)) - bias;
}

double onGrid(double value) {
    return std::floor(value * grid + 0.5) / grid;
}

// The line itself: from its upper end at (x, y), `length` along (alongX, alongY), which never points up.
struct Axis {
    double x;
    double y;
    double endX;
    double endY;
    double length;
    double alongX;
    double alongY;
    double radius;
};

// The outline of the capsule with another radius.
class Outline {
public:
    Outline(const Axis& axis, double radius)
        : m_axis(axis)
        , m_square(radius * radius)
        , m_sideX(radius * axis.alongY)
        , m_sideY(radius * axis.alongX)
        , m_slope(axis.alongY > 0.0 ? axis.alongX / axis.alongY : 0.0)
        , m_top(axis.y - radius)
        , m_bottom(axis.endY + radius) {}

    bool meets(double y) const { return y > m_top && y < m_bottom; }
    // How far along the rows the caps reach into the strip.
    double slant() const { return std::abs(m_sideY); }
    // The ends of a row between the slants of the two caps.
    double straightLeft(double y) const { return m_axis.x - m_sideX + (y - m_axis.y - m_sideY) * m_slope; }
    double straightRight(double y) const { return m_axis.x + m_sideX + (y - m_axis.y + m_sideY) * m_slope; }
    // The ends of what a row has of it: on a side of the strip, or on the round cap above or below that side.
    double left(double y) const {
        if (y >= m_axis.endY + m_sideY) {
            return m_axis.endX - halfChord(y - m_axis.endY);
        }
        return y - m_axis.y - m_sideY < 0.0 ? m_axis.x - halfChord(y - m_axis.y) : straightLeft(y);
    }
    double right(double y) const {
        if (y >= m_axis.endY - m_sideY) {
            return m_axis.endX + halfChord(y - m_axis.endY);
        }
        return y - m_axis.y + m_sideY < 0.0 ? m_axis.x + halfChord(y - m_axis.y) : straightRight(y);
    }

private:
    double halfChord(double dy) const { return std::sqrt(std::max(m_square - dy * dy, 0.0)); }

    const Axis& m_axis;
    double m_square;
    double m_sideX;
    double m_sideY;
    double m_slope;
    double m_top;
    double m_bottom;
};

// How much of a pixel the capsule covers, 0 to 255.
class Coverage {
public:
    explicit Coverage(const Axis& axis) : m_axis(axis) {
        const double wide = std::max(std::abs(axis.alongX), std::abs(axis.alongY));
        const double narrow = std::min(std::abs(axis.alongX), std::abs(axis.alongY));
        m_reach = (wide + narrow) / 2.0;
        m_straight = (wide - narrow) / 2.0;
        m_rise = 1.0 / wide;
        m_corner = narrow > 0.0 ? 1.0 / (2.0 * wide * narrow) : 0.0;
    }

    // How far a pixel's corners lie from its middle, measured across the line.
    double reach() const { return m_reach; }
    std::uint32_t at(double x, double y) const {
        const double dx = x - m_axis.x;
        const double dy = y - m_axis.y;
        const double along = dx * m_axis.alongX + dy * m_axis.alongY;
        if (along <= 0.0) {
            return whole(round(dx, dy));
        }
        if (along >= m_axis.length) {
            return whole(round(x - m_axis.endX, y - m_axis.endY));
        }
        const double off = offLine(dx, dy);
        return whole(beside(m_axis.radius - off) + beside(m_axis.radius + off) - 1.0);
    }
    // The same where the line runs beside the pixel and is wider than what a pixel reaches across it.
    std::uint32_t besideLine(double x, double y) const {
        constexpr double all = 1.0; // of the pixel, for the other edge
        return whole(beside(m_axis.radius - offLine(x - m_axis.x, y - m_axis.y)) + all - 1.0);
    }

private:
    static std::uint32_t whole(double part) { return std::uint32_t(part * 255.0 + 0.5); }
    // How far from the line's middle, measured across it.
    double offLine(double dx, double dy) const { return std::abs(dx * m_axis.alongY - dy * m_axis.alongX); }
    // The share of a pixel on one side of an edge that its middle is `inside` of: a square cut by a line.
    double beside(double inside) const {
        // All of it is computed and then chosen: which of them it is nobody can foretell.
        const double off = std::abs(inside);
        const double rest = std::max(m_reach - off, 0.0);
        const double corner = rest * rest * m_corner;
        const double cut = inside > 0.0 ? 1.0 - corner : corner;
        const double straight = 0.5 + inside * m_rise;
        return off <= m_straight ? straight : cut;
    }
    // At a cap: the edge is taken for one that runs along the pixel.
    double round(double dx, double dy) const {
        return std::clamp(m_axis.radius + 0.5 - std::sqrt(dx * dx + dy * dy), 0.0, 1.0);
    }

    const Axis& m_axis;
    double m_reach;    // beyond it a pixel is full or empty
    double m_straight; // up to it the edge crosses two opposite sides of the pixel
    double m_rise;
    double m_corner;
};

template <bool Opaque> class Row {
public:
    Row(std::uint32_t* pixels, std::uint32_t color) : m_pixels(pixels), m_color(color) {}
    // partAt(x): how much of the pixel with its middle there is covered. `origin`: the column that x = 0 lies
    // at.
    template <typename PartAt> void measured(int from, int to, int origin, PartAt partAt) const {
        for (int i = from; i < to; ++i) {
            if (Opaque && m_pixels[i] == m_color) {
                continue; // as it is with each joint of two lines
            }
            const std::uint32_t part = partAt(i - origin + 0.5);
            m_pixels[i] = Opaque ? PixelBlend::mixed(m_color, part, m_pixels[i])
                                 : PixelBlend::over(m_pixels[i], PixelBlend::share(m_color, part));
        }
    }
    void full(int from, int to) const {
        if (Opaque) {
            std::fill(m_pixels + from, m_pixels + to, m_color);
            return;
        }
        for (int i = from; i < to; ++i) {
            m_pixels[i] = PixelBlend::over(m_pixels[i], m_color);
        }
    }

private:
    std::uint32_t* m_pixels;
    std::uint32_t m_color;
};

// The rows of a line; `column` and `line` are those of the target that x = 0 and y = 0 lie at.
template <bool Opaque>
void drawRows(const CapsuleTarget target, const Axis& axis, int column, int line, std::uint32_t color) {
    const Coverage coverage(axis);
    const Outline outer(axis, axis.radius + coverage.reach());
    const double innerRadius = axis.radius - coverage.reach();
    const Outline inner(axis, std::max(innerRadius, 0.0));
    const double margin = axis.radius + 1.0;
    const int first = std::max(floored(axis.y - margin) + line, target.top);
    const int end = std::min(floored(axis.endY + margin) + 1 + line, target.bottom);
    // Between these no pixel lies at a cap.
    constexpr double rounding = 1e-6;
    const double straightFrom = axis.y + outer.slant() + rounding;
    const double straightTo = innerRadius > 0.0 ? axis.endY - outer.slant() - rounding : straightFrom;
    for (int j = first; j < end; ++j) {
        const double y = j - line + 0.5;
        if (!outer.meets(y)) {
            continue;
        }
        const bool straight = y > straightFrom && y < straightTo;
        // A pixel belongs to a stretch if its middle does.
        const double left = straight ? outer.straightLeft(y) : outer.left(y);
        const double right = straight ? outer.straightRight(y) : outer.right(y);
        const int from = std::max(floored(left + 0.5) + column, target.left);
        const int to = std::min(floored(right + 0.5) + column, target.right);
        if (from >= to) {
            continue;
        }
        const Row<Opaque> row(target.pixels + j * target.stride, color);
        // The full stretch, and what is measured on either side of it.
        const auto draw = [&](double fullLeft, double fullRight, auto partAt) {
            const int fullFrom = std::clamp(floored(fullLeft + 0.5) + column, from, to);
            const int fullTo = std::clamp(floored(fullRight + 0.5) + column, fullFrom, to);
            row.measured(from, fullFrom, column, partAt);
            row.full(fullFrom, fullTo);
            row.measured(fullTo, to, column, partAt);
        };
        const auto at = [&](double x) { return coverage.at(x, y); };
        if (straight) {
            draw(inner.straightLeft(y), inner.straightRight(y),
                 [&](double x) { return coverage.besideLine(x, y); });
        } else if (innerRadius > 0.0 && inner.meets(y)) {
            draw(inner.left(y), inner.right(y), at);
        } else {
            row.measured(from, to, column, at);
        }
    }
}

} // namespace

void drawCapsule(const CapsuleTarget& target, const Capsule& capsule, QRgb premultiplied) {
    if (qAlpha(premultiplied) == 0) {
        return;
    }
    double x1 = onGrid(capsule.x1);
    double y1 = onGrid(capsule.y1);
    double x2 = onGrid(capsule.x2);
    double y2 = onGrid(capsule.y2);
    if (y1 > y2 || (y1 == y2 && x1 > x2)) { // a line and its reverse have the same pixels
        std::swap(x1, x2);
        std::swap(y1, y2);
    }
    const double radius = capsule.width / 2.0;
    const double margin = radius + 1.0;
    if (std::max(x1, x2) + target.shiftX + margin < target.left ||
        std::min(x1, x2) + target.shiftX - margin > target.right ||
        y2 + target.shiftY + margin < target.top || y1 + target.shiftY - margin > target.bottom) {
        return;
    }
    // From here on relative to the pixel that the line starts in.
    const int originX = floored(x1);
    const int originY = floored(y1);
    const double length = std::sqrt((x2 - x1) * (x2 - x1) + (y2 - y1) * (y2 - y1));
    const Axis axis{x1 - originX,
                    y1 - originY,
                    x2 - originX,
                    y2 - originY,
                    length,
                    length > 0.0 ? (x2 - x1) / length : 0.0,
                    length > 0.0 ? (y2 - y1) / length : 1.0,
                    radius};
    const int column = originX + target.shiftX;
    const int line = originY + target.shiftY;
    if (qAlpha(premultiplied) == 255) {
        drawRows<true>(target, axis, column, line, premultiplied);
    } else {
        drawRows<false>(target, axis, column, line, premultiplied);
    }
}
