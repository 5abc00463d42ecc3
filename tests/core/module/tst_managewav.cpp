#include "model/qsample.h"
#include "module/managewav.h"
#include "module/wavedata.h"
#include "module/wavheader.h"
#include "motion.h"
#include "support/fulldisk.h"
#include "support/testmain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

std::int16_t value(std::size_t i) {
    return static_cast<std::int16_t>(scatter(12, i));
}

void append(ManageWAV& take, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::int16_t sample = value(i);
        take.append(&sample);
    }
}

const QSample source(ModelGraph::INPUT_DECKA, 0, QStringLiteral("x"), 44100.0, 6, 1);

} // namespace

class tst_ManageWAV : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    int m_files = 0;

    QString newFile() { return m_folder.filePath(u"%1.wav"_s.arg(++m_files)); }
    static QByteArray contentOf(const QString& name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
    }

private Q_SLOTS:
    void aTakeReadsBackInTwoListsOfHalfTheCount() {
        ManageWAV take;
        append(take, 2000);
        const QString name = newFile();
        QVERIFY(take.write(name, source));
        QCOMPARE(QFile(name).size(), qint64{44 + 4000});
        const auto wave = readWave(name);
        QCOMPARE(wave->sampleRate(), 44100U);
        QCOMPARE(wave->channels(), 2U); // whatever the device has
        QCOMPARE(wave->length(), std::size_t{1000});
        for (std::size_t i = 0; i < 1000; ++i) {
            QCOMPARE(wave->samples(0)[i], value(2 * i));
            QCOMPARE(wave->samples(1)[i], value(2 * i + 1));
        }
    }

    void theValuesAreLittleEndian() {
        ManageWAV take;
        for (const std::int16_t sample : {std::int16_t{0x1234}, std::int16_t{-2}, std::int16_t{-32768}}) {
            take.append(&sample);
        }
        const QString name = newFile();
        QVERIFY(take.write(name, source));
        QCOMPARE(contentOf(name).mid(40).toHex(), QByteArray("060000003412feff0080"));
    }

    void anOddCountIsWrittenWhole() {
        ManageWAV take;
        append(take, 7);
        const QString name = newFile();
        QVERIFY(take.write(name, source));
        QCOMPARE(contentOf(name).size(), 44 + 14);
    }

    void anEmptyTakeIsAHeader() {
        const ManageWAV take;
        const QString name = newFile();
        QVERIFY(take.write(name, source));
        QCOMPARE(contentOf(name).size(), 44);
        QVERIFY(readWave(name)->isEmpty());
    }

    void aTakeOfSeveralBlocksComesBackWhole() {
        ManageWAV take;
        const std::size_t count = 3 * TakeStore::blockSamples + 16;
        append(take, count);
        const QString name = newFile();
        QVERIFY(take.write(name, source));
        const auto wave = readWave(name);
        QCOMPARE(wave->length(), count / 2);
        std::size_t wrong = 0;
        for (std::size_t i = 0; i < count / 2; ++i) {
            wrong += wave->samples(0)[i] != value(2 * i) || wave->samples(1)[i] != value(2 * i + 1) ? 1U : 0U;
        }
        QCOMPARE(wrong, std::size_t{0});
    }

    void writingTwiceWritesTheSame() {
        ManageWAV take;
        append(take, 100);
        const QString first = newFile();
        const QString second = newFile();
        QVERIFY(take.write(first, source));
        QVERIFY(take.write(second, source));
        QCOMPARE(contentOf(second), contentOf(first));
    }

    void aClearedTakeHoldsWhatCameAfter() {
        ManageWAV take;
        append(take, 100);
        take.clear();
        QCOMPARE(take.samples().size(), std::size_t{0});
        append(take, 8);
        QCOMPARE(take.samples().size(), std::size_t{8});
    }

    void anyFileNameIsTakenAsItIs() {
        ManageWAV take;
        append(take, 8);
        const QString name =
            m_folder.filePath(u"3_20240131-235959,999_Entrée ターン (hw:0,0)_2p0_44100.wav"_s);
        QVERIFY(take.write(name, source));
        QVERIFY(QFile::exists(name));
    }

    void aFileThatCantBeOpenedIsLeftInSilence() {
        ManageWAV take;
        append(take, 8);
        QVERIFY(!take.write(m_folder.filePath(u"no folder/x.wav"_s), source));
        QVERIFY(!take.write(m_folder.path(), source));
        QCOMPARE(take.samples().size(), std::size_t{8}); // and the take is still there
    }

    void aDiskThatIsFullIsToldAndWhatWasWrittenCanBeRead() {
        ManageWAV take;
        append(take, 400000);
        const QString name = newFile();
        {
            const FullDisk disk(300000);
            QVERIFY(disk.isSet());
            QVERIFY(!take.write(name, source));
        }
        const auto wave = readWave(name);
        QVERIFY(wave->length() > 50000);
        // The header speaks of what is there.
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const WavHeader header = readWavHeader(file);
        QCOMPARE(qint64(header.dataBytes), (file.size() - 44) / 4 * 4);
        QCOMPARE(qint64(header.dataBytes) / 16 * 8 / 2, qint64(wave->length())); // samples are read by eights
        for (std::size_t i = 0; i < wave->length(); ++i) {
            QCOMPARE(wave->samples(0)[i], value(2 * i));
        }
    }

    void aFileWithoutAWholeFrameIsTakenAwayAgain_data() {
        QTest::addColumn<int>("room");
        QTest::newRow("no byte") << 0;
        QTest::newRow("a part of the header") << 20;
        QTest::newRow("the header") << 44;
        QTest::newRow("less than a frame") << 47;
    }
    void aFileWithoutAWholeFrameIsTakenAwayAgain() {
        QFETCH(int, room);
        ManageWAV take;
        append(take, 4000);
        const QString name = newFile();
        {
            const FullDisk disk{rlim_t(room)};
            QVERIFY(disk.isSet());
            QVERIFY(!take.write(name, source));
        }
        QVERIFY(!QFile::exists(name));
    }

    void whatIsNoPlainFileStays() {
        if (!QFile::exists(u"/dev/full"_s)) {
            QSKIP("there is no /dev/full");
        }
        ManageWAV take;
        append(take, 4000);
        const QString link = m_folder.filePath(u"link.wav"_s);
        QVERIFY(QFile::link(u"/dev/full"_s, link));
        QVERIFY(!take.write(link, source));
        QVERIFY(QFile::exists(link) && QFile::exists(u"/dev/full"_s));
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_ManageWAV)
#include "tst_managewav.moc"
