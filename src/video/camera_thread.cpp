#include "video/camera_thread.h"

#include "app/log.h"
#include "app/state.h"

#include <QDebug>
#include <QMetaObject>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

constexpr auto kPause = std::chrono::milliseconds(20); // after every read, bounds the load
constexpr unsigned long kCloseWaitMs = 1200;

// A picture older than this is not what lies under the camera; slow modes may take more periods.
constexpr std::chrono::milliseconds kSilenceBeforeCapture(1500);
constexpr int kPeriodsOfSilence = 5;

// Newest frame, shown picture, waiting picture, picture being made; three for captures and page
// turning. When a stream runs into this bound its next picture is left out.
constexpr size_t kFramesMax = 7;

void log(const char *text)
{
    if (isoutlog)
        WriteLog(text);
}

void logFailure(const char *text)
{
    qDebug("%s", text);
    log(text);
}

bool isQuarterTurn(int angle)
{
    return angle == 0 || angle == 90 || angle == 180 || angle == 270;
}

// Shows the frame's own pixels; the frame lives as long as the image.
QImage imageOf(const FramePtr &frame)
{
    return {frame->pixels.data,    frame->width,
            frame->height,         frame->width * 3,
            QImage::Format_RGB888, [](void *kept) { delete static_cast<FramePtr *>(kept); },
            new FramePtr(frame)};
}

} // namespace

CameraThread::CameraThread(const LogTexts &texts, std::atomic<bool> &openFlag, QObject *parent)
    : QThread(parent)
    , m_texts(texts)
    , m_openFlag(openFlag)
{
    m_openFlag = false;
}

void CameraThread::openCamera(std::string cameraIndex, std::string videoSize, std::string frameRate)
{
    log(m_texts.openStart);
    halt();
    wait(); // the former stream's thread, if it has not ended yet
    QString description;
    const QList<CameraInfo> cameras = platform().cameras();
    for (int k = 0; k < cameras.size(); ++k) {
        if (std::to_string(k) == cameraIndex)
            description = cameras[k].description;
    }
    m_deviceName = QStringLiteral("video=") + description;
    qDebug() << "use camera: " << m_deviceName;
    m_cameraIndex = std::move(cameraIndex);
    m_videoSize = std::move(videoSize);
    m_frameRate = std::move(frameRate);
    m_running = true;
    start();
    log(m_texts.openEnd);
}

void CameraThread::closeCamera()
{
    log(m_texts.closeStart);
    halt();
    wait(kCloseWaitMs);
    log(m_texts.closeEnd);
}

// From here on nothing of the stream comes through any more.
void CameraThread::halt()
{
    QImage undelivered;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_running = false;
        m_openFlag = false;
        m_ended = false;
        m_openFailed = false;
        m_image.swap(undelivered);
        m_latest.set(nullptr);
    }
    m_stopped.notify_all();
}

void CameraThread::shutDown()
{
    closeCamera();
    wait(); // the object must not go before its thread, and the thread always ends
}

void CameraThread::run()
{
    qDebug("run start.............");
    log("run start");
    m_sequence = 0;
    prepareStream();
    bool opened = false;
    {
        StreamReader reader(m_running);
        opened = openStream(reader);
        if (opened)
            readStream(reader);
    }
    streamEnded(opened);
    if (opened) {
        qDebug("%s", m_texts.threadEnd);
        log("run end");
    }
}

void CameraThread::logOpening(const QString &, const QString &, const QString &)
{
    qDebug() << m_deviceName;
    log(m_deviceName.toUtf8().constData());
}

