#pragma once

#include <QObject>

/// Direction of a device.
class ModelAudioDeviceInfo : public QObject {
    Q_OBJECT
public:
    enum EnumAudioDeviceInfo {
        AUDIO_INPUT = 0,
        AUDIO_OUTPUT = 1,
        Undefined = 2,
    };
    Q_ENUM(EnumAudioDeviceInfo)
};
