#include "platform/avfoundation_platform.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace {

RecordRequest request(const QString &audio, const QString &target)
{
    RecordRequest r;
    r.ffmpeg = QStringLiteral("/App/ffmpeg");
    r.videoDevice = QStringLiteral("1");
    r.audioDevice = audio;
    r.rate = QStringLiteral("30");
    r.target = target;
    return r;
}

} // namespace

TEST(AvfoundationPlatform, CommandTexts)
{
    const AvfoundationPlatform mac;
    EXPECT_EQ(mac.probeCommand("/App/ffmpeg", 2), "/App/ffmpeg -f avfoundation -i \"2\"");
    EXPECT_EQ(mac.deviceListCommand("/App/ffmpeg"),
              "/App/ffmpeg -f avfoundation -list_devices true -i 0 ");
    EXPECT_EQ(mac.recordCommand(request("", "/v/a.mov")),
              "/App/ffmpeg -f avfoundation -i 1 -r 30 /v/a.mov");
    EXPECT_EQ(mac.recordCommand(request("3", "/v/a.mov")),
              "/App/ffmpeg -f avfoundation -i 1:3 -b 40000K -ab 256K -vsync 2 /v/a.mov");
}

TEST(AvfoundationPlatform, BlanksAndQuotesInPathsDoNotSplitTheCommand)
{
    const AvfoundationPlatform mac;
    const QString ffmpeg = "/My Apps/ffmpeg", target = "/v/Miss \"O\" Grün/a.mov";
    EXPECT_EQ(QProcess::splitCommand(mac.probeCommand(ffmpeg, 0)),
              QStringList({ffmpeg, "-f", "avfoundation", "-i", "0"}));
    EXPECT_EQ(QProcess::splitCommand(mac.recordCommand(request("", target))).last(), target);
}

TEST(AvfoundationPlatform, OpensTheCameraByItsIndex)
{
    const CaptureSource source = AvfoundationPlatform().captureSource(1, "1920x1080", "30");
    const QList<QPair<QString, QString>> options{{"video_size", "1920x1080"}, {"framerate", "30"}};
    EXPECT_EQ(source.format, "avfoundation");
    EXPECT_EQ(source.url, "1");
    EXPECT_EQ(source.options, options);
}

TEST(AvfoundationPlatform, ButtonAdapterIsTheCallInDeviceOfAUsbSerialPort)
{
    const AvfoundationPlatform mac;
    const auto isAdapter = [&](const char *name) {
        SerialPortEntry port;
        port.name = name;
        return mac.isButtonAdapter(port);
    };
    EXPECT_TRUE(isAdapter("tty.usbserial-1410"));
    EXPECT_TRUE(isAdapter("tty.wchusbserial141410"));
    EXPECT_FALSE(isAdapter("cu.usbserial-1410"));
    EXPECT_FALSE(isAdapter("tty.USBserial-1410"));
    EXPECT_FALSE(isAdapter("ttyUSB0"));
}
