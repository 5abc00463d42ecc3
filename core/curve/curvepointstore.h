#pragma once

#include "curvepoint.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

/// The points of one curve. Points keep their address for as long as they are in the store: it grows by
/// blocks that the GUI thread makes ahead of need, and what the store publishes is one word that names the
/// first and the last point. One producer (the callback that feeds the deck, or the GUI thread while none
/// does), any number of readers on the GUI thread and on those that it waits for.
///
/// While a stream feeds the deck (setLive), an emptying is carried out by the producer, and the new points
/// land behind the old ones in memory: a reader that still walks the old ones reads nothing half-written.
class CurvePointStore {
public:
    static constexpr std::size_t firstBlock = 5'000'000; ///< points; 320 MB of address space
    static constexpr std::size_t blockShift = 20;
    static constexpr std::size_t blockPoints = std::size_t{1} << blockShift; ///< points of a further block
    static constexpr std::size_t maxBlocks = 1024;

    /// The points at one moment, as a reader took them. Valid until the next clear on the GUI thread.
    class View {
    public:
        View() = default;
        std::size_t size() const { return m_end - m_begin; }
        bool empty() const { return m_begin == m_end; }
        const CurvePoint& operator[](std::size_t i) const { return m_store->at(m_begin + i); }
        const CurvePoint& front() const { return (*this)[0]; }
        const CurvePoint& back() const { return (*this)[size() - 1]; }

    private:
        friend class CurvePointStore;
        View(const CurvePointStore* store, std::size_t begin, std::size_t end)
            : m_store(store), m_begin(begin), m_end(end) {}
        const CurvePointStore* m_store = nullptr;
        std::size_t m_begin = 0;
        std::size_t m_end = 0;
    };

    CurvePointStore() = default;
    ~CurvePointStore();
    CurvePointStore(const CurvePointStore&) = delete;
    CurvePointStore& operator=(const CurvePointStore&) = delete;

    // ---- GUI thread ----
    /// Makes the first block, once. Called by whoever builds a decoder on the store.
    void reserve();
    /// Makes and touches memory ahead of the producer. To be called a few times a second while a stream runs.
    void prepare();
    /// Empties the curve; the memory stays. While live, readers see it empty at once and the producer lets
    /// go of the old points at its next append.
    void clear();
    /// Empties the curve, gives its memory back and makes room for `points`, as far as the system has it. For
    /// whoever fills the store from a file: appending needs no prepare then. Not while live.
    void renew(std::size_t points);
    /// Appends `count` zero points, as many as there is room for. They take no memory: only after a renew and
    /// the appends that follow it, as what lies behind is still untouched.
    void appendZeros(std::size_t count);
    /// Says whether a stream's callback is the producer. Not while that callback runs.
    void setLive(bool live);
    bool isLive() const { return m_live; }
    /// Another number after every clear and every amendment. Together with the address of the first point,
    /// which a restart changes, it tells whether the points that a view shows are still those of an earlier
    /// view.
    std::uint64_t generation() const { return m_generation; }
    /// Calls `change(index, point)` on the points in order until it returns false. Not while live.
    template <typename Change> void amend(Change change) {
        ++m_generation;
        const View all = view();
        for (std::size_t i = 0; i < all.size() && change(i, const_cast<CurvePoint&>(all[i])); ++i) {
        }
    }

    // ---- the producer; realtime-safe ----
    /// False, and counted, if the next block isn't there.
    bool append(const CurvePoint& point);
    /// Empties the curve for readers and producer alike.
    void restart();

    // ---- any thread; realtime-safe ----
    View view() const;
    std::size_t size() const { return view().size(); }
    /// Points that had no room.
    std::uint64_t overflows() const { return m_overflows.load(std::memory_order_relaxed); }

private:
    using Range = std::uint64_t; ///< first point in the high half, one past the last in the low half
    static constexpr Range range(std::uint64_t begin, std::uint64_t end) { return begin << 32 | end; }

    static constexpr std::size_t endOf(Range range) { return static_cast<std::size_t>(range & 0xFFFFFFFFU); }
    static std::size_t blockOf(std::size_t index) {
        return index < firstBlock ? 0 : 1 + ((index - firstBlock) >> blockShift);
    }
    static std::size_t offsetOf(std::size_t index) {
        return index < firstBlock ? index : (index - firstBlock) & (blockPoints - 1);
    }
    static std::size_t capacityOf(std::size_t blocks) {
        return blocks == 0 ? 0 : firstBlock + (blocks - 1) * blockPoints;
    }
    const CurvePoint& at(std::size_t index) const {
        return m_blocks[blockOf(index)].load(std::memory_order_acquire)[offsetOf(index)];
    }
    bool makeBlock();

    std::array<std::atomic<CurvePoint*>, maxBlocks> m_blocks{};
    std::size_t m_made = 0;         ///< blocks made; GUI thread
    std::size_t m_touched = 0;      ///< points whose memory has been touched; GUI thread
    bool m_live = false;            ///< GUI thread
    std::uint64_t m_generation = 0; ///< GUI thread
    alignas(64) std::atomic<Range> m_range{0};
    std::atomic<bool> m_clearRequested{false};
    std::atomic<std::uint64_t> m_overflows{0};
    static_assert(std::atomic<Range>::is_always_lock_free && std::atomic<CurvePoint*>::is_always_lock_free);
};
