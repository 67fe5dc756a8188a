#include "imaging/capture.h"
#include "mainwindow/cameras/camera_offer.h"
#include "mainwindow/cameras/picture_controls.h"
#include "mainwindow/capture/live_codes.h"
#include "mainwindow/lists/image_list.h"
#include "mainwindow/look/shortcuts.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/manual_cut_overlay.h"
#include "mainwindow/preview/preview_feedback.h"
#include "mainwindow/preview/sheet_corners.h"
#include "mainwindow/preview/status_line.h"
#include "ui_mainwindow.h"
#include "video/gr_cam_item.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

#include <QGraphicsScene>
#include <QKeyEvent>
#include <QTimer>
#include <QToolButton>
#include <QtMath>

namespace {

void centre(QWidget *widget, const QWidget *container)
{
    widget->move((container->width() - widget->width()) / 2,
                 (container->height() - widget->height()) / 2);
}

} // namespace

void MainWindow::prepareOverlays()
{
    m_feedback = new PreviewFeedback(ui->displayWidget);
    m_cameraOffer = new CameraOffer(ui->displayWidget);
    connect(m_cameraOffer, &CameraOffer::chosen, this, &MainWindow::listCamerasAnew);
    m_picture = new PictureControls(this);
    connect(m_picture, &PictureControls::changed, this, &MainWindow::showFocusAbility);
    m_status = new StatusLine(ui->statusBar);
    m_manualCut = new ManualCutOverlay(ui->displayWidget);
    m_manualCut->follow(ui->graphicsView);
    m_manualCut->hide();
    m_sheetCorners = new SheetCorners(ui->graphicsView, shapeItem);
    new LiveCodes(ui->graphicsView, scene, this);
    connect(m_manualCut, &ManualCutOverlay::rectChanged, this, &MainWindow::showManualCutSize);
    connect(ui->graphicsView, &Gr_View::showRectChanged, this, &MainWindow::showShownPicture);
    m_countdownTimer = new QTimer(this);
    m_countdownTimer->setObjectName(QStringLiteral("countdownTimer"));
    connect(m_countdownTimer, &QTimer::timeout, this, &MainWindow::stepCountdown);
}

void MainWindow::addShortcuts()
{
    m_shortcuts = new Shortcuts(this, [this] { focusCentralWidget(); });
    const auto click = [](QAbstractButton *button) { return [button] { button->click(); }; };
    const auto held = Shortcuts::Repeat::WhileHeld;
    m_shortcuts->add({Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}, click(ui->bt_captrue));
    m_shortcuts->add({Qt::CTRL + Qt::Key_Plus, Qt::CTRL + Qt::Key_Equal}, click(ui->Bt_ZoomIn),
                     held);
    m_shortcuts->add({Qt::CTRL + Qt::Key_Minus}, click(ui->Bt_ZoomOut), held);
    m_shortcuts->add({Qt::CTRL + Qt::Key_0}, click(ui->Bt_BestSize));
    m_shortcuts->add({Qt::CTRL + Qt::Key_T}, click(ui->Bt_TrueSize));
    m_shortcuts->add({Qt::CTRL + Qt::Key_L}, click(ui->Bt_LeftRotate));
    m_shortcuts->add({Qt::CTRL + Qt::Key_R}, click(ui->Bt_RightRotate));
    m_shortcuts->add({Qt::CTRL + Qt::Key_1}, [this] { showDocumentsOrTrueSize(); });
    m_shortcuts->add({Qt::CTRL + Qt::Key_2}, click(ui->bt_multipdf));
    m_shortcuts->add({Qt::CTRL + Qt::Key_3}, click(ui->bt_merge));
    m_shortcuts->add({Qt::CTRL + Qt::Key_4}, click(ui->bt_record));
    m_shortcuts->add({Qt::CTRL + Qt::Key_5}, click(ui->bt_assistcam));
    m_shortcuts->add({Qt::CTRL + Qt::Key_6}, click(ui->bt_set));
    m_shortcuts->add({Qt::Key_Delete}, [this] { listInUse()->deleteSelected(); });
    m_shortcuts->add({QKeySequence(QKeySequence::SelectAll)}, [this] { listInUse()->selectAll(); });
    m_shortcuts->add({Qt::Key_Escape}, [this] { m_sheetCorners->release(); });
    m_shortcuts->add({Qt::Key_F1}, click(ui->bt_guide));
    m_shortcuts->add({Qt::Key_F11},
                     [this] { setWindowState(windowState() ^ Qt::WindowFullScreen); });
}

// Ctrl+1 is both the first mode and, as in picture viewers, the true size.
void MainWindow::showDocumentsOrTrueSize()
{
    const bool isShown = ui->stackedWidget->currentIndex() == DocumentMode;
    (isShown ? ui->Bt_TrueSize : ui->bt_document)->click();
}

