#include "pixelgroups.h"

#include "layover.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace {

// The bits from `from` up to and not including `to`, of 64.
std::uint64_t bits(int from, int to) {
    const auto below = [](int count) {
        return count >= 64 ? ~std::uint64_t(0) : (std::uint64_t(1) << std::max(count, 0)) - 1;
    };
    return below(to) & ~below(from);
}

// The part of a group that lies between two columns of it, which are counted from its first one.
void layPart(std::uint32_t* under, const std::uint32_t* above, int from, int to) {
    if (from < to) {
        std::array<std::uint32_t, PixelGroups::size> group{};
        const std::size_t bytes = sizeof(std::uint32_t) * std::size_t(to - from);
        std::memcpy(group.data() + from, under + from, bytes);
        layOverPlain({group.data(), above, 0, 0}, 1);
        std::memcpy(under + from, group.data() + from, bytes);
    }
}

} // namespace

PixelGroups::PixelGroups(int width, int height)
    : m_words((width + wordPixels - 1) / wordPixels)
    , m_height(height)
    , m_occupied(std::size_t(m_words) * std::size_t(height), 0) {}

void PixelGroups::clear() {
    std::fill(m_occupied.begin(), m_occupied.end(), 0);
}

void PixelGroups::update(const std::uint32_t* picture, std::ptrdiff_t stride, int group, int top,
                         int bottom) {
    const std::uint64_t bit = std::uint64_t(1) << (group % 64);
    for (int y = 0; y < m_height; ++y) {
        std::array<std::uint64_t, size / 2> pairs{};
        if (y >= top && y < bottom) {
            std::memcpy(pairs.data(), picture + y * stride + group * size, sizeof pairs);
        }
        std::uint64_t& occupied = word(y, group / 64);
        occupied = (pairs[0] | pairs[1] | pairs[2] | pairs[3]) != 0 ? occupied | bit : occupied & ~bit;
    }
}

void PixelGroups::paint(const std::uint32_t* picture, std::ptrdiff_t stride,
                        const PixelTarget& target) const {
    constexpr int rowsAhead = 2;
    const LayOver lay = layOver();
    for (int index = 0; index < m_words; ++index) {
        const int start = index * wordPixels;
        const std::uint64_t touched =
            bits((target.left - start) / size, (target.right - start + size - 1) / size);
        const std::uint64_t whole =
            bits((target.left - start + size - 1) / size, (target.right - start) / size);
        if (touched == 0) {
            continue;
        }
        for (int y = target.top; y < target.bottom; ++y) {
            const std::uint64_t occupied = word(y, index) & touched;
            const RowOver row{target.origin + y * target.stride + start, picture + y * stride + start,
                              rowsAhead * target.stride, rowsAhead * stride};
            lay(row, occupied & whole);
            for (std::uint64_t cut = occupied & ~whole; cut != 0; cut &= cut - 1) {
                const int x = std::countr_zero(cut) * size;
                layPart(row.under + x, row.above + x, std::clamp(target.left - start - x, 0, size),
                        std::clamp(target.right - start - x, 0, size));
            }
        }
    }
}
