#pragma once

#include <QObject>

/// Style sheets; the key is the file name.
class ModelStyle : public QObject {
    Q_OBJECT
public:
    enum EnumStyle {
        Gramoscope = 0,
        RedGuillotine = 1,
        ScreamBeat = 2,
        FightBeat = 3,
    };
    Q_ENUM(EnumStyle)
};
