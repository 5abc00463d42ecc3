// gramoscope-devices as a program: what it lists without a sound server, and what it refuses.

#include "support/testmain.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Run {
    int exitCode = -1;
    QString said;
    QString complaint;
};

QString program() {
    return QDir(QStringLiteral(GRAMO_BIN_DIR)).filePath(u"gramoscope-devices"_s);
}

Run devices(const QStringList& arguments, const QString& executable = program(),
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment()) {
    QProcess process;
    environment.insert(u"JACK_DEFAULT_SERVER"_s, u"no-such-server"_s);
    environment.insert(u"JACK_NO_START_SERVER"_s, u"1"_s);
    process.setProcessEnvironment(environment);
    process.start(executable, arguments);
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit) {
        return {};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

class tst_Devices : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void inputsOutputsAndMidiInputsHaveAHeadingEach() {
        const Run run = devices({});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.complaint, QString()); // whatever the libraries miss
        const QStringList lines = run.said.split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.count(u"inputs"_s), 1);
        QCOMPARE(lines.count(u"outputs"_s), 1);
        QVERIFY(lines.indexOf(u"inputs"_s) < lines.indexOf(u"outputs"_s));
        QCOMPARE(lines.count(u"MIDI inputs"_s), 1);
        QVERIFY(lines.indexOf(u"outputs"_s) < lines.indexOf(u"MIDI inputs"_s));
        for (const QString& line : lines) {
            QVERIFY2(line == u"inputs"_s || line == u"outputs"_s || line == u"MIDI inputs"_s ||
                         line.startsWith(u"  "_s),
                     qPrintable(line));
        }
    }

    void aListingMakesNoFolder_data() {
        QTest::addColumn<bool>("inTheWay");
        QTest::newRow("its own folder could be written") << false;
        QTest::newRow("its own folder can't be had") << true;
    }
    void aListingMakesNoFolder() {
        QFETCH(bool, inTheWay);
        QTemporaryDir place;
        const QString copy = place.filePath(u"gramoscope-devices"_s);
        QVERIFY(QFile::copy(program(), copy));
        QFile beside(place.filePath(u"AppData"_s));
        QVERIFY(!inTheWay || beside.open(QIODevice::WriteOnly));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, place.filePath(u"user"_s));
        const QStringList before = QDir(place.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        QCOMPARE(devices({}, copy, environment).exitCode, 0);
        QCOMPARE(QDir(place.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
    }

    void helpAndVersionAreAnsweredOnStdout() {
        const Run help = devices({u"--help"_s});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.said.contains(u"Gramo Scope"_s));
        const Run version = devices({u"--version"_s});
        QCOMPARE(version.exitCode, 0);
        QVERIFY(version.said.startsWith(u"gramoscope-devices "_s));
    }

    void anythingElseIsRefusedWithAMessage_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("an unknown option") << QStringList{u"--nonsense"_s};
        QTest::newRow("a file") << QStringList{u"file.wav"_s};
    }
    void anythingElseIsRefusedWithAMessage() {
        QFETCH(QStringList, arguments);
        const Run run = devices(arguments);
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.said, QString());
        QVERIFY(run.complaint.startsWith(u"gramoscope-devices: "_s));
        QCOMPARE(run.complaint.count(u'\n'), 1);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Devices)
#include "tst_devices.moc"
