#include "batch.h"
#include "imaging/large_pages.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace {

constexpr int kBarWidth = 40;
constexpr int kStoppedExit = 128; // and the signal's number, as shells count

volatile std::sig_atomic_t stopSignal = 0;

// The picture at hand is finished; a second signal ends the program at once.
void stopSoon(int signal)
{
    stopSignal = signal;
    std::signal(signal, SIG_DFL);
}

void showProgress(int done, int all)
{
    if (isatty(STDERR_FILENO) == 0)
        return;
    const int filled = kBarWidth * done / all;
    std::fprintf(stderr, "\r[%s%s] %d/%d%s", std::string(static_cast<size_t>(filled), '#').c_str(),
                 std::string(static_cast<size_t>(kBarWidth - filled), ' ').c_str(), done, all,
                 done == all ? "\n" : "");
}

// The imaging functions report to standard output; here that belongs to the JSON alone.
std::FILE *keepForJson()
{
    std::FILE *json = fdopen(dup(STDOUT_FILENO), "w");
    dup2(STDERR_FILENO, STDOUT_FILENO);
    if (isatty(STDERR_FILENO) != 0 && !std::freopen("/dev/null", "w", stdout))
        std::perror("pictor-batch");
    return json;
}

} // namespace

int main(int argc, char **argv)
{
    useLargePagesForPictures();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (wantsBatchHelp(arguments)) {
        std::fputs(batchHelp().toLocal8Bit().constData(), stdout);
        return 0;
    }
    BatchOptions options;
    QString error = parseBatchOptions(arguments, options);
    if (!error.isEmpty()) {
        std::fprintf(stderr, "pictor-batch: %s\n%s", error.toLocal8Bit().constData(),
                     batchHelp().toLocal8Bit().constData());
        return 2;
    }
    Batch batch(options);
    if (!batch.prepare(error)) {
        std::fprintf(stderr, "pictor-batch: %s\n", error.toLocal8Bit().constData());
        return 1;
    }
    std::signal(SIGINT, stopSoon);
    std::signal(SIGTERM, stopSoon);
    std::FILE *const json = keepForJson();
    bool isFailed = json == nullptr;
    showProgress(0, batch.size());
    int done = 0;
    while (done < batch.size() && json && stopSignal == 0) {
        const QJsonObject report = batch.capture(done++);
        isFailed = isFailed || report.contains("error");
        const QByteArray line = QJsonDocument(report).toJson(QJsonDocument::Compact) + '\n';
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), json);
        isFailed = std::fflush(json) != 0 || isFailed;
        showProgress(done, batch.size());
    }
    if (stopSignal != 0) {
        std::fprintf(stderr, "\npictor-batch: stopped after %d of %d pictures\n", done,
                     batch.size());
        return kStoppedExit + stopSignal;
    }
    return isFailed ? 1 : 0;
}
