#include "takestore.h"

#include "curve/blockmemory.h"

#include <algorithm>

namespace {
constexpr std::size_t blockBytes = TakeStore::blockSamples * sizeof(std::int16_t);
}

TakeStore::TakeStore() {
    prepare();
}

TakeStore::~TakeStore() {
    for (std::size_t i = 0; i < m_made; ++i) {
        BlockMemory::release(m_blocks[i].load(std::memory_order_relaxed), blockBytes);
    }
}

void TakeStore::prepare() {
    const std::size_t wanted = std::min((size() >> blockShift) + 1 + blocksAhead, maxBlocks);
    while (m_made < wanted) {
        void* memory = BlockMemory::make(blockBytes);
        if (memory == nullptr) {
            return;
        }
        BlockMemory::back(memory, blockBytes);
        m_blocks[m_made].store(static_cast<std::int16_t*>(memory), std::memory_order_release);
        ++m_made;
    }
}

void TakeStore::clear() {
    m_size.store(0, std::memory_order_release);
}

bool TakeStore::forEachPiece(const std::function<bool(std::span<const std::int16_t>)>& take) const {
    const std::size_t end = size();
    for (std::size_t at = 0; at < end; at += blockSamples) {
        const std::int16_t* base = m_blocks[at >> blockShift].load(std::memory_order_acquire);
        if (!take({base, std::min(blockSamples, end - at)})) {
            return false;
        }
    }
    return true;
}
