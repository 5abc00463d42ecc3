#include "wavefilewriter.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <vector>

namespace {

constexpr std::uint64_t headerSize = 44;
constexpr std::uint64_t largestData = 0xFFFFFFFFU - 36U; // the RIFF size is data + 36, in 32 bits
constexpr std::uint32_t frameSize = 4;

void put(std::uint8_t* at, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        at[i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

} // namespace

bool WaveFileWriter::fail(const std::string& what) {
    if (m_error.empty()) {
        m_error = what;
    }
    m_file.reset();
    return false;
}

bool WaveFileWriter::open(const std::string& path, std::uint32_t sampleRate) {
    m_error.clear();
    m_dataSize = 0;
    m_sampleRate = sampleRate;
    m_file.reset(std::fopen(path.c_str(), "wb"));
    if (!m_file) {
        return fail(std::strerror(errno));
    }
    return writeHeader(0);
}

bool WaveFileWriter::writeHeader(std::uint32_t dataSize) {
    std::array<std::uint8_t, headerSize> h{};
    std::memcpy(&h[0], "RIFF", 4);
    put(&h[4], dataSize + 36U, 4);
    std::memcpy(&h[8], "WAVEfmt ", 8);
    put(&h[16], 16, 4);
    put(&h[20], 1, 2); // integer PCM
    put(&h[22], 2, 2); // channels
    put(&h[24], m_sampleRate, 4);
    put(&h[28], m_sampleRate * frameSize, 4);
    put(&h[32], frameSize, 2);
    put(&h[34], 16, 2); // bits a sample
    std::memcpy(&h[36], "data", 4);
    put(&h[40], dataSize, 4);
    if (std::fwrite(h.data(), 1, h.size(), m_file.get()) != h.size()) {
        return fail(std::strerror(errno));
    }
    return true;
}

bool WaveFileWriter::write(const std::int16_t* interleaved, std::size_t count) {
    if (!m_file) {
        return fail("the file isn't open");
    }
    if (m_dataSize + std::uint64_t{count} * frameSize > largestData) {
        return fail("a WAV file can't hold more than 4 GiB");
    }
    std::vector<std::uint8_t> bytes(count * frameSize);
    for (std::size_t i = 0; i < 2 * count; ++i) {
        put(&bytes[2 * i], static_cast<std::uint16_t>(interleaved[i]), 2);
    }
    if (std::fwrite(bytes.data(), 1, bytes.size(), m_file.get()) != bytes.size()) {
        return fail(std::strerror(errno));
    }
    m_dataSize += bytes.size();
    return true;
}

bool WaveFileWriter::close() {
    if (!m_file) {
        return fail("the file isn't open");
    }
    if (std::fflush(m_file.get()) != 0 || std::fseek(m_file.get(), 0, SEEK_SET) != 0) {
        return fail(std::strerror(errno));
    }
    if (!writeHeader(static_cast<std::uint32_t>(m_dataSize))) {
        return false;
    }
    if (std::fclose(m_file.release()) != 0) {
        return fail(std::strerror(errno));
    }
    return true;
}
