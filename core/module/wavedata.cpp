#include "wavedata.h"

#include "wavheader.h"

#include <QFile>

#include <algorithm>
#include <cstring>
#include <new>

WaveData::WaveData(std::uint32_t sampleRate, std::uint32_t channels, std::size_t frames)
    : m_sampleRate(sampleRate), m_channels(channels), m_lists(frames == 0 ? 0 : channels) {
    for (List& list : m_lists) {
        // Left unset: the reader writes every value once, and clearing first would touch the memory twice.
        list.values = std::make_unique_for_overwrite<std::int16_t[]>(frames);
        list.size = frames;
    }
}

std::span<const std::int16_t> WaveData::samples(std::size_t channel) const {
    return channel < m_lists.size() ? std::span(m_lists[channel].values.get(), m_lists[channel].size)
                                    : std::span<std::int16_t>();
}

std::span<std::int16_t> WaveData::samples(std::size_t channel) {
    return channel < m_lists.size() ? std::span(m_lists[channel].values.get(), m_lists[channel].size)
                                    : std::span<std::int16_t>();
}

void WaveData::shorten(std::size_t channel, std::size_t size) {
    if (channel < m_lists.size()) {
        m_lists[channel].size = std::min(m_lists[channel].size, size);
    }
}

void WaveData::setPeaks(std::int16_t minimum, std::int16_t maximum) {
    m_minimum = minimum;
    m_maximum = maximum;
}

namespace {

constexpr qint64 chunkBytes = 1 << 18; // stays in the cache between the read and its use

std::int16_t sampleAt(const char* bytes) {
    const auto low = static_cast<unsigned char>(bytes[0]);
    const auto high = static_cast<unsigned char>(bytes[1]);
    return static_cast<std::int16_t>(low | high << 8);
}

struct Peaks {
    std::int16_t minimum;
    std::int16_t maximum;

    void take(std::span<const std::int16_t> values) {
        for (const std::int16_t value : values) {
            minimum = std::min(minimum, value);
            maximum = std::max(maximum, value);
        }
    }
};

// A wave of `frames` values a channel; an empty one where the memory doesn't hold it.
std::unique_ptr<WaveData> madeWave(const WavHeader& header, std::size_t frames) {
    try {
        return std::make_unique<WaveData>(header.sampleRate, header.channels, frames);
    } catch (const std::bad_alloc&) {
        return std::make_unique<WaveData>(header.sampleRate, header.channels, 0);
    }
}

// Splits `frames` interleaved frames at `bytes` into the channel lists from `first` on.
void split(const char* bytes, std::size_t frames, WaveData& wave, std::size_t first, std::size_t channels) {
    if (channels == 2) {
        std::int16_t* left = wave.samples(0).data() + first;
        std::int16_t* right = wave.samples(1).data() + first;
        for (std::size_t i = 0; i < frames; ++i) {
            left[i] = sampleAt(bytes + 4 * i);
            right[i] = sampleAt(bytes + 4 * i + 2);
        }
        return;
    }
    for (std::size_t channel = 0; channel < channels; ++channel) {
        std::int16_t* out = wave.samples(channel).data() + first;
        for (std::size_t i = 0; i < frames; ++i) {
            out[i] = sampleAt(bytes + 2 * (i * channels + channel));
        }
    }
}

} // namespace

std::unique_ptr<WaveData> readWave(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return std::make_unique<WaveData>();
    }
    const WavHeader header = readWavHeader(file);
    const std::uint64_t total = header.samplesIn(file.size());
    const std::size_t channels = header.channels;
    if (channels == 0 || total == 0) {
        return std::make_unique<WaveData>(header.sampleRate, header.channels, 0);
    }
    // A count that the channels don't divide leaves the later ones a value shorter.
    const std::size_t longest = static_cast<std::size_t>((total + channels - 1) / channels);
    auto wave = madeWave(header, longest);
    if (wave->isEmpty()) {
        return wave;
    }
    const std::size_t frameBytes = channels * 2;
    const std::size_t chunkFrames =
        std::max<std::size_t>(1, static_cast<std::size_t>(chunkBytes) / frameBytes);
    const auto buffer = std::make_unique_for_overwrite<char[]>(chunkFrames * frameBytes);
    Peaks peaks{INT16_MAX, INT16_MIN};
    std::uint64_t taken = 0; // samples
    while (taken < total) {
        const std::uint64_t wanted = std::min<std::uint64_t>(chunkFrames * frameBytes, (total - taken) * 2);
        const qint64 got = file.read(buffer.get(), static_cast<qint64>(wanted));
        if (got < 2) {
            break;
        }
        const std::size_t samples = static_cast<std::size_t>(got) / 2;
        const std::size_t first = static_cast<std::size_t>(taken / channels);
        const std::size_t frames = samples / channels;
        split(buffer.get(), frames, *wave, first, channels);
        for (std::size_t rest = frames * channels; rest < samples; ++rest) {
            wave->samples(rest % channels)[first + frames] = sampleAt(buffer.get() + 2 * rest);
        }
        taken += samples;
        const std::size_t reached = static_cast<std::size_t>((taken + channels - 1) / channels);
        peaks.take(wave->samples(0).subspan(first, reached - first));
        if (samples * 2 != wanted) {
            break;
        }
    }
    for (std::size_t channel = 0; channel < channels; ++channel) {
        wave->shorten(channel, static_cast<std::size_t>((taken + channels - 1 - channel) / channels));
    }
    if (taken > 0) {
        wave->setPeaks(peaks.minimum, peaks.maximum);
    }
    return wave;
}
