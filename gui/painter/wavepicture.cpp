#include "wavepicture.h"

#include "module/wavedata.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int rows = wavePictureHeight / 2; // on either side of the middle
constexpr double opacity = 0.3;             // of one sample's bar

/// A stretch of samples of one colour.
struct Run {
    std::int64_t first;
    std::int64_t end;
    QRgb color;
};

/// The samples as runs, rising and without gaps.
std::vector<Run> runsOf(std::int64_t first, std::int64_t end, const std::vector<WaveSegment>& segments,
                        QRgb color) {
    if (first >= end) {
        return {};
    }
    std::vector<std::int64_t> edges{first, end};
    for (const WaveSegment& segment : segments) {
        for (const std::int64_t edge : {segment.first, segment.end}) {
            if (edge > first && edge < end) {
                edges.push_back(edge);
            }
        }
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    std::vector<Run> runs;
    for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
        const auto holder =
            std::find_if(segments.begin(), segments.end(), [sample = edges[i]](const WaveSegment& s) {
                return sample >= s.first && sample < s.end;
            });
        runs.push_back({edges[i], edges[i + 1], holder == segments.end() ? color : holder->color.rgb()});
    }
    return runs;
}

/// What that many bars let through.
double letThrough(std::uint32_t bars) {
    static const std::array<double, 64> table = [] {
        std::array<double, 64> powers{};
        for (std::size_t i = 0; i < powers.size(); ++i) {
            powers[i] = std::pow(1.0 - opacity, double(i));
        }
        return powers;
    }();
    return bars < table.size() ? table[bars] : 0.0; // less than any colour can show
}

/// One column of the picture, from the middle outwards: above and below it is the same.
class Column {
public:
    Column() { m_pixels.fill({43.0, 43.0, 43.0}); }

    /// Lays a bar for each sample over what is there. Bars of one colour let through what the product of
    /// their single shares lets through, in whatever order they lie.
    void add(std::span<const std::int16_t> samples, double factor, QRgb color) {
        std::array<std::uint32_t, rows + 1> reaching{}; // samples by their whole rows
        std::array<double, rows + 1> through;           // of their last row, which is covered in part
        through.fill(1.0);
        for (const std::int16_t sample : samples) {
            const double amp = std::min(std::abs(double(sample) * factor), double(rows));
            const auto whole = std::size_t(amp);
            ++reaching[whole];
            through[whole] *= 1.0 - opacity * (amp - double(whole));
        }
        std::uint32_t covering = 0;
        for (int row = rows - 1; row >= 0; --row) {
            covering += reaching[std::size_t(row) + 1];
            const double left = letThrough(covering) * through[std::size_t(row)];
            if (left == 1.0) {
                continue;
            }
            Pixel& pixel = m_pixels[std::size_t(row)];
            pixel.red = mixed(pixel.red, qRed(color), left);
            pixel.green = mixed(pixel.green, qGreen(color), left);
            pixel.blue = mixed(pixel.blue, qBlue(color), left);
        }
    }
    /// `pixels`: of the picture's first column, `stride` from row to row.
    void store(QRgb* pixels, std::ptrdiff_t stride, int x) const {
        for (int row = 0; row < rows; ++row) {
            const Pixel& pixel = m_pixels[std::size_t(row)];
            const QRgb rgb = qRgb(qRound(pixel.red), qRound(pixel.green), qRound(pixel.blue));
            pixels[(rows - 1 - row) * stride + x] = rgb;
            pixels[(rows + row) * stride + x] = rgb;
        }
    }

private:
    struct Pixel {
        double red;
        double green;
        double blue;
    };
    static double mixed(double under, int over, double left) { return over + (under - over) * left; }

    std::array<Pixel, rows> m_pixels;
};

/// Sample where a column starts, counted from the first one of the picture.
std::int64_t columnStart(std::int64_t column, std::int64_t samples) {
    return column * samples / wavePictureWidth;
}

/// And behind its last one; a wave of fewer samples than columns has some in several.
std::int64_t columnEnd(std::int64_t column, std::int64_t samples) {
    return std::max(columnStart(column + 1, samples), columnStart(column, samples) + 1);
}

void fill(QImage& image, std::span<const std::int16_t> samples, const std::vector<Run>& runs, double factor) {
    const std::int64_t origin = runs.front().first;
    const std::int64_t count = runs.back().end - origin;
    auto* pixels = reinterpret_cast<QRgb*>(image.bits());
    const std::ptrdiff_t stride = image.bytesPerLine() / 4;
    auto run = runs.begin();
    for (int x = 0; x < wavePictureWidth; ++x) {
        const std::int64_t end = origin + columnEnd(x, count);
        Column column;
        for (std::int64_t at = origin + columnStart(x, count); at < end;) {
            run = std::find_if(run->first <= at ? run : runs.begin(), runs.end(),
                               [at](const Run& r) { return at < r.end; });
            const std::int64_t stop = std::min(end, run->end);
            column.add(samples.subspan(std::size_t(at), std::size_t(stop - at)), factor, run->color);
            at = stop;
        }
        column.store(pixels, stride, x);
    }
}

void join(QImage& image, std::span<const std::int16_t> samples, const std::vector<Run>& runs, double factor) {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const std::int64_t origin = runs.front().first;
    const double step = double(wavePictureWidth) / double(runs.back().end - origin);
    const auto at = [&](std::int64_t i) {
        return QPointF(double(i - origin) * step, rows - double(samples[std::size_t(i)]) * factor);
    };
    for (const Run& run : runs) {
        painter.setPen(QColor(run.color));
        for (std::int64_t i = std::max(run.first, origin + 1); i < run.end; ++i) {
            painter.drawLine(at(i - 1), at(i));
        }
    }
}

} // namespace

double waveFactor(const WaveData& wave) {
    const double range = double(wave.maximum()) - double(wave.minimum());
    return range > 0.0 ? wavePictureHeight / range : 1.0;
}

QImage wavePicture(std::span<const std::int16_t> samples, std::int64_t first, std::int64_t end, double factor,
                   const std::vector<WaveSegment>& segments, const QColor& color, WaveStyle style) {
    QImage image(wavePictureWidth, wavePictureHeight, QImage::Format_ARGB32);
    image.fill(wavePictureGround);
    const auto size = std::int64_t(samples.size());
    const auto runs = runsOf(std::clamp<std::int64_t>(first, 0, size), std::clamp<std::int64_t>(end, 0, size),
                             segments, color.rgb());
    if (runs.empty() || runs.back().end - runs.front().first < 2) {
        return image;
    }
    (style == WaveStyle::Filled ? fill : join)(image, samples, runs, factor);
    return image;
}

std::vector<WavePair> wavePairs(std::span<const std::int16_t> samples, double factor) {
    std::vector<WavePair> pairs;
    const auto count = std::int64_t(samples.size());
    if (count < 2) {
        return pairs;
    }
    pairs.reserve(wavePictureWidth);
    for (int x = 0; x < wavePictureWidth; ++x) {
        // Only what hardly moves far from zero would reach further.
        const double amp = std::min(std::abs(double(samples[std::size_t(columnEnd(x, count) - 1)]) * factor),
                                    double(wavePictureHeight));
        pairs.emplace_back(-amp, amp);
    }
    return pairs;
}
