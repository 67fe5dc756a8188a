#include "stand/line_reader.h"
#include "stand/options.h"
#include "stand/stand.h"

#include <QGuiApplication>

#include <csignal>
#include <cstdio>
#include <unistd.h>

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace {

void print(const QString &line)
{
    std::fprintf(stdout, "%s\n", qPrintable(line));
    std::fflush(stdout);
}

void dieWithParent()
{
#ifdef __linux__
    const pid_t parent = ::getppid();
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) // it ended before the request
        ::raise(SIGTERM);
#endif
}

} // namespace

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    StandOptions options;
    QString fault;
    bool isGood = false;
    {
        // The options choose the kind of application; their help page wants one already.
        const QCoreApplication early(argc, argv);
        isGood = parseOptions(QCoreApplication::arguments(), options, fault);
    }
    if (!isGood) {
        std::fprintf(stderr, "%s\n", qPrintable(fault));
        return 2;
    }
    if (options.diesWithParent)
        dieWithParent();
    if (options.isHeadless)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    Stand stand(options);
    if (!stand.fault().isEmpty()) {
        std::fprintf(stderr, "pictor-stand: %s\n", qPrintable(stand.fault()));
        return 1;
    }
    QObject::connect(&stand, &Stand::quitRequested, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    LineReader input(STDIN_FILENO);
    QObject::connect(&input, &LineReader::line, &stand,
                     [&](const QString &line) { print(stand.command(line)); });
    quitOnSignals();
    print(QStringLiteral("ready"));
    return QCoreApplication::exec();
}
