// gramoscope-decode: a WAV of a timecode record through the program's own decoder into a curve file.

#include "curve/curvepointring.h"
#include "curve/curvepointstore.h"
#include "curve/qcurve.h"
#include "model/constants.h"
#include "model/enumtext.h"
#include "model/modeltimecode.h"
#include "module/audionotifier.h"
#include "module/receivetimecodedvsobject.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "state/timecode.h"
#include "wavesound.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtEndian>

#include <optional>
#include <vector>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int usageError = 2;
constexpr int fileError = 1;
constexpr qint64 chunkFrames = 4096;

int refuse(const QString& message, int code) {
    QTextStream(stderr) << "gramoscope-decode: " << message << Qt::endl;
    return code;
}

QStringList timecodeNames() {
    QStringList names;
    for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
        names << QString::fromStdString(def.name());
    }
    return names;
}

struct Options {
    QString timecode;
    double outputBuffer = 0.0;
    double outputRate = 0.0;
    double bpm = 0.0;
    QString input;
    QString output;
};

bool decode(const Options& options, QFile& wav, const WaveSound& sound, QString& error) {
    const Singleton& shared = Singleton::instance();
    shared.setting()->setTimecode(options.timecode);
    QSample deck(ModelGraph::INPUT_DECKA, 0, QFileInfo(wav).fileName(), sound.sampleRate, 2, 0);
    QSample output(ModelGraph::OUTPUT_MASTER, 0, QString(), options.outputRate, 2, 0, 0, 0);
    shared.performance()->setSample(ModelGraph::INPUT_DECKA, &deck, false);
    shared.performance()->setOutputBuffer(options.outputBuffer);
    shared.performance()->setSampleOutput(&output);
    shared.recordingLooperTraining()->setBpmEffective(options.bpm);

    CurvePointRing ring;
    CurvePointStore points;
    AudioNotifier notifier;
    QCurve curve(ModelGraph::INPUT_DECKA, points);
    ReceiveTimecodeDVSObject decoder(ModelGraph::INPUT_DECKA, ring, points);
    decoder.initialise();
    decoder.updateBPM();

    qint64 frames = 0;
    qint64 firstCode = -1;
    wav.seek(sound.offset);
    qint64 left = sound.bytes / 4;
    std::vector<std::int16_t> chunk(chunkFrames * 2);
    while (left > 0) {
        const qint64 got =
            wav.read(reinterpret_cast<char*>(chunk.data()), std::min(left, chunkFrames) * 4) / 4;
        if (got <= 0) {
            break;
        }
        qFromLittleEndian<std::int16_t>(chunk.data(), got * 2, chunk.data());
        for (qint64 i = 0; i < got; ++i) {
            std::int16_t* channels[] = {&chunk[std::size_t(2 * i)], &chunk[std::size_t(2 * i + 1)]};
            decoder.executeRT(channels, notifier);
            if (firstCode < 0 && shared.timecode()->isTimecodeOn(ModelGraph::INPUT_DECKA)) {
                firstCode = frames + i;
            }
        }
        frames += got;
        left -= got;
        decoder.prepare();
    }
    if (points.overflows() > 0) {
        error = u"not enough memory for the curve of %1"_s.arg(options.input);
        return false;
    }
    if (!curve.saveToPath(options.output)) {
        error = u"cannot write %1"_s.arg(options.output);
        return false;
    }
    QTextStream out(stdout);
    out << "frames " << frames << "\npoints " << points.size() << "\nfirst valid code ";
    if (firstCode < 0) {
        out << "none";
    } else {
        out << "at frame " << firstCode;
    }
    out << "\nfinal pitch "
        << (points.size() > 0 ? QString::number(points.view().back().pitch, 'f', 6) : u"0"_s) << Qt::endl;
    return true;
}

// Whether `name` leads to the very file that stands open here, by whatever path or link.
bool isSameFile(const QFile& open, const QString& name) {
#ifdef Q_OS_UNIX
    struct stat here = {};
    struct stat there = {};
    if (fstat(open.handle(), &here) == 0 && stat(QFile::encodeName(name).constData(), &there) == 0 &&
        here.st_dev == there.st_dev && here.st_ino == there.st_ino) {
        return true;
    }
#endif
    return QFileInfo(open) == QFileInfo(name);
}

