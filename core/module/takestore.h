#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

/// A take in memory: a list of 16-bit values that a callback appends to. It grows by blocks of fixed size
/// that the GUI thread makes and touches ahead of need, so an append is a store and a counter, however long
/// the take is. One producer.
class TakeStore {
public:
    static constexpr std::size_t blockShift = 20;
    static constexpr std::size_t blockSamples = std::size_t{1} << blockShift; ///< 2 MB
    static constexpr std::size_t maxBlocks = 16384; ///< 49 hours of stereo at 48000 Hz
    static constexpr std::size_t blocksAhead = 8;   ///< 87 s of stereo at 48000 Hz

    /// Makes the first blocks. GUI thread.
    TakeStore();
    ~TakeStore();
    TakeStore(const TakeStore&) = delete;
    TakeStore& operator=(const TakeStore&) = delete;

    /// Makes blocks so that `blocksAhead` lie before the producer. GUI thread, a few times a second.
    void prepare();
    /// Empties the take; the memory stays. Not while the producer runs.
    void clear();

    /// False, and counted, if there is no room. Realtime-safe; the producer.
    bool append(std::int16_t sample) {
        const std::size_t at = m_size.load(std::memory_order_relaxed);
        const std::size_t block = at >> blockShift;
        std::int16_t* base = block < maxBlocks ? m_blocks[block].load(std::memory_order_acquire) : nullptr;
        if (base == nullptr) {
            m_overflows.fetch_add(1, std::memory_order_relaxed);
            return false;
        }
        base[at & (blockSamples - 1)] = sample;
        m_size.store(at + 1, std::memory_order_release);
        return true;
    }

    /// Values so far. Thread-safe.
    std::size_t size() const { return m_size.load(std::memory_order_acquire); }
    /// Values that had no room. Thread-safe.
    std::uint64_t overflows() const { return m_overflows.load(std::memory_order_relaxed); }
    /// Hands the values over in order, in as few pieces as there are blocks; stops when `take` returns false.
    /// Returns whether it reached the end.
    bool forEachPiece(const std::function<bool(std::span<const std::int16_t>)>& take) const;

private:
    std::array<std::atomic<std::int16_t*>, maxBlocks> m_blocks{};
    std::size_t m_made = 0; ///< GUI thread
    alignas(64) std::atomic<std::size_t> m_size{0};
    std::atomic<std::uint64_t> m_overflows{0};
};
