#pragma once

#include <QObject>

/// Which decks are shown and saved.
class ModelInput : public QObject {
    Q_OBJECT
public:
    enum EnumInput {
        TEXT_A = 0,
        TEXT_B = 1,
        TEXT_A_B = 2,
        UNDEFINED = 3,
    };
    Q_ENUM(EnumInput)
};
