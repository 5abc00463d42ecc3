#pragma once

#include "curvepointstore.h"

#include <array>
#include <cstddef>
#include <vector>

/// Finds the smallest and the largest position of any stretch of a curve in a time that grows with the
/// logarithm of its length. It keeps the extremes of every 32 points, of every 32 of those blocks and so on,
/// over points that the store has published; the producer knows nothing of it. GUI thread.
class CurveExtremes {
public:
    struct Extremes {
        double min = 0.0;
        double max = 0.0;
    };

    /// What a walk from `first` up to and not including `last` finds, bit for bit. Of equal positions, 0 and
    /// -0, the first one stands. A position that is no number is passed over, but for the first of the
    /// stretch: there both results are no number. `points` is a view of the curve and `generation` the
    /// store's at the moment of the view; `first` lies below `last`, and `last` is at most the size of the
    /// view.
    Extremes over(const CurvePointStore::View& points, std::uint64_t generation, std::size_t first,
                  std::size_t last);

private:
    static constexpr std::size_t shift = 5; ///< 32 of one level make a block of the next
    static constexpr std::size_t fan = std::size_t{1} << shift;
    static constexpr std::size_t levels = 6; ///< a block of the last level covers 2 to the 30th points

    static std::size_t pointsOf(std::size_t level) { return std::size_t{1} << (shift * (level + 1)); }
    void follow(const CurvePointStore::View& points, std::uint64_t generation);
    void add(std::size_t level, const Extremes& block);

    std::array<std::vector<Extremes>, levels>
        m_blocks;                        ///< whole blocks only, from the curve's first point on
    const CurvePoint* m_front = nullptr; ///< the curve's first point: a restart has another one
    std::uint64_t m_generation = 0;
};
