#pragma once
// For tests of the invariants that end the process.

#include <QByteArray>

#include <csignal>
#include <functional>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// What `deed` prints to stderr before an assert ends it, or nothing if it lives on. It runs in a child
/// process.
inline QByteArray deathMessage(const std::function<void()>& deed) {
    int ends[2];
    if (pipe(ends) != 0) {
        return {};
    }
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGABRT, SIG_DFL);
        const rlimit noCore{0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        dup2(ends[1], STDERR_FILENO);
        deed();
        _exit(0);
    }
    close(ends[1]);
    QByteArray text;
    char buffer[512];
    for (ssize_t n = 0; (n = read(ends[0], buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<qsizetype>(n));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT ? text : QByteArray();
}
