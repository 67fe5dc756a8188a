#pragma once

#include "platform/platform.h"

/// A system with one main camera that tells no modes, so that a window finds it and never opens
/// it, and with the serial ports that a test lists.
class FakePlatform : public Platform
{
public:
    QList<SerialPortEntry> ports;

    QList<CameraInfo> cameras() const override
    {
        return {{QStringLiteral("camera-12090001"), QStringLiteral("Fake camera")}};
    }
    QList<CameraMode> modes(int) const override { return {}; }
    CaptureSource captureSource(int, const QString &, const QString &) const override { return {}; }
    QString probeCommand(const QString &, int) const override { return QStringLiteral("true"); }
    QString recordCommand(const RecordRequest &) const override { return QStringLiteral("true"); }
    QString deviceListCommand(const QString &) const override { return QString(); }
    QStringList audioInputs() const override { return {}; }
    QList<SerialPortEntry> serialPorts() const override { return ports; }
};
