// The build of the five lookup tables, against clearing fresh memory of the same size.

#include "ratio.h"

#include "external/code/definitions.h"

#include <cstring>
#include <memory>

namespace {

void build(benchmark::State& state, const char* name) {
    for (auto _ : state) {
        state.PauseTiming();
        auto list = std::make_unique<TimecodeDefinitionList>(createTimecodeDefinitions());
        state.ResumeTiming();
        const TimecodeDefinition def = findTimecodeDefinition(*list, name);
        if (!def.lookup()) {
            state.SkipWithError("no table");
        }
        state.PauseTiming();
        list.reset();
        state.ResumeTiming();
    }
}

/// Two words a position and one for each chain.
std::size_t tableBytes(const char* name) {
    for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
        if (def.name() == name) {
            return def.length() * 2 * sizeof(std::uint32_t) + Lut::chains * sizeof(std::uint32_t);
        }
    }
    return 0;
}

void clear(benchmark::State& state, const char* name) {
    const std::size_t bytes = tableBytes(name);
    for (auto _ : state) {
        const auto memory = std::make_unique_for_overwrite<char[]>(bytes);
        std::memset(memory.get(), 0, bytes);
        benchmark::DoNotOptimize(memory.get());
        benchmark::ClobberMemory();
    }
}

#define LOOKUP_BENCHMARK(name)                                                                               \
    void build_##name(benchmark::State& state) {                                                             \
        build(state, #name);                                                                                 \
    }                                                                                                        \
    void clear_##name(benchmark::State& state) {                                                             \
        clear(state, #name);                                                                                 \
    }                                                                                                        \
    BENCHMARK(build_##name)->Unit(benchmark::kMillisecond);                                                  \
    BENCHMARK(clear_##name)->Unit(benchmark::kMillisecond)

LOOKUP_BENCHMARK(generic_V2);
LOOKUP_BENCHMARK(serato_sideA_FullDVS);
LOOKUP_BENCHMARK(serato_sideB_FullDVS);
LOOKUP_BENCHMARK(traktor_sideA);
LOOKUP_BENCHMARK(traktor_sideB);

} // namespace

int main(int argc, char* argv[]) {
    return measureRatios(
        argc, argv,
        {{"table of generic_V2", "build_generic_V2", "clear_generic_V2"},
         {"table of serato_sideA_FullDVS", "build_serato_sideA_FullDVS", "clear_serato_sideA_FullDVS"},
         {"table of serato_sideB_FullDVS", "build_serato_sideB_FullDVS", "clear_serato_sideB_FullDVS"},
         {"table of traktor_sideA", "build_traktor_sideA", "clear_traktor_sideA"},
         {"table of traktor_sideB", "build_traktor_sideB", "clear_traktor_sideB"}});
}
