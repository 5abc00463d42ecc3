#pragma once

#include <QObject>

/// Weight of a message.
class ModelError : public QObject {
    Q_OBJECT
public:
    enum EnumError {
        INFO = 0,
        DEBUG = 1,
        WARNING = 2,
    };
    Q_ENUM(EnumError)
};
