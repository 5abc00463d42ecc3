#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// `text` as a line of a settings file takes it: as it is, or in quotes where the file's reader would
/// otherwise split it at a comma, end it at a semicolon or drop a quote, a backslash or blanks at its ends.
QString settingsText(const QString& text);

/// The content of a settings file with quotes around what somebody has pasted there without them. Of `keys`,
/// "group/name" each, only those count whose text has a comma, a semicolon or a quote, or at its end a
/// backslash, where the file's own writer wouldn't put one; such a text is taken letter for letter, but for
/// blanks at its ends. Everything else stays byte for byte.
QByteArray withQuotedTexts(const QByteArray& content, const QList<QLatin1StringView>& keys);
