// gramoscope-decode as a program: records of known truth go in as files, and the curve files that come out
// are held against that truth.

#include "external/code/timecoder.h"
#include "support/decoderrun.h"
#include "support/testmain.h"
#include "syntheticrecord.h"
#include "wavefilewriter.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Point {
    qint32 time = 0;
    double position = 0.0;
    double rawAngle = 0.0;
    qint16 direction = 0;
    bool soundOn = false;
};

struct Decoded {
    int exitCode = -1;
    QString said;
    QString complaint;
    qint32 bpm = 0;
    std::vector<Point> points;

    qint64 number(const QString& what) const {
        const auto match = QRegularExpression(what + u" (?:at frame )?(-?\\d+)"_s).match(said);
        return match.hasMatch() ? match.captured(1).toLongLong() : -1;
    }
    double pitch() const {
        return QRegularExpression(u"final pitch (\\S+)"_s).match(said).captured(1).toDouble();
    }
};

constexpr qint16 forwardInFile = 1;
constexpr qint16 backwardInFile = 0;

} // namespace

class tst_Decode : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

    static QString program() { return QDir(QStringLiteral(GRAMO_BIN_DIR)).filePath(u"gramoscope-decode"_s); }
    QString in() const { return m_dir.filePath(u"in.wav"_s); }
    QString out() const { return m_dir.filePath(u"out.grw"_s); }

    Decoded run(const QStringList& arguments, const QString& executable = program(),
                const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment()) const {
        Decoded decoded;
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(executable, arguments);
        if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit) {
            process.kill();
            process.waitForFinished();
            return decoded;
        }
        decoded.exitCode = process.exitCode();
        decoded.said = QString::fromUtf8(process.readAllStandardOutput());
        decoded.complaint = QString::fromUtf8(process.readAllStandardError());
        return decoded;
    }

    bool write(const std::vector<std::int16_t>& frames, std::uint32_t rate) const {
        WaveFileWriter writer;
        return writer.open(in().toStdString(), rate) && writer.write(frames.data(), frames.size() / 2) &&
               writer.close();
    }

    Decoded decode(const QString& timecode, const std::vector<std::int16_t>& frames, std::uint32_t rate,
                   const QStringList& more = {}) const {
        QFile::remove(out());
        if (!write(frames, rate)) {
            return {};
        }
        Decoded decoded = run(QStringList{u"--timecode"_s, timecode, in(), out()} + more);
        QFile file(out());
        if (file.open(QIODevice::ReadOnly)) {
            QDataStream stream(file.readAll());
            stream.setByteOrder(QDataStream::LittleEndian);
            qint32 count = 0;
            stream >> decoded.bpm >> count;
            for (qint32 i = 0; i < count; ++i) {
                Point point;
                stream >> point.time >> point.position >> point.rawAngle >> point.direction >> point.soundOn;
                decoded.points.push_back(point);
            }
        }
        return decoded;
    }

    static std::vector<std::int16_t> record(const TimecodeDefinition& def, double rate, double speed,
                                            double seconds, const RecordOptions& options = {}) {
        const SyntheticRecord source(def, rate, Motion::constant(speed), options);
        return source.render(0, static_cast<std::size_t>(seconds * rate));
    }

    // Position units a second over the second half of the curve.
    static double slope(const Decoded& decoded, double rate) {
        const Point& middle = decoded.points[decoded.points.size() / 2];
        const Point& last = decoded.points.back();
        return (last.position - middle.position) / ((last.time - middle.time) / rate);
    }
    // What a second at `speed` adds by the decoder's scale.
    static double trueSlope(const TimecodeDefinition& def, double rate, double speed) {
        const double dt = 1.0 / rate;
        return dt / (dt + 0.001) * rate * speed * (def.resolution() == 2000 ? 2.0 : 1.0);
    }
    static bool allPointTo(const Decoded& decoded, qint16 direction) {
        for (std::size_t i = decoded.points.size() / 2; i < decoded.points.size(); ++i) {
            if (decoded.points[i].direction != direction) {
                return false;
            }
        }
        return true;
    }

