#include "platform/stand_descriptor.h"
#include "platform/stand_platform.h"
#include "stand/render.h"
#include "support/files.h"
#include "support/stand_process.h"

#include <QLocalSocket>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <sys/stat.h>

namespace {

const QStringList kSmall{"--modes", "640x480@30, 640x480@7.5"};

/// Reads a camera's stream as fast or as slowly as the test asks for pictures.
class Stream
{
public:
    explicit Stream(const CaptureSource &source = StandPlatform().captureSource(0, "640x480", "30"))
    {
        m_socket.connectToServer(source.url.mid(5)); // without "unix:"
    }

    /// The next frame decoded, gray; empty when none comes or when it cannot be decoded.
    cv::Mat next()
    {
        static const QByteArray kEnd("\xff\xd9", 2);
        while (!m_bytes.contains(kEnd)) {
            if (!m_socket.waitForReadyRead(5000))
                return {};
            m_bytes += m_socket.readAll();
        }
        const int size = m_bytes.indexOf(kEnd) + kEnd.size();
        const cv::Mat picture = cv::imdecode(
            std::vector<uchar>(m_bytes.begin(), m_bytes.begin() + size), cv::IMREAD_GRAYSCALE);
        m_bytes.remove(0, size);
        return picture;
    }

private:
    QLocalSocket m_socket;
    QByteArray m_bytes;
};

double brightness(const cv::Mat &picture)
{
    return cv::mean(picture)[0];
}

double sharpness(const cv::Mat &picture)
{
    cv::Mat edges;
    cv::Laplacian(picture, edges, CV_32F);
    return cv::norm(edges, cv::NORM_L2);
}

} // namespace

TEST(Stand, EveryModeOpensAsTheProbeListsIt)
{
    StandProcess stand({"--assist", "--id", "12090007"});
    ASSERT_TRUE(stand.isReady()) << qPrintable(stand.answer());
    const StandPlatform platform;
    ASSERT_EQ(platform.cameras().size(), 2);
    EXPECT_TRUE(platform.cameras()[0].uniqueId.endsWith("12090007"));
    QProcess probe;
    probe.start(StandProcess::binaryFolder() + "/pictor-probe", {"0"});
    ASSERT_TRUE(probe.waitForFinished());
    const QStringList lines = QString::fromUtf8(probe.readAllStandardOutput()).split('\n');
    EXPECT_FALSE(lines.first().contains("fps"));
    EXPECT_EQ(lines.filter("fps").size(), 6);
    EXPECT_TRUE(lines.contains("[avfoundation @ 0x1] \t3264x2448@[15.000000 15.000000]fps"));
    for (const CameraMode &mode : platform.modes(0)) {
        const QString size = QString("%1x%2").arg(mode.size.width()).arg(mode.size.height());
        Stream stream(platform.captureSource(0, size, QString::number(mode.rate)));
        EXPECT_EQ(stream.next().size(), cv::Size(mode.size.width(), mode.size.height()));
    }
    probe.start(StandProcess::binaryFolder() + "/pictor-probe", {"7"});
    ASSERT_TRUE(probe.waitForFinished());
    EXPECT_EQ(probe.exitCode(), 1);
    EXPECT_TRUE(probe.readAllStandardOutput().isEmpty());
}

TEST(Stand, AStuckReaderHoldsUpNobodyAndLaterGetsTheNewestFrame)
{
    StandProcess stand(kSmall);
    Stream stuck, fast;
    const double page = brightness(stuck.next());
    for (int i = 0; i < 30; ++i)
        ASSERT_FALSE(fast.next().empty());
    ASSERT_TRUE(stand.command("scene empty"));
    cv::Mat seen = fast.next();
    for (int i = 0; i < 60 && brightness(seen) > page - 20; ++i)
        seen = fast.next();
    ASSERT_LT(brightness(seen), page - 20);
    // One old frame may have been under way; every frame after it is new, and whole.
    stuck.next();
    EXPECT_NEAR(brightness(stuck.next()), brightness(seen), 1);
}

TEST(Stand, AKilledStandIsNotListedAndItsPlaceIsTakenOver)
{
    StandProcess first(kSmall);
    EXPECT_EQ(StandPlatform().cameras().size(), 1);
    EXPECT_EQ(StandPlatform().modes(0).value(1).rate, 7.5);
    EXPECT_FALSE(StandProcess(kSmall).isReady());
    EXPECT_EQ(StandPlatform().cameras().size(), 1);
    first.kill();
    EXPECT_TRUE(QDir(standFolder()).exists());
    EXPECT_TRUE(StandPlatform().cameras().isEmpty());
    {
        StandProcess third(kSmall);
        EXPECT_TRUE(third.isReady());
        EXPECT_FALSE(Stream().next().empty());
    }
    EXPECT_FALSE(QDir(standFolder()).exists());
}

