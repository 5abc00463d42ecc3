// A repaint of the graph from scratch, and one while it follows the cursor, against one blit of as many
// pixels.

#include "ratio.h"

#include "curve/curvepointstore.h"
#include "painter/qwpainter.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/singleton.h"
#include "state/time.h"

#include <QApplication>
#include <QPainter>
#include <QTemporaryDir>
#include <QWindow>

#include <cmath>
#include <memory>
#include <numbers>

namespace {

constexpr int graphWidth = 1900;
constexpr int graphHeight = 500;
constexpr double beats = 16.0;
constexpr int segments = 950;        // in the part of the window that lies before the cursor
constexpr double shareBefore = 0.96; // of the window
constexpr int pointsPerStroke = 50;
constexpr double framesPerTick = 800.0; // a display of 60 pictures a second

/// Shows the widget; from here on repaint() paints at once.
void showNow(QWidget& widget) {
    widget.resize(graphWidth, graphHeight);
    widget.show();
    while (!widget.windowHandle()->isExposed()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// A graph of deck A whose data sound throughout, on a window of its own.
struct Graph {
    CurvePointStore main;
    CurvePointStore secondary;
    std::unique_ptr<QWPainter> widget;
    double span;      ///< frames in the window
    double step;      ///< frames between two points
    double end = 0.0; ///< of the data, frames

    Graph() {
        const Singleton& shared = Singleton::instance();
        shared.mode()->setGraphBeats(beats);
        shared.mode()->modeCurrentTimerAutoresize_on();
        shared.recordingLooperTraining()->updateBeatLength(
            ModelGraph::INPUT_DECKA, shared.performance()->sample(ModelGraph::INPUT_DECKA));
        main.reserve();
        widget = std::make_unique<QWPainter>(ModelGraph::INPUT_DECKA, ModelGraph::INPUT_1, main, secondary,
                                             nullptr);
        showNow(*widget);
        span = widget->xRange().max - widget->xRange().min;
        step = std::floor(span * shareBefore / segments);
    }

    /// Strokes to and fro up to `time`, so alike that the range of values stands still.
    void record(double time) {
        CurvePoint point;
        point.soundOn = 1;
        point.pitch = 1.0;
        for (; end + step <= time; end += step) {
            point.time = end + step;
            point.position = 200.0 * std::sin(std::fmod(point.time / step, pointsPerStroke) /
                                              pointsPerStroke * 2.0 * std::numbers::pi);
            main.append(point);
        }
        main.prepare();
    }
    /// Leaves a stretch without points.
    void pause(double frames) { end += std::ceil(frames / step) * step; }

    void paintAt(double cursor) {
        Singleton::instance().time()->setCursor(ModelGraph::INPUT_DECKA, cursor);
        widget->repaint();
    }
};

/// The window jumps between two takes: nothing of one picture is of use for the next.
void fullRepaint(benchmark::State& state) {
    Graph graph;
    graph.record(graph.span);
    const double first = graph.end;
    graph.pause(2.0 * graph.span);
    graph.record(graph.end + graph.span);
    const double second = graph.end;
    graph.paintAt(first);
    bool other = true;
    for (auto _ : state) {
        graph.paintAt(other ? second : first);
        other = !other;
    }
}

/// A running session: the cursor moves on by a sixtieth of a second, and the curve with it.
void followingRepaint(benchmark::State& state) {
    Graph graph;
    double cursor = graph.span;
    graph.record(cursor);
    graph.paintAt(cursor);
    for (auto _ : state) {
        cursor += framesPerTick;
        graph.record(cursor);
        graph.paintAt(cursor);
        if (cursor > 1e9) {
            state.PauseTiming();
            graph.main.clear();
            graph.end = 0.0;
            cursor = graph.span;
            graph.record(cursor);
            graph.paintAt(cursor);
            state.ResumeTiming();
        }
    }
}

/// The graph's frame without a curve: background, logo, cursor and text.
void emptyRepaint(benchmark::State& state) {
    Graph graph;
    double cursor = graph.span;
    for (auto _ : state) {
        graph.paintAt(cursor += framesPerTick);
    }
}

/// A widget that is a picture with an alpha channel, as the kept curve is.
class Picture : public QWidget {
public:
    Picture() : m_image(graphWidth, graphHeight, QImage::Format_ARGB32_Premultiplied) {
        m_image.fill(QColor(0, 255, 0, 100));
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawImage(0, 0, m_image); }

private:
    QImage m_image;
};

void blit(benchmark::State& state) {
    Picture picture;
    showNow(picture);
    for (auto _ : state) {
        picture.repaint();
    }
}

BENCHMARK(fullRepaint)->Unit(benchmark::kMicrosecond);
BENCHMARK(followingRepaint)->Unit(benchmark::kMicrosecond);
BENCHMARK(emptyRepaint)->Unit(benchmark::kMicrosecond);
BENCHMARK(blit)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    const QTemporaryDir data;
    useDataFolder(data.path());
    return measureRatios(argc, argv,
                         {{"full repaint, 1900 x 500, 950 segments at width 8", "fullRepaint", "blit"},
                          {"repaint while following, one tick of 60", "followingRepaint", "blit"},
                          {"repaint without a curve", "emptyRepaint", "blit"}});
}
