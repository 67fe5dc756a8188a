#pragma once

#include "app/state.h"
#include "camera/resolution_list.h"
#include "mainwindow/cameras/camera_choice.h"
#include "mainwindow/capture/capture_plan.h"
#include "mainwindow/capture/taken_numbers.h"
#include "platform/platform.h"

#include <QHash>
#include <QImage>
#include <QItemSelectionModel>
#include <QMainWindow>
#include <QMessageBox>
#include <QModelIndex>
#include <QPointer>
#include <QStringList>
#include <QTime>

#include <array>
#include <optional>
#include <string>

class Autofocus;
class CamParams;
class GuideWindow;
class Gr_CamItem;
class Gr_ShapeItem;
class ImageListWidget;
class ManualCutOverlay;
class PdfExport;
class PreviewFeedback;
class QAction;
class QGraphicsScene;
class QLabel;
class QTimer;
class QTranslator;
class Recorder;
class SheetCorners;
class Shortcuts;
class StatusLine;
enum class ButtonAction;
struct CaptureOutcome;
struct CaptureResult;
struct CollectedPages;
struct Frame;
struct MergeChoice;
struct PdfExportResult;
struct PendingCapture;
struct ReplacedFile;
struct Shot;

namespace Ui {
class MainWindow;
}

/// The one window: live preview, work modes, captures and their lists.
///
/// Its slots read a control, make one call and show the result; the rules themselves live in
/// classes without widgets. Slots named on_OBJECT_SIGNAL are connected by name when the form is
/// set up. The code lies in the rooms named at the sections below, in files window_*.cpp. GUI
/// thread.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Builds the window, reads the settings, looks for cameras and starts to open the first.
    explicit MainWindow(QWidget *parent = nullptr);
    /// Saves the settings, stops recording, page turning and the cameras.
    ~MainWindow() override;

    // ---- panels: mainwindow_panels.cpp ---------------------------------------------------------

    void UiLayoutPro();          ///< builds the scene and prepares every panel
    void SetToolWidgetBtStyle(); ///< transparent buttons under the preview
    void SetBottomFunWidgetBtStyle(FunctionMode mode); ///< highlights the button of `mode`
    void SetDocumentModeUI();
    void SetMultipdfModeUI();
    void SetSettingModeUI();

    // ---- cameras: cameras/ ----------------------------------------------------------------------

    /// Looks for the button adapter and the cameras and starts probing the first camera, which is
    /// opened when the probe reports.
    void getAndOpenCamera();
    /// Starts probing the first assist camera; nothing with fewer than two cameras.
    void getAndOpenCameraTwo();
    /// Switches to entry `index` of the camera list.
    void changeAndOpenCamera(int index);
    /// Opens the main camera again at a size text such as "3264x2448" of the resolution box.
    void ChangeResolution(QString text);
    /// In: the chosen size; out: the native size at which the camera is opened for it.
    void GetActualOpenResolution(int &width, int &height);
    /// Appends the enlarged sizes of the camera's model to the size list, each at rate `fps`.
    void addInsertResolution(QString fps);
    /// Recomputes the flags that tell whether the chosen size is an enlarged one.
    void CheckPhotoIsNeedInsert(int w, int h);

    // ---- preview: preview/ ----------------------------------------------------------------------

    /// Where the preview lies on the screen, below the title bar and beside the list.
    QRect CheckManualGeometry() const;

    // ---- capture and naming: capture/ -----------------------------------------------------------

    QString getNameForFile(int nameType); ///< base name without extension
    void UpdateNumberIndex();             ///< advances the number after a successful capture
    QString getPath_NameByFolder();       ///< folder of the rule "Name as folder", created
    /// Enlarges the file `path` to the chosen size when that is an enlarged one; false when
    /// enlarging does not apply.
    bool ImageInsertPix(QString path);
    /// The manual crop rectangle in pixels of the rotated frame.
    void CalculateImgManualCutRect(int &x, int &y, int &width, int &height);

    // ---- lists: lists/ --------------------------------------------------------------------------

    void CreatListWidgetMenu();                         ///< context menus of both lists
    void addToImageList(QString path, QString name);    ///< captured files
    void addToPdfImageList(QString path, QString name); ///< pages of the next PDF
    void addMultiCropImgToList(QString path, int mode); ///< further files of the last capture

    // ---- assist camera: panels/window_assist.cpp ------------------------------------------------

    void SetAssistcamModeUI();
    /// Place of the assist picture in pixels of the rotated main frame.
    void CalculateCombinePos(int &ax, int &ay, int &aw, int &ah);

    // ---- merging: panels/window_merge.cpp -------------------------------------------------------

    void SetMergeImageModeUI();
    void MergeImageCaptruePro(); ///< captures one page; the last one starts the merge

    // ---- recording: panels/window_record.cpp ----------------------------------------------------

    void SetRecordModeUI();
    QString getRecordPath(); ///< file of the next recording

    // ---- language: look/ ------------------------------------------------------------------------

    void updateUiLanguage(); ///< sets every visible text in the language of `sLanguage`

