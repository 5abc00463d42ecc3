#pragma once

#include <QObject>

/// The four volumes.
class ModelVolume : public QObject {
    Q_OBJECT
public:
    enum EnumVolume {
        LOOPER = 0,
        DECK_A_B = 1,
        RECORD_A_B = 2,
        METRONUM = 3,
        Undefined = 4,
    };
    Q_ENUM(EnumVolume)
};
