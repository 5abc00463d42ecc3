// Replays files through a fuzz entry: what a fuzzer found, or what a test keeps.

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

// A file itself, or all files below a folder.
QStringList filesOf(const QString& name) {
    if (!QFileInfo(name).isDir()) {
        return {name};
    }
    QStringList files;
    QDirIterator entries(name, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        files << entries.next();
    }
    return files;
}

bool replay(const QString& name) {
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(name), qPrintable(file.errorString()));
        return false;
    }
    const QByteArray content = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.constData()),
                           static_cast<std::size_t>(content.size()));
    return true;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FILE|FOLDER...\n", argv[0]);
        return 2;
    }
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        for (const QString& name : filesOf(QString::fromLocal8Bit(argv[i]))) {
            if (!replay(name)) {
                return 1;
            }
            ++replayed;
        }
    }
    if (replayed == 0) {
        std::fprintf(stderr, "%s: no file there\n", argv[0]);
        return 1;
    }
    std::printf("%d files\n", replayed);
    return 0;
}
