#include "mainwindow/lists/image_list.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QScrollBar>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <string>

namespace {

constexpr int kEntries = 1000;
constexpr int kScrollSteps = 50;
constexpr qint64 kStepMs = 40;
constexpr double kMostMegabytes = 60;

QApplication &application()
{
    static int argc = 1;
    static char name[] = "bench_list";
    static char *argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QApplication instance(argc, argv);
    return instance;
}

/// A folder of captures: a thousand names, one picture of eight megapixels.
class Captures
{
public:
    Captures()
    {
        cv::Mat picture(2448, 3264, CV_8UC3, cv::Scalar::all(230));
        for (int line = 0; line < 60; ++line)
            cv::putText(picture, "The quick brown fox jumps over the lazy dog 0123456789",
                        {100, 80 + line * 40}, cv::FONT_HERSHEY_SIMPLEX, 1.4, {40, 40, 40}, 3);
        const QString first = path(0);
        cv::imwrite(first.toStdString(), picture);
        for (int i = 0; i < kEntries; ++i) {
            if (i > 0)
                QFile::link(first, path(i));
            m_paths.append(path(i));
        }
    }
    const QStringList &paths() const { return m_paths; }

private:
    QString path(int i) const { return m_folder.filePath(QStringLiteral("%1.jpg").arg(i)); }

    QTemporaryDir m_folder;
    QStringList m_paths;
};

const Captures &captures()
{
    static const Captures instance;
    return instance;
}

double residentMegabytes()
{
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return status.readAll().split(' ').value(1).toDouble() * 4096 / 1024 / 1024;
}

/// The longest time in which the window could do nothing else, while a thousand pictures come in
/// and are scrolled through.
void list_1000_stall(benchmark::State &state)
{
    application();
    const QStringList &paths = captures().paths();
    for ([[maybe_unused]] auto _ : state) {
        ImageListWidget list;
        list.resize(200, 600);
        list.show();
        QCoreApplication::processEvents();
        const double before = residentMegabytes();
        double most = before;
        qint64 longest = 0;
        const auto measured = [&](const auto &work) {
            QElapsedTimer timer;
            timer.start();
            work();
            longest = std::max(longest, timer.nsecsElapsed());
        };
        measured([&] { list.insertFiles(paths); });
        for (int step = 0; step <= kScrollSteps; ++step) {
            QScrollBar *bar = list.verticalScrollBar();
            measured([&] { bar->setValue(bar->maximum() * step / kScrollSteps); });
            QElapsedTimer shown;
            shown.start();
            while (!shown.hasExpired(kStepMs))
                measured([] { QCoreApplication::processEvents(QEventLoop::AllEvents); });
            most = std::max(most, residentMegabytes());
        }
        if (most - before > kMostMegabytes)
            state.SkipWithError((std::to_string(most - before) + " MB more").c_str());
        state.SetIterationTime(static_cast<double>(longest) / 1e9);
        state.counters["MB"] = most - before;
    }
}
BENCHMARK(list_1000_stall)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

/// Decoding one of the pictures as a whole.
void list_1000_stall_reference(benchmark::State &state)
{
    const std::string path = captures().paths().first().toStdString();
    for ([[maybe_unused]] auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        benchmark::DoNotOptimize(cv::imread(path));
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9);
    }
}
BENCHMARK(list_1000_stall_reference)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
