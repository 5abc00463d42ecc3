// A repaint of the graph from scratch, and one while it follows the cursor, against one blit of as many
// pixels; and one of a long take against one of a short take.

#include "ratio.h"

#include "curve/curvepointstore.h"
#include "painter/qwpainter.h"
#include "phrasing/managephrasing.h"
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
constexpr int shortTake = 5'000;        // points
constexpr int longTake = 5'000'000;

/// Shows the widget; from here on repaint() paints at once.
void showNow(QWidget& widget) {
    widget.resize(graphWidth, graphHeight);
    widget.show();
    while (!widget.windowHandle()->isExposed()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// What is on the record: nothing, or three colours.
enum class Record { Plain, Coloured };

/// A graph of deck A whose data sound throughout, but for the cuts on a coloured record, on a window of its
/// own.
struct Graph {
    CurvePointStore main;
    CurvePointStore secondary;
    std::unique_ptr<QWPainter> widget;
    bool coloured;
    double span;      ///< frames in the window
    double step;      ///< frames between two points
    double end = 0.0; ///< of the data, frames

    explicit Graph(Record kind = Record::Plain, ModelDisplay::EnumDisplay display = ModelDisplay::NORMAL)
        : coloured(kind == Record::Coloured) {
        const Singleton& shared = Singleton::instance();
        shared.mode()->setGraphBeats(beats);
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
        step = std::floor(span * shareBefore / segments);
    }

    /// Strokes to and fro up to `time`, so alike that the range of values stands still.
    void record(double time) {
        CurvePoint point;
        point.soundOn = 1;
        point.pitch = 1.0;
        for (; end + step <= time; end += step) {
            point.time = end + step;
            if (coloured) {
                point.soundOn = std::fmod(point.time / step, 20.0) < 17.0 ? 1 : 0;
                point.rawAngle = std::fmod(point.time / step * 7.0, 360.0);
                point.angle = point.rawAngle;
            }
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
void repaintFromScratch(benchmark::State& state, Record kind, ModelDisplay::EnumDisplay display) {
    Graph graph(kind, display);
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

void fullRepaint(benchmark::State& state) {
    repaintFromScratch(state, Record::Plain, ModelDisplay::NORMAL);
}
void fullRepaintColoured(benchmark::State& state) {
    repaintFromScratch(state, Record::Coloured, ModelDisplay::NORMAL);
}
void fullRepaintPhrasing(benchmark::State& state) {
    repaintFromScratch(state, Record::Coloured, ModelDisplay::PHRASING);
}
void fullRepaintDrumming(benchmark::State& state) {
    repaintFromScratch(state, Record::Coloured, ModelDisplay::DRUMMING);
}

/// A running session: the cursor moves on by a sixtieth of a second, and the curve with it.
void repaintWhileFollowing(benchmark::State& state, Record kind, ModelDisplay::EnumDisplay display) {
    Graph graph(kind, display);
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

void followingRepaint(benchmark::State& state) {
    repaintWhileFollowing(state, Record::Plain, ModelDisplay::NORMAL);
}
void followingRepaintColoured(benchmark::State& state) {
    repaintWhileFollowing(state, Record::Coloured, ModelDisplay::NORMAL);
}
void followingRepaintPhrasing(benchmark::State& state) {
    repaintWhileFollowing(state, Record::Coloured, ModelDisplay::PHRASING);
}

/// All of a take is in view, and a point is added at each repaint.
void repaintOfTake(benchmark::State& state, int points) {
    Graph graph;
    Singleton::instance().mode()->modeCurrentTimerAutoresize_off();
    graph.step = std::floor(graph.span / points);
    if (graph.step < 1.0) { // as many beats as it takes
        graph.step = 1.0;
        graph.widget->setXRange({0, points + points / 4});
    } else {
        graph.widget->setXRange({0, int(graph.step) * (points + points / 4)});
    }
    graph.record(graph.step * points);
    graph.paintAt(0.0);
    for (auto _ : state) {
        graph.record(graph.end + graph.step);
        graph.paintAt(0.0);
    }
    Singleton::instance().mode()->modeCurrentTimerAutoresize_on();
}
void shortTakeRepaint(benchmark::State& state) {
    repaintOfTake(state, shortTake);
}
void longTakeRepaint(benchmark::State& state) {
    repaintOfTake(state, longTake);
}

/// The graph's frame without a curve: background, logo, cursor and text.
void emptyRepaint(benchmark::State& state) {
    Graph graph;
    double cursor = graph.span;
    for (auto _ : state) {
        graph.paintAt(cursor += framesPerTick);
    }
}

/// A widget that is a picture.
class Picture : public QWidget {
public:
    explicit Picture(QImage::Format format) : m_image(graphWidth, graphHeight, format) {
        m_image.fill(QColor(0, 255, 0, 100));
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawImage(0, 0, m_image); }

private:
    QImage m_image;
};

void repaintPicture(benchmark::State& state, QImage::Format format) {
    Picture picture(format);
    showNow(picture);
    for (auto _ : state) {
        picture.repaint();
    }
}

void blit(benchmark::State& state) {
    repaintPicture(state, QImage::Format_RGB32);
}
/// With an alpha channel, as the kept curve is.
void blend(benchmark::State& state) {
    repaintPicture(state, QImage::Format_ARGB32_Premultiplied);
}

BENCHMARK(fullRepaint)->Unit(benchmark::kMicrosecond);
BENCHMARK(fullRepaintColoured)->Unit(benchmark::kMicrosecond);
BENCHMARK(fullRepaintPhrasing)->Unit(benchmark::kMicrosecond);
BENCHMARK(fullRepaintDrumming)->Unit(benchmark::kMicrosecond);
BENCHMARK(followingRepaint)->Unit(benchmark::kMicrosecond);
BENCHMARK(followingRepaintColoured)->Unit(benchmark::kMicrosecond);
BENCHMARK(followingRepaintPhrasing)->Unit(benchmark::kMicrosecond);
BENCHMARK(shortTakeRepaint)->Unit(benchmark::kMicrosecond);
BENCHMARK(longTakeRepaint)->Unit(benchmark::kMicrosecond);
BENCHMARK(emptyRepaint)->Unit(benchmark::kMicrosecond);
BENCHMARK(blit)->Unit(benchmark::kMicrosecond);
BENCHMARK(blend)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    const QTemporaryDir data;
    useDataFolder(data.path());
    return measureRatios(
        argc, argv,
        {{"full repaint, 1900 x 500, 950 segments at width 8", "fullRepaint", "blit", 11.0},
         {"the same with cuts and three colours", "fullRepaintColoured", "blit", 11.0},
         {"the same, phrasing", "fullRepaintPhrasing", "blit", 11.0},
         {"the same, drumming", "fullRepaintDrumming", "blit", 11.0},
         {"repaint while following, one tick of 60", "followingRepaint", "blit", 2.5},
         {"the same with cuts and three colours", "followingRepaintColoured", "blit", 2.5},
         {"the same, phrasing", "followingRepaintPhrasing", "blit", 2.5},
         {"5,000,000 points in view against 5,000", "longTakeRepaint", "shortTakeRepaint", 1.5},
         {"repaint without a curve", "emptyRepaint", "blit"},
         {"a blit with an alpha channel", "blend", "blit"}});
}
