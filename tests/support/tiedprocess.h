#pragma once
// Child processes that end with the test, however it ends.

#include <QProcess>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

/// A process that is killed when this one ends, also when this one is killed. Started and ended on one
/// thread.
class TiedProcess : public QProcess {
public:
    explicit TiedProcess(QObject* parent = nullptr) : QProcess(parent) {
        setChildProcessModifier([] { dieWithParent(); });
    }
    /// For the child's side of a start; a modifier of a test's own calls it too.
    static void dieWithParent() {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() == 1) { // it has ended already
            ::_exit(1);
        }
    }
};
