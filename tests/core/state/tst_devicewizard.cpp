#include "state/devicewizard.h"
#include "state/midi.h"
#include "state/setting.h"
#include "state/settingmixer.h"
#include "state/singleton.h"
#include "support/datafolder.h"
#include "support/fakeportaudio.h"
#include "support/testmain.h"

#include <QFile>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QStringList inputs{QString(),
                         u"----- ALSA -----"_s,
                         u"0-[Webcam]-48000/2p0-ALSA-"_s,
                         u"1-[Rane USB]-48000/4p0-ALSA-Input DeckA"_s,
                         u"1-[Rane USB]-48000/4p1-ALSA-Input DeckB"_s,
                         u"1-[Rane USB]-48000/4p2-ALSA-"_s,
                         u"1-[Rane USB]-48000/4p3-ALSA-"_s};
const QStringList outputs{QString(), u"----- ALSA -----"_s, u"1-[Rane USB]-48000/6p0-ALSA-"_s,
                          u"1-[Rane USB]-48000/6p2-ALSA-"_s, u"1-[Rane USB]-48000/6p4-ALSA-"_s};

const QStringList midiInputs{u"0:Pads:Pads MIDI 1 20:0"_s, u"1:Rane USB:Rane USB MIDI 1 24:0"_s,
                             u"2:Rane USB:Rane USB MIDI 2 24:1"_s};

} // namespace

class tst_DeviceWizard : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    int m_files = 0;

    std::unique_ptr<SettingMixer> mixer(const QByteArray& content) {
        const QString name = m_folder.filePath(u"Mixer%1.ini"_s.arg(++m_files));
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly)) {
            return nullptr;
        }
        file.write(content);
        file.close();
        return std::make_unique<SettingMixer>(name, nullptr);
    }
    std::unique_ptr<Setting> setting() {
        return std::make_unique<Setting>(m_folder.filePath(u"config%1.ini"_s.arg(++m_files)), nullptr);
    }

