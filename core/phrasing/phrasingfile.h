#pragma once

#include "qphrasing.h"

#include <QByteArray>
#include <QString>

#include <memory>

class ManagePhrasing;

/// The phrasing file (.grp): UTF-8 XML with the root "Phrasing" and one "Section" for each area. GUI thread.

/// The largest phrasing file that is read. An area takes about a hundred bytes: room for ten thousand, where
/// a turn of the record rarely has more than thirty.
inline constexpr qint64 largestPhrasingFile = 1 << 20;

/// Reads a phrasing file. Null for another extension (case counts for nothing), a file that can't be read, is
/// no plain file or too large, and for all that parsePhrasing() refuses.
std::unique_ptr<ManagePhrasing> readGRPFile(const QString& path);

/// The same from the bytes of a file. Null for broken XML, another encoding than UTF-8, a document type
/// declaration, an element with hundreds of attributes, another root, a colour of fewer than three parts, and
/// areas that aren't valid.
std::unique_ptr<ManagePhrasing> parsePhrasing(const QByteArray& content, const QString& path);

/// The text of a phrasing file. Characters that XML can't carry are left out of labels and name.
QString phrasingText(const QPhrasingList& areas, const QString& name);

enum class PhrasingSave {
    Saved,
    Exists,     ///< there is a file of that name: it stays as it was
    NotOpened,  ///< the file can't be made
    NotWritten, ///< the disk is full, say: nothing is left behind
};
/// Writes the areas into a new file, under the base name of `path`: the file's name up to its first point.
PhrasingSave saveGRPFile(const QString& path, const QPhrasingList& areas);
