#include "features/recorder.h"

#include "app/log.h"
#include "app/paths.h"
#include "app/state.h"
#include "features/picture_feed.h"

#include <QDebug>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace {

const QString kCameraMicrophone = QStringLiteral("USB 2.0 Camera");

void logText(const QString &text)
{
    if (isoutlog)
        WriteLog(text.toUtf8().constData());
}

} // namespace

Recorder::Recorder(QObject *parent)
    : QObject(parent)
{
}

Recorder::~Recorder()
{
    blockSignals(true); // the window is going, too
    finishNow();
}

void Recorder::setRecordPath(const QString &path)
{
    m_recordPath = path;
}

bool Recorder::isRunning() const
{
    return !m_recording.isNull();
}

void Recorder::setCamera(int index)
{
    m_camera = index;
    if (!isRunning() || platform().takesPictures())
        m_cameraId = platform().cameras().value(m_camera).uniqueId;
}

RecordRequest Recorder::request()
{
    RecordRequest request;
    if (getInputAudioDevCount() > 0) {
        logText(QStringLiteral("Have audio device, audioID is:") + m_audioDeviceId);
        request.audioDevice = m_audioDeviceId;
    }
    request.ffmpeg = getFFmpegPath();
    request.camera = m_camera;
    request.videoDevice = m_videoDeviceId;
    request.rate = m_frameRate;
    request.target = m_recordPath;
    if (!platform().takesPictures() || !m_source)
        return request;
    if (!m_source->frameRate().empty())
        request.rate = QString::fromStdString(m_source->frameRate());
    if (const FramePtr frame = m_source->lastFrame()) {
        const bool isSideways = frame->angle % 180 != 0;
        request.size =
            isSideways ? QSize(frame->height, frame->width) : QSize(frame->width, frame->height);
        request.angle = frame->angle;
    }
    return request;
}

void Recorder::StartREC()
{
    if (isRunning())
        return;
    RecordRequest request = this->request();
    m_cameraId = platform().cameras().value(m_camera).uniqueId;
    m_startTime = std::chrono::steady_clock::now();
    request.startUs = std::chrono::duration_cast<std::chrono::microseconds>(
                          std::chrono::system_clock::now().time_since_epoch())
                          .count();
    const QString command = platform().recordCommand(request);
    logText(command);
    qDebug() << "rec cmdstr:" << command;

    finishRecordingsOf(m_recordPath);
    m_recording = new Recording(command, m_recordPath, this);
    connect(m_recording, &Recording::outputReady, this, &Recorder::getStartRecResult);
    connect(m_recording, &Recording::errorsReady, this, &Recorder::read_error);
    connect(m_recording, &Recording::failed, this, &Recorder::takeFailure);
    connect(m_recording, &Recording::finished, this, &Recorder::finished);
    connect(m_recording, &Recording::ended, this, [this, recording = m_recording.data()] {
        if (m_recording != recording)
            return;
        m_recording.clear();
        stopFeeding();
        emit endedByItself();
    });
    if (platform().takesPictures() && m_source) {
        const auto feed = std::make_shared<PictureFeed>(m_startTime, request.rate.toDouble());
        m_recording->setFeed(feed);
        m_source->setPictureSink(feed);
    }
    m_recording->start();
}

void Recorder::stopFeeding()
{
    if (m_source)
        m_source->setPictureSink(nullptr);
}

void Recorder::StopREC()
{
    if (Recording *recording = std::exchange(m_recording, nullptr)) {
        stopFeeding();
        recording->stop();
    }
    m_recordPath.clear();
}

void Recorder::checkCamera()
{
    if (m_recording)
        m_recording->checkFeed();
    if (!m_recording || isCameraThere())
        return;
    m_recording->fail(QStringLiteral("the camera has gone"), RecordingFailure::CameraGone);
    m_recording->stop();
}

