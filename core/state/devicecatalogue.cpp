#include "devicecatalogue.h"

#include "model/constants.h"
#include "portaudiosession.h"
#include "settingmixer.h"

#include <portaudio.h>

#include <algorithm>
#include <array>

namespace {

using namespace Constant;

struct Label {
    QLatin1StringView key;
    QLatin1StringView text;
};

constexpr std::array inputLabels{Label{Mixer::inputA, "Input DeckA"_L1},
                                 Label{Mixer::inputB, "Input DeckB"_L1},
                                 Label{Mixer::inputMaster, "Master"_L1}};
constexpr std::array outputLabels{
    Label{Mixer::outputA, "Output DeckA"_L1}, Label{Mixer::outputB, "Output DeckB"_L1},
    Label{Mixer::outputMaster, "Master"_L1}, Label{Mixer::outputHeadphone, "Headphone"_L1}};

// The first role whose place in the mixer file is this one gives the label. A value that is no number counts
// as 0.
template <std::size_t N>
QString labelOf(const std::array<Label, N>& labels, const SettingMixer& mixer, const QString& device,
                int place) {
    for (const Label& label : labels) {
        const QString value = mixer.mixerValue(label.key, device);
        if (!value.isEmpty() && value.toInt() == place) {
            return label.text;
        }
    }
    return {};
}

} // namespace

std::vector<DeviceDescription> presentDevices() {
    const PortAudioSession session;
    return session.ok() ? listedDevices() : std::vector<DeviceDescription>{};
}

std::vector<DeviceDescription> listedDevices() {
    std::vector<DeviceDescription> devices;
    const PaDeviceIndex count = Pa_GetDeviceCount();
    for (PaDeviceIndex i = 0; i < count; ++i) {
        DeviceDescription device;
        if (const PaDeviceInfo* info = Pa_GetDeviceInfo(i)) {
            device.name = QString::fromUtf8(info->name);
            device.defaultSampleRate = info->defaultSampleRate;
            device.maxInputChannels = info->maxInputChannels;
            device.maxOutputChannels = info->maxOutputChannels;
            device.hostApi = info->hostApi;
        }
        devices.push_back(device);
    }
    return devices;
}

int deviceIndexOf(const std::vector<DeviceDescription>& devices, const QString& name, int index,
                  int channels) {
    const auto fits = [&](const DeviceDescription& device) {
        return device.name == name && device.maxInputChannels >= channels;
    };
    if (index >= 0 && index < int(devices.size()) && fits(devices[std::size_t(index)])) {
        return index;
    }
    const auto found = std::find_if(devices.begin(), devices.end(), fits);
    return found != devices.end() ? int(found - devices.begin()) : -1;
}

QString hostApiText(int hostApi) {
    static constexpr std::array texts{
        "InDevelopment"_L1, "DirectSound"_L1, "MME"_L1,  "ASIO"_L1,   "SoundManager"_L1,
        "CoreAudio"_L1,     "N/A"_L1,         "OSS"_L1,  "ALSA"_L1,   "AL"_L1,
        "BeOS"_L1,          "WDMKS"_L1,       "JACK"_L1, "WASAPI"_L1, "AudioScienceHPI"_L1};
    return hostApi >= 0 && hostApi < int(texts.size()) ? QString(texts[std::size_t(hostApi)]) : QString();
}

QString deviceString(int index, const DeviceDescription& device, int channels, int place,
                     const QString& label) {
    return QString::number(index) + "-["_L1 + device.name + "]-"_L1 +
           QString::number(int(device.defaultSampleRate)) + u'/' + QString::number(channels) + u'p' +
           QString::number(place) + u'-' + hostApiText(device.hostApi) + u'-' + label;
}

QStringList deviceStrings(const std::vector<DeviceDescription>& devices,
                          ModelAudioDeviceInfo::EnumAudioDeviceInfo direction, const SettingMixer& mixer) {
    const bool input = direction == ModelAudioDeviceInfo::AUDIO_INPUT;
    const bool output = direction == ModelAudioDeviceInfo::AUDIO_OUTPUT;
    QStringList list{QString()};
    QString lastHostApi;
    for (std::size_t i = 0; i < devices.size(); ++i) {
        const DeviceDescription& device = devices[i];
        const int channels = input ? device.maxInputChannels : output ? device.maxOutputChannels : 0;
        if (channels < 2) {
            continue;
        }
        const QString hostApi = hostApiText(device.hostApi);
        if (hostApi != lastHostApi) {
            list << "----- "_L1 + hostApi + " -----"_L1;
            lastHostApi = hostApi;
        }
        const bool known = mixer.mixerContains(device.name);
        for (int place = 0; place < channels; place += input ? 1 : 2) {
            QString label;
            if (known) {
                label = input ? labelOf(inputLabels, mixer, device.name, place)
                              : labelOf(outputLabels, mixer, device.name, place);
            }
            const QString text = deviceString(int(i), device, channels, place, label);
            if (known || !list.contains(text)) {
                list << text;
            }
            if (channels == 2) {
                break;
            }
        }
    }
    return list;
}
