#include "platform/stand_descriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 kDescriptorBytesMax = 64 << 10; // a stand's take some hundred

const QStringList kKindNames{QStringLiteral("camera"), QStringLiteral("microphone"),
                             QStringLiteral("buttons")};

QString descriptorPath(const QString &folder, const QString &name)
{
    return folder + QLatin1Char('/') + name + QStringLiteral(".json");
}

QJsonObject toJson(const StandDevice &device)
{
    QJsonArray modes;
    for (const StandMode &mode : device.modes)
        modes.append(QJsonObject{{"width", mode.mode.size.width()},
                                 {"height", mode.mode.size.height()},
                                 {"rate", mode.mode.rate},
                                 {"socket", mode.socket}});
    return {{"kind", kKindNames.at(device.kind)},
            {"name", device.name},
            {"order", device.order},
            {"id", device.id},
            {"description", device.description},
            {"location", device.location},
            {"modes", modes}};
}

bool fromJson(const QJsonObject &object, StandDevice &device)
{
    const int kind = kKindNames.indexOf(object["kind"].toString());
    if (kind < 0)
        return false;
    device.kind = static_cast<StandDevice::Kind>(kind);
    device.name = object["name"].toString();
    device.order = object["order"].toInt();
    device.id = object["id"].toString();
    device.description = object["description"].toString();
    device.location = object["location"].toString();
    const QJsonArray modes = object["modes"].toArray();
    for (const QJsonValue &value : modes) {
        const QJsonObject mode = value.toObject();
        device.modes.append(
            {{QSize(mode["width"].toInt(), mode["height"].toInt()), mode["rate"].toDouble()},
             mode["socket"].toString()});
    }
    return true;
}

// A lock that can be had is held by nobody: the stand that made the folder is gone.
bool isStandRunning(const QString &folder)
{
    const int file =
        ::open(QFile::encodeName(standLockFile(folder)).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool held = ::flock(file, LOCK_SH | LOCK_NB) != 0;
    ::close(file);
    return held;
}

} // namespace

QList<CameraControl> standControls()
{
    return {{CameraControl::Brightness, -64, 64, 1, 0, 0},
            {CameraControl::PowerLine,
             0,
             2,
             1,
             2,
             2,
             {{0, QStringLiteral("Disabled")},
              {1, QStringLiteral("50 Hz")},
              {2, QStringLiteral("60 Hz")}}},
            {CameraControl::AutoFocus, 0, 1, 1, 1, 1},
            {CameraControl::Focus, 0, 100, 5, 50, 50}};
}

QString standFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/pictor-stand");
}

QString standControlSocket(const QString &folder)
{
    return folder + QStringLiteral("/control.sock");
}

QString standLockFile(const QString &folder)
{
    return folder + QStringLiteral("/lock");
}

bool isPrivateFolder(const QString &folder, QString *why)
{
    struct stat info = {};
    QString fault;
    if (::lstat(QFile::encodeName(folder).constData(), &info) != 0)
        fault = QStringLiteral("%1 does not exist").arg(folder);
    else if (!S_ISDIR(info.st_mode))
        fault = QStringLiteral("%1 is not a folder").arg(folder);
    else if (info.st_uid != ::geteuid())
        fault = QStringLiteral("%1 belongs to another user").arg(folder);
    else if ((info.st_mode & 0777) != 0700)
        fault = QStringLiteral("%1 is open to other users (its mode must be 0700)").arg(folder);
    if (why)
        *why = fault;
    return fault.isEmpty();
}

QList<StandDevice> standDevices()
{
    const QString folder = standFolder();
    QList<StandDevice> devices;
    if (!isPrivateFolder(folder) || !isStandRunning(folder))
        return devices;
    const QFileInfoList files = QDir(folder).entryInfoList({QStringLiteral("*.json")}, QDir::Files);
    for (const QFileInfo &info : files) {
        QFile file(info.filePath());
        StandDevice device;
        if (file.open(QIODevice::ReadOnly) &&
            fromJson(QJsonDocument::fromJson(file.read(kDescriptorBytesMax)).object(), device))
            devices.append(device);
    }
    std::stable_sort(devices.begin(), devices.end(), [](const auto &a, const auto &b) {
        return a.kind != b.kind ? a.kind < b.kind : a.order < b.order;
    });
    return devices;
}

bool writeStandDevice(const QString &folder, const StandDevice &device)
{
    QSaveFile file(descriptorPath(folder, device.name));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(QJsonDocument(toJson(device)).toJson());
    return file.commit();
}

void removeStandDevice(const QString &folder, const QString &name)
{
    QFile::remove(descriptorPath(folder, name));
}
