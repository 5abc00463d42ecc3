#pragma once

#include <QObject>

/// Which way the record turns.
class ModelRotation : public QObject {
    Q_OBJECT
public:
    enum EnumRotation {
        FORWARD = 0,
        BACK = 1,
        UNDEFINED = 2,
    };
    Q_ENUM(EnumRotation)
};
