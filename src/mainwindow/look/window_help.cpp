#include "mainwindow/cameras/cameras_dialog.h"
#include "mainwindow/cameras/picture_dialog.h"
#include "mainwindow/look/about_text.h"
#include "mainwindow/look/guide_window.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

void MainWindow::on_bt_guide_clicked()
{
    if (!m_guide)
        m_guide = new GuideWindow(this);
    m_guide->show();
    m_guide->raise();
    m_guide->activateWindow();
}

void MainWindow::on_bt_cameras_clicked()
{
    CamerasDialog dialog(this);
    if (dialog.exec() == QDialog::Accepted)
        listCamerasAnew();
    focusCentralWidget();
}

// Stays beside the live picture, which shows what each change does.
void MainWindow::on_bt_picture_clicked()
{
    if (!m_pictureDialog)
        m_pictureDialog = new PictureDialog(m_picture, this);
    m_pictureDialog->show();
    m_pictureDialog->raise();
    m_pictureDialog->activateWindow();
}

void MainWindow::on_bt_about_clicked()
{
    QMessageBox box(QMessageBox::NoIcon, tr("About Pictor"), aboutText(), QMessageBox::Ok, this);
    box.setIconPixmap(windowIcon().pixmap(64));
    box.setTextInteractionFlags(Qt::TextBrowserInteraction);
    box.exec();
    focusCentralWidget();
}
