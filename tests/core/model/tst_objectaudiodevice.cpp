#include "model/objectaudiodevice.h"

#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_ObjectAudioDevice : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aDeviceStringComesApart() {
        const QString text = u"3-[Line In (USB Mixer)]-44100/4p1-WASAPI-Input DeckB"_s;
        const ObjectAudioDevice device(text);
        QCOMPARE(device.text(), text);
        QCOMPARE(device.index(), 3);
        QCOMPARE(device.name(), u"Line In (USB Mixer)"_s);
        QCOMPARE(device.sampleRate(), 44100.0);
        QCOMPARE(device.channelCount(), 4);
        QCOMPARE(device.channelFirst(), 1);
        QCOMPARE(device.hostApi(), u"WASAPI"_s);
        QCOMPARE(device.label(), u"Input DeckB"_s);
    }

    void aPlainStringHasNoLabel() {
        const ObjectAudioDevice device(u"12-[x]-48000/10p8-N/A-"_s);
        QCOMPARE(device.index(), 12);
        QCOMPARE(device.channelCount(), 10);
        QCOMPARE(device.channelFirst(), 8);
        QCOMPARE(device.hostApi(), u"N/A"_s);
        QVERIFY(device.label().isEmpty());
    }

    void aTextThatIsNoDeviceStringLeavesEverythingAtTheStart_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("a heading of the catalogue") << u"----- ALSA -----"_s;
        QTest::newRow("without brackets") << u"3-Line In-44100/4p1-WASAPI-"_s;
        QTest::newRow("without the place") << u"3-[Line In]-44100/4-WASAPI-"_s;
        QTest::newRow("without the last hyphen") << u"3-[Line In]-44100/4p1-WASAPI"_s;
    }
    void aTextThatIsNoDeviceStringLeavesEverythingAtTheStart() {
        QFETCH(QString, text);
        const ObjectAudioDevice device(text);
        QCOMPARE(device.text(), text);
        QCOMPARE(device.index(), -1);
        QVERIFY(device.name().isEmpty());
        QCOMPARE(device.sampleRate(), 0.0);
        QCOMPARE(device.channelCount(), -1);
        QCOMPARE(device.channelFirst(), -1);
        QVERIFY(device.hostApi().isEmpty() && device.label().isEmpty());
    }

    void aSlashInTheDeviceNameIsKeptWhole() {
        QCOMPARE(ObjectAudioDevice(u"0-[Line/Mic]-48000/2p0-ALSA-"_s).name(), u"Line/Mic"_s);
    }

    void hyphensAndPsInTheDeviceNameShiftNothing() {
        const ObjectAudioDevice device(u"0-[USB p2 - Pro/4p4-x]-48000/2p0-ALSA-Headphone"_s);
        QCOMPARE(device.index(), 0);
        QCOMPARE(device.name(), u"USB p2 - Pro/4p4-x"_s);
        QCOMPARE(device.sampleRate(), 48000.0);
        QCOMPARE(device.channelCount(), 2);
        QCOMPARE(device.channelFirst(), 0);
        QCOMPARE(device.hostApi(), u"ALSA"_s);
        QCOMPARE(device.label(), u"Headphone"_s);
    }

    void aBracketInTheDeviceNameShiftsTheCaptures() {
        const ObjectAudioDevice device(u"5-[Loop-[Back]]-48000/2p0-ALSA-"_s);
        QCOMPARE(device.index(), 0); // "5-[Loop" is no number
        QCOMPARE(device.name(), u"Back]"_s);
        QCOMPARE(device.sampleRate(), 48000.0);
        QCOMPARE(device.channelCount(), 2);
        QCOMPARE(device.text(), u"5-[Loop-[Back]]-48000/2p0-ALSA-"_s);
    }

    void numbersThatDontFitReadAsZero() {
        const ObjectAudioDevice device(u"2147483648-[x]-48000/99999999999p-2147483649-ALSA-"_s);
        QCOMPARE(device.index(), 0);
        QCOMPARE(device.channelCount(), 0);
        QCOMPARE(ObjectAudioDevice(u"2147483647-[x]-48000/2p0-ALSA-"_s).index(), 2147483647);
        QCOMPARE(ObjectAudioDevice(u"one-[x]-fast/manypnone-ALSA-"_s).channelFirst(), 0);
        QCOMPARE(ObjectAudioDevice(u"one-[x]-fast/manypnone-ALSA-"_s).sampleRate(), 0.0);
    }

    void theSampleRateGoesThroughSinglePrecision() {
        QCOMPARE(ObjectAudioDevice(u"0-[x]-44100.1/2p0-ALSA-"_s).sampleRate(), double(44100.1F));
        QVERIFY(ObjectAudioDevice(u"0-[x]-44100.1/2p0-ALSA-"_s).sampleRate() != 44100.1);
        QCOMPARE(ObjectAudioDevice(u"0-[x]-16777217/2p0-ALSA-"_s).sampleRate(), 16777216.0);
    }

    void theNameCanBeSet() {
        ObjectAudioDevice device(u"0-[x]-48000/2p0-ALSA-"_s);
        device.setName(u"y"_s);
        QCOMPARE(device.name(), u"y"_s);
        QCOMPARE(device.text(), u"0-[x]-48000/2p0-ALSA-"_s);
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_ObjectAudioDevice)
#include "tst_objectaudiodevice.moc"
