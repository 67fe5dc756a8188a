#pragma once

#include "platform/platform.h"

/// The devices of the virtual stand that runs in this user's session; nothing while none runs.
class StandPlatform : public Platform
{
public:
    QList<CameraInfo> cameras() const override;
    QList<CameraMode> modes(int index) const override;
    CaptureSource captureSource(int index, const QString &size, const QString &rate) const override;

    /// Runs pictor-probe, which lies beside the program.
    QString probeCommand(const QString &ffmpeg, int index) const override;

    /// The largest mode up to 1920x1080 is recorded, with a preset that leaves room for the
    /// preview; QuickTime and MP4 files are fragmented so that a killed recording still opens.
    QString recordCommand(const RecordRequest &request) const override;

    bool takesPictures() const override { return true; }
    QString deviceListCommand(const QString &ffmpeg) const override;
    QStringList audioInputs() const override;
    SoundInput soundInput(int index) const override;
    int microphoneOf(int index) const override;
    QList<SerialPortEntry> serialPorts() const override;
    bool canFocus(int index) const override;
    bool focus(int index) override;
    QList<CameraControl> controls(int index) const override;
    bool setControl(int index, CameraControl::Kind kind, int value) override;
};
