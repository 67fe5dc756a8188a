// What a user waits for with a camera that runs at its rate: from a picture's sending to its place
// on the screen, and from a press to the whole file.
#include "app/state.h"
#include "benchmarks/camera_pictures.h"
#include "benchmarks/no_fsync.h"
#include "imaging/save_options.h"
#include "stand/stream_server.h"
#include "tests/support/fake_platform.h"
#include "video/gr_cam_item.h"
#include "video/gr_view.h"
#include "video/video_thread.h"

#include <QEventLoop>
#include <QGraphicsScene>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <cstring>

namespace {

using Clock = std::chrono::steady_clock;

const QSize kWindow(800, 600); // into which the picture is fitted
constexpr int kWarmUp = 10;    // pictures
constexpr double kScreenRefresh = 1.0 / 60;
constexpr double kDecodesMax = 1.2;

struct Mode
{
    cv::Size size;
    double rate;
};

const Mode kModes[] = {{{1920, 1080}, 30}, {{3264, 2448}, 15}, {{5344, 4016}, 8}};

const std::vector<uchar> &picture(const Mode &mode)
{
    static std::map<int, std::vector<uchar>> pictures;
    std::vector<uchar> &jpeg = pictures[mode.size.width];
    if (jpeg.empty())
        jpeg = sentByCamera(mode.size);
    return jpeg;
}

/// Stamps each picture with the time at which it is sent, in a comment behind its first marker.
///
/// A reader of a raw stream knows that a picture is over when the next one begins, a period later.
/// A camera tells it at once, so each picture is followed by the beginning of the next: start
/// marker, and one of the fill bytes that any marker may have.
class StampedFeed : public FrameFeed
{
public:
    explicit StampedFeed(const std::vector<uchar> &jpeg)
        : m_jpeg(jpeg)
    {
    }

    Jpeg nextFrame(size_t) override
    {
        const Clock::rep now = Clock::now().time_since_epoch().count();
        const auto stamped = std::make_shared<std::vector<uchar>>();
        stamped->reserve(m_jpeg.size() + 64);
        stamped->assign({kComment, 0, kStampAt - 1 + sizeof now});
        const auto *const bytes = reinterpret_cast<const uchar *>(&now);
        stamped->insert(stamped->end(), bytes, bytes + sizeof now);
        stamped->insert(stamped->end(), m_jpeg.begin() + kMarker, m_jpeg.end());
        for (const uchar byte : {0xFF, 0xD8, 0xFF, 0xFF})
            stamped->push_back(byte);
        return stamped;
    }

    void setReaders(size_t, int) override {}

    static Clock::time_point sent(const std::vector<uchar> &jpeg)
    {
        Clock::rep time = 0;
        const auto comment = std::find(jpeg.begin(), jpeg.end(), kComment);
        std::memcpy(&time, &*comment + kStampAt, sizeof time);
        return Clock::time_point(Clock::duration(time));
    }

private:
    static constexpr int kMarker = 2; // bytes of the start marker
    static constexpr uchar kComment = 0xFE;
    static constexpr size_t kStampAt = 3; // bytes, behind the comment's mark and length

    const std::vector<uchar> &m_jpeg;
};

/// A camera at its rate, with a window's view that shows it.
class Live
{
public:
    explicit Live(const Mode &mode)
        : m_feed(picture(mode))
        , m_server({{path(), mode.rate}}, m_feed)
        , m_view(std::make_unique<Gr_View>())
    {
        isoutlog = false;
        FakePlatform::install()->source = {
            QStringLiteral("mjpeg"),
            QStringLiteral("unix:") + QString::fromStdString(path()),
            {{QStringLiteral("raw_packet_size"), QStringLiteral("65536")}}};
        SceneShowWidth = kWindow.width();
        SceneShowHeight = kWindow.height();
        op_width = mode.size.width;
        op_height = mode.size.height;
        m_scene.setSceneRect(QRectF(QPointF(), kWindow));
        m_scene.addItem(&m_item);
        m_view->setScene(&m_scene);
        m_view->setCamItem(&m_item);
        m_view->resize(kWindow);
        m_view->CalculateSuitableShowSize(mode.size.width, mode.size.height);
        m_view->show();
        QObject::connect(&m_camera, &IVideoTread::sgImage, &m_loop, [this](const QImage &image) {
            m_item.SetQImage(image);
            m_view->viewport()->repaint();
            m_painted = Clock::now();
            m_loop.quit();
        });
        m_camera.setShownSize(kWindow);
        m_camera.openCamera("0", QStringLiteral("%1x%2").arg(op_width).arg(op_height).toStdString(),
                            std::to_string(static_cast<int>(mode.rate)));
        for (int i = 0; i < kWarmUp; ++i)
            latency();
    }

