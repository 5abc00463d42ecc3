// Every edge is a half-plane; how far a pixel's middle lies outside the shape is the largest of its distances
// from them. A row of pixels is walked only where all of them are near enough.
#include "convexshape.h"

#include "pixelblend.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// Distance of a place beyond an edge: a x + b y - c, negative inside.
struct Edge {
    double a;
    double b;
    double c;
    double beyond(double x, double y) const { return a * x + b * y - c; }
};

struct Columns {
    int from;
    int to; ///< behind the last
};

// The columns of a row that can have pixels within `distance` of all edges, or one too many at either end.
Columns columnsWithin(std::span<const Edge> edges, double y, double distance, const CapsuleTarget& target) {
    double left = target.left - target.shiftX;
    double right = target.right - target.shiftX;
    for (const Edge& edge : edges) {
        const double rest = distance + edge.c - edge.b * y; // a x may reach it
        if (std::abs(edge.a) < 1e-9) {
            right = rest < 0.0 ? left : right;
        } else if (edge.a > 0.0) {
            right = std::min(right, rest / edge.a);
        } else {
            left = std::max(left, rest / edge.a);
        }
    }
    if (!(left < right)) {
        return {target.left, target.left};
    }
    return {std::max(int(std::floor(left)) + target.shiftX, target.left),
            std::min(int(std::ceil(right)) + target.shiftX, target.right)};
}

std::uint32_t coverage(double distance) {
    return std::uint32_t(std::clamp(0.5 - distance, 0.0, 1.0) * 255.0 + 0.5);
}

// A place that whole numbers can hold; what is no number isn't one.
bool drawable(QPointF corner) {
    constexpr double farthest = 1e6;
    return std::abs(corner.x()) <= farthest && std::abs(corner.y()) <= farthest;
}

void blend(std::uint32_t& pixel, std::uint32_t color, std::uint32_t part) {
    if (part == 255U) {
        pixel = PixelBlend::over(pixel, color);
    } else if (part > 0U) {
        pixel = PixelBlend::over(pixel, PixelBlend::share(color, part));
    }
}

} // namespace

void drawConvexShape(const CapsuleTarget& target, std::span<const QPointF> corners, QRgb fill, QRgb outline,
                     double outlineWidth) {
    const std::size_t count = std::min(corners.size(), maxCorners);
    if (!std::all_of(corners.begin(), corners.end(), drawable)) {
        return;
    }
    std::array<Edge, maxCorners> edges{};
    double top = corners[0].y();
    double bottom = top;
    for (std::size_t i = 0; i < count; ++i) {
        const QPointF from = corners[i];
        const QPointF to = corners[(i + 1) % count];
        const double length = std::hypot(to.x() - from.x(), to.y() - from.y());
        const double a = (to.y() - from.y()) / length;
        const double b = (from.x() - to.x()) / length;
        edges[i] = {a, b, a * from.x() + b * from.y()};
        top = std::min(top, from.y());
        bottom = std::max(bottom, from.y());
    }
    // A pointed corner reaches further than half the outline's width: the rows beyond are empty anyway.
    const double reach = outlineWidth / 2.0 + 0.5;
    const double room = 4.0 * reach;
    const std::span<const Edge> planes(edges.data(), count);
    const int firstRow = std::max(int(std::floor(top - room)) + target.shiftY, target.top);
    const int endRow = std::min(int(std::ceil(bottom + room)) + target.shiftY, target.bottom);
    for (int row = firstRow; row < endRow; ++row) {
        const double y = row - target.shiftY + 0.5;
        const auto [from, to] = columnsWithin(planes, y, reach, target);
        std::uint32_t* pixels = target.pixels + row * target.stride;
        const auto measure = [&](int first, int end) {
            for (int column = first; column < end; ++column) {
                const double x = column - target.shiftX + 0.5;
                double distance = planes[0].beyond(x, y);
                for (const Edge& edge : planes.subspan(1)) {
                    distance = std::max(distance, edge.beyond(x, y));
                }
                blend(pixels[column], fill, coverage(distance));
                blend(pixels[column], outline, coverage(std::abs(distance) - outlineWidth / 2.0));
            }
        };
        // Of most rows all but the ends lies so far inside that it is filled and nothing else.
        auto [fullFrom, fullTo] = columnsWithin(planes, y, -reach, target);
        fullFrom = std::clamp(fullFrom + 1, from, std::max(from, to));
        fullTo = std::clamp(fullTo - 1, fullFrom, std::max(fullFrom, to));
        measure(from, fullFrom);
        if (qAlpha(fill) == 255) {
            std::fill(pixels + fullFrom, pixels + fullTo, fill);
        } else {
            for (int column = fullFrom; column < fullTo; ++column) {
                blend(pixels[column], fill, 255U);
            }
        }
        measure(fullTo, to);
    }
}
