#pragma once

#include <QString>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

/// 16-bit sound in memory, one list a channel. Built on one thread, then only read: any thread may hold it.
class WaveData {
public:
    WaveData() = default;
    /// `frames` values in each of `channels` lists, not set yet.
    WaveData(std::uint32_t sampleRate, std::uint32_t channels, std::size_t frames);

    std::uint32_t sampleRate() const { return m_sampleRate; } ///< Hz, from the header
    std::uint32_t channels() const { return m_channels; }     ///< from the header
    std::size_t length() const { return m_lists.empty() ? 0 : m_lists.front().size; }
    bool isEmpty() const { return length() == 0; }
    std::int16_t minimum() const { return m_minimum; } ///< smallest value of channel 0
    std::int16_t maximum() const { return m_maximum; } ///< largest value of channel 0

    /// The samples of one channel; empty for a channel that isn't there.
    std::span<const std::int16_t> samples(std::size_t channel) const;
    std::span<std::int16_t> samples(std::size_t channel);

    /// Takes `size` values of a list as its length; never more than it was made with.
    void shorten(std::size_t channel, std::size_t size);
    void setPeaks(std::int16_t minimum, std::int16_t maximum);

private:
    struct List {
        std::unique_ptr<std::int16_t[]> values;
        std::size_t size = 0;
    };
    std::uint32_t m_sampleRate = 0;
    std::uint32_t m_channels = 0;
    std::vector<List> m_lists;
    std::int16_t m_minimum = 0;
    std::int16_t m_maximum = 0;
};

/// Reads a canonical 44-byte-header WAV of signed 16-bit values; no tag is tested. The count of samples is
/// the header's data size / bits * 8, in integers in this order, and never more than the file holds. A file
/// that can't be opened, has no channel or 0 bits a sample, or that the memory doesn't hold, gives an empty
/// wave.
std::unique_ptr<WaveData> readWave(const QString& fileName);
