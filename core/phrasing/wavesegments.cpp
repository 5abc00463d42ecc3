#include "wavesegments.h"

#include "model/wholenumber.h"

std::vector<WaveSegment> waveSegments(const QPhrasingList& areas, std::size_t samples) {
    const auto sampleAt = [n = static_cast<double>(samples)](double angle) {
        return truncated(angle * n / 360.0);
    };
    std::vector<WaveSegment> segments;
    segments.reserve(static_cast<std::size_t>(areas.size()));
    for (const QPhrasingPtr& area : areas) {
        segments.push_back({sampleAt(area->angleStart()), sampleAt(area->angleEnd()), area->color()});
    }
    return segments;
}
