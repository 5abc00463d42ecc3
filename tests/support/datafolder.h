#pragma once
// Keeps a test away from the program's own data.

#include "state/pathfile.h"

#include <QDir>
#include <QTemporaryDir>

/// Puts the program's data into a temporary folder with all its sub-folders and returns that folder; what
/// goes to the user's data location lands in it as well. To be called before Singleton exists; the folder
/// outlives it.
inline QString ownDataFolder() {
    static const QTemporaryDir folder;
    useDataFolder(folder.path());
    qputenv("XDG_DATA_HOME", folder.filePath(QStringLiteral("user")).toLocal8Bit());
    for (const char* name : {"Input", "Looper", "Recording", "Export", "Color", "Scratch Tools", "Css"}) {
        QDir(folder.path()).mkpath(QString::fromLatin1(name));
    }
    return folder.path();
}
