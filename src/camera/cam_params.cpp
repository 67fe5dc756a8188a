#include "camera/cam_params.h"

#include "app/log.h"
#include "app/paths.h"
#include "app/state.h"
#include "camera/model_tables.h"
#include "camera/probe_output.h"
#include "camera/user_models.h"
#include "platform/platform.h"

#include <QDebug>
#include <QProcess>

#include <algorithm>
#include <chrono>
#include <utility>

QProcess *poc = nullptr;

namespace {

constexpr int kIdDigits = 8;
constexpr auto kProbeMax = std::chrono::seconds(5); // a driver that hangs holds up its reader
constexpr int kProbeEndMs = 500; // a killed process is gone at once, unless a driver holds it

void logBoth(const char *text)
{
    qDebug("%s", text);
    if (isoutlog)
        WriteLog(text);
}

struct DeviceId
{
    QString vendor;
    QString product;
};

DeviceId deviceId(const CameraInfo &camera)
{
    const QString tail = camera.uniqueId.right(kIdDigits);
    return {tail.left(kIdDigits / 2), tail.right(kIdDigits / 2)};
}

// What the user has said about a camera goes before the tables.
bool isMain(const DeviceId &id)
{
    const UserModel *own = userModel(id.vendor + id.product);
    return own ? own->use == UserModel::Main : isMainModel(id.vendor, id.product);
}

int assistRows(const DeviceId &id)
{
    const UserModel *own = userModel(id.vendor + id.product);
    return own ? int(own->use == UserModel::Assist) : assistModelRows(id.vendor, id.product);
}

// The flags of the user's own models are his choice, so that none outlives it.
void setEnlargedFlags(const DeviceId &id)
{
    for (const UserModel &model : userModels()) {
        if (model.enlarged >= 0)
            *enlargedClasses()[static_cast<size_t>(model.enlarged)].camera = false;
    }
    CheckInsertValue(id.vendor, id.product);
    const UserModel *own = userModel(id.vendor + id.product);
    if (own && own->enlarged >= 0)
        *enlargedClasses()[static_cast<size_t>(own->enlarged)].camera = true;
}

void logCamera(const CameraInfo &camera, const DeviceId &id)
{
    qDebug() << "camera: " << camera.description;
    logLine(QStringLiteral("cameraInfo.description:") + camera.description);
    logLine(QStringLiteral("vidpid:") + camera.uniqueId.right(kIdDigits));
    qDebug() << "vidstr:" << id.vendor;
    qDebug() << "pidstr:" << id.product;
    logLine(QStringLiteral("vidstr:") + id.vendor + QStringLiteral(",pidstr:") + id.product);
}

} // namespace

CamParams::CamParams(QObject *parent)
    : QObject(parent)
{
    m_probeLimit.setSingleShot(true);
    m_probeLimit.setInterval(kProbeMax);
    connect(&m_probeLimit, &QTimer::timeout, this, &CamParams::giveUpProbe);
}

CamParams::~CamParams()
{
    if (poc && poc == m_probe)
        delete takeProbe();
}

int CamParams::getCameraCount()
{
    qDebug(">>>>>>>>>>>>>>>getCameraCount start");
    logLine(QStringLiteral("getCameraCount start"));
    myDevCount = 0;
    CamdeviceName.clear();
    m_ids.clear();
    m_main = {};
    m_assist = {};
    is500wTo800w = is800wTo1000w = is800wTo1200w = is800wTo1300w = false;

    const QList<CameraInfo> cameras = platform().cameras();
    for (int i = 0; i < cameras.size() && myDevCount == 0; ++i) {
        const DeviceId id = deviceId(cameras[i]);
        logCamera(cameras[i], id);
        if (!isMain(id))
            continue;
        setEnlargedFlags(id);
        qDebug("camera index:%d", i);
        listCamera(i, cameras[i]);
    }
    for (int j = 0; j < cameras.size() && myDevCount > 0; ++j) {
        const DeviceId id = deviceId(cameras[j]);
        for (int row = assistRows(id); row > 0; --row)
            listCamera(j, cameras[j]);
    }

    logLine(QStringLiteral("myDevCount:%1").arg(myDevCount));
    qDebug() << "myDevCount:" << myDevCount;
    for (int i = 0; i < myDevCount; ++i)
        qDebug() << "Camera ID:" << geCameraID(i);
    logLine(QStringLiteral("getCameraCount end"));
    qDebug(">>>>>>>>>>>>>>>getCameraCount end");
    return myDevCount;
}

void CamParams::listCamera(int deviceIndex, const CameraInfo &camera)
{
    if (myDevCount >= kCamdeviceMax)
        return;
    Camdevice[static_cast<size_t>(myDevCount++)] = deviceIndex;
    CamdeviceName.append(camera.description);
    m_ids.append(camera.uniqueId);
}

QString CamParams::uniqueId(int deviceIndex) const
{
    for (int i = 0; i < m_ids.size(); ++i) {
        if (geCameraID(i) == deviceIndex)
            return m_ids[i];
    }
    return {};
}

