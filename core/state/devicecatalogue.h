#pragma once
// Device strings: a device and a channel place as one line of text.

#include "model/modelaudiodeviceinfo.h"

#include <QString>
#include <QStringList>

#include <vector>

class SettingMixer;

/// What the catalogue needs to know of one device.
struct DeviceDescription {
    QString name;
    double defaultSampleRate = 0.0; ///< Hz
    int maxInputChannels = 0;
    int maxOutputChannels = 0;
    int hostApi = 0; ///< the library's running index
};

/// All devices the machine offers now; starts and stops PortAudio, so it takes as long as that does. Empty
/// when PortAudio can't start. GUI thread.
std::vector<DeviceDescription> presentDevices();

/// The same from a library that is up already.
std::vector<DeviceDescription> listedDevices();

/// Where the input device `name` stands in the list: at `index` if the device there is this one and has at
/// least `channels` inputs, else at the first one that is and has, -1 if there is none.
int deviceIndexOf(const std::vector<DeviceDescription>& devices, const QString& name, int index,
                  int channels);

/// The text that stands for a host API: a fixed list by the running index, empty beyond it. It need not be
/// the API's true name; it is only compared with itself.
QString hostApiText(int hostApi);

/// One line: "index-[name]-rate/channels" "p" place "-API-" and the label.
QString deviceString(int index, const DeviceDescription& device, int channels, int place,
                     const QString& label);

/// The strings of one direction: an empty entry, then for each host API a heading and its devices' entries.
/// Input places are pair indices, all below the channel count; output places are even channel numbers. A
/// device of two channels has one entry, a mono device none. Devices that `mixer` knows carry labels.
QStringList deviceStrings(const std::vector<DeviceDescription>& devices,
                          ModelAudioDeviceInfo::EnumAudioDeviceInfo direction, const SettingMixer& mixer);
