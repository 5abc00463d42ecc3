#pragma once
// What the fuzz entries of readers that open a file by its name share.

#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

/// Ends the process where a reader has broken its word: a fuzzer and a replay both notice that.
inline void demand(bool truth) {
    if (!truth) {
        std::abort();
    }
}

/// A folder of the entry's own, with a file whose content is the fuzzer's.
class FuzzFile {
public:
    QString folder() const { return m_folder.path(); }
    QString path(const QString& name) const { return m_folder.filePath(name); }
    /// Writes `size` bytes into the file and gives its path.
    QString with(const std::uint8_t* data, std::size_t size) const {
        const QString name = path(QStringLiteral("input"));
        QFile file(name);
        demand(file.open(QIODevice::WriteOnly));
        demand(file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size)) ==
               static_cast<qint64>(size));
        return name;
    }

private:
    QTemporaryDir m_folder;
};
