#include "deckoptions.h"
#include "jackdeck.h"
#include "wavefilewriter.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

constexpr int usageError = 2;
volatile std::sig_atomic_t stopAsked = 0;

// From here on SIGINT and SIGTERM ask for a clean end. Before, they end the process at once: joining a server
// that is there but doesn't answer may take for ever.
void heedSignals() {
    const auto askToStop = [](int) { stopAsked = 1; };
    std::signal(SIGINT, askToStop);
    std::signal(SIGTERM, askToStop);
}

int complain(const QString& message, int code) {
    std::fprintf(stderr, "gramoscope-virtualdeck: %s\n", qPrintable(message));
    return code;
}

std::uint64_t frameCount(double seconds, double rate) {
    return static_cast<std::uint64_t>(std::llround(seconds * rate));
}

int writeWav(const DeckOptions& options) {
    const SyntheticRecord record = options.record(options.wavDeck, options.wavRate);
    const std::uint64_t total = frameCount(*options.seconds, options.wavRate);
    WaveFileWriter file;
    heedSignals();
    bool good = file.open(QFile::encodeName(*options.wavFile).toStdString(), options.wavRate);
    constexpr std::uint64_t block = 4096;
    for (std::uint64_t i = 0; good && stopAsked == 0 && i < total; i += block) {
        const auto count = static_cast<std::size_t>(std::min(block, total - i));
        good = file.write(record.render(i, count).data(), count);
    }
    if (!good || !file.close()) {
        return complain(
            *options.wavFile + QStringLiteral(": ") + QString::fromLocal8Bit(file.error().c_str()), 1);
    }
    return 0;
}

int playLive(const DeckOptions& options) {
    JackDeck deck;
    std::optional<std::string> server;
    if (options.server) {
        server = options.server->toStdString();
    }
    if (!deck.open(server)) {
        return complain(QString::fromStdString(deck.error()), 1);
    }
    heedSignals();
    const double rate = deck.sampleRate();
    const std::uint64_t limit =
        options.seconds ? std::max<std::uint64_t>(1, frameCount(*options.seconds, rate)) : 0;
    if (!deck.start(options.record(0, rate), options.record(1, rate), limit)) {
        return complain(QString::fromStdString(deck.error()), 1);
    }
    // Whoever reads this may connect to the ports.
    std::printf("JACK client \"%s\" at %.0f Hz\n", deck.name().c_str(), rate);
    std::fflush(stdout);
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::seconds patience{5};
    std::uint64_t seen = 0;
    Clock::time_point moved = Clock::now();
    bool stuck = false;
    while (stopAsked == 0 && !deck.finished() && !deck.lost() && !stuck) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (deck.frames() != seen) {
            seen = deck.frames();
            moved = Clock::now();
        }
        stuck = Clock::now() - moved > patience;
    }
    std::printf("frames %llu, xruns %llu\n", static_cast<unsigned long long>(deck.frames()),
                static_cast<unsigned long long>(deck.xruns()));
    std::fflush(stdout);
    if (deck.lost()) {
        return complain(QStringLiteral("the JACK server is gone"), 1);
    }
    if (stuck) {
        // Leaving would wait for the silent server.
        complain(QStringLiteral("the JACK server has called for no frames for 5 seconds"), 1);
        std::_Exit(1);
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("gramoscope-virtualdeck"));
    QCoreApplication::setApplicationVersion(QStringLiteral("2.6.5-2412"));
    DeckOptionsParser parser;
    const std::optional<DeckOptions> options = parser.parse(QCoreApplication::arguments());
    if (!options) {
        return complain(parser.error(), usageError);
    }
    return options->wavFile ? writeWav(*options) : playLive(*options);
}
