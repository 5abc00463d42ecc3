#pragma once
// Which stretch of time a graph shows. Times are sample frames of the deck.

#include "model/modelactivatedmode.h"

#include <cstdint>
#include <optional>

/// From and to, as the graph takes them.
struct FrameRange {
    std::int32_t from = 0;
    std::int32_t to = 0;
    bool operator==(const FrameRange&) const = default;
};

/// Frames between the two ends, whichever comes first.
std::int64_t absoluteSpan(FrameRange range);

/// Whether a graph takes the range: more than one beat and less than 36000. A tempo of 0 or none refuses all.
bool acceptsRange(FrameRange range, double beatLength);

/// Where the two edges lie relative to the cursor.
struct CursorWindow {
    double before = 0.0;
    double after = 0.0;
    /// The range around a cursor.
    FrameRange around(double cursorTime) const;
};

/// `beats` are the beats that the graph shows. The cursor stands near the right edge, but at two thirds of
/// the width where a reference shows what comes.
CursorWindow cursorWindow(ModelActivatedMode::EnumActivatedMode mode, double beats, double beatLength);

/// The range that shows the data of both curves, one beat behind its end; none for no data or for data that
/// ends at 0. A curve without points is absent.
std::optional<FrameRange> fittingRange(std::optional<FrameRange> main, std::optional<FrameRange> secondary,
                                       double beatLength);
