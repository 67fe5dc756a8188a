#include "mainwindow/look/choice_texts.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"
#include "video/assist_geometry.h"
#include "video/gr_cam_item.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

#include <utility>

void MainWindow::SetAssistcamModeUI()
{
    ui->positionComBox->addItems(choiceTexts(placementChoices(), false));
    ui->sizeComBox->addItems(assistSizeTexts());
    ui->sizeComBox->setCurrentIndex(kAssistDefaultSize);
    ui->bt_cam2_off->setEnabled(false);
    ui->camTwoLabel->setWordWrap(true);
    ui->camTwoLabel->setPicture([this] { return camItem->getShowGeometry(); });
}

void MainWindow::slImageTwo(QImage image)
{
    ui->camTwoLabel->setPixmap(QPixmap::fromImage(image));
    askForShownPixels();
}

void MainWindow::on_bt_cam2_on_clicked()
{
    if (!isOpenAssistCam) {
        setAssistOn(true);
        showAssistEmpty(allCameraCount >= 2 ? QT_TR_NOOP("Connecting to the camera...")
                                            : QT_TR_NOOP("No camera!"));
        getAndOpenCameraTwo();
        if (isOpenCamera)
            ui->graphicsView->toSuitable();
        ui->camTwoLabel->moveToPictureCorner();
        ui->camTwoLabel->show();
        ui->camTwoLabel->raise();
    }
    focusCentralWidget();
}

void MainWindow::on_bt_cam2_off_clicked()
{
    if (isOpenAssistCam) {
        if (videoTwoThread)
            videoTwoThread->endStream();
        setAssistOn(false);
        ui->camTwoLabel->hide();
        ui->camTwoLabel->clear();
    }
    focusCentralWidget();
}

/// `text` is English.
void MainWindow::showAssistEmpty(const char *text)
{
    m_assistHint = text;
    ui->camTwoLabel->setText(tr(text));
}

// They would move the picture under the assist camera's.
void MainWindow::showRestingControls()
{
    const std::pair<QWidget *, const char *> controls[] = {
        {ui->Bt_LeftRotate, QT_TR_NOOP("Turn the picture to the left (Ctrl+L)")},
        {ui->Bt_RightRotate, QT_TR_NOOP("Turn the picture to the right (Ctrl+R)")},
        {ui->Bt_ZoomIn, QT_TR_NOOP("Show the picture larger (Ctrl++)")},
        {ui->Bt_ZoomOut, QT_TR_NOOP("Show the picture smaller (Ctrl+-)")},
        {ui->Bt_TrueSize,
         QT_TR_NOOP("Show one camera pixel per screen pixel (Ctrl+T, or Ctrl+1 in Document mode)")},
    };
    for (const auto &[control, tip] : controls) {
        control->setEnabled(!isOpenAssistCam);
        control->setToolTip(isOpenAssistCam ? tr("Not while the assist camera is open") : tr(tip));
    }
}

void MainWindow::setAssistOn(bool isOn)
{
    isOpenAssistCam = isOn;
    ui->bt_cam2_off->setEnabled(isOn);
    ui->bt_cam2_on->setEnabled(!isOn);
    showRestingControls();
}

void MainWindow::on_checkBox_clicked(bool checked)
{
    isCamCombine = checked;
    focusCentralWidget();
}

void MainWindow::on_positionComBox_currentIndexChanged(int index)
{
    if (index < 0)
        return; // emptied for another language
    camCombinePos = index;
    focusCentralWidget();
}

void MainWindow::on_sizeComBox_currentIndexChanged(int index)
{
    ui->camTwoLabel->applySize(index);
    focusCentralWidget();
}

void MainWindow::CalculateCombinePos(int &ax, int &ay, int &aw, int &ah)
{
    AssistPlacement placement;
    placement.view = ui->camTwoLabel->geometry();
    placement.picture = camItem->getShowGeometry();
    placement.frame = QSize(op_width, op_height);
    placement.angle = videoThread ? videoThread->getRotateAngle() : 0;
    placement.position = camCombinePos;
    assistCombineRect(placement).getRect(&ax, &ay, &aw, &ah);
}
