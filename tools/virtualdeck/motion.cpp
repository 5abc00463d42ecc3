#include "motion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

constexpr double pi = std::numbers::pi;
constexpr int faderOpen = 63;       // the middle: both decks are heard
constexpr int faderClosed = 127;    // deck A is cut
constexpr double walkSpacing = 0.3; // seconds between two places of a walk
constexpr double faderRamp = 0.015; // beats that a cut takes, about 10 ms at 84 bpm

constexpr std::array<std::pair<std::string_view, MotionPattern>, 8> patterns{{
    {"play", MotionPattern::Play},
    {"baby", MotionPattern::Baby},
    {"scribble", MotionPattern::Scribble},
    {"chirp", MotionPattern::Chirp},
    {"transform", MotionPattern::Transform},
    {"flare", MotionPattern::Flare},
    {"stop", MotionPattern::Stop},
    {"walk", MotionPattern::Walk},
}};

double fraction(double x) {
    return x - std::floor(x);
}

// How far the fader is shut at `beat` when it shuts at `from` and opens at `to`: 0 open, 1 shut.
double shut(double beat, double from, double to) {
    return std::clamp(std::min(beat - from, to - beat) / faderRamp + 0.5, 0.0, 1.0);
}

int faderValue(double closedness) {
    return faderOpen + static_cast<int>(std::lround((faderClosed - faderOpen) * closedness));
}

// Strokes between 0 and `reach` beats of record, `pairs` times forward and back a beat: the hand is quickest
// in the middle of a stroke and still at its turns.
MotionState strokes(double beats, double beat, double reach, double pairs) {
    const double phase = 2.0 * pi * fraction(beats * pairs);
    return {reach * beat * (1.0 - std::cos(phase)) / 2.0, reach * pairs * pi * std::sin(phase), faderOpen};
}

MotionState chirp(double beats, double beat) {
    MotionState s = strokes(beats, beat, 0.4, 1.0);
    s.crossfader = faderValue(shut(fraction(beats), 0.3, 0.7));
    return s;
}

MotionState transform(double beats, double beat) {
    MotionState s = strokes(beats, beat, 1.4, 0.25);
    s.crossfader = faderValue(1.0 - shut(fraction(beats * 4.0) / 4.0, 0.06, 0.19));
    return s;
}

MotionState flare(double beats, double beat) {
    MotionState s = strokes(beats, beat, 0.4, 1.0);
    s.crossfader = faderValue(shut(fraction(beats * 2.0) / 2.0, 0.22, 0.28));
    return s;
}

// Eight beats: play for four, brake over one, stand for two, start over one. A change of speed is a half
// cosine, under which the record moves half a beat.
MotionState stop(double beats, double beat) {
    const double round = std::floor(beats / 8.0);
    const double b = beats - round * 8.0;
    double moved = 0.0;
    double speed = 0.0;
    if (b < 4.0) {
        moved = b;
        speed = 1.0;
    } else if (b < 5.0) {
        const double u = b - 4.0;
        moved = 4.0 + u / 2.0 + std::sin(pi * u) / (2.0 * pi);
        speed = (1.0 + std::cos(pi * u)) / 2.0;
    } else if (b < 7.0) {
        moved = 4.5;
    } else {
        const double u = b - 7.0;
        moved = 4.5 + u / 2.0 - std::sin(pi * u) / (2.0 * pi);
        speed = (1.0 - std::cos(pi * u)) / 2.0;
    }
    return {(round * 5.0 + moved) * beat, speed, faderOpen};
}

// A place that the walking hand passes. All places lie within 0.3 seconds of the start, so that knowing one
// doesn't need the ones before it.
struct WalkKnot {
    double time;     // seconds
    double position; // seconds of record
    double speed;
    double pause; // seconds of standstill from `time` on
    bool cut;     // the fader is shut from here to the next knot
};

