#include "camera/cam_params.h"
#include "features/button_frames.h"
#include "features/recorder.h"
#include "mainwindow/cameras/autofocus.h"
#include "mainwindow/cameras/button_port.h"
#include "mainwindow/cameras/filling_box.h"
#include "mainwindow/cameras/open_problem_text.h"
#include "mainwindow/cameras/picture_controls.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/sheet_corners.h"
#include "mainwindow/preview/status_line.h"
#include "platform/platform.h"
#include "ui_mainwindow.h"
#include "video/gr_cam_item.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

#include <QDebug>
#include <QMessageBox>
#include <QTimer>

namespace {

constexpr int kNoCameraBoxMs = 3000;
constexpr const char *kSilent =
    QT_TRANSLATE_NOOP("MainWindow", "The camera is connected, but sends no picture.");

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
        connect(videoThread, &CameraThread::sgSilent, this, &MainWindow::tellSilent);
        connect(ui->graphicsView, &Gr_View::rotated, videoThread, &IVideoTread::setRotateAngle);
        connect(videoThread, &IVideoTread::sheetsChanged, m_sheetCorners, &SheetCorners::show);
        connect(m_sheetCorners, &SheetCorners::sheetsSet, videoThread, &IVideoTread::fixSheets);
    }
    if (camParams)
        return;
    camParams = new CamParams(this);
    connect(camParams, SIGNAL(getResCountFinish(int)), this, SLOT(ToGetResCountResult(int)));
    connect(camParams, SIGNAL(getResCountFinish2(int)), this, SLOT(ToGetResCountResult2(int)));
    connect(camParams, &CamParams::modesUnknown, this, &MainWindow::tellModesUnknown);
    connect(camParams, &CamParams::mainProbeFinished, this, [this] {
        if (isOpenAssistCam && !(videoTwoThread && videoTwoThread->isActive()))
            getAndOpenCameraTwo();
    });
}

void MainWindow::probeMainCamera()
{
    if (!camParams->isStillListed(camid))
        return; // the next check lists the cameras anew
    recorder->setCamera(camid);
    showHint(m_isSilent ? kSilent : QT_TR_NOOP("Connecting to the camera..."));
    m_picture->open(platform().cameras().value(camid).uniqueId);
    camParams->getResolutionCount(camid);
}

// At the start the window is to be seen first, below the box.
void MainWindow::tellNoCamera()
{
    showHint(QT_TR_NOOP("No camera!"));
    QTimer::singleShot(0, this, &MainWindow::showNoCameraBox);
}

void MainWindow::showNoCameraBox()
{
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
    m_openProblem = platform().openProblem(camid);
    showNoMainPicture(QT_TR_NOOP("The camera could not be opened."));
    if (m_isOpenFailureTold)
        return; // the camera check goes on trying every two seconds
    m_isOpenFailureTold = true;
    const QString reason = openProblemText(m_openProblem);
    m_openFailureBox = showBox(
        QMessageBox::Warning, QStringLiteral("提示"), QStringLiteral("开启摄像头失败！"),
        reason.isEmpty() ? tr("The camera could not be opened. Another program may be using it: "
                              "close that program, or plug the camera in again.")
                         : reason);
}

// Whom the system forbids to open a camera it does not tell the resolutions either.
void MainWindow::tellModesUnknown()
{
    offerNoResolution(QT_TR_NOOP("The camera does not tell its resolutions."));
    if (platform().openProblem(camid).kind == OpenProblem::Forbidden)
        tellOpenFailed();
}

// It is tried again and again, without the hint changing each time.
void MainWindow::tellSilent()
{
    m_isSilent = true;
    showNoMainPicture(kSilent);
}

// Does not hold up the live picture, as a modal box would.
QMessageBox *MainWindow::showBox(QMessageBox::Icon icon, const QString &title, const QString &text,
                                 const QString &detail)
{
    auto *box = new QMessageBox(icon, title, text, QMessageBox::Ok, this);
    box->setInformativeText(detail);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
    return box;
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

void MainWindow::changeAndOpenCamera(int index)
{
    camid = camParams->geCameraID(index);
    camParams->setChangeDeviceMode(true);
    probeMainCamera();
}

void MainWindow::closeCameras()
{
    if (videoThread)
        videoThread->endStream();
    if (videoTwoThread)
        videoTwoThread->endStream();
    showNoPicture();
}

// Neither camera shows an old picture as if it were live.
void MainWindow::showNoPicture()
{
    showAssistEmpty(QT_TR_NOOP("No camera!"));
    showNoMainPicture(QT_TR_NOOP("No camera!"));
}

void MainWindow::showNoMainPicture(const char *hint)
{
    camItem->SetQImage(QImage());
    camItem->update(QRectF());
    m_sheetCorners->show({}, false);
    m_status->clearCamera();
    showHint(hint);
}

void MainWindow::on_deviceComBox_currentIndexChanged(int)
{
    if (!isCanDo)
        return;
    if (videoThread)
        videoThread->endStream();
    changeAndOpenCamera(ui->deviceComBox->currentIndex());
    focusCentralWidget();
}

void MainWindow::showFocusAbility()
{
    const bool canFocus = m_picture->canFocus();
    ui->Bt_Focus->setEnabled(canFocus);
    ui->Bt_Focus->setToolTip(canFocus ? tr("Focus the camera once")
                                      : tr("This camera cannot be told to focus"));
}

void MainWindow::on_Bt_Focus_clicked()
{
    if (!m_autofocus) {
        m_autofocus = new Autofocus(this);
        connect(m_autofocus, &Autofocus::failed, this,
                [this] { warn(tr("The camera did not focus.")); });
    }
    m_autofocus->start(camid);
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
            videoThread->endStream();
        qDebug() << ui->resolutionComBox->currentText();
        return ChangeResolution(ui->resolutionComBox->currentText());
    }
}
