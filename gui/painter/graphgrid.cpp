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
#include <functional>
#include <vector>

namespace {

constexpr int valueReach = 10;
constexpr int valueRight = 35;
constexpr double valueWidest = 38.0; // clear of the widget's edge and of the axis
constexpr int angleLevels = 10;

struct BeatLine {
    double x;
    QString text;
    bool heavy;
    double number; ///< steps from frame 0: the same while the range moves
};

struct ValueLine {
    double y;
    QString text;
    double number; ///< steps from 0: the same while the range moves
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
        const double cover = coverOf(pen);
        const auto mix = [cover](int over, int under) {
            return int(std::lround(over * cover + under * (1.0 - cover)));
        };
        const QColor color = pen.color();
        m_painter.fillRect(m_device.upright(x, top, bottom, pen.widthF()),
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
    const double step = xGridStep(from, to, scene.beatLength);
    for (const double tick : gridTicks(step, from, to)) {
        const QString text =
            beatText(gridBeat(tick, scene.firstMetronome, scene.sampleRate, scene.bpmEffective));
        lines.push_back({scene.scale.column(tick), text, isHeavyBeat(text), std::round(tick / step)});
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
                             QString::number(i * 100 / angleLevels) + QLatin1Char('%'), double(i)});
        }
        return lines;
    }
    const double from = std::trunc(scene.scale.y().min);
    const double to = std::trunc(scene.scale.y().max);
    const double step = yGridStep(from, to);
    for (const double tick : gridTicks(step, from, to)) {
        lines.push_back({rowOf(scene, tick), shortNumber(tick), std::round(tick / step)});
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

/// Every how-manieth of these lines has its number, so that the numbers don't touch.
int numberStride(const QPainter& painter, const GridScene& scene, const std::vector<BeatLine>& beats) {
    if (beats.size() < 2) {
        return 1;
    }
    const double distance = (beats.back().x - beats.front().x) / double(beats.size() - 1);
    const double widest = std::max(scene.labels.width(painter, beats.front().text),
                                   scene.labels.width(painter, beats.back().text));
    return labelStride(distance, widest + labelGap + 1.0); // lines stand in whole columns
}

/// Numbers of three digits don't fit side by side below 64 beats on a small graph: then only the bars have
/// theirs, and of bars that stand as close only some of them, the same ones while the range moves.
std::vector<BeatLine> numberedLines(const QPainter& painter, const GridScene& scene,
                                    std::vector<BeatLine> beats) {
    const auto isHeavy = [](const BeatLine& beat) { return beat.heavy; };
    if (numberStride(painter, scene, beats) == 1) {
        return beats;
    }
    if (std::any_of(beats.begin(), beats.end(), isHeavy)) {
        std::erase_if(beats, std::not_fn(isHeavy));
    }
    if (const int stride = numberStride(painter, scene, beats); stride > 1) {
        const double step = beats[1].number - beats[0].number;
        std::erase_if(beats, [&](const BeatLine& beat) {
            return std::fmod(std::floor(beat.number / step), stride) != 0.0;
        });
    }
    return beats;
}

void drawBeatNumbers(QPainter& painter, const GridScene& scene, const std::vector<BeatLine>& beats,
                     LabelRow& row) {
    const int top = truncated(scene.layout.plotBottom);
    for (const BeatLine& beat : numberedLines(painter, scene, beats)) {
        const LabelSpan span = spanWithin(beat.x, scene.labels.width(painter, beat.text), scene.width);
        if (row.take(span)) {
            scene.labels.draw(painter,
                              QRectF(span.left, top, span.right - span.left, scene.layout.labelBottom - top),
                              Qt::AlignLeft | Qt::AlignVCenter, beat.text);
        }
    }
}

/// The latency at the left and the unit at the right have a row of their own. Where the wave's bar lies in
/// that, they stand in the row of the beat numbers.
void drawCaptions(QPainter& painter, const GridScene& scene, LabelRow& beatRow) {
    const bool shared = scene.layout.hasWaveBar();
    LabelRow ownRow;
    LabelRow& row = shared ? beatRow : ownRow;
    const int top = truncated(scene.layout.plotBottom);
    const int bottom = shared ? scene.layout.labelBottom : scene.layout.captionBottom;
    const auto draw = [&](const QString& text, bool atRight) {
        const double width = scene.labels.width(painter, text);
        const LabelSpan span = spanWithin(atRight ? scene.width : 0.0, width, scene.width);
        if (row.take(span)) {
            scene.labels.draw(painter, QRectF(span.left, top, width, bottom - top),
                              Qt::AlignLeft | (shared ? Qt::AlignVCenter : Qt::AlignBottom), text);
        }
    };
    if (scene.latencyText) {
        draw(*scene.latencyText, false);
    }
    draw(QCoreApplication::translate("GraphGrid", "Frequency (bpm)"), true);
}

void drawValue(QPainter& painter, LabelCache& labels, const ValueLine& value) {
    const QRectF place(0, value.y - valueReach, valueRight, 2 * valueReach);
    const double width = labels.width(painter, value.text);
    if (width <= valueRight) {
        labels.draw(painter, place, Qt::AlignRight | Qt::AlignVCenter, value.text);
        return;
    }
    // Without some of its digits it would be wrong: it is drawn narrower.
    painter.save();
    painter.translate(labelGap, 0.0);
    painter.scale(std::min(1.0, valueWidest / width), 1.0);
    labels.draw(painter, place, Qt::AlignLeft | Qt::AlignVCenter, value.text);
    painter.restore();
}

void drawValues(QPainter& painter, const GridScene& scene, const std::vector<ValueLine>& values) {
    if (values.empty()) {
        return;
    }
    const double distance = (values.front().y - values.back().y) / std::max(1.0, double(values.size()) - 1.0);
    const int stride = values.size() > 1
                           ? labelStride(distance, scene.labels.size(painter, values.front().text).height())
                           : 1;
    for (const ValueLine& value : values) {
        if (std::fmod(value.number, stride) == 0.0) {
            drawValue(painter, scene.labels, value);
        }
    }
}

void drawLabels(QPainter& painter, const GridScene& scene, const std::vector<BeatLine>& beats,
                const std::vector<ValueLine>& values) {
    const TextStyle style(painter, ModelGraph::LABEL);
    LabelRow row;
    if (scene.cursorText) {
        row.take(*scene.cursorText);
    }
    drawCaptions(painter, scene, row);
    drawBeatNumbers(painter, scene, beats, row);
    drawValues(painter, scene, values);
}

} // namespace

void drawGrid(QPainter& painter, const GridScene& scene) {
    const std::vector<BeatLine> beats = beatLines(scene);
    const std::vector<ValueLine> values = valueLines(scene);
    drawLines(painter, scene, beats, values);
    drawLabels(painter, scene, beats, values);
}
