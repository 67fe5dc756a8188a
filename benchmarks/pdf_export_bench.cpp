// Two hundred pages of eight megapixels into one PDF, whole processes: ours beside img2pdf.
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <sys/resource.h>

namespace {

constexpr int kPages = 200;

/// The same detailed page under two hundred names.
const QStringList &pages()
{
    static const QTemporaryDir folder;
    static const QStringList files = [] {
        cv::Mat noise(2448 / 4, 3264 / 4, CV_8UC3), page;
        cv::randu(noise, 60, 250);
        cv::resize(noise, page, {3264, 2448}, 0, 0, cv::INTER_CUBIC);
        QStringList names;
        for (int i = 0; i < kPages; ++i)
            names += folder.filePath(QString::number(i) + ".jpg");
        cv::imwrite(names.first().toStdString(), page, {cv::IMWRITE_JPEG_QUALITY, 80});
        for (int i = 1; i < kPages; ++i)
            QFile::copy(names.first(), names[i]);
        return names;
    }();
    return files;
}

void runProgram(benchmark::State &state, const QString &program, const QStringList &before)
{
    const QTemporaryDir out;
    const QString target = out.filePath("out.pdf");
    const QStringList &files = pages();
    for (auto _ : state) {
        QStringList arguments = before;
        arguments << target << files;
        if (QProcess::execute(program, arguments) != 0)
            state.SkipWithError("the export failed");
    }
}

QString ownProgram()
{
    // The benchmark library owns main(), so the program's place comes from the system.
    return QFile::symLinkTarget("/proc/self/exe").section('/', 0, -2) + "/export_pages";
}

void pdf_export_200(benchmark::State &state)
{
    runProgram(state, ownProgram(), {});
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage); // the largest child so far, which is this one
    state.counters["peak_MB"] = usage.ru_maxrss / 1024.0;
}

void pdf_export_200_reference(benchmark::State &state)
{
    runProgram(state, "img2pdf", {"-o"});
}

BENCHMARK(pdf_export_200)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(pdf_export_200_reference)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
