#include "app/log.h"
#include "camera/cam_params.h"
#include "features/button_frames.h"
#include "features/recorder.h"
#include "features/wise_captrue_thread.h"
#include "mainwindow/busy_cursor.h"
#include "mainwindow/button_port.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview_feedback.h"
#include "mainwindow/status_line.h"
#include "platform/platform.h"
#include "ui_mainwindow.h"
#include "video/gr_cam_item.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

#include <QDebug>
#include <QMessageBox>
#include <QTimer>

namespace {

constexpr int kIdleTriesMax = 5;
constexpr int kNoCameraBoxMs = 3000;

void log(const QString &message)
{
    if (isoutlog)
        WriteLog(message.toUtf8().constData());
}

/// Marks the time in which the program itself fills the device or resolution box.
class FillingBox
{
public:
    FillingBox() { isCanDo = false; }
    ~FillingBox() { isCanDo = m_before; }
    FillingBox(const FillingBox &) = delete;
    FillingBox &operator=(const FillingBox &) = delete;

private:
    const bool m_before = isCanDo;
};

QVector<ProbedMode> probedModes(const CamParams &params, int count)
{
    QVector<ProbedMode> modes;
    for (int i = 0; i < count; ++i) {
        ProbedMode mode;
        if (params.getResolution(i, mode.width, mode.height, mode.fps) == 0)
            modes.append(mode);
    }
    return modes;
}

// Not when another camera has moved to that index: the next check lists the cameras anew.
void openCamera(CameraThread &camera, const CamParams &params, int deviceIndex,
                const ResolutionEntry &mode)
{
    if (!params.isStillListed(deviceIndex)) {
        log(QStringLiteral("another camera stands at index %1 now").arg(deviceIndex));
        camera.closeCamera();
        return;
    }
    camera.openCamera(std::to_string(deviceIndex), mode.size.toStdString(),
                      mode.rate.toStdString());
}

} // namespace

void MainWindow::getAndOpenCamera()
{
    openButtonPort([this] { receiveInfo(); });
    createCameraObjects();
    allCameraCount = camParams->getCameraCount();
    if (allCameraCount < 1) {
        tellNoCamera();
        return;
    }
    {
        const FillingBox filling;
        ui->deviceComBox->clear();
        for (int i = 0; i < allCameraCount; ++i)
            ui->deviceComBox->addItem(camParams->getCameraName(i));
        ui->deviceComBox->setCurrentIndex(0);
    }
    camid = camParams->geCameraID(0);
    camParams->setChangeDeviceMode(false);
    probeMainCamera();
}

// The objects are made once and opened again as often as cameras come and go.
void MainWindow::createCameraObjects()
{
    if (!videoThread) {
        videoThread = new IVideoTread(nullptr);
        connect(videoThread, SIGNAL(sgImage(QImage)), this, SLOT(slImage(QImage)));
        connect(videoThread, &CameraThread::sgOpenFailed, this, &MainWindow::tellOpenFailed);
        connect(ui->graphicsView, &Gr_View::rotated, videoThread, &IVideoTread::setRotateAngle);
    }
    if (camParams)
        return;
    camParams = new CamParams(this);
    connect(camParams, SIGNAL(getResCountFinish(int)), this, SLOT(ToGetResCountResult(int)));
    connect(camParams, SIGNAL(getResCountFinish2(int)), this, SLOT(ToGetResCountResult2(int)));
    connect(camParams, &CamParams::modesUnknown, this,
            [this] { offerNoResolution(QT_TR_NOOP("The camera does not tell its resolutions.")); });
    connect(camParams, &CamParams::mainProbeFinished, this, [this] {
        if (isOpenAssistCam && !(videoTwoThread && videoTwoThread->isActive()))
            getAndOpenCameraTwo();
    });
}

void MainWindow::probeMainCamera()
{
    if (!camParams->isStillListed(camid))
        return; // the next check lists the cameras anew
    showHint(QT_TR_NOOP("Connecting to the camera..."));
    showFocusAbility();
    camParams->getResolutionCount(camid);
}