WalkKnot walkKnot(std::uint64_t seed, double number) {
    const auto k = static_cast<std::uint64_t>(number) * 8U;
    WalkKnot knot{};
    knot.time = walkSpacing * (number + 0.2 * scatterUnit(seed, k) - 0.1);
    knot.position = 0.6 * scatterUnit(seed, k + 1U) - 0.3;
    const double mood = scatterUnit(seed, k + 2U);
    if (mood < 0.2) {
        knot.pause = 0.06 * scatterUnit(seed, k + 3U);
    } else if (mood < 0.6) {
        knot.speed = 4.0 * scatterUnit(seed, k + 3U) - 2.0;
    }
    knot.cut = scatterUnit(seed, k + 4U) < 0.25;
    return knot;
}

MotionState walk(double t, std::uint64_t seed, double beat) {
    // Before the first knot the hand rests on it.
    double number = std::floor(t / walkSpacing) + 1.0;
    WalkKnot from = walkKnot(seed, number);
    while (from.time > t && number > 0.0) {
        number -= 1.0;
        from = walkKnot(seed, number);
    }
    if (number == 0.0) {
        from.speed = 0.0;
    }
    const WalkKnot to = walkKnot(seed, number + 1.0);
    const double cutFrom = from.cut ? shut((t - from.time) / beat, 0.0, (to.time - from.time) / beat) : 0.0;
    MotionState s{from.position, 0.0, faderValue(cutFrom)};
    const double length = to.time - from.time - from.pause;
    const double u = (t - from.time - from.pause) / length;
    if (u > 0.0) { // cubic through both places with both speeds
        const double u2 = u * u;
        const double d = to.position - from.position;
        s.position += (3.0 * u2 - 2.0 * u2 * u) * d +
                      ((u2 * u - 2.0 * u2 + u) * from.speed + (u2 * u - u2) * to.speed) * length;
        s.speed = 6.0 * (u - u2) * d / length + (3.0 * u2 - 4.0 * u + 1.0) * from.speed +
                  (3.0 * u2 - 2.0 * u) * to.speed;
    }
    return s;
}

MotionState patternAt(MotionPattern pattern, double t, double beat, std::uint64_t seed) {
    const double beats = t / beat;
    switch (pattern) {
    case MotionPattern::Play:
        break;
    case MotionPattern::Baby:
        return strokes(beats, beat, 0.4, 1.0);
    case MotionPattern::Scribble:
        return strokes(beats, beat, 0.06, 6.0);
    case MotionPattern::Chirp:
        return chirp(beats, beat);
    case MotionPattern::Transform:
        return transform(beats, beat);
    case MotionPattern::Flare:
        return flare(beats, beat);
    case MotionPattern::Stop:
        return stop(beats, beat);
    case MotionPattern::Walk:
        return walk(t, seed, beat);
    }
    return {t, 1.0, faderOpen};
}

} // namespace

Motion::Motion() : Motion(MotionPattern::Play) {}

Motion::Motion(MotionPattern pattern, double bpm, double start, std::uint64_t seed)
    : m_function([pattern, beat = 60.0 / bpm, start, seed](double t) {
        MotionState s = patternAt(pattern, t, beat, seed);
        s.position += start;
        return s;
    }) {}

Motion Motion::constant(double speed, double start) {
    return custom([speed, start](double t) { return MotionState{start + speed * t, speed, faderOpen}; });
}

Motion Motion::custom(std::function<MotionState(double)> function) {
    Motion motion;
    motion.m_function = std::move(function);
    return motion;
}

Motion Motion::withFader(const Motion& hands, const Motion& fader) {
    return custom([hands, fader](double t) {
        MotionState s = hands.at(t);
        s.crossfader = fader.at(t).crossfader;
        return s;
    });
}

std::optional<MotionPattern> Motion::patternFromName(std::string_view name) {
    for (const auto& [text, pattern] : patterns) {
        if (text == name) {
            return pattern;
        }
    }
    return std::nullopt;
}

std::vector<std::string> Motion::patternNames() {
    std::vector<std::string> names;
    for (const auto& entry : patterns) {
        names.emplace_back(entry.first);
    }
    return names;
}
