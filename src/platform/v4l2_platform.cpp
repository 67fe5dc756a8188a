#include "platform/v4l2_platform.h"

#include "platform/fed_recording.h"
#include "platform/system_sound.h"
#include "platform/v4l2_controls.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSerialPortInfo>

#include <cerrno>
#include <fcntl.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kFocusMs = 1500; // in which a lens runs through its range

// An open node; never waits for the device.
class NodeFile
{
public:
    explicit NodeFile(const QString &path)
        : m_file(::open(QFile::encodeName(path).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC))
        , m_error(m_file < 0 ? errno : 0)
    {
    }
    ~NodeFile()
    {
        if (m_file >= 0)
            ::close(m_file);
    }
    NodeFile(const NodeFile &) = delete;
    NodeFile &operator=(const NodeFile &) = delete;

    bool isOpen() const { return m_file >= 0; }
    int error() const { return m_error; }

    int ask(unsigned long request, void *argument) const
    {
        int result = 0;
        do {
            result = ::ioctl(m_file, request, argument);
        } while (result < 0 && errno == EINTR);
        return result;
    }

private:
    const int m_file;
    const int m_error;
};

// A node that did not open refuses everything.
V4l2Ioctl askOf(const NodeFile &file)
{
    return [&file](unsigned long request, void *argument) { return file.ask(request, argument); };
}

QList<V4l2Mode> modesOf(const QString &path)
{
    const NodeFile file(path);
    return v4l2Modes(askOf(file));
}

// Name of another program that has `device` open, as far as /proc shows its files.
QString holderOf(const QString &device)
{
    const QString self = QString::number(::getpid());
    const QStringList processes =
        QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")});
    for (const QString &process : processes) {
        const QString folder = QStringLiteral("/proc/") + process;
        const QDir files(folder + QStringLiteral("/fd"));
        const QStringList numbers =
            files.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        for (const QString &number : numbers) {
            if (process == self || QFile::symLinkTarget(files.filePath(number)) != device)
                continue;
            QFile name(folder + QStringLiteral("/comm"));
            return name.open(QIODevice::ReadOnly) ? QString::fromUtf8(name.readAll()).trimmed()
                                                  : process;
        }
    }
    return {};
}

// Asked of the kernel itself: QSerialPortInfo knows it from udev's database, which a system without
// that service lacks.
bool hasUsbParent(const QString &port)
{
    const QFileInfo device(QStringLiteral("/sys/class/tty/%1/device").arg(port));
    QDir folder(device.canonicalFilePath());
    while (!device.canonicalFilePath().isEmpty() && !folder.isRoot()) {
        if (folder.exists(QStringLiteral("idVendor")))
            return true;
        folder.setPath(QFileInfo(folder.path()).path());
    }
    return false;
}

} // namespace

QList<V4l2Camera> V4l2Platform::list() const
{
    return v4l2Cameras(QStringLiteral("/sys"), [this](const QString &node, const QString &folder) {
        return capabilities(node, folder);
    });
}

std::optional<quint32> V4l2Platform::capabilities(const QString &node, const QString &folder) const
{
    struct stat status = {};
    if (::stat(QFile::encodeName(folder).constData(), &status) != 0)
        return {};
    const QString key = QStringLiteral("%1#%2").arg(folder).arg(quint64(status.st_ino));
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto known = m_capabilities.constFind(key);
    if (known != m_capabilities.constEnd())
        return *known;
    const NodeFile file(node);
    v4l2_capability answer = {};
    if (!file.isOpen() || file.ask(VIDIOC_QUERYCAP, &answer) < 0)
        return {};
    const bool hasOwn = (answer.capabilities & V4L2_CAP_DEVICE_CAPS) != 0;
    return *m_capabilities.insert(key, hasOwn ? answer.device_caps : answer.capabilities);
}

QList<CameraInfo> V4l2Platform::cameras() const
{
    QList<CameraInfo> infos;
    const QList<V4l2Camera> cameras = list();
    for (const V4l2Camera &camera : cameras)
        infos.append(camera.info);
    return infos;
}

