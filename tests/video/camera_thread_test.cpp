#include "app/state.h"
#include "support/fake_platform.h"
#include "support/files.h"
#include "support/stand_process.h"
#include "support/temporary_home.h"
#include "video/picture_sink.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <atomic>
#include <optional>
#include <sys/resource.h>

namespace {

constexpr int kTimeoutMs = 20000;
constexpr int kCloseMs = 1200;

/// A running stand and the main camera reading it.
class LiveCamera : public testing::Test
{
public:
    ~LiveCamera() override { cutMode = NoCrop; }

protected:
    LiveCamera()
    {
        EXPECT_TRUE(m_stand.isReady());
        QObject::connect(&m_camera, &IVideoTread::sgImage, [this](const QImage &image) {
            m_shown = image;
            ++m_images;
        });
    }

    void open(const char *size = "640x480") { m_camera.openCamera("0", size, "30"); }

    // Lets the event loop run until `condition` holds.
    static bool comesTrue(const std::function<bool()> &condition)
    {
        return QTest::qWaitFor(condition, kTimeoutMs);
    }

    uint64_t sequence() const
    {
        const FramePtr frame = m_camera.lastFrame();
        return frame ? frame->sequence : 0;
    }

    bool streams()
    {
        const uint64_t before = sequence();
        return comesTrue([&] { return sequence() > before + 2; });
    }

    std::string target(const char *name) const
    {
        return (m_home.path() + QLatin1Char('/') + QLatin1String(name)).toStdString();
    }

    const TemporaryHome m_home;
    StandProcess m_stand{{"--modes", "640x480@30,1280x720@30", "--assist"}};
    IVideoTread m_camera;
    QImage m_shown;
    int m_images = 0;
};

TEST_F(LiveCamera, ShowsTurnsAndCapturesThePicture)
{
    EXPECT_EQ(m_camera.CaptureImage(target("none.jpg").c_str(), false), "");
    open();
    EXPECT_FALSE(m_camera.hasEnded());
    ASSERT_TRUE(comesTrue([&] { return m_images > 1; }));
    EXPECT_TRUE(isOpenCamera);
    EXPECT_EQ(m_shown.size(), QSize(640, 480));
    EXPECT_EQ(m_shown.format(), QImage::Format_RGB888);

    const std::string file = target("page.png");
    EXPECT_EQ(m_camera.CaptureImage(file.c_str(), false), file);
    const cv::Mat upright = cv::imread(file);
    ASSERT_EQ(upright.size(), cv::Size(640, 480));

    for (const int angle : {90, 180, 270}) {
        m_camera.setRotateAngle(angle);
        cv::Mat back;
        cv::rotate(upright, back, angle / 90 - 1);   // in the order of cv::RotateFlags
        for (const bool isYounger : {true, false}) { // the turn, than the newest frame
            ASSERT_TRUE(isYounger || streams());
            ASSERT_EQ(m_camera.CaptureImage(file.c_str(), false), file);
            const cv::Mat picture = cv::imread(file);
            ASSERT_EQ(picture.size(), back.size());
            EXPECT_LT(cv::norm(picture, back, cv::NORM_L1) / back.total() / 3, 4) << angle;
        }
    }
    cutMode = AutomaticCrop;
    ASSERT_EQ(m_camera.CaptureImage(file.c_str(), false), file);
    EXPECT_LT(cv::imread(file).total(), upright.total()) << "the crop is younger than the frame";

    m_camera.setRotateAngle(45);
    ASSERT_TRUE(comesTrue([&, last = uint64_t{0}]() mutable {
        const uint64_t before = std::exchange(last, sequence());
        QTest::qWait(100); // several frames long
        return before == sequence();
    })) << "an odd angle freezes the picture";
    EXPECT_TRUE(m_camera.lastFrame());
    m_camera.setRotateAngle(0);
    EXPECT_TRUE(streams());
}

TEST_F(LiveCamera, KeepsOneImageForABusyWindow)
{
    open();
    ASSERT_TRUE(comesTrue([&] { return m_images > 1; }));
    const uint64_t first = sequence();
    const int before = m_images;
    const auto comesTrueUnattended = [](auto condition) { // the event loop stands still
        const QDeadlineTimer deadline(kTimeoutMs);
        while (!condition() && !deadline.hasExpired())
            QThread::msleep(10);
        return condition();
    };
    ASSERT_TRUE(comesTrueUnattended([&] { return sequence() >= first + 30; }));
    ASSERT_TRUE(m_stand.command("stall main on"));
    QElapsedTimer still;
    still.start();
    ASSERT_TRUE(comesTrueUnattended([&, last = sequence()]() mutable {
        if (std::exchange(last, sequence()) != sequence())
            still.start();
        return still.elapsed() > 200; // six pictures long
    }));
    EXPECT_EQ(m_images, before);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_images, before + 1) << "pictures queued up";
    EXPECT_EQ(m_shown.constBits(), m_camera.lastFrame()->pixels.data) << "not the newest one";
}