private Q_SLOTS:
    void everyTimecodeRateSpeedAndDirectionFollowsTheTruth_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<int>("rate");
        for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
            for (const int rate : {44100, 48000, 96000}) {
                QTest::addRow("%s, %d", def.name().c_str(), rate)
                    << QByteArray::fromStdString(def.name()) << rate;
            }
        }
    }
    void everyTimecodeRateSpeedAndDirectionFollowsTheTruth() {
        QFETCH(QByteArray, name);
        QFETCH(int, rate);
        const TimecodeDefinition& def = builtRow(name.toStdString());
        for (const double size : {0.05, 0.3, 1.0, 2.5, 8.0}) {
            for (const double speed : {size, -size}) {
                const double hertz = size * def.resolution();
                const auto frames = record(def, rate, speed, std::max(1.2, 100.0 / hertz));
                const Decoded decoded = decode(QString::fromLatin1(name), frames, std::uint32_t(rate));
                const QByteArray what = QByteArray::number(speed) + ": " + decoded.said.toUtf8();
                QCOMPARE(decoded.exitCode, 0);
                QVERIFY2(decoded.points.size() > 500, what);
                QVERIFY2((decoded.pitch() > 0) == (speed > 0), what);
                QVERIFY2((slope(decoded, rate) > 0) == (speed > 0), what);
                if (4.0 * hertz < rate) {
                    // Below a quarter of the frame rate every crossing has a frame of its own.
                    QVERIFY2(allPointTo(decoded, speed > 0 ? forwardInFile : backwardInFile), what);
                    // The last value alone, with the ripple that few crossings leave on it.
                    QVERIFY2(std::abs(decoded.pitch() / speed - 1.0) < 0.1, what);
                    QVERIFY2(std::abs(slope(decoded, rate) / trueSlope(def, rate, speed) - 1.0) < 0.02, what);
                }
            }
        }
    }

    void aPositionLocksAfterTheTwentyFifthAgreeingBitAndNotBefore_data() {
        everyTimecodeRateSpeedAndDirectionFollowsTheTruth_data();
    }
    void aPositionLocksAfterTheTwentyFifthAgreeingBitAndNotBefore() {
        QFETCH(QByteArray, name);
        QFETCH(int, rate);
        const TimecodeDefinition& def = builtRow(name.toStdString());
        for (const double speed : {1.0, -1.0}) {
            const auto frames = record(def, rate, speed, 1.0);
            const Decoded decoded = decode(QString::fromLatin1(name), frames, std::uint32_t(rate));
            // The decoder fed by hand. While the reference level falls, all bits read as 0; that register
            // agrees with itself and is no place on the record, so it doesn't count as a lock.
            Timecoder tc;
            timecoderInit(tc, &def, unsigned(rate), false);
            qint64 agreed = -1;
            for (std::size_t i = 0; i < frames.size() / 2 && agreed < 0; ++i) {
                timecoderSubmit(tc, &frames[2 * i], 1);
                if (timecoderGetPosition(tc, nullptr) != -1) {
                    agreed = qint64(i);
                    QCOMPARE(tc.validCounter, 25U);
                }
            }
            QVERIFY(agreed > 0);
            QCOMPARE(decoded.number(u"first valid code"_s), agreed);
        }
    }

    void itSaysFramesAndPointsAndTheTempoIsInTheFile() {
        const TimecodeDefinition& def = builtRow("generic_V2");
        const Decoded decoded = decode(u"generic_V2"_s, record(def, 48000, 1.0, 1.0), 48000);
        QCOMPARE(decoded.number(u"frames"_s), 48000);
        QCOMPARE(decoded.number(u"points"_s), 750);
        QCOMPARE(decoded.points.size(), 750U);
        QCOMPARE(decoded.bpm, 84);
        for (std::size_t i = 0; i < decoded.points.size(); ++i) {
            QCOMPARE(decoded.points[i].time, qint32(64 * i));
            QVERIFY(decoded.points[i].soundOn); // the fader stands in the middle
        }
    }

    void bufferRateAndTempoSetTheStepAndTheHeader() {
        const TimecodeDefinition& def = builtRow("generic_V2");
        const Decoded decoded =
            decode(u"generic_V2"_s, record(def, 44100, 1.0, 1.0), 44100,
                   {u"--output-buffer"_s, u"128"_s, u"--output-rate"_s, u"48000"_s, u"--bpm"_s, u"92.7"_s});
        QCOMPARE(decoded.bpm, 92);
        double next = 0.0; // a fractional step: the frame of a point is the truncated running sum
        for (const Point& point : decoded.points) {
            QCOMPARE(point.time, qint32(next));
            next += 128.0 * 44100 / 48000;
        }
        QVERIFY(decoded.points.size() > 370);
    }

    void silenceHasNoCodeNoSpeedAndAFlatCurve() {
        const Decoded decoded = decode(u"generic_V2"_s, std::vector<std::int16_t>(2 * 48000, 0), 48000);
        QCOMPARE(decoded.exitCode, 0);
        QVERIFY(decoded.said.contains(u"first valid code none"_s));
        QCOMPARE(decoded.pitch(), 0.0);
        for (const Point& point : decoded.points) {
            QCOMPARE(point.position, 0.0);
        }
    }

    void dcBelowTheThresholdCrossesNothingAndTheSignalIsReadBesideIt() {
        const Decoded still = decode(u"generic_V2"_s, std::vector<std::int16_t>(2 * 48000, 120), 48000);
        QCOMPARE(still.pitch(), 0.0);
        QCOMPARE(still.points.back().position, 0.0);
        RecordOptions options;
        options.dcOffset = 120;
        const TimecodeDefinition& def = builtRow("generic_V2");
        const Decoded decoded = decode(u"generic_V2"_s, record(def, 48000, 1.0, 2.0, options), 48000);
        QVERIFY(std::abs(decoded.pitch() - 1.0) < 0.05);
        QVERIFY(decoded.number(u"first valid code"_s) > 0);
    }

    void dcAboveTheThresholdIsAbsorbedByTheZeroLine() {
        RecordOptions options;
        options.dcOffset = 4000;
        for (const char* name : {"generic_V2", "traktor_sideA"}) {
            const TimecodeDefinition& def = builtRow(name);
            const Decoded decoded =
                decode(QString::fromLatin1(name), record(def, 48000, -1.0, 2.0, options), 48000);
            QVERIFY(std::abs(decoded.pitch() + 1.0) < 0.05);
            QVERIFY(decoded.number(u"first valid code"_s) > 0);
        }
    }

    void swappedChannelsReverseTheDirection() {
        RecordOptions options;
        options.swapChannels = true;
        const TimecodeDefinition& def = builtRow("generic_V2");
        const Decoded decoded = decode(u"generic_V2"_s, record(def, 48000, 1.0, 2.0, options), 48000);
        QVERIFY(decoded.pitch() < -0.9);
        QVERIFY(allPointTo(decoded, backwardInFile));
    }

    void fullScaleClippingKeepsSpeedAndDirection() {
        RecordOptions options;
        options.gain = 8.0;
        for (const char* name : {"generic_V2", "traktor_sideB"}) {
            const TimecodeDefinition& def = builtRow(name);
            const Decoded decoded =
                decode(QString::fromLatin1(name), record(def, 48000, -1.0, 2.0, options), 48000);
            QVERIFY(std::abs(decoded.pitch() + 1.0) < 0.05);
            QVERIFY(allPointTo(decoded, backwardInFile));
        }
    }

    void onePercentOfNoiseIsReadThrough() {
        RecordOptions options;
        options.noisePercent = 1.0;
        for (const double speed : {1.0, -1.0, 0.3}) {
            const TimecodeDefinition& def = builtRow("serato_sideB_FullDVS");
            const Decoded decoded =
                decode(u"serato_sideB_FullDVS"_s, record(def, 48000, speed, 2.5, options), 48000);
            QVERIFY(std::abs(slope(decoded, 48000) / trueSlope(def, 48000, speed) - 1.0) < 0.03);
            QVERIFY(decoded.number(u"first valid code"_s) > 0);
        }
    }

    void fiftyHertzHumIsReadThrough() {
        RecordOptions options;
        options.humLevel = 0.02;
        for (const double speed : {1.0, -1.0}) {
            const TimecodeDefinition& def = builtRow("generic_V2");
            const Decoded decoded = decode(u"generic_V2"_s, record(def, 48000, speed, 2.5, options), 48000);
            QVERIFY(std::abs(slope(decoded, 48000) / trueSlope(def, 48000, speed) - 1.0) < 0.03);
            QVERIFY(decoded.number(u"first valid code"_s) > 0);
        }
    }

    void aFileWithOtherChunksIsReadAllTheSame() {
        const TimecodeDefinition& def = builtRow("generic_V2");
        const auto frames = record(def, 48000, 1.0, 1.0);
        const Decoded plain = decode(u"generic_V2"_s, frames, 48000);
        QFile file(in());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray bytes = file.readAll();
        file.close();
        bytes.insert(36, QByteArray("LIST\x05\0\0\0INFOx\0", 14)); // odd size, so one byte of padding
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        const Decoded again = run({u"--timecode"_s, u"generic_V2"_s, in(), out()});
        QCOMPARE(again.exitCode, 0);
        QCOMPARE(again.said, plain.said);
    }

    void whatIsWrongIsRefusedAndNothingIsWritten_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("file");
        const QByteArray good(
            "RIFF\x2c\0\0\0WAVEfmt \x10\0\0\0\1\0\2\0\x80\xbb\0\0\0\xee\2\0\4\0\x10\0data\x08\0\0\0"
            "\1\0\2\0\3\0\4\0",
            52);
        QByteArray mono = good;
        mono[22] = 1;
        QByteArray deep = good;
        deep[34] = 24;
        QByteArray floats = good;
        floats[20] = 3;
        const QStringList generic{u"--timecode"_s, u"generic_V2"_s};
        const QStringList files{u"IN"_s, u"OUT"_s};
        QTest::newRow("an unknown timecode")
            << QStringList{u"--timecode"_s, u"serato_sideA"_s} + files << good;
        QTest::newRow("no timecode") << files << good;
        QTest::newRow("no output") << generic + QStringList{u"IN"_s} << good;
        QTest::newRow("no such input") << generic + QStringList{u"IN.no"_s, u"OUT"_s} << good;
        QTest::newRow("mono") << generic + files << mono;
        QTest::newRow("24 bit") << generic + files << deep;
        QTest::newRow("floating point") << generic + files << floats;
        QTest::newRow("no RIFF file")
            << generic + files << QByteArray("a text that is no sound at all, but long");
        QTest::newRow("an empty file") << generic + files << QByteArray();
        QTest::newRow("a header cut short") << generic + files << good.left(30);
        QTest::newRow("no data chunk") << generic + files << good.left(36);
        QTest::newRow("an output in no folder") << generic + QStringList{u"IN"_s, u"NOWHERE"_s} << good;
        QTest::newRow("the input as output") << generic + QStringList{u"IN"_s, u"IN"_s} << good;
        QTest::newRow("a buffer of 0") << generic + files + QStringList{u"--output-buffer"_s, u"0"_s} << good;
        QTest::newRow("a rate of nan") << generic + files + QStringList{u"--output-rate"_s, u"nan"_s} << good;
        QTest::newRow("more points than frames")
            << generic + files + QStringList{u"--output-buffer"_s, u"1"_s, u"--output-rate"_s, u"384000"_s}
            << good;
        QTest::newRow("an output without a name") << generic + QStringList{u"IN"_s, QString()} << good;
        QTest::newRow("an unknown option") << generic + files + QStringList{u"--faster"_s} << good;
        QTest::newRow("a tempo in words") << generic + files + QStringList{u"--bpm"_s, u"fast"_s} << good;
    }
    void whatIsWrongIsRefusedAndNothingIsWritten() {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, file);
        QFile::remove(out());
        QFile wav(in());
        QVERIFY(wav.open(QIODevice::WriteOnly));
        wav.write(file);
        wav.close();
        arguments.replaceInStrings(QRegularExpression(u"^IN(\\.no)?$"_s), in() + u"\\1"_s);
        arguments.replaceInStrings(QRegularExpression(u"^OUT$"_s), out());
        arguments.replaceInStrings(QRegularExpression(u"^NOWHERE$"_s), m_dir.filePath(u"no/such/out.grw"_s));
        const Decoded decoded = run(arguments);
        QVERIFY2(decoded.exitCode > 0, qPrintable(decoded.said));
        QVERIFY2(decoded.complaint.startsWith(u"gramoscope-decode: "_s), qPrintable(decoded.complaint));
        QCOMPARE(decoded.complaint.trimmed().count(u'\n'), 0);
        QVERIFY(!QFile::exists(out()));
        QVERIFY(wav.open(QIODevice::ReadOnly));
        QCOMPARE(wav.readAll(), file);
    }

    void theInputIsNeverOverwritten_data() {
        QTest::addColumn<QString>("output");
        QTest::newRow("its own name") << u"in.wav"_s;
        QTest::newRow("a hard link to it") << u"hard.grw"_s;
        QTest::newRow("a symbolic link to it") << u"soft.grw"_s;
        QTest::newRow("another way to it") << u"way/in.wav"_s;
    }
    void theInputIsNeverOverwritten() {
        QFETCH(QString, output);
        QTemporaryDir folder;
        const QString wav = folder.filePath(u"in.wav"_s);
        QVERIFY(write(record(builtRow("generic_V2"), 48000, 1.0, 0.2), 48000));
        QVERIFY(QFile::copy(in(), wav));
        QCOMPARE(link(qPrintable(wav), qPrintable(folder.filePath(u"hard.grw"_s))), 0);
        QVERIFY(QFile::link(wav, folder.filePath(u"soft.grw"_s)));
        QVERIFY(QFile::link(folder.path(), folder.filePath(u"way"_s)));
        const Decoded decoded = run({u"--timecode"_s, u"generic_V2"_s, wav, folder.filePath(output)});
        QCOMPARE(decoded.exitCode, 1);
        QVERIFY2(decoded.complaint.startsWith(u"gramoscope-decode: "_s), qPrintable(decoded.complaint));
        QFile before(in());
        QFile after(wav);
        QVERIFY(before.open(QIODevice::ReadOnly) && after.open(QIODevice::ReadOnly));
        QVERIFY(before.readAll() == after.readAll());
    }

    void anInputThatIsNoFileIsRefusedAtOnce_data() {
        QTest::addColumn<QString>("input");
        QTest::newRow("a pipe that nobody writes to") << u"pipe"_s;
        QTest::newRow("a folder") << u"."_s;
        QTest::newRow("a device") << u"/dev/zero"_s;
    }
    void anInputThatIsNoFileIsRefusedAtOnce() {
        QFETCH(QString, input);
        QTemporaryDir folder;
        QCOMPARE(mkfifo(qPrintable(folder.filePath(u"pipe"_s)), 0600), 0);
        QFile::remove(out());
        const QString wav = QDir(folder.path()).absoluteFilePath(input);
        const Decoded decoded = run({u"--timecode"_s, u"generic_V2"_s, wav, out()});
        QVERIFY2(decoded.complaint.contains(u"is no file"_s), qPrintable(decoded.complaint));
        QCOMPARE(decoded.exitCode, 1);
        QVERIFY(!QFile::exists(out()));
    }

    void withoutATemporaryFolderNothingIsWritten() {
        // A copy, with room for an "AppData" beside it.
        QTemporaryDir place;
        const QString copy = place.filePath(u"gramoscope-decode"_s);
        QVERIFY(QFile::copy(program(), copy));
        QVERIFY(write(record(builtRow("generic_V2"), 48000, 1.0, 0.2), 48000));
        QFile::remove(out());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TMPDIR"_s, u"/proc"_s); // nobody makes a folder there, not even root
        environment.insert(u"XDG_DATA_HOME"_s, place.filePath(u"user"_s));
        const Decoded decoded = run({u"--timecode"_s, u"generic_V2"_s, in(), out()}, copy, environment);
        QCOMPARE(decoded.exitCode, 1);
        QVERIFY2(decoded.complaint.startsWith(u"gramoscope-decode: "_s), qPrintable(decoded.complaint));
        QVERIFY(!QFile::exists(out()));
        QCOMPARE(QDir(place.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList(u"gramoscope-decode"_s));
    }

    void aFileCutShortIsDecodedAsFarAsItGoes() {
        const TimecodeDefinition& def = builtRow("generic_V2");
        QVERIFY(write(record(def, 48000, 1.0, 1.0), 48000));
        QVERIFY(QFile::resize(in(), 44 + 4 * 12000 + 3));
        const Decoded decoded = run({u"--timecode"_s, u"generic_V2"_s, in(), out()});
        QCOMPARE(decoded.exitCode, 0);
        QCOMPARE(decoded.number(u"frames"_s), 12000);
    }

    void theUsersSettingsAreLeftAlone() {
        const QString config = QDir(QStringLiteral(GRAMO_BIN_DIR)).filePath(u"AppData/Input/config.ini"_s);
        const bool existed = QFile::exists(config);
        const QDateTime before = QFileInfo(config).lastModified();
        const TimecodeDefinition& def = builtRow("traktor_sideA");
        QCOMPARE(decode(u"traktor_sideA"_s, record(def, 48000, 1.0, 0.2), 48000).exitCode, 0);
        QCOMPARE(QFile::exists(config), existed);
        QCOMPARE(QFileInfo(config).lastModified(), before);
    }

    void nothingIsLeftBehind() {
        const QString pattern = u"gramoscope-decode-*"_s;
        const QStringList before = QDir::temp().entryList({pattern}, QDir::Dirs);
        const TimecodeDefinition& def = builtRow("traktor_sideA");
        QCOMPARE(decode(u"traktor_sideA"_s, record(def, 48000, 1.0, 0.2), 48000).exitCode, 0);
        QCOMPARE(QDir::temp().entryList({pattern}, QDir::Dirs), before);
    }

    void helpAndVersionEndWithZero() {
        QCOMPARE(run({u"--help"_s}).exitCode, 0);
        QVERIFY(run({u"--help"_s}).said.contains(u"--timecode"_s));
        QVERIFY(run({u"--version"_s}).said.contains(u"2.6.5-2412"_s));
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Decode)
#include "tst_decode.moc"
