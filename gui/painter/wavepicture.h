#pragma once
// The picture of a wave: every sample is a bar about the middle, of little opacity, so that what is often
// there gets dense.

#include "phrasing/wavesegments.h"

#include <QColor>
#include <QImage>

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

class WaveData;

/// Lowest and highest value of a column of a wave's picture, pixels from its middle.
using WavePair = std::pair<double, double>;

/// Of each picture, pixels. A column stands for one part of the drawn samples in `wavePictureWidth`.
inline constexpr int wavePictureWidth = 2700;
inline constexpr int wavePictureHeight = 100;
inline const QColor wavePictureGround(43, 43, 43);

enum class WaveStyle {
    Filled, ///< a bar for each sample
    Line    ///< from sample to sample
};

/// A stretch of samples of one colour.
struct WaveRun {
    std::int64_t first;
    std::int64_t end; ///< behind the last one
    QRgb color;
};

/// Pixels a unit of the wave: its whole range takes the height of the picture. 1 for a wave that is constant.
double waveFactor(const WaveData& wave);

/// A picture of the samples from `first` up to and not including `end`, held within the samples. A sample
/// takes the colour of the first segment that it lies in, else `color`. Fewer than two samples give an empty
/// picture. The time grows with the number of samples; the rest is the same for every wave.
QImage wavePicture(std::span<const std::int16_t> samples, std::int64_t first, std::int64_t end, double factor,
                   const std::vector<WaveSegment>& segments, const QColor& color,
                   WaveStyle style = WaveStyle::Filled);

/// The filled picture on its way: what wavePicture() draws in one go, column by column, for whoever has other
/// things to do in between. The samples have to outlive it.
class WavePictureDrawing {
public:
    /// As for wavePicture().
    WavePictureDrawing(std::span<const std::int16_t> samples, std::int64_t first, std::int64_t end,
                       double factor, const std::vector<WaveSegment>& segments, const QColor& color);
    /// Whether all columns are there.
    bool complete() const { return m_column == wavePictureWidth; }
    /// Draws one more. The time grows with its samples, one in `wavePictureWidth` of all.
    void drawColumn();
    /// The picture; the columns to come are of the ground's colour.
    const QImage& image() const { return m_image; }

private:
    std::span<const std::int16_t> m_samples;
    double m_factor;
    std::vector<WaveRun> m_runs;
    std::size_t m_run = 0; ///< that of the next sample, or one behind it
    int m_column = 0;      ///< the next one
    QImage m_image;
};

/// For each column of a picture of all samples its last sample's value, below and above the middle; none for
/// fewer than two samples.
std::vector<WavePair> wavePairs(std::span<const std::int16_t> samples, double factor);
