#include "model/qsample.h"
#include "module/deviceobject.h"
#include "state/mode.h"
#include "state/performance.h"
#include "state/portaudiosession.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "support/datafolder.h"
#include "support/fakeportaudio.h"
#include "support/testmain.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

Singleton& shared() {
    return Singleton::instance();
}
FakePortAudio& library() {
    return FakePortAudio::instance();
}

QString roleOf(ModelGraph::EnumGraph name) {
    return name == ModelGraph::INPUT_DECKA    ? u"A"_s
           : name == ModelGraph::INPUT_DECKB  ? u"B"_s
           : name == ModelGraph::INPUT_MASTER ? u"M"_s
                                              : u"?"_s;
}

// Writes down what is announced: the recorder, whose device, and the names of the devices served.
class Ear : public QObject {
    Q_OBJECT
public:
    explicit Ear(DeviceObject& devices) {
        const auto input = [this](const QString& worker) {
            return [this, worker](ModelGraph::EnumGraph role, QSample* m, QSample* a, QSample* b) {
                heard << worker + u':' + roleOf(role) + u':' + (m ? u'M' : u'-') + (a ? u'A' : u'-') +
                             (b ? u'B' : u'-');
                master = m ? m : master;
                deckA = a ? a : deckA;
                deckB = b ? b : deckB;
            };
        };
        connect(&devices, &DeviceObject::s_SampleInputMultiChannel_All, this, input(u"All"_s));
        connect(&devices, &DeviceObject::s_SampleInputMultiChannel_DeckB, this, input(u"DeckB"_s));
        connect(&devices, &DeviceObject::s_SampleInputMultiChannel_Master, this, input(u"Master"_s));
        connect(&devices, &DeviceObject::s_SampleOutputPlayBack, this, [this](QSample* sample) {
            heard << u"Out"_s;
            output = sample;
        });
    }
    QStringList take() { return std::exchange(heard, {}); }

    QSample* master = nullptr;
    QSample* deckA = nullptr;
    QSample* deckB = nullptr;
    QSample* output = nullptr;

private:
    QStringList heard;
};

// One entry of a card of four channels in and out.
QString entry(int index, int place) {
    return u"%1-[card %1]-44100/4p%2-InDevelopment-"_s.arg(index).arg(place);
}

void store(const QString& a, const QString& b, const QString& master, const QString& output) {
    Setting& setting = *shared().setting();
    setting.setInputDeckA(a);
    setting.setInputDeckB(b);
    setting.setInputMaster(master);
    setting.setOutputMaster(output);
}

} // namespace

