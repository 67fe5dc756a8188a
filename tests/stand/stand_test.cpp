#include "platform/stand_descriptor.h"
#include "platform/stand_platform.h"
#include "stand/mjpeg_reader.h"
#include "support/stand_process.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSerialPort>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <sys/stat.h>

namespace {

const QStringList kSmall{"--modes", "640x480@30"};

QString socketOf(int camera, int mode = 0)
{
    QList<StandDevice> devices = standDevices();
    return devices.value(camera).modes.value(mode).socket;
}

double brightness(const cv::Mat &picture)
{
    return cv::mean(picture)[0];
}

double sharpness(const cv::Mat &picture)
{
    cv::Mat edges;
    cv::Laplacian(picture, edges, CV_32F);
    cv::Scalar mean, deviation;
    cv::meanStdDev(edges, mean, deviation);
    return deviation[0];
}

// Size of the first picture that libavformat and libavcodec make of `source`.
QSize firstPictureSize(const CaptureSource &source)
{
    AVDictionary *options = nullptr;
    for (const auto &option : source.options)
        av_dict_set(&options, qPrintable(option.first), qPrintable(option.second), 0);
    AVFormatContext *format = nullptr;
    const int opened = avformat_open_input(
        &format, qPrintable(source.url), av_find_input_format(qPrintable(source.format)), &options);
    av_dict_free(&options);
    if (opened < 0)
        return {};
    avformat_find_stream_info(format, nullptr);
    const AVCodecParameters *stream = format->streams[0]->codecpar;
    AVCodecContext *codec = avcodec_alloc_context3(avcodec_find_decoder(stream->codec_id));
    avcodec_parameters_to_context(codec, stream);
    avcodec_open2(codec, codec->codec, nullptr);
    AVPacket *packet = av_packet_alloc();
    AVFrame *frame = av_frame_alloc();
    while (frame->width == 0 && av_read_frame(format, packet) >= 0) {
        avcodec_send_packet(codec, packet);
        avcodec_receive_frame(codec, frame);
        av_packet_unref(packet);
    }
    const QSize size(frame->width, frame->height);
    av_frame_free(&frame);
    av_packet_free(&packet);
    avcodec_free_context(&codec);
    avformat_close_input(&format);
    return size;
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
        const CaptureSource source = platform.captureSource(0, size, QString::number(mode.rate));
        EXPECT_EQ(firstPictureSize(source), mode.size);
    }
    QProcess wrong;
    wrong.start(StandProcess::binaryFolder() + "/pictor-probe", {"7"});
    ASSERT_TRUE(wrong.waitForFinished());
    EXPECT_EQ(wrong.exitCode(), 1);
    EXPECT_TRUE(wrong.readAllStandardOutput().isEmpty());
}

TEST(Stand, AStuckReaderHoldsUpNobodyAndLaterGetsTheNewestFrame)
{
    StandProcess stand(kSmall);
    MjpegReader stuck(socketOf(0)), fast(socketOf(0));
    const double page = brightness(stuck.nextPicture());
    for (int i = 0; i < 30; ++i)
        ASSERT_FALSE(fast.nextJpeg().isEmpty());
    ASSERT_TRUE(stand.command("scene empty"));
    cv::Mat seen = fast.nextPicture();
    for (int i = 0; i < 60 && brightness(seen) > page - 20; ++i)
        seen = fast.nextPicture();
    ASSERT_LT(brightness(seen), page - 20);
    // One old frame may have been under way; every frame after it is new, and whole.
    stuck.nextJpeg();
    EXPECT_NEAR(brightness(stuck.nextPicture()), brightness(seen), 1);
}

TEST(Stand, UnpluggedDevicesVanishAndComeBack)
{
    StandProcess stand(kSmall + QStringList{"--assist"});
    const StandPlatform platform;
    for (int round = 0; round < 2; ++round) {
        MjpegReader reader(socketOf(0));
        ASSERT_FALSE(reader.nextJpeg().isEmpty());
        ASSERT_TRUE(stand.command("unplug main"));
        EXPECT_TRUE(reader.waitForEnd());
        ASSERT_EQ(platform.cameras().size(), 1);
        EXPECT_TRUE(platform.cameras()[0].uniqueId.endsWith("120900a1"));
        ASSERT_TRUE(stand.command("plug main"));
        EXPECT_EQ(platform.cameras().size(), 2);
    }
}

TEST(Stand, AKilledStandIsNotListedAndItsPlaceIsTakenOver)
{
    StandProcess first(kSmall);
    EXPECT_EQ(StandPlatform().cameras().size(), 1);
    StandProcess second(kSmall);
    EXPECT_FALSE(second.isReady());
    EXPECT_EQ(StandPlatform().cameras().size(), 1);
    first.kill();
    EXPECT_TRUE(QDir(standFolder()).exists());
    EXPECT_TRUE(StandPlatform().cameras().isEmpty());
    {
        StandProcess third(kSmall);
        EXPECT_TRUE(third.isReady());
        EXPECT_FALSE(MjpegReader(socketOf(0)).nextJpeg().isEmpty());
    }
    EXPECT_FALSE(QDir(standFolder()).exists());
}

