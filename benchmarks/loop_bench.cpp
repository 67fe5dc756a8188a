// What the main camera's loop costs a frame at 8 megapixels, the hand-off to the window included,
// beside decoding the same pictures and nothing else. Processor time of the whole program: the
// loop's pause does not count.
#include "app/state.h"
#include "benchmarks/camera_pictures.h"
#include "tests/support/fake_platform.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <unistd.h>
#include <utility>

namespace {

const cv::Size kFrame(3264, 2448);
const cv::Size kLargeFrame(5344, 4016);
const QSize kWindow(800, 600); // into which the picture is fitted
const cv::Size kAssistFrame(1280, 720);
constexpr int kPictures = 30;
constexpr int kWarmUp = 20; // pictures until every buffer is there
constexpr int kRounds = 20; // how often the file is read before the camera is opened again

double processSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QFile::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

const std::vector<uchar> &mainJpeg()
{
    static const std::vector<uchar> bytes = sentByCamera(kFrame);
    return bytes;
}

const std::vector<uchar> &largeJpeg()
{
    static const std::vector<uchar> bytes = sentByCamera(kLargeFrame);
    return bytes;
}

const std::vector<uchar> &assistJpeg()
{
    static const std::vector<uchar> bytes = sentByCamera(kAssistFrame);
    return bytes;
}

/// Two cameras that are files.
class FilmPlatform : public FakePlatform
{
public:
    explicit FilmPlatform(QList<CaptureSource> films)
        : m_films(std::move(films))
    {
    }
    CaptureSource captureSource(int index, const QString &, const QString &) const override
    {
        return m_films.value(index);
    }

private:
    QList<CaptureSource> m_films;
};

// Endless cameras, main and assist: the same pictures as a stream.
class Films
{
public:
    explicit Films(const std::vector<uchar> &main = mainJpeg())
    {
        isoutlog = false;
        setPlatform(std::make_unique<FilmPlatform>(
            QList<CaptureSource>{film("main", main), film("assist", assistJpeg())}));
    }
    ~Films() { setPlatform(nullptr); }

private:
    CaptureSource film(const char *name, const std::vector<uchar> &jpeg) const
    {
        QFile file(m_folder.filePath(QString::fromLatin1(name)));
        file.open(QFile::WriteOnly);
        for (int i = 0; i < kPictures; ++i)
            file.write(reinterpret_cast<const char *>(jpeg.data()), qint64(jpeg.size()));
        QStringList rounds;
        for (int i = 0; i < kRounds; ++i)
            rounds.append(file.fileName());
        return {
            QStringLiteral("mjpeg"), QStringLiteral("concat:") + rounds.join(QLatin1Char('|')), {}};
    }

