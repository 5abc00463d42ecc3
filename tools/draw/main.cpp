// gramoscope-draw: a take as a picture, drawn by the program's own graph.

#include "drawoptions.h"
#include "takepicture.h"

#include "model/constants.h"
#include "state/pathfile.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTextStream>

#include <filesystem>

namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int usageError = 2;
constexpr int fileError = 1;

int refuse(const QString& message, int code) {
    QTextStream(stderr) << "gramoscope-draw: " << message << Qt::endl;
    return code;
}

// The picture comes out the same on every desktop: what the surroundings say about screens, fonts' sizes,
// styles and languages counts for nothing.
void leaveTheDesktop() {
    for (const char* name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_SCALE_FACTOR_ROUNDING_POLICY",
                             "QT_ENABLE_HIGHDPI_SCALING", "QT_AUTO_SCREEN_SCALE_FACTOR", "QT_FONT_DPI",
                             "QT_USE_PHYSICAL_DPI", "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME"}) {
        qunsetenv(name);
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
}

// Whether the picture may take the place of what bears its name; a message if not.
bool mayWrite(const DrawOptions& options, QString& error) {
    const QFileInfo output(options.output);
    if (output.exists() && !output.isFile()) {
        error = u"cannot write %1: it is no plain file"_s.arg(options.output);
        return false;
    }
    for (const QString& input : options.inputs()) {
        std::error_code ignored; // a file that isn't there is nobody's twin
        if (std::filesystem::equivalent(output.filesystemFilePath(), QFileInfo(input).filesystemFilePath(),
                                        ignored)) {
            error = u"cannot write %1: it is the same file as %2"_s.arg(options.output, input);
            return false;
        }
    }
    return true;
}

// Under another name until it is whole.
bool save(const QImage& image, const QString& path, QString& error) {
    // In memory first: the encoder has words of its own for a disk that is full.
    QBuffer png;
    if (!png.open(QIODevice::WriteOnly) || !image.save(&png, "PNG")) {
        error = u"not enough memory for the picture"_s;
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(png.data()) != png.size() || !file.commit()) {
        error = u"cannot write %1: %2"_s.arg(path, file.errorString());
        return false;
    }
    return true;
}

int draw(const DrawOptions& options) {
    QString error;
    if (!mayWrite(options, error)) {
        return refuse(error, fileError);
    }
    TakePicture picture(options);
    if (!picture.load()) {
        return refuse(picture.error(), picture.wrongUsage() ? usageError : fileError);
    }
    const QImage image = picture.image();
    if (image.isNull()) {
        return refuse(u"not enough memory for the picture"_s, fileError);
    }
    if (!save(image, options.output, error)) {
        return refuse(error, fileError);
    }
    QTextStream(stdout) << picture.facts();
    return 0;
}

} // namespace

int main(int argc, char* argv[]) {
    leaveTheDesktop();
    QCoreApplication::setApplicationName(u"gramoscope-draw"_s);
    QCoreApplication::setApplicationVersion(Constant::applicationVersion);
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments << QString::fromLocal8Bit(argv[i]);
    }
    int names = 1; // Qt would take some of the arguments, -platform and -style say, for itself
    DrawOptionsParser parser;
    switch (parser.parse(arguments)) {
    case DrawOptionsParser::Result::Help: {
        const QCoreApplication application(names, argv);
        QTextStream(stdout) << parser.helpText();
        return 0;
    }
    case DrawOptionsParser::Result::Version:
        QTextStream(stdout) << QCoreApplication::applicationName() << ' '
                            << QCoreApplication::applicationVersion() << Qt::endl;
        return 0;
    case DrawOptionsParser::Result::Wrong:
        return refuse(parser.error(), usageError);
    case DrawOptionsParser::Result::Draw:
        break;
    }
    // Qt would go to the root folder instead.
    if (!QFileInfo(QDir::tempPath()).isDir()) {
        return refuse(u"cannot make a temporary folder: TMPDIR is no folder"_s, fileError);
    }
    // Static, and made before the shared state: it goes after the settings have been written for the last
    // time. Qt would make a folder of its own for the run and leave it.
    static const QTemporaryDir data;
    if (!data.isValid()) {
        return refuse(u"cannot make a temporary folder: %1"_s.arg(data.errorString()), fileError);
    }
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(data.path()));
    useDataFolder(data.path());
    const QApplication application(names, argv);
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    return draw(parser.options());
}
