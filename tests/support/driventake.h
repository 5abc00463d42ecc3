#pragma once
// A recorded session of any length through the driven callback, and the judgement on what it left behind.

#include "model/modelgraph.h"
#include "support/drivendecks.h"

#include <QDataStream>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <ctime>

/// Two decks at 48000 Hz, a buffer of 64 frames at a time, housekeeping every 200 ms of simulated time.
class DrivenTake {
public:
    static constexpr double rate = 48000.0;
    static constexpr std::size_t bufferFrames = 64;
    static constexpr std::size_t chunkFrames = 9600; ///< 200 ms

    explicit DrivenTake(std::uint64_t seconds)
        : frames(seconds * 48000)
        , m_recordA(definitionNamed(setup().timecode), rate, Motion(MotionPattern::Walk, 90.0, 60.0, 5))
        , m_recordB(definitionNamed(setup().timecode), rate, Motion(MotionPattern::Baby)) {
        decks.state.master.served = false;
    }

    /// Plays the whole session.
    void play() {
        m_residentBefore = residentBytes();
        m_durations.reserve(frames / bufferFrames);
        for (std::uint64_t at = 0; at < frames; at += chunkFrames) {
            const std::vector<std::int16_t> chunk =
                streamFrames(setup(), m_recordA, m_recordB, at, chunkFrames);
            for (std::size_t i = 0; i < chunkFrames; i += bufferFrames) {
                const double before = processorUs();
                processInput(decks.state, chunk.data() + i * setup().channels, bufferFrames);
                m_durations.push_back(static_cast<float>(processorUs() - before));
            }
            decks.housekeeping();
        }
        m_residentAfter = residentBytes();
        decks.stop();
    }

    /// Nothing was lost, and memory holds the takes, the points and little else.
    void checkStores() {
        QCOMPARE(decks.overflows(), std::uint64_t{0});
        const auto points = static_cast<std::size_t>((frames + bufferFrames - 1) / bufferFrames);
        QCOMPARE(decks.takeA.samples().size(), frames * 2);
        QCOMPARE(decks.takeB.samples().size(), frames * 2);
        QCOMPARE(decks.pointsA.size(), points);
        QCOMPARE(decks.pointsB.size(), points);
        const double held = 2.0 * double(frames) * 4 + 2.0 * double(points) * sizeof(CurvePoint) +
                            double(m_durations.size()) * sizeof(float);
        const double taken = double(m_residentAfter) - double(m_residentBefore);
        qInfo("%.1f MB of takes, points and measurements, memory grew by %.1f MB", held / 1e6, taken / 1e6);
        constexpr double ahead = 150e6; // blocks and points made ahead of need
        QCOMPARE_LE(taken, held * 1.1 + ahead);
    }

    /// Both takes as files: their size, their header, and frames at the ends, at block borders and anywhere.
    void checkWaves() {
        checkWave(decks.takeA, decks.sampleA, m_recordA);
        checkWave(decks.takeB, decks.sampleB, m_recordB);
    }

    /// Both curves as files: complete, a point every curve step.
    void checkCurves() {
        checkCurve(decks.curveA);
        checkCurve(decks.curveB);
    }

    /// The longest callback next to the usual one. It is told, not judged: another process may have been at
    /// work.
    void tellDurations() {
        std::vector<float> sorted = m_durations;
        std::sort(sorted.begin(), sorted.end());
        const float median = sorted[sorted.size() / 2];
        const float rare = sorted[sorted.size() - 1 - sorted.size() / 10000];
        qInfo("%zu callbacks, processor time: median %.1f us, one in 10000 above %.1f us, worst %.1f us, "
              "%.0f times the median",
              sorted.size(), double(median), double(rare), double(sorted.back()),
              double(sorted.back() / median));
    }

    const std::uint64_t frames;
    DrivenDecks decks{setup()};

private:
    static DrivenSetup setup() {
        DrivenSetup two;
        two.rate = rate;
        two.channels = 4;
        return two;
    }

    static double processorUs() {
        timespec now{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
    }

    static std::uint64_t residentBytes() {
        QFile statm(QStringLiteral("/proc/self/statm"));
        constexpr std::uint64_t page = 4096;
        return statm.open(QIODevice::ReadOnly) ? statm.readAll().split(' ').value(1).toULongLong() * page : 0;
    }

    void checkWave(const ManageWAV& take, const QSample& sample, const SyntheticRecord& record) {
        const QString path = m_folder.filePath(QStringLiteral("take.wav"));
        QVERIFY(take.write(path, sample));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        constexpr qint64 header = 44;
        QCOMPARE(file.size(), header + static_cast<qint64>(frames) * 4);
        const QByteArray head = file.read(header);
        // The header counts on 32 bits, and beyond 2^28 samples loses the top ones; the samples are all
        // there.
        const auto counted = (static_cast<std::uint32_t>(frames * 2) << 4) >> 3;
        QCOMPARE(qFromLittleEndian<quint32>(head.constData() + 40), counted);
        QCOMPARE(qFromLittleEndian<quint32>(head.constData() + 24), quint32{48000});

        std::uint64_t wrong = 0;
        const auto check = [&](std::uint64_t i) {
            std::int16_t pair[2] = {};
            file.seek(header + static_cast<qint64>(i) * 4);
            const bool read = file.read(reinterpret_cast<char*>(pair), sizeof pair) == sizeof pair;
            const StereoFrame wanted = record.frame(i);
            wrong += read && qFromLittleEndian(pair[0]) == wanted.left &&
                             qFromLittleEndian(pair[1]) == wanted.right
                         ? 0U
                         : 1U;
        };
        check(0);
        check(frames - 1);
        for (std::uint64_t border = TakeStore::blockSamples / 2; border < frames;
             border += TakeStore::blockSamples / 2) {
            check(border - 1);
            check(border);
        }
        for (std::uint64_t k = 0; k < 20'000; ++k) {
            check(scatter(17, k) % frames);
        }
        QCOMPARE(wrong, std::uint64_t{0});
        file.remove();
    }

    void checkCurve(const QCurve& curve) {
        const QString path = m_folder.filePath(QStringLiteral("take.grw"));
        QVERIFY(curve.saveToPath(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const auto points = static_cast<qint64>(curve.points().size());
        QCOMPARE(file.size(), 8 + points * 23);
        QDataStream stream(&file);
        stream.setByteOrder(QDataStream::LittleEndian);
        qint32 bpm = 0;
        qint32 count = 0;
        stream >> bpm >> count;
        QCOMPARE(qint64{count}, points);
        std::uint64_t wrong = 0;
        const CurvePointStore::View all = curve.points();
        for (qint64 i = 0; i < points; ++i) {
            qint32 time = 0;
            double position = 0.0;
            double rawAngle = 0.0;
            qint16 direction = 0;
            qint8 soundOn = 0;
            stream >> time >> position >> rawAngle >> direction >> soundOn;
            const CurvePoint& point = all[static_cast<std::size_t>(i)];
            const bool right = qint64{time} == i * qint64{bufferFrames} && position == point.position &&
                               rawAngle == point.rawAngle;
            wrong += right ? 0U : 1U;
        }
        QCOMPARE(stream.status(), QDataStream::Ok);
        QCOMPARE(wrong, std::uint64_t{0});
        file.remove();
    }

    SyntheticRecord m_recordA;
    SyntheticRecord m_recordB;
    QTemporaryDir m_folder;
    std::vector<float> m_durations; ///< of each callback, microseconds of processor time
    std::uint64_t m_residentBefore = 0;
    std::uint64_t m_residentAfter = 0;
};
