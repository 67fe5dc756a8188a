#include "app/state.h"
#include "benchmarks/no_fsync.h"
#include "imaging/capture.h"
#include "imaging/code_reader.h"
#include "imaging/colour_effects.h"
#include "imaging/document_finder.h"
#include "imaging/frame_comparer.h"
#include "imaging/smart_finder.h"
#include "imaging/smart_tracker.h"
#include "imaging/straighten.h"
#include "tests/imaging/plain_capture.h"
#include "tests/imaging/plain_codes.h"
#include "tests/imaging/plain_colour.h"
#include "tests/imaging/plain_comparer.h"
#include "tests/imaging/plain_finder.h"
#include "video/stream_reader.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <fcntl.h>
#include <functional>
#include <malloc.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int kQuality = 80;

const QTemporaryDir &folder()
{
    static const QTemporaryDir dir;
    return dir;
}

std::string file(const char *name)
{
    return folder().filePath(QString::fromLatin1(name)).toStdString();
}

// A written page that leans on a desk, with the noise of a camera.
cv::Mat scene(cv::Size size, double degrees = 6)
{
    const double scale = size.height / 2448.0;
    cv::Mat page(static_cast<int>(2000 * scale), static_cast<int>(1400 * scale), CV_8UC3,
                 cv::Scalar::all(240));
    for (int y = static_cast<int>(150 * scale); y < page.rows; y += static_cast<int>(50 * scale))
        cv::putText(page, "Minutes of the meeting held on the first of March",
                    cv::Point(page.cols / 12, y), cv::FONT_HERSHEY_SCRIPT_SIMPLEX, 1.17 * scale,
                    cv::Scalar::all(40), std::max(1, static_cast<int>(3 * scale)));
    cv::Mat picture(size, CV_8UC3, cv::Scalar(70, 90, 110));
    const cv::Point2f centre(static_cast<float>(page.cols) / 2, static_cast<float>(page.rows) / 2);
    cv::Mat turn = cv::getRotationMatrix2D(centre, degrees, 1);
    turn.at<double>(0, 2) += (size.width - page.cols) / 2.0;
    turn.at<double>(1, 2) += (size.height - page.rows) / 2.0;
    cv::warpAffine(page, picture, turn, size, cv::INTER_LINEAR, cv::BORDER_TRANSPARENT);
    cv::Mat noise(size, CV_16SC3);
    cv::RNG(5).fill(noise, cv::RNG::NORMAL, 0, 3);
    cv::add(picture, noise, picture, cv::noArray(), CV_8U);
    return picture;
}

const cv::Mat &frame(int megapixels)
{
    static const cv::Mat two = scene({1632, 1224});
    static const cv::Mat eight = scene({3264, 2448});
    static const cv::Mat twenty = scene({5184, 3888});
    return megapixels == 2 ? two : megapixels == 8 ? eight : twenty;
}

Outline outlineOf(const cv::Mat &rgb)
{
    return DocumentFinder().find(rgb, AutomaticCrop)->outlines.front();
}

CaptureOptions options(const cv::Mat &rgb, int cropMode)
{
    CaptureOptions result;
    result.cropMode = cropMode;
    result.save.quality = kQuality;
    if (cropMode == AutomaticCrop)
        result.outlines = {outlineOf(rgb)};
    return result;
}

void encode(const cv::Mat &picture, int quality)
{
    std::vector<uchar> bytes;
    cv::imencode(".jpg", picture, bytes, {cv::IMWRITE_JPEG_QUALITY, quality});
    benchmark::DoNotOptimize(bytes.data());
}

using Work = std::function<void(const cv::Mat &rgb)>;

