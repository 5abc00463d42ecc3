#include "syntheticrecord.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

constexpr double twoPi = 2.0 * std::numbers::pi;
constexpr double fullScale = 32768.0;
constexpr double humHertz = 50.0;
constexpr double transition = 1.0 / 3.0; // cycles over which the amplitude changes
constexpr double dustSlotSeconds = 0.01;
constexpr double clickSeconds = 0.0002; // time constant of a click's decay
constexpr double dropOutSeconds = 0.003;
constexpr double dropOutLevel = 0.1;

std::int16_t toSample(double value) {
    return static_cast<std::int16_t>(std::clamp(std::lrint(value * fullScale), -32768L, 32767L));
}

} // namespace

SyntheticRecord::SyntheticRecord(const TimecodeDefinition& def, double sampleRate, Motion motion,
                                 RecordOptions options)
    : m_sampleRate(sampleRate)
    , m_motion(std::move(motion))
    , m_options(options)
    , m_resolution(def.resolution())
    // The read half-wave of the primary has its peak at the middle of the cycle: above zero, or below it
    // under ReadOnLow. Forward, the secondary follows the primary by a quarter cycle; under FlipDirection
    // it runs ahead.
    , m_primarySign((def.flags() & TimecodeFlag::ReadOnLow) != 0 ? 1.0 : -1.0)
    , m_secondarySign((def.flags() & TimecodeFlag::FlipDirection) != 0 ? -m_primarySign : m_primarySign)
    , m_leftPrimary((def.flags() & TimecodeFlag::LeftPrimary) != 0)
    , m_skew(options.skewDegrees / 360.0 * twoPi) {
    m_dustSlot = static_cast<std::uint64_t>(std::max(1.0, sampleRate * dustSlotSeconds));
    m_dustChance = options.dustPerSecond * static_cast<double>(m_dustSlot) / sampleRate;

    auto groove = std::make_shared<Groove>();
    groove->lead = std::int64_t{leadSeconds} * def.resolution();
    std::uint32_t code = def.seed();
    for (std::int64_t i = 0; i < groove->lead; ++i) {
        code = rev(code, def);
    }
    const std::int64_t cycles = std::int64_t{def.length()} + 2 * groove->lead;
    groove->bits.reserve(static_cast<std::size_t>(cycles));
    for (std::int64_t i = 0; i < cycles; ++i) {
        groove->bits.push_back(((code >> (def.bits() - 1)) & 1U) != 0U);
        code = fwd(code, def);
    }
    m_groove = std::move(groove);
}

std::int64_t SyntheticRecord::onGroove(std::int64_t position) const {
    const auto cycles = static_cast<std::int64_t>(m_groove->bits.size());
    std::int64_t index = position + m_groove->lead;
    if (index < 0 || index >= cycles) {
        index %= cycles;
        index += index < 0 ? cycles : 0;
    }
    return index - m_groove->lead;
}

bool SyntheticRecord::bit(std::int64_t position) const {
    return m_groove->bits[static_cast<std::size_t>(onGroove(position) + m_groove->lead)];
}

double SyntheticRecord::levelAtSpeed(double speed) {
    return std::numbers::sqrt2 * std::abs(speed) / std::sqrt(1.0 + speed * speed);
}

FrameTruth SyntheticRecord::truthOf(const MotionState& state) const {
    const double cycles = state.position * m_resolution;
    const double whole = std::floor(cycles);
    const auto place = static_cast<double>(onGroove(static_cast<std::int64_t>(whole)));
    return {state.speed, place + (cycles - whole), state.crossfader};
}

FrameTruth SyntheticRecord::truth(std::uint64_t i) const {
    return truthOf(m_motion.at(static_cast<double>(i) / m_sampleRate));
}

