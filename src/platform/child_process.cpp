#include "platform/child_process.h"

#include <QCoreApplication>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#endif

ChildProcess::ChildProcess(QObject *parent)
    : QProcess(parent)
    , m_program(QCoreApplication::applicationPid())
{
}

void ChildProcess::setupChildProcess()
{
#ifdef Q_OS_LINUX
    // Runs between fork and exec: only calls that are safe there.
    prctl(PR_SET_PDEATHSIG, SIGINT);
    if (getppid() != m_program) // the program ended before the request was in place
        raise(SIGINT);
#endif
}
