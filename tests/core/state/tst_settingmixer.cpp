#include "state/settingmixer.h"

#include "support/testmain.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray mixers = "stray=1\n"
                          "name=Stray\n"
                          "[Rane]\n"
                          "name=Rane Seventy\n"
                          "inputA=0\n"
                          "inputB=1\n"
                          "confLearnMidi=2/8\n"
                          "[Traktor%20Audio]\n"
                          "name=Native / Ten\n"
                          "inputA=\n"
                          "[DJM 900]\n"
                          "name=DJM 900\n"
                          "inputMaster=2\n";

} // namespace

class tst_SettingMixer : public QObject {
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

private Q_SLOTS:
    void theDevicesNameContainsTheGroup() {
        const auto known = mixer(mixers);
        QVERIFY(known->mixerContains(u"Rane"_s));
        QVERIFY(known->mixerContains(u"2- Rane Seventy-Two (USB)"_s));
        QVERIFY(known->mixerContains(u"Traktor Audio 10"_s));
        QVERIFY(known->mixerContains(u"Pioneer DJM 900 NXS2"_s));
        QVERIFY(!known->mixerContains(u"Ran"_s)); // the group doesn't contain the name
        QVERIFY(!known->mixerContains(u"Xone:92"_s));
        QVERIFY(!known->mixerContains(QString()));
    }

    void theKeyAskedForContainsTheNameInTheFile() {
        const auto known = mixer("[Rane]\ninput=1\n");
        QVERIFY(known->mixerKnows(u"inputA"_s, u"Rane 72"_s));
        QCOMPARE(known->mixerValue(u"inputA"_s, u"Rane 72"_s), u"1"_s);
        QVERIFY(!known->mixerKnows(u"inp"_s, u"Rane 72"_s));
        QVERIFY(!mixer("[Rane]\ninputA2=1\n")->mixerKnows(u"inputA"_s, u"Rane 72"_s));
    }

    void allMatchesAreCaseSensitive() {
        const auto known = mixer(mixers);
        QVERIFY(!known->mixerContains(u"RANE 72"_s));
        QVERIFY(!known->mixerKnows(u"INPUTA"_s, u"Rane 72"_s));
        QVERIFY(!known->mixerKnows(u"inputA"_s, u"rane 72"_s));
        QVERIFY(!known->mixerKnows(u"confInputMaster"_s, u"DJM 900"_s)); // "inputMaster" isn't in it
    }

    void aValueComesAsText() {
        const auto known = mixer(mixers);
        QCOMPARE(known->mixerValue(u"inputB"_s, u"Rane 72"_s), u"1"_s);
        QCOMPARE(known->mixerValue(u"confLearnMidi"_s, u"Rane 72"_s), u"2/8"_s);
        QVERIFY(known->mixerValue(u"outputA"_s, u"Rane 72"_s).isEmpty());
        QVERIFY(known->mixerValue(u"inputA"_s, u"unknown"_s).isEmpty());
    }

    void aKeyWithoutAValueIsKnownAndEmpty() {
        const auto known = mixer(mixers);
        QVERIFY(known->mixerKnows(u"inputA"_s, u"Traktor Audio 10"_s));
        QVERIFY(known->mixerValue(u"inputA"_s, u"Traktor Audio 10"_s).isEmpty());
    }

    void aValueWithACommaIsReadWhole() {
        const auto known = mixer("[Rane]\nconfInputA=(hw:1,0)\nname=Rane,Old\n"
                                 "[Xone]\nname=\"Xone, the old one\"\n");
        QCOMPARE(known->mixerValue(u"confInputA"_s, u"Rane"_s), u"(hw:1,0)"_s);
        QCOMPARE(known->mixerDeviceNames(), QStringList({u"Rane/Rane,Old"_s, u"Xone/Xone, the old one"_s}));
    }

    void ofSeveralMatchesTheFirstInKeyOrderCounts() {
        const auto known = mixer("[Zebra]\ninputA=9\n[Alpha]\ninputA=1\ninput=0\n");
        QCOMPARE(known->mixerValue(u"inputA"_s, u"Zebra and Alpha"_s), u"0"_s);
        QCOMPARE(known->mixerValue(u"inputA"_s, u"Zebra"_s), u"9"_s);
    }

    void aKeyWithoutAGroupIsNotSeen() {
        const auto known = mixer("inputA=1\nname=Lone\n[General]\ninputB=2\n");
        QVERIFY(!known->mixerContains(u"General inputA name"_s));
        QVERIFY(!known->mixerKnows(u"inputA"_s, u"inputA"_s));
        QVERIFY(!known->mixerKnows(u"inputB"_s, u"General"_s));
        QVERIFY(known->mixerValue(u"inputA"_s, u"inputA"_s).isEmpty());
        QVERIFY(known->mixerDeviceNames().isEmpty());
    }

    void aKeyThatHoldsTheWordNameIsNoName() {
        const auto known = mixer("[Rane]\nnames=Old\nname=New\nmain\\name=Other\n");
        QCOMPARE(known->mixerDeviceNames(), QStringList{u"Rane/New"_s});
    }

    void theGroupIsTheTextBeforeTheFirstSlash() {
        const auto known = mixer("[Rane]\nmain\\inputA=1\n");
        QVERIFY(known->mixerContains(u"Rane"_s));
        QVERIFY(!known->mixerKnows(u"inputA"_s, u"Rane"_s)); // its name is "main/inputA"
        QVERIFY(known->mixerKnows(u"main/inputA"_s, u"Rane"_s));
    }

    void theDeviceNamesComeInKeyOrderWithTheirGroups() {
        QCOMPARE(mixer(mixers)->mixerDeviceNames(), QStringList({u"DJM 900/DJM 900"_s, u"Rane/Rane Seventy"_s,
                                                                 u"Traktor Audio/Native / Ten"_s}));
    }

    void withNoFileNothingIsKnown() {
        const QString name = m_folder.filePath(u"there is none.ini"_s);
        const SettingMixer known(name, nullptr);
        QVERIFY(!known.mixerContains(u"Rane"_s));
        QVERIFY(!known.mixerKnows(u"inputA"_s, u"Rane"_s));
        QVERIFY(known.mixerValue(u"inputA"_s, u"Rane"_s).isEmpty());
        QVERIFY(known.mixerDeviceNames().isEmpty());
        QVERIFY(!QFile::exists(name));
    }

    void theFileIsNeverWritten() {
        const QString name = m_folder.filePath(u"untouched.ini"_s);
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(mixers);
        file.close();
        {
            const SettingMixer known(name, nullptr);
            known.mixerContains(u"Rane"_s);
            known.mixerDeviceNames();
        }
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), mixers);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_SettingMixer)
#include "tst_settingmixer.moc"
