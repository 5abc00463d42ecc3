#include "gridsteps.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace {

constexpr std::array beatFactors{1.0, 4.0, 10.0, 60.0, 600.0, 3600.0};
constexpr double fewestLines = 80.0; // upright ones are closer than this share of the range
constexpr double fewestLevels = 20.0;
constexpr int beatsPerBar = 4;

struct Unit {
    double size;
    QLatin1Char letter;
};
constexpr std::array units{Unit{1e12, QLatin1Char('t')}, Unit{1e9, QLatin1Char('g')},
                           Unit{1e6, QLatin1Char('m')}, Unit{1e3, QLatin1Char('k')}};

// Of the range between the whole numbers that the two are truncated to.
double wholeSpan(double from, double to) {
    return std::abs(std::trunc(to) - std::trunc(from));
}

QString plain(double value) {
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}

} // namespace

double xGridStep(double xMin, double xMax, double beatLength) {
    const double threshold = std::trunc(wholeSpan(xMin, xMax) / fewestLines);
    for (const double factor : beatFactors) {
        if (factor * beatLength > threshold) {
            return factor * beatLength;
        }
    }
    return beatFactors.back() * beatLength;
}

double yGridStep(double yMin, double yMax, std::span<const double> steps) {
    if (steps.empty()) {
        return 1.0;
    }
    const double threshold = wholeSpan(yMin, yMax) / fewestLevels;
    const auto found =
        std::find_if(steps.begin(), steps.end(), [&](double step) { return step > threshold; });
    return found == steps.end() ? steps.back() : *found;
}

std::vector<double> gridTicks(double step, double from, double to) {
    std::vector<double> ticks;
    if (!(step >= 1.0) || !std::isfinite(step) || !(from <= to)) {
        return ticks;
    }
    const double first = std::ceil(from / step);
    const double count = std::floor(to / step) - first + 1.0;
    if (!(count <= maxGridTicks)) {
        return ticks;
    }
    // A quotient may have been rounded past a whole number: the neighbours are looked at as well.
    for (int i = -1; i <= static_cast<int>(count); ++i) {
        const double tick = (first + i) * step;
        if (tick >= from && tick <= to) {
            ticks.push_back(tick);
        }
    }
    return ticks;
}

double gridBeat(double frame, double firstMetronome, double sampleRate, double bpm) {
    return (frame - std::trunc(firstMetronome)) / (60.0 * sampleRate / bpm);
}

QString beatText(double beat) {
    const QString text = QString::number(beat, 'f', 0);
    return text == QStringLiteral("-0") ? QStringLiteral("0") : text;
}

bool isHeavyBeat(const QString& beatText) {
    bool countable = false;
    const int beat = beatText.toInt(&countable);
    return !countable || beat % beatsPerBar == 0;
}

QString shortNumber(double value) {
    if (value == 0.0) {
        return QStringLiteral("0");
    }
    for (const Unit& unit : units) {
        if (std::abs(value) >= unit.size && std::fmod(value, unit.size) == 0.0) {
            return plain(value / unit.size) + unit.letter;
        }
    }
    return plain(value);
}