TEST(Stand, RefusesWrongOptionsAndAFolderThatOthersMayEnter)
{
    for (const char *wrong :
         {"--modes 640x480", "--modes 0x0@30", "--id 1209", "--modes 640x480@0", "--fly", "page"})
        EXPECT_FALSE(StandProcess(QString(wrong).split(' ')).isReady()) << wrong;
    ASSERT_TRUE(QDir().mkpath(standFolder()));
    ::chmod(QFile::encodeName(standFolder()), 0755);
    EXPECT_FALSE(StandProcess(kSmall).isReady());
    EXPECT_TRUE(QDir().rmdir(standFolder()));
}

TEST(Stand, DamageFramesOfAnotherSizeAndFocusPassAndEnd)
{
    StandProcess stand(kSmall);
    Stream stream;
    const cv::Mat good = stream.next();
    const auto isGood = [&](const cv::Mat &picture) {
        return picture.size() == good.size() && cv::norm(picture, good, cv::NORM_INF) < 40;
    };
    ASSERT_TRUE(stand.command("oddsize main 3"));
    int odd = 0;
    cv::Mat picture;
    for (int i = 0; i < 60 && (odd == 0 || !isGood(picture)); ++i) {
        picture = stream.next();
        odd += picture.size() == cv::Size(800, 600);
    }
    EXPECT_EQ(odd, 3);
    ASSERT_TRUE(stand.command("corrupt main 8"));
    bool wasBad = false;
    for (int i = 0; i < 60 && !(wasBad && isGood(picture)); ++i) {
        picture = stream.next();
        wasBad = wasBad || !isGood(picture);
    }
    EXPECT_TRUE(wasBad && isGood(picture));

    ASSERT_TRUE(StandPlatform().focus(0));
    const double sharp = sharpness(good);
    double least = sharp, now = 0;
    for (int i = 0; i < 90 && (least > 0.8 * sharp || now < 0.99 * sharp); ++i) {
        now = sharpness(stream.next());
        least = std::min(least, now);
    }
    EXPECT_LT(least, 0.8 * sharp);
    EXPECT_NEAR(now, sharp, 0.01 * sharp);

    StandPlatform platform;
    ASSERT_EQ(platform.controls(0).size(), standControls().size());
    EXPECT_FALSE(platform.setControl(0, CameraControl::Brightness, 1000));
    ASSERT_TRUE(platform.setControl(0, CameraControl::Brightness, 40));
    EXPECT_EQ(platform.controls(0)[0].value, 40);
    const double before = cv::mean(good)[0];
    now = 0;
    for (int i = 0; i < 90 && now < before + 5; ++i)
        now = cv::mean(stream.next())[0];
    EXPECT_GT(now, before + 5);
}

class StandFolder : public FolderTest
{
};

TEST_F(StandFolder, PicturesFollowTheirNames)
{
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(path("b.png")) && image.save(path("a.bmp")));
    writeFile(path("c.png"), "no picture");
    const std::vector<Scene> scenes = findScenes(m_dir.path());
    ASSERT_EQ(scenes.size(), 2u);
    EXPECT_EQ(scenes[0].name, "a.bmp");
    const cv::Vec3b centre = renderScene(scenes[1], {640, 480}).bgr.at<cv::Vec3b>(240, 320);
    EXPECT_GT(centre[2], centre[0] + 100);
    QString why;
    EXPECT_TRUE(findScenes(path("c.png"), &why).empty());
    EXPECT_FALSE(why.isEmpty());
}

TEST(Stand, EveryWrongCommandIsAnsweredByItsReason)
{
    StandProcess stand(kSmall);
    for (const char *line :
         {"scene nowhere", "press", "press dance", "press capture", "bytes 0g", "bytes f",
          "unplug assist", "stall main", "corrupt main -1", "corrupt main x", "scene assist card",
          "jump", "plug printer", "flicker 1000", "turn", "hand fast"})
    {
        EXPECT_FALSE(stand.command(line)) << line;
        EXPECT_TRUE(stand.answer().startsWith("error: ")) << line;
    }
    EXPECT_TRUE(stand.command("next")) << qPrintable(stand.answer());
}