class tst_DeviceObject : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }

    void init() {
        library().devices.clear();
        for (int i = 0; i < 3; ++i) {
            library().devices.push_back({"card " + std::to_string(i), 44100.0, 4, 4, 0});
        }
        store({}, {}, {}, {});
        shared().mode()->modeRecorder_off();
        shared().pathFile()->newPathDirectory_recording();
    }

    void theSignalsStandInTheirOrder() {
        QStringList signals_;
        const QMetaObject& meta = DeviceObject::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).methodType() == QMetaMethod::Signal) {
                signals_ << QString::fromLatin1(meta.method(i).name());
            }
        }
        QCOMPARE(signals_,
                 QStringList({u"s_SampleInputMultiChannel_All"_s, u"s_SampleInputMultiChannel_DeckB"_s,
                              u"s_SampleInputMultiChannel_Master"_s, u"s_SampleOutputPlayBack"_s,
                              u"s_MissingDevice"_s}));
    }

    void theStoredDevicesAreTakenAndEachDeckIsAnnounced() {
        store(entry(0, 0), entry(1, 1), {}, entry(2, 2));
        Performance& performance = *shared().performance();
        QSignalSpy input(&performance, &Performance::s_InputSample);
        QSignalSpy output(&performance, &Performance::s_OutputSample);
        performance.setOutputBuffer(512.0);
        DeviceObject devices;
        Ear ear(devices);
        devices.controllerDevices();
        QCOMPARE(performance.sample(ModelGraph::INPUT_DECKA)->deviceName(), u"card 0"_s);
        QCOMPARE(performance.sample(ModelGraph::INPUT_DECKB)->deviceIndex(), 1);
        QCOMPARE(performance.sample(ModelGraph::INPUT_DECKB)->channelFirst(), 1);
        QCOMPARE(performance.sampleOutput()->deviceName(), u"card 2"_s);
        QVERIFY(performance.sampleOutput()->isOutput());
        QCOMPARE(performance.outputBufferSelected(), 512.0);
        QCOMPARE(input.count(), 2);
        QCOMPARE(input.at(0).at(0).value<ModelGraph::EnumGraph>(), ModelGraph::INPUT_DECKA);
        QCOMPARE(input.at(1).at(0).value<ModelGraph::EnumGraph>(), ModelGraph::INPUT_DECKB);
        QCOMPARE(output.count(), 1);
        QVERIFY(ear.take().isEmpty()); // nothing is opened
    }

    void aRemovedDeviceFallsBackTo48000HzForTheGraph() {
        store(entry(0, 0), entry(1, 1), {}, entry(2, 2));
        DeviceObject devices;
        devices.controllerDevices();
        QCOMPARE(shared().performance()->sample(ModelGraph::INPUT_DECKA)->sampleRate(), 44100.0);
        library().devices.clear();
        devices.controllerDevices();
        for (const auto name : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
            const QSample* sample = shared().performance()->sample(name);
            QCOMPARE(sample->name(), name);
            QCOMPARE(sample->deviceIndex(), -1);
            QVERIFY(sample->deviceName().isEmpty());
            QCOMPARE(sample->sampleRate(), 48000.0);
        }
        QVERIFY(shared().performance()->sampleOutput()->deviceName().isEmpty());
        QCOMPARE(shared().performance()->sampleOutput()->name(), ModelGraph::OUTPUT_MASTER);
        Ear ear(devices);
        devices.runDevices();
        QVERIFY(ear.take().isEmpty());
    }

    void theSessionOpensWhatTheTableSays_data() {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<QString>("master");
        QTest::addColumn<bool>("recording");
        QTest::addColumn<QStringList>("heard");
        const QString none;
        QTest::newRow("nothing") << none << none << none << true << QStringList{};
        QTest::newRow("all on one card, recording")
            << entry(0, 0) << entry(0, 1) << entry(0, 2) << true << QStringList{u"All:A:MAB"_s};
        QTest::newRow("all on one card, not recording") << entry(0, 0) << entry(0, 1) << entry(0, 2) << false
                                                        << QStringList{u"All:A:-AB"_s, u"Master:M:M--"_s};
        QTest::newRow("two cards, master with deck B") << entry(1, 0) << entry(2, 0) << entry(2, 1) << true
                                                       << QStringList{u"All:A:-A-"_s, u"DeckB:B:M-B"_s};
        QTest::newRow("three cards") << entry(1, 0) << entry(2, 0) << entry(0, 1) << true
                                     << QStringList{u"All:A:-A-"_s, u"DeckB:B:--B"_s, u"Master:M:M--"_s};
        QTest::newRow("deck B alone") << none << entry(2, 0) << none << false << QStringList{u"All:B:--B"_s};
        QTest::newRow("master alone")
            << none << none << entry(2, 0) << false << QStringList{u"Master:M:M--"_s};
    }
    void theSessionOpensWhatTheTableSays() {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(QString, master);
        QFETCH(bool, recording);
        QFETCH(QStringList, heard);
        store(a, b, master, {});
        if (recording) {
            shared().mode()->modeRecorder_on();
        }
        DeviceObject devices;
        devices.controllerDevices();
        Ear ear(devices);
        devices.runDevices();
        QCOMPARE(ear.take(), heard);
        if (ear.deckA != nullptr) {
            QCOMPARE(ear.deckA, shared().performance()->sample(ModelGraph::INPUT_DECKA));
        }
        if (ear.master != nullptr) {
            QCOMPARE(ear.master->name(), ModelGraph::INPUT_MASTER);
        }
    }

    // ---- at the start of a session a device is its name ----

    void aDeviceThatHasMovedIsFoundByItsName_data() {
        QTest::addColumn<bool>("chosenBefore"); // while it still had its index
        QTest::newRow("since it was chosen") << true;
        QTest::newRow("since it was stored") << false;
    }
    void aDeviceThatHasMovedIsFoundByItsName() {
        QFETCH(bool, chosenBefore);
        store(entry(1, 0), entry(1, 1), entry(1, 2), {});
        shared().mode()->modeRecorder_on();
        DeviceObject devices;
        const auto move = [] { library().devices.erase(library().devices.begin()); };
        if (!chosenBefore) {
            move();
        }
        devices.controllerDevices();
        QCOMPARE(shared().performance()->sample(ModelGraph::INPUT_DECKA)->deviceName(),
                 chosenBefore ? u"card 1"_s : QString()); // what is chosen is chosen by the whole text
        if (chosenBefore) {
            move();
        }
        Ear ear(devices);
        QSignalSpy missing(&devices, &DeviceObject::s_MissingDevice);
        devices.runDevices();
        QCOMPARE(ear.take(), QStringList(u"All:A:MAB"_s)); // one device, so one stream
        QCOMPARE(ear.deckA->deviceName(), u"card 1"_s);
        QCOMPARE(ear.deckA->sampleRate(), 44100.0);
        QCOMPARE(ear.deckA->channelCount(), 4);
        QCOMPARE(ear.deckB->channelFirst(), 1);
        QCOMPARE(ear.master->channelFirst(), 2);
        QCOMPARE(ear.deckA, shared().performance()->sample(ModelGraph::INPUT_DECKA));
        QCOMPARE(shared().pathFile()->fileDeckA() + u".wav"_s, ear.deckA->fileName());
        QCOMPARE(shared().pathFile()->fileDeckB() + u".wav"_s, ear.deckB->fileName());
        QCOMPARE(shared().pathFile()->fileMaster() + u".wav"_s, ear.master->fileName());
        QCOMPARE(missing.count(), 0);
        QCOMPARE(int(library().initialised), 0);
    }

    void aDeviceThatIsntThereIsTold_data() {
        QTest::addColumn<bool>("chosenBefore");
        QTest::addColumn<bool>("recording");
        QTest::addColumn<QStringList>("told");
        const QStringList decks{u"A:card 1"_s, u"B:card 2"_s};
        const QStringList all = decks + QStringList(u"M:card 2"_s);
        QTest::newRow("gone since it was chosen") << true << false << decks; // an unread master isn't missed
        QTest::newRow("never there") << false << false << decks;
        QTest::newRow("gone, recorded") << true << true << all;
        QTest::newRow("never there, recorded") << false << true << all;
    }
    void aDeviceThatIsntThereIsTold() {
        QFETCH(bool, chosenBefore);
        QFETCH(bool, recording);
        QFETCH(QStringList, told);
        store(entry(1, 0), entry(2, 1), entry(2, 2), {});
        if (recording) {
            shared().mode()->modeRecorder_on();
        }
        DeviceObject devices;
        const auto unplug = [] {
            library().devices[1].name = "another card";
            library().devices[2].inputs = 2; // of that name, with too few channels
        };
        if (!chosenBefore) {
            unplug();
        }
        devices.controllerDevices();
        if (chosenBefore) {
            unplug();
        }
        Ear ear(devices);
        QStringList heard;
        connect(&devices, &DeviceObject::s_MissingDevice, this,
                [&](ModelGraph::EnumGraph name, const QString& device) {
                    heard << roleOf(name) + u':' + device;
                });
        devices.runDevices();
        QCOMPARE(heard, told);
        QVERIFY(ear.take().isEmpty());
    }

    // The recorders tell then that nothing comes from them; which devices there are can't be asked.
    void whileTheLibraryIsBlockedWhatWasChosenIsAnnouncedAndNothingIsMissed() {
        store(entry(1, 0), entry(2, 1), {}, {});
        DeviceObject devices;
        devices.controllerDevices();
        Ear ear(devices);
        QSignalSpy missing(&devices, &DeviceObject::s_MissingDevice);
        PortAudioSession::block();
        devices.runDevices();
        PortAudioSession::unblock();
        QCOMPARE(ear.take(), QStringList({u"All:A:-A-"_s, u"DeckB:B:--B"_s}));
        QCOMPARE(missing.count(), 0);
    }

    void aStoredLineThatNoStreamCanBeOpenedFromIsntFoundByItsName() {
        for (const QString& line : {u"9-[card 1]-0/4p0-ALSA-"_s, u"9-[card 1]-44100/1p0-ALSA-"_s}) {
            store(line, {}, {}, {});
            DeviceObject devices;
            devices.controllerDevices();
            Ear ear(devices);
            QSignalSpy missing(&devices, &DeviceObject::s_MissingDevice);
            devices.runDevices();
            QVERIFY(ear.take().isEmpty());
            QCOMPARE(missing.count(), 1);
        }
    }

    void whatWasNeverStoredIsntMissed() {
        shared().mode()->modeRecorder_on();
        DeviceObject devices;
        devices.controllerDevices();
        QSignalSpy missing(&devices, &DeviceObject::s_MissingDevice);
        devices.runDevices();
        store(u"----- ALSA -----"_s, u"nonsense"_s, {}, {});
        devices.controllerDevices();
        devices.runDevices();
        QCOMPARE(missing.count(), 0);
    }

    void theOutputComesLastAndOnlyWhenThereIsOne() {
        store(entry(0, 0), {}, {}, entry(1, 2));
        DeviceObject devices;
        devices.controllerDevices();
        Ear ear(devices);
        devices.runDevices();
        QCOMPARE(ear.take(), QStringList({u"All:A:-A-"_s, u"Out"_s}));
        QCOMPARE(ear.output, shared().performance()->sampleOutput());
        shared().performance()->setSampleOutput(nullptr);
        devices.runDevices();
        QCOMPARE(ear.take(), QStringList(u"All:A:-A-"_s));
        store(entry(0, 0), {}, {}, {});
        devices.controllerDevices();
        devices.runDevices();
        QCOMPARE(ear.take(), QStringList(u"All:A:-A-"_s));
    }

    void eachSessionMakesItsOwnMasterSample() {
        store({}, {}, entry(0, 2), {});
        DeviceObject devices;
        devices.controllerDevices();
        Ear ear(devices);
        devices.runDevices();
        const QSample* first = ear.master;
        devices.runDevices();
        QVERIFY(ear.master != first);
        QCOMPARE(shared().pathFile()->fileMaster() + u".wav"_s, ear.master->fileName());
    }

    void aSecondRecordedSessionGetsAFolderAndNamesOfItsOwn() {
        store(entry(0, 0), entry(0, 1), entry(0, 2), {});
        shared().mode()->modeRecorder_on();
        DeviceObject devices;
        devices.controllerDevices();
        Ear ear(devices);
        PathFile& files = *shared().pathFile();

        devices.runDevices();
        const QString folder = files.pathDirectoryRecording(); // the first take is written there
        const QString a = ear.deckA->fileName();
        const QString b = ear.deckB->fileName();
        const QString m = ear.master->fileName();
        QCOMPARE(files.fileDeckA() + u".wav"_s, a);

        devices.runDevices();
        QVERIFY(files.pathDirectoryRecording() != folder);
        QVERIFY(ear.deckA->fileName() != a && ear.deckB->fileName() != b && ear.master->fileName() != m);
        QCOMPARE(files.fileDeckA() + u".wav"_s, ear.deckA->fileName());
        QCOMPARE(files.fileDeckB() + u".wav"_s, ear.deckB->fileName());
        QCOMPARE(files.fileMaster() + u".wav"_s, ear.master->fileName());
    }

    void aSessionThatIsntRecordedLeavesFolderAndNames() {
        store(entry(0, 0), {}, {}, {});
        DeviceObject devices;
        devices.controllerDevices();
        PathFile& files = *shared().pathFile();
        const QString folder = files.pathDirectoryRecording();
        const QString name = files.fileDeckA();
        devices.runDevices();
        QCOMPARE(files.pathDirectoryRecording(), folder);
        QCOMPARE(files.fileDeckA(), name);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_DeviceObject)
#include "tst_deviceobject.moc"
