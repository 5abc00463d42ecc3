#include "curvepointring.h"

std::size_t CurvePointRing::push(const CurvePoint& point) {
    const std::uint64_t write = m_write.load(std::memory_order_relaxed);
    std::uint64_t read = m_read.load(std::memory_order_acquire);
    if (write - read >= mask) {
        // Full: the oldest point goes. If this fails, the consumer has just taken it, and there is room.
        m_read.compare_exchange_strong(read, read + 1, std::memory_order_acq_rel);
    }
    std::uint64_t raw[words];
    std::memcpy(raw, &point, payload);
    Slot& slot = m_slots[write & mask];
    for (std::size_t i = 0; i < words; ++i) {
        // Release: who reads this word sees the drop above as well.
        slot[i].store(raw[i], std::memory_order_release);
    }
    m_write.store(write + 1, std::memory_order_release);

    const std::size_t held = fill();
    std::uint64_t highest = m_maxFill.load(std::memory_order_relaxed);
    while (highest < held && !m_maxFill.compare_exchange_weak(highest, held, std::memory_order_relaxed)) {
    }
    return held;
}

bool CurvePointRing::pop(CurvePoint& point) {
    std::uint64_t read = m_read.load(std::memory_order_acquire);
    for (;;) {
        if (read == m_write.load(std::memory_order_acquire)) {
            return false;
        }
        std::uint64_t raw[words];
        const Slot& slot = m_slots[read & mask];
        for (std::size_t i = 0; i < words; ++i) {
            raw[i] = slot[i].load(std::memory_order_acquire);
        }
        // The copy counts only if the producer hasn't dropped this point meanwhile: a slot is written again
        // no earlier than after its drop. The counters never wrap in practice, so no old value comes back.
        if (m_read.compare_exchange_strong(read, read + 1, std::memory_order_acq_rel)) {
            point = CurvePoint();
            std::memcpy(static_cast<void*>(&point), raw, payload);
            return true;
        }
    }
}

void CurvePointRing::reset() {
    m_read.store(m_write.load(std::memory_order_relaxed), std::memory_order_release);
    m_maxFill.store(0, std::memory_order_relaxed);
}
