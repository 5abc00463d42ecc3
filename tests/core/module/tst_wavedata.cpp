// The reader of WAV files.

#include "module/wavedata.h"
#include "module/wavheader.h"
#include "support/testmain.h"

#include <QBuffer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

WavHeader canonical(std::uint16_t channels, std::uint32_t dataBytes, std::uint16_t bits = 16) {
    WavHeader header;
    header.channels = channels;
    header.sampleRate = 44100;
    header.bytesPerSecond = 44100U * channels * 2U;
    header.blockSize = static_cast<std::uint16_t>(channels * 2);
    header.bitsPerSample = bits;
    header.dataBytes = dataBytes;
    return header;
}

QByteArray bytesOf(const WavHeader& header) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    writeWavHeader(buffer, header);
    return bytes;
}

QByteArray bytesOf(const std::vector<std::int16_t>& samples) {
    QByteArray bytes(qsizetype(samples.size() * 2), '\0');
    for (std::size_t i = 0; i < samples.size(); ++i) {
        qToLittleEndian(samples[i], bytes.data() + 2 * i);
    }
    return bytes;
}

std::vector<std::int16_t> noise(std::size_t count, quint32 seed) {
    QRandomGenerator random(seed);
    std::vector<std::int16_t> samples(count);
    for (std::int16_t& sample : samples) {
        sample = static_cast<std::int16_t>(random.bounded(65536) - 32768);
    }
    return samples;
}

// What one round after the other would give: sample i goes to channel i modulo the channels.
std::vector<std::vector<std::int16_t>> dealt(const std::vector<std::int16_t>& samples, std::size_t channels) {
    std::vector<std::vector<std::int16_t>> lists(channels);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        lists[i % channels].push_back(samples[i]);
    }
    return lists;
}

bool equal(std::span<const std::int16_t> a, const std::vector<std::int16_t>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

} // namespace

class tst_WaveData : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    int m_files = 0;

    std::unique_ptr<WaveData> read(const QByteArray& content) {
        const QString name = m_folder.filePath(u"%1.wav"_s.arg(++m_files));
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            return nullptr;
        }
        file.close();
        return readWave(name);
    }

