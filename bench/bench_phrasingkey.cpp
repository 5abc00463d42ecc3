// A phrasing key on a graph whose areas lie over a sample, and what it leaves to the events that follow,
// against drawing all of the sample's pictures.

#include "benchgraph.h"
#include "ratio.h"

#include "module/wavedata.h"
#include "painter/qwpainterwav.h"
#include "phrasing/wavesegments.h"
#include "phrasing/wavphrasing.h"
#include "state/pathfile.h"
#include "state/vinyl.h"

#include <QApplication>
#include <QTemporaryDir>

namespace {

constexpr std::size_t rate = 48000;
constexpr int areaCount = 8;

/// Sound that fades and comes back.
std::shared_ptr<WaveData> sound(std::size_t seconds) {
    auto wave = std::make_shared<WaveData>(std::uint32_t(rate), 1U, rate * seconds);
    const std::span<std::int16_t> samples = wave->samples(0);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double time = double(i) / double(rate);
        samples[i] = std::int16_t(20000.0 * std::sin(time * 2000.0) * std::sin(time * 3.0));
    }
    wave->setPeaks(-20000, 20000);
    return wave;
}

/// A graph with areas all around the turn. The key moves the end of the last one to and fro.
class KeyedGraph {
public:
    explicit KeyedGraph(std::size_t seconds) {
        ManagePhrasing& areas = *m_graph.widget->colorAreas();
        QPhrasingList list;
        for (int i = 0; i < areaCount; ++i) {
            list.append(
                std::make_shared<QPhrasing>(QString(), QColor(20 * i, 200, 90), 45.0 * i, 45.0 * (i + 1)));
        }
        areas.setListPhrasing(list);
        Singleton::instance().wavPhrasing()->setWav(ModelGraph::INPUT_DECKA, sound(seconds));
        m_graph.widget->generateWavPhrasing();
    }
    ~KeyedGraph() { Singleton::instance().wavPhrasing()->setWav(ModelGraph::INPUT_DECKA, nullptr); }
    void press() {
        m_graph.widget->colorAreas()->listPhrasing().last()->setAngleEnd(360.0);
        Singleton::instance().vinyl()->setAngle(ModelGraph::INPUT_DECKA, m_other ? 345.0 : 350.0);
        m_other = !m_other;
        m_pressed = true;
        m_graph.widget->colorAreas()->addArea();
    }

    /// Whether the last press moved the area's end.
    bool moved() const {
        const WaveSegment& last = m_graph.widget->wavePainter()->segments().back();
        return m_pressed && last.end < last.first + (last.first / (areaCount - 1));
    }

private:
    BenchGraph m_graph;
    bool m_pressed = false;
    bool m_other = false;
};

void key(benchmark::State& state, std::size_t seconds) {
    KeyedGraph graph(seconds);
    for (auto _ : state) {
        graph.press();
    }
    if (!graph.moved()) {
        state.SkipWithError("the key did nothing");
    }
}

// The first turn of the event loop behind a key: later ones do the same.
void turn(benchmark::State& state, std::size_t seconds) {
    KeyedGraph graph(seconds);
    for (auto _ : state) {
        state.PauseTiming();
        graph.press();
        state.ResumeTiming();
        QCoreApplication::processEvents();
    }
}

void allPictures(benchmark::State& state) {
    const std::shared_ptr<const WaveData> waves[] = {sound(180), sound(180)};
    std::vector<WaveSegment> segments;
    const auto samples = std::int32_t(waves[0]->length());
    for (int i = 0; i < areaCount; ++i) {
        segments.push_back({samples / areaCount * i, samples / areaCount * (i + 1), QColor(20 * i, 200, 90)});
    }
    QWPainterWav pictures(ModelGraph::INPUT_DECKA);
    std::size_t next = 0;
    for (auto _ : state) {
        pictures.build(waves[next], segments);
        next = 1 - next;
    }
}

void keyOnThreeMinutes(benchmark::State& state) {
    key(state, 180);
}
void keyOnASecond(benchmark::State& state) {
    key(state, 1);
}
void turnOnThreeMinutes(benchmark::State& state) {
    turn(state, 180);
}

BENCHMARK(keyOnThreeMinutes)->Unit(benchmark::kMicrosecond);
BENCHMARK(keyOnASecond)->Unit(benchmark::kMicrosecond);
BENCHMARK(turnOnThreeMinutes)->Unit(benchmark::kMillisecond);
BENCHMARK(allPictures)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    const QTemporaryDir data;
    useDataFolder(data.path());
    return measureRatios(
        argc, argv,
        {{"a phrasing key, three minutes of sound", "keyOnThreeMinutes", "allPictures", 0.01},
         {"a turn of the event loop behind it", "turnOnThreeMinutes", "allPictures", 0.05},
         {"a phrasing key, three minutes against a second", "keyOnThreeMinutes", "keyOnASecond", 1.5}});
}
