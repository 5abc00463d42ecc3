#pragma once
// Puts a translation of one text into the program's resources at run time.

#include <QByteArray>
#include <QHashFunctions>
#include <QResource>
#include <QString>
#include <QtEndian>

namespace TranslationResource {

template <typename T> QByteArray bigEndian(T value) {
    QByteArray bytes(sizeof(T), '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray utf16(const QString& text) {
    QByteArray bytes;
    for (const QChar c : text) {
        bytes += bigEndian<quint16>(c.unicode());
    }
    return bytes;
}

// The hash that a message file sorts its messages by.
inline quint32 elfHash(const QByteArray& text) {
    quint32 h = 0;
    for (const char c : text) {
        h = (h << 4) + static_cast<unsigned char>(c);
        const quint32 g = h & 0xF0000000U;
        h = (h ^ (g >> 24)) & ~g;
    }
    return h == 0 ? 1 : h;
}

/// A message file (.qm) that translates `source` in every context.
inline QByteArray messageFile(const QByteArray& source, const QString& translation) {
    const QByteArray magic = QByteArray::fromHex("3cb86418caef9c95cd211cbf60a1bddd");
    const QByteArray hashes = bigEndian<quint32>(elfHash(source)) + bigEndian<quint32>(0);
    const QByteArray text = utf16(translation);
    const QByteArray messages = '\x03' + bigEndian<quint32>(quint32(text.size())) + text + '\x01';
    return magic + '\x42' + bigEndian<quint32>(quint32(hashes.size())) + hashes + '\x69' +
           bigEndian<quint32>(quint32(messages.size())) + messages;
}

/// Makes `content` readable as ":/folder/file" for the rest of the run.
inline bool addToResources(const QString& folder, const QString& file, const QByteArray& content) {
    const auto name = [](const QString& text) {
        return bigEndian<quint16>(quint16(text.size())) + bigEndian<quint32>(qt_hash(text)) + utf16(text);
    };
    const QByteArray first = name(folder);
    const QByteArray names = first + name(file);
    const QByteArray data = bigEndian<quint32>(quint32(content.size())) + content;
    const auto directory = [](quint32 nameOffset, quint32 firstChild) {
        return bigEndian<quint32>(nameOffset) + bigEndian<quint16>(2) + bigEndian<quint32>(1) +
               bigEndian<quint32>(firstChild);
    };
    const QByteArray tree = directory(0, 1) + directory(0, 2) + bigEndian<quint32>(quint32(first.size())) +
                            bigEndian<quint16>(0) + bigEndian<quint16>(0) + bigEndian<quint16>(1) +
                            bigEndian<quint32>(0);
    constexpr quint32 header = 20;
    const auto dataAt = quint32(header + tree.size());
    const auto namesAt = quint32(dataAt + data.size());
    static QList<QByteArray> kept; // the resource system reads from them
    kept << QByteArray("qres") + bigEndian<quint32>(1) + bigEndian<quint32>(header) +
                bigEndian<quint32>(dataAt) + bigEndian<quint32>(namesAt) + tree + data + names;
    return QResource::registerResource(reinterpret_cast<const uchar*>(kept.last().constData()));
}

} // namespace TranslationResource