TEST_F(LiveCamera, ClosesASilentCameraInTime)
{
    const auto closesInTime = [this] {
        QElapsedTimer timer;
        timer.start();
        m_camera.closeCamera();
        EXPECT_LT(timer.elapsed(), kCloseMs);
        EXPECT_TRUE(m_camera.isFinished());
        EXPECT_FALSE(isOpenCamera);
        EXPECT_FALSE(m_camera.lastFrame());
        EXPECT_FALSE(m_camera.hasEnded());
        const int before = m_images;
        QCoreApplication::processEvents();
        EXPECT_EQ(m_images, before) << "a picture came after closing";
        EXPECT_FALSE(isOpenCamera);
    };
    open();
    ASSERT_TRUE(streams());
    closesInTime();
    open("1280x720");
    ASSERT_TRUE(comesTrue([&] { return m_shown.width() == 1280; }));
    ASSERT_TRUE(m_stand.command("stall main on"));
    closesInTime(); // while it waits for a picture
    open();
    closesInTime(); // while it waits for the first one
    ASSERT_TRUE(m_stand.command("stall main off"));
    open();
    open("1280x720"); // without closing
    EXPECT_TRUE(streams());
    EXPECT_EQ(m_camera.lastFrame()->width, 1280);
    EXPECT_TRUE(readLog().contains("closeCamera start") && readLog().contains("closeCamera end"));
}

TEST_F(LiveCamera, GivesUpAStreamThatIsSilentForLong)
{
    open();
    ASSERT_TRUE(streams());
    QSignalSpy silent(&m_camera, &CameraThread::sgSilent);
    ASSERT_TRUE(m_stand.command("stall main on"));
    EXPECT_TRUE(silent.wait(kTimeoutMs));
    EXPECT_TRUE(m_camera.hasEnded());
    EXPECT_FALSE(isOpenCamera);
    EXPECT_FALSE(m_camera.lastFrame());
    EXPECT_EQ(m_camera.CaptureImage(target("old.jpg").c_str(), false), "");
    EXPECT_FALSE(m_camera.lastCapture().error.empty());
    EXPECT_TRUE(comesTrue([&] { return readLog().contains("run end"); }));
}

TEST_F(LiveCamera, LeavesOutDamagedPicturesUntilTheyAreTooMany)
{
    open();
    ASSERT_TRUE(streams());
    cv::Mat good = m_camera.lastFrame()->pixels.clone();
    double worst = 0;
    QObject::connect(&m_camera, &IVideoTread::sgImage, [&](const QImage &image) {
        const cv::Mat shown(image.height(), image.width(), CV_8UC3,
                            const_cast<uchar *>(image.constBits()), size_t(image.bytesPerLine()));
        worst = shown.size() == good.size()
                    ? std::max(worst, cv::norm(shown, good, cv::NORM_L1) / double(good.total()))
                    : 1000;
    });
    for (int round = 0; round < 2; ++round) { // together they would be too many
        ASSERT_TRUE(m_stand.command("corrupt main 20"));
        const uint64_t before = sequence();
        ASSERT_TRUE(comesTrue([&] { return sequence() > before + 10; })) << round;
    }
    EXPECT_LT(worst, 6) << "a damaged picture was shown";
    EXPECT_FALSE(m_camera.hasEnded());
    ASSERT_TRUE(m_stand.command("corrupt main 100000"));
    EXPECT_TRUE(comesTrue([&] { return m_camera.hasEnded(); }));
    EXPECT_TRUE(readLog().contains("Decode Error.\n"));
}

