#pragma once

#include "curvepoint.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// The ring through which one deck's points travel from the input callback to the output callback.
/// One producer, one consumer. Full, it drops its oldest point. All operations are realtime-safe.
class CurvePointRing {
public:
    static constexpr std::size_t capacity = 32; ///< slots; one stays free, so 31 points at most
    static constexpr std::size_t mask = capacity - 1;
    static constexpr std::size_t payload = 56; ///< bytes of a point that travel: all that carry something

    /// Producer. Drops the oldest point when full. Returns the fill after the push.
    std::size_t push(const CurvePoint& point);
    /// Consumer. False when empty.
    bool pop(CurvePoint& point);
    /// Forgets all points and the highest fill. The producer's side.
    void reset();

    /// Points held; exact on the producer's side, elsewhere as the two words were seen. Thread-safe.
    std::size_t fill() const {
        const std::uint64_t read = m_read.load(std::memory_order_acquire);
        return std::min<std::uint64_t>(m_write.load(std::memory_order_acquire) - read, mask);
    }
    /// The highest fill since the last reset. Thread-safe.
    std::size_t maxFill() const { return m_maxFill.load(std::memory_order_relaxed); }

private:
    static constexpr std::size_t words = payload / sizeof(std::uint64_t);
    // The producer may overwrite the slot that the consumer is copying when it drops the oldest point; the
    // consumer sees by `read` that this happened and tries again. The words are atomic so that such a copy
    // is no data race.
    using Slot = std::array<std::atomic<std::uint64_t>, words>;
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

    alignas(64) std::array<Slot, capacity> m_slots{};
    alignas(64) std::atomic<std::uint64_t> m_write{0};
    alignas(64) std::atomic<std::uint64_t> m_read{0};
    alignas(64) std::atomic<std::uint64_t> m_maxFill{0};
};
