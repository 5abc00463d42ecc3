// How a capsule becomes pixels: it is a strip between two caps, cut off where the line starts and ends. Its
// outline, moved outwards by as much as a pixel can reach across it, gives for every row of pixels the
// stretch that has any colour; moved inwards, the stretch that is full. Only the few pixels between the two
// are measured one by one. A pixel belongs to the part that its middle lies in.
#include "capsule.h"

#include "fourpixels.h"
#include "pixelblend.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace {

using FourPixels::Doubles;
using FourPixels::Floats;
using FourPixels::floats;
using FourPixels::greatest;
using FourPixels::least;
using FourPixels::Parts;
using FourPixels::rounded;

constexpr double grid = 256.0; // steps of a pixel that the ends are rounded to
constexpr int bias = 1 << 20;  // makes every coordinate positive

int floored(double value) {
    return int(value + double(bias)) - bias;
}

double onGrid(double value) {
    return std::floor(value * grid + 0.5) / grid;
}

constexpr double endless = 1e9; // beyond all columns

// The column behind all pixels whose middles lie up to x.
int columnAfter(double x) {
    constexpr double far = 1'000'000.0;
    return floored(std::clamp(x, -far, far) + 0.5);
}

struct Columns {
    int from;
    int to; // behind the last
    Columns within(Columns other) const { return {std::max(from, other.from), std::min(to, other.to)}; }
    bool empty() const { return from >= to; }
};

// A line on the target, from its upper end on; coordinates are relative to the pixel that this end lies in.
class Line {
public:
    Line(const CapsuleTarget& target, QPointF start, QPointF end) {
        double x1 = onGrid(start.x());
        double y1 = onGrid(start.y());
        double x2 = onGrid(end.x());
        double y2 = onGrid(end.y());
        turned = y1 > y2 || (y1 == y2 && x1 > x2); // a line and its reverse have the same pixels
        if (turned) {
            std::swap(x1, x2);
            std::swap(y1, y2);
        }
        const int originX = floored(x1);
        const int originY = floored(y1);
        column = originX + target.shiftX;
        row = originY + target.shiftY;
        x = x1 - originX;
        y = y1 - originY;
        endX = x2 - originX;
        endY = y2 - originY;
        m_all = {target.left, target.right};
        m_across = endX != x ? (endY - y) / (endX - x) : 0.0;
    }

    double middleOf(int targetRow) const { return targetRow - row + 0.5; }
    int rowOf(double ownY) const { return floored(ownY) + row; }
    Columns columns(double left, double right) const {
        return {columnAfter(left) + column, columnAfter(right) + column};
    }
    // The columns of a row that lie beside the line, before its upper end and beyond its lower one.
    Columns beside(double ownY) const {
        const auto [upper, lower] = ends(ownY);
        return rightward() ? Columns{upper, lower} : Columns{lower, upper};
    }
    Columns above(double ownY) const {
        const int upper = ends(ownY).upper;
        return rightward() ? Columns{m_all.from, upper} : Columns{upper, m_all.to};
    }
    Columns below(double ownY) const {
        const int lower = ends(ownY).lower;
        return rightward() ? Columns{lower, m_all.to} : Columns{m_all.from, lower};
    }
    // The same in the direction in which it was given.
    Columns beforeStart(double ownY) const { return turned ? below(ownY) : above(ownY); }
    Columns beyondEnd(double ownY) const { return turned ? above(ownY) : below(ownY); }

    double x;
    double y;
    double endX;
    double endY;
    int column; // of the target, that x = 0 and y = 0 lie at
    int row;
    bool turned; // it was given from the lower end on

private:
    struct Ends {
        int upper;
        int lower;
    };
    bool rightward() const { return endX >= x; }
    // Where the ends, at right angles to the line, cut a row.
    Ends ends(double ownY) const {
        if (endX == x) {
            return {inTarget(ownY > y ? -endless : endless), inTarget(ownY <= endY ? endless : -endless)};
        }
        return {inTarget(x - cut(ownY - y)), inTarget(endX - cut(ownY - endY))};
    }
    // On a grid so wide that sums are exact: two lines that meet have the same cut where they meet.
    double cut(double dy) const {
        constexpr double large = 1.5 * 4294967296.0;
        return (dy * m_across + large) - large;
    }
    int inTarget(double ownX) const { return std::clamp(columnAfter(ownX) + column, m_all.from, m_all.to); }

