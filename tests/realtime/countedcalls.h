#pragma once
// Counts what a callback must not do. Linked into a test, it stands before the C library's allocator and
// locks and, on a thread that asks for it, before the kernel.

#include <cstdint>

namespace CountedCalls {

struct Counts {
    std::uint64_t allocations = 0; ///< malloc and its family, operator new with it
    std::uint64_t frees = 0;
    std::uint64_t locks = 0;       ///< of mutexes, read-write and spin locks; conditions and semaphores
    std::uint64_t systemCalls = 0; ///< ways into the kernel; where it lies in user space, a clock is none
    bool operator==(const Counts&) const = default;
};

/// Null where allocations and locks are counted, else why not.
const char* callsUncounted();

/// From here on the calling thread's system calls pass a counter on their way to the kernel. Null on success,
/// else why that can't be. A thread that has called this ends by leaveThread and starts no other.
const char* watchSystemCalls();

/// Counts what the calling thread does, from zero, until stop().
void start();
Counts stop();

/// Ends the calling thread where it stands, past the C library; it can be joined.
[[noreturn]] void leaveThread();

} // namespace CountedCalls
