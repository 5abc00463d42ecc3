#include "definitions.h"

#include <cassert>
#include <utility>

TimecodeDefinition::TimecodeDefinition() : m_lut(std::make_shared<Lut>()) {}

TimecodeDefinition::TimecodeDefinition(std::string name, std::string description, bool fullDVS,
                                       int resolution, int flags, int bits, std::uint32_t seed,
                                       std::uint32_t taps, std::uint32_t length, std::uint32_t safe)
    : m_name(std::move(name))
    , m_description(std::move(description))
    , m_fullDVS(fullDVS)
    , m_resolution(resolution)
    , m_flags(flags)
    , m_bits(bits)
    , m_seed(seed)
    , m_taps(taps)
    , m_length(length)
    , m_safe(safe)
    , m_lut(std::make_shared<Lut>()) {}

std::uint32_t parity(std::uint32_t value) {
    // Folded to four bits, whose parities stand in one word: quicker than counting ones without an
    // instruction for it.
    value ^= value >> 16;
    value ^= value >> 8;
    value ^= value >> 4;
    return (0x6996U >> (value & 15U)) & 1U;
}

std::uint32_t fwd(std::uint32_t current, const TimecodeDefinition& def) {
    const std::uint32_t l = parity(current & (def.taps() | 1U));
    return (current >> 1) | (l << (def.bits() - 1));
}

std::uint32_t rev(std::uint32_t current, const TimecodeDefinition& def) {
    const std::uint32_t top = 1U << (def.bits() - 1);
    const std::uint32_t mask = top | (top - 1U);
    const std::uint32_t l = parity(current & ((def.taps() >> 1) | top));
    return ((current << 1) & mask) | l;
}

TimecodeDefinitionList createTimecodeDefinitions() {
    using namespace TimecodeFlag;
    constexpr int traktor = FlipDirection | LeftPrimary | ReadOnLow;
    TimecodeDefinitionList list;
    list.reserve(5);
    list.emplace_back("generic_V2", "Gramo Wroks", false, 1000, 0, 20, 0x59017U, 0x361E4U, 712000U, 707000U);
    list.emplace_back("serato_sideA_FullDVS", "Serato 2nd Edition side A", true, 1000, 0, 20, 0x59017U,
                      0x361E4U, 712000U, 707000U);
    list.emplace_back("serato_sideB_FullDVS", "Serato 2nd Edition side B", true, 1000, 0, 20, 0x8F3C6U,
                      0x4F0D8U, 922000U, 917000U);
    list.emplace_back("traktor_sideA", "Traktor Scratch side A", false, 2000, traktor, 23, 0x134503U,
                      0x41040U, 1500000U, 1480000U);
    list.emplace_back("traktor_sideB", "Traktor Scratch side B", false, 2000, traktor, 23, 0x32066CU,
                      0x41040U, 2110000U, 2090000U);
    return list;
}

int buildLookup(TimecodeDefinition& def) {
    if (def.lookup()) {
        return 0;
    }
    Lut& lut = *def.lut();
    if (lut.init(def.length()) == -1) {
        return -1;
    }
    // A lookup of each new code would walk a growing chain; a bit for each possible register value answers
    // the same question, whether the code is in the table already, in constant time.
    std::vector<std::uint64_t> seen((std::size_t{1} << def.bits()) / 64U + 1U, 0U);
    std::uint32_t current = def.seed();
    for (std::uint32_t i = 0; i < def.length(); ++i) {
        std::uint64_t& word = seen[current >> 6];
        const std::uint64_t bit = std::uint64_t{1} << (current & 63U);
        const bool pushed = (word & bit) != 0U;
        assert((!pushed) && "Lut::lookup(def->lut(), current) == (unsigned)-1");
        word |= bit;
        lut.push(current);
        const std::uint32_t next = fwd(current, def);
        assert((rev(next, def) == current) && "rev(next, def) == current");
        current = next;
    }
    def.setLookup(true);
    return 0;
}

TimecodeDefinition findTimecodeDefinition(TimecodeDefinitionList& list, std::string_view name) {
    for (TimecodeDefinition& def : list) {
        if (def.name() == name) {
            return buildLookup(def) == -1 ? TimecodeDefinition() : def;
        }
    }
    return {};
}
