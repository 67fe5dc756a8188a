// Cameras and buttons that come and go while the program runs.
#include "camera/cam_params.h"
#include "features/recorder.h"
#include "mainwindow/cameras/button_port.h"
#include "mainwindow/cameras/camera_offer.h"
#include "mainwindow/cameras/filling_box.h"
#include "mainwindow/cameras/picture_controls.h"
#include "mainwindow/mainwindow.h"
#include "platform/platform.h"
#include "ui_mainwindow.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

#include <QFileSystemWatcher>
#include <QTimer>

namespace {

constexpr int kIdleTriesMax = 5;
constexpr int kDeviceSettlesMs = 300;

} // namespace

// Broken off; or never begun, since the camera was away just when it was asked for its modes or was
// to be opened: tried again a few times, not for ever with a camera that has nothing to offer.
bool MainWindow::isMainStreamLost()
{
    if (!videoThread || camParams->isProbing())
        return false;
    if (videoThread->isActive())
        return videoThread->hasEnded();
    return m_idleTries++ < kIdleTriesMax;
}

// Its plug may have been out for so short a time that the number of cameras never changed.
void MainWindow::reopenLostAssist()
{
    if (isOpenAssistCam && isOpenCamera && videoTwoThread && videoTwoThread->hasEnded())
        getAndOpenCameraTwo();
}

void MainWindow::on_timer_timeout()
{
    if (!isButtonPortOpen())
        openButtonPort([this] { receiveInfo(); });
    recorder->checkCamera();
    const int count = camParams->checkCameraCount();
    const bool isLost = count >= 1 && (isMainStreamLost() || !camParams->isStillListed(camid));
    if (count == allCameraCount && !isLost) {
        reopenLostAssist();
        m_cameraOffer->offer(count == 0); // others may have come or gone
        return;
    }
    listCamerasAnew();
}

// The timer alone would leave the picture of a camera that is gone for up to two seconds. A device
// that has appeared gets its permissions a moment later.
void MainWindow::watchDevices()
{
    const QStringList folders = platform().deviceFolders();
    if (folders.isEmpty())
        return;
    auto *settling = new QTimer(this);
    settling->setSingleShot(true);
    settling->setInterval(kDeviceSettlesMs);
    connect(settling, &QTimer::timeout, this, &MainWindow::on_timer_timeout);
    auto *watcher = new QFileSystemWatcher(folders, this);
    connect(watcher, &QFileSystemWatcher::directoryChanged, settling, qOverload<>(&QTimer::start));
}

void MainWindow::listCamerasAnew()
{
    closeCameras();
    allCameraCount = camParams->checkCameraCount();
    if (allCameraCount >= 1)
        getAndOpenCamera();
    else
        offerNoCamera();
}

void MainWindow::offerNoCamera()
{
    const FillingBox filling;
    ui->deviceComBox->clear();
    m_isSilent = false;
    m_picture->open(QString());
    offerNoResolution(QT_TR_NOOP("No camera!"));
}