    ~Live()
    {
        m_camera.closeCamera();
        m_scene.removeItem(&m_item);
        setPlatform(nullptr);
    }

    Live(const Live &) = delete;
    Live &operator=(const Live &) = delete;

    /// Seconds from the sending of the next picture until it was painted.
    double latency()
    {
        m_loop.exec();
        const FramePtr frame = m_camera.lastFrame();
        return std::chrono::duration<double>(m_painted -
                                             StampedFeed::sent(frame->compressed->bytes))
            .count();
    }

    std::string capture()
    {
        return m_camera.CaptureImage(m_folder.filePath("page.jpg").toUtf8(), false);
    }

private:
    std::string path() const { return m_folder.filePath(QStringLiteral("camera")).toStdString(); }

    const QTemporaryDir m_folder;
    StampedFeed m_feed;
    StreamServer m_server;
    QEventLoop m_loop;
    QGraphicsScene m_scene;
    Gr_CamItem m_item;
    std::unique_ptr<Gr_View> m_view;
    Clock::time_point m_painted;
    IVideoTread m_camera;
};

void latency(benchmark::State &state, const Mode &mode)
{
    Live live(mode);
    for (auto _ : state)
        state.SetIterationTime(live.latency());
}

// What it may be: 1.2 times the decoding of the whole picture, and the wait for the screen.
void latencyReference(benchmark::State &state, const Mode &mode)
{
    PlainDecoder decoder(picture(mode));
    for (auto _ : state) {
        const auto before = Clock::now();
        if (!decoder.decode())
            state.SkipWithError("the picture cannot be decoded");
        const std::chrono::duration<double> taken = Clock::now() - before;
        state.SetIterationTime(kDecodesMax * taken.count() + kScreenRefresh);
    }
}

// From the press to the whole file, the decoding of all pixels included, while the picture runs.
void press(benchmark::State &state, const Mode &mode)
{
    Live live(mode);
    for (auto _ : state) {
        const auto before = Clock::now();
        if (live.capture().empty())
            state.SkipWithError("nothing was captured");
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - before).count());
        live.latency(); // in step with the camera
    }
}

void pressReference(benchmark::State &state, const Mode &mode)
{
    const cv::Mat bgr = cv::imdecode(picture(mode), cv::IMREAD_COLOR);
    const SaveOptions save = currentSaveOptions();
    for (auto _ : state) {
        const auto before = Clock::now();
        std::vector<uchar> bytes;
        cv::imencode(".jpg", bgr, bytes, {cv::IMWRITE_JPEG_QUALITY, save.quality});
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - before).count());
    }
}

const bool registered = [] {
    const auto add = [](const std::string &name, const Mode &mode, auto *measure) {
        benchmark::RegisterBenchmark(name.c_str(), measure, mode)
            ->UseManualTime()
            ->Iterations(30)
            ->Unit(benchmark::kMillisecond);
    };
    for (const Mode &mode : kModes) {
        const std::string size = std::to_string((mode.size.area() + 500000) / 1000000) + "mp";
        add("latency_" + size, mode, latency);
        add("latency_" + size + "_reference", mode, latencyReference);
        add("press_jpg_" + size, mode, press);
        add("press_jpg_" + size + "_reference", mode, pressReference);
    }
    return true;
}();

} // namespace
