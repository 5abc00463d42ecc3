#pragma once

#include <QObject>

/// How a fader cut is marked on the curve.
class ModelShini : public QObject {
    Q_OBJECT
public:
    enum EnumShini {
        Undefined = 0,
        Arrows = 1,
        Circles = 2,
        Middle = 3,
    };
    Q_ENUM(EnumShini)
};
