#include "platform/avfoundation_platform.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace {

RecordRequest request(const QString &audio, const QString &target)
{
    return {"/App/ffmpeg", 0, "1", audio, "30", target};
}

} // namespace

TEST(AvfoundationPlatform, CommandsAndSourcesNameTheDeviceAndKeepPathsWhole)
{
    const AvfoundationPlatform mac;
    EXPECT_EQ(mac.probeCommand("/App/ffmpeg", 2), "/App/ffmpeg -f avfoundation -i \"2\"");
    EXPECT_EQ(mac.deviceListCommand("/App/ffmpeg"),
              "/App/ffmpeg -f avfoundation -list_devices true -i 0 ");
    EXPECT_EQ(mac.recordCommand(request("", "/v/a.mov")),
              "/App/ffmpeg -f avfoundation -i 1 -r 30 /v/a.mov");
    EXPECT_EQ(mac.recordCommand(request("3", "/v/a.mov")),
              "/App/ffmpeg -f avfoundation -i 1:3 -b 40000K -ab 256K -vsync 2 /v/a.mov");
    const QString ffmpeg = "/My Apps/ffmpeg", target = "/v/Miss \"O\" Grün/a.mov";
    EXPECT_EQ(QProcess::splitCommand(mac.probeCommand(ffmpeg, 0)).first(), ffmpeg);
    EXPECT_EQ(QProcess::splitCommand(mac.recordCommand(request("", target))).last(), target);

    const CaptureSource source = mac.captureSource(1, "1920x1080", "30");
    const QList<QPair<QString, QString>> options{{"video_size", "1920x1080"}, {"framerate", "30"}};
    EXPECT_EQ(source.format + ' ' + source.url, "avfoundation 1");
    EXPECT_EQ(source.options, options);
}

TEST(AvfoundationPlatform, ButtonAdapterIsTheCallInDeviceOfAUsbSerialPort)
{
    const auto isAdapter = [](const char *name) {
        return AvfoundationPlatform().isButtonAdapter({name, {}, {}, {}, {}});
    };
    EXPECT_TRUE(isAdapter("tty.usbserial-1410"));
    EXPECT_TRUE(isAdapter("tty.wchusbserial141410"));
    EXPECT_FALSE(isAdapter("cu.usbserial-1410"));
    EXPECT_FALSE(isAdapter("tty.USBserial-1410"));
    EXPECT_FALSE(isAdapter("ttyUSB0"));
}
