// What the main camera's loop costs a frame at 8 megapixels, the hand-off to the window included,
// beside decoding the same pictures and nothing else. Processor time of the whole program: the
// loop's pause does not count.
#include "app/state.h"
#include "stand/render.h"
#include "tests/support/fake_platform.h"
#include "video/video_thread.h"

#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <opencv2/imgcodecs.hpp>

#include <ctime>
#include <unistd.h>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace {

const cv::Size kFrame(3264, 2448);
constexpr int kQuality = 88; // as the stand encodes
constexpr int kPictures = 30;
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

const std::vector<uchar> &jpeg()
{
    static const std::vector<uchar> encoded = [] {
        static int argc = 1;
        static char name[] = "bench_loop", *argv[] = {name, nullptr};
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static QGuiApplication application(argc, argv); // paints the scene's text
        std::vector<uchar> bytes;
        cv::imencode(".jpg", renderScene(findScenes(QStringLiteral("page")).front(), kFrame).bgr,
                     bytes, {cv::IMWRITE_JPEG_QUALITY, kQuality});
        return bytes;
    }();
    return encoded;
}

// An endless camera: the same pictures as a stream.
class Film
{
public:
    Film()
    {
        isoutlog = false;
        QFile file(m_folder.filePath(QStringLiteral("film")));
        file.open(QFile::WriteOnly);
        for (int i = 0; i < kPictures; ++i)
            file.write(reinterpret_cast<const char *>(jpeg().data()), qint64(jpeg().size()));
        auto platform = std::make_unique<FakePlatform>();
        QStringList files;
        for (int i = 0; i < kRounds; ++i)
            files.append(file.fileName());
        platform->source = {
            QStringLiteral("mjpeg"), QStringLiteral("concat:") + files.join(QLatin1Char('|')), {}};
        setPlatform(std::move(platform));
    }
    ~Film() { setPlatform(nullptr); }

private:
    QTemporaryDir m_folder;
};

void measureLoop(benchmark::State &state, int angle, int crop)
{
    const Film film;
    IVideoTread camera;
    QEventLoop window;
    QObject::connect(&camera, &IVideoTread::sgImage, &window, &QEventLoop::quit);
    QObject::connect(&camera, &QThread::finished, &window,
                     [&camera] { camera.openCamera("0", "3264x2448", "15"); });
    camera.setRotateAngle(angle);
    cutMode = crop;
    camera.openCamera("0", "3264x2448", "15");
    for (int warmUp = 0; warmUp < 3; ++warmUp)
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

void measureDecoder(benchmark::State &state)
{
    std::vector<uchar> bytes = jpeg();
    const size_t length = bytes.size();
    bytes.resize(length + AV_INPUT_BUFFER_PADDING_SIZE);
    const AVCodec *codec = avcodec_find_decoder(AV_CODEC_ID_MJPEG);
    AVCodecContext *decoder = avcodec_alloc_context3(codec);
    avcodec_open2(decoder, codec, nullptr);
    AVPacket *packet = av_packet_alloc();
    AVFrame *picture = av_frame_alloc();
    for (auto _ : state) {
        packet->data = bytes.data();
        packet->size = static_cast<int>(length);
        const double before = processSeconds();
        if (avcodec_send_packet(decoder, packet) < 0 || avcodec_receive_frame(decoder, picture) < 0)
            state.SkipWithError("the picture cannot be decoded");
        state.SetIterationTime(processSeconds() - before);
    }
    av_frame_free(&picture);
    av_packet_free(&packet);
    avcodec_free_context(&decoder);
}

const auto &loop_upright_reference = measureDecoder;
const auto &loop_rotated_90_reference = measureDecoder;
const auto &loop_rotated_180_reference = measureDecoder;
const auto &loop_with_outlines_reference = measureDecoder;

void loop_upright(benchmark::State &state)
{
    measureLoop(state, 0, NoCrop);
}

void loop_rotated_90(benchmark::State &state)
{
    measureLoop(state, 90, NoCrop);
}

void loop_rotated_180(benchmark::State &state)
{
    measureLoop(state, 180, NoCrop);
}

void loop_with_outlines(benchmark::State &state)
{
    measureLoop(state, 0, AutomaticCrop);
}

BENCHMARK(loop_upright)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_upright_reference)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_rotated_90)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_rotated_90_reference)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_rotated_180)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_rotated_180_reference)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_with_outlines)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loop_with_outlines_reference)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
