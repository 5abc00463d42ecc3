#include "phrasingfile.h"

#include "managephrasing.h"

#include "model/constants.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <cmath>
#include <optional>

namespace {

using namespace Constant;

// A Section has four attributes. The XML reader compares each attribute of an element with each other one: a
// megabyte of them in one element would keep it busy for a minute. Equal signs side by side are one: a rule
// in a comment, say.
constexpr int mostEqualSigns = 256;

// Refuses, by a look at the bytes, what a phrasing file never holds and what the XML reader would pay for:
// other encodings than UTF-8, document type declarations (and with them entities), floods of attributes.
bool plausible(const QByteArray& content) {
    if (content.contains('\0') || content.contains("<!DOCTYPE")) {
        return false;
    }
    int equalSigns = 0;
    char before = '\0';
    for (const char c : content) {
        if (c == '<') { // never within a tag
            equalSigns = 0;
        } else if (c == '=' && before != '=' && ++equalSigns > mostEqualSigns) {
            return false;
        }
        before = c;
    }
    return true;
}

// In another encoding that a file declares, UTF-7 say, what plausible() looks for has other bytes. The reader
// takes nothing but the declaration before this is asked.
bool isUtf8(QStringView declared) {
    return declared.isEmpty() || declared.compare(QStringLiteral("utf-8"), Qt::CaseInsensitive) == 0;
}

// None for fewer than three parts. A part that is no number counts as 0, a value out of range gives the
// invalid colour.
std::optional<QColor> colorOf(const QString& text) {
    const QStringList parts = text.split(u',', Qt::KeepEmptyParts);
    if (parts.size() < 3) {
        return std::nullopt;
    }
    const int red = parts[0].toInt();
    const int green = parts[1].toInt();
    const int blue = parts[2].toInt();
    const auto inRange = [](int value) { return value >= 0 && value <= 255; };
    return inRange(red) && inRange(green) && inRange(blue) ? QColor(red, green, blue) : QColor();
}

QString textOf(const QColor& color) {
    return QStringLiteral("%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue());
}

// Degrees; 0 for what is missing or no finite number.
double angleOf(const QXmlStreamAttributes& attributes, QLatin1StringView name) {
    bool ok = false;
    const double angle = attributes.value(name).toDouble(&ok);
    return ok && std::isfinite(angle) ? angle : 0.0;
}

// As QDomElement::setAttribute() writes a double: whatever the locale, and enough digits to read it back as
// it was.
QString textOf(double angle) {
    return QString::number(angle, 'g', 17);
}

QPhrasingPtr areaOf(const QXmlStreamAttributes& attributes) {
    const auto color = colorOf(attributes.value(Constant::Phrasing::color).toString());
    if (!color) {
        return nullptr;
    }
    return std::make_shared<QPhrasing>(attributes.value(Constant::Phrasing::label).toString(), *color,
                                       angleOf(attributes, Constant::Phrasing::angleStart),
                                       angleOf(attributes, Constant::Phrasing::angleEnd));
}

bool allowedInXml(char32_t c) {
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           c >= 0x10000;
}

QString xmlText(const QString& text) {
    QList<uint> characters = text.toUcs4();
    characters.removeIf([](uint c) { return !allowedInXml(c); });
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.constData()), characters.size());
}

} // namespace

std::unique_ptr<ManagePhrasing> readGRPFile(const QString& path) {
    const QFileInfo info(path);
    // Not a pipe, which would be waited for, and not a device, which may have no end.
    if (!path.endsWith(Extension::phrasing, Qt::CaseInsensitive) || !info.isFile() ||
        info.size() > largestPhrasingFile) {
        return nullptr;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return nullptr;
    }
    const QByteArray content = file.read(largestPhrasingFile + 1); // it may have grown since
    return content.size() > largestPhrasingFile ? nullptr : parsePhrasing(content, path);
}

std::unique_ptr<ManagePhrasing> parsePhrasing(const QByteArray& content, const QString& path) {
    if (!plausible(content)) {
        return nullptr;
    }
    QXmlStreamReader reader(content);
    reader.setNamespaceProcessing(false); // a colon is a letter like any other
    QString name;
    QString scratchTools;
    QPhrasingList areas;
    int depth = 0; // of elements around the present place
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartDocument:
            if (!isUtf8(reader.documentEncoding())) {
                return nullptr;
            }
            break;
        case QXmlStreamReader::StartElement:
            if (depth == 0) {
                if (reader.qualifiedName() != Constant::Phrasing::root) {
                    return nullptr;
                }
                name = reader.attributes().value(Constant::Phrasing::name).toString();
                scratchTools = reader.attributes().value(Constant::Phrasing::scratchTools).toString();
            } else if (depth == 1 && reader.qualifiedName() == Constant::Phrasing::section) {
                const QPhrasingPtr area = areaOf(reader.attributes());
                if (area == nullptr) {
                    return nullptr;
                }
                areas.append(area);
            }
            ++depth;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    if (reader.hasError()) {
        return nullptr;
    }
    auto phrasing = std::make_unique<ManagePhrasing>(ModelGraph::NOT_USED);
    phrasing->setName(name);
    phrasing->setScratchTools(scratchTools);
    phrasing->setListPhrasing(areas);
    phrasing->setPath(path);
    if (!phrasing->isValid()) {
        return nullptr;
    }
    phrasing->loadScratchToolWav();
    return phrasing;
}

QString phrasingText(const QPhrasingList& areas, const QString& name) {
    // The writer starts a line of its own for the root.
    QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?>");
    QXmlStreamWriter writer(&text);
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(1);
    writer.writeStartElement(Constant::Phrasing::root);
    writer.writeAttribute(Constant::Phrasing::name, xmlText(name));
    writer.writeAttribute(Constant::Phrasing::scratchTools, QString());
    for (const QPhrasingPtr& area : areas) {
        writer.writeEmptyElement(Constant::Phrasing::section);
        writer.writeAttribute(Constant::Phrasing::label, xmlText(area->label()));
        writer.writeAttribute(Constant::Phrasing::color, textOf(area->color()));
        writer.writeAttribute(Constant::Phrasing::angleStart, textOf(area->angleStart()));
        writer.writeAttribute(Constant::Phrasing::angleEnd, textOf(area->angleEnd()));
    }
    writer.writeEndDocument();
    return text;
}

PhrasingSave saveGRPFile(const QString& path, const QPhrasingList& areas) {
    const QFileInfo info(path);
    const QByteArray content = phrasingText(areas, info.baseName()).toUtf8();
    if (info.exists()) {
        return PhrasingSave::Exists;
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::NewOnly)) {
        return PhrasingSave::NotOpened;
    }
    if (file.write(content) != content.size() || !file.flush()) {
        file.close();
        QFile::remove(path); // half a file couldn't be read and would hold the name
        return PhrasingSave::NotWritten;
    }
    return PhrasingSave::Saved;
}
