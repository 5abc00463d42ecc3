#include "qwpainterwav.h"

#include "graphstyle.h"

#include "module/wavedata.h"

#include <algorithm>

void QWPainterWav::build(const std::shared_ptr<const WaveData>& wave, std::vector<WaveSegment> segments) {
    m_segments.clear();
    m_fullWaveImage = QImage();
    m_areaWaveImages.clear();
    m_wavePairs.clear();
    m_lateImage = QImage();
    m_wave.reset();
    if (wave == nullptr || wave->isEmpty()) {
        return;
    }
    m_segments = std::move(segments);
    const std::span<const std::int16_t> samples = wave->samples(0);
    const double factor = waveFactor(*wave);
    m_fullWaveImage = wavePicture(samples, 0, std::int64_t(samples.size()), factor, m_segments, graphGrey);
    m_wavePairs = ::wavePairs(samples, factor);
    m_wave = wave;
    const std::size_t kept = std::min(m_segments.size(), maxAreaImages);
    m_areaWaveImages.reserve(kept);
    for (std::size_t i = 0; i < kept; ++i) {
        m_areaWaveImages.push_back(areaPicture(i));
    }
}

QImage QWPainterWav::areaPicture(std::size_t index) const {
    const WaveSegment& segment = m_segments[index];
    return wavePicture(m_wave->samples(0), segment.first, segment.end, waveFactor(*m_wave), {},
                       segment.color);
}

const QImage& QWPainterWav::areaWaveImage(int index) {
    static const QImage none;
    if (index < 0 || std::size_t(index) >= m_segments.size()) {
        return none;
    }
    const auto place = std::size_t(index);
    if (place < m_areaWaveImages.size()) {
        return m_areaWaveImages[place];
    }
    if (m_lateImage.isNull() || m_lateIndex != place) {
        m_lateImage = areaPicture(place);
        m_lateIndex = place;
    }
    return m_lateImage;
}
