#pragma once
// Arithmetic of single pixels in QImage::Format_ARGB32_Premultiplied, for what is drawn straight into a
// picture. A pixel's four bytes are worked on two at a time, each with a byte of room above it.

#include <cstdint>

namespace PixelBlend {

inline constexpr std::uint32_t evenBytes = 0x00ff00ffU;

/// Two products of bytes divided by 255, rounded.
inline std::uint32_t divided(std::uint32_t products) {
    const std::uint32_t raised = products + 0x00800080U;
    return ((raised + ((raised >> 8) & evenBytes)) >> 8) & evenBytes;
}

/// `part` of 255 of a pixel.
inline std::uint32_t share(std::uint32_t pixel, std::uint32_t part) {
    return divided((pixel & evenBytes) * part) | divided(((pixel >> 8) & evenBytes) * part) << 8;
}

/// `part` of 255 of one pixel, and of the other what is left.
inline std::uint32_t mixed(std::uint32_t a, std::uint32_t part, std::uint32_t b) {
    const std::uint32_t rest = 255U - part;
    return divided((a & evenBytes) * part + (b & evenBytes) * rest) |
           divided(((a >> 8) & evenBytes) * part + ((b >> 8) & evenBytes) * rest) << 8;
}

/// A colour over what is there.
inline std::uint32_t over(std::uint32_t under, std::uint32_t color) {
    return color + share(under, 255U - (color >> 24));
}

} // namespace PixelBlend
