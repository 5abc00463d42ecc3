#pragma once

#include "wavepicture.h"

#include "model/modelgraph.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

/// The pictures of a deck's sample that stand behind its curves: one of the whole turn, one of each area.
/// Those of a new sample are drawn at once, what an edit of the areas changes in small shares between the
/// events that follow, and none in a paint. Until a picture is drawn anew the last one stands. GUI thread;
/// read by what draws the graphs, too, for which that one waits.
class QWPainterWav : public QObject {
    Q_OBJECT
public:
    /// The pictures of that many areas are kept. Those of the others are drawn when they are wanted, and as
    /// many of them are kept: a file may name thousands of areas.
    static constexpr std::size_t maxAreaImages = 64;

    explicit QWPainterWav(ModelGraph::EnumGraph deck, QObject* parent = nullptr);

    /// Takes the sample and the areas laid over it, in their order. Null, or a wave without a sample, leaves
    /// no picture.
    void build(const std::shared_ptr<const WaveData>& wave, std::vector<WaveSegment> segments);
    /// The area at this place in the list is about to be shown: its picture comes before the others. Any
    /// other place wants none.
    void want(int index);
    /// Draws all that is left now.
    void finish();

    ModelGraph::EnumGraph deck() const { return m_deck; }
    /// Whether the deck has a wave.
    bool hasWave() const { return m_wave != nullptr; }
    const std::vector<WaveSegment>& segments() const { return m_segments; }
    /// Null without a wave.
    const QImage& fullWaveImage() const { return m_fullWaveImage; }
    /// That of the area at this place in the list; null while it isn't drawn and for any other place.
    const QImage& areaWaveImage(int index) const;
    std::span<const WavePair> wavePairs() const { return m_wavePairs; }

private:
    struct AreaPicture {
        WaveSegment drawn{}; ///< what the picture shows
        QImage image;
    };
    void clear();
    void takeSegments(std::vector<WaveSegment> segments);
    bool isArea(int index) const { return index >= 0 && std::size_t(index) < m_segments.size(); }
    bool isDue(std::size_t place) const;
    void keepLate(std::size_t place);
    /// Whether there is a picture to draw; m_drawing is it.
    bool nextDrawing();
    void beginFull();
    void beginArea(std::size_t place);
    void store();
    void turn();

    ModelGraph::EnumGraph m_deck;
    std::shared_ptr<const WaveData> m_wave;
    std::vector<WaveSegment> m_segments;
    std::vector<WavePair> m_wavePairs;
    QImage m_fullWaveImage;
    bool m_fullDue = false;
    std::vector<AreaPicture> m_areas; ///< one for each segment
    std::vector<std::size_t> m_late;  ///< places from maxAreaImages on with a picture, the oldest first
    int m_wanted = -1;

    QTimer m_turns; ///< runs while there is something to draw
    std::optional<WavePictureDrawing> m_drawing;
    std::optional<std::size_t> m_drawingArea; ///< none: it is the full picture
};
