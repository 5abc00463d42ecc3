#pragma once

#include <QObject>

/// Where the crossfader stands.
class ModelCrossFader : public QObject {
    Q_OBJECT
public:
    enum EnumCrossFader {
        RIGHT = 0,
        LEFT = 1,
        MIDDLE = 2,
    };
    Q_ENUM(EnumCrossFader)
};
