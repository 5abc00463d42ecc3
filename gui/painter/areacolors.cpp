#include "areacolors.h"

#include <algorithm>
#include <cmath>

AreaColors::AreaColors(std::vector<Area> areas) : m_areas(std::move(areas)) {
    for (const Area& area : m_areas) {
        if (area.start < area.end) { // no angle lies in another one
            m_edges.push_back(area.start);
            m_edges.push_back(area.end);
        }
    }
    std::sort(m_edges.begin(), m_edges.end());
    m_edges.erase(std::unique(m_edges.begin(), m_edges.end()), m_edges.end());
    for (const double edge : m_edges) {
        const auto holder = std::find_if(m_areas.begin(), m_areas.end(), [edge](const Area& area) {
            return edge >= area.start && area.end > edge;
        });
        m_holders.push_back(holder == m_areas.end() ? -1 : int(holder - m_areas.begin()));
    }
}

std::vector<AreaColors::Area> AreaColors::listed(const QPhrasingList& list) {
    std::vector<Area> areas;
    areas.reserve(std::size_t(list.size()));
    for (const QPhrasingPtr& area : list) {
        const bool numbers = !std::isnan(area->angleStart()) && !std::isnan(area->angleEnd());
        areas.push_back(numbers ? Area{area->angleStart(), area->angleEnd(), area->color()}
                                : Area{0.0, 0.0, area->color()}); // holds no angle, and equals itself
    }
    return areas;
}

void AreaColors::update(const QPhrasingList& list) {
    std::vector<Area> areas = listed(list);
    if (areas != m_areas) {
        *this = AreaColors(std::move(areas));
    }
}

const AreaColors::Area* AreaColors::at(double angle) const {
    const auto after = std::upper_bound(m_edges.begin(), m_edges.end(), angle);
    if (after == m_edges.begin()) {
        return nullptr;
    }
    const int holder = m_holders[std::size_t(after - m_edges.begin()) - 1];
    return holder < 0 ? nullptr : &m_areas[std::size_t(holder)];
}