    Columns m_all;
    double m_across;
};

// A line of some width.
struct Axis {
    double alongX;
    double alongY; // never points up
    double radius;
};

Axis axisOf(const Line& line, double width) {
    const double dx = line.endX - line.x;
    const double dy = line.endY - line.y;
    const double length = std::sqrt(dx * dx + dy * dy);
    return {length > 0.0 ? dx / length : 0.0, length > 0.0 ? dy / length : 1.0, width / 2.0};
}

// The strip along the line, endless: where its two sides meet a row. They are `radius` off the line.
class Strip {
public:
    Strip(const Line& line, const Axis& axis, double radius)
        : m_x(line.x)
        , m_y(line.y)
        , m_radius(radius)
        , m_level(axis.alongY == 0.0)
        , m_slope(m_level ? 0.0 : axis.alongX / axis.alongY)
        , m_half(m_level ? endless : radius / axis.alongY) {}

    double middle(double y) const { return m_x + (y - m_y) * m_slope; }
    double halfWidth() const { return m_half; }
    double left(double y) const { return middle(y) - half(y); }
    double right(double y) const { return middle(y) + half(y); }

private:
    // A level line is a stretch of whole rows.
    double half(double y) const { return !m_level || std::abs(y - m_y) < m_radius ? m_half : -m_half; }

    double m_x;
    double m_y;
    double m_radius;
    bool m_level;
    double m_slope;
    double m_half;
};

constexpr int lanes = 4; // pixels that are measured and mixed at a time
constexpr Doubles fourMiddles{0.5, 1.5, 2.5, 3.5};

// How much of a pixel is covered, in parts of 255; of four pixels.
class Coverage {
public:
    explicit Coverage(const Axis& axis) {
        constexpr double level = 1e-3; // as good as none, and still a divisor
        const double wide = std::max(std::abs(axis.alongX), std::abs(axis.alongY));
        const double narrow = std::max(std::min(std::abs(axis.alongX), std::abs(axis.alongY)), level);
        m_radius = float(axis.radius);
        m_reach = float((wide + narrow) / 2.0);
        m_straight = float((wide - narrow) / 2.0);
        m_rise = float(255.0 / (2.0 * wide * narrow));
    }

    // How far a pixel's corners lie from its middle, measured across the line.
    double reach() const { return double(m_reach); }
    // Of pixels whose middles lie so far from the line's, and that one edge can cross.
    Parts ofEdge(Floats off) const { return rounded(beside(m_radius - off)); }
    // Of pixels that both can.
    Parts ofLine(Floats off) const {
        return rounded(beside(m_radius - off) + beside(m_radius + off) - 255.0F);
    }
    // At a cap, so far from its middle along and across the row: the edge is taken for one that runs along
    // the pixel.
    Parts ofCap(Floats dx, float dy) const {
        const Floats off = FourPixels::squareRoot(dx * dx + dy * dy);
        return rounded(255.0F * least(greatest(m_radius + 0.5F - off, floats(0.0F)), floats(1.0F)));
    }

private:
    static Floats squareAbove(Floats values) {
        const Floats positive = greatest(values, floats(0.0F));
        return positive * positive;
    }
    // The share of a pixel on one side of an edge that its middle is `inside` of: a square cut by a line. The
    // cut's length grows, stays and shrinks as it moves across, a trapezoid, and the share is what of that
    // trapezoid it has passed. Without a case to tell from another, since nobody can foretell which it is.
    Floats beside(Floats inside) const {
        const Floats at = least(inside, floats(m_reach));
        return (squareAbove(at + m_reach) - squareAbove(at + m_straight) - squareAbove(at - m_straight)) *
               m_rise;
    }

    float m_radius;
    float m_reach;    // beyond it a pixel is full or empty
    float m_straight; // up to it the edge crosses two opposite sides of the pixel
    float m_rise;
};

// A run is a few pixels long: four at a time, the last four over some that have it already.
void fillRun(std::uint32_t* pixels, int count, std::uint32_t color) {
    const std::array<std::uint32_t, lanes> four{color, color, color, color};
    if (count < lanes) {
        std::fill_n(pixels, std::max(count, 0), color);
        return;
    }
    for (int i = 0; i < count - lanes; i += lanes) {
        std::memcpy(pixels + i, four.data(), sizeof four);
    }
    std::memcpy(pixels + count - lanes, four.data(), sizeof four);
}