void add(const std::string &name, int megapixels, const Work &work)
{
    benchmark::RegisterBenchmark(name.c_str(),
                                 [=](benchmark::State &state) {
                                     const cv::Mat &rgb = frame(megapixels);
                                     for (auto _ : state)
                                         work(rgb);
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->MinTime(0.3);
}

/// `work` beside `reference` at each of the sizes, in megapixels.
void compare(const std::string &name, const std::vector<int> &sizes, const Work &work,
             const Work &reference)
{
    for (const int size : sizes) {
        const std::string full = name + "_" + std::to_string(size) + "mp";
        add(full, size, work);
        add(full + "_reference", size, reference);
    }
}

/// Both works change a copy of the frame; making the copy is not counted as theirs.
void compareInPlace(const std::string &name, const std::vector<int> &sizes,
                    const std::function<void(cv::Mat &)> &work,
                    const std::function<void(cv::Mat &)> &reference)
{
    const auto onCopy = [](const std::function<void(cv::Mat &)> &effect, int size) {
        return [=](benchmark::State &state) {
            cv::Mat picture;
            for (auto _ : state) {
                state.PauseTiming();
                frame(size).copyTo(picture);
                state.ResumeTiming();
                effect(picture);
            }
        };
    };
    for (const int size : sizes) {
        const std::string full = name + "_" + std::to_string(size) + "mp";
        const std::pair<std::string, std::function<void(cv::Mat &)>> pairs[] = {
            {full, work}, {full + "_reference", reference}};
        for (const auto &[title, effect] : pairs)
            benchmark::RegisterBenchmark(title.c_str(), onCopy(effect, size))
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime()
                ->MinTime(0.3);
    }
}

// The stream of a camera, from a file that holds its pictures one after another.
void decodeLoop(benchmark::State &state, const std::function<void(cv::Mat &)> &treat)
{
    constexpr int kPictures = 60;
    const std::string path = file("stream.mjpeg");
    std::vector<uchar> picture;
    cv::imencode(".jpg", frame(8), picture, {cv::IMWRITE_JPEG_QUALITY, kQuality});
    QFile out(QString::fromStdString(path));
    if (!out.open(QIODevice::WriteOnly))
        return state.SkipWithError("no room for the stream");
    for (int i = 0; i < kPictures; ++i)
        out.write(reinterpret_cast<const char *>(picture.data()),
                  static_cast<qint64>(picture.size()));
    out.close();

    CaptureSource source;
    source.format = QStringLiteral("mjpeg");
    source.url = QString::fromStdString(path);
    const std::atomic<bool> running{true};
    std::unique_ptr<StreamReader> reader;
    cv::Mat pixels(frame(8).size(), CV_8UC3);
    for (auto _ : state) {
        while (!reader || reader->read() != StreamReader::Status::Picture) {
            state.PauseTiming();
            reader = std::make_unique<StreamReader>(running);
            if (reader->open(source, [](const char *) {}) != StreamReader::OpenError::None)
                return state.SkipWithError("the stream does not open");
            state.ResumeTiming();
        }
        reader->convert(pixels, {});
        treat(pixels);
    }
}

void pageTurnSample(const cv::Mat &rgb)
{
    static FrameComparer comparer;
    FrameSample sample(rgb);
    benchmark::DoNotOptimize(CheckIsHavePaper(sample));
    benchmark::DoNotOptimize(comparer.CompareBuf(sample, 25, 90));
}

void plainPageTurnSample(const cv::Mat &rgb)
{
    static cv::Mat previous;
    if (previous.size() != cv::Size(rgb.cols / 4, rgb.rows / 4))
        previous.release();
    benchmark::DoNotOptimize(plainHavePaper(rgb));
    benchmark::DoNotOptimize(plainCompare(rgb, previous));
}

void addCodes(const std::string &name, int type)
{
    const auto gray = [](const cv::Mat &rgb) {
        cv::Mat result;
        cv::cvtColor(rgb, result, cv::COLOR_RGB2GRAY);
        return result;
    };
    // The scene holds no code; a reading out of its text would cut the search short.
    const auto expectNone = [](const std::string &text) {
        if (!text.empty())
            std::fprintf(stderr, "a code was read where there is none: %s\n", text.c_str());
    };
    compare(
        name, {8}, [=](const cv::Mat &rgb) { expectNone(GetQR(gray(rgb), type)); },
        [=](const cv::Mat &rgb) { expectNone(plainLadder(gray(rgb), type)); });
}

void addCaptures()
{
    compare(
        "capture_jpg", {2, 8, 20},
        [](const cv::Mat &rgb) { captureFrame(rgb, file("whole.jpg"), options(rgb, NoCrop)); },
        [](const cv::Mat &rgb) { encode(rgb, kQuality); });

    const std::vector<int> sizes = {2, 8, 20};
    for (const int size : sizes) {
        const CaptureOptions automatic = options(frame(size), AutomaticCrop);
        const Outline outline = automatic.outlines.front();
        compare(
            "capture_auto", {size},
            [=](const cv::Mat &rgb) { captureFrame(rgb, file("page.jpg"), automatic); },
            [=](const cv::Mat &rgb) {
                const StraightenGeometry geometry = straightenGeometry(outline);
                const cv::Mat turned = plainRotate(rgb(geometry.rect), geometry.angle);
                encode(turned({(turned.cols - geometry.size.width) / 2,
                               (turned.rows - geometry.size.height) / 2, geometry.size.width,
                               geometry.size.height}),
                       kQuality);
            });
    }
    compare(
        "pdf", {8},
        [](const cv::Mat &rgb) { captureFrame(rgb, file("page.pdf"), options(rgb, NoCrop)); },
        [](const cv::Mat &rgb) { encode(rgb, 100); });
}

#ifdef __GLIBC__
// In bytes: "VmRSS:" is what the process occupies, "VmHWM:" the most it did.
double occupied(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QFile::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf(field) + 6).simplified().split(' ').value(0).toDouble() * 1024;
}

// The most that an automatic capture occupies beside the frame it is made from, in frames: that
// number stands in the place of a time.
void capture_auto_peak(benchmark::State &state)
{
    const cv::Mat rgb = scene(frame(8).size(), 44); // its upright box is the largest there
    CaptureOptions automatic = options(rgb, AutomaticCrop);
    automatic.save.colorMode = static_cast<int>(state.range(0));
    automatic.save.trim = true;
    for (auto _ : state) {
        malloc_trim(0);
        QFile reset(QStringLiteral("/proc/self/clear_refs"));
        if (!reset.open(QFile::WriteOnly | QFile::Unbuffered) || reset.write("5") != 1)
            state.SkipWithError("the peak cannot be measured here");
        const double before = occupied("VmRSS:");
        captureFrame(rgb, file("peak.jpg"), automatic);
        state.SetIterationTime((occupied("VmHWM:") - before) /
                               static_cast<double>(rgb.total() * rgb.elemSize()));
    }
}
BENCHMARK(capture_auto_peak)
    ->DenseRange(0, 3)
    ->ArgName("colour")
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kSecond);
#endif

