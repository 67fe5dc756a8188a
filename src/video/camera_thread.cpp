#include "video/camera_thread.h"

#include "app/log.h"
#include "app/state.h"

#include <QDebug>
#include <QMetaObject>

#include <opencv2/core.hpp>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

constexpr unsigned long kCloseWaitMs = 1200;

// A picture older than this is not what lies under the camera; slow modes may take more periods.
constexpr std::chrono::milliseconds kSilenceBeforeCapture(1500);
constexpr int kPeriodsOfSilence = 5;

} // namespace

void CameraThread::log(const char *text)
{
    if (isoutlog)
        WriteLog(text);
}

CameraThread::CameraThread(const LogTexts &texts, std::atomic<bool> &openFlag, QObject *parent)
    : QThread(parent)
    , m_texts(texts)
    , m_openFlag(openFlag)
{
    m_openFlag = false;
    connect(this, &QThread::finished, this, &CameraThread::begin);
}

void CameraThread::openCamera(std::string cameraIndex, std::string videoSize, std::string frameRate)
{
    log(m_texts.openStart);
    halt();
    m_isWanted = true;
    m_next = {std::move(cameraIndex), std::move(videoSize), std::move(frameRate)};
    if (!isRunning())
        begin();
    log(m_texts.openEnd);
}

void CameraThread::begin()
{
    if (!m_next)
        return;
    wait(); // for the last steps of a thread that says it has finished
    m_cameraIndex = std::move(m_next->cameraIndex);
    m_videoSize = std::move(m_next->videoSize);
    m_frameRate = std::move(m_next->frameRate);
    m_next.reset();
    QString description;
    const QList<CameraInfo> cameras = platform().cameras();
    for (int k = 0; k < cameras.size(); ++k) {
        if (std::to_string(k) == m_cameraIndex)
            description = cameras[k].description;
    }
    m_deviceName = QStringLiteral("video=") + description;
    qDebug() << "use camera: " << m_deviceName;
    m_running = true;
    start();
}

void CameraThread::closeCamera()
{
    log(m_texts.closeStart);
    halt();
    wait(kCloseWaitMs);
    log(m_texts.closeEnd);
}

void CameraThread::endStream()
{
    log(m_texts.closeStart);
    halt();
    log(m_texts.closeEnd);
}

// From here on nothing of the stream comes through any more.
void CameraThread::halt()
{
    QImage undelivered;
    m_isWanted = false;
    m_next.reset();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_running = false;
        m_openFlag = false;
        m_ended = false;
        m_end.reset();
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

void CameraThread::setPictureSink(std::shared_ptr<PictureSink> sink)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_sink.swap(sink);
}

FramePtr CameraThread::wholeFrame(const FramePtr &frame, int angle)
{
    const int turn = frame ? (angle - frame->angle + 360) % 360 : 0;
    if (!frame || turn % 90 != 0 || (!frame->compressed && turn == 0))
        return frame;
    const auto whole = std::make_shared<Frame>();
    if (frame->compressed)
        whole->pixels = decodedWhole(*frame->compressed, angle);
    else
        cv::rotate(frame->pixels, whole->pixels, turn / 90 - 1); // the codes follow the turns
    if (whole->pixels.empty())
        return nullptr;
    whole->width = whole->pixels.cols;
    whole->height = whole->pixels.rows;
    whole->compressed = frame->compressed;
    whole->angle = angle;
    whole->arrival = frame->arrival;
    whole->sequence = frame->sequence;
    return whole;
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

void CameraThread::deliverEnd()
{
    std::optional<End> end;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        end.swap(m_end);
    }
    if (end == End::NotOpened)
        emit sgOpenFailed();
    else if (end == End::Silent)
        emit sgSilent();
}
