#pragma once
// What a test of widgets needs once a process: a data folder of its own and the program's pictures.

#include "state/pathfile.h"

#include <QLibraryInfo>
#include <QProcess>
#include <QResource>
#include <QTemporaryDir>
#include <QtGlobal>

/// Call before Singleton is used.
inline void prepareGuiProcess() {
    static const QTemporaryDir folder;
    static bool prepared = false;
    if (prepared) {
        return;
    }
    prepared = true;
    useDataFolder(folder.filePath(QStringLiteral("AppData")));
    // The pictures are linked into the program alone; here they come from a resource file.
    const QString pictures = folder.filePath(QStringLiteral("pictures.rcc"));
    const QString compiler =
        QLibraryInfo::path(QLibraryInfo::LibraryExecutablesPath) + QStringLiteral("/rcc");
    QProcess::execute(compiler, {QStringLiteral("--binary"), QStringLiteral("-o"), pictures,
                                 QStringLiteral(GRAMO_TEST_DIR "/../resources.qrc")});
    if (!QResource::registerResource(pictures)) {
        qFatal("the pictures of the program can't be read");
    }
}
