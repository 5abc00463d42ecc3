#include "state/mode.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "support/datafolder.h"
#include "support/testmain.h"

#include <QMetaMethod>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Flag {
    const char* name;
    bool (Mode::*read)() const;
};

const std::vector<Flag> flags{
    {"modeColor", &Mode::modeColor},
    {"modeMenu", &Mode::modeMenu},
    {"modeCurrentTimerAutoresize", &Mode::modeCurrentTimerAutoresize},
    {"modeAutoresize", &Mode::modeAutoresize},
    {"modeSelectArea", &Mode::modeSelectArea},
    {"modeReverse", &Mode::modeReverse},
    {"modeHold", &Mode::modeHold},
    {"modeRecorder", &Mode::modeRecorder},
    {"modeRun", &Mode::modeRun},
    {"modeFullDVS", &Mode::modeFullDVS},
    {"modeTraining", &Mode::modeTraining},
    {"modeTrainingLock", &Mode::modeTrainingLock},
    {"modeMix", &Mode::modeMix},
    {"modeMetronom", &Mode::modeMetronom},
    {"modeGenerateSound", &Mode::modeGenerateSound},
    {"modeMenuFocus", &Mode::modeMenuFocus},
    {"modeGraphicScrollStop", &Mode::modeGraphicScrollStop},
    {"modeStartSynchronized", &Mode::modeStartSynchronized},
};

QByteArray names(QMetaMethod::MethodType type) {
    QByteArray list;
    const QMetaObject& meta = Mode::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == type) {
            list += meta.method(i).methodSignature() + " ";
        }
    }
    return list.trimmed();
}

// Writes down every signal of a Mode as "name" or "name(value)".
class Ear : public QObject {
    Q_OBJECT
public:
    explicit Ear(Mode& mode) {
        connect(&mode, &Mode::s_RunApp, this, [this] { heard << u"RunApp"_s; });
        connect(&mode, &Mode::s_StopApp, this, [this] { heard << u"StopApp"_s; });
        connect(&mode, &Mode::s_RefreshMenu, this, [this](QUuid id, const QString& tab) {
            heard << u"RefreshMenu(%1,%2)"_s.arg(id.toString(), tab);
        });
        connect(&mode, &Mode::s_RecorderModeStatus, this,
                [this](bool on) { heard << u"Recorder(%1)"_s.arg(on); });
        connect(&mode, &Mode::s_ModeColor_On, this, [this] { heard << u"ColorOn"_s; });
        connect(&mode, &Mode::s_ModeColor_Off, this, [this] { heard << u"ColorOff"_s; });
        connect(&mode, &Mode::s_ModeGenerateSound, this,
                [this](bool on) { heard << u"Generate(%1)"_s.arg(on); });
        connect(&mode, &Mode::s_ModeDisplayChanged, this, [this] { heard << u"Display"_s; });
    }
    QStringList take() { return std::exchange(heard, {}); }

private:
    QStringList heard;
};

// What a slot emits; nothing for those that only set their flag.
QString emissionOf(const QByteArray& slot) {
    static const QHash<QByteArray, QString> emissions{
        {"modeColor_on", u"ColorOn"_s},
        {"modeColor_off", u"ColorOff"_s},
        {"modeRecorder_on", u"Recorder(1)"_s},
        {"modeRecorder_off", u"Recorder(0)"_s},
        {"modeTraining_on", u"RunApp"_s},
        {"modeTraining_off", u"StopApp"_s},
        {"modeGenerateSound_on", u"Generate(1)"_s},
        {"modeGenerateSound_off", u"Generate(0)"_s},
    };
    return emissions.value(slot);
}

} // namespace

class tst_Mode : public QObject {
    Q_OBJECT

    static void eachFlag() {
        QTest::addColumn<int>("flag");
        for (std::size_t i = 0; i < flags.size(); ++i) {
            QTest::newRow(flags[i].name) << int(i);
        }
    }

private Q_SLOTS:
    void initTestCase() { ownDataFolder(); }

    void everyFlagIsFalseAtStart() {
        const Mode mode;
        for (const Flag& flag : flags) {
            QVERIFY2(!(mode.*flag.read)(), flag.name);
        }
        QCOMPARE(mode.displayMode(), ModelDisplay::NORMAL);
        QCOMPARE(mode.inputMode(), ModelInput::UNDEFINED);
        QCOMPARE(mode.graphBeats(), 0.0);
    }

    void theSignalsStandInTheirOrder() {
        QCOMPARE(names(QMetaMethod::Signal),
                 QByteArray(
                     "s_RunApp() s_StopApp() s_RefreshMenu(QUuid,QString) s_RecorderModeStatus(bool) "
                     "s_ModeColor_On() s_ModeColor_Off() s_ModeGenerateSound(bool) s_ModeDisplayChanged()"));
    }

