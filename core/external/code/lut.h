#pragma once
// From a register value back to a position on the record.

#include <QObject>

#include <cstdint>
#include <vector>

/// A hash table whose slot index is the position. 65536 chains by the low 16 bits of the code, so a chain
/// holds 11 to 33 codes on the records we know.
class Lut : public QObject {
    Q_OBJECT
public:
    static constexpr std::uint32_t noSlot = 0xFFFFFFFFU;
    static constexpr std::size_t chains = 65536;

    Lut() = default;

    /// Room for `nslots` positions; everything else forgotten. Returns 0; -1 would mean failure.
    int init(std::uint32_t nslots);
    /// Gives the next free position to `code`. At most `nslots` times after init.
    void push(std::uint32_t code);
    /// The position of `code`, or noSlot. Thread-safe once filled. Realtime-safe.
    std::uint32_t lookup(std::uint32_t code) const {
        if (m_table.empty()) {
            return noSlot;
        }
        std::uint32_t slot = m_table[code & 0xFFFFU];
        while (slot != noSlot && m_slots[slot].timecode != code) {
            slot = m_slots[slot].next;
        }
        return slot;
    }
    /// Whether `position` is that of `code`: what lookup would find, for a caller with a guess. Thread-safe
    /// once filled. Realtime-safe.
    bool holds(std::uint32_t position, std::uint32_t code) const {
        return position < m_avail && m_slots[position].timecode == code;
    }
    /// Positions given so far.
    std::uint32_t avail() const { return m_avail; }

private:
    struct Slot {
        std::uint32_t timecode;
        std::uint32_t next;
    };
    std::vector<Slot> m_slots;
    std::vector<std::uint32_t> m_table;
    std::uint32_t m_avail = 0;
};