    QTemporaryDir m_folder;
};

// Opens the camera again at the end of its film.
template <class Camera>
void play(Camera &camera, const char *index, QEventLoop &context)
{
    const auto open = [&camera, index] { camera.openCamera(index, "3264x2448", "15"); };
    QObject::connect(&camera, &QThread::finished, &context, open);
    open();
}

struct Loop
{
    int angle = 0;
    int crop = NoCrop;
    QSize shown = kWindow;
    const std::vector<uchar> &(*jpeg)() = mainJpeg;
};

void measureLoop(benchmark::State &state, const Loop &loop)
{
    const Films films(loop.jpeg());
    IVideoTread camera;
    camera.setShownSize(loop.shown);
    QEventLoop window;
    QObject::connect(&camera, &IVideoTread::sgImage, &window, &QEventLoop::quit);
    camera.setRotateAngle(loop.angle);
    cutMode = loop.crop;
    play(camera, "0", window);
    for (int warmUp = 0; warmUp < kWarmUp; ++warmUp)
        window.exec();
    for (auto _ : state) {
        const double before = processSeconds();
        window.exec();
        state.SetIterationTime(processSeconds() - before);
    }
    state.counters["resident_MB"] = residentMegabytes();
    camera.disconnect();
    cutMode = NoCrop;
}

template <const std::vector<uchar> &jpeg()>
void measureDecoder(benchmark::State &state)
{
    PlainDecoder decoder(jpeg());
    for (auto _ : state) {
        const double before = processSeconds();
        if (!decoder.decode())
            state.SkipWithError("the picture cannot be decoded");
        state.SetIterationTime(processSeconds() - before);
    }
}

// Counts what a camera has decoded, also what was replaced before it was shown.
class Counter
{
public:
    explicit Counter(const CameraThread &camera)
        : m_camera(camera)
    {
    }
    double newPictures()
    {
        const FramePtr frame = m_camera.lastFrame();
        const uint64_t now = frame ? frame->sequence : 0;
        const uint64_t before = std::exchange(m_seen, now);
        return double(now < before ? now : now - before); // it starts again with its film
    }

private:
    const CameraThread &m_camera;
    uint64_t m_seen = 0;
};

// Both cameras run free: how many assist pictures came with one main picture, on average.
double assistPictures = 0;

// `takesPictures` gets a function that waits for main pictures and gives the processor time of one,
// with the assist pictures that came meanwhile.
template <class Caller>
void runBoth(Caller takesPictures)
{
    const Films films;
    IVideoTread camera;
    IVideoTwoThread assist;
    camera.setShownSize(kWindow);
    assist.setShownSize(kWindow / 4);
    Counter mainCounter(camera), assistCounter(assist);
    QEventLoop window;
    QObject::connect(&camera, &IVideoTread::sgImage, &window, &QEventLoop::quit);
    play(camera, "0", window);
    play(assist, "1", window);
    double mains = 0, assists = 0;
    const auto picture = [&] {
        const double before = processSeconds();
        window.exec();
        const double count = std::max(mainCounter.newPictures(), 1.0);
        mains += count;
        assists += assistCounter.newPictures();
        return (processSeconds() - before) / count;
    };
    for (int warmUp = 0; warmUp < kWarmUp; ++warmUp)
        picture();
    mains = assists = 0;
    takesPictures(picture);
    assistPictures = assists / mains;
    camera.disconnect();
    assist.disconnect();
}

void loop_with_assist(benchmark::State &state)
{
    runBoth([&](const auto &picture) {
        for (auto _ : state)
            state.SetIterationTime(picture());
    });
    state.counters["assist_pictures"] = assistPictures;
}

void loop_with_assist_reference(benchmark::State &state)
{
    if (assistPictures <= 0) // the order of benchmarks is random
        runBoth([](const auto &picture) {
            for (int i = 0; i < kPictures; ++i)
                picture();
        });
    PlainDecoder mainDecoder(mainJpeg()), assistDecoder(assistJpeg());
    double due = 0;
    for (auto _ : state) {
        const double before = processSeconds();
        bool isGood = mainDecoder.decode();
        due += assistPictures;
        const int pictures = static_cast<int>(due);
        for (int i = 0; i < pictures; ++i)
            isGood = assistDecoder.decode() && isGood;
        due -= pictures;
        if (!isGood)
            state.SkipWithError("the picture cannot be decoded");
        state.SetIterationTime(processSeconds() - before);
    }
}

const auto &loop_upright_reference = measureDecoder<mainJpeg>;
const auto &loop_rotated_90_reference = measureDecoder<mainJpeg>;
const auto &loop_rotated_180_reference = measureDecoder<mainJpeg>;
const auto &loop_with_outlines_reference = measureDecoder<mainJpeg>;
const auto &loop_true_size_reference = measureDecoder<mainJpeg>;
const auto &loop_21mp_reference = measureDecoder<largeJpeg>;

void loop_upright(benchmark::State &state)
{
    measureLoop(state, {});
}

void loop_rotated_90(benchmark::State &state)
{
    measureLoop(state, {90});
}

void loop_rotated_180(benchmark::State &state)
{
    measureLoop(state, {180});
}

void loop_with_outlines(benchmark::State &state)
{
    measureLoop(state, {0, AutomaticCrop});
}

void loop_true_size(benchmark::State &state)
{
    measureLoop(state, {0, NoCrop, {kFrame.width, kFrame.height}});
}

void loop_21mp(benchmark::State &state)
{
    measureLoop(state, {0, NoCrop, kWindow, largeJpeg});
}

BENCHMARK(loop_upright)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_upright_reference)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_rotated_90)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_rotated_90_reference)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_rotated_180)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_rotated_180_reference)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_with_outlines)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_with_outlines_reference)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_true_size)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_true_size_reference)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_21mp)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_21mp_reference)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_with_assist)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_with_assist_reference)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
