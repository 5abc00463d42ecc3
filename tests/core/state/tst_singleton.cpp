#include "curve/autoresize.h"
#include "model/constants.h"
#include "model/qsample.h"
#include "phrasing/phrasing.h"
#include "phrasing/wavphrasing.h"
#include "state/midi.h"
#include "state/mode.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/setting.h"
#include "state/settingmixer.h"
#include "state/singleton.h"
#include "state/time.h"
#include "state/timecode.h"
#include "state/vinyl.h"
#include "support/datafolder.h"
#include "support/fakeportaudio.h"
#include "support/testmain.h"

#include <QMetaMethod>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;
const QString line = u"0-[Line]-44100/2p0-InDevelopment-"_s;

Singleton& shared() {
    return Singleton::instance();
}
FakePortAudio& library() {
    return FakePortAudio::instance();
}
} // namespace

class tst_Singleton : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        ownDataFolder();
        library().devices = {{"Line", 44100.0, 2, 2, 0}};
    }

    void init() {
        library().devices = {{"Line", 44100.0, 2, 2, 0}};
        Setting& setting = *shared().setting();
        setting.setInputDeckA(QString());
        setting.setInputDeckB(QString());
        setting.setInputMaster(QString());
        setting.setOutputMaster(QString());
        shared().mode()->modeFullDVS_off();
    }

    void thereIsOneAndItsMembersStay() {
        Singleton& first = Singleton::instance();
        QCOMPARE(&Singleton::instance(), &first);
        QVERIFY(first.parent() == nullptr);
        QVERIFY(first.mode() && first.performance() && first.setting() && first.settingMixer() &&
                first.midi());
        QVERIFY(first.time() && first.timecode() && first.vinyl() && first.pathFile() && first.autoresize());
        QVERIFY(first.recordingLooperTraining());
        QVERIFY(first.phrasing() && first.wavPhrasing());
        QCOMPARE(first.mode(), Singleton::instance().mode());
        QCOMPARE(first.setting()->parent(), &first);
    }

    void noDeckShowsAreasAtStart() {
        for (const auto deck : {deckA, deckB}) {
            QVERIFY(shared().phrasing()->listPhrasing(deck).isEmpty());
            QCOMPARE(shared().phrasing()->idPhrasingActivated(deck), Constant::defaultId);
            QVERIFY(shared().wavPhrasing()->wav(deck) == nullptr);
        }
    }

    void theTwoZeroMarksAreItsSlots() {
        QStringList slots_;
        const QMetaObject& meta = Singleton::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            slots_ << QString::fromLatin1(meta.method(i).methodSignature());
        }
        QCOMPARE(slots_, QStringList({u"calculVinylDeltaPositionA()"_s, u"calculVinylDeltaPositionB()"_s}));
    }

    void theSettingsAreCompleteFromThenOn() {
        QVERIFY(QSettings(pathInput(u"config.ini"_s), QSettings::IniFormat).contains(u"display/style"_s));
    }

    // ---- from a setting to a sample ----

    void withNoDeviceStoredThereIsNoSampleAndTheCatalogueIsNotBuilt() {
        const int calls = library().initialiseCalls;
        QVERIFY(shared().sampleInputDeckA() == nullptr);
        QVERIFY(shared().sampleInputDeckB() == nullptr);
        QVERIFY(shared().sampleInputMaster() == nullptr);
        QVERIFY(shared().sampleOutputMaster() == nullptr);
        QCOMPARE(int(library().initialiseCalls), calls);
    }

    void aStoredDeviceThatIsOfferedGivesASample() {
        shared().setting()->setInputDeckA(line);
        const QSample* sample = shared().sampleInputDeckA();
        QVERIFY(sample != nullptr);
        QCOMPARE(sample->name(), deckA);
        QCOMPARE(sample->deviceIndex(), 0);
        QCOMPARE(sample->deviceName(), u"Line"_s);
        QCOMPARE(sample->sampleRate(), 44100.0);
        QCOMPARE(sample->channelCount(), 2);
        QCOMPARE(sample->channelFirst(), 0);
        QVERIFY(!sample->isOutput());
        QCOMPARE(int(library().initialised), 0);
    }

    void everyInputHasItsRoleItsKeyAndItsFileName() {
        library().devices = {{"A", 44100.0, 2, 0, 0}, {"B", 48000.0, 4, 0, 0}, {"M", 96000.0, 4, 0, 0}};
        Setting& setting = *shared().setting();
        setting.setInputDeckA(u"0-[A]-44100/2p0-InDevelopment-"_s);
        setting.setInputDeckB(u"1-[B]-48000/4p1-InDevelopment-"_s);
        setting.setInputMaster(u"2-[M]-96000/4p3-InDevelopment-"_s);
        QSample* a = shared().sampleInputDeckA();
        QSample* b = shared().sampleInputDeckB();
        QSample* m = shared().sampleInputMaster();
        QVERIFY(a && b && m);
        QCOMPARE(a->name(), ModelGraph::INPUT_DECKA);
        QCOMPARE(b->name(), ModelGraph::INPUT_DECKB);
        QCOMPARE(m->name(), ModelGraph::INPUT_MASTER);
        QCOMPARE(b->deviceName(), u"B"_s);
        QCOMPARE(m->channelFirst(), 3);
        QCOMPARE(m->sampleRate(), 96000.0);
        const PathFile& files = *shared().pathFile();
        QCOMPARE(files.fileDeckA() + u".wav"_s, a->fileName());
        QCOMPARE(files.fileDeckB() + u".wav"_s, b->fileName());
        QCOMPARE(files.fileMaster() + u".wav"_s, m->fileName());
    }

    void twoSamplesOfOneDeviceHaveDifferentFileNames() {
        shared().setting()->setInputDeckA(line);
        QSample* first = shared().sampleInputDeckA();
        QSample* second = shared().sampleInputDeckA();
        QVERIFY(first != second);
        QVERIFY(first->fileName() != second->fileName());
        QCOMPARE(shared().pathFile()->fileDeckA() + u".wav"_s, second->fileName());
    }

    void anUnpluggedDeviceStaysStoredAndIsFoundAgainAtTheSameIndex() {
        shared().setting()->setInputDeckA(line);
        QVERIFY(shared().sampleInputDeckA() != nullptr);
        library().devices.clear();
        QVERIFY(shared().sampleInputDeckA() == nullptr);
        QCOMPARE(shared().setting()->inputDeckA()->text(), line);
        library().devices = {{"Other", 44100.0, 2, 2, 0}, {"Line", 44100.0, 2, 2, 0}};
        QVERIFY(shared().sampleInputDeckA() == nullptr); // it has moved
        library().devices = {{"Line", 44100.0, 2, 2, 0}};
        QVERIFY(shared().sampleInputDeckA() != nullptr);
    }

    void aStoredDeviceMatchesOnlyAsAWhole_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("case") << u"0-[line]-44100/2p0-InDevelopment-"_s;
        QTest::newRow("rate") << u"0-[Line]-48000/2p0-InDevelopment-"_s;
        QTest::newRow("channels") << u"0-[Line]-44100/4p0-InDevelopment-"_s;
        QTest::newRow("pair") << u"0-[Line]-44100/2p1-InDevelopment-"_s;
        QTest::newRow("host api") << u"0-[Line]-44100/2p0-ALSA-"_s;
        QTest::newRow("label") << u"0-[Line]-44100/2p0-InDevelopment-Master"_s;
        QTest::newRow("a part") << u"0-[Line]-44100/2p0-InDevelopment"_s;
        QTest::newRow("a heading") << u"----- InDevelopment -----"_s;
    }
    void aStoredDeviceMatchesOnlyAsAWhole() {
        QFETCH(QString, text);
        shared().setting()->setInputDeckA(text);
        QVERIFY(shared().sampleInputDeckA() == nullptr);
        QCOMPARE(shared().setting()->inputDeckA()->text(), text);
    }

    void aLabelledDeviceMatchesWhileTheMixerFileGivesThatLabel() {
        QSettings mixers(pathInput(u"MixerWindows.ini"_s), QSettings::IniFormat);
        mixers.setValue(u"Line/inputA"_s, u"0"_s);
        const QString labelled = line + u"Input DeckA"_s;
        shared().setting()->setInputDeckA(labelled);
        QVERIFY(shared().audioDeviceList(ModelAudioDeviceInfo::AUDIO_INPUT).contains(labelled));
        QVERIFY(shared().sampleInputDeckA() != nullptr);
        mixers.remove(u"Line"_s);
        QVERIFY(shared().sampleInputDeckA() == nullptr);
        shared().setting()->setInputDeckA(line);
        QVERIFY(shared().sampleInputDeckA() != nullptr);
    }

    void anInputIsLookedForAmongTheInputsAlone() {
        library().devices = {{"Line", 44100.0, 0, 2, 0}};
        shared().setting()->setInputDeckA(line);
        shared().setting()->setOutputMaster(line);
        QVERIFY(shared().sampleInputDeckA() == nullptr);
        QVERIFY(shared().sampleOutputMaster() != nullptr);
    }

    void theOutputTakesThePlacesOfBothDecks() {
        library().devices = {{"Out", 48000.0, 0, 6, 0}};
        Setting& setting = *shared().setting();
        setting.setOutputMaster(u"0-[Out]-48000/6p0-InDevelopment-"_s);
        const QSample* unset = shared().sampleOutputMaster();
        QVERIFY(unset != nullptr);
        QCOMPARE(unset->channelDeckA(), -1); // never chosen
        QCOMPARE(unset->channelDeckB(), -1);
        setting.setOutputDeckA(u"0-[Out]-48000/6p2-InDevelopment-"_s);
        setting.setOutputDeckB(u"0-[Out]-48000/6p4-InDevelopment-"_s);
        const QSample* sample = shared().sampleOutputMaster();
        QCOMPARE(sample->name(), ModelGraph::OUTPUT_MASTER);
        QVERIFY(sample->isOutput());
        QCOMPARE(sample->channelFirst(), 0);
        QCOMPARE(sample->channelDeckA(), 2);
        QCOMPARE(sample->channelDeckB(), 4);
        QCOMPARE(sample->channelCount(), 6);
        QCOMPARE(sample->sampleRate(), 48000.0);
    }

    void anOutputFixesNoFileName() {
        library().devices = {{"Line", 44100.0, 2, 2, 0}};
        shared().pathFile()->setFileDeckA(u"before.wav"_s);
        shared().setting()->setOutputMaster(line);
        QVERIFY(shared().sampleOutputMaster() != nullptr);
        QCOMPARE(shared().pathFile()->fileDeckA(), u"before"_s);
    }

    // ---- the vinyl's zero ----

    void thePlattersAngleBecomesTheNewZero_data() {
        QTest::addColumn<double>("angle");
        QTest::addColumn<double>("before");
        QTest::addColumn<double>("after");
        QTest::newRow("plain") << 30.0 << 20.0 << 50.0;
        QTest::newRow("over a turn") << 350.0 << 20.0 << 10.0;
        QTest::newRow("a whole turn") << 350.0 << 10.0 << 0.0;
        QTest::newRow("negative") << 10.0 << -30.0 << 340.0;
        QTest::newRow("more than a turn below") << 10.0 << -730.0 << 0.0;
    }
    void thePlattersAngleBecomesTheNewZero() {
        QFETCH(double, angle);
        QFETCH(double, before);
        QFETCH(double, after);
        Vinyl& vinyl = *shared().vinyl();
        for (const auto deck : {deckA, deckB}) {
            vinyl.setAngle(deckA, 1.0);
            vinyl.setAngle(deckB, 2.0);
            vinyl.setDeltaPosition(deckA, 3.0);
            vinyl.setDeltaPosition(deckB, 4.0);
            vinyl.setAngle(deck, angle);
            vinyl.setDeltaPosition(deck, before);
            QVERIFY(QMetaObject::invokeMethod(&shared(), deck == deckA ? "calculVinylDeltaPositionA"
                                                                       : "calculVinylDeltaPositionB"));
            QCOMPARE(vinyl.deltaPosition(deck), after);
            QCOMPARE(vinyl.deltaPosition(deck == deckA ? deckB : deckA), deck == deckA ? 4.0 : 3.0);
            QCOMPARE(vinyl.angle(deck), angle); // until the next point
        }
    }

    void theMarkIsStoredWithAFullDvsTimecodeOnly() {
        Setting& setting = *shared().setting();
        Vinyl& vinyl = *shared().vinyl();
        setting.setVinylDeltaPositionA(1.0);
        setting.setVinylDeltaPositionB(2.0);
        vinyl.setDeltaPosition(deckA, 0.0);
        vinyl.setDeltaPosition(deckB, 0.0);
        vinyl.setAngle(deckA, 123.4567891);
        vinyl.setAngle(deckB, 234.5678912);
        shared().calculVinylDeltaPositionA();
        shared().calculVinylDeltaPositionB();
        QCOMPARE(setting.vinylDeltaPositionA(), 1.0);
        QCOMPARE(setting.vinylDeltaPositionB(), 2.0);
        vinyl.setDeltaPosition(deckA, 0.0);
        vinyl.setDeltaPosition(deckB, 0.0);
        shared().mode()->modeFullDVS_on();
        shared().calculVinylDeltaPositionA();
        QCOMPARE(setting.vinylDeltaPositionA(), 123.457);
        QCOMPARE(setting.vinylDeltaPositionB(), 2.0);
        QCOMPARE(vinyl.deltaPosition(deckA), 123.4567891); // the digits are the file's
        shared().calculVinylDeltaPositionB();
        QCOMPARE(setting.vinylDeltaPositionB(), 234.568);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Singleton)
#include "tst_singleton.moc"
