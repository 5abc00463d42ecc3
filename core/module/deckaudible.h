#pragma once

#include "model/modelcrossfader.h"
#include "model/modelgraph.h"

/// Whether the crossfader lets a deck be heard. In the middle it lets both; elsewhere neither while the
/// crossfader doesn't count (`mix` off), else the deck on its side, or on the other side when reversed.
/// Any name but INPUT_DECKA counts as deck B. Realtime-safe.
inline bool deckAudible(ModelCrossFader::EnumCrossFader fader, bool mix, bool reverse,
                        ModelGraph::EnumGraph deck) {
    if (fader == ModelCrossFader::MIDDLE) {
        return true;
    }
    if (!mix) {
        return false;
    }
    const bool left = fader == ModelCrossFader::LEFT;
    const bool deckA = deck == ModelGraph::INPUT_DECKA;
    return (left == deckA) != reverse;
}
