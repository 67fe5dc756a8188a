#include "platform/avfoundation_platform.h"

#include <QAudioDeviceInfo>
#include <QCameraInfo>
#include <QSerialPortInfo>

QList<CameraInfo> AvfoundationPlatform::cameras() const
{
    QList<CameraInfo> list;
    const QList<QCameraInfo> cameras = QCameraInfo::availableCameras();
    for (const QCameraInfo &camera : cameras)
        list.append({camera.deviceName(), camera.description()});
    return list;
}

QList<CameraMode> AvfoundationPlatform::modes(int) const
{
    return {};
}

CaptureSource AvfoundationPlatform::captureSource(int index, const QString &size,
                                                  const QString &rate) const
{
    return {QStringLiteral("avfoundation"),
            QString::number(index),
            {{QStringLiteral("video_size"), size}, {QStringLiteral("framerate"), rate}}};
}

QString AvfoundationPlatform::probeCommand(const QString &ffmpeg, int index) const
{
    return quotedArgument(ffmpeg) + QStringLiteral(" -f avfoundation -i \"%1\"").arg(index);
}

QString AvfoundationPlatform::recordCommand(const RecordRequest &request) const
{
    const QString input = quotedArgument(request.ffmpeg) + QStringLiteral(" -f avfoundation -i ") +
                          request.videoDevice;
    const QString options = request.audioDevice.isEmpty()
                                ? QStringLiteral(" -r ") + request.rate
                                : QLatin1Char(':') + request.audioDevice +
                                      QStringLiteral(" -b 40000K -ab 256K -vsync 2");
    return input + options + QLatin1Char(' ') + quotedArgument(request.target);
}

QString AvfoundationPlatform::deviceListCommand(const QString &ffmpeg) const
{
    return quotedArgument(ffmpeg) + QStringLiteral(" -f avfoundation -list_devices true -i 0 ");
}

QStringList AvfoundationPlatform::audioInputs() const
{
    QStringList names;
    const auto devices = QAudioDeviceInfo::availableDevices(QAudio::AudioInput);
    for (const QAudioDeviceInfo &device : devices) {
        if (!device.isNull())
            names.append(device.deviceName());
    }
    return names;
}

QList<SerialPortEntry> AvfoundationPlatform::serialPorts() const
{
    QList<SerialPortEntry> list;
    const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : ports)
        list.append({port.portName(), port.systemLocation(), port.description(),
                     port.manufacturer(), port.serialNumber()});
    return list;
}
