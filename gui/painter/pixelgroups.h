#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Pixels of a device, opaque or premultiplied, four bytes each. `left` to `bottom` is what may be drawn on,
/// the last two exclusive.
struct PixelTarget {
    std::uint32_t* origin = nullptr; ///< of 0, 0; there need not be a pixel there
    std::ptrdiff_t stride = 0;       ///< pixels from row to row
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

/// Where a picture of premultiplied pixels isn't empty, in groups of eight of a row. Lines leave most groups
/// empty; laying the picture down goes from one group that isn't to the next, without a look at what lies
/// between.
class PixelGroups {
public:
    static constexpr int size = 8;               ///< pixels of a group
    static constexpr int wordPixels = 64 * size; ///< of the groups in one word

    PixelGroups() = default;
    /// Of a picture whose rows are whole groups.
    PixelGroups(int width, int height);
    /// The picture is empty.
    void clear();
    /// Looks at the picture again: at the groups with this number from the left, in the rows from `top` up to
    /// and not including `bottom`. All other rows of them are empty.
    void update(const std::uint32_t* picture, std::ptrdiff_t stride, int group, int top, int bottom);
    /// Lays the picture over what is there, as the painter does. The target's columns and rows count as the
    /// picture's do and are some of these.
    void paint(const std::uint32_t* picture, std::ptrdiff_t stride, const PixelTarget& target) const;

private:
    std::uint64_t& word(int row, int index) {
        return m_occupied[std::size_t(row) * std::size_t(m_words) + std::size_t(index)];
    }
    std::uint64_t word(int row, int index) const {
        return m_occupied[std::size_t(row) * std::size_t(m_words) + std::size_t(index)];
    }

    int m_words = 0; ///< of a row
    int m_height = 0;
    std::vector<std::uint64_t> m_occupied; ///< a bit each for the groups of a row, from the left
};
