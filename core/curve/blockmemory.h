#pragma once

#include <cstddef>

/// Zeroed memory for the blocks of a growing store, in whole pages. GUI thread; a callback neither makes nor
/// frees nor touches first what comes from here.
namespace BlockMemory {

/// Null when the system has no more. Aligned to a page; its pages aren't backed yet.
void* make(std::size_t bytes);
void release(void* block, std::size_t bytes);
/// Backs the pages of this stretch without changing what they hold, so that a callback's first store there
/// costs no page fault. Where the system can't do that, nothing happens.
void back(void* from, std::size_t bytes);
/// Makes this stretch zeros again and gives its pages back: they take no memory until they are written to.
/// `from` starts a page.
void discard(void* from, std::size_t bytes);

} // namespace BlockMemory