// What a colour does to the pixels of a row.
template <bool Opaque> class Ink {
public:
    explicit Ink(std::uint32_t color) : m_color(color), m_four(color) {}
    void mix(std::uint32_t& pixel, std::uint32_t part) const {
        pixel = Opaque ? PixelBlend::mixed(m_color, part, pixel)
                       : PixelBlend::over(pixel, PixelBlend::share(m_color, part));
    }
    // Two pixels that lie side by side, and two others.
    void mix(std::uint32_t* two, std::uint32_t* others, Parts parts) const {
        if constexpr (Opaque) {
            m_four.mix(two, others, parts);
            return;
        }
        mix(two[0], std::uint32_t(parts[0]));
        mix(two[1], std::uint32_t(parts[1]));
        mix(others[0], std::uint32_t(parts[2]));
        mix(others[1], std::uint32_t(parts[3]));
    }
    void fill(std::uint32_t* pixels, int count) const {
        if constexpr (Opaque) {
            fillRun(pixels, count, m_color);
            return;
        }
        for (int i = 0; i < count; ++i) {
            pixels[i] = PixelBlend::over(pixels[i], m_color);
        }
    }

private:
    std::uint32_t m_color;
    FourPixels::Color m_four;
};

// One capsule on one target.
template <bool Opaque> class Drawing {
public:
    Drawing(const CapsuleTarget& target, const Line& line, double width, std::uint32_t color)
        : m_target(target)
        , m_line(line)
        , m_axis(axisOf(line, width))
        , m_ink(color)
        , m_coverage(m_axis)
        , m_outer(line, m_axis, m_axis.radius + m_coverage.reach())
        , m_inner(line, m_axis, std::max(m_axis.radius - m_coverage.reach(), 0.0))
        , m_wide(m_axis.radius > m_coverage.reach()) {}

    void strip() const {
        // Between these rows no pixel lies beyond an end.
        constexpr double rounding = 1e-6;
        const double slant = (m_axis.radius + m_coverage.reach()) * std::abs(m_axis.alongX) + rounding;
        const int first = m_line.rowOf(m_line.y - slant);
        const int end = m_line.rowOf(m_line.endY + slant) + 1;
        const int straightFrom = std::min(m_line.rowOf(m_line.y + slant + 0.5), end);
        const int straightTo = std::clamp(m_line.rowOf(m_line.endY - slant + 0.5), straightFrom, end);
        bentRows(first, straightFrom);
        straightRows(straightFrom, straightTo);
        bentRows(straightTo, end);
    }

    void upperCap() const {
        capRows({m_line.x, m_line.y}, -capReach(), capSlant(), [this](double y) { return m_line.above(y); });
    }
    void lowerCap() const {
        capRows({m_line.endX, m_line.endY}, -capSlant(), capReach(),
                [this](double y) { return m_line.below(y); });
    }

    // What lies beyond the other line's end, before this one's start, and no further off than a cap.
    void joint(const Line& other) const {
        const Axis otherAxis = axisOf(other, 2.0 * m_axis.radius);
        const QPointF along = (m_line.turned ? -1.0 : 1.0) * QPointF(m_axis.alongX, m_axis.alongY);
        const QPointF before = (other.turned ? -1.0 : 1.0) * QPointF(otherAxis.alongX, otherAxis.alongY);
        // It is a sector between two radii at right angles to the lines.
        const double side = before.x() * along.y() - before.y() * along.x() > 0.0 ? -1.0 : 1.0;
        const double one = side * before.x() * capReach();
        const double two = side * along.x() * capReach();
        const bool top = before.y() <= 0.0 && along.y() >= 0.0;
        const bool bottom = before.y() >= 0.0 && along.y() <= 0.0;
        const QPointF center =
            m_line.turned ? QPointF(m_line.endX, m_line.endY) : QPointF(m_line.x, m_line.y);
        const int rows = m_line.row - other.row;
        capRows(center, top ? -capReach() : std::min({one, two, 0.0}),
                bottom ? capReach() : std::max({one, two, 0.0}),
                [&](double y) { return m_line.beforeStart(y).within(other.beyondEnd(y + rows)); });
    }

private:
    double capReach() const { return m_axis.radius + 0.5; }
    double capSlant() const { return capReach() * std::abs(m_axis.alongX); }
    int within(int row) const { return std::clamp(row, m_target.top, m_target.bottom); }
    std::uint32_t* pixelsOf(int row) const { return m_target.pixels + row * m_target.stride; }

    // Rows that an end of the line lies in.
    void bentRows(int first, int end) const {
        for (int j = within(first), last = within(end); j < last; ++j) {
            stripRow(j, m_line.beside(m_line.middleOf(j)));
        }
    }

    void straightRows(int first, int end) const {
        // Of a steep line an edge crosses no more than two pixels of a row.
        const bool steep = m_axis.alongY >= std::abs(m_axis.alongX);
        if (!steep || !m_wide || 2.0 * m_outer.halfWidth() < lanes + 1) {
            for (int j = within(first); j < within(end); ++j) {
                stripRow(j, m_all);
            }
            return;
        }
        const Drawing self = *this; // nothing that is drawn changes it, which a compiler can't know
        for (int j = self.within(first), last = self.within(end); j < last; ++j) {
            self.steepRow(j);
        }
    }

    // Those two pixels at either edge are measured, without asking where the full ones begin.
    void steepRow(int j) const {
        const double middle = m_outer.middle(m_line.middleOf(j));
        const int first = floored(middle - m_outer.halfWidth() + 0.5);
        const int end = floored(middle + m_outer.halfWidth() + 0.5);
        const auto left = float(middle - first);
        const auto right = float(end - middle);
        const Parts parts = m_coverage.ofEdge(Floats{left - 0.5F, left - 1.5F, right - 1.5F, right - 0.5F} *
                                              float(m_axis.alongY));
        const int from = first + m_line.column;
        const int to = end + m_line.column;
        std::uint32_t* pixels = pixelsOf(j);
        if (from >= m_target.left && to <= m_target.right) {
            m_ink.mix(pixels + from, pixels + to - 2, parts);
            m_ink.fill(pixels + from + 2, to - from - 4);
            return;
        }
        const std::array<int, lanes> places{from, from + 1, to - 2, to - 1};
        for (int i = 0; i < lanes; ++i) {
            const int place = places[std::size_t(i)];
            if (place >= m_target.left && place < m_target.right) {
                m_ink.mix(pixels[place], std::uint32_t(parts[i]));
            }
        }
        const Columns full = Columns{from + 2, to - 2}.within(m_all);
        if (!full.empty()) {
            m_ink.fill(pixels + full.from, full.to - full.from);
        }
    }

    void stripRow(int j, Columns allowed) const {
        const double y = m_line.middleOf(j);
        const Columns touched = m_line.columns(m_outer.left(y), m_outer.right(y)).within(allowed);
        if (touched.empty()) {
            return;
        }
        const double across = (y - m_line.y) * m_axis.alongX;
        const auto off = [&](int column) {
            const Doubles dx = column - m_line.column - m_line.x + fourMiddles;
            const Floats signedOff = __builtin_convertvector(dx * m_axis.alongY - across, Floats);
            return greatest(signedOff, -signedOff);
        };
        if (m_wide) {
            draw(j, touched, m_line.columns(m_inner.left(y), m_inner.right(y)),
                 [&](int column) { return m_coverage.ofEdge(off(column)); });
        } else {
            measure(j, touched, [&](int column) { return m_coverage.ofLine(off(column)); });
        }
    }

    // The rows of a cap from `top` to `bottom` of its center on. allowed(y): the columns that are its own.
    template <typename Allowed>
    void capRows(QPointF center, double top, double bottom, Allowed allowed) const {
        constexpr double rounding = 1e-6;
        const int first = within(m_line.rowOf(center.y() + top - rounding - 0.5) + 1);
        const int last = within(m_line.rowOf(center.y() + bottom + rounding + 0.5));
        for (int j = first; j < last; ++j) {
            capRow(j, center, allowed(m_line.middleOf(j)));
        }
    }

    void capRow(int j, QPointF center, Columns allowed) const {
        const double dy = m_line.middleOf(j) - center.y();
        const double outer = capReach();
        const double inner = std::max(m_axis.radius - 0.5, 0.0);
        const double outerSquare = outer * outer - dy * dy;
        if (outerSquare <= 0.0 || allowed.empty()) {
            return;
        }
        const double reach = std::sqrt(outerSquare);
        const Columns touched = m_line.columns(center.x() - reach, center.x() + reach).within(allowed);
        if (touched.empty()) {
            return;
        }
        const double full = std::sqrt(std::max(inner * inner - dy * dy, 0.0));
        draw(j, touched, m_line.columns(center.x() - full, center.x() + full), [&](int column) {
            const Doubles dx = column - m_line.column - center.x() + fourMiddles;
            return m_coverage.ofCap(__builtin_convertvector(dx, Floats), float(dy));
        });
    }

    // The full stretch, and what is measured on either side of it.
    template <typename PartsAt> void draw(int j, Columns touched, Columns full, PartsAt partsAt) const {
        const int fullFrom = std::clamp(full.from, touched.from, touched.to);
        const int fullTo = std::clamp(full.to, fullFrom, touched.to);
        measure(j, {touched.from, fullFrom}, partsAt);
        m_ink.fill(pixelsOf(j) + fullFrom, fullTo - fullFrom);
        measure(j, {fullTo, touched.to}, partsAt);
    }

    // partsAt(column): how much of the pixel there and of the three behind it is covered.
    template <typename PartsAt> void measure(int j, Columns columns, PartsAt partsAt) const {
        std::uint32_t* pixels = pixelsOf(j);
        const int lastFour = int(m_target.stride) - lanes;
        if (lastFour < 0) { // a row of fewer
            const Parts parts = partsAt(columns.from);
            for (int i = columns.from; i < columns.to; ++i) {
                m_ink.mix(pixels[i], std::uint32_t(parts[i - columns.from]));
            }
            return;
        }
        for (int i = columns.from; i < columns.to; i += lanes) {
            const int first = std::min(i, lastFour);
            const Parts meant = Parts{0, 1, 2, 3} + first;
            const Parts parts = (meant >= i && meant < columns.to) ? partsAt(first) : Parts{};
            m_ink.mix(pixels + first, pixels + first + 2, parts);
        }
    }

    const CapsuleTarget m_target;
    const Columns m_all{m_target.left, m_target.right};
    const Line m_line;
    const Axis m_axis;
    Ink<Opaque> m_ink;
    Coverage m_coverage;
    Strip m_outer;
    Strip m_inner;
    bool m_wide;
};

