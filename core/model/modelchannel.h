#pragma once

#include <QObject>

/// One side of a stereo pair.
class ModelChannel : public QObject {
    Q_OBJECT
public:
    enum EnumChannel {
        CHANNEL_LEFT = 0,
        CHANNEL_RIGHT = 1,
        UNDEFINED = 2,
    };
    Q_ENUM(EnumChannel)
};
