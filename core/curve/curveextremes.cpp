#include "curveextremes.h"

#include <algorithm>
#include <limits>

namespace {

// What a block without a number holds: it changes nothing that it is taken into.
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr CurveExtremes::Extremes nothing{infinite, -infinite};

// The order of the arguments decides about 0 and -0 and about what is no number: what stands, stays.
void take(CurveExtremes::Extremes& all, const CurveExtremes::Extremes& more) {
    all.min = std::min(all.min, more.min);
    all.max = std::max(all.max, more.max);
}

void take(CurveExtremes::Extremes& all, double position) {
    take(all, {position, position});
}

} // namespace

CurveExtremes::Extremes CurveExtremes::over(const CurvePointStore::View& points, std::uint64_t generation,
                                            std::size_t first, std::size_t last) {
    follow(points, generation);
    Extremes all{points[first].position, points[first].position};
    for (std::size_t i = first; i < last;) {
        // The largest block that starts here and ends within the stretch; a point where there is none.
        std::size_t level = 0;
        while (level < levels && i % pointsOf(level) == 0 && last - i >= pointsOf(level)) {
            ++level;
        }
        if (level == 0) {
            take(all, points[i].position);
            ++i;
        } else {
            take(all, m_blocks[level - 1][i / pointsOf(level - 1)]);
            i += pointsOf(level - 1);
        }
    }
    return all;
}

void CurveExtremes::follow(const CurvePointStore::View& points, std::uint64_t generation) {
    const CurvePoint* front = points.empty() ? nullptr : &points.front();
    if (front != m_front || generation != m_generation) {
        for (std::vector<Extremes>& blocks : m_blocks) {
            blocks.clear();
        }
        m_front = front;
        m_generation = generation;
    }
    while ((m_blocks[0].size() + 1) * fan <= points.size()) {
        const std::size_t from = m_blocks[0].size() * fan;
        Extremes block = nothing;
        for (std::size_t i = from; i < from + fan; ++i) {
            take(block, points[i].position);
        }
        add(0, block);
    }
}

void CurveExtremes::add(std::size_t level, const Extremes& block) {
    std::vector<Extremes>& blocks = m_blocks[level];
    blocks.push_back(block);
    if (level + 1 == levels || blocks.size() % fan != 0) {
        return;
    }
    Extremes all = nothing;
    for (std::size_t i = blocks.size() - fan; i < blocks.size(); ++i) {
        take(all, blocks[i]);
    }
    add(level + 1, all);
}
