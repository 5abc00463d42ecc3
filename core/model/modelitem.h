#pragma once

#include <QObject>

/// Controls of a MIDI controller.
class ModelItem : public QObject {
    Q_OBJECT
public:
    enum EnumGroup {
        controls = 0,
        pages = 1,
        page = 2,
    };
    Q_ENUM(EnumGroup)
    enum EnumItem {
        button = 0,
        wheel = 1,
        knob = 2,
        led = 3,
        pedal = 4,
        footswitch = 5,
        touchstrip = 6,
    };
    Q_ENUM(EnumItem)
    enum EnumSubItem {
        controller = 0,
        channel = 1,
        min = 2,
        max = 3,
        on = 4,
        off = 5,
    };
    Q_ENUM(EnumSubItem)
};
