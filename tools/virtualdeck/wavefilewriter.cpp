#include "wavefilewriter.h"

#include "module/wavheader.h"

#include <QBuffer>
#include <QtEndian>

#include <cerrno>
#include <cstring>
#include <vector>

namespace {

constexpr std::size_t sampleSize = 2;
constexpr std::size_t frameSize = 2 * sampleSize;

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
    QBuffer header;
    header.open(QIODevice::WriteOnly);
    writeWavHeader(header, WavHeader::stereo16(m_sampleRate, dataSize / sampleSize));
    const QByteArray& bytes = header.data();
    if (std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), m_file.get()) !=
        std::size_t(bytes.size())) {
        return fail(std::strerror(errno));
    }
    return true;
}

bool WaveFileWriter::write(const std::int16_t* interleaved, std::size_t count) {
    if (!m_file) {
        return fail("the file isn't open");
    }
    if (m_dataSize + std::uint64_t{count} * frameSize > WavHeader::largestData) {
        return fail("a WAV file can't hold more than 4 GiB");
    }
    std::vector<std::uint8_t> bytes(count * frameSize);
    for (std::size_t i = 0; i < 2 * count; ++i) {
        qToLittleEndian(interleaved[i], &bytes[sampleSize * i]);
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