bool CameraThread::openStream(StreamReader &reader)
{
    const QString index = QString::fromStdString(m_cameraIndex);
    const QString size = QString::fromStdString(m_videoSize);
    const QString rate = QString::fromStdString(m_frameRate);
    logOpening(index, size, rate);
    bool isNumber = false;
    const int number = index.toInt(&isNumber);
    const StreamReader::OpenError error =
        reader.open(platform().captureSource(isNumber ? number : -1, size, rate), log);
    if (error == StreamReader::OpenError::None)
        return true;
    if (!m_running)
        return false; // closed while it was being opened
    if (error == StreamReader::OpenError::OpenInput) {
        qDebug(">>>>>>>>>>>>>>avformat_open_input error \n");
        logFailure(reader.openInputText().c_str());
    }
    logFailure(openErrorText(error));
    return false;
}

void CameraThread::readStream(StreamReader &reader)
{
    FramePool pool(kFramesMax);
    while (m_running) {
        const StreamReader::Status status = reader.read();
        if (status == StreamReader::Status::Ended) {
            if (m_running)
                log("the camera's stream ended");
            return;
        }
        if (status == StreamReader::Status::DecodeError) {
            logFailure("Decode Error.\n");
            return;
        }
        if (status != StreamReader::Status::NotReady)
            markPacket();
        if (status == StreamReader::Status::Picture)
            handlePicture(reader, pool);
        pause();
    }
}

void CameraThread::handlePicture(StreamReader &reader, FramePool &pool)
{
    const int angle = frameAngle();
    if (!isQuarterTurn(angle))
        return;
    const bool sideways = angle == 90 || angle == 270;
    const std::shared_ptr<Frame> frame = sideways ? pool.acquire(reader.height(), reader.width())
                                                  : pool.acquire(reader.width(), reader.height());
    if (!frame || !reader.convert(frame->pixels, angle))
        return;
    frame->sequence = ++m_sequence;
    frame->angle = angle;
    frame->arrival = std::chrono::steady_clock::now();
    const FrameTreatment treatment{angle, m_preview};
    const FramePtr shown = finishFrame(*frame, pool, treatment);
    publish(frame);
    if (treatment.preview)
        offerImage(shown ? shown : frame);
}

FramePtr CameraThread::finishFrame(Frame &, FramePool &, const FrameTreatment &)
{
    return nullptr;
}

FramePtr CameraThread::currentFrame() const
{
    const FramePtr frame = lastFrame();
    const double rate = QByteArray::fromStdString(m_frameRate).toDouble();
    const auto longest = std::max<std::chrono::duration<double>>(
        kSilenceBeforeCapture,
        std::chrono::duration<double>(rate > 0 ? kPeriodsOfSilence / rate : 0));
    const bool isOld = frame && std::chrono::steady_clock::now() - frame->arrival > longest;
    return isOld ? nullptr : frame;
}

void CameraThread::markPacket()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_running)
        m_openFlag = true;
}

void CameraThread::publish(const FramePtr &frame)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_running)
        m_latest.set(frame);
}

void CameraThread::streamEnded(bool opened)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_running)
        return;
    m_openFlag = false;
    m_ended = true;
    m_latest.set(nullptr);
    if (!opened) {
        m_openFailed = true;
        QMetaObject::invokeMethod(this, "deliverOpenFailure", Qt::QueuedConnection);
    }
}

void CameraThread::pause()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_stopped.wait_for(lock, kPause, [this] { return !m_running; });
}

// Newer pictures replace the waiting one, so a busy window never makes memory grow.
void CameraThread::offerImage(const FramePtr &picture)
{
    QImage image = imageOf(picture);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_running)
            return;
        m_image.swap(image);
        if (std::exchange(m_imageUnderWay, true))
            return;
    }
    QMetaObject::invokeMethod(this, "deliverImage", Qt::QueuedConnection);
}

void CameraThread::deliverImage()
{
    QImage image;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_imageUnderWay = false;
        m_image.swap(image);
    }
    if (!image.isNull())
        showImage(image);
}

void CameraThread::deliverOpenFailure()
{
    bool failed = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        failed = std::exchange(m_openFailed, false);
    }
    if (failed)
        emit sgOpenFailed();
}
