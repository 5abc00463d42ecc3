// The picture of a wave against one that lays bar on bar, sample by sample.
#include "painter/wavepicture.h"

#include "module/wavedata.h"
#include "support/testmain.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <random>

namespace {

const QColor grey(175, 176, 177);
const QColor red(208, 0, 24);
const QColor teal(1, 194, 193);
constexpr int middle = wavePictureHeight / 2;

std::vector<std::int16_t> noise(std::size_t count, int peak, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> value(-peak, peak);
    std::vector<std::int16_t> samples(count);
    for (auto& sample : samples) {
        sample = std::int16_t(value(random));
    }
    return samples;
}

// One pixel's red, green and blue after bar upon bar.
std::array<double, 3> slowPixel(std::span<const std::int16_t> samples, std::int64_t first, std::int64_t end,
                                double factor, const std::vector<WaveSegment>& segments, const QColor& color,
                                int x, int y) {
    const std::int64_t count = end - first;
    const std::int64_t from = first + x * count / wavePictureWidth;
    const std::int64_t to = first + (x + 1) * count / wavePictureWidth;
    std::array<double, 3> pixel{43.0, 43.0, 43.0};
    for (std::int64_t i = from; i < to; ++i) {
        const auto holder = std::find_if(segments.begin(), segments.end(),
                                         [i](const WaveSegment& s) { return i >= s.first && i < s.end; });
        const QColor bar = holder == segments.end() ? color : holder->color;
        const double amp = std::abs(samples[std::size_t(i)] * factor);
        const double inner = y < middle ? middle - 1 - y : y - middle; // from the middle outwards
        const double alpha = 0.3 * std::clamp(amp - inner, 0.0, 1.0);
        const std::array<int, 3> over{bar.red(), bar.green(), bar.blue()};
        for (std::size_t c = 0; c < 3; ++c) {
            pixel[c] += (over[c] - pixel[c]) * alpha;
        }
    }
    return pixel;
}

bool near(QRgb shown, const std::array<double, 3>& wanted) {
    return std::abs(qRed(shown) - wanted[0]) <= 1.0 && std::abs(qGreen(shown) - wanted[1]) <= 1.0 &&
           std::abs(qBlue(shown) - wanted[2]) <= 1.0 && qAlpha(shown) == 255;
}

int ink(const QImage& image, int x) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        count += image.pixel(x, y) != wavePictureGround.rgb() ? 1 : 0;
    }
    return count;
}

} // namespace

