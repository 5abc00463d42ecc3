#pragma once

#include <QObject>

/// What is drawn, and the roles of audio endpoints. Where a list is indexed by deck, INPUT_DECKA is the
/// first entry and every other value the second.
class ModelGraph : public QObject {
    Q_OBJECT
public:
    enum EnumGraph {
        GRID = 0,
        GRID_FIRST_METRONOM = 1,
        CURRENT = 2,
        INPUT_DECKA = 3,
        INPUT_DECKB = 4,
        WAV_DIRECT = 5,
        INPUT_1 = 6,
        INPUT_2 = 7,
        INPUT_MASTER = 8,
        OUTPUT_MASTER = 9,
        OUTPUT_DECKA = 10,
        OUTPUT_DECKB = 11,
        AXE = 12,
        LABEL = 13,
        TAG = 14,
        TAG_NUMBER = 15,
        NOT_USED = 16,
    };
    Q_ENUM(EnumGraph)
};
