#include "app/quit_on_signals.h"
#include "stand/line_reader.h"
#include "stand/options.h"
#include "stand/stand.h"
#include "stand/stand_window.h"

#include <QApplication>

#include <csignal>
#include <cstdio>
#include <memory>
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

bool hasDisplay()
{
#ifdef __linux__
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#else
    return true;
#endif
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
    if (!options.help.isEmpty()) {
        std::fputs(qPrintable(options.help), stdout);
        return 0;
    }
    if (options.diesWithParent)
        dieWithParent();
    const bool hasWindow = !options.isHeadless && hasDisplay();
    if (!hasWindow)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const std::unique_ptr<QGuiApplication> application =
        hasWindow ? std::make_unique<QApplication>(argc, argv)
                  : std::make_unique<QGuiApplication>(argc, argv);
    Stand stand(options);
    if (!stand.fault().isEmpty()) {
        std::fprintf(stderr, "pictor-stand: %s\n", qPrintable(stand.fault()));
        return 1;
    }
    QObject::connect(&stand, &Stand::quitRequested, application.get(), &QCoreApplication::quit,
                     Qt::QueuedConnection);
    LineReader input(STDIN_FILENO);
    QObject::connect(&input, &LineReader::line, &stand,
                     [&](const QString &line) { print(stand.command(line)); });
    quitOnSignals();
    std::unique_ptr<StandWindow> window;
    if (hasWindow) {
        window = std::make_unique<StandWindow>(stand);
        window->show();
    }
    print(QStringLiteral("ready"));
    return QCoreApplication::exec();
}
