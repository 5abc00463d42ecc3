#pragma once

#include "modelgraph.h"

#include <cstddef>

/// Index of a deck in a two-entry list: 0 for INPUT_DECKA, 1 for every other value.
inline constexpr std::size_t deckIndex(ModelGraph::EnumGraph name) {
    return name == ModelGraph::INPUT_DECKA ? 0U : 1U;
}
