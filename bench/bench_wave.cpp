// readWave on ten minutes of stereo, against reading the same bytes into fresh memory.

#include "ratio.h"

#include "module/wavedata.h"
#include "motion.h"
#include "wavefilewriter.h"

#include <QTemporaryDir>

#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::uint32_t rate = 48000;
constexpr std::size_t seconds = 600;

/// Ten minutes of noise, written once and so in the system's cache.
const std::string& wavePath() {
    static const QTemporaryDir folder;
    static const std::string path = [] {
        const std::string name = folder.filePath(QStringLiteral("ten.wav")).toStdString();
        WaveFileWriter writer;
        bool written = writer.open(name, rate);
        std::vector<std::int16_t> second(rate * 2);
        for (std::size_t s = 0; s < seconds; ++s) {
            for (std::size_t i = 0; i < second.size(); ++i) {
                second[i] = static_cast<std::int16_t>(scatter(s, i));
            }
            written = written && writer.write(second.data(), rate);
        }
        return written && writer.close() ? name : std::string();
    }();
    return path;
}

void readTenMinutes(benchmark::State& state) {
    const QString path = QString::fromStdString(wavePath());
    for (auto _ : state) {
        const std::unique_ptr<WaveData> wave = readWave(path);
        if (wave->length() != rate * seconds) {
            state.SkipWithError("the file couldn't be read");
            break;
        }
        benchmark::DoNotOptimize(wave->maximum());
    }
}

void plainRead(benchmark::State& state) {
    for (auto _ : state) {
        const int file = open(wavePath().c_str(), O_RDONLY);
        struct stat about {};
        fstat(file, &about);
        const auto size = static_cast<std::size_t>(about.st_size);
        const auto bytes = std::make_unique_for_overwrite<char[]>(size);
        std::size_t have = 0;
        for (ssize_t got = 1; got > 0 && have < size; have += static_cast<std::size_t>(got)) {
            got = read(file, bytes.get() + have, size - have);
        }
        close(file);
        if (have != size || size == 0) {
            state.SkipWithError("the file couldn't be read");
            break;
        }
        benchmark::DoNotOptimize(bytes.get());
        benchmark::ClobberMemory();
    }
}

BENCHMARK(readTenMinutes)->Unit(benchmark::kMillisecond);
BENCHMARK(plainRead)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char* argv[]) {
    return measureRatios(argc, argv,
                         {{"readWave, ten minutes of stereo", "readTenMinutes", "plainRead", 1.5}});
}
