#pragma once

#include "platform/platform.h"

#include <QList>
#include <QString>

/// What the virtual stand and the programs that use it agree on: a private folder in the user's
/// runtime folder, in it one small JSON file per device, the sockets that the files name, and a
/// lock file that the running stand holds, so that what a killed stand left behind is not taken
/// for hardware. All functions may be called from any thread.

/// A camera mode and the unix socket that streams it.
struct StandMode
{
    CameraMode mode;
    QString socket; ///< full path
};

/// One plugged-in device of the running stand.
struct StandDevice
{
    enum Kind { Camera, Microphone, Buttons };

    Kind kind = Camera;
    QString name;        ///< name of the descriptor, "main", "assist", "microphone", "buttons"
    int order = 0;       ///< position among the devices of its kind
    QString id;          ///< cameras: unique ID, ends in eight hexadecimal digits
    QString description; ///< cameras and microphone: name shown to the user
    QString location;    ///< buttons: path of the serial device
    QList<StandMode> modes;
};

/// What a camera of the stand lets one choose, with the values of a new one.
QList<CameraControl> standControls();

/// Full path of the stand's folder; the folder need not exist.
QString standFolder();

/// Path of the socket that takes the stand's commands, one a line, each answered by one line.
QString standControlSocket(const QString &folder);

/// Path of the file that a running stand keeps locked (flock).
QString standLockFile(const QString &folder);

/// True when `folder` is a real folder of this user that nobody else may enter (0700). When not
/// and `why` is given, it gets a sentence for the user.
bool isPrivateFolder(const QString &folder, QString *why = nullptr);

/// Plugged-in devices of the running stand by kind and order; empty when none runs or when the
/// folder is not private.
QList<StandDevice> standDevices();

/// Puts the descriptor of `device` into `folder`, whole or not at all.
bool writeStandDevice(const QString &folder, const StandDevice &device);

/// Removes the descriptor of the device `name`.
void removeStandDevice(const QString &folder, const QString &name);