// Keeps the length of the shortest picture it is given.
class ShortestPicture : public PictureSink
{
public:
    void take(const CameraPicture &picture) override
    {
        m_bytes = std::min(m_bytes.load(), picture.jpeg->bytes.size());
        ++m_count;
    }
    std::atomic<size_t> m_bytes{SIZE_MAX};
    std::atomic<int> m_count{0};
};

TEST_F(LiveCamera, LeavesOutThePictureThatAPulledPlugCutShort)
{
    std::vector<uchar> picture;
    ASSERT_TRUE(cv::imencode(".jpg", cv::Mat(480, 640, CV_8UC3, cv::Scalar(10, 90, 200)), picture));
    const QByteArray whole(reinterpret_cast<const char *>(picture.data()), int(picture.size()));
    QLocalServer camera;
    ASSERT_TRUE(camera.listen(m_home.path() + "/camera"));
    FakePlatform::install()->source = {"mjpeg", "unix:" + camera.fullServerName(), {}};
    const auto sink = std::make_shared<ShortestPicture>();
    m_camera.setPictureSink(sink);
    open();
    ASSERT_TRUE(camera.waitForNewConnection(kTimeoutMs));
    QLocalSocket *plug = camera.nextPendingConnection();
    plug->write(whole.repeated(20) + whole.left(whole.size() / 2));
    ASSERT_TRUE(comesTrue([&] { return sink->m_count >= 18; }));
    plug->disconnectFromServer();
    EXPECT_TRUE(comesTrue([&] { return m_camera.hasEnded(); }));
    EXPECT_EQ(sink->m_bytes, picture.size());
    setPlatform(nullptr);
}

TEST_F(LiveCamera, TakesAnotherSizeOnceTheStreamHasSettledOnIt)
{
    open();
    ASSERT_TRUE(streams());
    ASSERT_TRUE(m_stand.command("oddsize main 3"));
    const uint64_t before = sequence();
    ASSERT_TRUE(comesTrue([&] {
        EXPECT_EQ(m_camera.lastFrame()->width, 640);
        return sequence() > before + 10;
    }));
    op_width = 640;
    op_height = 480;
    m_camera.setManualCutRect(320, 0, 320, 240);
    ASSERT_TRUE(m_stand.command("oddsize main 100000"));
    ASSERT_TRUE(comesTrue([&] { return m_camera.lastFrame()->width != 640; }));
    const cv::Size size(m_camera.lastFrame()->width, m_camera.lastFrame()->height);
    cutMode = ManualCrop;
    const std::string file = target("part.png");
    EXPECT_EQ(m_camera.CaptureImage(file.c_str(), false), file);
    const cv::Mat part = cv::imread(file);
    EXPECT_NEAR(part.cols, size.width / 2, 4) << "the part that was marked";
    EXPECT_NEAR(part.rows, size.height / 2, 4);
    op_width = op_height = 0;
}

TEST_F(LiveCamera, ReportsACameraThatDoesNotOpen)
{
    for (const char *index : {"7", "-1", ""}) {
        QSignalSpy failed(&m_camera, &CameraThread::sgOpenFailed);
        m_camera.openCamera(index, "640x480", "30");
        EXPECT_TRUE(failed.wait(kTimeoutMs)) << index;
        EXPECT_TRUE(m_camera.hasEnded());
        EXPECT_FALSE(isOpenCamera);
        m_camera.closeCamera();
    }
    const QByteArray text = readLog();
    EXPECT_TRUE(text.contains("video= \r\n")) << "no description without a camera";
    const int tried = text.indexOf("avformat_open_input ok");
    const int refused = text.indexOf("Couldn't open file -");
    EXPECT_TRUE(tried >= 0 && tried < refused);
    EXPECT_GT(text.indexOf("Couldn't open input stream.\n"), refused);

    QSignalSpy failed(&m_camera, &CameraThread::sgOpenFailed);
    m_camera.openCamera("7", "640x480", "30");
    m_camera.wait();
    m_camera.closeCamera();
    QCoreApplication::processEvents();
    EXPECT_EQ(failed.count(), 0) << "closed before the news came";
}

