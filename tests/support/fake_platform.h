#pragma once

#include "platform/platform.h"

#include <atomic>

/// A platform whose answers a test sets.
class FakePlatform : public Platform
{
public:
    /// Puts a new one in force, until setPlatform() replaces it.
    static FakePlatform *install()
    {
        setPlatform(std::make_unique<FakePlatform>());
        return static_cast<FakePlatform *>(&platform());
    }

    QList<CameraInfo> cameraList;
    QList<SerialPortEntry> ports;
    CaptureSource source;             ///< of every camera
    QString probe;                    ///< command text of every probe
    QList<CameraControl> controlList; ///< of every camera
    mutable int probedIndex = -1;     ///< camera asked for last
    mutable int recordedCamera = -1;
    bool canFocusAll = false;
    std::atomic<int> focusedCamera{-1};

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
    QString recordCommand(const RecordRequest &request) const override
    {
        recordedCamera = request.camera;
        return {};
    }
    QString deviceListCommand(const QString &) const override { return {}; }
    QStringList audioInputs() const override { return {}; }
    bool canFocus(int) const override { return canFocusAll; }
    bool focus(int index) override
    {
        focusedCamera = index;
        return true;
    }
    QList<CameraControl> controls(int) const override { return controlList; }
    bool setControl(int, CameraControl::Kind kind, int value) override
    {
        for (CameraControl &control : controlList) {
            if (control.kind == kind)
                control.value = value;
        }
        return true;
    }
    QList<SerialPortEntry> serialPorts() const override { return ports; }
};
