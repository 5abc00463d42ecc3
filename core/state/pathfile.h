#pragma once

#include <QObject>
#include <QPixmap>
#include <QString>

/// Root of the data: "AppData" beside the executable or, where that can't be written, "Gramo Scope/AppData"
/// in the user's data location, filled once from the delivered one. Found at the first call. All paths below
/// it.
QString pathData(const QString& name);
QString pathInput(const QString& name);
QString pathLooper(const QString& name);
QString pathColor(const QString& name);
QString pathExport(const QString& name);
QString pathRecording(const QString& name);
QString pathScratchTools(const QString& name);
QString pathCss(const QString& name);

QPixmap pathIcon(const QString& name);
QString pathImage(const QString& name);
QString pathTranslation(const QString& name);
QString pathGenerate(const QString& name);
/// The "qrc:" form. What opens files takes resourceFile() of it.
QString pathSound(const QString& name);
/// The ":/" form of a "qrc:" name; any other name as it is.
QString resourceFile(const QString& name);

/// Decides where the data lies. `beside` is the folder beside the executable, `fallback` the user's. Returns
/// the one to use; the fallback is filled from `beside` when it is first needed. Where that fails it is
/// `beside`, to be read at least.
QString chooseDataFolder(const QString& beside, const QString& fallback);
/// The one of the two that chooseDataFolder would use, as far as it is there; makes and fills nothing.
QString presentDataFolder(const QString& beside, const QString& fallback);
/// Makes `to` a copy of `from`, files writable, once: a folder `to` that is there stays as it is. What can't
/// be read is left out. False if `to` isn't a whole copy; then nothing is left of it.
bool fillDataFolder(const QString& from, const QString& to);

/// Puts the data somewhere else: for the tools and the tests, which leave the user's files alone. Before
/// Singleton exists.
void useDataFolder(const QString& folder);
/// Takes the data from where they lie now, without making a folder: for the tools that only read. Before any
/// path is asked for.
void onlyReadDataFolder();

/// The names of the files of the running recording. GUI thread.
class PathFile : public QObject {
    Q_OBJECT
public:
    explicit PathFile(QObject* parent = nullptr) : QObject(parent) {}

    void setFileDeckA(const QString& name) { m_fileDeckA = name; }
    void setFileDeckB(const QString& name) { m_fileDeckB = name; }
    void setFileMaster(const QString& name) { m_fileMaster = name; }
    /// The names without ".wav"; one that is no longer than that comes back whole.
    QString fileDeckA() const;
    QString fileDeckB() const;
    QString fileMaster() const;

    QString directoryRecording() const { return m_directoryRecording; }
    /// The running recording's folder, made if it is missing. Where it can't be made or written, a folder of
    /// that name in the user's data location.
    QString pathDirectoryRecording();

    /// Called as a recorded session starts. Chooses a new folder if an earlier session has used this one.
    /// True if the files need new names, because an earlier session has used them.
    bool beginTake();

public Q_SLOTS:
    /// Names a new folder after this moment. It is made when its first file is written.
    void newPathDirectory_recording();

private:
    QString m_fileDeckA;
    QString m_fileDeckB;
    QString m_fileInput1;
    QString m_fileInput2;
    QString m_fileMaster;
    QString m_directoryRecording;
    bool m_directoryUsed = false;
    bool m_namesUsed = false;
};
