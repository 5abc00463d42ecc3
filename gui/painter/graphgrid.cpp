#include "graphgrid.h"

#include "devicepixels.h"
#include "graphstyle.h"
#include "gridsteps.h"
#include "model/wholenumber.h"
#include "yrange.h"

#include "curve/angle.h"
#include "phrasing/managephrasing.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int beatReach = 50; // of a beat number to either side of its line, pixels
constexpr int valueReach = 10;
constexpr int valueRight = 35;
constexpr int captionWidth = 150;
constexpr int latencyWidth = 200;
constexpr int angleLevels = 10;

struct BeatLine {
    double x;
    QString text;
    bool heavy;
};

struct ValueLine {
    double y;
    QString text;
};

/// Draws upright and level lines as the pens say, but on whole device pixels, so that they are sharp and
/// cheap.
class Lines {
public:
    Lines(QPainter& painter, const QColor& ground)
        : m_painter(painter)
        , m_device(painter)
        , m_ground(ground)
        , m_smooth(painter.testRenderHint(QPainter::Antialiasing)) {
        m_painter.setRenderHint(QPainter::Antialiasing, false);
    }
    ~Lines() { m_painter.setRenderHint(QPainter::Antialiasing, m_smooth); }
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    /// Opaque: letting the ground through takes three times as long for pixels that lie below one another.
    void upright(double x, double top, double bottom, ModelGraph::EnumGraph item) {
        const QPen& pen = linePen(item);
        const double cap = pen.widthF() / 2.0;
        const DevicePixels::Breadth across = m_device.breadthX(x, pen.widthF());
        const double from = m_device.nearestY(top - cap);
        const double cover = coverOf(pen);
        const auto mix = [cover](int over, int under) {
            return int(std::lround(over * cover + under * (1.0 - cover)));
        };
        const QColor color = pen.color();
        m_painter.fillRect(QRectF(across.start, from, across.size, m_device.nearestY(bottom + cap) - from),
                           QColor(mix(color.red(), m_ground.red()), mix(color.green(), m_ground.green()),
                                  mix(color.blue(), m_ground.blue())));
    }
    /// Lets through what it crosses: the upright lines.
    void level(double y, double left, double right, ModelGraph::EnumGraph item) {
        const QPen& pen = linePen(item);
        const double cap = pen.widthF() / 2.0;
        const DevicePixels::Breadth across = m_device.breadthY(y, pen.widthF());
        const double from = m_device.nearestX(left - cap);
        QColor color = pen.color();
        color.setAlphaF(float(coverOf(pen)));
        m_painter.fillRect(QRectF(from, across.start, m_device.nearestX(right + cap) - from, across.size),
                           color);
    }

private:
    /// How much of a device pixel a line covers that is thinner than that.
    double coverOf(const QPen& pen) const { return std::min(1.0, pen.widthF() * m_device.ratio()); }

    QPainter& m_painter;
    DevicePixels m_device;
    QColor m_ground;
    bool m_smooth;
};

std::vector<BeatLine> beatLines(const GridScene& scene) {
    const double from = std::trunc(scene.scale.x().min);
    const double to = std::trunc(scene.scale.x().max);
    std::vector<BeatLine> lines;
    for (const double tick : gridTicks(xGridStep(from, to, scene.beatLength), from, to)) {
        const QString text =
            beatText(gridBeat(tick, scene.firstMetronome, scene.sampleRate, scene.bpmEffective));
        lines.push_back({scene.scale.column(tick), text, isHeavyBeat(text)});
    }
    return lines;
}

/// The pixel row of a value, as the curves have it.
double rowOf(const GridScene& scene, double value) {
    return std::trunc(scene.scale.mapY(value));
}

/// Level lines that have a label each; of an angle plot with areas the labels alone are drawn.
std::vector<ValueLine> valueLines(const GridScene& scene) {
    std::vector<ValueLine> lines;
    if (plotsAngle(scene.display)) {
        for (int i = 0; i <= angleLevels; ++i) {
            lines.push_back({rowOf(scene, i * AnglePlot::height / angleLevels),
                             QString::number(i * 100 / angleLevels) + QLatin1Char('%')});
        }
        return lines;
    }
    const double from = std::trunc(scene.scale.y().min);
    const double to = std::trunc(scene.scale.y().max);
    for (const double tick : gridTicks(yGridStep(from, to), from, to)) {
        lines.push_back({rowOf(scene, tick), shortNumber(tick)});
    }
    return lines;
}

