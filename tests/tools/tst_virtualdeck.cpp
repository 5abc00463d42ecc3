// The program as its user meets it; what needs a JACK server is tested with the live tests.

#include "syntheticrecord.h"

#include "support/testmain.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Outcome {
    int code = -1;
    QByteArray out;
    QByteArray err;
};

Outcome deck(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral(GRAMO_BIN_DIR "/gramoscope-virtualdeck"), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray asBytes(const std::vector<std::int16_t>& samples) {
    QByteArray bytes(static_cast<qsizetype>(2 * samples.size()), '\0');
    for (std::size_t i = 0; i < samples.size(); ++i) {
        qToLittleEndian(samples[i], bytes.data() + 2 * i);
    }
    return bytes;
}

TimecodeDefinition rowNamed(const char* name) {
    for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
        if (def.name() == name) {
            return def;
        }
    }
    return {};
}

} // namespace

class tst_VirtualDeck : public QObject {
    Q_OBJECT
    QTemporaryDir m_folder;
    QString path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

private Q_SLOTS:
    void helpNamesEveryOptionAndEndsWithSuccess() {
        const Outcome o = deck({u"--help"_s});
        QCOMPARE(o.code, 0);
        for (const char* word : {"--timecode", "--pattern", "--fader", "--bpm", "--level", "--noise", "--dc",
                                 "--seed", "--server", "--seconds", "--wav", "--deck", "--rate", "crossfader",
                                 "scribble", "traktor_sideB"}) {
            QVERIFY2(o.out.contains(word), word);
        }
    }

    void versionIsTheProgramsOwn() {
        const Outcome o = deck({u"--version"_s});
        QCOMPARE(o.code, 0);
        QCOMPARE(o.out, "gramoscope-virtualdeck 2.6.5-2412\n"_ba);
    }

