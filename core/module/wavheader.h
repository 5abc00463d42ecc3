#pragma once

#include <QIODevice>

#include <cstdint>

/// The canonical 44-byte WAV header, little-endian.
struct WavHeader {
    static constexpr qint64 bytes = 44;

    std::uint16_t format = 1; ///< 1 is integer PCM
    std::uint16_t channels = 2;
    std::uint32_t sampleRate = 48000; ///< Hz
    std::uint32_t bytesPerSecond = 0;
    std::uint16_t blockSize = 4; ///< bytes a frame
    std::uint16_t bitsPerSample = 16;
    std::uint32_t dataBytes = 0;
    bool tagged = false; ///< the four tags stand where they belong and `fmt ` has 16 bytes

    /// A 16-bit stereo file of `samples` values. The size field is computed on 32 bits as the samples times
    /// 16, then divided by 8: from 2^28 samples on its top bits are lost.
    static WavHeader stereo16(double sampleRate, std::uint64_t samples);
};

/// Reads the fields strictly in this order; what the file lacks reads as 0.
WavHeader readWavHeader(QIODevice& file);
/// False if the device didn't take all of it.
bool writeWavHeader(QIODevice& file, const WavHeader& header);
