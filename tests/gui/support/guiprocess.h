#pragma once
// What a test of widgets needs once a process: a data folder of its own.

#include "state/pathfile.h"

#include <QTemporaryDir>

/// Call before Singleton is used.
inline void prepareGuiProcess() {
    static const QTemporaryDir folder;
    static bool prepared = false;
    if (!prepared) {
        prepared = true;
        useDataFolder(folder.filePath(QStringLiteral("AppData")));
    }
}