    void theWavFileHoldsTheLibrarysFrames_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("timecode");
        QTest::addColumn<int>("deckNumber");
        QTest::addColumn<int>("pattern");
        QTest::addColumn<double>("bpm");
        QTest::addColumn<double>("noise");
        QTest::addColumn<double>("dc");
        QTest::addColumn<int>("seed");
        QTest::addColumn<int>("rate");
        QTest::addColumn<double>("seconds");
        QTest::newRow("defaults") << QStringList{u"--seconds"_s, u"1"_s} << "generic_V2"_ba << 0
                                  << int(MotionPattern::Play) << 84.0 << 0.0 << 0.0 << 1 << 48000 << 1.0;
        QTest::newRow("deck A of two patterns")
            << u"--timecode traktor_sideA --pattern scribble,walk --bpm 100.5 --noise 1.5 --dc -77 --seed 9 "
               "--rate 44100 --seconds 2.5"_s.split(u' ')
            << "traktor_sideA"_ba << 0 << int(MotionPattern::Scribble) << 100.5 << 1.5 << -77.0 << 9 << 44100
            << 2.5;
        QTest::newRow("deck B of two patterns")
            << u"--timecode traktor_sideA --pattern scribble,walk --bpm 100.5 --noise 1.5 --dc -77 --seed 9 "
               "--rate 44100 --seconds 2.5 --deck B"_s.split(u' ')
            << "traktor_sideA"_ba << 1 << int(MotionPattern::Walk) << 100.5 << 1.5 << -77.0 << 10 << 44100
            << 2.5;
        QTest::newRow("deck B of one pattern")
            << u"--timecode serato_sideB_FullDVS --pattern flare --deck B --rate 96000 --seconds 0.5"_s.split(
                   u' ')
            << "serato_sideB_FullDVS"_ba << 1 << int(MotionPattern::Flare) << 84.0 << 0.0 << 0.0 << 2 << 96000
            << 0.5;
    }
    void theWavFileHoldsTheLibrarysFrames() {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, timecode);
        QFETCH(int, pattern);
        QFETCH(double, bpm);
        QFETCH(double, noise);
        QFETCH(double, dc);
        QFETCH(int, seed);
        QFETCH(int, rate);
        QFETCH(double, seconds);
        const QString file = path("deck.wav");
        const Outcome o = deck(arguments + QStringList{u"--wav"_s, file});
        QCOMPARE(o.code, 0);
        QVERIFY2(o.err.isEmpty(), o.err.constData());
        RecordOptions options;
        options.noisePercent = noise;
        options.dcOffset = dc;
        options.seed = static_cast<std::uint64_t>(seed);
        const SyntheticRecord record(rowNamed(timecode.constData()), rate,
                                     Motion(MotionPattern(pattern), bpm, Motion::defaultStart, options.seed),
                                     options);
        const auto frames = static_cast<std::size_t>(std::llround(seconds * rate));
        const QByteArray bytes = contents(file);
        QCOMPARE(bytes.size(), static_cast<qsizetype>(44 + 4 * frames));
        QCOMPARE(qFromLittleEndian<quint32>(bytes.constData() + 24), static_cast<quint32>(rate));
        QCOMPARE(qFromLittleEndian<quint32>(bytes.constData() + 40), static_cast<quint32>(4 * frames));
        QVERIFY(bytes.mid(44) == asBytes(record.render(0, frames)));
    }

    void theLevelIsThatOfTheCarrierAlone_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("level");
        QTest::addColumn<int>("highest");
        QTest::newRow("not given") << QString() << 0.5 << 16384;
        QTest::newRow("the lowest") << u"0.01"_s << 0.01 << 328;
        QTest::newRow("half") << u"0.5"_s << 0.5 << 16384;
        QTest::newRow("nearly full") << u"0.97"_s << 0.97 << 31785;
        QTest::newRow("twice full scale") << u"2.0"_s << 2.0 << 32767;
        QTest::newRow("the highest") << u"4"_s << 4.0 << 32767;
    }
    void theLevelIsThatOfTheCarrierAlone() {
        QFETCH(QString, text);
        QFETCH(double, level);
        QFETCH(int, highest);
        const QStringList given = text.isEmpty() ? QStringList() : QStringList{u"--level"_s, text};
        const QString file = path("level.wav");
        QCOMPARE(deck(u"--seconds 1 --wav"_s.split(u' ') + QStringList{file} + given).code, 0);
        RecordOptions options;
        options.level = level;
        const std::vector<std::int16_t> frames =
            SyntheticRecord(rowNamed("generic_V2"), 48000.0, Motion(), options).render(0, 48000);
        QVERIFY(contents(file).mid(44) == asBytes(frames));
        QCOMPARE(int{*std::max_element(frames.begin(), frames.end())}, highest);
        // Noise keeps its own measure.
        QCOMPARE(deck(u"--seconds 1 --noise 1 --wav"_s.split(u' ') + QStringList{file} + given).code, 0);
        options.noisePercent = 1.0;
        QVERIFY(
            contents(file).mid(44) ==
            asBytes(SyntheticRecord(rowNamed("generic_V2"), 48000.0, Motion(), options).render(0, 48000)));
    }

    void theFaderDoesntTouchTheSignal() {
        QCOMPARE(
            deck(u"--pattern baby --rate 8000 --seconds 1 --wav"_s.split(u' ') + QStringList{path("a.wav")})
                .code,
            0);
        const QByteArray plain = contents(path("a.wav"));
        QCOMPARE(plain.size(), 44 + 4 * 8000);
        for (const char* fader : {"pattern", "none", "chirp", "transform", "flare", "walk"}) {
            const Outcome o = deck(u"--pattern baby --rate 8000 --seconds 1 --wav"_s.split(u' ') +
                                   QStringList{path("b.wav"), u"--fader"_s, QString::fromLatin1(fader)});
            QCOMPARE(o.code, 0);
            QVERIFY2(contents(path("b.wav")) == plain, fader);
        }
    }

    void aFileWithoutALengthIsTenSeconds() {
        QCOMPARE(deck({u"--wav"_s, path("ten.wav"), u"--rate"_s, u"8000"_s}).code, 0);
        QCOMPARE(contents(path("ten.wav")).size(), 44 + 4 * 80000);
    }

    void badArgumentsAreRefused_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QByteArray>("word");
        const auto row = [](const char* title, const char* arguments, const char* word) {
            QTest::newRow(title) << QString::fromLatin1(arguments) << QByteArray(word);
        };
        row("unknown timecode", "--timecode serato_sideA", "serato_sideA");
        row("empty timecode", "--timecode=", "timecode");
        row("unknown pattern", "--pattern baby,foo", "foo");
        row("three patterns", "--pattern baby,baby,baby", "--pattern");
        row("unknown fader", "--fader baby", "--fader");
        row("empty fader", "--fader=", "--fader");
        row("fader in capitals", "--fader Chirp", "--fader");
        row("two faders", "--fader chirp,flare", "--fader");
        row("missing fader", "--fader", "fader");
        row("missing pattern", "--pattern baby,", "pattern");
        row("tempo too low", "--bpm 19", "--bpm");
        row("tempo too high", "--bpm 401", "--bpm");
        row("tempo no number", "--bpm fast", "--bpm");
        row("tempo not a number", "--bpm nan", "--bpm");
        row("tempo infinite", "--bpm inf", "--bpm");
        row("level no number", "--level loud", "--level");
        row("level not a number", "--level nan", "--level");
        row("level infinite", "--level inf", "--level");
        row("level zero", "--level 0", "--level");
        row("level below 0", "--level -0.5", "--level");
        row("level too low", "--level 0.009", "--level");
        row("level too high", "--level 4.01", "--level");
        row("level with a comma", "--level 0,5", "--level");
        row("empty level", "--level=", "--level");
        row("missing level", "--level", "level");
        row("noise below 0", "--noise -1", "--noise");
        row("noise above 100", "--noise 101", "--noise");
        row("offset beyond 16 bits", "--dc 32768", "--dc");
        row("negative seed", "--seed -1", "--seed");
        row("seed beyond 32 bits", "--seed 4294967296", "--seed");
        row("fractional seed", "--seed 1.5", "--seed");
        row("no time", "--seconds 0", "--seconds");
        row("negative time", "--seconds -3", "--seconds");
        row("rate without a file", "--rate 48000", "--rate");
        row("deck without a file", "--deck A", "--deck");
        row("rate too low", "--wav x.wav --rate 7999", "--rate");
        row("rate too high", "--wav x.wav --rate 192001", "--rate");
        row("a third deck", "--wav x.wav --deck C", "--deck");
        row("a file and a server", "--wav x.wav --server default", "--server");
        row("a file without a name", "--wav ", "--wav takes");
        row("unknown option", "--loud", "loud");
        row("missing value", "--bpm", "bpm");
        row("stray word", "baby", "baby");
    }
    void badArgumentsAreRefused() {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, word);
        const Outcome o = deck(arguments.split(u' '));
        QCOMPARE(o.code, 2);
        QVERIFY2(o.err.contains(word), o.err.constData());
        QVERIFY(o.out.isEmpty());
    }

    void aFileThatCannotBeWrittenIsReported() {
        for (const QString& file : {path("no/such/folder.wav"), m_folder.path(), u"/dev/full"_s}) {
            const Outcome o = deck({u"--seconds"_s, u"1"_s, u"--wav"_s, file});
            QCOMPARE(o.code, 1);
            QVERIFY2(o.err.contains(file.toUtf8()), o.err.constData());
        }
    }

    void aMissingServerIsReported() {
        const Outcome o = deck({u"--server"_s, u"no-such-server-here"_s});
        QCOMPARE(o.code, 1);
        QVERIFY2(o.err.contains("no-such-server-here"), o.err.constData());
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_VirtualDeck)
#include "tst_virtualdeck.moc"
