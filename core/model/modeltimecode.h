#pragma once

#include <QObject>

/// The timecode records; the key is the definition name.
class ModelTimecode : public QObject {
    Q_OBJECT
public:
    enum EnumTimecode {
        generic_V2 = 0,
        serato_sideA_FullDVS = 1,
        serato_sideB_FullDVS = 2,
        traktor_sideA = 3,
        traktor_sideB = 4,
    };
    Q_ENUM(EnumTimecode)
};