void MainWindow::tellNoCamera()
{
    showHint(QT_TR_NOOP("No camera!"));
    if (m_noCameraBox)
        return;
    QMessageBox box(QMessageBox::Information, QString(), tr("No camera!"), QMessageBox::NoButton,
                    nullptr, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    m_noCameraBox = &box;
    QTimer::singleShot(kNoCameraBoxMs, &box, &QMessageBox::accept);
    box.exec();
}

void MainWindow::tellOpenFailed()
{
    showNoMainPicture(QT_TR_NOOP("The camera could not be opened."));
    if (m_isOpenFailureTold)
        return; // the camera check goes on trying every two seconds
    m_isOpenFailureTold = true;
    showBox(QMessageBox::Warning, QStringLiteral("提示"), QStringLiteral("开启摄像头失败！"),
            tr("The camera could not be opened. Another program may be using it: close that "
               "program, or plug the camera in again."));
}

// Does not hold up the live picture, as a modal box would.
void MainWindow::showBox(QMessageBox::Icon icon, const QString &title, const QString &text,
                         const QString &detail)
{
    auto *box = new QMessageBox(icon, title, text, QMessageBox::Ok, this);
    box->setInformativeText(detail);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}

// Not while another probe runs, which this one would break off: the end of the main camera's leads
// here again.
void MainWindow::getAndOpenCameraTwo()
{
    if (allCameraCount < 2 || camParams->isProbing())
        return;
    camParams->setChangeDeviceMode(false);
    camParams->getResolutionCount(camParams->geCameraID(1));
}

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

void MainWindow::changeAndOpenCamera(int index)
{
    camid = camParams->geCameraID(index);
    camParams->setChangeDeviceMode(true);
    probeMainCamera();
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
        return;
    }
    allCameraCount = count;
    closeCameras();
    if (count >= 1)
        getAndOpenCamera();
    else
        offerNoCamera();
}

void MainWindow::offerNoCamera()
{
    const FillingBox filling;
    ui->deviceComBox->clear();
    offerNoResolution(QT_TR_NOOP("No camera!"));
}

void MainWindow::closeCameras()
{
    const BusyCursor busy;
    if (videoThread)
        videoThread->closeCamera();
    if (videoTwoThread)
        videoTwoThread->closeCamera();
    showNoPicture();
}

// Neither camera shows an old picture as if it were live.
void MainWindow::showNoPicture()
{
    showAssistEmpty();
    showNoMainPicture(QT_TR_NOOP("No camera!"));
}

void MainWindow::showNoMainPicture(const char *hint)
{
    camItem->SetQImage(QImage());
    camItem->update(QRectF());
    m_status->clearCamera();
    showHint(hint);
}

// The sizes of the camera before are not those of this one.
void MainWindow::offerNoResolution(const char *hint)
{
    const FillingBox filling;
    m_resolutions.clear();
    ui->resolutionComBox->clear();
    showNoMainPicture(hint);
}

void MainWindow::on_deviceComBox_currentIndexChanged(int)
{
    if (!isCanDo)
        return;
    const BusyCursor busy;
    if (videoThread)
        videoThread->closeCamera();
    changeAndOpenCamera(ui->deviceComBox->currentIndex());
    focusCentralWidget();
}

void MainWindow::ToGetResCountResult(int count)
{
    log(QStringLiteral("ToGetResCountResult start"));
    const QVector<ProbedMode> modes = probedModes(*camParams, count);
    log(QStringLiteral("ToGetResCountResult ......."));
    m_resolutions = nativeResolutions(modes);
    logResolutions();
    const int tallest = tallestResolution(m_resolutions);
    if (tallest < 0) {
        offerNoResolution(QT_TR_NOOP("The camera offers no usable resolution."));
        return;
    }
    const ResolutionEntry mode = m_resolutions.at(tallest);
    if (ui->deviceComBox->currentIndex() == 0)
        addInsertResolution(mode.rate);
    fillResolutionBox();
    log(QStringLiteral("o_resolution:") + mode.size);
    if (!isOpenAt(mode))
        openMainCamera(mode);
    log(QStringLiteral("ToGetResCountResult end"));
}

void MainWindow::logResolutions() const
{
    QStringList sizes;
    for (const ResolutionEntry &entry : m_resolutions)
        sizes.append(entry.size);
    log(QStringLiteral("opReslist:") + sizes.join(QLatin1Char(',')));
}

void MainWindow::fillResolutionBox()
{
    const FillingBox filling;
    ui->resolutionComBox->clear();
    for (const ResolutionEntry &entry : qAsConst(m_resolutions))
        ui->resolutionComBox->addItem(entry.size);
    const int chosen = tallestResolution(m_resolutions);
    ui->resolutionComBox->setCurrentIndex(chosen);
    const QSize size = parseSize(m_resolutions.at(chosen).size);
    CheckPhotoIsNeedInsert(size.width(), size.height());
}

// A probe may report more than once; the second report brings nothing new for a running camera.
bool MainWindow::isOpenAt(const ResolutionEntry &mode) const
{
    return videoThread->isActive() && !videoThread->hasEnded() && m_openedCamera == camid &&
           m_openedMode.size == mode.size && m_openedMode.rate == mode.rate;
}

