#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"
#include "video/assist_geometry.h"
#include "video/gr_cam_item.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

void MainWindow::SetAssistcamModeUI()
{
    ui->positionComBox->addItems({tr("Free"), tr("Upper left"), tr("Upper right"), tr("Middle"),
                                  tr("Bottom left"), tr("Bottom right")});
    ui->sizeComBox->addItems(assistSizeTexts());
    ui->sizeComBox->setCurrentIndex(kAssistDefaultSize);
    ui->bt_cam2_off->setEnabled(false);
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
        if (allCameraCount >= 2)
            ui->camTwoLabel->clear();
        else
            showAssistEmpty();
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
            videoTwoThread->closeCamera();
        setAssistOn(false);
        ui->camTwoLabel->hide();
        ui->camTwoLabel->clear();
    }
    focusCentralWidget();
}

void MainWindow::showAssistEmpty()
{
    ui->camTwoLabel->setText(tr("No camera!"));
}

void MainWindow::setAssistOn(bool isOn)
{
    isOpenAssistCam = isOn;
    ui->bt_cam2_off->setEnabled(isOn);
    ui->bt_cam2_on->setEnabled(!isOn);
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
