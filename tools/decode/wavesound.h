#pragma once

#include <QFile>

#include <optional>

/// Where the frames of a 16-bit stereo PCM file lie.
struct WaveSound {
    unsigned sampleRate = 0; ///< Hz
    qint64 offset = 0;       ///< bytes
    qint64 bytes = 0;
};

/// Walks the chunks of a RIFF file: other editors put more than "fmt " and "data" there. Nothing for a file
/// that isn't 16-bit stereo PCM. A size beyond the file's end counts as up to that end; so does one that the
/// header of a take couldn't say (bytesOfTake).
std::optional<WaveSound> findStereo16(QFile& file);
