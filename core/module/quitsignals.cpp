#include "quitsignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int wakeUp[2] = {-1, -1};

// A signal handler may hardly do anything: it wakes the event loop.
void wake(int) {
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(wakeUp[0], &byte, sizeof(byte));
}

} // namespace

void quitOnSystemSignals() {
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, wakeUp) != 0) {
        return;
    }
    auto* notifier = new QSocketNotifier(wakeUp[1], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    struct sigaction action = {};
    action.sa_handler = wake;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction inherited = {};
        if (sigaction(signal, nullptr, &inherited) == 0 && inherited.sa_handler == SIG_IGN) {
            continue; // whoever started the process wants it to outlive this one, as nohup does
        }
        sigaction(signal, &action, nullptr);
    }
}
#else
void quitOnSystemSignals() {}
#endif
