#pragma once

#include <QObject>

/// What the graph plots over time.
class ModelDisplay : public QObject {
    Q_OBJECT
public:
    enum EnumDisplay {
        NORMAL = 0,
        PHRASING = 1,
        DRUMMING = 2,
        UNDEFINED = 3,
    };
    Q_ENUM(EnumDisplay)
};
