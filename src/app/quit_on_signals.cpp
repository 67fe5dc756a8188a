#include "app/quit_on_signals.h"

#include "app/descriptors.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace {

int signalPipe[2] = {-1, -1};

void onSignal(int)
{
    const int before = errno;
    const ssize_t ignored = ::write(signalPipe[1], "", 1);
    static_cast<void>(ignored);
    errno = before;
}

} // namespace

void quitOnSignals()
{
    if (!openPipe(signalPipe))
        return;
    nonBlocking(signalPipe[1]); // a handler must not wait
    // The byte is never read: a second event loop, begun while the first one ends, is told too.
    auto *notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, &QCoreApplication::quit);
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
    if (std::signal(SIGHUP, onSignal) == SIG_IGN) // started to outlive its terminal
        std::signal(SIGHUP, SIG_IGN);
}
