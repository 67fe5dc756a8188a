#pragma once

#include "platform/platform.h"

#include <vector>

/// Several platforms as one: the devices of the first come first, those of the next behind them.
/// A device index counts over all of them.
class JoinedPlatform : public Platform
{
public:
    explicit JoinedPlatform(std::vector<std::unique_ptr<Platform>> parts);

    QList<CameraInfo> cameras() const override;
    QStringList deviceFolders() const override;
    QList<CameraMode> modes(int index) const override;
    CaptureSource captureSource(int index, const QString &size, const QString &rate) const override;
    QString probeCommand(const QString &ffmpeg, int index) const override;
    QString recordCommand(const RecordRequest &request) const override;
    bool takesPictures() const override { return true; }
    QString deviceListCommand(const QString &ffmpeg) const override;
    QStringList audioInputs() const override;
    SoundInput soundInput(int index) const override;
    int microphoneOf(int index) const override;
    QList<SerialPortEntry> serialPorts() const override;
    bool isButtonAdapter(const SerialPortEntry &port) const override;
    bool canFocus(int index) const override;
    bool focus(int index) override;
    QList<CameraControl> controls(int index) const override;
    bool setControl(int index, CameraControl::Kind kind, int value) override;
    OpenProblem openProblem(int index) const override;

private:
    /// A camera by its platform and the index that this platform knows it by.
    struct Place
    {
        Platform *part;
        int index;
    };
    Place placeOf(int index) const;

    std::vector<std::unique_ptr<Platform>> m_parts; ///< at least one
};
