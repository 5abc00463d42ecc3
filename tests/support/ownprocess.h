#pragma once
// For tests of what lasts to the end of a process.

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

/// Runs `deed` in a child process and returns the number of the first step that it found wrong; 0 if none
/// was, -1 if it died.
inline int inAnOwnProcess(const std::function<int()>& deed) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(deed());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