template <bool Opaque>
void drawParts(const CapsuleTarget& target, const Line& line, const Capsule& capsule, QRgb color) {
    const Drawing<Opaque> drawing(target, line, capsule.width, color);
    if (capsule.before) {
        drawing.joint(Line(target, *capsule.before, {capsule.x1, capsule.y1}));
    }
    if (line.turned ? capsule.endCap : capsule.startCap) {
        drawing.upperCap();
    }
    if (capsule.strip) {
        drawing.strip();
    }
    if (line.turned ? capsule.startCap : capsule.endCap) {
        drawing.lowerCap();
    }
}

} // namespace

QRectF boundsOf(const Capsule& capsule) {
    const double margin = capsule.width / 2.0 + 2.0;
    const bool onlyEnd = !capsule.startCap && !capsule.strip && !capsule.before;
    const double x1 = onlyEnd ? capsule.x2 : capsule.x1;
    const double y1 = onlyEnd ? capsule.y2 : capsule.y1;
    const double x2 = capsule.x2;
    const double y2 = capsule.y2;
    return QRectF(QPointF(std::min(x1, x2) - margin, std::min(y1, y2) - margin),
                  QPointF(std::max(x1, x2) + margin, std::max(y1, y2) + margin));
}

void drawCapsule(const CapsuleTarget& target, const Capsule& capsule, QRgb premultiplied) {
    if (qAlpha(premultiplied) == 0) {
        return;
    }
    const QRectF bounds = boundsOf(capsule).translated(target.shiftX, target.shiftY);
    if (bounds.right() < target.left || bounds.left() > target.right || bounds.bottom() < target.top ||
        bounds.top() > target.bottom) {
        return;
    }
    const Line line(target, {capsule.x1, capsule.y1}, {capsule.x2, capsule.y2});
    if (qAlpha(premultiplied) == 255) {
        drawParts<true>(target, line, capsule, premultiplied);
    } else {
        drawParts<false>(target, line, capsule, premultiplied);
    }
}