TEST(Stand, RefusesAFolderThatOthersMayEnter)
{
    ASSERT_TRUE(QDir().mkpath(standFolder()));
    ::chmod(QFile::encodeName(standFolder()), 0755);
    EXPECT_FALSE(StandProcess(kSmall).isReady());
    EXPECT_TRUE(QDir().rmdir(standFolder()));
}

TEST(Stand, DamagedAndMissizedFramesAreCounted)
{
    StandProcess stand(kSmall);
    MjpegReader reader(socketOf(0));
    const cv::Mat good = reader.nextPicture();
    ASSERT_EQ(good.size(), cv::Size(640, 480));
    ASSERT_TRUE(stand.command("oddsize main 3"));
    int odd = 0;
    cv::Mat picture;
    for (int i = 0; i < 60 && (odd == 0 || picture.size() != good.size()); ++i) {
        picture = reader.nextPicture();
        odd += picture.size() == cv::Size(800, 600);
    }
    EXPECT_EQ(odd, 3);
    ASSERT_TRUE(stand.command("corrupt main 8"));
    bool wasBad = false, isGoodAgain = false;
    for (int i = 0; i < 60 && !isGoodAgain; ++i) {
        picture = reader.nextPicture();
        const bool isBad =
            picture.size() != good.size() || cv::norm(picture, good, cv::NORM_INF) > 40;
        isGoodAgain = wasBad && !isBad;
        wasBad = wasBad || isBad;
    }
    EXPECT_TRUE(isGoodAgain);
}

TEST(Stand, AStalledCameraStaysConnectedAndSilent)
{
    StandProcess stand(kSmall);
    MjpegReader reader(socketOf(0));
    ASSERT_FALSE(reader.nextJpeg().isEmpty());
    ASSERT_TRUE(stand.command("stall main on"));
    while (!reader.nextJpeg(300).isEmpty()) {
    }
    EXPECT_FALSE(reader.waitForEnd(200));
    EXPECT_EQ(StandPlatform().cameras().size(), 1);
    ASSERT_TRUE(stand.command("stall main off"));
    EXPECT_FALSE(reader.nextJpeg().isEmpty());
}

TEST(Stand, FocusBlursAndSharpensThePicture)
{
    StandProcess stand(kSmall);
    MjpegReader reader(socketOf(0));
    const double sharp = sharpness(reader.nextPicture());
    ASSERT_TRUE(StandPlatform().focus(0));
    double least = sharp, now = 0;
    for (int i = 0; i < 90 && (least > 0.8 * sharp || now < 0.99 * sharp); ++i) {
        now = sharpness(reader.nextPicture());
        least = std::min(least, now);
    }
    EXPECT_LT(least, 0.8 * sharp);
    EXPECT_NEAR(now, sharp, 0.01 * sharp);
}

TEST(Stand, ButtonsArriveOnTheSerialLine)
{
    StandProcess stand(kSmall);
    const QList<SerialPortEntry> ports = StandPlatform().serialPorts();
    ASSERT_EQ(ports.size(), 1);
    EXPECT_TRUE(StandPlatform().isButtonAdapter(ports[0]));
    EXPECT_FALSE(stand.command("press capture")) << "nobody listens yet";
    QSerialPort line(ports[0].location);
    ASSERT_TRUE(line.open(QIODevice::ReadWrite));
    EXPECT_TRUE(line.setBaudRate(9600));
    const auto readBytes = [&line](int count) {
        while (line.bytesAvailable() < count && line.waitForReadyRead(3000)) {
        }
        return line.readAll().toHex();
    };
    const QList<QPair<QString, QByteArray>> frames{
        {"capture", "ffaac581e41b4c"},      {"rotate-left", "ffaac581ec134c"},
        {"rotate-right", "ffaac581ee114c"}, {"zoom-in", "ffaac581e01f4c"},
        {"zoom-out", "ffaac581e21d4c"},     {"true-size", "ffaac581ea154c"},
        {"fit", "ffaac581e8174c"},          {"restart", "ffaac581e6194c"}};
    for (const auto &frame : frames) {
        ASSERT_TRUE(stand.command("press " + frame.first));
        EXPECT_EQ(readBytes(7), frame.second);
    }
    // Control characters pass unchanged, and more than the terminal holds arrives whole.
    QByteArray all;
    for (int i = 0; i < 20000; ++i)
        all.append(static_cast<char>(i));
    ASSERT_TRUE(stand.command("bytes " + all.toHex()));
    EXPECT_EQ(readBytes(all.size()), all.toHex());
    ASSERT_TRUE(stand.command("unplug buttons"));
    EXPECT_TRUE(StandPlatform().serialPorts().isEmpty());
    EXPECT_FALSE(line.waitForReadyRead(3000));
    EXPECT_NE(line.error(), QSerialPort::NoError);
    EXPECT_NE(line.error(), QSerialPort::TimeoutError);
}

TEST(Stand, EveryWrongCommandIsAnsweredByItsReason)
{
    StandProcess stand(kSmall);
    for (const char *line : {"scene nowhere", "press", "press dance", "bytes 0g", "bytes f",
                             "unplug assist", "stall main", "corrupt main -1", "corrupt main x",
                             "scene assist card", "jump", "plug printer"})
    {
        EXPECT_FALSE(stand.command(line)) << line;
        EXPECT_TRUE(stand.answer().startsWith("error: ")) << line;
    }
    EXPECT_TRUE(stand.command("next")) << qPrintable(stand.answer());
}
