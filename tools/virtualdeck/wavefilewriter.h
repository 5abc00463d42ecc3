#pragma once
// Writes frames to a WAV file as they come.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

/// A 16-bit stereo WAV file with the canonical 44-byte header. The sizes in the header are right once close()
/// has returned true. After a failure every further call fails and error() tells why.
class WaveFileWriter {
public:
    /// Makes or replaces the file. `path` is in the file system's encoding.
    bool open(const std::string& path, std::uint32_t sampleRate);
    /// Appends `count` interleaved frames.
    bool write(const std::int16_t* interleaved, std::size_t count);
    /// Completes the header. Without it, or after a failure, the header speaks of 0 frames.
    bool close();
    const std::string& error() const { return m_error; }

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    bool writeHeader(std::uint32_t dataSize);
    bool fail(const std::string& what);

    std::unique_ptr<std::FILE, Closer> m_file;
    std::uint32_t m_sampleRate = 0;
    std::uint64_t m_dataSize = 0;
    std::string m_error;
};
