#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

/// `ms` truncated to what a timer takes: 0 to the largest int; the largest for a tempo that is none.
inline int wholeMilliseconds(double ms) {
    constexpr double limit = 2147483647.0;
    return ms < limit ? static_cast<int>(std::max(0.0, ms)) : static_cast<int>(limit);
}

/// When the next beat is due. A timer counts whole milliseconds, a tempo doesn't: each interval is trued up
/// so that the k-th beat comes within a millisecond of k * 60000 / bpm after the start, however long it runs.
class BeatClock {
public:
    /// Starts at `bpm` beats a minute. Returns the first interval: 60000 / bpm truncated, ms.
    int start(double bpm) {
        m_beatMs = 60000.0 / bpm;
        m_beats = 0;
        return wholeMilliseconds(m_beatMs);
    }
    /// A beat has come, `sinceStartMs` after the start. Returns the interval to the next one, ms.
    int beat(double sinceStartMs) {
        ++m_beats;
        const double due = double(m_beats + 1) * m_beatMs;
        return wholeMilliseconds(std::round(due - sinceStartMs));
    }

private:
    double m_beatMs = 0.0;
    std::int64_t m_beats = 0;
};