private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }

    // ---- finding ----

    void aMixerWhoseInputIsOfferedIsFound() {
        const auto known = mixer("[Rane]\nname=Rane Seventy\nconfInputA=Input DeckA\n");
        QCOMPARE(findKnownMixer(*known, inputs), u"Rane/Rane Seventy"_s);
    }

    void deckBsInputIsLookedForWhereDeckAsIsNotOffered() {
        QCOMPARE(
            findKnownMixer(*mixer("[Rane]\nname=R\nconfInputA=nowhere\nconfInputB=Input DeckB\n"), inputs),
            u"Rane/R"_s);
        QCOMPARE(findKnownMixer(*mixer("[Rane]\nname=R\nconfInputB=Input DeckB\n"), inputs), u"Rane/R"_s);
    }

    void theFirstMixerInKeyOrderWins() {
        const auto known = mixer("[Zulu]\nname=Z\nconfInputA=Rane\n[Alpha]\nname=A\nconfInputA=nowhere\n"
                                 "[Mike]\nname=M\nconfInputA=Webcam\n");
        QCOMPARE(findKnownMixer(*known, inputs), u"Mike/M"_s);
    }

    void anUnknownMixerIsNotFound() {
        QVERIFY(findKnownMixer(*mixer(""), inputs).isEmpty());
        QVERIFY(findKnownMixer(*mixer("[Rane]\nname=R\nconfInputA=Xone\n"), inputs).isEmpty());
        QVERIFY(findKnownMixer(*mixer("[Rane]\nname=R\n"), inputs).isEmpty());
        QVERIFY(findKnownMixer(*mixer("[Rane]\nconfInputA=Input DeckA\n"), inputs).isEmpty()); // has no name
        QVERIFY(findKnownMixer(*mixer("[Rane]\nname=R\nconfInputA=Input DeckA\n"), {}).isEmpty());
    }

    void theSearchIsCaseSensitive() {
        QVERIFY(findKnownMixer(*mixer("[Rane]\nname=R\nconfInputA=input decka\n"), inputs).isEmpty());
    }

    void blanksAroundTheTextDontMatter() {
        QCOMPARE(findKnownMixer(*mixer("[Rane]\nname=R\nconfInputA=\"  Input DeckA \"\n"), inputs),
                 u"Rane/R"_s);
    }

    void anEmptyTextHitsTheEmptyEntryAndSoDoesntCount() {
        QVERIFY(findKnownMixer(*mixer("[Rane]\nname=R\nconfInputA=\n"), inputs).isEmpty());
        QVERIFY(findKnownMixer(*mixer("[Rane]\nname=R\nconfInputA=\"  \"\nconfInputB=\n"), inputs).isEmpty());
    }

    void aHeadingIsNoDevice() {
        QVERIFY(findKnownMixer(*mixer("[Rane]\nname=R\nconfInputA=ALSA -----\n"), inputs).isEmpty());
        // "ALSA" is in the heading and in every entry: the entry is meant.
        const auto known = mixer("[Rane]\nname=R\nconfInputA=ALSA\n");
        const auto target = setting();
        applyKnownMixer(u"Rane/R"_s, *known, inputs, midiInputs, outputs, *target);
        QCOMPARE(target->inputDeckA()->text(), u"0-[Webcam]-48000/2p0-ALSA-"_s);
    }

    // ---- applying ----

    void everyRoleOfAKnownMixerIsStored() {
        const auto known =
            mixer("[Rane]\nname=Rane / Seventy\nconfInputA=Input DeckA\nconfInputB=Input DeckB\n"
                  "confInputMaster=4p2\nconfInputMidi=Rane\nconfOutputPlayback=6p0\nconfOutputA="
                  "6p2\nconfOutputB=6p4\n"
                  "confLearnMidi=2/8\nconfOptionCutOffSound=false\n");
        const auto target = setting();
        applyKnownMixer(u"Rane/Rane / Seventy"_s, *known, inputs, midiInputs, outputs, *target);
        QCOMPARE(target->name(), u"Rane / Seventy"_s);
        QCOMPARE(target->inputDeckA()->text(), inputs.at(3));
        QCOMPARE(target->inputDeckB()->text(), inputs.at(4));
        QCOMPARE(target->inputMaster()->text(), inputs.at(5));
        QCOMPARE(target->inputMidi()->text(), midiInputs.at(1)); // the first that holds it
        QCOMPARE(target->outputMaster()->text(), outputs.at(2));
        QCOMPARE(target->outputDeckA()->text(), outputs.at(3));
        QCOMPARE(target->outputDeckB()->text(), outputs.at(4));
        QCOMPARE(target->learnMidi(), u"2/8"_s);
        QVERIFY(!target->optionGenerateCutOffSound());
        QCOMPARE(Singleton::instance().midi()->object().channel(), 2);
        QCOMPARE(Singleton::instance().midi()->object().controller(), 8);
    }

    void aRoleThatTheMachineDoesntOfferBecomesNoneAndOneThatTheFileDoesntNameStays() {
        const auto known = mixer("[Rane]\nname=R\nconfInputA=nowhere\nconfOutputA=\n");
        const auto target = setting();
        target->setInputDeckA(u"old a"_s);
        target->setInputDeckB(u"old b"_s);
        target->setOutputDeckA(u"old out a"_s);
        target->setOutputMaster(u"old out"_s);
        target->setLearnMidi(1, 2);
        applyKnownMixer(u"Rane/R"_s, *known, inputs, midiInputs, outputs, *target);
        QVERIFY(target->inputDeckA()->text().isEmpty());
        QVERIFY(target->outputDeckA()->text().isEmpty());
        QCOMPARE(target->inputDeckB()->text(), u"old b"_s);
        QCOMPARE(target->outputMaster()->text(), u"old out"_s);
        QCOMPARE(target->learnMidi(), u"1/2"_s);
        QVERIFY(target->optionGenerateCutOffSound());
    }

    void aMidiInputThatIsntThereBecomesNoneAndOneThatTheFileDoesntNameStays() {
        const auto target = setting();
        target->setInputMidi(u"old"_s);
        applyKnownMixer(u"Rane/R"_s, *mixer("[Rane]\nname=R\nconfInputA=Rane\n"), inputs, midiInputs, outputs,
                        *target);
        QCOMPARE(target->inputMidi()->text(), u"old"_s);
        applyKnownMixer(u"Rane/R"_s, *mixer("[Rane]\nname=R\nconfInputMidi=rane\n"), inputs, midiInputs,
                        outputs, *target);
        QVERIFY(target->inputMidi()->text().isEmpty());
        target->setInputMidi(u"old"_s);
        applyKnownMixer(u"Rane/R"_s, *mixer("[Rane]\nname=R\nconfInputMidi=Rane\n"), inputs, {}, outputs,
                        *target);
        QVERIFY(target->inputMidi()->text().isEmpty());
    }

    void theCutSoundCanBeSwitchedOn() {
        const auto target = setting();
        target->setOptionGenerateCutOffSound(false);
        applyKnownMixer(u"Rane/R"_s, *mixer("[Rane]\nname=R\nconfOptionCutOffSound=true\n"), inputs,
                        midiInputs, outputs, *target);
        QVERIFY(target->optionGenerateCutOffSound());
    }

    void anEntryThatTheMixerFileDoesntKnowChangesNothing() {
        const auto target = setting();
        const unsigned writes = target->generation();
        applyKnownMixer(u"Xone/X"_s, *mixer("[Rane]\nname=R\nconfInputA=Rane\n"), inputs, midiInputs, outputs,
                        *target);
        applyKnownMixer(QString(), *mixer("[Rane]\nname=R\nconfInputA=Rane\n"), inputs, midiInputs, outputs,
                        *target);
        QCOMPARE(target->generation(), writes);
    }

    // ---- at the first start ----

    void aFirstStartSetsUpAKnownMixerByItself() {
        QSettings mixers(pathInput(u"MixerWindows.ini"_s), QSettings::IniFormat);
        Setting& target = *Singleton::instance().setting();
        FakePortAudio::instance().devices = {{"Rane USB", 48000.0, 4, 6, 8}};
        const auto noneAsked = []() -> QStringList { qFatal("no MIDI input is needed"); };

        QVERIFY(!autoSetUpDevices(noneAsked)); // no mixer is known at all
        mixers.setValue(u"Rane/name"_s, u"Rane Seventy"_s);
        mixers.setValue(u"Rane/inputA"_s, u"0"_s);
        mixers.setValue(u"Rane/inputB"_s, u"1"_s);
        mixers.setValue(u"Rane/confInputA"_s, u"Input DeckA"_s);
        mixers.setValue(u"Rane/confInputB"_s, u"Input DeckB"_s);
        mixers.setValue(u"Rane/confInputMidi"_s, u"Rane USB"_s);
        mixers.setValue(u"Rane/confOutputPlayback"_s, u"[Rane USB]"_s);

        target.setInputDeckB(u"something stored"_s);
        QVERIFY(!autoSetUpDevices(noneAsked));
        QVERIFY(target.inputDeckA()->text().isEmpty());
        target.setInputDeckB(QString());
        target.setInputDeckA(u"something stored"_s);
        QVERIFY(!autoSetUpDevices(noneAsked));
        QVERIFY(target.inputDeckB()->text().isEmpty()); // even though it is empty
        target.setInputDeckA(QString());

        FakePortAudio::instance().devices = {{"Webcam", 48000.0, 2, 0, 8}};
        QVERIFY(!autoSetUpDevices(noneAsked));
        QVERIFY(target.inputDeckA()->text().isEmpty());

        FakePortAudio::instance().devices = {{"Webcam", 48000.0, 2, 0, 8}, {"Rane USB", 48000.0, 4, 6, 8}};
        QVERIFY(autoSetUpDevices([] { return midiInputs; }));
        QCOMPARE(target.inputDeckA()->text(), u"1-[Rane USB]-48000/4p0-ALSA-Input DeckA"_s);
        QCOMPARE(target.inputDeckB()->text(), u"1-[Rane USB]-48000/4p1-ALSA-Input DeckB"_s);
        QCOMPARE(target.outputMaster()->text(), u"1-[Rane USB]-48000/6p0-ALSA-"_s);
        QCOMPARE(target.inputMidi()->text(), midiInputs.at(1));
        QCOMPARE(target.name(), u"Rane Seventy"_s);
        QVERIFY(!autoSetUpDevices(noneAsked)); // and only then
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_DeviceWizard)
#include "tst_devicewizard.moc"
