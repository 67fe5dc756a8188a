#include "platform/child_process.h"

#include <QCoreApplication>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#endif
#include <unistd.h>

ChildProcess::ChildProcess(QObject *parent)
    : QProcess(parent)
    , m_program(QCoreApplication::applicationPid())
{
}

// Runs between fork and exec: only calls that are safe there.
void ChildProcess::setupChildProcess()
{
    if (m_input >= 0) {
        // The end of its input tells it as well, and once: the signal comes again with every thread
        // of a killed program that dies, and a second one breaks ffmpeg off.
        dup2(m_input, STDIN_FILENO);
        return;
    }
#ifdef Q_OS_LINUX
    prctl(PR_SET_PDEATHSIG, SIGINT);
    if (getppid() != m_program) // the program ended before the request was in place
        raise(SIGINT);
#endif
}