void MainWindow::layOutPreview()
{
    const QWidget *area = ui->displayWidget;
    ui->graphicsView->setGeometry(0, 0, area->width(), area->height());
    SceneShowWidth = ui->graphicsView->width();
    SceneShowHeight = ui->graphicsView->height();
    m_manualCut->setGeometry(ui->graphicsView->geometry());
    fitToolTexts();
    placeManualCutLabel();
    if (op_width < 1 || op_height < 1)
        return;
    scene->setSceneRect(0, 0, SceneShowWidth, SceneShowHeight);
    ui->graphicsView->toSuitable();
    centre(ui->wiseTimeLabel, area);
    ui->camTwoLabel->keepPlace();
}

// Texts under the preview's buttons only where they all fit.
void MainWindow::fitToolTexts()
{
    const QList<QToolButton *> buttons = ui->toolWidget->findChildren<QToolButton *>();
    for (const Qt::ToolButtonStyle style : {Qt::ToolButtonTextUnderIcon, Qt::ToolButtonIconOnly}) {
        int needed = 0;
        for (QToolButton *button : buttons) {
            button->setToolButtonStyle(style);
            needed += button->sizeHint().width() + ui->toolWidget->layout()->spacing();
        }
        if (needed <= ui->displayWidget->width())
            return;
    }
}

void MainWindow::showShownPicture()
{
    const ShownPicture picture = ui->graphicsView->shownPicture();
    m_status->showZoom(picture.rect.width(), picture.frame.width());
    placeManualCutLabel();
    askForShownPixels();
}

// The camera threads decode no more than the screen shows. The window may come to a screen with
// denser pixels at any time, so they are told anew with each picture.
void MainWindow::askForShownPixels()
{
    const auto onScreen = [this](QSizeF size) {
        const QSizeF pixels = size * devicePixelRatioF();
        return QSize(qCeil(pixels.width()), qCeil(pixels.height()));
    };
    if (videoThread)
        videoThread->setShownSize(onScreen(ui->graphicsView->shownPicture().rect.size()));
    if (videoTwoThread)
        videoTwoThread->setShownSize(onScreen(ui->camTwoLabel->size()));
}

// Names the size of the file that a capture would write.
void MainWindow::showManualCutSize(const QRect &frameRect)
{
    const QSize frame = ui->graphicsView->shownPicture().frame;
    const cv::Rect saved =
        clampedManualRect({frameRect.x(), frameRect.y(), frameRect.width(), frameRect.height()},
                          {frame.width(), frame.height()});
    ui->manualCutLabel->setText(tr("Drag the frame around the document: %1 x %2 pixels")
                                    .arg(saved.width)
                                    .arg(saved.height));
    ui->manualCutLabel->adjustSize();
    placeManualCutLabel();
}

// In the middle of what is cut out, as far as the preview shows that.
void MainWindow::placeManualCutLabel()
{
    centre(ui->manualCutLabel, ui->displayWidget);
    const QRect seen = m_manualCut->screenRect().toRect() & ui->displayWidget->rect();
    if (seen.isEmpty())
        return;
    QRect label = ui->manualCutLabel->geometry();
    label.moveCenter(seen.center());
    ui->manualCutLabel->move(label.topLeft());
}

// Without a picture there is nothing to be cut, and its place says why.
void MainWindow::showManualCutWhereWanted()
{
    const bool isWanted = cutMode == ManualCrop && !m_hint;
    if (isWanted == m_manualCut->isHidden())
        showManualCut(isWanted);
}

void MainWindow::showManualCut(bool isShown)
{
    m_manualCut->setVisible(isShown);
    ui->manualCutLabel->setVisible(isShown);
    for (QWidget *widget :
         {static_cast<QWidget *>(m_manualCut), static_cast<QWidget *>(ui->camTwoLabel),
          static_cast<QWidget *>(ui->manualCutLabel), static_cast<QWidget *>(ui->wiseTimeLabel)})
        widget->raise();
    showManualCutSize(m_manualCut->frameRect());
}

QRect MainWindow::CheckManualGeometry() const
{
    constexpr int listWidth = 200; // the preview begins right of the list
    const int titleBar = frameGeometry().height() - height();
    return QRect(QPoint(x() + listWidth, y() + titleBar), ui->graphicsView->size());
}

void MainWindow::on_Bt_LeftRotate_clicked()
{
    if (!isOpenAssistCam)
        ui->graphicsView->toRotate(0);
}

void MainWindow::on_Bt_RightRotate_clicked()
{
    if (!isOpenAssistCam)
        ui->graphicsView->toRotate(1);
}

void MainWindow::on_Bt_ZoomIn_clicked()
{
    if (!isOpenAssistCam)
        ui->graphicsView->toZoom(1);
}

void MainWindow::on_Bt_ZoomOut_clicked()
{
    if (!isOpenAssistCam)
        ui->graphicsView->toZoom(0);
}

void MainWindow::on_Bt_TrueSize_clicked()
{
    if (!isOpenAssistCam)
        ui->graphicsView->toTrueSize();
}

void MainWindow::on_Bt_BestSize_clicked()
{
    ui->graphicsView->toSuitable();
}
