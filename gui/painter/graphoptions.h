#pragma once

#include "model/modelshini.h"

#include <optional>

class Setting;

/// What the user has chosen about the picture, read together.
struct GraphOptions {
    static constexpr int widestCurve = 100; ///< what a settings file may ask for

    int curveOnSize = 0;                        ///< width of a curve that sounds, 1 to widestCurve pixels
    bool curveCrossFaderOff = false;            ///< draw where the fader is closed
    bool curveCrossFaderOffInvertColor = false; ///< and in the inverted colour
    bool curveNoSound = false;                  ///< grey, not gone, outside the deck's areas
    ModelShini::EnumShini shini = ModelShini::Undefined; ///< how cuts are marked
    bool directSound = false;                            ///< what is heard stands above the plot
    bool vinylPosition = false;                          ///< a picture of the record in the corner
    bool vinylColorRotation = false;                     ///< which turns with the record
    bool grid = false;
    bool latency = false;
    bool logo = false;

    bool operator==(const GraphOptions&) const = default;

    static GraphOptions read(const Setting& setting);
};

/// The options, read anew only after a setting was written.
class GraphOptionCache {
public:
    explicit GraphOptionCache(const Setting& setting) : m_setting(setting) {}
    const GraphOptions& options();

private:
    const Setting& m_setting;
    std::optional<unsigned> m_generation;
    GraphOptions m_options;
};
