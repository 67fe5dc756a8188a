#include "video/video_two_thread.h"

#include "app/log.h"
#include "app/state.h"
#include "video/shot.h"

#include <QDebug>
#include <QFile>

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
    const bool isCaptured = capture(path, isActive() ? currentFrame() : nullptr);
    return isCaptured && QFile::exists(QString::fromUtf8(path)) ? path : std::string();
}

bool IVideoTwoThread::capture(std::string path, FramePtr frame)
{
    m_captureError = takeAssistShot(frame, path, currentSaveOptions()).error;
    return m_captureError.empty();
}
