#pragma once
// Four pixels at a time, in Format_ARGB32_Premultiplied: how much of each a shape covers, and a colour mixed
// into them by as much. In vectors as GCC and Clang have them, for whatever processor: left to themselves the
// compilers make single steps of it.

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace FourPixels {

using Doubles = double __attribute__((vector_size(32)));
using Floats = float __attribute__((vector_size(16)));
using Parts = std::int32_t __attribute__((vector_size(16))); ///< of 255

inline Floats floats(float value) {
    return Floats{value, value, value, value};
}
inline Floats least(Floats a, Floats b) {
    return a < b ? a : b;
}
inline Floats greatest(Floats a, Floats b) {
    return a > b ? a : b;
}
inline Floats squareRoot(Floats values) {
    std::array<float, 4> roots;
    std::memcpy(roots.data(), &values, sizeof roots);
    for (float& root : roots) {
        root = std::sqrt(root);
    }
    std::memcpy(&values, roots.data(), sizeof roots);
    return values;
}
/// Of values from 0 to 255.
inline Parts rounded(Floats values) {
    return __builtin_convertvector(values + 0.5F, Parts);
}

using Bytes = std::uint8_t __attribute__((vector_size(8)));
using Words = std::uint16_t __attribute__((vector_size(16)));

/// The channels of two pixels.
inline Words channelsOf(const std::uint32_t* two) {
    Bytes bytes;
    std::memcpy(&bytes, two, sizeof bytes);
    return __builtin_convertvector(bytes, Words);
}

/// Lays four premultiplied pixels over four others, rounded as the painter does it: not quite as PixelBlend.
inline void layOver(std::uint32_t* under, const std::uint32_t* above) {
    for (int i = 0; i < 4; i += 2) {
        const Words over = channelsOf(above + i);
        const Words rest =
            channelsOf(under + i) * (255 - __builtin_shufflevector(over, over, 3, 3, 3, 3, 7, 7, 7, 7));
        const Bytes bytes = __builtin_convertvector(over + ((rest + (rest >> 8) + 128) >> 8), Bytes);
        std::memcpy(under + i, &bytes, sizeof bytes);
    }
}

/// An opaque colour for two pixels.
class Color {
public:
    explicit Color(std::uint32_t pixel) {
        const std::uint32_t pixels[] = {pixel, pixel};
        m_channels = channelsOf(pixels);
    }
    /// `parts` of the colour and the rest of what is there, for two pixels and two others that aren't the
    /// same.
    void mix(std::uint32_t* two, std::uint32_t* others, Parts parts) const {
        const Parts twice = parts | parts << 16; // a word each for two channels
        mixTwo(two, Words(__builtin_shufflevector(twice, twice, 0, 0, 1, 1)));
        mixTwo(others, Words(__builtin_shufflevector(twice, twice, 2, 2, 3, 3)));
    }

private:
    // Each channel divided by 255, rounded, as PixelBlend does it.
    void mixTwo(std::uint32_t* two, Words parts) const {
        const Words products = m_channels * parts + channelsOf(two) * (255 - parts) + 128;
        const Words mixed = (products + (products >> 8)) >> 8;
        const Bytes bytes = __builtin_convertvector(mixed, Bytes);
        std::memcpy(two, &bytes, sizeof bytes);
    }

    Words m_channels;
};

} // namespace FourPixels
