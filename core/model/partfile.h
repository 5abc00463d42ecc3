#pragma once

#include <QFile>
#include <QFileInfo>

/// Of a file that couldn't be written whole: takes it away if it is no larger than its `head`, so that nobody
/// takes it for something. What isn't a plain file stays. Returns whether there is something to keep.
inline bool keepPart(QFile& file, qint64 head) {
    const QFileInfo info(file.fileName());
    if (!info.isFile() || info.isSymLink()) {
        return false;
    }
    return file.size() > head || !file.remove();
}
