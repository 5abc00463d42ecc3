#pragma once
// Which worker opens which input stream: a device is opened once, however many inputs lie on it.

#include "model/modelgraph.h"

#include <vector>

/// Device indices of the three inputs, -1 for none, and whether the session is recorded.
struct InputDevices {
    int deckA = -1;
    int deckB = -1;
    int master = -1;
    bool recording = false;
};

/// One stream to open.
struct StreamRoute {
    enum Worker { All, DeckB, Master }; ///< the first, second or third recorder

    Worker worker;
    ModelGraph::EnumGraph role; ///< whose device the stream opens
    bool master;                ///< which inputs it serves
    bool deckA;
    bool deckB;

    bool operator==(const StreamRoute&) const = default;
};

/// The streams of a session, in the order in which they are opened. The master joins a deck's stream only
/// while recording; otherwise it gets one of its own, even on a deck's device. A lone deck B goes to the
/// first recorder.
std::vector<StreamRoute> routeStreams(const InputDevices& devices);
