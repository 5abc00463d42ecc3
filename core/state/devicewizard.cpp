#include "devicewizard.h"

#include "learnedcontrol.h"
#include "midi.h"
#include "model/constants.h"
#include "model/objectaudiodevice.h"
#include "setting.h"
#include "settingmixer.h"
#include "singleton.h"

namespace {

using namespace Constant;

QString groupOf(const QString& entry) {
    return entry.section(u'/', 0, 0);
}

// A heading of the catalogue may hold a wanted text too.
bool namesDevice(const QString& entry) {
    return ObjectAudioDevice(entry).index() >= 0;
}

// The first of the entries that holds the text the mixer file gives for `key`; empty if there is none, or no
// text.
QString firstHolding(QLatin1StringView key, const QString& group, const SettingMixer& mixer,
                     const QStringList& entries) {
    const QString wanted = mixer.mixerValue(key, group).trimmed();
    if (wanted.isEmpty()) {
        return {};
    }
    for (const QString& entry : entries) {
        if (entry.contains(wanted)) {
            return entry;
        }
    }
    return {};
}

QStringList devicesOf(QStringList catalogue) {
    catalogue.removeIf([](const QString& entry) { return !namesDevice(entry); });
    return catalogue;
}

} // namespace

QString findKnownMixer(const SettingMixer& mixer, const QStringList& inputs) {
    const QStringList names = mixer.mixerDeviceNames();
    const QStringList devices = devicesOf(inputs);
    for (const QString& entry : names) {
        for (const auto key : {Mixer::confInputA, Mixer::confInputB}) {
            const QString group = groupOf(entry);
            if (mixer.mixerKnows(key, group) && !firstHolding(key, group, mixer, devices).isEmpty()) {
                return entry;
            }
        }
    }
    return {};
}

void applyKnownMixer(const QString& entry, const SettingMixer& mixer, const QStringList& inputs,
                     const QStringList& midiInputs, const QStringList& outputs, Setting& setting) {
    const QString group = groupOf(entry);
    if (!mixer.mixerContains(group)) {
        return;
    }
    const auto apply = [&](QLatin1StringView key, const QStringList& entries,
                           void (Setting::*set)(const QString&)) {
        if (mixer.mixerKnows(key, group)) {
            (setting.*set)(firstHolding(key, group, mixer, entries));
        }
    };
    const QStringList inputDevices = devicesOf(inputs);
    const QStringList outputDevices = devicesOf(outputs);
    setting.setName(entry.section(u'/', 1));
    apply(Mixer::confInputA, inputDevices, &Setting::setInputDeckA);
    apply(Mixer::confInputB, inputDevices, &Setting::setInputDeckB);
    apply(Mixer::confInputMaster, inputDevices, &Setting::setInputMaster);
    apply(Mixer::confInputMidi, midiInputs, &Setting::setInputMidi);
    if (mixer.mixerKnows(Mixer::confLearnMidi, group)) {
        const ObjectMidi control = learnedControl(mixer.mixerValue(Mixer::confLearnMidi, group));
        setting.setLearnMidi(control.channel(), control.controller());
        Singleton::instance().midi()->setObject(control);
    }
    apply(Mixer::confOutputPlayback, outputDevices, &Setting::setOutputMaster);
    apply(Mixer::confOutputA, outputDevices, &Setting::setOutputDeckA);
    apply(Mixer::confOutputB, outputDevices, &Setting::setOutputDeckB);
    if (mixer.mixerKnows(Mixer::confOptionCutOffSound, group)) {
        setting.setOptionGenerateCutOffSound(
            QVariant(mixer.mixerValue(Mixer::confOptionCutOffSound, group)).toBool());
    }
}

bool autoSetUpDevices(const std::function<QStringList()>& midiInputs) {
    Singleton& shared = Singleton::instance();
    Setting& setting = *shared.setting();
    const SettingMixer& mixer = *shared.settingMixer();
    if (!setting.inputDeckA()->text().isEmpty() || !setting.inputDeckB()->text().isEmpty() ||
        mixer.mixerDeviceNames().isEmpty()) {
        return false;
    }
    const QStringList inputs = shared.audioDeviceList(ModelAudioDeviceInfo::AUDIO_INPUT);
    const QString entry = findKnownMixer(mixer, inputs);
    if (entry.isEmpty()) {
        return false;
    }
    applyKnownMixer(entry, mixer, inputs, midiInputs(),
                    shared.audioDeviceList(ModelAudioDeviceInfo::AUDIO_OUTPUT), setting);
    return true;
}
