#include "wavheader.h"

#include <QByteArray>
#include <QDataStream>

#include <cstring>

WavHeader WavHeader::stereo16(double sampleRate, std::uint64_t samples) {
    WavHeader header;
    header.sampleRate = static_cast<std::uint32_t>(sampleRate);
    header.bytesPerSecond = header.sampleRate * 4;
    header.dataBytes = (static_cast<std::uint32_t>(samples) << 4) >> 3;
    return header;
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
    stream << static_cast<quint32>(header.dataBytes + 36U);
    stream.writeRawData("WAVEfmt ", 8);
    stream << quint32{16} << header.format << header.channels << header.sampleRate << header.bytesPerSecond
           << header.blockSize << header.bitsPerSample;
    stream.writeRawData("data", 4);
    stream << header.dataBytes;
    return stream.status() == QDataStream::Ok;
}
