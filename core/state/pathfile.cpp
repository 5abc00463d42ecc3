#include "pathfile.h"

#include "model/constants.h"
#include "model/uniquestamp.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace {

using namespace Constant;

bool writable(const QString& folder) {
    const QFileInfo info(folder);
    if (info.exists()) {
        return info.isDir() && info.isWritable();
    }
    return QDir().mkpath(folder);
}

// The same, but makes nothing: for a folder that is missing, the nearest one above it tells.
bool couldBeWritten(const QString& folder) {
    QFileInfo info(folder);
    while (!info.exists() && !info.isSymLink() && !info.isRoot()) {
        info.setFile(info.path());
    }
    return info.isDir() && info.isWritable();
}

// False as soon as something can't be written.
bool copyTree(const QString& from, const QString& to) {
    QDirIterator entries(from, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString source = entries.next();
        const QString target = QDir(to).filePath(QDir(from).relativeFilePath(source));
        const QFileInfo info = entries.fileInfo();
        if (!info.isReadable()) {
            continue;
        }
        if (!QDir().mkpath(info.isDir() ? target : QFileInfo(target).path())) {
            return false;
        }
        if (info.isDir()) {
            continue;
        }
        if (!QFile::copy(source, target)) {
            return false;
        }
        QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
    }
    return true;
}

QString besideRoot() {
    return QDir(QCoreApplication::applicationDirPath()).filePath(Folder::appData);
}

// Named after the product, not after the application: the tools share it.
QString userDataRoot() {
    return QDir(QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
                    .filePath(Folder::userData))
        .filePath(Folder::appData);
}

// Empty until it is chosen.
QString& chosenRoot() {
    static QString root;
    return root;
}

const QString& dataRoot() {
    QString& root = chosenRoot();
    if (root.isEmpty()) {
        root = chooseDataFolder(besideRoot(), userDataRoot());
    }
    return root;
}

QString inFolder(QLatin1StringView folder, const QString& name) {
    return QDir(QDir(dataRoot()).filePath(folder)).filePath(name);
}

QString withoutWav(const QString& name) {
    const auto ending = Extension::wav.size();
    return name.size() > ending ? name.chopped(ending) : name;
}

} // namespace

QString chooseDataFolder(const QString& beside, const QString& fallback) {
    return writable(beside) || !fillDataFolder(beside, fallback) ? beside : fallback;
}

QString presentDataFolder(const QString& beside, const QString& fallback) {
    return couldBeWritten(beside) || !QFileInfo(fallback).isDir() ? beside : fallback;
}

bool fillDataFolder(const QString& from, const QString& to) {
    if (QFileInfo::exists(to)) {
        return QFileInfo(to).isDir(); // what the user has changed or thrown away there stays so
    }
    // Under another name until it is whole, so that a copy that was cut short is made again.
    const QString part = to + QStringLiteral(".part");
    QDir(part).removeRecursively();
    if (QDir().mkpath(part) && copyTree(from, part) && QDir().rename(part, to)) {
        return true;
    }
    QDir(part).removeRecursively();
    return QFileInfo(to).isDir(); // another process may have been first
}

void useDataFolder(const QString& folder) {
    chosenRoot() = folder;
}

void onlyReadDataFolder() {
    useDataFolder(presentDataFolder(besideRoot(), userDataRoot()));
}

QString pathData(const QString& name) {
    return QDir(dataRoot()).filePath(name);
}
QString pathInput(const QString& name) {
    return inFolder(Folder::input, name);
}
QString pathLooper(const QString& name) {
    return inFolder(Folder::looper, name);
}
QString pathColor(const QString& name) {
    return inFolder(Folder::color, name);
}
QString pathExport(const QString& name) {
    return inFolder(Folder::exported, name);
}
QString pathRecording(const QString& name) {
    return inFolder(Folder::recording, name);
}
QString pathScratchTools(const QString& name) {
    return inFolder(Folder::scratchTools, name);
}
QString pathCss(const QString& name) {
    return inFolder(Folder::css, name);
}

QPixmap pathIcon(const QString& name) {
    return QPixmap(Resource::icon + name);
}
QString pathImage(const QString& name) {
    return Resource::image + name;
}
QString pathTranslation(const QString& name) {
    return Resource::translation + name;
}
QString pathGenerate(const QString& name) {
    return Resource::generate + name;
}
QString pathSound(const QString& name) {
    return Resource::sound + name;
}

QString resourceFile(const QString& name) {
    const auto scheme = QLatin1StringView("qrc:");
    return name.startsWith(scheme) ? u':' + name.mid(scheme.size()) : name;
}

QString PathFile::fileDeckA() const {
    return withoutWav(m_fileDeckA);
}
QString PathFile::fileDeckB() const {
    return withoutWav(m_fileDeckB);
}
QString PathFile::fileMaster() const {
    return withoutWav(m_fileMaster);
}

QString PathFile::pathDirectoryRecording() {
    QString path = pathRecording(m_directoryRecording);
    // Also makes "Recording" itself where somebody removed it, and goes elsewhere where that can't be had: a
    // take must not be lost for that.
    if (!writable(path)) {
        path = QDir(QDir(userDataRoot()).filePath(Folder::recording)).filePath(m_directoryRecording);
        QDir().mkpath(path);
    }
    m_directoryUsed = true;
    m_namesUsed = true;
    return path;
}

bool PathFile::beginTake() {
    if (m_directoryUsed) {
        newPathDirectory_recording();
    }
    return std::exchange(m_namesUsed, false);
}

void PathFile::newPathDirectory_recording() {
    m_directoryRecording = uniqueStamp();
    m_directoryUsed = false;
}
