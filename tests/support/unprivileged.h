#pragma once
// Makes permissions count, also where the tests run as root.

#include "tiedprocess.h"

#include <functional>

#include <grp.h>
#include <unistd.h>

/// What `process` starts then runs as nobody if this process is root's; `also` is done in it before that.
/// Before start.
inline void runUnprivileged(
    QProcess& process, std::function<void()> also = [] {}) {
    process.setChildProcessModifier([also = std::move(also)] {
        constexpr unsigned nobody = 65534;
        also();
        if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)) {
            _exit(127);
        }
        TiedProcess::dieWithParent(); // the change of the user has undone it
    });
}
