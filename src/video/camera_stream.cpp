#include "app/state.h"
#include "video/camera_thread.h"

#include <QDebug>
#include <QMetaObject>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

// The decode thread's side: from the open stream to the published frame.

namespace {

constexpr auto kPause = std::chrono::milliseconds(20); // after every read, bounds the load
// While a recording runs: a picture that came sooner than this part of its period after the one
// before was done with had been waiting. The picture on the screen goes on moving all the same.
constexpr double kIdleShare = 0.15;
constexpr int kLeftOutInARowMax = 3;

// Newest frame, shown picture, waiting picture, picture being made, three for page turning; the
// others for captures that wait. When a stream runs into this bound its next picture is left out.
constexpr size_t kFramesMax = 15;
constexpr size_t kIdleFramesMax = 7; // a burst of captures is no reason to keep more memory

bool isQuarterTurn(int angle)
{
    return angle == 0 || angle == 90 || angle == 180 || angle == 270;
}

// Shows the frame's own pixels; the frame lives as long as the image.
QImage imageOf(const FramePtr &frame)
{
    return {frame->pixels.data,    frame->pixels.cols,
            frame->pixels.rows,    frame->pixels.cols * 3,
            QImage::Format_RGB888, [](void *kept) { delete static_cast<FramePtr *>(kept); },
            new FramePtr(frame)};
}

// "1920x1080"; empty when it is no size.
cv::Size askedSize(const std::string &text)
{
    cv::Size size;
    return std::sscanf(text.c_str(), "%dx%d", &size.width, &size.height) == 2 ? size : cv::Size();
}

bool isSideways(int angle)
{
    return angle == 90 || angle == 270;
}

} // namespace

void CameraThread::logFailure(const char *text)
{
    qDebug("%s", text);
    log(text);
}

void CameraThread::run()
{
    qDebug("run start.............");
    log("run start");
    m_sequence = 0;
    prepareStream();
    bool opened = false;
    End end = End::NotOpened;
    {
        StreamReader reader(m_running);
        opened = openStream(reader);
        if (opened)
            readStream(reader);
        if (reader.isSilent())
            end = End::Silent;
        else if (opened)
            end = End::BrokenOff;
    }
    streamEnded(end);
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
    FramePool pool(kFramesMax, kIdleFramesMax);
    SettledSize size(askedSize(m_videoSize));
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
        bool isRecorded = false;
        if (status == StreamReader::Status::Picture) {
            const auto arrival = std::chrono::steady_clock::now();
            isRecorded = handOn(reader, arrival);
            if (!isRecorded || !isBehind(arrival))
                handlePicture(reader, pool, size);
            m_ready = std::chrono::steady_clock::now();
        }
        if (!isRecorded) // else it is the camera that bounds the load
            pause();
    }
}

// True while the stream is recorded.
bool CameraThread::handOn(StreamReader &reader, std::chrono::steady_clock::time_point arrival)
{
    std::shared_ptr<PictureSink> sink;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        sink = m_sink;
    }
    reader.keepRaw(sink != nullptr);
    if (!sink)
        return false;
    CameraPicture picture = reader.sent();
    picture.arrival = arrival;
    sink->take(picture);
    return true;
}

// A picture that had to wait is recorded, but not shown: the next ones would wait as well, until
// the camera loses some.
bool CameraThread::isBehind(std::chrono::steady_clock::time_point arrival)
{
    const double rate = QByteArray::fromStdString(m_frameRate).toDouble();
    const std::chrono::duration<double> idle = arrival - m_ready;
    const bool isLate = rate > 0 && idle.count() < kIdleShare / rate;
    m_leftOutInARow = isLate && m_leftOutInARow < kLeftOutInARowMax ? m_leftOutInARow + 1 : 0;
    return m_leftOutInARow > 0;
}

// The sides keep their proportions, so the longer one decides for both, however the picture lies.
int CameraThread::wantedReduction(const StreamReader &reader) const
{
    const int shown = m_shownSide;
    if (shown <= 0 || !reader.compressed())
        return 1;
    for (const int reduction : {4, 2}) {
        const cv::Size reduced = decodedSize(reader.size(), {reduction});
        if (std::max(reduced.width, reduced.height) >= shown)
            return reduction;
    }
    return 1;
}

void CameraThread::handlePicture(StreamReader &reader, FramePool &pool, SettledSize &settled)
{
    const auto arrival = std::chrono::steady_clock::now();
    const JpegDecoding how{wantedReduction(reader), frameAngle(), false};
    const cv::Size full = reader.size();
    if (!settled.accepts(full) || !isQuarterTurn(how.angle))
        return;
    const cv::Size size = decodedSize(full, how);
    const std::shared_ptr<Frame> frame = pool.acquire(size.width, size.height);
    if (!frame || !reader.convert(frame->pixels, how))
        return;
    frame->reduction = how.reduction;
    frame->width = isSideways(how.angle) ? full.height : full.width;
    frame->height = isSideways(how.angle) ? full.width : full.height;
    frame->compressed = reader.compressed();
    frame->sequence = ++m_sequence;
    frame->angle = how.angle;
    frame->arrival = arrival;
    const FrameTreatment treatment{how.angle, m_preview};
    const FramePtr shown = finishFrame(*frame, pool, treatment);
    publish(frame);
    if (treatment.preview)
        offerImage(shown ? shown : frame);
}

FramePtr CameraThread::finishFrame(Frame &, FramePool &, const FrameTreatment &)
{
    return nullptr;
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

void CameraThread::streamEnded(End end)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_running)
        return;
    m_openFlag = false;
    m_ended = true;
    m_latest.set(nullptr);
    m_end = end;
    QMetaObject::invokeMethod(this, "deliverEnd", Qt::QueuedConnection);
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
