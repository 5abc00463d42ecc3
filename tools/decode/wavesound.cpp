#include "wavesound.h"

#include "module/wavheader.h"

#include <QByteArray>
#include <QtEndian>

#include <algorithm>

namespace {

constexpr quint16 pcm = 1;
constexpr quint16 extensible = 0xFFFE;

template <typename T> T field(const QByteArray& bytes, qsizetype at) {
    return at + qsizetype(sizeof(T)) <= bytes.size() ? qFromLittleEndian<T>(bytes.constData() + at) : T{0};
}

bool isStereo16(const QByteArray& format) {
    const auto tag = field<quint16>(format, 0);
    // An extensible format names its true tag at the head of its sub-format.
    const auto kind = tag == extensible ? field<quint16>(format, 24) : tag;
    return kind == pcm && field<quint16>(format, 2) == 2 && field<quint16>(format, 12) == 4 &&
           field<quint16>(format, 14) == 16 && field<quint32>(format, 4) > 0;
}

} // namespace

std::optional<WaveSound> findStereo16(QFile& file) {
    const QByteArray riff = file.read(12);
    if (!riff.startsWith("RIFF") || riff.mid(8) != "WAVE") {
        return std::nullopt;
    }
    std::optional<WaveSound> sound;
    for (;;) {
        const QByteArray head = file.read(8);
        if (head.size() < 8) {
            return std::nullopt;
        }
        const qint64 size = field<quint32>(head, 4);
        const qint64 start = file.pos();
        if (head.startsWith("fmt ")) {
            const QByteArray format = file.read(std::min<qint64>(size, 64));
            if (!isStereo16(format)) {
                return std::nullopt;
            }
            sound = WaveSound{field<quint32>(format, 4), 0, 0};
        } else if (head.startsWith("data")) {
            if (sound) {
                sound->offset = start;
                sound->bytes = bytesOfTake(static_cast<quint32>(size), file.size() - start);
            }
            return sound;
        }
        if (!file.seek(start + size + (size & 1))) {
            return std::nullopt;
        }
    }
}
