#include "devicewizard.h"

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

bool namesDevice(const QString& entry) {
    return ObjectAudioDevice(entry).index() >= 0;
}

// The first entry that holds the text the mixer file gives for `key`; empty if there is none, or no text.
QString offered(QLatin1StringView key, const QString& group, const SettingMixer& mixer,
                const QStringList& entries) {
    const QString wanted = mixer.mixerValue(key, group).trimmed();
    if (wanted.isEmpty()) {
        return {};
    }
    for (const QString& entry : entries) {
        if (entry.contains(wanted) && namesDevice(entry)) { // a heading may hold it too
            return entry;
        }
    }
    return {};
}

} // namespace

QString findKnownMixer(const SettingMixer& mixer, const QStringList& inputs) {
    const QStringList names = mixer.mixerDeviceNames();
    for (const QString& entry : names) {
        for (const auto key : {Mixer::confInputA, Mixer::confInputB}) {
            const QString group = groupOf(entry);
            if (mixer.mixerKnows(key, group) && !offered(key, group, mixer, inputs).isEmpty()) {
                return entry;
            }
        }
    }
    return {};
}

void applyKnownMixer(const QString& entry, const SettingMixer& mixer, const QStringList& inputs,
                     const QStringList& outputs, Setting& setting) {
    const QString group = groupOf(entry);
    if (!mixer.mixerContains(group)) {
        return;
    }
    const auto apply = [&](QLatin1StringView key, const QStringList& entries,
                           void (Setting::*set)(const QString&)) {
        if (mixer.mixerKnows(key, group)) {
            (setting.*set)(offered(key, group, mixer, entries));
        }
    };
    setting.setName(entry.section(u'/', 1));
    apply(Mixer::confInputA, inputs, &Setting::setInputDeckA);
    apply(Mixer::confInputB, inputs, &Setting::setInputDeckB);
    apply(Mixer::confInputMaster, inputs, &Setting::setInputMaster);
    if (mixer.mixerKnows(Mixer::confLearnMidi, group)) {
        const QString learn = mixer.mixerValue(Mixer::confLearnMidi, group);
        const int channel = learn.section(u'/', 0, 0).toInt();
        const int controller = learn.section(u'/', 1, 1).toInt();
        setting.setLearnMidi(channel, controller);
        Singleton::instance().midi()->setObject(ObjectMidi(channel, controller));
    }
    apply(Mixer::confOutputPlayback, outputs, &Setting::setOutputMaster);
    apply(Mixer::confOutputA, outputs, &Setting::setOutputDeckA);
    apply(Mixer::confOutputB, outputs, &Setting::setOutputDeckB);
    if (mixer.mixerKnows(Mixer::confOptionCutOffSound, group)) {
        setting.setOptionGenerateCutOffSound(
            QVariant(mixer.mixerValue(Mixer::confOptionCutOffSound, group)).toBool());
    }
}

bool autoSetUpDevices() {
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
    applyKnownMixer(entry, mixer, inputs, shared.audioDeviceList(ModelAudioDeviceInfo::AUDIO_OUTPUT),
                    setting);
    return true;
}
