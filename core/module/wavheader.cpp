#include "wavheader.h"

#include <QByteArray>
#include <QDataStream>

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint32_t riffExtra = 36; // the RIFF size counts all but its own tag and size
constexpr std::int64_t sizeWrap = std::int64_t{1} << 29;

} // namespace

WavHeader WavHeader::stereo16(double sampleRate, std::uint64_t samples) {
    WavHeader header;
    header.sampleRate = static_cast<std::uint32_t>(sampleRate);
    header.bytesPerSecond = header.sampleRate * 4;
    header.dataBytes =
        static_cast<std::uint32_t>(samples < largestData / 2 ? samples * 2 : std::uint64_t{largestData});
    return header;
}

std::uint64_t WavHeader::samplesIn(qint64 fileBytes) const {
    const std::uint64_t promised = bitsPerSample == 0 ? 0 : std::uint64_t{dataBytes / bitsPerSample} * 8U;
    const auto held = static_cast<std::uint64_t>(std::max<qint64>(0, fileBytes - bytes)) / 2U;
    return std::min(promised, held);
}

std::int64_t bytesOfTake(std::uint32_t said, std::int64_t held) {
    const bool wrapped = held >= sizeWrap && held % sizeWrap == said;
    return wrapped || said == WavHeader::largestData ? held : std::min<std::int64_t>(said, held);
}

WavHeader readWavHeader(QIODevice& file) {
    const QByteArray raw = file.read(WavHeader::bytes);
    QDataStream stream(raw);
    stream.setByteOrder(QDataStream::LittleEndian);
    char riff[4] = {};
    char wave[4] = {};
    char fmt[4] = {};
    char data[4] = {};
    quint32 riffBytes = 0;
    quint32 fmtBytes = 0;
    WavHeader header;
    stream.readRawData(riff, 4);
    stream >> riffBytes;
    stream.readRawData(wave, 4);
    stream.readRawData(fmt, 4);
    stream >> fmtBytes >> header.format >> header.channels >> header.sampleRate >> header.bytesPerSecond >>
        header.blockSize >> header.bitsPerSample;
    stream.readRawData(data, 4);
    stream >> header.dataBytes;
    header.tagged = std::memcmp(riff, "RIFF", 4) == 0 && std::memcmp(wave, "WAVE", 4) == 0 &&
                    std::memcmp(fmt, "fmt ", 4) == 0 && std::memcmp(data, "data", 4) == 0 && fmtBytes == 16;
    return header;
}

bool writeWavHeader(QIODevice& file, const WavHeader& header) {
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("RIFF", 4);
    stream << static_cast<quint32>(std::min(header.dataBytes, 0xFFFFFFFFU - riffExtra) + riffExtra);
    stream.writeRawData("WAVEfmt ", 8);
    stream << quint32{16} << header.format << header.channels << header.sampleRate << header.bytesPerSecond
           << header.blockSize << header.bitsPerSample;
    stream.writeRawData("data", 4);
    stream << header.dataBytes;
    return stream.status() == QDataStream::Ok;
}
