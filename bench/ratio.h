#pragma once
// A benchmark's table: each figure next to what it is measured against in the same run. Absolute times depend
// on the machine and on what else it does; a ratio of two loops that took turns says something about the
// code.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

/// One row: benchmark `figure` against benchmark `reference`, or against a fixed time where that is empty.
struct Ratio {
    const char* what;
    const char* figure;
    const char* reference;
    double aim = 0.0;         ///< the ratio is to be at most this; 0: there is no aim
    double referenceNs = 0.0; ///< nanoseconds, with an empty `reference`
};

/// Prints median and spread of each benchmark and keeps the least processor time of its repetitions: what
/// disturbs a run only ever adds to it.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    RatioReporter() : ConsoleReporter(OO_Tabular) {}
    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<Run> shown;
        for (const Run& run : runs) {
            const bool repetition = run.run_type == Run::RT_Iteration;
            if (run.error_occurred ||
                (!repetition && (run.aggregate_name == "median" || run.aggregate_name == "cv"))) {
                shown.push_back(run);
            } else if (repetition) {
                const double unit = benchmark::GetTimeUnitMultiplier(run.time_unit);
                const double ns = run.GetAdjustedCPUTime() / unit * 1e9;
                double& least = m_times.try_emplace(run.run_name.function_name, ns).first->second;
                least = std::min(least, ns);
            }
        }
        if (!shown.empty()) {
            ConsoleReporter::ReportRuns(shown);
        }
    }
    /// Least time of a repetition, nanoseconds; 0 if the benchmark didn't run or failed.
    double time(const std::string& name) const {
        const auto found = m_times.find(name);
        return found == m_times.end() ? 0.0 : found->second;
    }

private:
    std::map<std::string, double> m_times;
};

inline std::string readableTime(double ns) {
    char text[32];
    const bool milli = ns >= 1e6;
    const bool micro = ns >= 1e3;
    std::snprintf(text, sizeof text, "%.4g %s",
                  milli   ? ns / 1e6
                  : micro ? ns / 1e3
                          : ns,
                  milli   ? "ms"
                  : micro ? "us"
                          : "ns");
    return text;
}

/// Runs all benchmarks of the program and prints the rows. The exit code for main: not 0 for an option that
/// Google Benchmark doesn't know. A ratio that misses its aim is printed as such and is no failure.
inline int measureRatios(int argc, char** argv, std::initializer_list<Ratio> rows) {
    // Figure and reference take turns, so that what else happens on the machine meets both.
    std::string defaults[] = {"--benchmark_repetitions=9", "--benchmark_enable_random_interleaving=true",
                              "--benchmark_min_time=0.2"};
    std::vector<char*> arguments{argv[0]};
    for (std::string& option : defaults) {
        arguments.push_back(option.data());
    }
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 2;
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    std::printf("\n%-52s %12s %12s %8s  %s\n", "what", "figure", "reference", "ratio", "aim");
    for (const Ratio& row : rows) {
        const double figure = reporter.time(row.figure);
        const double reference = row.reference[0] == '\0' ? row.referenceNs : reporter.time(row.reference);
        if (figure <= 0.0 || reference <= 0.0) {
            continue; // left out by a filter
        }
        const double ratio = figure / reference;
        char aim[48] = "-";
        if (row.aim > 0.0) {
            std::snprintf(aim, sizeof aim, "at most %g: %s", row.aim, ratio <= row.aim ? "met" : "missed");
        }
        std::printf("%-52s %12s %12s %8.3g  %s\n", row.what, readableTime(figure).c_str(),
                    readableTime(reference).c_str(), ratio, aim);
    }
    return 0;
}
