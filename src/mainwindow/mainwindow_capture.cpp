#include "camera/resolution_list.h"
#include "mainwindow/busy_cursor.h"
#include "mainwindow/capture_plan.h"
#include "mainwindow/failure_text.h"
#include "mainwindow/file_naming.h"
#include "mainwindow/image_list.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/manual_cut_overlay.h"
#include "mainwindow/preview_feedback.h"
#include "ui_mainwindow.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QUrl>

namespace {

QStringList toPaths(const std::vector<std::string> &files)
{
    QStringList paths;
    for (const std::string &file : files)
        paths.append(QString::fromStdString(file));
    return paths;
}

} // namespace

CaptureSettings MainWindow::captureSettings() const
{
    CaptureSettings settings;
    settings.mode = currentFunMode;
    settings.imageFormat = fImgformat;
    settings.nameType = fNameType;
    settings.cropMode = cutMode;
    settings.isAssistOpen = isOpenAssistCam;
    settings.combinesAssist = isCamCombine;
    settings.folder = SaveFolderPath;
    settings.fields = namingFields();
    return settings;
}

void MainWindow::on_bt_captrue_clicked()
{
    m_feedback->clearMessage();
    m_isCaptured = false;
    if (!isOpenCamera) {
        warn(tr("Not captured: no camera is open."));
        return;
    }
    if (const QString refusal = captureRefusal(captureSettings()); !refusal.isEmpty()) {
        warn(refusal);
        return;
    }
    if (currentFunMode == MergeImageMode) {
        MergeImageCaptruePro();
        return;
    }
    passOverTakenNames();
    FileNaming naming(fNumIndex);
    m_isCaptured = true;
    const CaptureStep main = planMainCapture(captureSettings(), naming);
    runCaptureStep(main);
    if (const auto assist = planAssistCapture(captureSettings(), naming, main.path))
        runCaptureStep(*assist);
}

void MainWindow::runCaptureStep(const CaptureStep &step)
{
    const BusyCursor busy;
    if (step.readsCode)
        repaint(); // reading may take seconds: the button is up, the old message gone
    if (step.needsManualRect)
        passManualRect();
    if (!step.folder.isEmpty())
        getPath_NameByFolder();

    const QString written = takePicture(step);
    const QString path = step.readsCode ? written : step.path;
    const QString name =
        step.readsCode ? path.mid(path.lastIndexOf(QLatin1Char('/')) + 1) : step.name;
    if (!written.isEmpty() && !step.readsCode)
        UpdateNumberIndex();
    if (!written.isEmpty() && step.enlarges)
        ImageInsertPix(path);
    qDebug() << "imgpath:" << path;
    if (m_isTurnedPage && step.picture != CapturePicture::Assist)
        m_turnedPage = path;
    if (!m_isTurnedPage || !written.isEmpty())
        listCapture(step, path, name); // a lost page gets an entry that no later one takes over
    const bool isWhole = !written.isEmpty() && (step.picture == CapturePicture::Assist ||
                                                videoThread->lastCapture().error.empty());
    if (isWhole)
        m_feedback->flash();
    m_isCaptured = m_isCaptured && isWhole;
}

void MainWindow::listCapture(const CaptureStep &step, const QString &path, const QString &name)
{
    step.list == CaptureList::PdfPages ? addToPdfImageList(path, name) : addToImageList(path, name);
    if (step.addsExtraFiles)
        addMultiCropImgToList(path, currentFunMode);
}

QString MainWindow::takePicture(const CaptureStep &step)
{
    m_capturedFiles.clear();
    const QByteArray path = step.path.toUtf8();
    std::string written;
    if (step.picture == CapturePicture::Assist) {
        std::string cause = "the camera delivers no picture";
        if (videoTwoThread) {
            written = videoTwoThread->CaptureImage(path.constData());
            cause = videoTwoThread->captureError();
        }
        if (written.empty())
            warn(tr("The assist picture was not captured: %1").arg(failureText(cause)));
        return QString::fromStdString(written);
    }
    if (!videoThread)
        return QString();
    if (step.readsCode)
        videoThread->setRecogCodeType(BarQrCodeType);
    if (step.picture == CapturePicture::Combined) {
        int ax = 0, ay = 0, aw = 0, ah = 0;
        qDebug() << "videoThread->CombineMainAssistImage...";
        CalculateCombinePos(ax, ay, aw, ah);
        qDebug().nospace() << "ax,ay,aw,ah" << ax << "," << ay << "," << aw << "," << ah;
        written = videoThread->CombineMainAssistImage(path.constData(), ax, ay, aw, ah);
    } else {
        written = videoThread->CaptureImage(path.constData(), step.readsCode);
    }
    m_capturedFiles = toPaths(videoThread->lastCapture().files);
    tellCapture(videoThread->lastCapture());
    return QString::fromStdString(written);
}

void MainWindow::tellCapture(const CaptureResult &result)
{
    if (!result.error.empty() && result.files.empty())
        warn(tr("Not captured: %1").arg(failureText(result.error)));
    else if (!result.error.empty())
        warn(tr("Not all documents were captured: %1").arg(failureText(result.error)));
    else if (result.files.empty())
        warn(tr("Not captured."));
    if (!result.note.empty())
        warn(failureText(result.note));
}

// Beside what the same press has already said.
void MainWindow::warn(const QString &text)
{
    const QString said = m_feedback->message();
    const bool isNews = said.isEmpty() || said.split(QLatin1Char('\n')).contains(text);
    m_feedback->say(isNews ? text : said + QLatin1Char('\n') + text,
                    PreviewFeedback::Kind::Warning);
}

bool MainWindow::ImageInsertPix(QString path)
{
    if (!videoThread || cutMode != NoCrop)
        return false;
    if (!isEnlargedSize())
        return true;
    QSize size = parseSize(ui->resolutionComBox->currentText());
    const int angle = videoThread->getRotateAngle();
    if (angle == 90 || angle == 270)
        size.transpose();
    const std::string error =
        videoThread->ImageResizeEx(path.toUtf8().constData(), size.width(), size.height());
    if (!error.empty())
        warn(tr("Saved, but not enlarged: %1").arg(failureText(error)));
    return true;
}

void MainWindow::passManualRect()
{
    int x = 0, y = 0, width = 0, height = 0;
    CalculateImgManualCutRect(x, y, width, height);
    if (videoThread)
        videoThread->setManualCutRect(x, y, width, height);
}

void MainWindow::CalculateImgManualCutRect(int &x, int &y, int &width, int &height)
{
    m_manualCut->frameRect().getRect(&x, &y, &width, &height);
}

void MainWindow::on_bt_selectpath_clicked()
{
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("Select"), QStringLiteral("./"), QFileDialog::ShowDirsOnly);
    if (!folder.isEmpty()) {
        ui->savepathLineEdit->setText(folder);
        SaveFolderPath = folder;
        restartNumbering();
    }
    focusCentralWidget();
}

void MainWindow::on_bt_openpath_clicked()
{
    openWithSystem(SaveFolderPath);
    focusCentralWidget();
}

void MainWindow::openWithSystem(const QString &path)
{
    if (!QFileInfo::exists(path))
        warn(tr("%1 does not exist (any more).").arg(QDir::toNativeSeparators(path)));
    else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        warn(tr("No program could be found to open %1.").arg(QDir::toNativeSeparators(path)));
}
