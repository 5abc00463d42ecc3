#include "graphoptions.h"

#include "state/setting.h"

#include <algorithm>

namespace {

// A number from a settings file; one that is no mode marks nothing.
ModelShini::EnumShini shiniOf(int value) {
    return value >= ModelShini::Arrows && value <= ModelShini::Middle ? ModelShini::EnumShini(value)
                                                                      : ModelShini::Undefined;
}

} // namespace

GraphOptions GraphOptions::read(const Setting& setting) {
    GraphOptions options;
    options.curveOnSize = std::clamp(setting.curveOnSize(), 1, widestCurve);
    options.curveCrossFaderOff = setting.graphCurveCrossFaderOff();
    options.curveCrossFaderOffInvertColor = setting.graphCurveCrossFaderOffInvertColor();
    options.curveNoSound = setting.graphCurveNoSound();
    options.shini = shiniOf(setting.graphShiniMode());
    options.directSound = setting.graphDirectSound();
    options.vinylPosition = setting.graphVinylPosition();
    options.vinylColorRotation = setting.graphVinylColorRotation();
    options.grid = setting.graphGrid();
    options.latency = setting.latency();
    options.logo = setting.graphLogo();
    return options;
}

const GraphOptions& GraphOptionCache::options() {
    if (m_generation != m_setting.generation()) {
        m_generation = m_setting.generation();
        m_options = GraphOptions::read(m_setting);
    }
    return m_options;
}
