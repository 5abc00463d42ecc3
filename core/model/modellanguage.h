#pragma once

#include <QObject>

/// Languages of the interface; the key is the locale.
class ModelLanguage : public QObject {
    Q_OBJECT
public:
    enum EnumLanguage {
        fr_FR = 0,
        en_US = 1,
        es_ES = 2,
    };
    Q_ENUM(EnumLanguage)
};