bool CamParams::isStillListed(int deviceIndex) const
{
    const QString listed = uniqueId(deviceIndex);
    return listed.isEmpty() || platform().cameras().value(deviceIndex).uniqueId == listed;
}

int CamParams::checkCameraCount() const
{
    bool hasMain = false;
    int assistCount = 0;
    const QList<CameraInfo> cameras = platform().cameras();
    for (const CameraInfo &camera : cameras) {
        const DeviceId id = deviceId(camera);
        hasMain = hasMain || isMain(id);
        assistCount += assistRows(id);
    }
    return hasMain ? std::min(1 + assistCount, kCamdeviceMax) : 0;
}

QString CamParams::getCameraName(int i) const
{
    return CamdeviceName.value(i);
}

int CamParams::geCameraID(int i) const
{
    return i >= 0 && i < kCamdeviceMax ? Camdevice[static_cast<size_t>(i)] : -1;
}

void CamParams::setChangeDeviceMode(bool change)
{
    m_changeDevice = change;
}

void CamParams::getResolutionCount(int deviceIndex)
{
    logBoth("getResolutionCount start");
    qDebug() << "camid:" << deviceIndex;
    const auto listed = Camdevice.begin() + myDevCount;
    const auto place = std::find(Camdevice.begin(), listed, deviceIndex);
    if (place != listed)
        m_position = static_cast<int>(place - Camdevice.begin());
    if (QProcess *former = takeProbe())
        former->deleteLater(); // this may run inside one of its signals
    if (probed().deviceIndex != deviceIndex)
        probed() = {};
    probed().deviceIndex = deviceIndex;
    if (deviceIndex >= 0)
        startProbe(deviceIndex);
    logBoth("getResolutionCount end");
}

void CamParams::startProbe(int deviceIndex)
{
    isProcessCmd = false;
    m_isProbing = true;
    m_probe = poc = new QProcess;
    connect(poc, &QProcess::readyReadStandardOutput, this, &CamParams::sltOnReadOutput);
    connect(poc, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &CamParams::probeEnded);
    connect(poc, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        logLine(QStringLiteral("the camera's modes could not be asked for: ") + poc->errorString());
        if (error == QProcess::FailedToStart) // any other comes before the process has finished
            probeEnded();
    });
    const QString command = platform().probeCommand(getFFmpegPath(), deviceIndex);
    logLine(QStringLiteral("cmdstr:") + command);
    poc->setProcessChannelMode(QProcess::MergedChannels);
    QStringList words = QProcess::splitCommand(command);
    const QString program = words.isEmpty() ? QString() : words.takeFirst();
    m_probeLimit.start();
    poc->start(program, words);
}

// Without waiting for its end, which a driver may put off.
void CamParams::giveUpProbe()
{
    logLine(QStringLiteral("the camera's modes did not come in time"));
    if (QProcess *process = std::exchange(poc, nullptr)) {
        process->disconnect();
        connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), process,
                &QObject::deleteLater);
        process->kill();
    }
    probeEnded();
}

void CamParams::probeEnded()
{
    m_probeLimit.stop();
    isProcessCmd = true;
    m_isProbing = false;
    if (!isMainProbe())
        return;
    if (probed().sizes.isEmpty())
        emit modesUnknown();
    emit mainProbeFinished();
}

// Ends the running probe, whoever started it, and leaves its object to the caller.
QProcess *CamParams::takeProbe()
{
    m_probeLimit.stop();
    isProcessCmd = true;
    m_isProbing = false;
    QProcess *process = std::exchange(poc, nullptr);
    if (process) {
        process->disconnect();
        process->kill();
        process->waitForFinished(kProbeEndMs);
    }
    return process;
}

void CamParams::sltOnReadOutput()
{
    QProcess *process = poc;
    if (!process)
        return;
    logLine(QStringLiteral("sltOnReadOutput start"));
    const QString text = QString::fromUtf8(process->readAllStandardOutput());
    logLine(QStringLiteral("out info:") + text);
    ModeList &list = probed();
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (!isModeLine(line))
            continue;
        const ModeLine mode = parseModeLine(line);
        const bool isKnown =
            std::any_of(list.sizes.begin(), list.sizes.end(),
                        [&mode](const QString &size) { return size.contains(mode.size); });
        if (isKnown)
            continue;
        list.sizes.append(mode.size);
        list.rates.append(mode.rate);
    }
    logLine(QStringLiteral("sltOnReadOutput end"));
    if (!list.sizes.isEmpty()) {
        if (isMainProbe())
            emit getResCountFinish(list.sizes.size());
        else
            emit getResCountFinish2(list.sizes.size());
    }
    if (poc == process) // nobody who heard of it has started the next probe
        isProcessCmd = true;
}

int CamParams::getResolution(int index, int &width, int &height, int &fps) const
{
    const ModeList &list = probed();
    if (index < 0 || index >= list.sizes.size() || index >= list.rates.size())
        return -1;
    const QStringList parts = list.sizes[index].split(QLatin1Char('x'));
    if (parts.size() >= 2) {
        width = parts[0].toInt();
        height = parts[1].toInt();
    }
    fps = list.rates[index].toInt();
    return 0;
}
