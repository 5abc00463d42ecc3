#include "model/objectaudiodevice.h"
#include "state/devicecatalogue.h"
#include "state/portaudiosession.h"
#include "state/settingmixer.h"
#include "support/fakeportaudio.h"
#include "support/testmain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr auto input = ModelAudioDeviceInfo::AUDIO_INPUT;
constexpr auto output = ModelAudioDeviceInfo::AUDIO_OUTPUT;

DeviceDescription device(const QString& name, int inputs, int outputs, int hostApi = 8,
                         double rate = 48000.0) {
    return {name, rate, inputs, outputs, hostApi};
}

} // namespace

class tst_DeviceCatalogue : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    int m_files = 0;

    QStringList strings(const std::vector<DeviceDescription>& devices,
                        ModelAudioDeviceInfo::EnumAudioDeviceInfo direction, const QByteArray& mixers = {}) {
        const QString name = m_folder.filePath(u"Mixer%1.ini"_s.arg(++m_files));
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly)) {
            return {};
        }
        file.write(mixers);
        file.close();
        return deviceStrings(devices, direction, SettingMixer(name, nullptr));
    }

private Q_SLOTS:
    void cleanup() {
        FakePortAudio::instance().devices.clear();
        FakePortAudio::instance().startable = true;
    }

    void withoutADeviceThereIsTheEmptyEntryAlone() {
        QCOMPARE(strings({}, input), QStringList(QString()));
        QCOMPARE(strings({}, output), QStringList(QString()));
    }

    void aStereoInputGivesOneEntry() {
        QCOMPARE(strings({device(u"Line"_s, 2, 0)}, input),
                 QStringList({QString(), u"----- ALSA -----"_s, u"0-[Line]-48000/2p0-ALSA-"_s}));
    }

    void aStereoOutputGivesOneEntry() {
        QCOMPARE(strings({device(u"Line"_s, 0, 2)}, output),
                 QStringList({QString(), u"----- ALSA -----"_s, u"0-[Line]-48000/2p0-ALSA-"_s}));
    }

    void aSixChannelInputGivesSixPairIndices() {
        QCOMPARE(
            strings({device(u"x"_s, 6, 0)}, input),
            QStringList({QString(), u"----- ALSA -----"_s, u"0-[x]-48000/6p0-ALSA-"_s,
                         u"0-[x]-48000/6p1-ALSA-"_s, u"0-[x]-48000/6p2-ALSA-"_s, u"0-[x]-48000/6p3-ALSA-"_s,
                         u"0-[x]-48000/6p4-ALSA-"_s, u"0-[x]-48000/6p5-ALSA-"_s}));
    }

    void aSixChannelOutputGivesTheEvenChannelNumbers() {
        QCOMPARE(strings({device(u"x"_s, 0, 6)}, output),
                 QStringList({QString(), u"----- ALSA -----"_s, u"0-[x]-48000/6p0-ALSA-"_s,
                              u"0-[x]-48000/6p2-ALSA-"_s, u"0-[x]-48000/6p4-ALSA-"_s}));
    }

    void anOddCountOfChannelsIsRunThroughToItsEnd() {
        QCOMPARE(strings({device(u"x"_s, 3, 3)}, input).size(), 5);
        QCOMPARE(strings({device(u"x"_s, 3, 3)}, output),
                 QStringList({QString(), u"----- ALSA -----"_s, u"0-[x]-48000/3p0-ALSA-"_s,
                              u"0-[x]-48000/3p2-ALSA-"_s}));
    }

    void eachDirectionLooksAtItsOwnChannels() {
        const std::vector devices{device(u"in"_s, 2, 0), device(u"out"_s, 0, 2)};
        QCOMPARE(strings(devices, input).mid(2), QStringList(u"0-[in]-48000/2p0-ALSA-"_s));
        QCOMPARE(strings(devices, output).mid(2), QStringList(u"1-[out]-48000/2p0-ALSA-"_s));
        QCOMPARE(strings(devices, ModelAudioDeviceInfo::Undefined), QStringList(QString()));
    }

    void aMonoDeviceGivesNeitherEntryNorHeading() {
        QCOMPARE(strings({device(u"mono"_s, 1, 1, 8)}, input), QStringList(QString()));
        QCOMPARE(strings({device(u"mono"_s, 1, 1, 2), device(u"stereo"_s, 2, 2, 8)}, output),
                 QStringList({QString(), u"----- ALSA -----"_s, u"1-[stereo]-48000/2p0-ALSA-"_s}));
    }

    void eachHostApiGetsOneHeading() {
        const QStringList list =
            strings({device(u"a"_s, 2, 0, 0), device(u"b"_s, 2, 0, 0), device(u"c"_s, 2, 0, 1),
                     device(u"d"_s, 1, 0, 2), device(u"e"_s, 2, 0, 1)},
                    input);
        QCOMPARE(list,
                 QStringList({QString(), u"----- InDevelopment -----"_s, u"0-[a]-48000/2p0-InDevelopment-"_s,
                              u"1-[b]-48000/2p0-InDevelopment-"_s, u"----- DirectSound -----"_s,
                              u"2-[c]-48000/2p0-DirectSound-"_s, u"4-[e]-48000/2p0-DirectSound-"_s}));
    }

    void theHostApiTextsAreIndexedByTheRunningIndex() {
        const QStringList texts{
            u"InDevelopment"_s, u"DirectSound"_s, u"MME"_s,  u"ASIO"_s,   u"SoundManager"_s,
            u"CoreAudio"_s,     u"N/A"_s,         u"OSS"_s,  u"ALSA"_s,   u"AL"_s,
            u"BeOS"_s,          u"WDMKS"_s,       u"JACK"_s, u"WASAPI"_s, u"AudioScienceHPI"_s};
        for (int i = 0; i < 15; ++i) {
            QCOMPARE(hostApiText(i), texts.at(i));
        }
        QVERIFY(hostApiText(15).isEmpty());
        QVERIFY(hostApiText(-1).isEmpty());
        QVERIFY(hostApiText(2147483647).isEmpty());
    }

    void theSampleRateIsCutToAWholeNumber() {
        QCOMPARE(strings({device(u"x"_s, 2, 0, 8, 44100.9)}, input).at(2), u"0-[x]-44100/2p0-ALSA-"_s);
    }

    void theNameStandsAsItIs() {
        const QString name = u"Ligne %4 [é]-ターン/2, (hw:0,0)"_s;
        QCOMPARE(strings({device(name, 2, 0)}, input).at(2),
                 u"0-[%4]-48000/2p0-ALSA-"_s.replace(u"%4"_s, name));
    }

    void anEntryComesApartIntoWhatItWasMadeOf() {
        const QString text =
            deviceString(3, device(u"Line In (USB Mixer)"_s, 4, 0, 13, 44100.0), 4, 1, u"Input DeckB"_s);
        QCOMPARE(text, u"3-[Line In (USB Mixer)]-44100/4p1-WASAPI-Input DeckB"_s);
        const ObjectAudioDevice parsed(text);
        QCOMPARE(parsed.index(), 3);
        QCOMPARE(parsed.channelFirst(), 1);
        QCOMPARE(parsed.hostApi(), u"WASAPI"_s);
        QCOMPARE(parsed.label(), u"Input DeckB"_s);
    }

    void theEmptyEntryAndTheHeadingsAreNoDevices() {
        const QStringList list = strings({device(u"x"_s, 4, 0)}, input);
        QCOMPARE(ObjectAudioDevice(list.at(0)).index(), -1);
        QCOMPARE(ObjectAudioDevice(list.at(1)).index(), -1);
        QCOMPARE(ObjectAudioDevice(list.at(2)).index(), 0);
    }

    // ---- labels ----

    void onePairOfAKnownMixerIsLabelledAndTheOthersAreNot() {
        const QStringList list = strings({device(u"USB Mixer"_s, 4, 0)}, input, "[Mixer]\ninputB=1\n");
        QCOMPARE(
            list.mid(2),
            QStringList({u"0-[USB Mixer]-48000/4p0-ALSA-"_s, u"0-[USB Mixer]-48000/4p1-ALSA-Input DeckB"_s,
                         u"0-[USB Mixer]-48000/4p2-ALSA-"_s, u"0-[USB Mixer]-48000/4p3-ALSA-"_s}));
    }

    void everyInputRoleHasItsLabel() {
        const QStringList list = strings({device(u"Mixer"_s, 6, 0)}, input,
                                         "[Mixer]\ninputA=0\ninputB=1\ninputMaster=2\noutputA=3\n");
        QVERIFY(list.at(2).endsWith(u"6p0-ALSA-Input DeckA"_s));
        QVERIFY(list.at(3).endsWith(u"6p1-ALSA-Input DeckB"_s));
        QVERIFY(list.at(4).endsWith(u"6p2-ALSA-Master"_s));
        QVERIFY(list.at(5).endsWith(u"6p3-ALSA-"_s)); // an output's place says nothing about an input
    }

    void everyOutputRoleHasItsLabel() {
        const QStringList list =
            strings({device(u"Mixer"_s, 0, 8)}, output,
                    "[Mixer]\noutputA=2\noutputB=4\noutputMaster=0\noutputHeadphone=6\n");
        QVERIFY(list.at(2).endsWith(u"8p0-ALSA-Master"_s));
        QVERIFY(list.at(3).endsWith(u"8p2-ALSA-Output DeckA"_s));
        QVERIFY(list.at(4).endsWith(u"8p4-ALSA-Output DeckB"_s));
        QVERIFY(list.at(5).endsWith(u"8p6-ALSA-Headphone"_s));
    }

    void ofTwoRolesOnOnePlaceTheFirstGivesTheLabel() {
        const QStringList list =
            strings({device(u"Mixer"_s, 0, 2)}, output, "[Mixer]\noutputHeadphone=0\noutputA=0\n");
        QVERIFY(list.at(2).endsWith(u"-Output DeckA"_s));
    }

    void aPlaceThatIsNoNumberCountsAsZero() {
        const QStringList list = strings({device(u"Mixer"_s, 4, 0)}, input, "[Mixer]\ninputA=first\n");
        QVERIFY(list.at(2).endsWith(u"4p0-ALSA-Input DeckA"_s));
        QVERIFY(list.at(3).endsWith(u"4p1-ALSA-"_s));
    }

    void anEmptyPlaceGivesNoLabel() {
        const QStringList list = strings({device(u"Mixer"_s, 2, 0)}, input, "[Mixer]\ninputA=\n");
        QVERIFY(list.at(2).endsWith(u"2p0-ALSA-"_s));
    }

    void aKnownStereoDeviceHasOneEntryToo() {
        QCOMPARE(strings({device(u"Mixer"_s, 2, 0)}, input, "[Mixer]\ninputB=1\n").size(), 3);
    }

    // ---- from the library ----

    void theDevicesOfTheLibraryAreReadAsTheyAre() {
        FakePortAudio& fake = FakePortAudio::instance();
        fake.devices = {{"Entr\xc3\xa9"
                         "e",
                         44100.0, 4, 2, 12},
                        {"mono", 8000.0, 1, 0, 12}};
        const std::vector<DeviceDescription> devices = presentDevices();
        QCOMPARE(devices.size(), std::size_t{2});
        QCOMPARE(devices[0].name, u"Entrée"_s);
        QCOMPARE(devices[0].defaultSampleRate, 44100.0);
        QCOMPARE(devices[0].maxInputChannels, 4);
        QCOMPARE(devices[0].maxOutputChannels, 2);
        QCOMPARE(devices[0].hostApi, 12);
        QCOMPARE(devices[1].name, u"mono"_s);
        QCOMPARE(int(fake.initialised), 0); // started and stopped again
    }

    void aLibraryThatCantStartOffersNothing() {
        FakePortAudio& fake = FakePortAudio::instance();
        fake.devices = {{"x", 44100.0, 2, 2, 0}};
        fake.startable = false;
        QVERIFY(presentDevices().empty());
        QCOMPARE(int(fake.initialised), 0);
    }

    void aDevicePluggedInBetweenTwoCallsShowsUp() {
        FakePortAudio& fake = FakePortAudio::instance();
        QCOMPARE(presentDevices().size(), std::size_t{0});
        fake.devices = {{"x", 44100.0, 2, 2, 0}};
        QCOMPARE(presentDevices().size(), std::size_t{1});
    }

    // ---- by name ----

    void aDeviceIsFoundByItsName_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("channels");
        QTest::addColumn<int>("found");
        QTest::newRow("where it was") << u"mixer"_s << 1 << 4 << 1;
        QTest::newRow("where it was, though another one has its name") << u"mixer"_s << 3 << 4 << 3;
        QTest::newRow("somewhere else") << u"mixer"_s << 0 << 4 << 1;
        QTest::newRow("beyond the list") << u"mixer"_s << 9 << 4 << 1;
        QTest::newRow("before the list") << u"mixer"_s << -1 << 4 << 1;
        QTest::newRow("too few channels where it was") << u"mixer"_s << 1 << 6 << 3;
        QTest::newRow("too few channels everywhere") << u"mixer"_s << 1 << 8 << -1;
        QTest::newRow("gone") << u"other"_s << 1 << 2 << -1;
        QTest::newRow("a name that only begins like it") << u"mix"_s << 1 << 2 << -1;
        QTest::newRow("inputs count, not outputs") << u"speaker"_s << 2 << 2 << -1;
    }
    void aDeviceIsFoundByItsName() {
        QFETCH(QString, name);
        QFETCH(int, index);
        QFETCH(int, channels);
        QFETCH(int, found);
        const std::vector<DeviceDescription> devices{device(u"line"_s, 2, 0), device(u"mixer"_s, 4, 0),
                                                     device(u"speaker"_s, 0, 2), device(u"mixer"_s, 6, 0)};
        QCOMPARE(deviceIndexOf(devices, name, index, channels), found);
        QCOMPARE(deviceIndexOf({}, name, index, channels), -1);
    }

    void whileALostServerHoldsTheLibraryNobodyCallsIt() {
        FakePortAudio& fake = FakePortAudio::instance();
        fake.devices = {{"x", 44100.0, 2, 2, 0}};
        const int calls = fake.initialiseCalls;
        PortAudioSession::block();
        QVERIFY(presentDevices().empty());
        QCOMPARE(int(fake.initialiseCalls), calls);
        PortAudioSession::unblock();
        QCOMPARE(presentDevices().size(), std::size_t{1});
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_DeviceCatalogue)
#include "tst_devicecatalogue.moc"
