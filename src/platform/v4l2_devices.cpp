#include "platform/v4l2_devices.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <linux/videodev2.h>

namespace {

constexpr int kNumberWidth = 8; // digits to which numbers in a sort key are filled up

struct Node
{
    V4l2Camera camera;
    QString function; // folder of the device function that the node belongs to
    QString order;
};

QString fileText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

// `text` with every number as wide as any other, so that port 2 comes before port 10.
QString sortKey(const QString &text)
{
    QString key, number;
    const auto flush = [&key, &number] {
        key += number.isEmpty() ? number : number.rightJustified(kNumberWidth, QLatin1Char('0'));
        number.clear();
    };
    for (const QChar c : text) {
        if (c.isDigit()) {
            number += c;
            continue;
        }
        flush();
        key += c;
    }
    flush();
    return key;
}

// Drivers double the product name: "Camera: Camera".
QString singleName(const QString &name)
{
    const int colon = name.indexOf(QLatin1String(": "));
    const bool isDoubled = colon > 0 && name.left(colon).startsWith(name.mid(colon + 2));
    return isDoubled ? name.left(colon) : name;
}

bool isCapture(const QString &node, const QString &folder, const V4l2Capabilities &capabilities)
{
    if (const auto caps = capabilities(node, folder))
        return (*caps & V4L2_CAP_VIDEO_CAPTURE) && !(*caps & V4L2_CAP_TOUCH);
    return fileText(folder + QStringLiteral("/index")) == QLatin1String("0");
}

// A node that vanishes meanwhile leaves empty texts behind and is left out.
std::optional<Node> describe(const QString &folder, const V4l2Capabilities &capabilities)
{
    Node node;
    node.camera.folder = folder;
    node.camera.node = QStringLiteral("/dev/") + QFileInfo(folder).fileName();
    node.function = QFileInfo(folder + QStringLiteral("/device")).canonicalFilePath();
    const QString name = fileText(folder + QStringLiteral("/name"));
    if (node.function.isEmpty() || name.isEmpty() ||
        !isCapture(node.camera.node, folder, capabilities))
        return {};
    const QString usb = QFileInfo(node.function).path();
    const QString vendor = fileText(usb + QStringLiteral("/idVendor")).toLower();
    const QString product = fileText(usb + QStringLiteral("/idProduct")).toLower();
    const bool isUsb = vendor.size() == 4 && product.size() == 4;
    const QString productName = isUsb ? fileText(usb + QStringLiteral("/product")) : QString();
    const QString place = QFileInfo(node.function).fileName();
    node.camera.info.description = productName.isEmpty() ? singleName(name) : productName;
    node.camera.info.uniqueId =
        place + QLatin1Char('-') + (isUsb ? vendor + product : QStringLiteral("00000000"));
    node.order = sortKey(node.function) + QLatin1Char('/') + sortKey(node.camera.node);
    return node;
}

} // namespace

QList<V4l2Camera> v4l2Cameras(const QString &sysfs, const V4l2Capabilities &capabilities)
{
    const QDir folder(sysfs + QStringLiteral("/class/video4linux"));
    QList<Node> nodes;
    const QStringList names =
        folder.entryList({QStringLiteral("video*")}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const QString path = QFileInfo(folder.filePath(name)).canonicalFilePath();
        const auto node = path.isEmpty() ? std::nullopt : describe(path, capabilities);
        if (node)
            nodes.append(*node);
    }
    std::sort(nodes.begin(), nodes.end(),
              [](const Node &a, const Node &b) { return a.order < b.order; });
    QList<V4l2Camera> cameras;
    QSet<QString> functions;
    for (const Node &node : nodes) {
        if (!functions.contains(node.function))
            cameras.append(node.camera);
        functions.insert(node.function);
    }
    return cameras;
}