/// The work of the decode thread on one frame, done by the test.
class OutlineKeeper : public IVideoTread
{
public:
    size_t outlinesOf(const cv::Mat &rgb, int angle)
    {
        Frame frame;
        frame.pixels = rgb;
        frame.width = rgb.cols;
        frame.height = rgb.rows;
        shown = finishFrame(frame, m_pool, {angle, true});
        return frame.outlines.size();
    }
    FramePtr shown;

private:
    FramePool m_pool{2, 2};
};

TEST(Outlines, AreDrawnForThePreviewAndStayUntilTheFrameLiesOtherwise)
{
    cv::Mat bare(480, 640, CV_8UC3, cv::Scalar::all(60)); // specks, each too small for a document
    for (int y = 20; y < bare.rows; y += 64) {
        for (int x = 20; x < bare.cols; x += 64)
            cv::rectangle(bare, {x, y, 24, 24}, cv::Scalar::all(120), cv::FILLED);
    }
    cv::Mat sheet = bare.clone();
    cv::rectangle(sheet, {200, 150, 200, 150}, cv::Scalar::all(120), cv::FILLED);
    OutlineKeeper camera;
    cutMode = MultiGraphCrop;
    ASSERT_EQ(camera.outlinesOf(bare, 0), 0u);
    EXPECT_EQ(camera.outlinesOf(sheet, 0), 1u);
    const auto greenPixels = [](const cv::Mat &rgb) {
        cv::Mat green;
        cv::inRange(rgb, cv::Scalar(0, 255, 0), cv::Scalar(0, 255, 0), green);
        return cv::countNonZero(green);
    };
    EXPECT_GT(greenPixels(camera.shown->pixels), 1000);
    EXPECT_EQ(greenPixels(sheet), 0) << "marked in the preview only";
    EXPECT_EQ(camera.outlinesOf(bare, 0), 1u) << "nothing found keeps what was found last";
    EXPECT_EQ(camera.outlinesOf(bare, 180), 0u) << "turned";
    EXPECT_EQ(camera.outlinesOf(sheet, 180), 1u);
    EXPECT_EQ(camera.outlinesOf(bare.rowRange(0, 400).clone(), 180), 0u) << "of another size";
    EXPECT_EQ(camera.outlinesOf(sheet, 180), 1u);
    cutMode = ManualCrop;
    EXPECT_EQ(camera.outlinesOf(sheet, 180), 0u);
    cutMode = AutomaticCrop;
    EXPECT_EQ(camera.outlinesOf(bare, 180), 0u);
    cutMode = NoCrop;
}

