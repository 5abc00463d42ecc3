#include "quieterroroutput.h"

#include <QtGlobal>

#ifdef Q_OS_UNIX

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The first one in redirects, the last one out restores: two threads that did so each by itself could leave
// the output redirected for good.
std::mutex lock;
int alive = 0;

// Descriptors, -1 while nothing is turned away; a dying thread reads them.
std::atomic<int> saved{-1}; // the user's error output
std::atomic<int> aside{-1}; // what is printed meanwhile
static_assert(std::atomic<int>::is_always_lock_free);

// Where a process that can't go on is told of. Abort is how an assert, std::terminate and the C library's
// checks of the heap end it.
constexpr std::array deaths{SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL};
std::array<struct sigaction, deaths.size()> before; // what was done with them until now

// Tells the user the last of what was turned away, which says why the process ends; then it ends. Calls only
// what a signal handler may.
void tellLastWords(int signal) {
    const int user = saved.load(std::memory_order_relaxed);
    const int words = aside.load(std::memory_order_relaxed);
    if (user >= 0) {
        dup2(user, STDERR_FILENO);
        struct stat size {};
        if (words >= 0 && fstat(words, &size) == 0) {
            std::array<char, 4096> text;
            const off_t from = std::max<off_t>(0, size.st_size - off_t(text.size()));
            const ssize_t read = pread(words, text.data(), text.size(), from);
            if (read > 0) {
                [[maybe_unused]] const ssize_t written =
                    write(STDERR_FILENO, text.data(), static_cast<std::size_t>(read));
            }
        }
    }
    const auto which = std::find(deaths.begin(), deaths.end(), signal) - deaths.begin();
    sigaction(signal, &before[static_cast<std::size_t>(which)], nullptr);
    raise(signal);
}

void watchDeaths() {
    for (std::size_t i = 0; i < deaths.size(); ++i) {
        struct sigaction now {};
        if (sigaction(deaths[i], nullptr, &now) == 0 && now.sa_handler != tellLastWords) {
            before[i] = now;
            struct sigaction ours {};
            ours.sa_handler = tellLastWords;
            sigemptyset(&ours.sa_mask);
            sigaction(deaths[i], &ours, nullptr);
        }
    }
}

// A file without a name, kept from one time to the next; nothing where that can't be had.
int emptyFile() {
#ifdef Q_OS_LINUX
    static const int file = memfd_create("error output", MFD_CLOEXEC);
    if (file >= 0 && ftruncate(file, 0) == 0 && lseek(file, 0, SEEK_SET) == 0) {
        return file;
    }
#endif
    static const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    return nowhere;
}

} // namespace

QuietErrorOutput::QuietErrorOutput() {
    const std::scoped_lock locked(lock);
    if (alive++ > 0) {
        return;
    }
    std::fflush(stderr);
    const int user = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
    const int file = emptyFile();
    aside.store(file, std::memory_order_relaxed);
    saved.store(user, std::memory_order_relaxed);
    watchDeaths();
    if (user >= 0 && file >= 0) { // else there would be no way back
        dup2(file, STDERR_FILENO);
    }
}

QuietErrorOutput::~QuietErrorOutput() {
    const std::scoped_lock locked(lock);
    if (--alive > 0) {
        return;
    }
    std::fflush(stderr);
    const int user = saved.load(std::memory_order_relaxed);
    if (user >= 0) {
        dup2(user, STDERR_FILENO);
        saved.store(-1, std::memory_order_relaxed);
        close(user);
    }
}

#else

QuietErrorOutput::QuietErrorOutput() = default;
QuietErrorOutput::~QuietErrorOutput() = default;

#endif