const bool registered = [] {
    DocumentFinder finder;
    // Four frames of a live picture, of which the tracker searches one.
    compare(
        "smart_live", {8},
        [](const cv::Mat &rgb) {
            static SmartTracker tracker;
            for (int i = 0; i < 4; ++i)
                benchmark::DoNotOptimize(tracker.update(rgb).data());
        },
        [](const cv::Mat &rgb) {
            for (int i = 0; i < 4; ++i)
                plainFind(rgb, AutomaticCrop);
        });
    compare(
        "smart_find", {8}, [](const cv::Mat &rgb) { findSheets(rgb); },
        [](const cv::Mat &rgb) { plainFind(rgb, AutomaticCrop); });
    compare(
        "detect", {2, 8, 20},
        [finder](const cv::Mat &rgb) mutable { finder.find(rgb, AutomaticCrop); },
        [](const cv::Mat &rgb) { plainFind(rgb, AutomaticCrop); });

    benchmark::RegisterBenchmark("loop_outlines_8mp",
                                 [finder](benchmark::State &state) mutable {
                                     cv::Mat preview;
                                     decodeLoop(state, [&](cv::Mat &pixels) {
                                         pixels.copyTo(preview);
                                         if (const auto found = finder.find(pixels, AutomaticCrop))
                                             drawOutlines(preview, found->drawn);
                                     });
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark(
        "loop_outlines_8mp_reference",
        [](benchmark::State &state) { decodeLoop(state, [](cv::Mat &) {}); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();

    addCaptures();
    addCodes("barcode_none", 0);
    addCodes("qr_none", 1);
    compareInPlace(
        "optimization", {2, 8, 20}, [](cv::Mat &image) { FN_DeleteBackcolor(image); },
        plainOptimize);
    compareInPlace("gray", {2, 8, 20}, grayInPlace, plainGray);
    compareInPlace("binarization", {2, 8, 20}, binarizeInPlace, plainBinarize);
    compare("pageturn", {8}, pageTurnSample, plainPageTurnSample);

    benchmark::RegisterBenchmark(
        "flush_8mp",
        [](benchmark::State &state) {
            captureFrame(frame(8), file("flushed.jpg"), options(frame(8), NoCrop));
            QFile in(QString::fromStdString(file("flushed.jpg")));
            const QByteArray bytes = in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
            for (auto _ : state) {
                state.PauseTiming();
                const int out = open(file("flushed.jpg").c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
                if (out < 0 || write(out, bytes.constData(), static_cast<size_t>(bytes.size())) < 0)
                    return state.SkipWithError("the file cannot be written");
                state.ResumeTiming();
                syscall(SYS_fsync, out);
                close(out);
            }
        })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    return true;
}();

} // namespace
