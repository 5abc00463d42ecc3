// Both searches of a curve and the extremes of what a graph shows of it, at five thousand points and at five
// million.

#include "ratio.h"
#include "support/drivendecks.h"

#include <QCoreApplication>

namespace {

constexpr std::size_t few = 5'000;
constexpr std::size_t many = 5'000'000;
constexpr double curveStep = 64.0;
constexpr std::size_t searches = 1'000;

/// A curve of `count` points, made once.
QCurve& curve(std::size_t count) {
    struct Filled {
        CurvePointStore points;
        QCurve curve{ModelGraph::INPUT_DECKA, points};
        explicit Filled(std::size_t size) {
            points.reserve();
            CurvePoint point;
            for (std::size_t i = 0; i < size; ++i) {
                points.prepare();
                points.append(point);
                point.time += curveStep;
                point.position = scatterUnit(2, i);
            }
        }
    };
    static Filled small(few);
    static Filled large(many);
    return count == few ? small.curve : large.curve;
}

/// A thousand searches for times anywhere on the curve.
template <typename Search> void searchAnywhere(benchmark::State& state, std::size_t count, Search search) {
    const QCurve& searched = curve(count);
    std::vector<std::int32_t> times(searches);
    for (std::size_t i = 0; i < searches; ++i) {
        times[i] = static_cast<std::int32_t>(scatterUnit(1, i) * double(count) * curveStep);
    }
    for (auto _ : state) {
        std::size_t sum = 0;
        for (const std::int32_t time : times) {
            sum += search(searched, time);
        }
        benchmark::DoNotOptimize(sum);
    }
}

std::size_t first(const QCurve& searched, std::int32_t time) {
    return searched.findFirstIndex(time);
}
std::size_t last(const QCurve& searched, std::int32_t time) {
    return searched.findLastIndex(time);
}

void findFirstAmongFew(benchmark::State& state) {
    searchAnywhere(state, few, first);
}
void findFirstAmongMany(benchmark::State& state) {
    searchAnywhere(state, many, first);
}
void findLastAmongFew(benchmark::State& state) {
    searchAnywhere(state, few, last);
}
void findLastAmongMany(benchmark::State& state) {
    searchAnywhere(state, many, last);
}

/// What every paint asks for: the extremes of the visible stretch. All of the curve is visible, but for less
/// than a hundredth at either end, so that the stretch is another one each time.
void extremesOf(benchmark::State& state, std::size_t count) {
    QCurve& asked = curve(count);
    const double frames = double(count) * curveStep;
    std::uint64_t ask = 0;
    double min = 0.0;
    double max = 0.0;
    bool found = false;
    for (auto _ : state) {
        const double from = scatterUnit(3, ask) * 0.01 * frames;
        const double to = (1.0 - scatterUnit(4, ask) * 0.01) * frames;
        ++ask;
        asked.minMaxPosition(static_cast<std::int32_t>(from), static_cast<std::int32_t>(to), min, max, found);
        benchmark::DoNotOptimize(min);
        benchmark::DoNotOptimize(max);
    }
    if (!found) {
        state.SkipWithError("nothing was visible");
    }
}

void extremesOfFew(benchmark::State& state) {
    extremesOf(state, few);
}
void extremesOfMany(benchmark::State& state) {
    extremesOf(state, many);
}

BENCHMARK(extremesOfFew)->Unit(benchmark::kMicrosecond);
BENCHMARK(extremesOfMany)->Unit(benchmark::kMicrosecond);
BENCHMARK(findFirstAmongFew)->Unit(benchmark::kMicrosecond);
BENCHMARK(findFirstAmongMany)->Unit(benchmark::kMicrosecond);
BENCHMARK(findLastAmongFew)->Unit(benchmark::kMicrosecond);
BENCHMARK(findLastAmongMany)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir data;
    useDataFolder(data.path());
    return measureRatios(
        argc, argv,
        {{"extremes on screen, 5 million points against 5 thousand", "extremesOfMany", "extremesOfFew"},
         {"1000 findFirstIndex, 5 million points against 5 thousand", "findFirstAmongMany",
          "findFirstAmongFew"},
         {"1000 findLastIndex, 5 million points against 5 thousand", "findLastAmongMany",
          "findLastAmongFew"}});
}
