#include "shiniicons.h"

#include "state/pathfile.h"

#include <cmath>

namespace {

// Pixels beyond any screen. The painter mustn't be given a place that no int holds: it would write there.
constexpr double farAway = 16000.0;

bool withinReach(const QPointF& corner) {
    return std::abs(corner.x()) < farAway && std::abs(corner.y()) < farAway; // not so for no number
}

} // namespace

void ShiniIcons::load() {
    // In the order of ShiniIcon.
    m_sources = {pathIcon(QStringLiteral("arrowDown-Right.png")).toImage(),
                 pathIcon(QStringLiteral("arrowDown-Left.png")).toImage(),
                 pathIcon(QStringLiteral("arrowUp-Right.png")).toImage(),
                 pathIcon(QStringLiteral("arrowUp-Left.png")).toImage(),
                 pathIcon(QStringLiteral("circle-empty.png")).toImage(),
                 pathIcon(QStringLiteral("circle-full.png")).toImage()};
    m_ratio = 0.0;
}

void ShiniIcons::scaleTo(double ratio) {
    if (m_ratio == ratio) {
        return;
    }
    m_ratio = ratio;
    const int side = int(std::lround(shiniSide * ratio));
    for (std::size_t i = 0; i < count; ++i) {
        if (!m_sources[i].isNull()) {
            m_scaled[i] = m_sources[i].scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            m_scaled[i].setDevicePixelRatio(ratio);
        }
    }
}

void ShiniIcons::draw(QPainter& painter, const std::vector<ShiniMark>& marks) {
    if (marks.empty()) {
        return;
    }
    scaleTo(painter.deviceTransform().m11());
    for (const ShiniMark& mark : marks) {
        if (withinReach(mark.corner)) {
            painter.drawImage(mark.corner, m_scaled[std::size_t(mark.icon)]);
        }
    }
}
