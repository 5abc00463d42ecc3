#include "managewav.h"

#include "model/partfile.h"
#include "model/qsample.h"
#include "wavheader.h"

#include <QFile>
#include <QtEndian>

#include <vector>

namespace {

constexpr qint64 bytesOfFrame = 4;

}

bool ManageWAV::write(const QString& fileName, const QSample& sample) const {
    QFile file(QString::fromUtf8(fileName.toUtf8()));
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    bool written = writeWavHeader(file, WavHeader::stereo16(sample.sampleRate(), m_samples.size()));
    std::vector<std::int16_t> littleEndian;
    written = m_samples.forEachPiece([&](std::span<const std::int16_t> piece) {
        littleEndian.resize(piece.size());
        qToLittleEndian<std::int16_t>(piece.data(), static_cast<qsizetype>(piece.size()),
                                      littleEndian.data());
        const auto bytes = static_cast<qint64>(piece.size_bytes());
        return file.write(reinterpret_cast<const char*>(littleEndian.data()), bytes) == bytes;
    }) && written;
    written = file.flush() && written;
    file.close();
    if (written && file.error() == QFileDevice::NoError) {
        return true;
    }
    // A full disk: what has been written is to be read by any program, so its size is put right.
    if (keepPart(file, WavHeader::bytes + bytesOfFrame - 1) && file.open(QIODevice::ReadWrite)) {
        const qint64 frames = (file.size() - WavHeader::bytes) / bytesOfFrame;
        writeWavHeader(file,
                       WavHeader::stereo16(sample.sampleRate(), static_cast<std::uint64_t>(frames) * 2));
    }
    return false;
}