double SyntheticRecord::amplitude(double cycles) const {
    const double whole = std::floor(cycles);
    const auto position = static_cast<std::int64_t>(whole);
    const double part = cycles - whole;
    const auto height = [this](std::int64_t p) { return bit(p) ? 1.0 : m_options.zeroBitLevel; };
    const double own = height(position);
    const double edge = std::min(part, 1.0 - part) / transition;
    if (edge >= 0.5) {
        return own;
    }
    // A raised cosine between the two neighbours, half-way where the cycles meet.
    const double other = height(part < 0.5 ? position - 1 : position + 1);
    return own + (other - own) * (1.0 - std::sin(std::numbers::pi * edge)) / 2.0;
}

// Each slot of frames holds at most one speck; a speck may reach into the next slot.
void SyntheticRecord::addDust(std::uint64_t i, double& left, double& right) const {
    const std::uint64_t slot = i / m_dustSlot;
    for (std::uint64_t s = slot > 0 ? slot - 1 : 0; s <= slot; ++s) {
        const std::uint64_t key = s * 4U;
        const std::uint64_t seed = ~m_options.seed;
        if (scatterUnit(seed, key) >= m_dustChance) {
            continue;
        }
        const auto offset =
            static_cast<std::uint64_t>(scatterUnit(seed, key + 1U) * static_cast<double>(m_dustSlot));
        const std::uint64_t begin = s * m_dustSlot + offset;
        if (i < begin) {
            continue;
        }
        const double age = static_cast<double>(i - begin) / m_sampleRate;
        const double kind = scatterUnit(seed, key + 2U);
        if (kind >= 0.5) {
            const double click = (kind < 0.75 ? 0.8 : -0.8) * std::exp(-age / clickSeconds);
            left += click;
            right += click * scatterUnit(seed, key + 3U);
        } else if (age < dropOutSeconds) {
            left *= dropOutLevel;
            right *= dropOutLevel;
        }
    }
}

StereoFrame SyntheticRecord::frame(std::uint64_t i) const {
    const double time = static_cast<double>(i) / m_sampleRate;
    const MotionState state = m_motion.at(time);
    const double cycles = state.position * m_resolution;
    const double phase = twoPi * (cycles - std::floor(cycles));
    const double height = m_options.level * levelAtSpeed(state.speed) * amplitude(cycles);
    const double primary = height * m_primarySign * std::cos(phase);
    const double secondary = height * m_secondarySign * std::sin(phase + m_skew);
    double left = m_leftPrimary ? primary : secondary;
    double right = m_leftPrimary ? secondary : primary;
    if (m_dustChance > 0.0) {
        addDust(i, left, right);
    }
    double common = m_options.dcOffset / fullScale;
    if (m_options.humLevel != 0.0) {
        common += m_options.humLevel * std::sin(twoPi * humHertz * time);
    }
    left += common;
    right += common;
    if (m_options.noisePercent != 0.0) {
        const double noise = m_options.noisePercent / 100.0;
        left += noise * (2.0 * scatterUnit(m_options.seed, 2U * i) - 1.0);
        right += noise * (2.0 * scatterUnit(m_options.seed, 2U * i + 1U) - 1.0);
    }
    if (m_options.swapChannels) {
        std::swap(left, right);
    }
    return {toSample(left * m_options.gain), toSample(right * m_options.gain)};
}

void SyntheticRecord::render(std::uint64_t first, std::size_t count, std::int16_t* interleaved) const {
    for (std::size_t i = 0; i < count; ++i) {
        const StereoFrame f = frame(first + i);
        interleaved[2 * i] = f.left;
        interleaved[2 * i + 1] = f.right;
    }
}

void SyntheticRecord::render(std::uint64_t first, std::size_t count, float* left, float* right) const {
    for (std::size_t i = 0; i < count; ++i) {
        const StereoFrame f = frame(first + i);
        left[i] = static_cast<float>(f.left) / 32768.0F;
        right[i] = static_cast<float>(f.right) / 32768.0F;
    }
}

std::vector<std::int16_t> SyntheticRecord::render(std::uint64_t first, std::size_t count) const {
    std::vector<std::int16_t> frames(2 * count);
    render(first, count, frames.data());
    return frames;
}