// A number above 0 from an option; false, with a message, for anything else.
bool positive(const QCommandLineParser& parser, const QString& name, double& value) {
    bool ok = false;
    value = parser.value(name).toDouble(&ok);
    if (!ok || !(value > 0.0) || value > 1e9) {
        refuse(u"--%1 takes a number above 0, not \"%2\""_s.arg(name, parser.value(name)), usageError);
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"gramoscope-decode"_s);
    QCoreApplication::setApplicationVersion(Constant::applicationVersion);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Decodes a WAV of a timecode record with the decoder of Gramo Scope and saves the curve."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {u"timecode"_s, u"The record: %1."_s.arg(timecodeNames().join(u", "_s)), u"NAME"_s},
        {u"output-buffer"_s, u"Frames a buffer of the output; sets the distance of the points (64)."_s,
         u"FRAMES"_s, u"64"_s},
        {u"output-rate"_s, u"Sample rate of the output in Hz (48000)."_s, u"HZ"_s, u"48000"_s},
        {u"bpm"_s, u"Tempo written to the curve file (84)."_s, u"N"_s, u"84"_s},
    });
    parser.addPositionalArgument(u"IN.wav"_s, u"A 16-bit stereo PCM file."_s);
    parser.addPositionalArgument(u"OUT.grw"_s, u"The curve file to write."_s);
    if (!parser.parse(application.arguments())) {
        return refuse(parser.errorText() + u" See --help."_s, usageError);
    }
    if (parser.isSet(u"help"_s) || parser.isSet(u"help-all"_s)) {
        parser.showHelp();
    }
    if (parser.isSet(u"version"_s)) {
        parser.showVersion();
    }

    const QStringList files = parser.positionalArguments();
    Options options;
    options.timecode = parser.value(u"timecode"_s);
    if (options.timecode.isEmpty()) {
        return refuse(u"--timecode is missing; see --help"_s, usageError);
    }
    if (!timecodeNames().contains(options.timecode)) {
        return refuse(
            u"unknown timecode \"%1\"; known are %2"_s.arg(options.timecode, timecodeNames().join(u", "_s)),
            usageError);
    }
    if (!positive(parser, u"output-buffer"_s, options.outputBuffer) ||
        !positive(parser, u"output-rate"_s, options.outputRate) || !positive(parser, u"bpm"_s, options.bpm)) {
        return usageError;
    }
    if (files.size() != 2 || files.contains(QString())) {
        return refuse(u"takes two files, IN.wav and OUT.grw; see --help"_s, usageError);
    }
    options.input = files.at(0);
    options.output = files.at(1);

    // Asked before it is opened: a pipe that nobody writes to would block that.
    if (const QFileInfo input(options.input); input.exists() && !input.isFile()) {
        return refuse(u"cannot read %1: it is no file"_s.arg(options.input), fileError);
    }
    QFile wav(options.input);
    if (!wav.open(QIODevice::ReadOnly)) {
        return refuse(u"cannot read %1: %2"_s.arg(options.input, wav.errorString()), fileError);
    }
    const std::optional<WaveSound> sound = findStereo16(wav);
    if (!sound) {
        return refuse(u"%1 is no 16-bit stereo PCM file"_s.arg(options.input), fileError);
    }
    // The decoder reads its timecode from the settings; these are not the user's. Static, and made before the
    // shared state: it goes after the settings have been written for the last time.
    static const QTemporaryDir data;
    if (!data.isValid()) {
        return refuse(u"cannot make a temporary folder: %1"_s.arg(data.errorString()), fileError);
    }
    useDataFolder(data.path());
    if (isSameFile(wav, options.output)) {
        return refuse(u"cannot write %1: it is the input"_s.arg(options.output), fileError);
    }
    // Tried before the work, so that nothing is decoded in vain; what stands there is left alone.
    const bool existed = QFileInfo::exists(options.output);
    QFile probe(options.output);
    if (!probe.open(QIODevice::ReadWrite)) {
        return refuse(u"cannot write %1"_s.arg(options.output), fileError);
    }
    probe.close();
    if (!existed) {
        probe.remove();
    }
    if (options.outputBuffer * sound->sampleRate / options.outputRate < 1.0) {
        return refuse(u"--output-buffer and --output-rate ask for more than one point a frame"_s, usageError);
    }
    QString error;
    if (!decode(options, wav, *sound, error)) {
        return refuse(error, fileError);
    }
    return 0;
}
