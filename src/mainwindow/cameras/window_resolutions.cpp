#include "app/log.h"
#include "camera/cam_params.h"
#include "mainwindow/cameras/filling_box.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

namespace {

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
        logLine(QStringLiteral("another camera stands at index %1 now").arg(deviceIndex));
        camera.endStream();
        return;
    }
    camera.openCamera(std::to_string(deviceIndex), mode.size.toStdString(),
                      mode.rate.toStdString());
}

} // namespace

// The sizes of the camera before are not those of this one.
void MainWindow::offerNoResolution(const char *hint)
{
    const FillingBox filling;
    m_resolutions.clear();
    ui->resolutionComBox->clear();
    showNoMainPicture(hint);
}

void MainWindow::ToGetResCountResult(int count)
{
    logLine(QStringLiteral("ToGetResCountResult start"));
    const QVector<ProbedMode> modes = probedModes(*camParams, count);
    logLine(QStringLiteral("ToGetResCountResult ......."));
    m_resolutions = nativeResolutions(modes);
    logResolutions();
    const int tallest = tallestResolution(m_resolutions);
    if (tallest < 0) {
        offerNoResolution(QT_TR_NOOP("The camera offers no usable resolution."));
        return;
    }
    if (ui->deviceComBox->currentIndex() == 0)
        addInsertResolution(m_resolutions.at(tallest).rate);
    fillResolutionBox();
    const ResolutionEntry mode =
        resolutionToOpen(m_resolutions, ui->resolutionComBox->currentText());
    logLine(QStringLiteral("o_resolution:") + mode.size);
    if (!isOpenAt(mode))
        openMainCamera(mode);
    logLine(QStringLiteral("ToGetResCountResult end"));
}

void MainWindow::logResolutions() const
{
    QStringList sizes;
    for (const ResolutionEntry &entry : m_resolutions)
        sizes.append(entry.size);
    logLine(QStringLiteral("opReslist:") + sizes.join(QLatin1Char(',')));
}

void MainWindow::fillResolutionBox()
{
    const FillingBox filling;
    ui->resolutionComBox->clear();
    for (const ResolutionEntry &entry : qAsConst(m_resolutions))
        ui->resolutionComBox->addItem(entry.size);
    const QString before = choiceFor(m_cameraChoices, camParams->uniqueId(camid)).size;
    const int known = ui->resolutionComBox->findText(before);
    const int chosen = known >= 0 ? known : tallestResolution(m_resolutions);
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

// A camera that was open before is shown as it was then.
void MainWindow::openMainCamera(const ResolutionEntry &mode)
{
    Gr_View *view = ui->graphicsView;
    const QString id = camParams->uniqueId(camid);
    const PreviewGeometry current = view->previewGeometry();
    if (id != m_openedId && !m_openedId.isEmpty())
        m_cameraChoices[m_openedId].view = current;
    const PreviewGeometry former = id == m_openedId ? current : choiceFor(m_cameraChoices, id).view;
    const bool isKnown = !former.frame().isEmpty();
    const QSize size = parseSize(mode.size);
    op_width = size.width();
    op_height = size.height();
    videoThread->setRotateAngle(isKnown ? former.angle() : view->rotateAngle());
    openCamera(*videoThread, *camParams, camid, mode);
    m_openedCamera = camid;
    m_openedId = id;
    m_openedMode = mode;
    view->setPaintRegionInit(op_width, op_height);
    logLine(QStringLiteral("ToGetResCountResult->SceneShowWidth:%1").arg(SceneShowWidth));
    logLine(QStringLiteral("ToGetResCountResult->SceneShowHeight:%1").arg(SceneShowHeight));
    layOutPreview();
    if (isKnown)
        view->setPreviewGeometry(former);
}

// A camera may settle on another size than it was asked for.
void MainWindow::followFrameSize(const Frame &frame)
{
    const bool isSideways = frame.angle == 90 || frame.angle == 270;
    const QSize size =
        isSideways ? QSize(frame.height, frame.width) : QSize(frame.width, frame.height);
    if (size == QSize(op_width, op_height))
        return;
    op_width = size.width();
    op_height = size.height();
    ui->graphicsView->setPaintRegionInit(op_width, op_height);
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
        connect(videoTwoThread, &CameraThread::sgSilent, this, [this] {
            showAssistEmpty(QT_TR_NOOP("The camera is connected, but sends no picture."));
        });
        connect(videoTwoThread, &CameraThread::sgOpenFailed, this,
                [this] { showAssistEmpty(QT_TR_NOOP("The camera could not be opened.")); });
    }
    const ProbedMode &mode = modes.at(chosen);
    ResolutionEntry entry;
    entry.size = QStringLiteral("%1x%2").arg(mode.width).arg(mode.height);
    entry.rate = QString::number(mode.fps);
    if (videoTwoThread->isActive() && !videoTwoThread->hasEnded() && m_assistSize == entry.size)
        return; // a probe may report more than once
    m_assistSize = entry.size;
    openCamera(*videoTwoThread, *camParams, camParams->geCameraID(1), entry);
    ui->camTwoLabel->keepPlace();
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
    CheckPhotoIsNeedInsert(chosen.width(), chosen.height());
    m_cameraChoices[camParams->uniqueId(camid)].size = text;
    videoThread->endStream();
    openMainCamera(mode);
}

void MainWindow::on_resolutionComBox_currentIndexChanged(QString text)
{
    if (!isCanDo)
        return;
    ChangeResolution(text);
    focusCentralWidget();
}
