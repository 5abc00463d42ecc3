#include "quieterroroutput.h"

#include <QtGlobal>

#ifdef Q_OS_UNIX

#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <unistd.h>

namespace {
// The first one in redirects, the last one out restores: two threads that did so each by itself could leave
// the output redirected for good.
std::mutex lock;
int alive = 0;
int saved = -1;
} // namespace

QuietErrorOutput::QuietErrorOutput() {
    const std::scoped_lock locked(lock);
    if (alive++ > 0) {
        return;
    }
    std::fflush(stderr);
    saved = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere >= 0) {
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
}

QuietErrorOutput::~QuietErrorOutput() {
    const std::scoped_lock locked(lock);
    if (--alive > 0) {
        return;
    }
    std::fflush(stderr);
    if (saved >= 0) {
        dup2(saved, STDERR_FILENO);
        close(saved);
        saved = -1;
    }
}

#else

QuietErrorOutput::QuietErrorOutput() = default;
QuietErrorOutput::~QuietErrorOutput() = default;

#endif
