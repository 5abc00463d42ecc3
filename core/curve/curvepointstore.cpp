#include "curvepointstore.h"

#include "blockmemory.h"

#include <algorithm>
#include <cassert>

namespace {

constexpr std::size_t blockMargin = CurvePointStore::blockPoints; // free points below which a block is made
constexpr std::size_t touchAhead = 65536;                         // points backed ahead of the producer

constexpr std::size_t bytesOf(std::size_t block) {
    return (block == 0 ? CurvePointStore::firstBlock : CurvePointStore::blockPoints) * sizeof(CurvePoint);
}

} // namespace

CurvePointStore::~CurvePointStore() {
    for (std::size_t i = 0; i < m_made; ++i) {
        BlockMemory::release(m_blocks[i].load(std::memory_order_relaxed), bytesOf(i));
    }
}

bool CurvePointStore::makeBlock() {
    if (m_made == maxBlocks) {
        return false;
    }
    void* memory = BlockMemory::make(bytesOf(m_made));
    if (memory == nullptr) {
        return false;
    }
    m_blocks[m_made].store(static_cast<CurvePoint*>(memory), std::memory_order_release);
    ++m_made;
    return true;
}

void CurvePointStore::reserve() {
    if (m_made == 0) {
        makeBlock();
        prepare();
    }
}

void CurvePointStore::prepare() {
    const auto end = endOf(m_range.load(std::memory_order_acquire));
    while (end + blockMargin > capacityOf(m_made) && makeBlock()) {
    }
    if (m_touched >= std::min(end + touchAhead / 2, capacityOf(m_made))) {
        return;
    }
    // What a restart has skipped needs no backing.
    m_touched = std::max(m_touched, end);
    const std::size_t target = std::min(end + touchAhead, capacityOf(m_made));
    while (m_touched < target) {
        const std::size_t block = blockOf(m_touched);
        const std::size_t stretch = std::min(target, capacityOf(block + 1)) - m_touched;
        CurvePoint* base = m_blocks[block].load(std::memory_order_relaxed);
        BlockMemory::back(base + offsetOf(m_touched), stretch * sizeof(CurvePoint));
        m_touched += stretch;
    }
}

void CurvePointStore::clear() {
    ++m_generation;
    if (m_live) {
        m_clearRequested.store(true, std::memory_order_release);
    } else {
        m_touched = std::max(m_touched, endOf(m_range.load(std::memory_order_relaxed)));
        m_range.store(0, std::memory_order_release);
        m_clearRequested.store(false, std::memory_order_relaxed);
    }
}

void CurvePointStore::renew(std::size_t points) {
    assert(!m_live);
    clear();
    for (std::size_t block = 0; block < m_made && capacityOf(block) < m_touched; ++block) {
        BlockMemory::discard(m_blocks[block].load(std::memory_order_relaxed), bytesOf(block));
    }
    m_touched = 0;
    while (capacityOf(m_made) < points && makeBlock()) {
    }
}

void CurvePointStore::appendZeros(std::size_t count) {
    const Range now = m_range.load(std::memory_order_relaxed);
    const std::size_t room = capacityOf(m_made) - endOf(now);
    m_range.store(now + std::min(count, room), std::memory_order_release);
}

void CurvePointStore::setLive(bool live) {
    if (m_live && !live && m_clearRequested.load(std::memory_order_acquire)) {
        restart();
    }
    m_live = live;
}

bool CurvePointStore::append(const CurvePoint& point) {
    if (m_clearRequested.load(std::memory_order_acquire)) {
        restart();
    }
    const Range now = m_range.load(std::memory_order_relaxed);
    const auto end = endOf(now);
    const std::size_t block = blockOf(end);
    CurvePoint* base = block < maxBlocks ? m_blocks[block].load(std::memory_order_acquire) : nullptr;
    if (base == nullptr) {
        m_overflows.fetch_add(1, std::memory_order_relaxed);
        return false;
    }
    base[offsetOf(end)] = point;
    m_range.store(now + 1, std::memory_order_release);
    return true;
}

void CurvePointStore::restart() {
    const std::uint64_t end = m_range.load(std::memory_order_relaxed) & 0xFFFFFFFFU;
    m_range.store(range(end, end), std::memory_order_release);
    m_clearRequested.store(false, std::memory_order_release);
}

CurvePointStore::View CurvePointStore::view() const {
    if (m_clearRequested.load(std::memory_order_acquire)) {
        return {this, 0, 0};
    }
    const Range now = m_range.load(std::memory_order_acquire);
    return {this, static_cast<std::size_t>(now >> 32), endOf(now)};
}
