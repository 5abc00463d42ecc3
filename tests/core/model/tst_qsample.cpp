#include "model/qsample.h"

#include "support/testmain.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_QSample : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aDefaultSampleNamesNoDevice() {
        const QSample sample(ModelGraph::INPUT_DECKB);
        QCOMPARE(sample.name(), ModelGraph::INPUT_DECKB);
        QCOMPARE(sample.deviceIndex(), -1);
        QVERIFY(sample.deviceName().isEmpty());
        QCOMPARE(sample.channelCount(), 2);
        QCOMPARE(sample.channelFirst(), 0);
        QCOMPARE(sample.channelDeckA(), 0);
        QCOMPARE(sample.channelDeckB(), 0);
        QVERIFY(!sample.isOutput());
    }

    void aDefaultSampleStillGivesTheGraphSensibleRates() {
        const QSample sample(ModelGraph::OUTPUT_MASTER);
        QCOMPARE(sample.sampleRate(), 48000.0);
        QCOMPARE(sample.samplesPerMinute(), 2880000.0);
        QCOMPARE(sample.samplesPerMs(), 48.0);
        QCOMPARE(sample.degreesPerSample(), 360.0 / 86400.0);
        QVERIFY(!sample.isOutput());
    }

    void anInputSampleTakesItsPairForBothDecks() {
        const QSample sample(ModelGraph::INPUT_MASTER, 7, u"Mixer"_s, 44100.0, 6, 2);
        QCOMPARE(sample.name(), ModelGraph::INPUT_MASTER);
        QCOMPARE(sample.deviceIndex(), 7);
        QCOMPARE(sample.deviceName(), u"Mixer"_s);
        QCOMPARE(sample.sampleRate(), 44100.0);
        QCOMPARE(sample.channelCount(), 6);
        QCOMPARE(sample.channelFirst(), 2);
        QCOMPARE(sample.channelDeckA(), 2);
        QCOMPARE(sample.channelDeckB(), 2);
        QVERIFY(!sample.isOutput());
    }

    void anOutputSampleKeepsItsThreePlaces() {
        const QSample sample(ModelGraph::OUTPUT_MASTER, 4, u"Mixer"_s, 96000.0, 8, 2, 4, -1);
        QCOMPARE(sample.channelFirst(), 2);
        QCOMPARE(sample.channelDeckA(), 4);
        QCOMPARE(sample.channelDeckB(), -1);
        QVERIFY(sample.isOutput());
    }

    void onlyTheOutputConstructorMakesAnOutput() {
        QVERIFY(!QSample(ModelGraph::OUTPUT_MASTER, 4, u"Mixer"_s, 96000.0, 8, 2).isOutput());
    }

    void theDerivedRatesFollowFromTheSampleRate_data() {
        QTest::addColumn<double>("rate");
        QTest::addColumn<double>("perMinute");
        QTest::addColumn<double>("perMs");
        QTest::addColumn<double>("degrees");
        QTest::newRow("44100") << 44100.0 << 2646000.0 << 44.1 << 360.0 / 79380.0;
        QTest::newRow("48000") << 48000.0 << 2880000.0 << 48.0 << 0.00416666666666666667;
        QTest::newRow("96000") << 96000.0 << 5760000.0 << 96.0 << 360.0 / 172800.0;
        QTest::newRow("a broken rate") << 22050.5 << 1323030.0 << 22.0505 << 360.0 / (22050.5 * 1.8);
    }
    void theDerivedRatesFollowFromTheSampleRate() {
        QFETCH(double, rate);
        const QSample input(ModelGraph::INPUT_DECKA, 0, u"x"_s, rate, 2, 0);
        const QSample output(ModelGraph::OUTPUT_MASTER, 0, u"x"_s, rate, 2, 0, 0, 0);
        for (const QSample* sample : {&input, &output}) {
            QTEST(sample->samplesPerMinute(), "perMinute");
            QTEST(sample->samplesPerMs(), "perMs");
            QTEST(sample->degreesPerSample(), "degrees");
        }
    }

    void theFileNameTellsDeviceMomentPlaceAndRate() {
        QSample sample(ModelGraph::INPUT_DECKA, 3, u"Line In (USB Mixer)"_s, 44100.0, 4, 1);
        const QDateTime before = QDateTime::currentDateTime();
        const QString name = sample.fileName();
        static const QRegularExpression form(
            u"^3_(\\d{8}-\\d{6},\\d{3})_Line In \\(USB Mixer\\)_4p1_44100\\.wav$"_s);
        const QRegularExpressionMatch match = form.match(name);
        QVERIFY2(match.hasMatch(), qPrintable(name));
        const QDateTime stamp = QDateTime::fromString(match.captured(1), u"yyyyMMdd-hhmmss,zzz"_s);
        QVERIFY(stamp.isValid() && stamp >= before);
    }

    void aSlashInTheDeviceNameIsReplacedInTheFileNameOnly() {
        QSample sample(ModelGraph::INPUT_DECKA, 3, u"Line/Mic / Phono"_s, 48000.0, 2, 0);
        QVERIFY(sample.fileName().contains(u"_LineandMic and Phono_"_s));
        QVERIFY(!sample.fileName().contains(u'/'));
        QCOMPARE(sample.deviceName(), u"Line/Mic / Phono"_s);
    }

    void aDeviceNameThatLooksLikeAPlaceholderStaysAsItIs() {
        QSample sample(ModelGraph::INPUT_DECKA, 0, u"%1 %7 100%"_s, 48000.0, 2, 0);
        QVERIFY2(sample.fileName().endsWith(u"_%1 %7 100%_2p0_48000.wav"_s), qPrintable(sample.fileName()));
    }

    void theRateInTheFileNameHasSixDigits() {
        QVERIFY(QSample(ModelGraph::INPUT_DECKA, 0, u"x"_s, 44100.26, 2, 0)
                    .fileName()
                    .endsWith(u"_44100.3.wav"_s));
        QVERIFY(QSample(ModelGraph::INPUT_DECKA, 0, u"x"_s, 192000.0, 2, 0)
                    .fileName()
                    .endsWith(u"_192000.wav"_s));
        QVERIFY(QSample(ModelGraph::INPUT_DECKA, 0, u"x"_s, 2822400.0, 2, 0)
                    .fileName()
                    .endsWith(u"_2.8224e+06.wav"_s));
    }

    void theFileNameIsMadeAtTheFirstRequestAndKept() {
        QSample sample(ModelGraph::INPUT_DECKB, 0, u"x"_s, 48000.0, 2, 0);
        const QString first = sample.fileName();
        QTest::qWait(5);
        QCOMPARE(sample.fileName(), first);
    }

    void twoSamplesOfOneDeviceNeverShareAFileName() {
        QSample first(ModelGraph::INPUT_DECKA, 0, u"x"_s, 48000.0, 2, 0);
        QSample second(ModelGraph::INPUT_DECKB, 0, u"x"_s, 48000.0, 2, 0);
        QVERIFY(first.fileName() != second.fileName());
    }

    void aRenewedFileNameIsAnother() {
        QSample sample(ModelGraph::INPUT_DECKA, 0, u"x"_s, 48000.0, 2, 0);
        const QString first = sample.fileName();
        sample.renewFileName();
        const QString second = sample.fileName();
        QVERIFY(!second.isEmpty() && second != first);
        QCOMPARE(sample.fileName(), second);
    }

    void aLastingSampleIsACopyThatNeverMoves() {
        const QSample given(ModelGraph::INPUT_DECKB, 3, u"x"_s, 44100.0, 4, 1);
        QSample* first = lastingSample(given);
        QVERIFY(first != &given);
        for (int i = 0; i < 1000; ++i) {
            QVERIFY(lastingSample(QSample(ModelGraph::INPUT_DECKA)) != first);
        }
        QCOMPARE(first->name(), ModelGraph::INPUT_DECKB);
        QCOMPARE(first->deviceName(), u"x"_s);
        QCOMPARE(first->channelFirst(), 1);
    }

    void anOutputHasNoFileName() {
        QVERIFY(QSample(ModelGraph::OUTPUT_MASTER).fileName().isEmpty());
        QVERIFY(QSample(ModelGraph::OUTPUT_MASTER, 1, u"x"_s, 48000.0, 2, 0, 0, 2).fileName().isEmpty());
    }

    void theMasterInputHasOne() {
        QVERIFY(QSample(ModelGraph::INPUT_MASTER, 1, u"x"_s, 48000.0, 2, 0).fileName().startsWith(u"1_"_s));
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_QSample)
#include "tst_qsample.moc"
