#pragma once

#include "platform/v4l2_devices.h"

#include <QHash>

#include <mutex>

/// Cameras and serial adapters of a Linux system.
class V4l2Platform : public Platform
{
public:
    QList<CameraInfo> cameras() const override;
    QStringList deviceFolders() const override;
    QList<CameraMode> modes(int index) const override;

    /// Opens the node with the pixel format that the mode of this size and rate was listed for.
    CaptureSource captureSource(int index, const QString &size, const QString &rate) const override;

    QString probeCommand(const QString &ffmpeg, int index) const override;

    /// The driver refuses a second stream, so the program hands on what it reads.
    QString recordCommand(const RecordRequest &request) const override;
    bool takesPictures() const override { return true; }

    QString deviceListCommand(const QString &ffmpeg) const override;
    QStringList audioInputs() const override;
    SoundInput soundInput(int index) const override;

    /// The camera's own microphone, otherwise the system's first input.
    int microphoneOf(int index) const override;

    /// Ports with a USB parent; the built-in ones never belong to a camera stand.
    QList<SerialPortEntry> serialPorts() const override;
    bool isButtonAdapter(const SerialPortEntry &port) const override;

    bool canFocus(int index) const override;
    bool focus(int index) override;
    QList<CameraControl> controls(int index) const override;
    bool setControl(int index, CameraControl::Kind kind, int value) override;
    OpenProblem openProblem(int index) const override;

private:
    QList<V4l2Camera> list() const;
    std::optional<quint32> capabilities(const QString &node, const QString &folder) const;

    // Asked once for each node: opening it wakes a sleeping camera. By the folder's path and inode,
    // which differ after every plugging. Guarded by m_mutex.
    mutable QHash<QString, quint32> m_capabilities;
    mutable std::mutex m_mutex;
};
