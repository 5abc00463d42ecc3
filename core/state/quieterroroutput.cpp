#include "quieterroroutput.h"

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

QuietErrorOutput::QuietErrorOutput() {
    std::fflush(stderr);
    m_saved = dup(STDERR_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere >= 0) {
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
}

QuietErrorOutput::~QuietErrorOutput() {
    std::fflush(stderr);
    if (m_saved >= 0) {
        dup2(m_saved, STDERR_FILENO);
        close(m_saved);
    }
}
#else
QuietErrorOutput::QuietErrorOutput() = default;
QuietErrorOutput::~QuietErrorOutput() = default;
#endif