    void theSlotsStandInTheirOrder() {
        QCOMPARE(names(QMetaMethod::Slot),
                 QByteArray(
                     "modeAutoresize_off() modeAutoresize_on() modeCurrentTimerAutoresize_off() "
                     "modeCurrentTimerAutoresize_on() modeColor_off() modeColor_on() "
                     "modeMenuRefresh(QUuid,QString) modeMenu_off() modeMenu_on() modeMix_off() modeMix_on() "
                     "modeMetronom_off() modeMetronom_on() modeGenerateSound_off() modeGenerateSound_on() "
                     "modeRecorder_off() modeRecorder_on() modeReverse_off() modeReverse_on() modeHold_off() "
                     "modeHold_on() modeRun_off() modeRun_on() modeFullDVS_off() modeFullDVS_on() "
                     "modeSelectArea_off() modeSelectArea_on() modeTraining_off() modeTraining_on() "
                     "modeTrainingLock_off() modeTrainingLock_on() modeMenuFocus_off() modeMenuFocus_on() "
                     "modeGraphicScrollStop_off() modeGraphicScrollStop_on() modeStartSynchronized_off() "
                     "modeStartSynchronized_on()"));
    }

    void aFlagsSlotsSwitchThisFlagAlone_data() { eachFlag(); }
    void aFlagsSlotsSwitchThisFlagAlone() {
        QFETCH(int, flag);
        const QByteArray name = flags[std::size_t(flag)].name;
        Mode mode;
        const auto only = [&](bool set) {
            for (int i = 0; i < int(flags.size()); ++i) {
                if ((mode.*flags[std::size_t(i)].read)() != (set && i == flag)) {
                    return false;
                }
            }
            return true;
        };
        QVERIFY(QMetaObject::invokeMethod(&mode, (name + "_on").constData()));
        QVERIFY(only(true));
        QVERIFY(QMetaObject::invokeMethod(&mode, (name + "_off").constData()));
        QVERIFY(only(false));
    }

    void aSlotEmitsEachTimeWhateverTheOldValue_data() { eachFlag(); }
    void aSlotEmitsEachTimeWhateverTheOldValue() {
        QFETCH(int, flag);
        Mode mode;
        Ear ear(mode);
        for (const char* end : {"_on", "_on", "_off", "_off", "_on"}) {
            const QByteArray slot = flags[std::size_t(flag)].name + QByteArray(end);
            QVERIFY(QMetaObject::invokeMethod(&mode, slot.constData()));
            const QString expected = emissionOf(slot);
            QCOMPARE(ear.take(), expected.isEmpty() ? QStringList() : QStringList(expected));
        }
    }

    void theFlagStandsWhenItsSignalComes() {
        Mode mode;
        bool running = false;
        connect(&mode, &Mode::s_RunApp, this, [&] { running = mode.modeTraining(); });
        mode.modeTraining_on();
        QVERIFY(running);
        connect(&mode, &Mode::s_StopApp, this, [&] { running = mode.modeTraining(); });
        mode.modeTraining_off();
        QVERIFY(!running);
    }

    void modeTrainingOnTwiceEmitsRunAppTwice() {
        Mode mode;
        Ear ear(mode);
        mode.modeTraining_on();
        mode.modeTraining_on();
        QCOMPARE(ear.take(), QStringList({u"RunApp"_s, u"RunApp"_s}));
    }

    void reverseIsTheOneFlagThatReachesTheSettings() {
        Setting& setting = *Singleton::instance().setting();
        Mode mode;
        mode.modeReverse_on();
        QVERIFY(setting.optionHamsterMode());
        mode.modeReverse_off();
        QVERIFY(!setting.optionHamsterMode());
        const unsigned writes = setting.generation();
        for (const Flag& flag : flags) {
            if (flag.read != &Mode::modeReverse) {
                QMetaObject::invokeMethod(&mode, (QByteArray(flag.name) + "_on").constData());
                QMetaObject::invokeMethod(&mode, (QByteArray(flag.name) + "_off").constData());
            }
        }
        QCOMPARE(setting.generation(), writes);
    }

    void reverseStartsFalseEvenWhenTheSettingIsTrue() {
        Singleton::instance().setting()->setOptionHamsterMode(true);
        QVERIFY(!Mode().modeReverse());
        QVERIFY(!Singleton::instance().mode()->modeReverse());
    }

    void aDisplayModeIsAnnouncedEvenWhenItIsTheOldOne() {
        Mode mode;
        Ear ear(mode);
        mode.setDisplayMode(ModelDisplay::NORMAL);
        mode.setDisplayMode(ModelDisplay::DRUMMING);
        mode.setDisplayMode(ModelDisplay::DRUMMING);
        QCOMPARE(mode.displayMode(), ModelDisplay::DRUMMING);
        QCOMPARE(ear.take(), QStringList({u"Display"_s, u"Display"_s, u"Display"_s}));
    }

    void inputModeAndGraphBeatsAreStoredInSilence() {
        Mode mode;
        Ear ear(mode);
        mode.setInputMode(ModelInput::TEXT_A_B);
        mode.setGraphBeats(16.0);
        QCOMPARE(mode.inputMode(), ModelInput::TEXT_A_B);
        QCOMPARE(mode.graphBeats(), 16.0);
        QVERIFY(ear.take().isEmpty());
    }

    void menuRefreshIsForwardedAndHasNoFlag() {
        Mode mode;
        Ear ear(mode);
        const QUuid id = QUuid::createUuid();
        mode.modeMenuRefresh(id, u"Looper"_s);
        QCOMPARE(ear.take(), QStringList(u"RefreshMenu(%1,Looper)"_s.arg(id.toString())));
        for (const Flag& flag : flags) {
            QVERIFY2(!(mode.*flag.read)(), flag.name);
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Mode)
#include "tst_mode.moc"
