#pragma once
// The five timecodes the program reads, and the arithmetic of their shift registers.
// Plain data and integers: no device, no widget, no settings.

#include "lut.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Bits of TimecodeDefinition::flags.
namespace TimecodeFlag {
inline constexpr int FlipDirection = 1; ///< the sense of the direction test is inverted
inline constexpr int LeftPrimary = 2;   ///< the left channel is the reference; without it the right one is
inline constexpr int ReadOnLow = 4; ///< a bit is read in the primary's low half-wave, else in its high one
} // namespace TimecodeFlag

/// One timecode: a pseudo-random bit sequence, one bit per carrier cycle, in which any run of `bits` bits
/// names one place on the record. Copies are cheap and share the table.
class TimecodeDefinition {
public:
    /// All numbers 0, an empty name, an empty table.
    TimecodeDefinition();
    TimecodeDefinition(std::string name, std::string description, bool fullDVS, int resolution, int flags,
                       int bits, std::uint32_t seed, std::uint32_t taps, std::uint32_t length,
                       std::uint32_t safe);

    const std::string& name() const { return m_name; }               ///< key; what the setting stores
    const std::string& description() const { return m_description; } ///< for people
    bool fullDVS() const { return m_fullDVS; }
    int resolution() const { return m_resolution; }   ///< carrier cycles a second of record at speed 1
    int flags() const { return m_flags; }             ///< TimecodeFlag bits
    int bits() const { return m_bits; }               ///< register width, at most 32
    std::uint32_t seed() const { return m_seed; }     ///< register at position 0
    std::uint32_t taps() const { return m_taps; }     ///< feedback mask
    std::uint32_t length() const { return m_length; } ///< number of tabulated positions
    std::uint32_t safe() const { return m_safe; }     ///< last position before the run-out
    bool lookup() const { return m_lookup; }          ///< the table has been filled
    void setLookup(bool built) { m_lookup = built; }
    Lut* lut() const { return m_lut.get(); } ///< the table, never null

private:
    std::string m_name;
    std::string m_description;
    bool m_fullDVS = false;
    int m_resolution = 0;
    int m_flags = 0;
    int m_bits = 0;
    std::uint32_t m_seed = 0;
    std::uint32_t m_taps = 0;
    std::uint32_t m_length = 0;
    std::uint32_t m_safe = 0;
    bool m_lookup = false;
    std::shared_ptr<Lut> m_lut;
};

using TimecodeDefinitionList = std::vector<TimecodeDefinition>;

/// XOR of all bits of `value`: 0 or 1.
std::uint32_t parity(std::uint32_t value);
/// The register value one position further on. Realtime-safe.
std::uint32_t fwd(std::uint32_t current, const TimecodeDefinition& def);
/// The register value one position back; undoes fwd. Realtime-safe.
std::uint32_t rev(std::uint32_t current, const TimecodeDefinition& def);

/// The five rows in the order of ModelTimecode::EnumTimecode, no table built yet.
TimecodeDefinitionList createTimecodeDefinitions();

/// Fills `def`'s table with all `length` positions from the seed on. Takes some ten milliseconds for the
/// longest record; never on an audio callback. Returns 0 on success or when the table stood already, -1
/// when the table can't be made. Asserts that no code occurs twice and that rev undoes fwd.
int buildLookup(TimecodeDefinition& def);

/// A copy of the row called `name` with its table built (the table stays with the row, for later calls and
/// copies), or an empty definition when there is no such row. Not realtime-safe.
TimecodeDefinition findTimecodeDefinition(TimecodeDefinitionList& list, std::string_view name);
