#include "portaudiosession.h"

#include <QtGlobal>

#include <portaudio.h>

#include <atomic>

#ifdef Q_OS_UNIX
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

std::atomic<bool> libraryBlocked{false};

#ifdef Q_OS_UNIX
// Points the error output elsewhere while it lives.
class QuietErrorOutput {
public:
    QuietErrorOutput() {
        std::fflush(stderr);
        m_saved = dup(STDERR_FILENO);
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (nowhere >= 0) {
            dup2(nowhere, STDERR_FILENO);
            close(nowhere);
        }
    }
    ~QuietErrorOutput() {
        std::fflush(stderr);
        if (m_saved >= 0) {
            dup2(m_saved, STDERR_FILENO);
            close(m_saved);
        }
    }
    QuietErrorOutput(const QuietErrorOutput&) = delete;
    QuietErrorOutput& operator=(const QuietErrorOutput&) = delete;

private:
    int m_saved = -1;
};
#else
struct QuietErrorOutput {
    QuietErrorOutput() {}
};
#endif

} // namespace

PortAudioSession::PortAudioSession() {
    if (!blocked()) {
        const QuietErrorOutput quiet;
        m_ok = Pa_Initialize() == paNoError;
    }
}

PortAudioSession::~PortAudioSession() {
    if (m_ok && !blocked()) {
        const QuietErrorOutput quiet;
        Pa_Terminate();
    }
}

void PortAudioSession::setBlocked(bool blocked) {
    libraryBlocked.store(blocked, std::memory_order_release);
}
bool PortAudioSession::blocked() {
    return libraryBlocked.load(std::memory_order_acquire);
}
