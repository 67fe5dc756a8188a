#pragma once

/// Process-wide state: the user's settings and the run state shared by the folders.
///
/// Everything here is owned by the GUI thread. Values that a second thread reads or writes are
/// `std::atomic`; nothing else in the program is global. Image work below the named entry points
/// never looks here: it takes values.

#include "app/choices.h"

#include <QString>
#include <QStringList>

#include <array>
#include <atomic>
#include <vector>

class MainWindow;
class IVideoTread;
class IVideoTwoThread;
class wiseCaptrueThr;
class QProcess;
class QSerialPort;

/// The window's work modes; the value is the index of the mode's page in the stacked panel.
/// `SettingMode` and `AssistcamMode` are overlay pages only: `currentFunMode` never holds them.
enum FunctionMode {
    DocumentMode = 0,
    MultipdfMode = 1,
    RecordMode = 2,
    SettingMode = 3,
    AssistcamMode = 4,
    MergeImageMode = 5
};

// ---- settings, kept in scanner.ini ----------------------------------------------------------

extern int colorMode;            ///< colour effect, see ColorMode
extern std::atomic<int> cutMode; ///< crop mode, see CropMode; read by the decode thread per frame
extern int fNameType;            ///< naming rule, see NameType
extern int fImgformat;           ///< 0 JPG, 1 BMP, 2 PNG, 3 TIF, 4 PDF; anything else acts as JPG
extern QString fRecformat;       ///< video container: "mov", "avi" or "mp4"
extern int ImgQuality;           ///< JPEG quality in percent
extern int sLanguage;            ///< 0 English, 1 Chinese; anything else acts as English
extern QString SaveFolderPath;   ///< output folder without a trailing separator

// ---- the window -------------------------------------------------------------------------------

extern MainWindow *pMainWin;       ///< the one window; null before it is built and after it is gone
extern bool isLoadFormFinish;      ///< false while the window's constructor runs
extern bool isCanDo;               ///< false while the program itself fills the device or size box
extern int currentFunMode;         ///< see FunctionMode; only ever 0, 1, 2 or 5
extern bool isSettingFlag;         ///< the Setting page lies over the mode's page
extern bool isAssistcamFlag;       ///< the Assist cam page lies over the mode's page
extern int SceneShowWidth;         ///< width of the preview scene, pixels
extern int SceneShowHeight;        ///< height of the preview scene, pixels
extern bool isPaintMouseDown;      ///< the left button is held over the preview
extern bool ismove;                ///< the pointer moved since the press
extern std::atomic<bool> isoutlog; ///< log switch; nothing turns it off

// ---- capture ----------------------------------------------------------------------------------

extern int fNumIndex;         ///< naming sequence counter, not kept between runs
extern int BarQrCodeType;     ///< kind of code read for a name: 0 barcode, 1 QR code
extern bool isDelBlackedge;   ///< trimming of dark margins
extern bool isRecogBarQrcode; ///< code reading is available

// ---- cameras ----------------------------------------------------------------------------------

constexpr int kCamdeviceMax = 10;
extern std::array<int, kCamdeviceMax> Camdevice; ///< device index of each listed camera
extern QStringList CamdeviceName;                ///< display name of each listed camera
extern int myDevCount;                           ///< number of listed cameras
extern int allCameraCount;                       ///< copy kept by the window's camera check
extern int camid;                                ///< device index of the camera being opened
extern int op_width;                             ///< width at which the main camera is open
extern int op_height;                            ///< height at which the main camera is open
extern std::atomic<bool> isOpenCamera;           ///< main camera delivers packets
extern std::atomic<bool> isOpenCameraTwo;        ///< assist camera delivers packets
extern IVideoTread *videoThread;                 ///< main camera; defined in video/
extern IVideoTwoThread *videoTwoThread;          ///< assist camera; defined in video/
extern QProcess *poc;                            ///< the running mode probe; defined in camera/
extern bool isProcessCmd;                        ///< false while a probe runs

/// Enlarged-size flags of the main camera's model. The name states the sensor's class and the
/// largest offered class in units of ten thousand pixels.
extern bool is500wTo800w, is800wTo1000w, is800wTo1200w, is800wTo1300w, is1100wTo1300w,
    is1100wTo1400w, is1100wTo1500w, is1100wTo1600w, is1100wTo1800w, is1300wTo1600w, is1300wTo1800w,
    is1300wTo2200w, is1600wTo1800w, is1600wTo2000w, is1600wTo2100w;

/// True while the chosen size is one of the class's enlarged sizes.
extern bool isPhoto500wTo800w, isPhoto800wTo1200w, isPhoto800wTo1300w, isPhoto1100wTo1300w,
    isPhoto1100wTo1400w, isPhoto1100wTo1500w, isPhoto1100wTo1600w, isPhoto1100wTo1800w,
    isPhoto1300wTo1600w, isPhoto1300wTo1800w, isPhoto1300wTo2200w, isPhoto1600wTo1800w,
    isPhoto1600wTo2000w, isPhoto1600wTo2100w;

// ---- assist camera ----------------------------------------------------------------------------

extern bool isOpenAssistCam; ///< the user has switched the assist camera on
extern bool isCamCombine;    ///< the assist picture is pasted into each main capture
extern int camCombinePos;    ///< placement of the pasted picture, index of the placement box
extern bool isdown;          ///< the assist view is being dragged

// ---- merge, page turn, recording, buttons -----------------------------------------------------

extern int mergePages;                       ///< pages per merged image, 2 to 4
extern int mergeDir;                         ///< 0 vertical, 1 horizontal
extern int mergeCount;                       ///< pages captured so far
extern std::vector<QString> combinePathList; ///< intermediate page files in capture order
extern std::atomic<bool> isWiseCaptrue;      ///< automatic capture runs
extern int wiseCount;                        ///< countdown value
extern bool isTimerDoing;                    ///< a countdown runs
extern wiseCaptrueThr *wiseCaptrueThread;    ///< defined in features/
extern bool isRecord;                        ///< a recording runs
extern int recordNameType;                   ///< 1 date and time, 2 custom, 3 name as folder
extern QSerialPort *serial;                  ///< button adapter; defined in mainwindow/