QStringList V4l2Platform::deviceFolders() const
{
    return {QStringLiteral("/dev")};
}

QList<CameraMode> V4l2Platform::modes(int index) const
{
    QList<CameraMode> list;
    const QList<V4l2Mode> modes = modesOf(this->list().value(index).node);
    for (const V4l2Mode &mode : modes)
        list.append(mode.mode);
    return list;
}

CaptureSource V4l2Platform::captureSource(int index, const QString &size, const QString &rate) const
{
    const QString node = list().value(index).node;
    CaptureSource source = {
        QStringLiteral("video4linux2"), node, {{QStringLiteral("video_size"), size}}};
    const QList<V4l2Mode> modes = modesOf(node);
    for (const V4l2Mode &mode : modes) {
        const QSize &its = mode.mode.size;
        if (QStringLiteral("%1x%2").arg(its.width()).arg(its.height()) == size &&
            QString::number(static_cast<int>(mode.mode.rate)) == rate)
        {
            source.options.append({QStringLiteral("framerate"), mode.rate});
            source.options.append({QStringLiteral("input_format"), mode.format});
            return source;
        }
    }
    source.options.append({QStringLiteral("framerate"), rate});
    return source;
}

QString V4l2Platform::probeCommand(const QString &, int index) const
{
    return pictorProbeCommand(index);
}

QString V4l2Platform::recordCommand(const RecordRequest &request) const
{
    return fedRecordCommand(request, requestedSound(*this, request));
}

QString V4l2Platform::deviceListCommand(const QString &) const
{
    return {};
}

QStringList V4l2Platform::audioInputs() const
{
    QStringList names;
    const QList<SoundInput> inputs = systemSoundInputs();
    for (const SoundInput &input : inputs)
        names.append(input.description);
    return names;
}

SoundInput V4l2Platform::soundInput(int index) const
{
    return systemSoundInputs().value(index);
}

int V4l2Platform::microphoneOf(int index) const
{
    const QList<SoundInput> inputs = systemSoundInputs();
    const int own = microphoneOfCamera(list().value(index).info.description, inputs);
    return own < 0 && !inputs.isEmpty() ? 0 : own;
}

QList<SerialPortEntry> V4l2Platform::serialPorts() const
{
    QList<SerialPortEntry> list;
    const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : ports) {
        if (hasUsbParent(port.portName()))
            list.append({port.portName(), port.systemLocation(), port.description(),
                         port.manufacturer(), port.serialNumber()});
    }
    return list;
}

bool V4l2Platform::isButtonAdapter(const SerialPortEntry &port) const
{
    return port.name.startsWith(QLatin1String("ttyUSB")) ||
           port.name.startsWith(QLatin1String("ttyACM"));
}

bool V4l2Platform::canFocus(int index) const
{
    const NodeFile file(list().value(index).node);
    return canV4l2Focus(askOf(file));
}

bool V4l2Platform::focus(int index)
{
    const NodeFile file(list().value(index).node);
    return focusV4l2Once(askOf(file), kFocusMs);
}

QList<CameraControl> V4l2Platform::controls(int index) const
{
    const NodeFile file(list().value(index).node);
    return v4l2Controls(askOf(file));
}

bool V4l2Platform::setControl(int index, CameraControl::Kind kind, int value)
{
    const NodeFile file(list().value(index).node);
    return setV4l2Control(askOf(file), kind, value);
}

OpenProblem V4l2Platform::openProblem(int index) const
{
    const QString node = list().value(index).node;
    if (node.isEmpty())
        return {};
    const NodeFile file(node);
    if (file.error() == EACCES || file.error() == EPERM)
        return {OpenProblem::Forbidden, node, QString()};
    const QString holder = holderOf(node);
    const bool isBusy = file.error() == EBUSY || !holder.isEmpty();
    return {isBusy ? OpenProblem::Busy : OpenProblem::Unknown, node, holder};
}
