#pragma once
// Real parts for the live tests: a JACK server of the test's own on its dummy driver, and virtual decks.

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTest>

#include <memory>

/// `jackd -d dummy` at 48000 Hz and 64 frames under a name of its own, which this process and its children
/// use from then on.
class JackServer {
public:
    static constexpr int rate = 48000;
    static constexpr int period = 64;

    explicit JackServer(
        const QString& name = QStringLiteral("gramoscope-test-%1").arg(QCoreApplication::applicationPid()))
        : m_name(name) {}
    ~JackServer() { stop(); }

    /// False if no server comes up within ten seconds.
    bool start() {
        // Once: from the first server on this process has the register mapped, and would go on with a deleted
        // one.
        [[maybe_unused]] static const bool forgotten = (forgetDeadServers(), true);
        qputenv("JACK_DEFAULT_SERVER", m_name.toUtf8());
        qputenv("JACK_NO_AUDIO_RESERVATION", "1");
        for (const QString& mode : {QStringLiteral("-R"), QStringLiteral("-r")}) {
            m_process = std::make_unique<QProcess>();
            m_process->setProcessChannelMode(QProcess::MergedChannels);
            m_process->start(QStringLiteral("jackd"),
                             {mode, QStringLiteral("-n"), m_name, QStringLiteral("-d"),
                              QStringLiteral("dummy"), QStringLiteral("-r"), QString::number(rate),
                              QStringLiteral("-p"), QString::number(period)});
            if (m_process->waitForStarted() && waitRunning()) {
                return true;
            }
            stop();
        }
        return false;
    }
    void stop() {
        if (m_process) {
            m_process->terminate();
            if (!m_process->waitForFinished(5000)) {
                m_process->kill();
                m_process->waitForFinished(5000);
            }
            m_process.reset();
        }
    }
    /// As a crash would.
    void kill() {
        m_process->kill();
        m_process->waitForFinished(5000);
        m_process.reset();
    }
    /// Periods that the server says it has skipped, or in which a client was late, since the last call.
    int reportedSkips() {
        if (!m_process) {
            return 0;
        }
        QTest::qWait(200);
        const QString said = QString::fromUtf8(m_process->readAll());
        if (qEnvironmentVariableIsSet("GRAMO_TEST_VERBOSE")) {
            qInfo("%s", qPrintable(said));
        }
        return int(said.count(QLatin1StringView("XRun"), Qt::CaseInsensitive));
    }
    qint64 pid() const { return m_process ? m_process->processId() : 0; }
    const QString& name() const { return m_name; }

private:
    bool waitRunning() const {
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < 10000 && m_process->state() == QProcess::Running) {
            QProcess probe;
            probe.start(QStringLiteral("jack_wait"), {QStringLiteral("-c"), QStringLiteral("-s"), m_name});
            if (probe.waitForFinished(3000) && probe.readAllStandardOutput().startsWith("running")) {
                return true;
            }
            QTest::qWait(50);
        }
        return false;
    }

    /// JACK's register of servers has eight places, and one that was killed keeps its own: after a few
    /// crashes no server would start any more. While none runs the register is put away.
    static void forgetDeadServers() {
        const QDir processes(QStringLiteral("/proc"));
        for (const QString& process : processes.entryList({QStringLiteral("[0-9]*")}, QDir::Dirs)) {
            QFile name(processes.filePath(process + QStringLiteral("/comm")));
            if (name.open(QIODevice::ReadOnly) && name.readAll().trimmed() == "jackd") {
                return;
            }
        }
        QDir memory(QStringLiteral("/dev/shm"));
        for (const QString& file : memory.entryList({QStringLiteral("jack-*"), QStringLiteral("jack_*")},
                                                    QDir::Files | QDir::System)) {
            memory.remove(file);
        }
    }

    QString m_name;
    std::unique_ptr<QProcess> m_process;
};

/// One gramoscope-virtualdeck. The same arguments make the same signal as a file.
class VirtualDeck {
public:
    explicit VirtualDeck(QStringList arguments) : m_arguments(std::move(arguments)) {}
    ~VirtualDeck() { stop(); }

    bool start() {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(program(), m_arguments);
        return m_process.waitForStarted() && m_process.waitForReadyRead(10000);
    }
    /// Ends the deck and returns what it said.
    QString stop() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.terminate();
            if (!m_process.waitForFinished(5000)) {
                m_process.kill();
                m_process.waitForFinished(5000);
            }
        }
        m_said += QString::fromUtf8(m_process.readAll());
        return m_said;
    }
    /// Writes the first `seconds` of deck 'A' or 'B' to `file`.
    bool write(QChar deck, int seconds, const QString& file) const {
        return QProcess::execute(program(), m_arguments + QStringList{QStringLiteral("--wav"), file,
                                                                      QStringLiteral("--deck"), QString(deck),
                                                                      QStringLiteral("--seconds"),
                                                                      QString::number(seconds)}) == 0;
    }

    static QString program() {
        return QDir(QStringLiteral(GRAMO_BIN_DIR)).filePath(QStringLiteral("gramoscope-virtualdeck"));
    }

private:
    QStringList m_arguments;
    QProcess m_process;
    QString m_said;
};
