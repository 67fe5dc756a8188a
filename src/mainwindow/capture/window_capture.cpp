#include "camera/resolution_list.h"
#include "imaging/image_files.h"
#include "mainwindow/capture/capture_plan.h"
#include "mainwindow/capture/capture_queue.h"
#include "mainwindow/capture/file_naming.h"
#include "mainwindow/capture/pending_capture.h"
#include "mainwindow/lists/image_list.h"
#include "mainwindow/look/failure_text.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/manual_cut_overlay.h"
#include "mainwindow/preview/preview_feedback.h"
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
    press(false);
}

// False when nothing is captured; the user has been told why.
bool MainWindow::press(bool isTurnedPage)
{
    if (m_captures->isIdle())
        m_feedback->clearMessage();
    const CaptureSettings settings = captureSettings();
    const QString refusal = pressRefusal(settings);
    if (!refusal.isEmpty()) {
        warn(refusal);
        return false;
    }
    if (settings.mode == MergeImageMode)
        return pressMergePage(isTurnedPage);
    passOverTakenNames(settings);
    FileNaming naming(fNumIndex);
    const CaptureStep main = planMainCapture(captureSettings(), naming);
    bool hasPictures = startCapture(main, isTurnedPage);
    if (const auto assist = planAssistCapture(captureSettings(), naming, main.path))
        hasPictures = startCapture(*assist, isTurnedPage) && hasPictures;
    if (hasPictures)
        m_feedback->flash();
    return true;
}

QString MainWindow::pressRefusal(const CaptureSettings &settings) const
{
    if (m_isClosing)
        return tr("Not captured: the program is about to end.");
    if (!isOpenCamera)
        return tr("Not captured: no camera is open.");
    if (!m_captures->hasRoom(settings.isAssistOpen ? 2 : 1))
        return tr("Not captured: the captures before are still being written. Wait a moment.");
    return captureRefusal(settings);
}

// Takes along all that the capture needs: from here on nothing that the user or a camera does
// changes it. False when a camera has no picture, which the job then reports.
bool MainWindow::startCapture(const CaptureStep &step, bool isTurnedPage)
{
    PendingCapture capture{step, isTurnedPage, QTime::currentTime(), std::nullopt};
    const std::string path = step.path.toStdString();
    bool hasPicture = false;
    int frames = 1;
    CaptureQueue::Work work;
    if (step.picture == CapturePicture::Assist) {
        const FramePtr frame =
            videoTwoThread && videoTwoThread->isActive() ? videoTwoThread->currentFrame() : nullptr;
        hasPicture = frame != nullptr;
        work = [frame, path, save = currentSaveOptions()] {
            return CaptureOutcome{takeAssistShot(frame, path, save), {}, {}};
        };
    } else {
        const Shot shot = shotFor(step);
        hasPicture = shot.frame && (!shot.isCombined || shot.assist);
        frames = shot.isCombined ? 2 : 1;
        work = [shot, path, folder = step.folder,
                size = step.enlarges ? enlargedSize(shot.angle) : QSize()] {
            if (!folder.isEmpty())
                QDir().mkdir(folder); // a failure shows when the file is written
            CaptureOutcome outcome{takeShot(shot, path), {}, {}};
            const std::string first = outcome.result.path();
            if (!first.empty() && !size.isEmpty())
                outcome.enlargeError = ImageResizeEx(first.c_str(), size.width(), size.height());
            return outcome;
        };
    }
    if (!step.readsCode)
        capture.number = takeNumber(fNameType);
    if (isTurnedPage && step.picture != CapturePicture::Assist)
        m_turnedPage = step.path;
    m_pathsUnderWay.append(step.path);
    listUnderWay(step);
    m_captures->add(frames, std::move(work), [this, capture](const CaptureOutcome &outcome) {
        finishCapture(capture, outcome);
    });
    return hasPicture;
}

Shot MainWindow::shotFor(const CaptureStep &step)
{
    if (!videoThread)
        return {};
    if (step.needsManualRect)
        passManualRect();
    if (step.readsCode)
        videoThread->setRecogCodeType(BarQrCodeType);
    if (step.picture != CapturePicture::Combined) {
        Shot shot = videoThread->shot();
        shot.isNamedByCode = step.readsCode;
        return shot;
    }
    int ax = 0, ay = 0, aw = 0, ah = 0;
    CalculateCombinePos(ax, ay, aw, ah);
    qDebug().nospace() << "ax,ay,aw,ah" << ax << "," << ay << "," << aw << "," << ah;
    Shot shot = videoThread->combinedShot({ax, ay, aw, ah});
    shot.isNamedByCode = step.readsCode;
    return shot;
}

void MainWindow::listUnderWay(const CaptureStep &step)
{
    ImageListWidget *list = listOf(step.list);
    const int row = list->addUnderWay(step.path, step.name);
    if (row >= 0)
        list->setCurrentRow(row, selectionOfNew(step.list));
}

void MainWindow::finishCapture(const PendingCapture &capture, const CaptureOutcome &outcome)
{
    const CaptureStep &step = capture.step;
    const bool isAssist = step.picture == CapturePicture::Assist;
    m_capturedFiles = toPaths(outcome.result.files);
    m_pathsUnderWay.removeOne(step.path);
    isAssist ? tellAssistCapture(outcome.result) : tellCapture(outcome.result);
    tellEnlarging(outcome.enlargeError);

    const QString written = m_capturedFiles.value(0);
    const QString path = step.readsCode ? written : step.path;
    qDebug() << "imgpath:" << path;
    if (written.isEmpty())
        giveBackNumber(capture.number);
    if (m_turnedPage == step.path)
        m_turnedPage = path;
    const bool isWhole = !written.isEmpty() && outcome.result.error.empty();
    if (!isWhole)
        m_isClosing = false; // he is to see it
    if (capture.isTurnedPage)
        finishTurnedPage(capture, isWhole, !written.isEmpty());
    if (!capture.isTurnedPage || !written.isEmpty()) {
        listOf(step.list)->settle(step.path, path,
                                  step.readsCode ? QFileInfo(path).fileName() : step.name);
        if (step.addsExtraFiles)
            addMultiCropImgToList(path,
                                  step.list == CaptureList::PdfPages ? MultipdfMode : DocumentMode);
    }
}

void MainWindow::tellAssistCapture(const CaptureResult &result)
{
    if (!result.error.empty())
        warn(tr("The assist picture was not captured: %1").arg(failureText(result.error)));
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
    const QSize size = enlargedSize(videoThread->getRotateAngle());
    if (!size.isEmpty())
        tellEnlarging(
            videoThread->ImageResizeEx(path.toUtf8().constData(), size.width(), size.height()));
    return true;
}

void MainWindow::tellEnlarging(const std::string &error)
{
    if (!error.empty())
        warn(tr("Saved, but not enlarged: %1").arg(failureText(error)));
}

// That a capture turned by `angle` is enlarged to; empty when it is not.
QSize MainWindow::enlargedSize(int angle) const
{
    if (cutMode != NoCrop || !isEnlargedSize())
        return {};
    const QSize size = parseSize(ui->resolutionComBox->currentText());
    return angle == 90 || angle == 270 ? size.transposed() : size;
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
