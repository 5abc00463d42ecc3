#include "qwpainterwav.h"

#include "graphstyle.h"

#include "module/wavedata.h"

#include <QElapsedTimer>

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 turnNs = 1000000; // of drawing between two events: less than a picture of the display takes

} // namespace

QWPainterWav::QWPainterWav(ModelGraph::EnumGraph deck, QObject* parent) : QObject(parent), m_deck(deck) {
    m_turns.setInterval(0);
    connect(&m_turns, &QTimer::timeout, this, &QWPainterWav::turn);
}

void QWPainterWav::build(const std::shared_ptr<const WaveData>& wave, std::vector<WaveSegment> segments) {
    m_drawing.reset();
    if (wave == nullptr || wave->isEmpty()) {
        clear();
        return;
    }
    if (wave == m_wave) {
        m_fullDue = m_fullDue || segments != m_segments;
        takeSegments(std::move(segments));
        m_turns.start();
        return;
    }
    clear();
    m_wave = wave;
    m_wavePairs = ::wavePairs(wave->samples(0), waveFactor(*wave));
    m_fullDue = true;
    takeSegments(std::move(segments));
    finish();
}

void QWPainterWav::clear() {
    m_turns.stop();
    m_wave.reset();
    m_segments.clear();
    m_wavePairs.clear();
    m_fullWaveImage = QImage();
    m_fullDue = false;
    m_areas.clear();
    m_late.clear();
    m_wanted = -1;
}

// A picture goes along with its area. That of an area that was edited stands for it until the new one is
// there.
void QWPainterWav::takeSegments(std::vector<WaveSegment> segments) {
    std::vector<AreaPicture> areas(segments.size());
    for (AreaPicture& old : m_areas) {
        if (old.image.isNull()) {
            continue;
        }
        const auto same = std::find(segments.cbegin(), segments.cend(), old.drawn);
        if (same != segments.cend()) {
            areas[std::size_t(same - segments.cbegin())] = std::exchange(old, {});
        }
    }
    if (areas.size() == m_areas.size()) {
        for (std::size_t place = 0; place < areas.size(); ++place) {
            if (areas[place].image.isNull()) {
                areas[place] = std::move(m_areas[place]);
            }
        }
    }
    m_segments = std::move(segments);
    m_areas = std::move(areas);
    m_late.clear();
    for (std::size_t place = maxAreaImages; place < m_areas.size(); ++place) {
        if (!m_areas[place].image.isNull()) {
            keepLate(place);
        }
    }
}

void QWPainterWav::keepLate(std::size_t place) {
    std::erase(m_late, place);
    m_late.push_back(place);
    if (m_late.size() > maxAreaImages) {
        m_areas[m_late.front()] = {};
        m_late.erase(m_late.begin());
    }
}

void QWPainterWav::want(int index) {
    m_wanted = index;
    if (isArea(index) && isDue(std::size_t(index)) && !m_turns.isActive()) {
        m_turns.start();
    }
}

bool QWPainterWav::isDue(std::size_t place) const {
    return m_areas[place].image.isNull() || m_areas[place].drawn != m_segments[place];
}

const QImage& QWPainterWav::areaWaveImage(int index) const {
    static const QImage none;
    return isArea(index) ? m_areas[std::size_t(index)].image : none;
}

bool QWPainterWav::nextDrawing() {
    if (m_drawing) {
        return true;
    }
    if (isArea(m_wanted) && isDue(std::size_t(m_wanted))) {
        beginArea(std::size_t(m_wanted));
        return true;
    }
    if (m_fullDue) {
        beginFull();
        return true;
    }
    for (std::size_t place = 0; place < std::min(m_areas.size(), maxAreaImages); ++place) {
        if (isDue(place)) {
            beginArea(place);
            return true;
        }
    }
    return false;
}

void QWPainterWav::beginFull() {
    const std::span<const std::int16_t> samples = m_wave->samples(0);
    m_drawing.emplace(samples, 0, std::int64_t(samples.size()), waveFactor(*m_wave), m_segments, graphGrey);
    m_drawingArea.reset();
}

void QWPainterWav::beginArea(std::size_t place) {
    const WaveSegment& segment = m_segments[place];
    m_drawing.emplace(m_wave->samples(0), segment.first, segment.end, waveFactor(*m_wave),
                      std::vector<WaveSegment>(), segment.color);
    m_drawingArea = place;
}

void QWPainterWav::store() {
    const QImage image = m_drawing->image();
    m_drawing.reset();
    if (!m_drawingArea) {
        m_fullWaveImage = image;
        m_fullDue = false;
        return;
    }
    const std::size_t place = *m_drawingArea;
    m_areas[place] = {m_segments[place], image};
    if (place >= maxAreaImages) {
        keepLate(place);
    }
}

void QWPainterWav::turn() {
    QElapsedTimer since;
    since.start();
    while (nextDrawing()) {
        while (!m_drawing->complete()) {
            m_drawing->drawColumn();
            if (since.nsecsElapsed() > turnNs) {
                return;
            }
        }
        store();
    }
    m_turns.stop();
}

void QWPainterWav::finish() {
    while (nextDrawing()) {
        while (!m_drawing->complete()) {
            m_drawing->drawColumn();
        }
        store();
    }
    m_turns.stop();
}