private Q_SLOTS:
    void anEmptyWave() {
        const WaveData wave;
        QVERIFY(wave.isEmpty());
        QCOMPARE(wave.length(), std::size_t{0});
        QCOMPARE(wave.sampleRate(), 0U);
        QCOMPARE(wave.channels(), 0U);
        QCOMPARE(wave.minimum(), std::int16_t{0});
        QCOMPARE(wave.maximum(), std::int16_t{0});
        QVERIFY(wave.samples(0).empty() && wave.samples(1).empty());
    }

    void aStereoFileOf1000FramesHas1000InBothChannels() {
        const std::vector<std::int16_t> samples = noise(2000, 1);
        const auto wave = read(bytesOf(canonical(2, 4000)) + bytesOf(samples));
        QCOMPARE(wave->sampleRate(), 44100U);
        QCOMPARE(wave->channels(), 2U);
        QCOMPARE(wave->length(), std::size_t{1000});
        QVERIFY(!wave->isEmpty());
        const auto lists = dealt(samples, 2);
        QVERIFY(equal(wave->samples(0), lists[0]));
        QVERIFY(equal(wave->samples(1), lists[1]));
        QVERIFY(wave->samples(2).empty());
    }

    void aRestOfLessThanEightSamplesIsNotRead_data() {
        QTest::addColumn<int>("bytes");
        QTest::addColumn<int>("frames");
        QTest::newRow("4002 bytes") << 4002 << 1000;
        QTest::newRow("4014 bytes") << 4014 << 1000;
        QTest::newRow("4016 bytes") << 4016 << 1004;
        QTest::newRow("15 bytes") << 15 << 0;
        QTest::newRow("16 bytes") << 16 << 4;
    }
    void aRestOfLessThanEightSamplesIsNotRead() {
        QFETCH(int, bytes);
        QFETCH(int, frames);
        const auto wave = read(bytesOf(canonical(2, std::uint32_t(bytes))) + bytesOf(noise(3000, 2)));
        QCOMPARE(wave->length(), std::size_t(frames));
        QCOMPARE(wave->samples(1).size(), std::size_t(frames));
    }

    void aMonoFileFillsOneList() {
        const std::vector<std::int16_t> samples = noise(1600, 3);
        const auto wave = read(bytesOf(canonical(1, 3200)) + bytesOf(samples));
        QCOMPARE(wave->channels(), 1U);
        QVERIFY(equal(wave->samples(0), samples));
        QVERIFY(wave->samples(1).empty());
    }

    void smallestAndLargestAreThoseOfTheFirstChannel() {
        std::vector<std::int16_t> samples(800, 5);
        samples[0] = -77;
        samples[798] = 99;
        samples[1] = -32768; // the other channel
        samples[3] = 32767;
        const auto wave = read(bytesOf(canonical(2, 1600)) + bytesOf(samples));
        QCOMPARE(wave->minimum(), std::int16_t{-77});
        QCOMPARE(wave->maximum(), std::int16_t{99});
    }

    void aFileThatIsNegativeThroughoutHasNegativePeaks() {
        const auto wave = read(bytesOf(canonical(1, 16)) + bytesOf(std::vector<std::int16_t>(8, -9)));
        QCOMPARE(wave->minimum(), std::int16_t{-9});
        QCOMPARE(wave->maximum(), std::int16_t{-9});
    }

    void aSilentFileHasPeaksOfZero() {
        const auto wave = read(bytesOf(canonical(2, 1600)) + bytesOf(std::vector<std::int16_t>(800, 0)));
        QCOMPARE(wave->minimum(), std::int16_t{0});
        QCOMPARE(wave->maximum(), std::int16_t{0});
        QCOMPARE(wave->length(), std::size_t{400});
    }

    void anyCountOfChannelsIsDealtOut_data() {
        QTest::addColumn<int>("channels");
        for (const int channels : {1, 2, 3, 4, 5, 6, 7, 8, 31, 1000, 65535}) {
            QTest::addRow("%d", channels) << channels;
        }
    }
    void anyCountOfChannelsIsDealtOut() {
        QFETCH(int, channels);
        const auto count = std::size_t(channels) * 9 / 8 * 8 + 8; // not always divided by the channels
        const std::vector<std::int16_t> samples = noise(count, 4);
        const auto wave =
            read(bytesOf(canonical(std::uint16_t(channels), std::uint32_t(count * 2))) + bytesOf(samples));
        QCOMPARE(wave->channels(), std::uint32_t(channels));
        const auto lists = dealt(samples, std::size_t(channels));
        for (std::size_t c = 0; c < lists.size(); ++c) {
            QVERIFY(equal(wave->samples(c), lists[c]));
        }
    }

    void aLongFileIsReadWhole_data() {
        QTest::addColumn<int>("channels");
        QTest::newRow("mono") << 1;
        QTest::newRow("stereo") << 2;
        QTest::newRow("three") << 3;
        QTest::newRow("six") << 6;
    }
    void aLongFileIsReadWhole() {
        QFETCH(int, channels);
        const std::vector<std::int16_t> samples = noise(1000000, 5); // several reads of the disk
        const auto wave = read(bytesOf(canonical(std::uint16_t(channels), 2000000)) + bytesOf(samples));
        const auto lists = dealt(samples, std::size_t(channels));
        for (std::size_t c = 0; c < lists.size(); ++c) {
            QVERIFY(equal(wave->samples(c), lists[c]));
        }
        const auto [low, high] = std::minmax_element(lists[0].begin(), lists[0].end());
        QCOMPARE(wave->minimum(), *low);
        QCOMPARE(wave->maximum(), *high);
    }

    void theCountIsTheSizeDividedByTheBitsFirst_data() {
        QTest::addColumn<int>("bits");
        QTest::addColumn<int>("samples");
        QTest::newRow("8 bits") << 8 << 4000;   // 4000 / 8 * 8
        QTest::newRow("24 bits") << 24 << 1328; // 4000 / 24 * 8
        QTest::newRow("32 bits") << 32 << 1000;
        QTest::newRow("1 bit") << 1 << 32000;
        QTest::newRow("65535 bits") << 65535 << 0;
    }
    void theCountIsTheSizeDividedByTheBitsFirst() {
        QFETCH(int, bits);
        QFETCH(int, samples);
        const auto wave = read(bytesOf(canonical(1, 4000, std::uint16_t(bits))) + bytesOf(noise(40000, 6)));
        QCOMPARE(wave->length(), std::size_t(samples));
    }

    void noTagIsTested() {
        QByteArray bytes = bytesOf(canonical(2, 16)) + bytesOf(noise(8, 7));
        for (const int place : {0, 8, 12, 36}) {
            bytes.replace(place, 4, "none");
        }
        bytes[16] = 99;
        QCOMPARE(read(bytes)->length(), std::size_t{4});
    }

    // ---- broken files ----

    void aFileThatCantBeOpenedIsAnEmptyWave() {
        for (const QString& name : {m_folder.filePath(u"there is none.wav"_s), m_folder.path(), QString()}) {
            const auto wave = readWave(name);
            QVERIFY(wave != nullptr && wave->isEmpty());
            QCOMPARE(wave->sampleRate(), 0U);
            QCOMPARE(wave->channels(), 0U);
        }
    }

    void anEmptyFileIsAnEmptyWave() { QVERIFY(read({})->isEmpty()); }

    void aFileThatEndsInItsHeaderIsAnEmptyWave() {
        const QByteArray header = bytesOf(canonical(2, 4000));
        for (qsizetype length = 1; length <= header.size(); ++length) {
            const auto wave = read(header.left(length));
            QVERIFY(wave->isEmpty());
            QCOMPARE(wave->minimum(), std::int16_t{0});
            QCOMPARE(wave->maximum(), std::int16_t{0});
        }
    }

    void aFileOfNoChannelIsAnEmptyWave() {
        const auto wave = read(bytesOf(canonical(0, 4000)) + bytesOf(noise(2000, 8)));
        QVERIFY(wave->isEmpty());
        QCOMPARE(wave->channels(), 0U);
        QCOMPARE(wave->sampleRate(), 44100U);
    }

    void aFileOf0BitsIsAnEmptyWave() {
        const auto wave = read(bytesOf(canonical(2, 4000, 0)) + bytesOf(noise(2000, 9)));
        QVERIFY(wave->isEmpty());
        QCOMPARE(wave->channels(), 2U);
    }

    void aSizeBeyondTheFileGivesWhatIsThere_data() {
        QTest::addColumn<quint32>("claimed");
        QTest::newRow("a little more") << 4016U;
        QTest::newRow("two gigabytes") << 0x80000000U;
        QTest::newRow("all that fits") << 0xFFFFFFFFU;
    }
    void aSizeBeyondTheFileGivesWhatIsThere() {
        QFETCH(quint32, claimed);
        const std::vector<std::int16_t> samples = noise(2000, 10);
        const auto wave = read(bytesOf(canonical(2, claimed)) + bytesOf(samples));
        const auto lists = dealt(samples, 2);
        QVERIFY(equal(wave->samples(0), lists[0]));
        QVERIFY(equal(wave->samples(1), lists[1]));
    }

    void aCountBeyond32BitsGivesWhatIsThere() {
        // 0x80000001 / 1 * 8 is 2^34 + 8.
        QCOMPARE(read(bytesOf(canonical(1, 0x80000001U, 1)) + bytesOf(noise(2000, 10)))->length(),
                 std::size_t{2000});
        QCOMPARE(read(bytesOf(canonical(1, 0x80000000U, 1)) + bytesOf(noise(2000, 10)))->length(),
                 std::size_t{2000});
    }

    void aTakeOf47MinutesIsReadToItsEnd() {
        constexpr std::uint64_t samples = 47ULL * 60 * 48000 * 2;
        const QString name = m_folder.filePath(u"47 minutes.wav"_s);
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(writeWavHeader(file, WavHeader::stereo16(48000.0, samples)));
        QVERIFY(file.resize(qint64(44 + 2 * samples))); // no block of the disk is taken by its silence
        QVERIFY(file.seek(qint64(44 + 2 * (samples - 2))));
        QCOMPARE(file.write("\x11\x22\x33\x44", 4), 4);
        file.close();
        const auto wave = readWave(name);
        QCOMPARE(wave->length(), std::size_t{samples / 2});
        QCOMPARE(wave->samples(0).back(), std::int16_t{0x2211});
        QCOMPARE(wave->samples(1).back(), std::int16_t{0x4433});
        QVERIFY(QFile::remove(name));
    }

    void aFileThatTheMemoryDoesntHoldIsAnEmptyWave() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("the sanitizer needs all the address space");
