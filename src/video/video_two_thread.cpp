#include "video/video_two_thread.h"

#include "app/log.h"
#include "app/state.h"
#include "imaging/assist_image.h"

#include <QDebug>
#include <QFile>

#include <opencv2/imgproc.hpp>

IVideoTwoThread *videoTwoThread = nullptr;

IVideoTwoThread::IVideoTwoThread(QObject *parent)
    : CameraThread({"openCameraTwo start", "openCameraTwo end", "closeCameraTwo start",
                    "closeCameraTwo end", "videoTwoThread->end"},
                   isOpenCameraTwo, parent)
{
}

IVideoTwoThread::~IVideoTwoThread()
{
    shutDown();
}

void IVideoTwoThread::logOpening(const QString &index, const QString &size, const QString &rate)
{
    qDebug() << "devId:" << index;
    qDebug() << "o_fps:" << rate;
    qDebug() << "o_resolution:" << size;
}

std::string IVideoTwoThread::CaptureImage(const char *path)
{
    const FramePtr frame = wholeCurrentFrame();
    m_captureError = "the camera delivers no picture";
    if (!isActive() || !frame)
        return {};
    m_capturePath = path;
    return capture(m_capturePath, frame) && QFile::exists(QString::fromStdString(m_capturePath))
               ? m_capturePath
               : std::string();
}

bool IVideoTwoThread::capture(std::string path, FramePtr frame)
{
    cv::Mat image;
    cv::cvtColor(frame->pixels, image, cv::COLOR_RGB2BGR);
    m_captureError = SaveCamTwoImage(std::move(path), std::move(image));
    return m_captureError.empty();
}