bool Recorder::isCameraThere() const
{
    const QList<CameraInfo> cameras = platform().cameras();
    return m_cameraId.isEmpty() ||
           std::any_of(cameras.begin(), cameras.end(),
                       [this](const CameraInfo &camera) { return camera.uniqueId == m_cameraId; });
}

// An ffmpeg whose camera was unplugged merely ends, often before anyone looks for the camera.
void Recorder::takeFailure(const RecordingFailure &failure)
{
    m_failure = failure;
    const bool mayBeCamera = failure.cause == RecordingFailure::Ended ||
                             failure.cause == RecordingFailure::StoppedAtOnce ||
                             failure.cause == RecordingFailure::DamagedPicture;
    if (mayBeCamera && !isCameraThere())
        m_failure.cause = RecordingFailure::CameraGone;
    // Queued: a receiver that opens a message box must not hold up the recording's end.
    QMetaObject::invokeMethod(
        this, [this] { emit recordSignal(false); }, Qt::QueuedConnection);
}

void Recorder::finishNow()
{
    const auto recordings = findChildren<Recording *>(QString(), Qt::FindDirectChildrenOnly);
    for (Recording *recording : recordings)
        recording->finishNow();
}

// Two programs must never write into one file.
void Recorder::finishRecordingsOf(const QString &path)
{
    const auto recordings = findChildren<Recording *>(QString(), Qt::FindDirectChildrenOnly);
    for (Recording *recording : recordings) {
        if (recording->path() == path)
            recording->finishNow();
    }
}

int Recorder::getInputAudioDevCount()
{
    const QStringList names = platform().audioInputs();
    m_audioDeviceId = QStringLiteral("0");
    for (int i = 0; i < names.size(); ++i) {
        logText(QStringLiteral("Audio device name :") + names[i]);
        if (names[i] == kCameraMicrophone) {
            m_audioDeviceId = QString::number(i);
            logText(QStringLiteral("audioID:") + m_audioDeviceId);
        }
    }
    if (const int own = platform().microphoneOf(m_camera); own >= 0)
        m_audioDeviceId = QString::number(own);
    return names.size();
}

void Recorder::getScreenDevID()
{
    QStringList arguments = QProcess::splitCommand(platform().deviceListCommand(getFFmpegPath()));
    if (arguments.isEmpty() || m_deviceList)
        return;
    m_deviceList = new QProcess(this);
    m_deviceList->setProcessChannelMode(QProcess::MergedChannels);
    connect(m_deviceList, &QProcess::readyReadStandardOutput, this,
            &Recorder::getScreenDevIDResult);
    connect(m_deviceList, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
            m_deviceList, &QObject::deleteLater);
    connect(m_deviceList, &QProcess::errorOccurred, m_deviceList, &QObject::deleteLater);
    const QString program = arguments.takeFirst();
    m_deviceList->start(program, arguments, QIODevice::ReadWrite);
}

void Recorder::getScreenDevIDResult()
{
    if (!m_deviceList)
        return;
    while (m_deviceList->canReadLine()) {
        const QString index = screenDeviceIndex(QString::fromUtf8(m_deviceList->readLine()));
        if (!index.isEmpty())
            m_screenDeviceId = index;
    }
    m_deviceList->write("q");
}

void Recorder::getStartRecResult()
{
    const auto recordings = findChildren<Recording *>(QString(), Qt::FindDirectChildrenOnly);
    for (Recording *recording : recordings)
        recording->readOutput();
}

void Recorder::read_error()
{
    const auto recordings = findChildren<Recording *>(QString(), Qt::FindDirectChildrenOnly);
    for (Recording *recording : recordings)
        recording->readErrors();
}

QString screenDeviceIndex(const QString &listing)
{
    static const QRegularExpression number(QStringLiteral("\\[(\\d+)\\]"));
    const QStringList lines = listing.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.contains(QLatin1String("screen")))
            return number.match(line).captured(1);
    }
    return {};
}