void drawLines(QPainter& painter, const GridScene& scene, const std::vector<BeatLine>& beats,
               const std::vector<ValueLine>& values) {
    const GraphLayout& layout = scene.layout;
    const double left = GraphLayout::leftMargin;
    Lines lines(painter, scene.ground);
    for (const BeatLine& beat : beats) {
        lines.upright(beat.x, layout.plotTop, std::trunc(layout.plotBottom),
                      beat.heavy ? ModelGraph::GRID_FIRST_METRONOM : ModelGraph::GRID);
    }
    lines.level(layout.plotBottom, left, scene.width, ModelGraph::AXE);
    lines.upright(left, layout.plotTop, layout.plotBottom, ModelGraph::AXE);

    const QPhrasingList& areas = scene.areas.listPhrasing();
    if (scene.display != ModelDisplay::DRUMMING || areas.isEmpty()) {
        for (const ValueLine& value : values) {
            lines.level(value.y, left, scene.width, ModelGraph::GRID);
        }
        return;
    }
    for (const QPhrasingPtr& area : areas) {
        for (const double angle : {area->angleStart(), area->angleEnd()}) {
            lines.level(rowOf(scene, reducedAngle(angle) * AnglePlot::perDegree), left, scene.width,
                        ModelGraph::GRID);
        }
    }
}

/// Numbers of three digits don't fit side by side below 64 beats on a small graph: then only the bars have
/// theirs.
bool numbersCollide(const QPainter& painter, const GridScene& scene, const std::vector<BeatLine>& beats) {
    if (beats.size() < 2) {
        return false;
    }
    const double room = (beats.back().x - beats.front().x) / double(beats.size() - 1);
    return std::max(scene.labels.width(painter, beats.front().text),
                    scene.labels.width(painter, beats.back().text)) > room;
}

void drawLabels(QPainter& painter, const GridScene& scene, const std::vector<BeatLine>& beats,
                const std::vector<ValueLine>& values) {
    const TextStyle style(painter, ModelGraph::LABEL);
    const int top = truncated(scene.layout.plotBottom);
    const int captionHeight = scene.layout.captionBottom - top;
    scene.labels.draw(painter, QRect(scene.width - captionWidth, top, captionWidth, captionHeight),
                      Qt::AlignRight | Qt::AlignBottom,
                      QCoreApplication::translate("GraphGrid", "Frequency (bpm)"));
    if (scene.latencyText) {
        scene.labels.draw(painter, QRect(0, top, latencyWidth, captionHeight),
                          Qt::AlignLeft | Qt::AlignBottom, *scene.latencyText);
    }
    const bool barsAlone =
        numbersCollide(painter, scene, beats) &&
        std::any_of(beats.begin(), beats.end(), [](const BeatLine& beat) { return beat.heavy; });
    for (const BeatLine& beat : beats) {
        if (barsAlone && !beat.heavy) {
            continue;
        }
        scene.labels.draw(painter,
                          QRectF(beat.x - beatReach, top, 2 * beatReach, scene.layout.labelBottom - top),
                          Qt::AlignHCenter | Qt::AlignTop | Qt::AlignVCenter, beat.text);
    }
    for (const ValueLine& value : values) {
        // One that is too long for its place goes on to the right: without its first digits it would be
        // wrong.
        const bool fits = scene.labels.width(painter, value.text) <= valueRight;
        scene.labels.draw(painter, QRectF(0, value.y - valueReach, valueRight, 2 * valueReach),
                          (fits ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter, value.text);
    }
}

} // namespace

void drawGrid(QPainter& painter, const GridScene& scene) {
    const std::vector<BeatLine> beats = beatLines(scene);
    const std::vector<ValueLine> values = valueLines(scene);
    drawLines(painter, scene, beats, values);
    drawLabels(painter, scene, beats, values);
}
