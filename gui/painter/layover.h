#pragma once

#include <cstddef>
#include <cstdint>

/// A row of premultiplied pixels that is laid over a row of others, and how far it is from a pixel of each to
/// the one that will be wanted soon.
struct RowOver {
    std::uint32_t* under;
    const std::uint32_t* above;
    std::ptrdiff_t underAhead;
    std::ptrdiff_t aboveAhead;
};

/// Lays groups of eight pixels over what is there, exactly as the painter lays one picture over another. Bit
/// i of `groups` stands for the pixels from 8 i on.
using LayOver = void (*)(const RowOver& row, std::uint64_t groups);

/// For any processor.
void layOverPlain(const RowOver& row, std::uint64_t groups);
/// The fastest one that this processor can run.
LayOver layOver();
