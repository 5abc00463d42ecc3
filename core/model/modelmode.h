#pragma once

#include <QObject>

/// Layer of a MIDI controller.
class ModelMode : public QObject {
    Q_OBJECT
public:
    enum EnumMode {
        Basic = 0,
        Shift = 1,
        NO_TESTED = 2,
    };
    Q_ENUM(EnumMode)
};
