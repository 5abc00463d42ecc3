#include "slicewheel.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double turn = 360.0; // degrees
constexpr int fineness = 8;    // steps of the exact colours within one of the table

// The colours round the wheel, and their sums from 0 on, for means of any stretch.
class ColorCircle {
public:
    ColorCircle(int steps, QRgb ground) : m_steps(steps), m_colors(std::size_t(steps), ground) {}

    void paint(double from, double to, QRgb color) {
        if (!std::isfinite(from) || !std::isfinite(to)) {
            return;
        }
        // An area that runs backwards covers the same stretch.
        const double start = std::fmod(std::min(from, to), turn);
        const double size = std::min(std::abs(to - from), turn);
        const auto first = std::int64_t(std::llround(start / turn * m_steps));
        const auto end = std::int64_t(std::llround((start + size) / turn * m_steps));
        for (std::int64_t i = first; i < end; ++i) {
            m_colors[std::size_t((i + m_steps) % m_steps)] = color;
        }
    }
    void sumUp() {
        m_sums.assign(m_colors.size() + 1, Sum{});
        for (std::size_t i = 0; i < m_colors.size(); ++i) {
            m_sums[i + 1] = {m_sums[i].red + qRed(m_colors[i]), m_sums[i].green + qGreen(m_colors[i]),
                             m_sums[i].blue + qBlue(m_colors[i])};
        }
    }
    /// Of `count` steps from `first` on; `first` may be negative.
    QRgb mean(int first, int count) const {
        const Sum to = upTo(first + count);
        const Sum from = upTo(first);
        const auto part = [count](int a, int b) { return (a - b + count / 2) / count; };
        return qRgb(part(to.red, from.red), part(to.green, from.green), part(to.blue, from.blue));
    }

private:
    struct Sum {
        int red = 0;
        int green = 0;
        int blue = 0;
    };
    // Within a turn to either side.
    Sum upTo(int step) const {
        const Sum all = m_sums.back();
        const int turns = step < 0 ? -1 : step >= m_steps ? 1 : 0;
        const Sum part = m_sums[std::size_t(step - turns * m_steps)];
        return {part.red + turns * all.red, part.green + turns * all.green, part.blue + turns * all.blue};
    }

    int m_steps;
    std::vector<QRgb> m_colors;
    std::vector<Sum> m_sums;
};

} // namespace

void SliceWheel::build(const QPhrasingList& areas, const QColor& ground, double radius) {
    const int side = 2 * int(std::ceil(radius));
    m_shown = -1;
    if (m_image.width() != side) {
        m_image = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
        m_image.fill(Qt::transparent);
        place(radius);
    }
    color(areas, ground.rgb(), radius);
}

void SliceWheel::place(double radius) {
    const int side = m_image.width();
    m_rows.clear();
    m_places.clear();
    for (int y = 0; y < side; ++y) {
        const double dy = y + 0.5 - side / 2.0;
        const double reach = std::sqrt(std::max(0.0, radius * radius - dy * dy));
        const int first = int(std::ceil(side / 2.0 - reach - 0.5));
        const int end = int(std::floor(side / 2.0 + reach - 0.5)) + 1;
        m_rows.push_back({first, std::max(0, end - first)});
        for (int x = first; x < end; ++x) {
            const double dx = x + 0.5 - side / 2.0;
            const double angle = std::atan2(dx, -dy) / (2.0 * std::numbers::pi);
            const auto step = std::uint16_t(int(std::floor(angle * angles)) & angleMask);
            // The outermost ring takes half of the radius, the next one half of the rest.
            const double distance = std::max(std::hypot(dx, dy), 0.5);
            const int ring = std::clamp(int(std::floor(std::log2(radius / distance))), 0, rings - 1);
            m_places.push_back(std::uint16_t(ring << angleBits | step));
        }
    }
}

// The border of two slices is smooth over about a pixel: the table of each ring holds the means over as many
// steps as a pixel takes there.
void SliceWheel::color(const QPhrasingList& areas, QRgb ground, double radius) {
    constexpr int steps = angles * fineness;
    ColorCircle circle(steps, ground);
    for (const QPhrasingPtr& area : areas) {
        circle.paint(area->angleStart(), area->angleEnd(), area->color().rgb());
    }
    circle.sumUp();
    m_colors.clear();
    for (int ring = 0; ring < rings; ++ring) {
        const double middle = radius / std::exp2(ring + 0.5);
        const int pixel = std::clamp(int(steps / (2.0 * std::numbers::pi * middle)), 1, steps / 4);
        for (int angle = 0; angle < angles; ++angle) {
            m_colors.push_back(circle.mean(angle * fineness + fineness / 2 - pixel / 2, pixel));
        }
    }
}

const QImage& SliceWheel::turned(double degrees) {
    const int shift = int(std::llround(std::fmod(degrees, turn) / turn * angles)) & angleMask;
    if (shift != m_shown) {
        m_shown = shift;
        const std::uint16_t* place = m_places.data();
        const QRgb* colors = m_colors.data();
        for (int y = 0; y < m_image.height(); ++y) {
            const Row row = m_rows[std::size_t(y)];
            auto* pixels = reinterpret_cast<QRgb*>(m_image.scanLine(y)) + row.first;
            for (int i = 0; i < row.count; ++i, ++place) {
                const unsigned ring = *place & ~unsigned(angleMask);
                pixels[i] = colors[ring | ((*place - unsigned(shift)) & angleMask)];
            }
        }
    }
    return m_image;
}
