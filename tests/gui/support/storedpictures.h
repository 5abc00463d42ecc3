#pragma once
// Pictures that were looked at and stored, and the comparison with them. See gui/pictures/README.md.

#include <QColor>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QImage>
#include <QMap>
#include <QRectF>
#include <QStringList>

#include <vector>

namespace StoredPictures {

inline QString folder() {
    return QStringLiteral(GRAMO_TEST_DIR) + QStringLiteral("/gui/pictures");
}
inline QString listFile() {
    return folder() + QStringLiteral("/list.txt");
}
inline QString pathOf(const QString& name) {
    return folder() + QLatin1Char('/') + name + QStringLiteral(".png");
}
/// The pictures are to be stored anew, not compared.
inline bool storing() {
    return qEnvironmentVariableIntValue("GRAMO_STORE_PICTURES") == 1;
}

/// Names of the stored pictures.
inline QStringList names() {
    QStringList found;
    for (const QString& file : QDir(folder()).entryList({QStringLiteral("*.png")}, QDir::Files)) {
        found << file.chopped(4);
    }
    found.sort();
    return found;
}

/// What the list says of each picture; a name that comes twice has both.
inline QMultiMap<QString, QString> list() {
    QMultiMap<QString, QString> lines;
    QFile file(listFile());
    if (file.open(QIODevice::ReadOnly)) {
        for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
            const qsizetype colon = line.indexOf(QStringLiteral(": "));
            if (colon > 0) {
                lines.insert(line.left(colon), line.mid(colon + 2));
            }
        }
    }
    return lines;
}

inline bool storeList(const QMap<QString, QString>& lines) {
    QFile file(listFile());
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    for (auto line = lines.begin(); line != lines.end(); ++line) {
        file.write((line.key() + QStringLiteral(": ") + line.value() + QLatin1Char('\n')).toUtf8());
    }
    return true;
}

/// The picture without a pixel ratio, with the masks (pixels of the widget) in one colour of their own.
inline QImage comparable(const QImage& picture, const std::vector<QRectF>& masks) {
    const double ratio = picture.devicePixelRatio();
    QImage plain = picture.convertToFormat(QImage::Format_RGB32);
    plain.setDevicePixelRatio(1.0);
    for (const QRectF& mask : masks) {
        const QRect pixels =
            QRectF(mask.topLeft() * ratio, mask.size() * ratio).toAlignedRect() & plain.rect();
        for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
            for (int x = pixels.left(); x <= pixels.right(); ++x) {
                plain.setPixel(x, y, qRgb(60, 30, 80));
            }
        }
    }
    return plain;
}

/// As small as a file gets: up to 256 colours are stored in a table.
inline bool store(const QString& name, const QImage& picture) {
    QList<QRgb> colors;
    QHash<QRgb, int> places;
    QImage indexed(picture.size(), QImage::Format_Indexed8);
    for (int y = 0; y < picture.height() && colors.size() <= 256; ++y) {
        for (int x = 0; x < picture.width() && colors.size() <= 256; ++x) {
            const QRgb color = picture.pixel(x, y);
            auto place = places.find(color);
            if (place == places.end()) {
                place = places.insert(color, int(colors.size()));
                colors << color;
            }
            indexed.scanLine(y)[x] = uchar(*place);
        }
    }
    if (colors.size() > 256) {
        return picture.save(pathOf(name), "PNG", 0);
    }
    indexed.setColorTable(colors);
    return indexed.save(pathOf(name), "PNG", 0);
}

/// How many pixels differ; -1 for pictures of two sizes. Those that do are white in `shown`, the others dark.
inline int difference(const QImage& a, const QImage& b, QImage& shown) {
    if (a.size() != b.size()) {
        return -1;
    }
    int count = 0;
    shown = a.copy();
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb pixel = a.pixel(x, y);
            const bool differs = pixel != b.pixel(x, y);
            count += differs ? 1 : 0;
            shown.setPixel(x, y, differs ? qRgb(255, 255, 255) : QColor(pixel).darker(300).rgb());
        }
    }
    return count;
}

/// Empty if the picture is the stored one. Else what is wrong; the picture and the difference lie in a folder
/// that the text names.
inline QString trouble(const QString& name, const QImage& picture) {
    const QImage stored = QImage(pathOf(name)).convertToFormat(QImage::Format_RGB32);
    QImage shown;
    const int count = difference(picture, stored, shown);
    if (count == 0) {
        return {};
    }
    const QDir temporary(QDir::temp().filePath(QStringLiteral("gramoscope-pictures")));
    temporary.mkpath(QStringLiteral("."));
    picture.save(temporary.filePath(name + QStringLiteral(".png")));
    if (stored.isNull()) {
        return QStringLiteral("no stored picture %1; this one lies in %2").arg(name, temporary.path());
    }
    if (count < 0) {
        return QStringLiteral("%1 has another size than the stored picture; it lies in %2")
            .arg(name, temporary.path());
    }
    shown.save(temporary.filePath(name + QStringLiteral(".difference.png")));
    return QStringLiteral("%1 pixels of %2 differ; picture and difference lie in %3")
        .arg(count)
        .arg(name, temporary.path());
}

} // namespace StoredPictures
