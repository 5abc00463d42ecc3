#pragma once
// What a hand does to a record: where the needle is, how fast the groove runs and where the crossfader
// stands, each as a function of time alone.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One moment of a motion.
struct MotionState {
    double position = 0.0; ///< seconds of record at nominal speed, counted from the record's position 0
    double speed = 0.0;    ///< 1.0 nominal, the sign gives the direction; the derivative of `position`
    int crossfader = 63;   ///< 0 left (deck A alone) to 127 right (deck B alone), 63 the middle
};

/// The scratches that the virtual deck can play. One beat is 60 / bpm seconds.
enum class MotionPattern {
    Play,      ///< speed 1, fader in the middle
    Baby,      ///< one stroke forward and one back a beat, fader in the middle
    Scribble,  ///< six small pairs of strokes a beat, fader in the middle
    Chirp,     ///< baby strokes; the fader closes before the forward turn and opens after it
    Transform, ///< a slow drag over two beats and back; the fader opens four times a beat
    Flare,     ///< baby strokes; the fader clicks shut for a moment in the middle of each
    Stop,      ///< four beats of play, one of braking, two of standstill, one of starting
    Walk       ///< strokes of random reach, speed and length with pauses; cuts at random
};

/// A motion is a value: copies are independent. `at` is a pure function of time (t >= 0, seconds),
/// allocation-free, and may be called from any thread and in any order.
class Motion {
public:
    static constexpr double defaultStart = 30.0; ///< seconds of record
    static constexpr double defaultBpm = 84.0;

    /// Speed 1 from `defaultStart` on.
    Motion();
    /// `seed` matters to Walk alone.
    explicit Motion(MotionPattern pattern, double bpm = defaultBpm, double start = defaultStart,
                    std::uint64_t seed = 1);
    /// An even speed, negative or 0 too, with the fader in the middle.
    static Motion constant(double speed, double start = defaultStart);
    /// Any other motion. `function` has to be pure, and its speed the derivative of its position.
    static Motion custom(std::function<MotionState(double)> function);

    /// The hands of one motion and the crossfader of another.
    static Motion withFader(const Motion& hands, const Motion& fader);

    MotionState at(double t) const { return m_function(t); }

    /// "play", "baby" and so on.
    static std::optional<MotionPattern> patternFromName(std::string_view name);
    static std::vector<std::string> patternNames();

private:
    std::function<MotionState(double)> m_function;
};

/// An even spread of 64 bits for (`seed`, `index`): the source of everything random on the record.
constexpr std::uint64_t scatter(std::uint64_t seed, std::uint64_t index) {
    std::uint64_t z = seed * 0xD1342543DE82EF95U + (index + 1U) * 0x9E3779B97F4A7C15U;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
}

/// The same as a number from 0.0 up to but not including 1.0.
constexpr double scatterUnit(std::uint64_t seed, std::uint64_t index) {
    return static_cast<double>(scatter(seed, index) >> 11) * 0x1.0p-53;
}
