#include "wavefilewriter.h"

#include "support/testmain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <vector>

using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

template <typename T> T at(const QByteArray& bytes, int offset) {
    return qFromLittleEndian<T>(bytes.constData() + offset);
}

} // namespace

class tst_WaveFileWriter : public QObject {
    Q_OBJECT
    QTemporaryDir m_folder;
    QString path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

private Q_SLOTS:
    void theHeaderIsTheCanonicalOne() {
        WaveFileWriter writer;
        QVERIFY(writer.open(path("header.wav").toStdString(), 44100));
        const std::vector<std::int16_t> frames{1, -1, 32767, -32768, 258, 0};
        QVERIFY(writer.write(frames.data(), 3));
        QVERIFY(writer.close());
        const QByteArray b = contents(path("header.wav"));
        QCOMPARE(b.size(), 44 + 12);
        QCOMPARE(b.mid(0, 4), "RIFF"_ba);
        QCOMPARE(at<quint32>(b, 4), 36U + 12U);
        QCOMPARE(b.mid(8, 8), "WAVEfmt "_ba);
        QCOMPARE(at<quint32>(b, 16), 16U);
        QCOMPARE(at<quint16>(b, 20), 1);
        QCOMPARE(at<quint16>(b, 22), 2);
        QCOMPARE(at<quint32>(b, 24), 44100U);
        QCOMPARE(at<quint32>(b, 28), 176400U);
        QCOMPARE(at<quint16>(b, 32), 4);
        QCOMPARE(at<quint16>(b, 34), 16);
        QCOMPARE(b.mid(36, 4), "data"_ba);
        QCOMPARE(at<quint32>(b, 40), 12U);
        for (int i = 0; i < 6; ++i) {
            QCOMPARE(at<qint16>(b, 44 + 2 * i), frames[static_cast<std::size_t>(i)]);
        }
    }

    void piecesAddUp() {
        WaveFileWriter writer;
        QVERIFY(writer.open(path("pieces.wav").toStdString(), 48000));
        for (std::int16_t i = 0; i < 1000; ++i) {
            const std::int16_t frame[2] = {i, static_cast<std::int16_t>(-i)};
            QVERIFY(writer.write(frame, 1));
        }
        QVERIFY(writer.close());
        const QByteArray b = contents(path("pieces.wav"));
        QCOMPARE(b.size(), 44 + 4000);
        QCOMPARE(at<quint32>(b, 40), 4000U);
        QCOMPARE(at<qint16>(b, 44 + 4 * 999), 999);
    }

    void aFileWithoutFramesIsAHeader() {
        WaveFileWriter writer;
        QVERIFY(writer.open(path("empty.wav").toStdString(), 8000));
        QVERIFY(writer.close());
        const QByteArray b = contents(path("empty.wav"));
        QCOMPARE(b.size(), 44);
        QCOMPARE(at<quint32>(b, 4), 36U);
        QCOMPARE(at<quint32>(b, 40), 0U);
    }

    void anExistingFileIsReplaced() {
        for (const int frames : {100, 1}) {
            WaveFileWriter writer;
            QVERIFY(writer.open(path("again.wav").toStdString(), 8000));
            const std::vector<std::int16_t> silence(2 * static_cast<std::size_t>(frames));
            QVERIFY(writer.write(silence.data(), static_cast<std::size_t>(frames)));
            QVERIFY(writer.close());
            QCOMPARE(contents(path("again.wav")).size(), 44 + 4 * frames);
        }
    }

    void failuresAreReported() {
        WaveFileWriter writer;
        QVERIFY(!writer.open(path("no/such/folder.wav").toStdString(), 8000));
        QVERIFY(!writer.error().empty());
        const std::int16_t frame[2] = {0, 0};
        QVERIFY(!writer.write(frame, 1));
        QVERIFY(!writer.close());
        // The same writer can start over.
        QVERIFY(writer.open(path("after.wav").toStdString(), 8000));
        QVERIFY(writer.error().empty());
        QVERIFY(writer.close());
    }

    void aFullDiskIsReported() {
        if (!QFile::exists(u"/dev/full"_s)) {
            QSKIP("needs /dev/full");
        }
        WaveFileWriter writer;
        const std::vector<std::int16_t> frames(2 * 100000);
        const bool opened = writer.open("/dev/full", 8000);
        QVERIFY(!(opened && writer.write(frames.data(), 100000) && writer.close()));
        QVERIFY(!writer.error().empty());
    }

    void moreThanTheSizeFieldHoldsIsRefused() {
        WaveFileWriter writer;
        QVERIFY(writer.open(path("large.wav").toStdString(), 8000));
        const std::int16_t frame[2] = {0, 0};
        QVERIFY(!writer.write(frame, std::size_t{1} << 30)); // refused before a frame is looked at
        QVERIFY(!writer.error().empty());
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_WaveFileWriter)
#include "tst_wavefilewriter.moc"
