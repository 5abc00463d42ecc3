// The grid of a graph and its disc, a frame each, against one blit of the graph's pixels.

#include "ratio.h"

#include "curve/qcurve.h"
#include "painter/graphgrid.h"
#include "painter/qwdrawvinylposition.h"
#include "phrasing/managephrasing.h"
#include "state/pathfile.h"
#include "state/recordingloopertraining.h"
#include "state/singleton.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <memory>

namespace {

constexpr int graphWidth = 1900;
constexpr int graphHeight = 500;
constexpr double sampleRate = 48000.0;
constexpr double bpm = 84.0;
constexpr double beat = 60.0 * sampleRate / bpm;
constexpr double framesPerTick = 800.0; // a display of 60 pictures a second
constexpr double hour = 3600.0 * sampleRate;
constexpr int anglePoints = 1000;
constexpr double pointStep = 64.0;
const QColor ground(43, 43, 43);

/// What the graph is drawn on: opaque, as a screen is.
QImage surface() {
    QImage image(graphWidth, graphHeight, QImage::Format_RGB32);
    image.fill(ground);
    return image;
}

/// Calls `draw(painter)` as a paint event does, once an iteration.
template <typename Draw> void drawFrames(benchmark::State& state, Draw draw) {
    QImage image = surface();
    for (auto _ : state) {
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        draw(painter);
    }
}

void grid(benchmark::State& state, double beats) {
    const ManagePhrasing areas(ModelGraph::INPUT_DECKA);
    const GraphLayout layout = GraphLayout::of(graphWidth, graphHeight, false, false);
    LabelCache labels;
    double xMin = 0.0;
    drawFrames(state, [&](QPainter& painter) {
        xMin = xMin < hour ? xMin + framesPerTick : 0.0;
        const GraphScale scale(layout, {xMin, xMin + beats * beat}, {-300.0, 1210.0}, true);
        drawGrid(painter, {scale, layout, graphWidth, ModelDisplay::NORMAL, areas, beat, 0.0, sampleRate, bpm,
                           ground, QStringLiteral("1.3ms / 13%"), labels});
    });
}
void gridOf16(benchmark::State& state) {
    grid(state, 16.0);
}
void gridOf64(benchmark::State& state) {
    grid(state, 64.0);
}

/// A record that turns by two degrees a point, in a mode that shows its reference as well.
struct Record {
    CurvePointStore main;
    CurvePointStore secondary;
    QCurve mainCurve{ModelGraph::INPUT_DECKA, main};
    QCurve secondaryCurve{ModelGraph::INPUT_1, secondary};
    ManagePhrasing areas{ModelGraph::INPUT_DECKA};
    QWDrawVinylPosition disc{&mainCurve, &secondaryCurve, &areas, nullptr};
    LabelCache names;

    Record() {
        Singleton::instance().recordingLooperTraining()->setActivatedMode(ModelActivatedMode::Training);
        main.reserve();
        secondary.reserve();
        CurvePoint point;
        point.soundOn = 1;
        for (int i = 0; i < anglePoints; ++i) {
            point.time += pointStep;
            point.angle = i * 2 % 360;
            main.append(point);
            point.angle = (i * 2 + 100) % 360;
            secondary.append(point);
        }
        QPhrasingList slices;
        for (int i = 0; i < 4; ++i) {
            slices << std::make_shared<QPhrasing>(QStringLiteral("area"), QColor(208, 50 * i, 24), i * 90.0,
                                                  i * 90.0 + 80.0);
        }
        areas.setListPhrasing(slices);
    }
};

void discStill(benchmark::State& state) {
    Record record;
    drawFrames(state, [&](QPainter& painter) {
        record.disc.draw(painter, 100.0 * pointStep, true, graphHeight, record.names);
    });
}

void discTurning(benchmark::State& state) {
    Record record;
    int point = 0;
    drawFrames(state, [&](QPainter& painter) {
        point = (point + 1) % anglePoints;
        record.disc.draw(painter, (point + 0.5) * pointStep, true, graphHeight, record.names);
    });
}

void needlesTurning(benchmark::State& state) {
    Record record;
    int point = 0;
    drawFrames(state, [&](QPainter& painter) {
        point = (point + 1) % anglePoints;
        record.disc.draw(painter, (point + 0.5) * pointStep, false, graphHeight, record.names);
    });
}

void blit(benchmark::State& state) {
    const QImage picture = surface();
    drawFrames(state, [&](QPainter& painter) { painter.drawImage(0, 0, picture); });
}

BENCHMARK(gridOf16)->Unit(benchmark::kMicrosecond);
BENCHMARK(gridOf64)->Unit(benchmark::kMicrosecond);
BENCHMARK(discStill)->Unit(benchmark::kMicrosecond);
BENCHMARK(discTurning)->Unit(benchmark::kMicrosecond);
BENCHMARK(needlesTurning)->Unit(benchmark::kMicrosecond);
BENCHMARK(blit)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    const QTemporaryDir data;
    useDataFolder(data.path());
    return measureRatios(argc, argv,
                         {{"grid of 16 beats, 1900 x 500, following", "gridOf16", "blit"},
                          {"grid of 64 beats", "gridOf64", "blit"},
                          {"disc, still", "discStill", "blit"},
                          {"disc, slices turning", "discTurning", "blit"},
                          {"disc, needles turning", "needlesTurning", "blit"}});
}
