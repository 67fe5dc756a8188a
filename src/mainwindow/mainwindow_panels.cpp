#include "mainwindow/look/choice_texts.h"
#include "mainwindow/look/once_hint.h"
#include "mainwindow/look/themed_icon.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/manual_cut_overlay.h"
#include "mainwindow/preview/preview_feedback.h"
#include "mainwindow/preview/sheet_corners.h"
#include "ui_mainwindow.h"
#include "video/gr_cam_item.h"
#include "video/gr_shape_item.h"

#include <QDebug>
#include <QGraphicsScene>
#include <QGuiApplication>
#include <QIntValidator>
#include <QLocale>
#include <QScreen>
#include <QScrollBar>
#include <QToolButton>

#include <utility>

namespace {

const QString kHighlightStyle = QStringLiteral("QToolButton{background-color: #C0E5F0;}");
const QString kTransparentStyle =
    QStringLiteral("QToolButton{background-color: rgba(255, 255, 255, 0);}");
const QColor kHighlightInk(0x10, 0x2a, 0x35); ///< text and icon on the highlight, on any palette
constexpr double kSmallTextScale = 0.9;       ///< texts under the small icons

} // namespace

void MainWindow::UiLayoutPro()
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    const QSize available = primary->availableSize();
    qDebug() << "screen->width :" << available.width();
    qDebug() << "screen->height :" << available.height();
    const QSize desktop = primary->size();
    move((desktop.width() - width()) / 2, (desktop.height() - height()) / 2);

    scene = new QGraphicsScene(0, 0, SceneShowWidth, SceneShowHeight, this);
    camItem = new Gr_CamItem;
    shapeItem = new Gr_ShapeItem;
    scene->addItem(camItem);
    scene->addItem(shapeItem);
    camItem->setPos(0, 0);
    shapeItem->setPos(0, 0);

    ui->graphicsView->setRenderHint(QPainter::Antialiasing);
    ui->graphicsView->setWindowFlag(Qt::FramelessWindowHint);
    ui->graphicsView->setScene(scene);
    ui->graphicsView->setCamItem(camItem);
    ui->graphicsView->setShapeItem(shapeItem);

    ui->camTwoLabel->hide();
    ui->camTwoLabel->setScaledContents(true);
    ui->manualCutLabel->hide();
    hidePageTurnLabel();
    ui->manualCutLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    ui->wiseTimeLabel->setAttribute(
        Qt::WA_TransparentForMouseEvents); // the picture is panned below it
    prepareOverlays();                     // the slots of the boxes filled below use them
    ui->displayWidget->installEventFilter(this);
    SetToolWidgetBtStyle();
    SetDocumentModeUI();
    SetMultipdfModeUI();
    SetMergeImageModeUI();
    SetRecordModeUI();
    SetAssistcamModeUI();
    SetSettingModeUI();
    CreatListWidgetMenu();

    showMode(DocumentMode);
}

void MainWindow::SetToolWidgetBtStyle()
{
    for (QToolButton *button : {ui->Bt_LeftRotate, ui->Bt_RightRotate, ui->Bt_ZoomIn,
                                ui->Bt_ZoomOut, ui->Bt_TrueSize, ui->Bt_BestSize})
        button->setStyleSheet(kTransparentStyle);
    const QList<QPair<QAbstractButton *, QString>> icons{
        {ui->Bt_Focus, QStringLiteral("focus")},
        {ui->Bt_LeftRotate, QStringLiteral("rotate_left")},
        {ui->Bt_RightRotate, QStringLiteral("rotate_right")},
        {ui->Bt_ZoomIn, QStringLiteral("zoom_in")},
        {ui->Bt_ZoomOut, QStringLiteral("zoom_out")},
        {ui->Bt_TrueSize, QStringLiteral("true_size")},
        {ui->Bt_BestSize, QStringLiteral("fit")},
        {ui->bt_delete, QStringLiteral("delete")},
        {ui->bt_selectall, QStringLiteral("select_all")},
        {ui->bt_addfile, QStringLiteral("add_file")},
        {ui->bt_delete2, QStringLiteral("delete")},
        {ui->bt_selectall2, QStringLiteral("select_all")},
        {ui->bt_addfile2, QStringLiteral("add_file")},
        {ui->bt_exportpdf, QStringLiteral("export")},
        {ui->bt_cancelexport, QStringLiteral("close")},
        {ui->bt_openpdf, QStringLiteral("file_pdf")},
        {ui->Bt_StartRec, QStringLiteral("record_start")},
        {ui->Bt_StopRec, QStringLiteral("record_stop")},
        {ui->bt_selectpath, QStringLiteral("folder")},
        {ui->bt_openpath, QStringLiteral("folder_open")},
        {ui->bt_cam2_on, QStringLiteral("power_on")},
        {ui->bt_cam2_off, QStringLiteral("close")},
        {ui->bt_wiseCaptrue, QStringLiteral("capture_auto")},
    };
    for (const auto &entry : icons)
        entry.first->setIcon(themedIcon(entry.second));
    for (QWidget *row : {ui->toolWidget, ui->ImgListwidget, ui->multipdfPage}) {
        for (QToolButton *button : row->findChildren<QToolButton *>()) {
            QFont font = button->font();
            font.setPointSizeF(font.pointSizeF() * kSmallTextScale);
            button->setFont(font);
        }
    }
    ui->bt_captrue->setIcon(themedIcon(QStringLiteral("capture"), Qt::white));
}

