#include "pastedtext.h"

#include <QStringList>

namespace {

// A backslash escapes what follows it, another one included.
bool isEscaped(QStringView text, qsizetype at) {
    qsizetype first = at;
    while (first > 0 && text[first - 1] == u'\\') {
        --first;
    }
    return (at - first) % 2 != 0;
}

bool isQuote(QStringView text, qsizetype at) {
    return text[at] == u'"' && !isEscaped(text, at);
}

// Whether the text has what its own writer puts in quotes or escapes.
bool isPasted(QStringView text) {
    const bool quoted = text.size() > 1 && isQuote(text, 0) && isQuote(text, text.size() - 1);
    const QStringView inside = quoted ? text.sliced(1, text.size() - 2) : text;
    for (qsizetype i = 0; i < inside.size(); ++i) {
        if (isQuote(inside, i) || (!quoted && (inside[i] == u',' || inside[i] == u';'))) {
            return true;
        }
    }
    return isEscaped(inside, inside.size()); // its reader would go on with the next line
}

} // namespace

QString settingsText(const QString& text) {
    QString escaped = text;
    escaped.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
    const bool needsQuotes = escaped != text || text.contains(u',') || text.contains(u';') ||
                             text.startsWith(u' ') || text.endsWith(u' ');
    return needsQuotes ? u'"' + escaped + u'"' : text;
}

QByteArray withQuotedTexts(const QByteArray& content, const QList<QLatin1StringView>& keys) {
    QList<QByteArray> lines = content.split('\n');
    QString group;
    for (QByteArray& line : lines) {
        const QString text = QString::fromUtf8(line).remove(u'\uFEFF').trimmed(); // the mark of some editors
        if (text.startsWith(u'[')) {
            group = text.mid(1, text.indexOf(u']') - 1).trimmed();
            continue;
        }
        const qsizetype equals = text.indexOf(u'=');
        if (equals < 0 || text.startsWith(u';')) {
            continue;
        }
        const QString name = text.left(equals).trimmed();
        const QString value = text.mid(equals + 1).trimmed();
        if (keys.contains(QString(group + u'/' + name)) && isPasted(value)) {
            line = (name + u'=' + settingsText(value)).toUtf8() + (line.endsWith('\r') ? "\r" : "");
        }
    }
    return lines.join('\n');
}
