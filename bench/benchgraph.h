#pragma once
// The graph that the benchmarks of the picture repaint: deck A's, on a window of its own, with made points.

#include "curve/curvepointstore.h"
#include "painter/qwpainter.h"
#include "phrasing/managephrasing.h"
#include "state/mode.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/singleton.h"
#include "state/time.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

constexpr int graphWidth = 1900;
constexpr int graphHeight = 500;
constexpr double shareBefore = 0.96;    // of the window, before the cursor
constexpr double framesPerTick = 800.0; // a display of 60 pictures a second

/// Shows the widget; from here on repaint() paints at once.
inline void showNow(QWidget& widget) {
    widget.resize(graphWidth, graphHeight);
    widget.show();
    while (!widget.windowHandle()->isExposed()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// What is on the record: nothing, or three colours.
enum class Record { Plain, Coloured };

/// How much of a take the window shows.
struct Stretch {
    double beats = 16.0;
    int segments = 950; ///< in the part of the window that lies before the cursor
};

/// A graph of deck A whose data sound throughout, but for the cuts on a coloured record.
struct BenchGraph {
    CurvePointStore main;
    CurvePointStore secondary;
    std::unique_ptr<QWPainter> widget;
    bool coloured;
    double span;      ///< frames in the window
    double step;      ///< frames between two points
    double end = 0.0; ///< of the data, frames
    int pointsPerStroke = 50;

    explicit BenchGraph(Record kind = Record::Plain, ModelDisplay::EnumDisplay display = ModelDisplay::NORMAL,
                        Stretch stretch = {})
        : coloured(kind == Record::Coloured) {
        const Singleton& shared = Singleton::instance();
        shared.mode()->setGraphBeats(stretch.beats);
        shared.mode()->modeCurrentTimerAutoresize_on();
        shared.recordingLooperTraining()->updateBeatLength(
            ModelGraph::INPUT_DECKA, shared.performance()->sample(ModelGraph::INPUT_DECKA));
        main.reserve();
        widget = std::make_unique<QWPainter>(ModelGraph::INPUT_DECKA, ModelGraph::INPUT_1, main, secondary,
                                             nullptr);
        if (coloured) {
            const QColor colors[] = {QColor(208, 0, 24), QColor(254, 194, 0), QColor(1, 194, 193)};
            QPhrasingList areas;
            for (int i = 0; i < 3; ++i) {
                areas.append(std::make_shared<QPhrasing>(QString(), colors[i], 120.0 * i, 120.0 * (i + 1)));
            }
            widget->colorAreas()->setListPhrasing(areas);
        }
        shared.mode()->setDisplayMode(display);
        showNow(*widget);
        span = widget->xRange().max - widget->xRange().min;
        step = std::floor(span * shareBefore / stretch.segments);
    }

    /// Strokes to and fro, so alike that the range of values stands still.
    double position(double time) const {
        return 200.0 *
               std::sin(std::fmod(time / step, pointsPerStroke) / pointsPerStroke * 2.0 * std::numbers::pi);
    }
    /// Points up to `time`.
    void record(double time) {
        CurvePoint point;
        point.soundOn = 1;
        point.pitch = 1.0;
        for (; end + step <= time; end += step) {
            point.time = end + step;
            point.position = position(point.time);
            if (coloured) {
                point.soundOn = std::fmod(point.time / step, 20.0) < 17.0 ? 1 : 0;
                // A turn is 1800 units, and the hand drifts through all colours.
                point.rawAngle = std::fmod(360.0 + point.position * 0.2 + point.time / step * 0.25, 360.0);
                point.angle = point.rawAngle;
            }
            main.append(point);
        }
        main.prepare();
    }
    /// Leaves a stretch without points.
    void pause(double frames) { end += std::ceil(frames / step) * step; }

    /// Jumps between two takes: nothing of one picture is of use for the next.
    void paintFromScratch(benchmark::State& state) {
        record(span);
        const double first = end;
        pause(2.0 * span);
        record(end + span);
        const double second = end;
        paintAt(first);
        bool other = true;
        for (auto _ : state) {
            paintAt(other ? second : first);
            other = !other;
        }
    }
    void paintAt(double cursor) {
        Singleton::instance().time()->setCursor(ModelGraph::INPUT_DECKA, cursor);
        widget->repaint();
    }

    /// A take of so many points that stands still, all of it in view. A step is a whole number of frames.
    void showTake(int points) {
        Singleton::instance().mode()->modeCurrentTimerAutoresize_off();
        step = std::max(1.0, std::floor(span / points));
        widget->setXRange({0, int(step) * (points + points / 4)});
        record(step * points);
        paintAt(0.0);
    }
};
