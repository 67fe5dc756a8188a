#include "benchmarks/no_fsync.h"
#include "imaging/capture.h"
#include "imaging/combine.h"
#include "mainwindow/panels/page_thumbnail.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <string>
#include <vector>

namespace {

constexpr int kPages = 4;
constexpr int kQuality = 80;
constexpr QSize kLabel(150, 112); // of the merge panel

const cv::Mat &page()
{
    static const cv::Mat picture = [] {
        cv::Mat result(2448, 3264, CV_8UC3, cv::Scalar(225, 232, 235));
        for (int line = 0; line < 60; ++line)
            cv::putText(result, "Minutes of the meeting held on the first of March",
                        {100, 80 + line * 40}, cv::FONT_HERSHEY_SIMPLEX, 1.4, {40, 40, 40}, 3);
        cv::Mat noise(result.size(), CV_16SC3);
        cv::RNG(3).fill(noise, cv::RNG::NORMAL, 0, 3);
        cv::add(result, noise, result, cv::noArray(), CV_8U);
        return result;
    }();
    return picture;
}

std::string file(const QString &name)
{
    static const QTemporaryDir folder;
    return folder.filePath(name).toStdString();
}

std::vector<int> quality()
{
    return {cv::IMWRITE_JPEG_QUALITY, kQuality};
}

void merge_four_8mp(benchmark::State &state)
{
    cv::imwrite(file("page.jpg"), page(), quality());
    MergeJob job;
    std::string cause;
    job.outPath = file("merged.jpg");
    job.save.quality = kQuality;
    for (int i = 0; i < kPages; ++i)
        job.files.push_back(file(QString("%1.jpg").arg(i)));
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        for (const std::string &copy : job.files) // merging removes them
            QFile::copy(QString::fromStdString(file("page.jpg")), QString::fromStdString(copy));
        state.ResumeTiming();
        if (mergeImageFiles(job, cause) != MergeDone)
            state.SkipWithError("the pages were not merged");
    }
}
BENCHMARK(merge_four_8mp)->Unit(benchmark::kMillisecond)->UseRealTime();

// Decoding the pages and encoding the picture, with nothing in between.
void merge_four_8mp_reference(benchmark::State &state)
{
    std::vector<uchar> bytes, merged;
    cv::imencode(".jpg", page(), bytes, quality());
    const cv::Mat whole =
        pastePages(std::vector<cv::Mat>(kPages, page()), MergeDirection::Vertical, 10);
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < kPages; ++i)
            benchmark::DoNotOptimize(cv::imdecode(bytes, cv::IMREAD_COLOR));
        cv::imencode(".jpg", whole, merged, quality());
    }
}
BENCHMARK(merge_four_8mp_reference)->Unit(benchmark::kMillisecond)->UseRealTime();

// From the press to the page in the merge panel, uncut.
void merge_thumbnail_8mp(benchmark::State &state)
{
    static int argc = 1;
    static char name[] = "bench_merge", *argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(argc, argv);
    CaptureOptions options;
    options.save.quality = kQuality;
    const std::string path = file("pressed.jpg");
    for ([[maybe_unused]] auto _ : state) {
        captureFrame(page(), path, options);
        benchmark::DoNotOptimize(pageThumbnail(QString::fromStdString(path), kLabel));
    }
}
BENCHMARK(merge_thumbnail_8mp)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
