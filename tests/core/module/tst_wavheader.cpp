#include "module/wavheader.h"

#include "support/testmain.h"

#include <QBuffer>
#include <QTest>
#include <QtEndian>

namespace {

QByteArray written(const WavHeader& header) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    writeWavHeader(buffer, header);
    return bytes;
}

WavHeader readBack(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readWavHeader(buffer);
}

} // namespace

class tst_WavHeader : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theBytesOfAHeader() {
        // clang-format off
        static const unsigned char expected[] = {
            'R', 'I', 'F', 'F', 0xC4, 0x0F, 0x00, 0x00, // 4000 + 36
            'W', 'A', 'V', 'E',
            'f', 'm', 't', ' ', 0x10, 0x00, 0x00, 0x00, // 16
            0x01, 0x00,                                 // integer PCM
            0x02, 0x00,                                 // stereo
            0x44, 0xAC, 0x00, 0x00,                     // 44100
            0x10, 0xB1, 0x02, 0x00,                     // 176400
            0x04, 0x00,                                 // bytes a frame
            0x10, 0x00,                                 // bits a sample
            'd', 'a', 't', 'a', 0xA0, 0x0F, 0x00, 0x00, // 4000
        };
        // clang-format on
        QCOMPARE(written(WavHeader::stereo16(44100.0, 2000)),
                 QByteArray(reinterpret_cast<const char*>(expected), sizeof expected));
    }

    void theBytesPerSecondFollowFromTheRate() {
        const WavHeader header = WavHeader::stereo16(44100.0, 0);
        QCOMPARE(header.sampleRate, 44100U);
        QCOMPARE(header.bytesPerSecond, 176400U);
        QCOMPARE(header.blockSize, std::uint16_t{4});
        QCOMPARE(header.bitsPerSample, std::uint16_t{16});
        QCOMPARE(header.channels, std::uint16_t{2});
    }

    void theRateIsTruncated() {
        const WavHeader header = WavHeader::stereo16(22050.9, 0);
        QCOMPARE(header.sampleRate, 22050U);
        QCOMPARE(header.bytesPerSecond, 88200U);
    }

    void theSizeFieldIsTwoBytesASampleUpToFourGigabytes_data() {
        QTest::addColumn<quint64>("samples");
        QTest::addColumn<quint32>("bytes");
        constexpr quint64 minute = 2 * 48000 * 60;
        QTest::newRow("none") << quint64{0} << 0U;
        QTest::newRow("one") << quint64{1} << 2U;
        QTest::newRow("a minute") << minute << 11520000U;
        QTest::newRow("46 minutes") << 46 * minute << 529920000U;
        QTest::newRow("2^28 - 1") << (quint64{1} << 28) - 1 << 0x1FFFFFFEU;
        QTest::newRow("2^28") << (quint64{1} << 28) << 0x20000000U;
        QTest::newRow("47 minutes") << 47 * minute << 541440000U;
        QTest::newRow("60 minutes") << 60 * minute << 691200000U;
        QTest::newRow("six hours") << 360 * minute << 4147200000U;
        QTest::newRow("one frame less than the most") << quint64{0x7FFFFFEA} << 0xFFFFFFD4U;
        QTest::newRow("the most") << quint64{0x7FFFFFEC} << 0xFFFFFFD8U;
        QTest::newRow("one more than the most") << quint64{0x7FFFFFED} << 0xFFFFFFD8U;
        QTest::newRow("2^31") << (quint64{1} << 31) << 0xFFFFFFD8U;
        QTest::newRow("2^32 + 3") << (quint64{1} << 32) + 3 << 0xFFFFFFD8U;
        QTest::newRow("49 hours") << quint64{16384} * (quint64{1} << 20) << 0xFFFFFFD8U;
    }
    void theSizeFieldIsTwoBytesASampleUpToFourGigabytes() {
        QFETCH(quint64, samples);
        const WavHeader header = WavHeader::stereo16(48000.0, samples);
        QTEST(header.dataBytes, "bytes");
        // The RIFF size is all but the first eight bytes, and never wraps either.
        const auto riff = qFromLittleEndian<quint32>(written(header).constData() + 4);
        QCOMPARE(quint64{riff}, quint64{header.dataBytes} + 36);
    }

    void theRiffSizeOfAnyHeaderStopsAtTheEnd() {
        WavHeader header;
        for (const quint32 bytes : {0xFFFFFFDBU, 0xFFFFFFDCU, 0xFFFFFFFFU}) {
            header.dataBytes = bytes;
            QCOMPARE(qFromLittleEndian<quint32>(written(header).constData() + 4), 0xFFFFFFFFU);
        }
    }

    void theSamplesOfAFileAreCountedIn64Bits_data() {
        QTest::addColumn<quint32>("dataBytes");
        QTest::addColumn<int>("bits");
        QTest::addColumn<qint64>("fileBytes");
        QTest::addColumn<quint64>("samples");
        constexpr qint64 gigabyte = qint64{1} << 30;
        QTest::newRow("nothing") << 0U << 16 << qint64{44} << quint64{0};
        QTest::newRow("4002 bytes are read by eights") << 4002U << 16 << qint64{4046} << quint64{2000};
        QTest::newRow("47 minutes") << 541440000U << 16 << qint64{541440044} << quint64{270720000};
        QTest::newRow("the most") << 0xFFFFFFD8U << 16 << 4 * gigabyte + 4 << quint64{0x7FFFFFE8};
        QTest::newRow("a longer take: what the header says")
            << 0xFFFFFFD8U << 16 << 9 * gigabyte << quint64{0x7FFFFFE8};
        QTest::newRow("never more than the file holds") << 0xFFFFFFD8U << 16 << qint64{1044} << quint64{500};
        QTest::newRow("one bit") << 0x80000001U << 1 << 100 * gigabyte << (quint64{1} << 34) + 8;
        QTest::newRow("one bit, a small file") << 0x80000001U << 1 << qint64{4044} << quint64{2000};
        QTest::newRow("no bits") << 4000U << 0 << qint64{4044} << quint64{0};
        QTest::newRow("not even a header") << 4000U << 16 << qint64{30} << quint64{0};
    }
    void theSamplesOfAFileAreCountedIn64Bits() {
        QFETCH(quint32, dataBytes);
        QFETCH(int, bits);
        QFETCH(qint64, fileBytes);
        WavHeader header;
        header.dataBytes = dataBytes;
        header.bitsPerSample = quint16(bits);
        QTEST(quint64{header.samplesIn(fileBytes)}, "samples");
    }

    void aTakeWhoseSizeTheFieldCantSayHoldsWhatTheFileHolds_data() {
        QTest::addColumn<quint32>("said");
        QTest::addColumn<qint64>("held");
        QTest::addColumn<qint64>("bytes");
        constexpr qint64 wrap = qint64{1} << 29;
        QTest::newRow("as it says") << 4000U << qint64{4000} << qint64{4000};
        QTest::newRow("more is there") << 4000U << qint64{5000} << qint64{4000};
        QTest::newRow("less is there") << 4000U << qint64{300} << qint64{300};
        QTest::newRow("nothing is there") << 0xFFFFFFD8U << qint64{0} << qint64{0};
        QTest::newRow("an older take, wrapped once") << 4000U << wrap + 4000 << wrap + 4000;
        QTest::newRow("an older take, wrapped 20 times") << 4U << 20 * wrap + 4 << 20 * wrap + 4;
        QTest::newRow("just not wrapped") << 4000U << wrap + 4004 << qint64{4000};
        QTest::newRow("beyond 4 GiB") << 0xFFFFFFD8U << 11 * wrap << 11 * wrap;
    }
    void aTakeWhoseSizeTheFieldCantSayHoldsWhatTheFileHolds() {
        QFETCH(quint32, said);
        QFETCH(qint64, held);
        QTEST(qint64{bytesOfTake(said, held)}, "bytes");
    }

    void aHeaderComesBackAsItWas() {
        WavHeader header;
        header.format = 3;
        header.channels = 6;
        header.sampleRate = 96000;
        header.bytesPerSecond = 1234567;
        header.blockSize = 24;
        header.bitsPerSample = 32;
        header.dataBytes = 0xFFFFFFFF;
        const WavHeader back = readBack(written(header));
        QVERIFY(back.tagged);
        QCOMPARE(back.format, header.format);
        QCOMPARE(back.channels, header.channels);
        QCOMPARE(back.sampleRate, header.sampleRate);
        QCOMPARE(back.bytesPerSecond, header.bytesPerSecond);
        QCOMPARE(back.blockSize, header.blockSize);
        QCOMPARE(back.bitsPerSample, header.bitsPerSample);
        QCOMPARE(back.dataBytes, header.dataBytes);
    }

    void theReadStopsBehindTheHeader() {
        QByteArray bytes = written(WavHeader::stereo16(48000.0, 2)) + "next";
        QBuffer buffer(&bytes);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        readWavHeader(buffer);
        QCOMPARE(buffer.pos(), qint64{44});
        QCOMPARE(buffer.readAll(), QByteArray("next"));
    }

    void whatTheFileLacksReadsAsZero() {
        const QByteArray whole = written(WavHeader::stereo16(48000.0, 1000));
        for (qsizetype length = 0; length < whole.size(); ++length) {
            const WavHeader header = readBack(whole.left(length));
            QCOMPARE(header.channels, std::uint16_t(length >= 24 ? 2 : 0));
            QCOMPARE(header.sampleRate, length >= 28 ? 48000U : 0U);
            QCOMPARE(header.bitsPerSample, std::uint16_t(length >= 36 ? 16 : 0));
            QCOMPARE(header.dataBytes, 0U);
            QVERIFY(!header.tagged || length >= 40);
        }
    }

    void aMissingTagIsToldAndChangesNothingElse() {
        const QByteArray whole = written(WavHeader::stereo16(48000.0, 1000));
        for (const int place : {0, 8, 12, 16, 36}) {
            QByteArray spoiled = whole;
            spoiled[place] = 'x';
            const WavHeader header = readBack(spoiled);
            QVERIFY(!header.tagged);
            QCOMPARE(header.sampleRate, 48000U);
            QCOMPARE(header.dataBytes, 2000U);
        }
        QVERIFY(readBack(whole).tagged);
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_WavHeader)
#include "tst_wavheader.moc"
