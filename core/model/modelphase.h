#pragma once

#include <QObject>

/// Slope of a carrier half-wave.
class ModelPhase : public QObject {
    Q_OBJECT
public:
    enum EnumPhase {
        RISING = 0,
        DESCENDING = 1,
        UNDEFINED = 2,
    };
    Q_ENUM(EnumPhase)
};
