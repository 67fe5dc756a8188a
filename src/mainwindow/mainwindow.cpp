#include "mainwindow/mainwindow.h"

#include "app/log.h"
#include "app/paths.h"
#include "app/replaced_file.h"
#include "app/settings.h"
#include "camera/cam_params.h"
#include "features/recorder.h"
#include "features/wise_captrue_thread.h"
#include "mainwindow/cameras/button_port.h"
#include "mainwindow/capture/capture_queue.h"
#include "mainwindow/look/accessible_roles.h"
#include "mainwindow/look/shortcuts.h"
#include "mainwindow/look/themed_icon.h"
#include "mainwindow/preview/manual_cut_overlay.h"
#include "mainwindow/preview/preview_feedback.h"
#include "mainwindow/preview/status_line.h"
#include "ui_mainwindow.h"
#include "video/gr_cam_item.h"
#include "video/gr_shape_item.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFontInfo>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QTimer>

#include <sys/stat.h>

MainWindow *pMainWin = nullptr;

namespace {

constexpr int kCameraCheckMs = 2000;
constexpr int kQualityDefault = 80; // percent
constexpr mode_t kOutputFolderMode = 0755;

QString readStyle()
{
    QFile file(QStringLiteral(":/style/pictor.qss"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The desktop's font, made smaller where the longest text of the panels, which have fixed widths,
// would be cut off.
QFont fittingFont(QFont font)
{
    constexpr int room = 184; // pixels, beside the arrow of a selection box
    constexpr double smallest = 6, step = 0.5;
    const QString longest = QStringLiteral("Document optimization");
    double points = QFontInfo(font).pointSizeF();
    while (QFontMetrics(font).horizontalAdvance(longest) > room && points > smallest) {
        points -= step;
        font.setPointSizeF(points);
    }
    return font;
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent)
    , ui(new Ui::MainWindow)
{
    setWindowIcon(themedIcon(QStringLiteral("pictor")));
    setFont(fittingFont(font()));
    installAccessibleRoles();
    ui->setupUi(this);
    setStyleSheet(readStyle());

    isLoadFormFinish = false;
    pMainWin = this;
    installEventFilter(this);

    const QString settings = settingsPath();
    const QString marker = documentsPath() + QStringLiteral("/outlog");
    qDebug() << settings;
    if (QFile::exists(marker))
        QFile::remove(marker);

    logLine(QStringLiteral("start scanner"));
    SaveFolderPath = documentsPath() + QStringLiteral("/Image");
    if (QFile::exists(settings))
        readcfgini(settings);
    else
        writecfgini(settings);
    if (!SaveFolderPath.isEmpty() && !QFile::exists(SaveFolderPath))
        ::mkdir(QFile::encodeName(SaveFolderPath).constData(), kOutputFolderMode);
    logLine(SaveFolderPath);

    recorder = new Recorder(this);
    recorder->getScreenDevID();
    connect(recorder, SIGNAL(recordSignal(bool)), this, SLOT(RecordResultEvent(bool)));

    wiseCaptrueThread = new wiseCaptrueThr(this);
    connect(wiseCaptrueThread, SIGNAL(wiseCaptrueSignal(bool)), this, SLOT(wiseCaptrueEvent(bool)));
    connect(wiseCaptrueThread, &wiseCaptrueThr::shotIsDoubtful, this,
            &MainWindow::markTurnedPageDoubtful);

    m_captures = new CaptureQueue(this);
    endWhenCapturesAreDone();

    UiLayoutPro();
    addShortcuts();
    if (QFile::exists(settings))
        readcfgini(settings);
    if (ImgQuality == 0 && !isQualityChosen)
        ImgQuality = kQualityDefault; // nobody wants pictures that cannot be looked at
    applySettings();
    on_qualitySlider_valueChanged(ImgQuality);
    updateUiLanguage();
    watchNumbering();
    getAndOpenCamera();
    if (areSettingsDamaged)
        warn(tr("The settings could not all be read. Those that could not are at their defaults."));
    takeUpUnfinishedWork();

    checkTimer = new QTimer(this);
    checkTimer->stop();
    checkTimer->setInterval(kCameraCheckMs);
    connect(checkTimer, SIGNAL(timeout()), this, SLOT(on_timer_timeout()));
    checkTimer->start();
    watchDevices();

    logLine(QStringLiteral("scanner run ..."));
    isLoadFormFinish = true;
}

MainWindow::~MainWindow()
{
    m_captures->finish();
    setReplacedListener({});
    writecfgini(settingsPath());
    checkTimer->stop();
    stopPageTurn();
    stopRecording();
    recorder->finishNow(); // while the camera still delivers
    if (videoThread)
        videoThread->closeCamera();
    if (videoTwoThread)
        videoTwoThread->closeCamera();
    closeButtonPort();
    wiseCaptrueThread->setFrameSource({});
    delete videoThread;
    delete videoTwoThread;
    videoThread = nullptr;
    videoTwoThread = nullptr;
    wiseCaptrueThread = nullptr;
    pMainWin = nullptr;
    delete ui;
}

void MainWindow::applySettings()
{
    ui->formatComBox->setCurrentIndex(fImgformat);
    ui->cropComBox->setCurrentIndex(cutMode);
    ui->colorComBox->setCurrentIndex(colorMode);
    ui->nameComBox->setCurrentIndex(fNameType);
    ui->languageComBox->setCurrentIndex(sLanguage);
    int recordFormat = 0; // what is unknown is the last one
    while (recordFormat + 1 < static_cast<int>(videoFormats().size()) &&
           '.' + fRecformat != QLatin1String(choiceOf(videoFormats(), recordFormat).ending))
        ++recordFormat;
    ui->v_formatComBox->setCurrentIndex(recordFormat);
}

// The area of the preview changes its height also when the texts below it come or go.
bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->displayWidget && event->type() == QEvent::Resize)
        layOutPreview();
    const auto *control = qobject_cast<QWidget *>(watched);
    if (event->type() == QEvent::Wheel && control && control != this && !control->hasFocus()) {
        event->ignore(); // for what lies behind it
        return true;
    }
    return false;
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    layOutPreview();
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    layOutPreview();
    qDebug() << "resizeEvent->SceneShowWidth:" << SceneShowWidth;
    qDebug() << "resizeEvent->SceneShowHeight:" << SceneShowHeight;
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    if (m_manualCut->isVisible() && m_manualCut->handleKey(event->key(), event->modifiers()))
        return;
    QMainWindow::keyPressEvent(event);
}

void MainWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && isLoadFormFinish)
        SetBottomFunWidgetBtStyle(static_cast<FunctionMode>(currentFunMode));
}

void MainWindow::slImage(QImage image)
{
    const FramePtr frame = videoThread ? videoThread->lastFrame() : nullptr;
    if (frame)
        followFrameSize(*frame);
    camItem->SetQImage(image);
    camItem->update(QRectF());
    m_status->countFrame(frame ? QSize(frame->width, frame->height) : image.size());
    askForShownPixels();
    if (m_hint)
        showHint(nullptr);
    delete m_openFailureBox;
    m_isOpenFailureTold = false;
    m_isSilent = false;
    m_idleTries = 0;
}
