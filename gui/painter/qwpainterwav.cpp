#include "qwpainterwav.h"

#include "graphstyle.h"

#include "module/wavedata.h"

void QWPainterWav::build(const std::shared_ptr<const WaveData>& wave, std::vector<WaveSegment> segments) {
    m_segments.clear();
    m_fullWaveImage = QImage();
    m_areaWaveImages.clear();
    m_wavePairs.clear();
    if (wave == nullptr || wave->isEmpty()) {
        return;
    }
    m_segments = std::move(segments);
    const std::span<const std::int16_t> samples = wave->samples(0);
    const double factor = waveFactor(*wave);
    m_fullWaveImage = wavePicture(samples, 0, std::int64_t(samples.size()), factor, m_segments, graphGrey);
    m_wavePairs = ::wavePairs(samples, factor);
    m_areaWaveImages.reserve(m_segments.size());
    for (const WaveSegment& segment : m_segments) {
        m_areaWaveImages.push_back(
            wavePicture(samples, segment.first, segment.end, factor, {}, segment.color));
    }
}

const QImage& QWPainterWav::areaWaveImage(int index) const {
    static const QImage none;
    return index >= 0 && std::size_t(index) < m_areaWaveImages.size() ? m_areaWaveImages[std::size_t(index)]
                                                                      : none;
}
