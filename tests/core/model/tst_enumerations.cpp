// The values and the texts of the registered enumerations: settings and files keep them.

#include "model/deckindex.h"
#include "model/enumtext.h"
#include "model/modelactivatedmode.h"
#include "model/modelaudiodeviceinfo.h"
#include "model/modelchannel.h"
#include "model/modelcrossfader.h"
#include "model/modeldisplay.h"
#include "model/modelerror.h"
#include "model/modelgraph.h"
#include "model/modelinput.h"
#include "model/modelitem.h"
#include "model/modellanguage.h"
#include "model/modelmode.h"
#include "model/modelphase.h"
#include "model/modelrotation.h"
#include "model/modelshini.h"
#include "model/modelstyle.h"
#include "model/modeltimecode.h"
#include "model/modelvolume.h"
#include "support/testmain.h"

#include <QTest>

namespace {

// The registered keys in order, each with its value, which is its place in the list.
template <typename Enum> QByteArray keysOf() {
    const QMetaEnum meta = QMetaEnum::fromType<Enum>();
    QByteArray keys;
    for (int i = 0; i < meta.keyCount(); ++i) {
        if (meta.value(i) != i || enumText(static_cast<Enum>(i)) != QString::fromLatin1(meta.key(i)) ||
            enumValue(QString::fromLatin1(meta.key(i)), static_cast<Enum>(i == 0 ? 1 : 0)) !=
                static_cast<Enum>(i)) {
            return QByteArray("key ") + meta.key(i) +
                   " has a value that isn't its place, or doesn't come back";
        }
        keys += (i == 0 ? "" : " ") + QByteArray(meta.key(i));
    }
    return keys;
}

} // namespace

class tst_Enumerations : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theKeysCountUpFromZeroInTheirOrder_data() {
        QTest::addColumn<QByteArray>("keys");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const QByteArray& keys, const char* expected) {
            QTest::newRow(name) << keys << QByteArray(expected);
        };
        row("activated mode", keysOf<ModelActivatedMode::EnumActivatedMode>(),
            "Recording Looper Training Color Setting Dev Undefined");
        row("direction", keysOf<ModelAudioDeviceInfo::EnumAudioDeviceInfo>(),
            "AUDIO_INPUT AUDIO_OUTPUT Undefined");
        row("crossfader", keysOf<ModelCrossFader::EnumCrossFader>(), "RIGHT LEFT MIDDLE");
        row("error", keysOf<ModelError::EnumError>(), "INFO DEBUG WARNING");
        row("graph", keysOf<ModelGraph::EnumGraph>(),
            "GRID GRID_FIRST_METRONOM CURRENT INPUT_DECKA INPUT_DECKB WAV_DIRECT INPUT_1 INPUT_2 "
            "INPUT_MASTER "
            "OUTPUT_MASTER OUTPUT_DECKA OUTPUT_DECKB AXE LABEL TAG TAG_NUMBER NOT_USED");
        row("item group", keysOf<ModelItem::EnumGroup>(), "controls pages page");
        row("item", keysOf<ModelItem::EnumItem>(), "button wheel knob led pedal footswitch touchstrip");
        row("sub item", keysOf<ModelItem::EnumSubItem>(), "controller channel min max on off");
        row("mode", keysOf<ModelMode::EnumMode>(), "Basic Shift NO_TESTED");
        row("phase", keysOf<ModelPhase::EnumPhase>(), "RISING DESCENDING UNDEFINED");
        row("rotation", keysOf<ModelRotation::EnumRotation>(), "FORWARD BACK UNDEFINED");
        row("input", keysOf<ModelInput::EnumInput>(), "TEXT_A TEXT_B TEXT_A_B UNDEFINED");
        row("channel", keysOf<ModelChannel::EnumChannel>(), "CHANNEL_LEFT CHANNEL_RIGHT UNDEFINED");
        row("shini", keysOf<ModelShini::EnumShini>(), "Undefined Arrows Circles Middle");
        row("style", keysOf<ModelStyle::EnumStyle>(), "Gramoscope RedGuillotine ScreamBeat FightBeat");
        row("language", keysOf<ModelLanguage::EnumLanguage>(), "fr_FR en_US es_ES");
        row("timecode", keysOf<ModelTimecode::EnumTimecode>(),
            "generic_V2 serato_sideA_FullDVS serato_sideB_FullDVS traktor_sideA traktor_sideB");
        row("display", keysOf<ModelDisplay::EnumDisplay>(), "NORMAL PHRASING DRUMMING UNDEFINED");
        row("volume", keysOf<ModelVolume::EnumVolume>(), "LOOPER DECK_A_B RECORD_A_B METRONUM Undefined");
    }
    void theKeysCountUpFromZeroInTheirOrder() {
        QFETCH(QByteArray, keys);
        QFETCH(QByteArray, expected);
        QCOMPARE(keys, expected);
    }

    void aClassHoldsOneEnumerationAndModelItemThree() {
        QCOMPARE(ModelItem::staticMetaObject.enumeratorCount() -
                     ModelItem::staticMetaObject.enumeratorOffset(),
                 3);
        for (const QMetaObject* meta : {&ModelActivatedMode::staticMetaObject, &ModelGraph::staticMetaObject,
                                        &ModelTimecode::staticMetaObject}) {
            QCOMPARE(meta->enumeratorCount() - meta->enumeratorOffset(), 1);
        }
    }

    void theValuesTravelInSignals() {
        QCOMPARE(QMetaType::fromType<ModelGraph::EnumGraph>().name(), "ModelGraph::EnumGraph");
        QVERIFY(QMetaType::fromType<ModelInput::EnumInput>().isValid());
    }

    void aTextThatIsNoKeyGivesTheFallback() {
        using enum ModelTimecode::EnumTimecode;
        QCOMPARE(enumValue(QStringLiteral("traktor_sideC"), serato_sideB_FullDVS), serato_sideB_FullDVS);
        QCOMPARE(enumValue(QString(), traktor_sideA), traktor_sideA);
        QCOMPARE(enumValue(QStringLiteral("Traktor_sideA"), generic_V2), generic_V2);
    }

    void aValueWithoutAKeyHasNoText() {
        QVERIFY(enumText(static_cast<ModelTimecode::EnumTimecode>(6)).isEmpty());
    }

    void deckAIsTheFirstEntryOfAListAndEveryOtherNameTheSecond() {
        for (int name = ModelGraph::GRID; name <= ModelGraph::NOT_USED; ++name) {
            QCOMPARE(deckIndex(static_cast<ModelGraph::EnumGraph>(name)),
                     name == ModelGraph::INPUT_DECKA ? std::size_t{0} : std::size_t{1});
        }
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_Enumerations)
#include "tst_enumerations.moc"
