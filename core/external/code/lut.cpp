#include "lut.h"

#include <cassert>

int Lut::init(std::uint32_t nslots) {
    m_slots.assign(nslots, Slot{0U, 0U});
    m_table.assign(chains, noSlot);
    m_avail = 0;
    return 0;
}

void Lut::push(std::uint32_t code) {
    assert(m_avail < m_slots.size());
    const std::uint32_t slot = m_avail++;
    std::uint32_t& head = m_table[code & 0xFFFFU];
    m_slots[slot] = Slot{code, head};
    head = slot;
}
