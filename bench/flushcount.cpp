// Preloaded into the program by deckshare.sh: counts how often a window's picture is handed to the screen,
// and how many pixels of it, in two 64-bit numbers at the beginning of the file that FLUSH_COUNT names. Qt
// calls this once a repaint, whatever number of widgets took part.

#include <QBackingStore>
#include <QRegion>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

struct Counts {
    std::atomic<std::uint64_t> flushes;
    std::atomic<std::uint64_t> pixels;
};
static_assert(sizeof(Counts) == 16);

// Null without a file: then nothing is counted.
Counts* shared() {
    const char* name = std::getenv("FLUSH_COUNT");
    const int file = name == nullptr ? -1 : ::open(name, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0 || ::ftruncate(file, sizeof(Counts)) != 0) {
        return nullptr;
    }
    void* memory = ::mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return memory == MAP_FAILED ? nullptr : static_cast<Counts*>(memory);
}

} // namespace

void QBackingStore::flush(const QRegion& region, QWindow* window, const QPoint& offset) {
    using Flush = void (*)(QBackingStore*, const QRegion&, QWindow*, const QPoint&);
    static Flush next =
        reinterpret_cast<Flush>(::dlsym(RTLD_NEXT, "_ZN13QBackingStore5flushERK7QRegionP7QWindowRK6QPoint"));
    static Counts* counts = shared();
    if (next == nullptr) {
        std::fputs("flushcount: this Qt has no QBackingStore::flush\n", stderr);
        std::abort();
    }
    if (counts != nullptr) {
        std::uint64_t pixels = 0;
        for (const QRect& part : region) {
            pixels += std::uint64_t(part.width()) * std::uint64_t(part.height());
        }
        counts->flushes.fetch_add(1, std::memory_order_relaxed);
        counts->pixels.fetch_add(pixels, std::memory_order_relaxed);
    }
    next(this, region, window, offset);
}
