#include "platform/stand_platform.h"

#include "app/descriptors.h"
#include "platform/fed_recording.h"
#include "platform/stand_descriptor.h"

#include <QFile>

#include <algorithm>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

QList<StandDevice> devicesOfKind(StandDevice::Kind kind)
{
    QList<StandDevice> list = standDevices();
    list.erase(std::remove_if(list.begin(), list.end(),
                              [kind](const StandDevice &device) { return device.kind != kind; }),
               list.end());
    return list;
}

QString sizeText(const QSize &size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

// The mode of the given size; of several the one whose whole rate is `rate`, else the first.
StandMode matchingMode(const QList<StandMode> &modes, const QString &size, const QString &rate)
{
    StandMode match;
    for (const StandMode &mode : modes) {
        if (sizeText(mode.mode.size) != size)
            continue;
        const bool sameRate = QString::number(static_cast<int>(mode.mode.rate)) == rate;
        if (match.socket.isEmpty() || sameRate)
            match = mode;
        if (sameRate)
            break;
    }
    return match;
}

// Sends one command to the stand and waits, half a second at most, for its answer; empty for none.
QByteArray answerTo(const QByteArray &command)
{
    const QByteArray path = QFile::encodeName(standControlSocket(standFolder()));
    sockaddr_un address = {};
    if (path.size() >= static_cast<int>(sizeof(address.sun_path)))
        return {};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    const int file = openLocalSocket();
    if (file < 0)
        return {};
    const timeval limit = {0, 500000};
    ::setsockopt(file, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    ::setsockopt(file, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    QByteArray answer(256, '\0');
    const QByteArray line = command + '\n';
    const bool isSent =
        ::connect(file, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
        ::send(file, line.constData(), line.size(), kSendFlags) == line.size();
    const ssize_t length = isSent ? ::recv(file, answer.data(), answer.size(), 0) : 0;
    ::close(file);
    return answer.left(std::max(0, static_cast<int>(length))).trimmed();
}

bool sendCommand(const QByteArray &command)
{
    return answerTo(command) == "ok";
}

} // namespace

QList<CameraInfo> StandPlatform::cameras() const
{
    QList<CameraInfo> list;
    const QList<StandDevice> devices = devicesOfKind(StandDevice::Camera);
    for (const StandDevice &device : devices)
        list.append({device.id, device.description});
    return list;
}

QList<CameraMode> StandPlatform::modes(int index) const
{
    QList<CameraMode> list;
    const StandDevice device = devicesOfKind(StandDevice::Camera).value(index);
    for (const StandMode &mode : device.modes)
        list.append(mode.mode);
    return list;
}

CaptureSource StandPlatform::captureSource(int index, const QString &size,
                                           const QString &rate) const
{
    const StandDevice device = devicesOfKind(StandDevice::Camera).value(index);
    const StandMode mode = matchingMode(device.modes, size, rate);
    const QString path = mode.socket.isEmpty()
                             ? QStringLiteral("%1/no-camera-%2").arg(standFolder()).arg(index)
                             : mode.socket;
    // Read in large pieces the demuxer costs a fifth less than in its usual 1024 bytes.
    return {
        QStringLiteral("mjpeg"),
        QStringLiteral("unix:") + path,
        {{QStringLiteral("framerate"), QString::number(mode.mode.rate > 0 ? mode.mode.rate : 15)},
         {QStringLiteral("raw_packet_size"), QStringLiteral("65536")}}};
}

QString StandPlatform::probeCommand(const QString &, int index) const
{
    return pictorProbeCommand(index);
}

QString StandPlatform::recordCommand(const RecordRequest &request) const
{
    return fedRecordCommand(request, requestedSound(*this, request));
}

QString StandPlatform::deviceListCommand(const QString &) const
{
    return {};
}

QStringList StandPlatform::audioInputs() const
{
    QStringList names;
    const QList<StandDevice> devices = devicesOfKind(StandDevice::Microphone);
    for (const StandDevice &device : devices)
        names.append(device.description);
    return names;
}

// A quiet room.
SoundInput StandPlatform::soundInput(int index) const
{
    const QString name = devicesOfKind(StandDevice::Microphone).value(index).description;
    if (name.isEmpty())
        return {};
    return {QStringLiteral("lavfi"), QStringLiteral("anoisesrc=color=brown:amplitude=0.02:r=48000"),
            name};
}

int StandPlatform::microphoneOf(int) const
{
    return devicesOfKind(StandDevice::Microphone).isEmpty() ? -1 : 0;
}

QList<SerialPortEntry> StandPlatform::serialPorts() const
{
    QList<SerialPortEntry> list;
    const QList<StandDevice> devices = devicesOfKind(StandDevice::Buttons);
    for (const StandDevice &device : devices)
        list.append({device.id, device.location, device.description, QString(), QString()});
    return list;
}

bool StandPlatform::canFocus(int index) const
{
    return index >= 0 && index < devicesOfKind(StandDevice::Camera).size();
}

bool StandPlatform::focus(int index)
{
    const QString name = devicesOfKind(StandDevice::Camera).value(index).name;
    return !name.isEmpty() && sendCommand("focus " + name.toUtf8());
}

QList<CameraControl> StandPlatform::controls(int index) const
{
    const QString name = devicesOfKind(StandDevice::Camera).value(index).name;
    const QList<QByteArray> words =
        name.isEmpty() ? QList<QByteArray>() : answerTo("controls " + name.toUtf8()).split(' ');
    QList<CameraControl> list = standControls();
    if (words.size() != list.size() + 1 || words.front() != "ok")
        return {};
    for (int i = 0; i < list.size(); ++i)
        list[i].value = words[i + 1].toInt();
    return list;
}

bool StandPlatform::setControl(int index, CameraControl::Kind kind, int value)
{
    const QString name = devicesOfKind(StandDevice::Camera).value(index).name;
    return !name.isEmpty() &&
           sendCommand(QStringLiteral("control %1 %2 %3").arg(name).arg(kind).arg(value).toUtf8());
}