void MainWindow::openMainCamera(const ResolutionEntry &mode)
{
    const QSize size = parseSize(mode.size);
    op_width = size.width();
    op_height = size.height();
    videoThread->setRotateAngle(ui->graphicsView->rotateAngle());
    openCamera(*videoThread, *camParams, camid, mode);
    m_openedCamera = camid;
    m_openedMode = mode;
    ui->graphicsView->setPaintRegionInit(op_width, op_height);
    log(QStringLiteral("ToGetResCountResult->SceneShowWidth:%1").arg(SceneShowWidth));
    log(QStringLiteral("ToGetResCountResult->SceneShowHeight:%1").arg(SceneShowHeight));
    layOutPreview();
}

void MainWindow::ToGetResCountResult2(int count)
{
    if (!isOpenAssistCam)
        return;
    const QVector<ProbedMode> modes = probedModes(*camParams, count);
    const int chosen = assistResolution(modes);
    if (chosen < 0)
        return;
    if (!videoTwoThread) {
        videoTwoThread = new IVideoTwoThread(nullptr);
        connect(videoTwoThread, SIGNAL(sgImageTwo(QImage)), this, SLOT(slImageTwo(QImage)));
    }
    const ProbedMode &mode = modes.at(chosen);
    ResolutionEntry entry;
    entry.size = QStringLiteral("%1x%2").arg(mode.width).arg(mode.height);
    entry.rate = QString::number(mode.fps);
    if (videoTwoThread->isActive() && !videoTwoThread->hasEnded() && m_assistSize == entry.size)
        return; // a probe may report more than once
    m_assistSize = entry.size;
    openCamera(*videoTwoThread, *camParams, camParams->geCameraID(1), entry);
    ui->camTwoLabel->keepInside();
}

void MainWindow::addInsertResolution(QString fps)
{
    ::addInsertResolution(m_resolutions, fps);
}

void MainWindow::CheckPhotoIsNeedInsert(int w, int h)
{
    ::CheckPhotoIsNeedInsert(w, h);
}

void MainWindow::GetActualOpenResolution(int &width, int &height)
{
    const QString chosen = QStringLiteral("%1x%2").arg(width).arg(height);
    const QSize size = parseSize(resolutionToOpen(m_resolutions, chosen).size);
    width = size.width();
    height = size.height();
}

void MainWindow::ChangeResolution(QString text)
{
    const ResolutionEntry mode = resolutionToOpen(m_resolutions, text);
    const QSize chosen = parseSize(text);
    if (!videoThread || mode.size.isEmpty() || chosen.isEmpty())
        return;
    const BusyCursor busy;
    CheckPhotoIsNeedInsert(chosen.width(), chosen.height());
    videoThread->closeCamera();
    openMainCamera(mode);
}

void MainWindow::on_resolutionComBox_currentIndexChanged(QString text)
{
    if (!isCanDo)
        return;
    ChangeResolution(text);
    focusCentralWidget();
}

void MainWindow::showFocusAbility()
{
    const bool canFocus = camid >= 0 && platform().canFocus(camid);
    ui->Bt_Focus->setEnabled(canFocus);
    ui->Bt_Focus->setToolTip(canFocus ? tr("Focus the camera once")
                                      : tr("This camera cannot be told to focus"));
}

void MainWindow::on_Bt_Focus_clicked()
{
    if (!platform().focus(camid))
        warn(tr("The camera did not focus."));
    focusCentralWidget();
}

void MainWindow::receiveInfo()
{
    for (const ButtonAction action : buttonActions(readButtonPort(), isOpenAssistCam))
        act(action);
}

void MainWindow::act(ButtonAction action)
{
    Gr_View *view = ui->graphicsView;
    switch (action) {
    case ButtonAction::RotateLeft:
        return view->toRotate(0);
    case ButtonAction::RotateRight:
        return view->toRotate(1);
    case ButtonAction::ZoomIn:
        return view->toZoom(1);
    case ButtonAction::ZoomOut:
        return view->toZoom(0);
    case ButtonAction::TrueSize:
        return view->toTrueSize();
    case ButtonAction::Fit:
        return view->toSuitable();
    case ButtonAction::Capture:
        return on_bt_captrue_clicked();
    case ButtonAction::RestartCamera:
        if (videoThread)
            videoThread->closeCamera();
        qDebug() << ui->resolutionComBox->currentText();
        return ChangeResolution(ui->resolutionComBox->currentText());
    }
}
