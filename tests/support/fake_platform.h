#pragma once

#include "platform/platform.h"

/// A platform whose answers a test sets. Install it with setPlatform().
class FakePlatform : public Platform
{
public:
    QList<CameraInfo> cameraList;
    CaptureSource source;         ///< of every camera
    QString probe;                ///< command text of every probe
    mutable int probedIndex = -1; ///< camera asked for last

    QList<CameraInfo> cameras() const override { return cameraList; }
    QList<CameraMode> modes(int) const override { return {}; }
    CaptureSource captureSource(int, const QString &, const QString &) const override
    {
        return source;
    }
    QString probeCommand(const QString &, int index) const override
    {
        probedIndex = index;
        return probe;
    }
    QString recordCommand(const RecordRequest &) const override { return {}; }
    QString deviceListCommand(const QString &) const override { return {}; }
    QStringList audioInputs() const override { return {}; }
    QList<SerialPortEntry> serialPorts() const override { return {}; }
};