TEST_F(LiveCamera, CapturesAndCombinesTheAssistCamera)
{
    IVideoTwoThread assist;
    videoTwoThread = &assist;
    int images = 0;
    QObject::connect(&assist, &IVideoTwoThread::sgImageTwo, [&] { ++images; });
    EXPECT_EQ(assist.CaptureImage(target("none.jpg").c_str()), "");
    open("1280x720");
    ASSERT_TRUE(streams());
    EXPECT_EQ(m_camera.CombineMainAssistImage(target("none.jpg").c_str(), 0, 0, 64, 48), "");
    assist.openCamera("1", "640x480", "30");
    ASSERT_TRUE(comesTrue([&] { return images > 1; }));
    EXPECT_TRUE(isOpenCameraTwo);

    colorMode = ColorBinarization;
    const std::string blackAndWhite = target("assist.png");
    EXPECT_EQ(assist.CaptureImage(blackAndWhite.c_str()), blackAndWhite);
    colorMode = ColorOriginal;
    const cv::Mat picture = cv::imread(blackAndWhite, cv::IMREAD_UNCHANGED);
    ASSERT_EQ(picture.size(), cv::Size(640, 480));
    EXPECT_EQ(cv::countNonZero(picture == 0) + cv::countNonZero(picture == 255), 640 * 480);
    EXPECT_EQ(assist.CaptureImage("/nowhere/assist.jpg"), "");

    const std::string combined = target("combined.png");
    EXPECT_EQ(m_camera.CombineMainAssistImage(combined.c_str(), 100, 50, 320, 240), combined);
    const cv::Mat both = cv::imread(combined);
    cv::Mat expected;
    cv::resize(assist.lastFrame()->pixels, expected, {320, 240});
    cv::cvtColor(expected, expected, cv::COLOR_RGB2BGR);
    ASSERT_EQ(both.size(), cv::Size(1280, 720));
    EXPECT_LT(cv::norm(both({100, 50, 320, 240}), expected, cv::NORM_L1) / expected.total() / 3, 4);

    m_camera.setRotateAngle(90); // younger than the newest frame
    EXPECT_EQ(m_camera.CombineMainAssistImage(combined.c_str(), 0, 0, 64, 48), combined);
    EXPECT_EQ(cv::imread(combined).size(), cv::Size(720, 1280));

    const cv::Mat sharp = assist.lastFrame()->pixels.clone();
    EXPECT_TRUE(platform().focus(1));
    EXPECT_TRUE(comesTrue([&] {
        return cv::norm(assist.lastFrame()->pixels, sharp, cv::NORM_INF) > 0;
    })) << "the main camera focused";
    ASSERT_TRUE(m_stand.command("stall assist on"));
    ASSERT_TRUE(comesTrue([&] { return !assist.currentFrame(); }));
    EXPECT_EQ(assist.CaptureImage(blackAndWhite.c_str()), "") << "an old picture";
    assist.closeCamera();
    EXPECT_FALSE(isOpenCameraTwo);
    EXPECT_TRUE(isOpenCamera);
    EXPECT_EQ(m_camera.CombineMainAssistImage(combined.c_str(), 0, 0, 64, 48), "");
    EXPECT_TRUE(readLog().contains("openCameraTwo end") &&
                readLog().contains("closeCameraTwo start"));
    videoTwoThread = nullptr;
}

TEST_F(LiveCamera, SaysThatACameraIsSilentFromTheBeginning)
{
    ASSERT_TRUE(m_stand.command("stall main on"));
    QSignalSpy silent(&m_camera, &CameraThread::sgSilent);
    QSignalSpy failed(&m_camera, &CameraThread::sgOpenFailed);
    open();
    EXPECT_TRUE(silent.wait(kTimeoutMs));
    EXPECT_TRUE(m_camera.hasEnded());
    EXPECT_EQ(failed.count(), 0);
}

TEST_F(LiveCamera, GivesUpAStreamThatIsNoPicture)
{
    const QByteArray noise = "\xff\xd8\xff\xc0" + QByteArray(400, '\x01') + "\xff\xd9";
    FakePlatform::install()->source = {
        "mjpeg", writeFile(m_home.path() + "/noise.mjpeg", noise.repeated(200)), {}};
    open();
    EXPECT_TRUE(comesTrue([&] { return m_camera.hasEnded(); }));
    EXPECT_TRUE(readLog().contains("Decode Error.\n"));
    EXPECT_FALSE(isOpenCamera);

    const auto peakMb = [] {
        rusage usage = {};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss / 1024;
    };
    const long before = peakMb();
    FakePlatform::install()->source = {"mjpeg", "file:/dev/zero", {}};
    open();
    EXPECT_TRUE(comesTrue([&] { return m_camera.hasEnded(); }));
#ifndef __SANITIZE_THREAD__ // keeps several bytes for each
    EXPECT_LT(peakMb(), before + 200) << "data without an end";
#endif
    m_camera.closeCamera();
    setPlatform(nullptr);
}

} // namespace