void MainWindow::SetBottomFunWidgetBtStyle(FunctionMode mode)
{
    struct ModeButton
    {
        FunctionMode mode;
        QToolButton *button;
        QString icon;
    };
    const ModeButton buttons[] = {
        {DocumentMode, ui->bt_document, QStringLiteral("document")},
        {MultipdfMode, ui->bt_multipdf, QStringLiteral("multipdf")},
        {RecordMode, ui->bt_record, QStringLiteral("record")},
        {SettingMode, ui->bt_set, QStringLiteral("setting")},
        {AssistcamMode, ui->bt_assistcam, QStringLiteral("assistcam")},
        {MergeImageMode, ui->bt_merge, QStringLiteral("merge")},
    };
    for (const ModeButton &entry : buttons) {
        const bool isHighlighted = entry.mode == mode;
        QPalette colors;
        if (isHighlighted) {
            colors.setColor(QPalette::ButtonText, kHighlightInk);
            colors.setColor(QPalette::WindowText, kHighlightInk);
        }
        entry.button->setStyleSheet(isHighlighted ? kHighlightStyle : QString());
        entry.button->setPalette(colors);
        entry.button->setIcon(themedIcon(entry.icon, isHighlighted ? kHighlightInk : QColor()));
    }
}

void MainWindow::calmControls()
{
    for (QWidget *control : ui->stackedWidget->findChildren<QWidget *>()) {
        auto *box = qobject_cast<QComboBox *>(control);
        if (!box && !qobject_cast<QAbstractSlider *>(control))
            continue;
        if (qobject_cast<QScrollBar *>(control))
            continue;
        control->setFocusPolicy(Qt::StrongFocus);
        control->installEventFilter(this);
        if (box)
            connect(box, QOverload<int>::of(&QComboBox::activated), this,
                    [this] { focusCentralWidget(); });
    }
}

void MainWindow::SetMultipdfModeUI()
{
    ui->listWidget1->setAttribute(Qt::WA_MacShowFocusRect, false);
    ui->pdflistWidget->setAttribute(Qt::WA_MacShowFocusRect, false);
    preparePdfExport();
}

void MainWindow::showOpenPage()
{
    const std::pair<QToolButton *, bool> pages[] = {{ui->bt_set, isSettingFlag},
                                                    {ui->bt_assistcam, isAssistcamFlag}};
    for (const auto &[button, isOpen] : pages) {
        button->setProperty("pageOpen", isOpen);
        button->setStyleSheet(button->styleSheet()); // read anew, with the property
    }
}

void MainWindow::showMode(FunctionMode mode)
{
    ui->stackedWidget->setCurrentIndex(mode);
    SetBottomFunWidgetBtStyle(mode);
    currentFunMode = mode;
    isSettingFlag = false;
    isAssistcamFlag = false;
    showOpenPage();
}

void MainWindow::toggleOverlayPage(FunctionMode page, bool &isShown, bool &isOtherShown)
{
    isShown = !isShown;
    isOtherShown = false;
    ui->stackedWidget->setCurrentIndex(isShown ? page : currentFunMode);
    showOpenPage();
}

void MainWindow::focusCentralWidget()
{
    ui->centralWidget->setFocus(Qt::OtherFocusReason);
}

void MainWindow::on_bt_document_clicked()
{
    showMode(DocumentMode);
}

void MainWindow::on_bt_multipdf_clicked()
{
    showMode(MultipdfMode);
}

void MainWindow::on_bt_record_clicked()
{
    showMode(RecordMode);
}

void MainWindow::on_bt_merge_clicked()
{
    showMode(MergeImageMode);
}

void MainWindow::on_bt_set_clicked()
{
    toggleOverlayPage(SettingMode, isSettingFlag, isAssistcamFlag);
}

void MainWindow::on_bt_assistcam_clicked()
{
    toggleOverlayPage(AssistcamMode, isAssistcamFlag, isSettingFlag);
}
