#include "streamrouting.h"

std::vector<StreamRoute> routeStreams(const InputDevices& d) {
    const bool a = d.deckA >= 0;
    const bool b = d.deckB >= 0;
    const bool m = d.master >= 0;
    const bool shared = a && b && d.deckA == d.deckB;
    const bool joinsA = d.recording && m && a && d.master == d.deckA;
    const bool joinsB = d.recording && m && b && d.master == d.deckB;

    std::vector<StreamRoute> routes;
    bool joined = false;
    if (a) {
        routes.push_back({StreamRoute::All, ModelGraph::INPUT_DECKA, joinsA, true, shared});
        joined = joinsA;
        if (b && !shared) {
            routes.push_back({StreamRoute::DeckB, ModelGraph::INPUT_DECKB, joinsB, false, true});
            joined = joined || joinsB;
        }
    } else if (b) {
        routes.push_back({StreamRoute::All, ModelGraph::INPUT_DECKB, joinsB, false, true});
        joined = joinsB;
    }
    if (m && !joined) {
        routes.push_back({StreamRoute::Master, ModelGraph::INPUT_MASTER, true, false, false});
    }
    return routes;
}
