// A repaint of the graph against one of the same curve by QCustomPlot, the plotting library that Debian has
// for Qt 6: both show the same points as a line of width 8 with round joins, 1900 x 500 pixels, antialiased
// as each does it by itself. No other program links the library; where it isn't installed this one isn't
// built.

#include "benchgraph.h"
#include "ratio.h"

#include "state/pathfile.h"

#include <qcustomplot.h>

#include <QApplication>
#include <QTemporaryDir>

namespace {

constexpr Stretch fewPoints{.beats = 8.0, .segments = 500}; // a point a tick, or two
constexpr int longTake = 5'000'000;
constexpr int slow = 500'000; // points a stroke: ten strokes in view, which both draw alike
constexpr int fast =
    50; // many strokes a pixel column: the graph thins them, the other one draws their extent
constexpr double lineWidth = 8.0; // what the graph draws while the sound is on

/// How the other one draws, from its own choice to the quickest it has.
enum class Effort {
    Default,  ///< antialiased, with adaptive sampling
    Segments, ///< each segment of the line by itself, antialiased: its hint for speed
    Rough,    ///< and not antialiased, with the square ends of a pen as Qt makes it: joins have gaps
};

/// A QCustomPlot with the curve of a BenchGraph.
class OtherPlot {
public:
    OtherPlot(const BenchGraph& graph, Effort effort) : m_source(graph), m_graph(m_plot.addGraph()) {
        // The same points in the same colour over the same range of values.
        QPen pen(QColor(0, 255, 0), lineWidth);
        if (effort != Effort::Rough) {
            pen.setCapStyle(Qt::RoundCap);
            pen.setJoinStyle(Qt::RoundJoin);
        }
        m_graph->setPen(pen);
        const GraphRange y = graph.widget->yRange();
        m_plot.yAxis->setRange(y.min, y.max);
        m_plot.setPlottingHint(QCP::phFastPolylines, effort != Effort::Default);
        if (effort == Effort::Rough) {
            m_plot.setNotAntialiasedElements(QCP::aeAll);
        }
        takeOver();
        showNow(m_plot);
    }
    /// The points that the graph's curve has got since.
    void takeOver() {
        const CurvePointStore::View points = m_source.main.view();
        for (; m_taken < points.size(); ++m_taken) {
            const CurvePoint& point = points[m_taken];
            m_graph->addData(point.time, point.position);
        }
    }
    void paint(GraphRange x) {
        m_plot.xAxis->setRange(x.min, x.max);
        m_plot.replot(QCustomPlot::rpImmediateRefresh);
    }

private:
    const BenchGraph& m_source;
    QCustomPlot m_plot;
    QCPGraph* m_graph; // the plot owns it
    std::size_t m_taken = 0;
};

/// A running session: the cursor moves on by a sixtieth of a second, and the curve with it.
void following(benchmark::State& state) {
    BenchGraph graph(Record::Plain, ModelDisplay::NORMAL, fewPoints);
    double cursor = graph.span;
    graph.record(cursor);
    graph.paintAt(cursor);
    for (auto _ : state) {
        cursor += framesPerTick;
        graph.record(cursor);
        graph.paintAt(cursor);
    }
}

void fromScratch(benchmark::State& state) {
    BenchGraph graph(Record::Plain, ModelDisplay::NORMAL, fewPoints);
    graph.paintFromScratch(state);
}

void otherFollowing(benchmark::State& state, Effort effort) {
    BenchGraph graph(Record::Plain, ModelDisplay::NORMAL, fewPoints);
    double cursor = graph.span;
    graph.record(cursor);
    graph.paintAt(cursor);
    OtherPlot plot(graph, effort);
    const double before = shareBefore * graph.span;
    for (auto _ : state) {
        cursor += framesPerTick;
        graph.record(cursor);
        plot.takeOver();
        plot.paint({cursor - before, cursor - before + graph.span});
    }
}

/// All of a long take is in view, and a point is added at each repaint.
void take(benchmark::State& state, int pointsPerStroke) {
    BenchGraph graph;
    graph.pointsPerStroke = pointsPerStroke;
    graph.showTake(longTake);
    for (auto _ : state) {
        graph.record(graph.end + graph.step);
        graph.paintAt(0.0);
    }
}

void otherTake(benchmark::State& state, int pointsPerStroke, Effort effort) {
    BenchGraph graph;
    graph.pointsPerStroke = pointsPerStroke;
    graph.showTake(longTake);
    OtherPlot plot(graph, effort);
    const GraphRange x = graph.widget->xRange();
    for (auto _ : state) {
        graph.record(graph.end + graph.step);
        plot.takeOver();
        plot.paint(x);
    }
}

void qcpFollowing(benchmark::State& state) {
    otherFollowing(state, Effort::Default);
}
void qcpFollowingSegments(benchmark::State& state) {
    otherFollowing(state, Effort::Segments);
}
void qcpFollowingRough(benchmark::State& state) {
    otherFollowing(state, Effort::Rough);
}
void slowTake(benchmark::State& state) {
    take(state, slow);
}
void qcpSlowTake(benchmark::State& state) {
    otherTake(state, slow, Effort::Default);
}
void qcpSlowTakeSegments(benchmark::State& state) {
    otherTake(state, slow, Effort::Segments);
}
void qcpSlowTakeRough(benchmark::State& state) {
    otherTake(state, slow, Effort::Rough);
}
void fastTake(benchmark::State& state) {
    take(state, fast);
}
void qcpFastTake(benchmark::State& state) {
    otherTake(state, fast, Effort::Default);
}
void qcpFastTakeSegments(benchmark::State& state) {
    otherTake(state, fast, Effort::Segments);
}
void qcpFastTakeRough(benchmark::State& state) {
    otherTake(state, fast, Effort::Rough);
}

BENCHMARK(following)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(fromScratch)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(qcpFollowing)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(qcpFollowingSegments)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(qcpFollowingRough)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(slowTake)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(qcpSlowTake)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(qcpSlowTakeSegments)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(qcpSlowTakeRough)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(fastTake)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
// One replot takes many seconds.
BENCHMARK(qcpFastTake)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond)->Iterations(1)->Repetitions(2);
BENCHMARK(qcpFastTakeSegments)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(qcpFastTakeRough)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    const QTemporaryDir data;
    useDataFolder(data.path());
    return measureRatios(argc, argv,
                         {{"500 points, following, against QCustomPlot", "following", "qcpFollowing", 0.1},
                          {"the same, against its single segments", "following", "qcpFollowingSegments"},
                          {"the same, against its quickest", "following", "qcpFollowingRough"},
                          {"500 points, from scratch", "fromScratch", "qcpFollowing"},
                          {"the same, against its single segments", "fromScratch", "qcpFollowingSegments"},
                          {"the same, against its quickest", "fromScratch", "qcpFollowingRough"},
                          {"5,000,000 points, slow, against QCustomPlot", "slowTake", "qcpSlowTake", 0.05},
                          {"the same, against its single segments", "slowTake", "qcpSlowTakeSegments"},
                          {"the same, against its quickest", "slowTake", "qcpSlowTakeRough"},
                          {"5,000,000 points, fast, against QCustomPlot", "fastTake", "qcpFastTake", 0.05},
                          {"the same, against its single segments", "fastTake", "qcpFastTakeSegments"},
                          {"the same, against its quickest", "fastTake", "qcpFastTakeRough"}});
}
