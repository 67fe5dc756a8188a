#pragma once

#include "platform/platform.h"

/// macOS: Qt's lists and the texts of ffmpeg's avfoundation input. Nothing here is bound to the
/// system, so it is built and tested everywhere.
class AvfoundationPlatform : public Platform
{
public:
    QList<CameraInfo> cameras() const override;

    /// Empty: the modes come from the ffmpeg executable, see probeCommand().
    QList<CameraMode> modes(int index) const override;

    CaptureSource captureSource(int index, const QString &size, const QString &rate) const override;
    QString probeCommand(const QString &ffmpeg, int index) const override;
    QString recordCommand(const RecordRequest &request) const override;
    QString deviceListCommand(const QString &ffmpeg) const override;
    QStringList audioInputs() const override;
    QList<SerialPortEntry> serialPorts() const override;
};
