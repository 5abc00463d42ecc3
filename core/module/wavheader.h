#pragma once

#include <QIODevice>

#include <cstdint>

/// The canonical 44-byte WAV header, little-endian.
struct WavHeader {
    static constexpr qint64 bytes = 44;
    /// The most that the size fields can say: whole stereo frames, and 36 more for the RIFF size.
    static constexpr std::uint32_t largestData = 0xFFFFFFD8;

    std::uint16_t format = 1; ///< 1 is integer PCM
    std::uint16_t channels = 2;
    std::uint32_t sampleRate = 48000; ///< Hz
    std::uint32_t bytesPerSecond = 0;
    std::uint16_t blockSize = 4; ///< bytes a frame
    std::uint16_t bitsPerSample = 16;
    std::uint32_t dataBytes = 0;
    bool tagged = false; ///< the four tags stand where they belong and `fmt ` has 16 bytes

    /// A 16-bit stereo file of `samples` values. One that holds more than largestData says largestData: a
    /// reader that believes it finds the first 4 GiB.
    static WavHeader stereo16(double sampleRate, std::uint64_t samples);
    /// The 16-bit values to read from a file of `fileBytes` with this header: the data size / bits * 8, in
    /// integers in this order, and never more than the file holds.
    std::uint64_t samplesIn(qint64 fileBytes) const;
};

/// The bytes of sound in a file that holds `held` of them and whose size field says `said`: never more than
/// it holds. All that it holds where the field couldn't say it: in a take beyond 4 GiB, and in one of 2^28
/// samples or more by an older recorder, whose field has lost the top bits.
std::int64_t bytesOfTake(std::uint32_t said, std::int64_t held);
/// Reads the fields strictly in this order; what the file lacks reads as 0.
WavHeader readWavHeader(QIODevice& file);
/// False if the device didn't take all of it.
bool writeWavHeader(QIODevice& file, const WavHeader& header);