public slots:
    void slImage(QImage image);           ///< a frame of the main camera
    void slImageTwo(QImage image);        ///< a frame of the assist camera
    void ToGetResCountResult(int count);  ///< the main camera's modes are known
    void ToGetResCountResult2(int count); ///< the assist camera's modes are known
    void RecordResultEvent(bool isOk);
    void wiseCaptrueEvent(bool isReady); ///< true: a new page lies still; false: it is moving
    void receiveInfo();                  ///< bytes from the button adapter
    bool eventFilter(QObject *watched, QEvent *event) override;
    void on_timer_timeout(); ///< the camera check, every two seconds
    void on_bt_document_clicked();
    void on_bt_multipdf_clicked();
    void on_bt_record_clicked();
    void on_bt_set_clicked();
    void on_bt_assistcam_clicked();
    void on_formatComBox_currentIndexChanged(int index);
    void on_cropComBox_currentIndexChanged(int index);
    void on_colorComBox_currentIndexChanged(int index);
    void on_nameComBox_currentIndexChanged(int index);
    void on_barCheckBox_clicked(bool checked);
    void on_barcodeRadioBt_clicked(bool checked);
    void on_qrcodeRadioBt_clicked(bool checked);
    void on_v_formatComBox_currentIndexChanged(int index);
    void on_v_nameComBox_currentIndexChanged(int index);
    void on_Bt_StartRec_clicked();
    void on_Bt_StopRec_clicked();
    void on_checkBox_clicked(bool checked);
    void on_positionComBox_currentIndexChanged(int index);
    void on_sizeComBox_currentIndexChanged(int index);
    void on_bt_cam2_on_clicked();
    void on_bt_cam2_off_clicked();
    void on_deviceComBox_currentIndexChanged(int index);
    void on_resolutionComBox_currentIndexChanged(QString text);
    void on_bt_selectpath_clicked();
    void on_bt_openpath_clicked();
    void on_languageComBox_currentIndexChanged(int index);
    void on_Bt_LeftRotate_clicked();
    void on_Bt_RightRotate_clicked();
    void on_Bt_ZoomIn_clicked();
    void on_Bt_ZoomOut_clicked();
    void on_Bt_TrueSize_clicked();
    void on_Bt_BestSize_clicked();
    void on_bt_captrue_clicked();
    void on_bt_delete_clicked();
    void on_bt_selectall_clicked();
    void on_bt_addfile_clicked();
    void on_listWidget1_doubleClicked(QModelIndex index);
    void on_TrimCheckBox_clicked(bool checked);
    void on_qualitySlider_valueChanged(int value);
    void on_pdflistWidget_doubleClicked(QModelIndex index);
    void on_bt_delete2_clicked();
    void on_bt_selectall2_clicked();
    void on_bt_addfile2_clicked();
    void on_bt_exportpdf_clicked();
    void on_bt_wiseCaptrue_clicked();
    void on_bt_merge_clicked();
    void on_twoPageRadioBt_clicked(bool checked);
    void on_threePageRadioBt_clicked(bool checked);
    void on_fourPageRadioBt_clicked(bool checked);
    void on_verticalRadioBt_clicked(bool checked);
    void on_horizontalRadioBt_clicked(bool checked);
    void on_Bt_Focus_clicked();
    void on_bt_cameras_clicked();
    void on_bt_picture_clicked();
    void on_bt_guide_clicked();
    void on_bt_about_clicked();

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    // construction and panels
    void applySettings();
    void addShortcuts();
    void prepareOverlays();
    void showMode(FunctionMode mode);
    void toggleOverlayPage(FunctionMode page, bool &isShown, bool &isOtherShown);
    void focusCentralWidget();
    void showDocumentsOrTrueSize();

    // preview
    void layOutPreview();
    void fitToolTexts();
    void showShownPicture();
    void askForShownPixels();
    void showManualCut(bool isShown);
    void showManualCutSize(const QRect &frameRect);
    void warn(const QString &text);
    QMessageBox *showBox(QMessageBox::Icon icon, const QString &title, const QString &text,
                         const QString &detail = QString());

    // cameras and buttons
    void createCameraObjects();
    void probeMainCamera();
    bool isMainStreamLost();
    void reopenLostAssist();
    void closeCameras();
    void showNoPicture();
    void showNoMainPicture(const char *hint);
    void offerNoCamera();
    void watchDevices();
    void listCamerasAnew();
    void tellModesUnknown();
    void offerNoResolution(const char *hint);
    void tellNoCamera();
    void showNoCameraBox();
    void tellOpenFailed();
    void tellSilent();
    void logResolutions() const;
    void fillResolutionBox();
    bool isOpenAt(const ResolutionEntry &mode) const;
    void openMainCamera(const ResolutionEntry &mode);
    void followFrameSize(const Frame &frame);
    void showFocusAbility();
    void act(ButtonAction action);

    // capture and lists
    NamingFields namingFields() const;
    CaptureSettings captureSettings() const;
    bool press(bool isTurnedPage);
    QString pressRefusal(const CaptureSettings &settings) const;
    bool startCapture(const CaptureStep &step, bool isTurnedPage);
    Shot shotFor(const CaptureStep &step);
    QSize enlargedSize(int angle) const;
    void listUnderWay(const CaptureStep &step);
    void finishCapture(const PendingCapture &capture, const CaptureOutcome &outcome);
    void tellCapture(const CaptureResult &result);
    void tellEnlarging(const std::string &error);
    void tellAssistCapture(const CaptureResult &result);
    std::optional<TakenNumbers::Taken> takeNumber(int rule);
    void giveBackNumber(const std::optional<TakenNumbers::Taken> &taken);
    bool mayLeaveExport();
    bool mayLeaveCaptures();
    void endWhenCapturesAreDone();
    ImageListWidget *listOf(CaptureList list) const;
    CaptureList captureList() const;
    static QItemSelectionModel::SelectionFlags selectionOfNew(CaptureList list);
    void passManualRect();
    QAction *addListAction(ImageListWidget *list, const QString &icon, const char *text);
    ImageListWidget *listInUse() const;
    void insertFiles(ImageListWidget *list, const QString &filter);

    void preparePdfExport();
    void startExport(const QStringList &selected, const QString &target);
    QString askForPdf(const QString &part);
    QStringList pagesToExport(const QStringList &selected);
    void showExport(bool isRunning);
    void showExportResult(const PdfExportResult &result);

    // assist camera, merging, recording, page turning
    void setAssistOn(bool isOn);
    void showAssistEmpty(const char *text);
    void showRestingControls();
    std::array<QLabel *, 4> pageLabels() const;
    void setMergePages(int pages);
    MergeChoice mergeChoice() const;
    bool pressMergePage(bool isTurnedPage);
    void finishMergePage(const PendingCapture &capture, const MergeChoice &choice,
                         const CaptureOutcome &outcome);
    PendingCapture nameMerge(const CaptureSettings &settings);
    void listUnmergedDocuments(const CaptureResult &result);
    void showMergePage(int page, const QImage &thumbnail);
    void clearMergePages();
    void scheduleMerge(const CollectedPages &pages, const MergeChoice &choice);
    void finishMerge(const PendingCapture &capture, const CollectedPages &pages,
                     const CaptureResult &result);
    void offerMergeAgain(const CollectedPages &pages, const QString &cause);
    void listMergePages(const QStringList &pages);
    void takeUpUnfinishedWork(); ///< of a program that ended before it was done
    QString recordRefusal() const;
    void stopRecording();
    void showRecording(bool isRunning);
    void showRecordedTime();
    void stopPageTurn();
    void stepCountdown();
    void showPageTurnTexts();
    void showPageTurnWaiting();
    void tellPageTurnFailure();
    void restartNumbering();
    QString partText(const QStringList &chosen) const;
    void showExportChoice();
    void openWithSystem(const QString &path);
    void showOpenPage();
    void calmControls();
    void placeManualCutLabel();
    void showManualCutWhereWanted();
    void passOverTakenNames(const CaptureSettings &settings);
    void tellReplacedFile(const ReplacedFile &replaced);
    void watchNumbering();
    void finishTurnedPage(const PendingCapture &capture, bool isWhole, bool isWritten);
    void losePage(QTime time, CaptureList list, const QString &announced);
    void markTurnedPageDoubtful();
    void showPageTurnLabel(const QString &text);
    void hidePageTurnLabel();

    // language and help
    void loadTranslations(bool isChinese);
    void showTextsOfState();
    void showHint(const char *text);

    Ui::MainWindow *ui = nullptr;
    QGraphicsScene *scene = nullptr;
    Gr_CamItem *camItem = nullptr;
    Gr_ShapeItem *shapeItem = nullptr;
    CamParams *camParams = nullptr;
    Recorder *recorder = nullptr;
    QTimer *checkTimer = nullptr;

    PreviewFeedback *m_feedback = nullptr;
    StatusLine *m_status = nullptr;
    Shortcuts *m_shortcuts = nullptr;
    ManualCutOverlay *m_manualCut = nullptr;
    SheetCorners *m_sheetCorners = nullptr;
    QTranslator *m_translator = nullptr;        ///< the window's texts
    QTranslator *m_qtTranslator = nullptr;      ///< those of Qt's own boxes and dialogs
    class CameraOffer *m_cameraOffer = nullptr; ///< over the preview
    OpenProblem m_openProblem;                  ///< of the last camera that did not open
    const char *m_hint = nullptr;               ///< English text over the missing picture
    const char *m_assistHint = "";              ///< English text in place of the assist picture
    QList<QAction *> m_listActions;             ///< of both lists; their data is the English text
    QStringList m_capturedFiles; ///< written by the last capture of the main camera, in order
    PdfExport *m_pdfExport = nullptr;
    QString m_exportedPages;      ///< what the running or last export takes, for the user
    QString m_exportedPdf;        ///< written last
    ResolutionList m_resolutions; ///< entries of the resolution box
    ResolutionEntry m_openedMode; ///< mode at which the main camera was opened last
    int m_openedCamera = -1;      ///< its device index
    QString m_openedId;           ///< its unique ID
    QHash<QString, CameraChoice> m_cameraChoices; ///< by unique ID
    QString m_assistSize;                         ///< mode in which the assist camera was opened
    class CaptureQueue *m_captures = nullptr;
    TakenNumbers m_takenNumbers;
    QStringList m_pathsUnderWay;          ///< of captures that are not written yet
    bool m_isClosing = false;             ///< ends when the captures are done
    bool m_isAskingToClose = false;       ///< whether they may be given up
    bool m_isPageTurnFailureTold = false; ///< in this run of automatic captures
    QString m_numberedPrefix;             ///< that the shown number belongs to
    QString m_turnedPage;                 ///< path of the last automatic capture
    int m_idleTries =
        0; ///< to begin a stream that could not even be asked for, since the last frame
    bool m_isOpenFailureTold = false; ///< since the last frame
    QPointer<QMessageBox> m_openFailureBox;
    bool m_isSilent = false; ///< the main camera has sent nothing since it was opened
    QPointer<QMessageBox> m_noCameraBox;
    Autofocus *m_autofocus = nullptr;
    class PictureControls *m_picture = nullptr; ///< of the main camera
    QPointer<class PictureDialog> m_pictureDialog;
    QPointer<GuideWindow> m_guide; ///< while it is open
    QTimer *m_countdownTimer = nullptr;
    int m_recordTimerId = 0;
    int m_recordedSeconds = 0;
};
