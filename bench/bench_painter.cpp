// A repaint of the graph from scratch, and one while it follows the cursor, against one blit of as many
// pixels; and one of a long take against one of a short take.

#include "benchgraph.h"
#include "ratio.h"

#include "state/pathfile.h"

#include <QApplication>
#include <QPainter>
#include <QTemporaryDir>

#include <algorithm>

namespace {

constexpr double sampleRate = 48000.0; // frames a second
constexpr int shortTake = 5'000;       // points
constexpr int longTake = 5'000'000;

void repaintFromScratch(benchmark::State& state, Record kind, ModelDisplay::EnumDisplay display) {
    BenchGraph graph(kind, display);
    graph.paintFromScratch(state);
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
    BenchGraph graph(kind, display);
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

/// A session that has run for so many frames, with a point every 64 frames as a decoder gives them.
void repaintAfter(benchmark::State& state, double frames) {
    BenchGraph graph(Record::Coloured);
    graph.step = 64.0;
    for (double time = 0.0; time < frames; time += 1e8) {
        graph.record(std::min(time, frames)); // a piece at a time: the store makes its room ahead
    }
    double cursor = frames;
    graph.record(cursor);
    graph.paintAt(cursor);
    for (auto _ : state) {
        cursor += framesPerTick;
        graph.record(cursor);
        graph.paintAt(cursor);
    }
}
void firstMinute(benchmark::State& state) {
    repaintAfter(state, 60.0 * sampleRate);
}
void afterFiveHours(benchmark::State& state) {
    repaintAfter(state, 5.0 * 3600.0 * sampleRate);
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
    BenchGraph graph;
    graph.showTake(points);
    for (auto _ : state) {
        graph.record(graph.end + graph.step);
        graph.paintAt(0.0);
    }
}
void shortTakeRepaint(benchmark::State& state) {
    repaintOfTake(state, shortTake);
}
void longTakeRepaint(benchmark::State& state) {
    repaintOfTake(state, longTake);
}

/// The graph's frame without a curve: background, logo, cursor and text.
void emptyRepaint(benchmark::State& state) {
    BenchGraph graph;
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

BENCHMARK(fullRepaint)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(fullRepaintColoured)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(fullRepaintPhrasing)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(fullRepaintDrumming)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(followingRepaint)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(followingRepaintColoured)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(followingRepaintPhrasing)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(firstMinute)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(afterFiveHours)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(shortTakeRepaint)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(longTakeRepaint)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(emptyRepaint)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(blit)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(blend)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);

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
         {"the same after five hours against the first minute", "afterFiveHours", "firstMinute", 1.1},
         {"5,000,000 points in view against 5,000", "longTakeRepaint", "shortTakeRepaint", 1.5},
         {"repaint without a curve", "emptyRepaint", "blit"},
         {"a blit with an alpha channel", "blend", "blit"}});
}
