#include "wavepicture.h"

#include "module/wavedata.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace {

constexpr int rows = wavePictureHeight / 2; // on either side of the middle
constexpr double opacity = 0.3;             // of one sample's bar

/// The samples as runs, rising and without gaps.
std::vector<WaveRun> runsOf(std::int64_t first, std::int64_t end, const std::vector<WaveSegment>& segments,
                            QRgb color) {
    struct Edge {
        std::int64_t at;
        std::size_t segment;
    };
    std::vector<Edge> edges; // two a segment
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const std::int64_t from = std::max<std::int64_t>(segments[i].first, first);
        const std::int64_t to = std::min<std::int64_t>(segments[i].end, end);
        if (from < to) {
            edges.push_back({from, i});
            edges.push_back({to, i});
        }
    }
    std::sort(edges.begin(), edges.end(), [](const Edge& a, const Edge& b) { return a.at < b.at; });
    std::vector<WaveRun> runs;
    std::set<std::size_t> holders; // of the samples at `at`: the first one in the list counts
    auto edge = edges.cbegin();
    for (std::int64_t at = first; at < end;) {
        for (; edge != edges.cend() && edge->at == at; ++edge) {
            if (!holders.insert(edge->segment).second) {
                holders.erase(edge->segment); // its second edge
            }
        }
        const std::int64_t stop = edge == edges.cend() ? end : edge->at;
        runs.push_back({at, stop, holders.empty() ? color : segments[*holders.begin()].color.rgb()});
        at = stop;
    }
    return runs;
}

/// The same for a range that may lie outside the samples; none for a picture that stays empty.
std::vector<WaveRun> drawnRuns(std::size_t samples, std::int64_t first, std::int64_t end,
                               const std::vector<WaveSegment>& segments, const QColor& color) {
    const auto size = std::int64_t(samples);
    const std::int64_t from = std::clamp<std::int64_t>(first, 0, size);
    const std::int64_t to = std::clamp<std::int64_t>(end, 0, size);
    return to - from < 2 ? std::vector<WaveRun>() : runsOf(from, to, segments, color.rgb());
}

QImage emptyPicture() {
    QImage image(wavePictureWidth, wavePictureHeight, QImage::Format_ARGB32);
    image.fill(wavePictureGround);
    return image;
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

void join(QImage& image, std::span<const std::int16_t> samples, const std::vector<WaveRun>& runs,
          double factor) {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const std::int64_t origin = runs.front().first;
    const double step = double(wavePictureWidth) / double(runs.back().end - origin);
    const auto at = [&](std::int64_t i) {
        return QPointF(double(i - origin) * step, rows - double(samples[std::size_t(i)]) * factor);
    };
    for (const WaveRun& run : runs) {
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

WavePictureDrawing::WavePictureDrawing(std::span<const std::int16_t> samples, std::int64_t first,
                                       std::int64_t end, double factor,
                                       const std::vector<WaveSegment>& segments, const QColor& color)
    : m_samples(samples)
    , m_factor(factor)
    , m_runs(drawnRuns(samples.size(), first, end, segments, color))
    , m_column(m_runs.empty() ? wavePictureWidth : 0)
    , m_image(emptyPicture()) {}

void WavePictureDrawing::drawColumn() {
    const std::int64_t origin = m_runs.front().first;
    const std::int64_t count = m_runs.back().end - origin;
    std::int64_t at = origin + columnStart(m_column, count);
    const std::int64_t end = origin + columnEnd(m_column, count);
    while (m_runs[m_run].first > at) {
        --m_run; // a column of few samples starts where the last one did
    }
    Column column;
    while (at < end) {
        while (m_runs[m_run].end <= at) {
            ++m_run;
        }
        const std::int64_t stop = std::min(end, m_runs[m_run].end);
        column.add(m_samples.subspan(std::size_t(at), std::size_t(stop - at)), m_factor, m_runs[m_run].color);
        at = stop;
    }
    column.store(reinterpret_cast<QRgb*>(m_image.bits()), m_image.bytesPerLine() / 4, m_column);
    ++m_column;
}

QImage wavePicture(std::span<const std::int16_t> samples, std::int64_t first, std::int64_t end, double factor,
                   const std::vector<WaveSegment>& segments, const QColor& color, WaveStyle style) {
    if (style == WaveStyle::Line) {
        QImage image = emptyPicture();
        if (const auto runs = drawnRuns(samples.size(), first, end, segments, color); !runs.empty()) {
            join(image, samples, runs, factor);
        }
        return image;
    }
    WavePictureDrawing drawing(samples, first, end, factor, segments, color);
    while (!drawing.complete()) {
        drawing.drawColumn();
    }
    return drawing.image();
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