class TestWavePicture : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theWholeRangeOfTheWaveTakesTheHeight() {
        WaveData wave(48000, 1, 4);
        wave.setPeaks(-300, 100);
        QCOMPARE(waveFactor(wave), 0.25);
    }
    void aConstantWaveHasAFactorOfOne() {
        WaveData wave(48000, 1, 4);
        wave.setPeaks(0, 0);
        QCOMPARE(waveFactor(wave), 1.0);
        wave.setPeaks(700, 700);
        QCOMPARE(waveFactor(wave), 1.0);
    }
    void everySampleIsABarOfThirtyPercent_data() {
        QTest::addColumn<int>("samples");
        QTest::newRow("one a column") << wavePictureWidth;
        QTest::newRow("some a column") << 10000;
        QTest::newRow("many a column") << 400000;
    }
    void everySampleIsABarOfThirtyPercent() {
        QFETCH(int, samples);
        const auto wave = noise(std::size_t(samples), 1000);
        const double factor = 100.0 / 2000.0;
        const std::vector<WaveSegment> segments{{samples / 10, samples / 3, red},
                                                {samples / 3, samples / 2, teal}};
        const QImage image = wavePicture(wave, 0, samples, factor, segments, grey);
        QCOMPARE(image.size(), QSize(2700, 100));
        QCOMPARE(image.format(), QImage::Format_ARGB32);
        for (const int x : {0, 1, 269, 270, 271, 700, 899, 900, 901, 1349, 1350, 1351, 2000, 2699}) {
            for (int y = 0; y < wavePictureHeight; y += 3) {
                QVERIFY2(near(image.pixel(x, y), slowPixel(wave, 0, samples, factor, segments, grey, x, y)),
                         qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
            }
        }
    }
    void ofOverlappingSegmentsTheFirstOneCounts() {
        const auto wave = noise(27000, 1000);
        const std::vector<WaveSegment> segments{{5000, 9000, red},
                                                {8000, 12000, teal},
                                                {11000, 10000, red},
                                                {26000, 99999, red},
                                                {-50, 400, teal}};
        const QImage image = wavePicture(wave, 0, 27000, 0.05, segments, grey);
        for (const int x : {0, 39, 41, 499, 501, 850, 899, 901, 1050, 1199, 1201, 2599, 2601, 2699}) {
            for (int y = 0; y < wavePictureHeight; y += 7) {
                QVERIFY(near(image.pixel(x, y), slowPixel(wave, 0, 27000, 0.05, segments, grey, x, y)));
            }
        }
    }
    void aPartOfTheWaveTakesTheWholePicture() {
        const auto wave = noise(50000, 1000, 7);
        const QImage image = wavePicture(wave, 12345, 23456, 0.05, {}, red);
        for (const int x : {0, 1, 1000, 1350, 2698, 2699}) {
            for (int y = 0; y < wavePictureHeight; y += 7) {
                QVERIFY(near(image.pixel(x, y), slowPixel(wave, 12345, 23456, 0.05, {}, red, x, y)));
            }
        }
    }
    void aWaveOfFewSamplesHasBroadBars() {
        const std::vector<std::int16_t> wave{100, 0, -100};
        const QImage image = wavePicture(wave, 0, 3, 0.5, {}, grey);
        for (const int x : {0, 450, 899, 1800, 2250, 2699}) {
            QCOMPARE(ink(image, x), 100);
        }
        for (const int x : {900, 1350, 1799}) {
            QCOMPARE(ink(image, x), 0);
        }
    }
    void lessThanTwoSamplesAreAnEmptyPicture() {
        const std::vector<std::int16_t> wave{1000};
        QImage empty(2700, 100, QImage::Format_ARGB32);
        empty.fill(QColor(43, 43, 43));
        QCOMPARE(wavePicture(wave, 0, 1, 1.0, {}, grey), empty);
        QCOMPARE(wavePicture({}, 0, 0, 1.0, {}, grey), empty);
        const auto longer = noise(5000, 1000);
        QCOMPARE(wavePicture(longer, 400, 401, 1.0, {}, grey), empty);
        QCOMPARE(wavePicture(longer, 400, 300, 1.0, {}, grey), empty);   // backwards
        QCOMPARE(wavePicture(longer, 9000, 9999, 1.0, {}, grey), empty); // beyond the wave
        QVERIFY(wavePairs(wave, 1.0).empty());
        QVERIFY(wavePairs({}, 1.0).empty());
    }
    void endsOutsideTheWaveAreHeldWithinIt() {
        const auto wave = noise(5000, 1000);
        QCOMPARE(wavePicture(wave, -100, 9999, 0.05, {}, grey), wavePicture(wave, 0, 5000, 0.05, {}, grey));
    }
    void aValueBeyondTheHeightFillsTheColumn() {
        const std::vector<std::int16_t> wave(2700, std::numeric_limits<std::int16_t>::min());
        const QImage image = wavePicture(wave, 0, 2700, 1.0, {}, grey);
        QCOMPARE(ink(image, 1350), 100);
    }
    void aLineIsOpaqueAndLeadsFromSampleToSample() {
        const std::vector<std::int16_t> wave{0, 40, 40, -40};
        const QImage image = wavePicture(wave, 0, 4, 1.0, {}, grey, WaveStyle::Line);
        QVERIFY(qRed(image.pixel(1000, 9)) + qRed(image.pixel(1000, 10)) > 175 + 43 - 10); // at y 10
        QCOMPARE(ink(image, 1000), 2);
        QVERIFY(ink(image, 2000) >= 1); // leads down
    }
    void theInvertedWaveHasTheSamePicture() {
        auto wave = noise(9000, 1000, 3);
        const QImage image = wavePicture(wave, 0, 9000, 0.05, {}, grey);
        for (auto& sample : wave) {
            sample = std::int16_t(-sample);
        }
        QCOMPARE(wavePicture(wave, 0, 9000, 0.05, {}, grey), image);
    }

    void eachColumnsPairIsThatOfItsLastSample() {
        const auto wave = noise(27000, 1000);
        const auto pairs = wavePairs(wave, 0.05);
        QCOMPARE(pairs.size(), std::size_t{2700});
        for (const std::size_t x : {std::size_t{0}, std::size_t{1}, std::size_t{1234}, std::size_t{2699}}) {
            const double amp = std::abs(wave[x * 10 + 9] * 0.05);
            QCOMPARE(pairs[x], WavePair(-amp, amp));
        }
    }
    void aConstantWaveHasPairsOfTheHeightAtMost() {
        const std::vector<std::int16_t> wave(5000, 20000);
        QCOMPARE(wavePairs(wave, 1.0)[1000], WavePair(-100.0, 100.0));
    }
    void aShortWaveHasAPairForEachColumnToo() {
        const std::vector<std::int16_t> wave{10, 20, -30};
        const auto pairs = wavePairs(wave, 1.0);
        QCOMPARE(pairs.size(), std::size_t{2700});
        QCOMPARE(pairs[0], WavePair(-10.0, 10.0));
        QCOMPARE(pairs[1350], WavePair(-20.0, 20.0));
        QCOMPARE(pairs[2699], WavePair(-30.0, 30.0));
    }
};

GRAMO_TEST_GUILESS_MAIN(TestWavePicture)
#include "tst_wavepicture.moc"
