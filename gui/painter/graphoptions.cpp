#include "graphoptions.h"

#include "state/setting.h"

#include <algorithm>

GraphOptions GraphOptions::read(const Setting& setting) {
    GraphOptions options;
    options.curveOnSize = std::clamp(setting.curveOnSize(), 1, widestCurve);
    options.curveCrossFaderOff = setting.graphCurveCrossFaderOff();
    options.curveCrossFaderOffInvertColor = setting.graphCurveCrossFaderOffInvertColor();
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
