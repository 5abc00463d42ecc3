#pragma once

#include "wavepicture.h"

#include "model/modelgraph.h"

#include <QObject>

#include <memory>

/// The pictures of a deck's sample that stand behind its curves: one of the whole turn, one of each area.
/// They are drawn when the sample or the areas change, on the GUI thread; the paint draws those of late
/// areas.
class QWPainterWav : public QObject {
    Q_OBJECT
public:
    explicit QWPainterWav(ModelGraph::EnumGraph deck, QObject* parent = nullptr)
        : QObject(parent), m_deck(deck) {}

    /// Draws the pictures anew. `segments` are the areas laid over the wave, in their order. Null, or a wave
    /// without a sample, gives none.
    void build(const std::shared_ptr<const WaveData>& wave, std::vector<WaveSegment> segments);

    ModelGraph::EnumGraph deck() const { return m_deck; }
    /// Whether the deck has a wave.
    bool hasWave() const { return !m_fullWaveImage.isNull(); }
    const std::vector<WaveSegment>& segments() const { return m_segments; }
    /// Null without a wave.
    const QImage& fullWaveImage() const { return m_fullWaveImage; }
    /// That of the area at this place in the list; a null image for any other place. The pictures of the
    /// first `maxAreaImages` are kept, of the others only the one that was asked for last: a file may name
    /// thousands of areas. Good until the next call.
    const QImage& areaWaveImage(int index);
    std::span<const WavePair> wavePairs() const { return m_wavePairs; }

private:
    static constexpr std::size_t maxAreaImages = 64;
    QImage areaPicture(std::size_t index) const;

    ModelGraph::EnumGraph m_deck;
    std::vector<WaveSegment> m_segments;
    QImage m_fullWaveImage;
    std::vector<QImage> m_areaWaveImages;
    QImage m_lateImage; ///< of an area beyond the kept ones
    std::size_t m_lateIndex = 0;
    std::shared_ptr<const WaveData> m_wave;
    std::vector<WavePair> m_wavePairs;
};
