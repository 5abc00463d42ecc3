#include "module/wavheader.h"

#include "support/testmain.h"

#include <QBuffer>
#include <QTest>

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

    void theSizeFieldIsTwoBytesASampleUntilItsTopBitsAreLost_data() {
        QTest::addColumn<quint64>("samples");
        QTest::addColumn<quint32>("bytes");
        QTest::newRow("none") << quint64{0} << 0U;
        QTest::newRow("one") << quint64{1} << 2U;
        QTest::newRow("a minute") << quint64{5760000} << 11520000U;
        QTest::newRow("the last that fits") << (quint64{1} << 28) - 1 << 0x1FFFFFFEU;
        QTest::newRow("2^28") << (quint64{1} << 28) << 0U;
        QTest::newRow("2^28 + 5") << (quint64{1} << 28) + 5 << 10U;
        QTest::newRow("2^29 + 2^27") << (quint64{1} << 29) + (quint64{1} << 27) << 0x10000000U;
        QTest::newRow("2^32 + 3") << (quint64{1} << 32) + 3 << 6U;
    }
    void theSizeFieldIsTwoBytesASampleUntilItsTopBitsAreLost() {
        QFETCH(quint64, samples);
        QTEST(WavHeader::stereo16(48000.0, samples).dataBytes, "bytes");
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
