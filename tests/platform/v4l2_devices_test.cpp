#include "platform/v4l2_devices.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <linux/videodev2.h>
#include <map>

namespace {

constexpr quint32 kCapture = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
constexpr quint32 kMetadata = V4L2_CAP_META_CAPTURE | V4L2_CAP_STREAMING;

struct Tree : testing::Test
{
    QTemporaryDir sys;
    std::map<QString, quint32> caps; // by node name; the others cannot be asked

    void write(const QString &file, const QString &text) const
    {
        QFile target(sys.filePath(file));
        QDir().mkpath(QFileInfo(target.fileName()).path());
        ASSERT_TRUE(target.open(QIODevice::WriteOnly));
        target.write(text.toUtf8() + '\n');
    }
    void link(const QString &to, const QString &from) const
    {
        QDir().mkpath(QFileInfo(sys.filePath(from)).path());
        QFile::link(sys.filePath(to), sys.filePath(from));
    }
    // A node of device function `function` (a folder below devices/).
    void node(int number, const QString &function, int index, const QString &name) const
    {
        const QString video = QStringLiteral("video%1").arg(number);
        const QString folder = "devices/" + function + "/video4linux/" + video;
        write(folder + "/name", name);
        write(folder + "/index", QString::number(index));
        link("devices/" + function, folder + "/device");
        link(folder, "class/video4linux/" + video);
    }
    void usb(const QString &device, const QString &vendor, const QString &product,
             const QString &name) const
    {
        write("devices/" + device + "/idVendor", vendor);
        write("devices/" + device + "/idProduct", product);
        write("devices/" + device + "/product", name);
    }
    QStringList list() const
    {
        const auto ask = [this](const QString &node, const QString &) -> std::optional<quint32> {
            const auto known = caps.find(node.mid(5));
            return known == caps.end() ? std::nullopt : std::optional<quint32>(known->second);
        };
        QStringList lines;
        for (const V4l2Camera &camera : v4l2Cameras(sys.path(), ask))
            lines << camera.node + ' ' + camera.info.uniqueId + ' ' + camera.info.description;
        return lines;
    }
};

} // namespace

TEST_F(Tree, ACameraWithAMetadataNodeIsOneAlsoWhenItMayNotBeAsked)
{
    usb("pci0/usb1/1-1", "1234", "ABCD", "Desk camera");
    node(0, "pci0/usb1/1-1/1-1:1.0", 0, "Desk camera: Desk camera");
    node(1, "pci0/usb1/1-1/1-1:1.0", 1, "Desk camera: Desk camera");
    const QStringList one{"/dev/video0 1-1:1.0-1234abcd Desk camera"};
    EXPECT_EQ(list(), one);
    caps = {{"video0", kCapture}, {"video1", kMetadata}};
    EXPECT_EQ(list(), one);
}

TEST_F(Tree, EqualCamerasAreOrderedByPortAndToldApart)
{
    const QString bus = "pci0/usb1/";
    const auto plug = [this](int number, const QString &device, const QString &port) {
        usb(device, "1209", "0002", "Stand");
        node(number, device + '/' + port + ":1.0", 0, "Stand: Stand");
    };
    plug(0, bus + "1-10", "1-10");
    plug(2, bus + "1-3/1-3.4", "1-3.4"); // on a hub
    plug(4, bus + "1-2", "1-2");
    const QStringList expected{"/dev/video4 1-2:1.0-12090002 Stand",
                               "/dev/video2 1-3.4:1.0-12090002 Stand",
                               "/dev/video0 1-10:1.0-12090002 Stand"};
    EXPECT_EQ(list(), expected);
}

TEST_F(Tree, BuiltInWebcamWithInfraredStandsBeforeTheDocumentCamera)
{
    usb("pci0/usb1/1-6", "04f2", "b6be", "Integrated Camera");
    node(0, "pci0/usb1/1-6/1-6:1.0", 0, "Integrated Camera: Integrated C");
    node(2, "pci0/usb1/1-6/1-6:1.2", 0, "Integrated Camera: Integrated I");
    usb("pci0/usb3/3-1", "1209", "0002", "Stand");
    node(1, "pci0/usb3/3-1/3-1:1.0", 0, "Stand: Stand");
    const QStringList expected{"/dev/video0 1-6:1.0-04f2b6be Integrated Camera",
                               "/dev/video2 1-6:1.2-04f2b6be Integrated Camera",
                               "/dev/video1 3-1:1.0-12090002 Stand"};
    EXPECT_EQ(list(), expected);
}

TEST_F(Tree, OfAVirtualDriversNodesOnlyCaptureIsACamera)
{
    node(0, "platform/vivid.0", 0, "vivid-000-vid-cap");
    node(1, "platform/vivid.0", 1, "vivid-000-vid-out");
    node(2, "platform/vivid.0", 2, "vivid-000-touch-cap");
    caps = {{"video0", kCapture},
            {"video1", V4L2_CAP_VIDEO_OUTPUT},
            {"video2", V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_TOUCH}};
    EXPECT_EQ(list(), QStringList{"/dev/video0 vivid.0-00000000 vivid-000-vid-cap"});
}

TEST_F(Tree, ANodeThatVanishesWhileItIsReadIsLeftOut)
{
    usb("pci0/usb1/1-1", "1234", "abcd", "Desk camera");
    node(0, "pci0/usb1/1-1/1-1:1.0", 0, "Desk camera: Desk camera");
    link("devices/gone", "class/video4linux/video5"); // dangles
    write("devices/half/video4linux/video6/index", "0");
    link("devices/half/video4linux/video6", "class/video4linux/video6"); // name and device gone
    EXPECT_EQ(list().size(), 1);
    QDir(sys.filePath("class")).removeRecursively();
    EXPECT_EQ(list().size(), 0);
}
