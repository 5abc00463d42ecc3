#pragma once
// Real parts for the live tests: a JACK server of the test's own on its dummy driver, and virtual decks.

#include "support/tiedprocess.h"

#include <QDir>
#include <QElapsedTimer>
#include <QString>
#include <QStringList>
#include <QTest>

#include <memory>

/// Whether a JACK server of this name runs.
inline bool serverAnswers(const QString& name) {
    TiedProcess probe;
    probe.start(QStringLiteral("jack_wait"), {QStringLiteral("-c"), QStringLiteral("-s"), name});
    return probe.waitForFinished(5000) && probe.readAllStandardOutput().startsWith("running");
}

/// `jackd -d dummy` at 48000 Hz under a name that no other living server has, which this process and its
/// children use until it stops.
class JackServer {
public:
    static constexpr int rate = 48000;
    /// Frames that the server hands over at once. The library below the program cuts them into the program's
    /// own 64; a server at 64 loses time whenever the machine stalls for a millisecond.
    static constexpr int usualPeriod = 1024;

    explicit JackServer(int period = usualPeriod) : m_period(period) {}
    ~JackServer() { stop(); }

    /// False if no server comes up within ten seconds.
    bool start() {
        for (const QString& mode : {QStringLiteral("-R"), QStringLiteral("-r")}) {
            m_process = std::make_unique<TiedProcess>();
            m_process->setProcessChannelMode(QProcess::MergedChannels);
            m_process->start(
                QDir(QStringLiteral(GRAMO_TEST_DIR)).filePath(QStringLiteral("../tools/rig/jackserver.sh")),
                {QStringLiteral("gramoscope-test"), QString::number(m_period), mode});
            if (m_process->waitForStarted() && waitNamed() && waitRunning()) {
                m_before = qgetenv("JACK_DEFAULT_SERVER");
                qputenv("JACK_DEFAULT_SERVER", m_name.toUtf8());
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
            forget();
        }
    }
    /// As a crash would.
    void kill() {
        m_process->kill();
        m_process->waitForFinished(5000);
        forget();
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
    int period() const { return m_period; }
    const QString& name() const { return m_name; }

private:
    void forget() {
        m_process.reset();
        if (qgetenv("JACK_DEFAULT_SERVER") == m_name.toUtf8()) {
            qputenv("JACK_DEFAULT_SERVER", m_before);
        }
    }
    bool alive() const { return m_process->state() == QProcess::Running; }
    bool waitNamed() {
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < 10000 && (alive() || m_process->canReadLine())) {
            if (m_process->canReadLine()) {
                const QByteArray line = m_process->readLine().trimmed();
                m_name = QString::fromUtf8(line.mid(int(sizeof "server " - 1)));
                return line.startsWith("server ");
            }
            m_process->waitForReadyRead(100);
        }
        return false;
    }
    bool waitRunning() const {
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < 10000 && alive()) {
            if (serverAnswers(m_name)) {
                return alive();
            }
            QTest::qWait(50);
        }
        return false;
    }

    int m_period;
    QString m_name;
    QByteArray m_before; // the server that this process used until then
    std::unique_ptr<TiedProcess> m_process;
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
    qint64 pid() const { return m_process.processId(); }
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
    TiedProcess m_process;
    QString m_said;
};