#endif
        const QString name = m_folder.filePath(u"three gigabytes.wav"_s);
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(writeWavHeader(file, canonical(2, 3U << 30)));
        QVERIFY(file.resize(44 + (qint64{3} << 30)));
        file.close();
        rlimit before{};
        QCOMPARE(getrlimit(RLIMIT_AS, &before), 0);
        rlimit small = before;
        small.rlim_cur = rlim_t{2} << 30;
        QCOMPARE(setrlimit(RLIMIT_AS, &small), 0);
        const auto wave = readWave(name);
        setrlimit(RLIMIT_AS, &before);
        QVERIFY(wave->isEmpty());
        QCOMPARE(wave->sampleRate(), 44100U);
        QVERIFY(QFile::remove(name));
    }

    void manyChannelsAndFewSamplesGiveAFewListsOfOne() {
        const std::vector<std::int16_t> samples = noise(8, 11);
        const auto wave = read(bytesOf(canonical(65535, 0xFFFFFFFF)) + bytesOf(samples));
        QCOMPARE(wave->channels(), 65535U);
        QCOMPARE(wave->length(), std::size_t{1});
        for (std::size_t c = 0; c < 8; ++c) {
            QCOMPARE(wave->samples(c).size(), std::size_t{1});
            QCOMPARE(wave->samples(c)[0], samples[c]);
        }
        QVERIFY(wave->samples(8).empty());
        QVERIFY(wave->samples(65534).empty());
    }

    void aFileCutAnywhereReadsWhatIsWhole() {
        const std::vector<std::int16_t> samples = noise(16, 12);
        const QByteArray whole = bytesOf(canonical(2, 32)) + bytesOf(samples);
        for (qsizetype length = 44; length <= whole.size(); ++length) {
            const auto wave = read(whole.left(length));
            const auto held = std::size_t(length - 44) / 2;
            const auto lists = dealt({samples.begin(), samples.begin() + std::ptrdiff_t(held)}, 2);
            QVERIFY(equal(wave->samples(0), lists[0]));
            QVERIFY(equal(wave->samples(1), lists[1]));
        }
    }

    void randomHeadersAreReadWithoutHarm() {
        QRandomGenerator random(13);
        for (int round = 0; round < 500; ++round) {
            QByteArray bytes = bytesOf(canonical(2, 400)) + bytesOf(noise(200, quint32(round)));
            for (int spoil = random.bounded(12); spoil > 0; --spoil) {
                bytes[random.bounded(44)] = char(random.bounded(256));
            }
            bytes.truncate(random.bounded(int(bytes.size()) + 1));
            const auto wave = read(bytes);
            std::size_t total = 0;
            for (std::size_t c = 0; c < wave->channels(); ++c) {
                total += wave->samples(c).size();
            }
            QVERIFY(total * 2 <= std::size_t(bytes.size()));
        }
    }

    void aListIsNeverLengthened() {
        WaveData wave(48000, 2, 10);
        wave.shorten(1, 20);
        QCOMPARE(wave.samples(1).size(), std::size_t{10});
        wave.shorten(1, 3);
        QCOMPARE(wave.samples(1).size(), std::size_t{3});
        QCOMPARE(wave.length(), std::size_t{10});
        wave.shorten(7, 1); // there is none
        QVERIFY(wave.samples(7).empty());
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_WaveData)
#include "tst_wavedata.moc"
