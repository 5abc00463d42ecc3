#pragma once

#include <QObject>

/// What a session runs on, and which menu page is meant.
class ModelActivatedMode : public QObject {
    Q_OBJECT
public:
    enum EnumActivatedMode {
        Recording = 0,
        Looper = 1,
        Training = 2,
        Color = 3,
        Setting = 4,
        Dev = 5,
        Undefined = 6,
    };
    Q_ENUM(EnumActivatedMode)
};
