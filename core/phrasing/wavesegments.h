#pragma once

#include "qphrasing.h"

#include <QColor>

#include <cstddef>
#include <cstdint>
#include <vector>

/// The stretch of a sample that one area covers.
struct WaveSegment {
    std::int32_t first; ///< first sample
    std::int32_t end;   ///< the sample behind the last
    QColor color;

    bool operator==(const WaveSegment&) const = default;
};

/// The areas laid over a sample of `samples` values a channel, in their order: the whole turn of the record
/// stands for the whole sample. An area that a file gives backwards or beyond the turn comes out so as well:
/// whoever draws holds the ends within the sample.
std::vector<WaveSegment> waveSegments(const QPhrasingList& areas, std::size_t samples);
