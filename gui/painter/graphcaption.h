#pragma once

#include <QString>

#include <cstddef>

/// Beats between the start of the run and the cursor, with two decimals. Unlike the grid's beat numbers it
/// doesn't count from the first click.
inline QString cursorBeat(double cursorTime, double sampleRate, double bpm) {
    return QString::number(cursorTime / (60.0 * sampleRate / bpm), 'f', 2);
}

/// Latency of the deck's ring and how full the ring has been at most, in percent of its slots.
inline QString latencyCaption(double latencyMs, double outputBuffer, std::size_t maxFill,
                              std::size_t capacity) {
    const double fill = (double(maxFill) + 1.0) * 100.0 / double(capacity);
    return QStringLiteral("%1ms / %2%").arg(latencyMs * outputBuffer, 0, 'f', 1).arg(fill, 0, 'f', 0);
}
