#include "blockmemory.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#ifdef __linux__
#include <sys/mman.h>
#include <unistd.h>
#ifndef MADV_POPULATE_WRITE
#define MADV_POPULATE_WRITE 23
#endif
#else
#include <new>
#endif

namespace BlockMemory {

#ifdef __linux__

void* make(std::size_t bytes) {
    void* block =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return block == MAP_FAILED ? nullptr : block;
}

void release(void* block, std::size_t bytes) {
    if (block != nullptr) {
        munmap(block, bytes);
    }
}

void back(void* from, std::size_t bytes) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto address = reinterpret_cast<std::uintptr_t>(from);
    const std::uintptr_t begin = address & ~(page - 1);
    const std::uintptr_t end = (address + bytes + page - 1) & ~(page - 1);
    madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_WRITE);
}

void discard(void* from, std::size_t bytes) {
    if (madvise(from, bytes, MADV_DONTNEED) != 0) {
        std::memset(from, 0, bytes);
    }
}

#else

void* make(std::size_t bytes) {
    return std::calloc(1, bytes);
}

void release(void* block, std::size_t) {
    std::free(block);
}

void back(void*, std::size_t) {}

void discard(void* from, std::size_t bytes) {
    std::memset(from, 0, bytes);
}

#endif

} // namespace BlockMemory
