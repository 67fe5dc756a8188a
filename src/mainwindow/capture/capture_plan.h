#pragma once

#include "mainwindow/capture/file_naming.h"

#include <QString>

#include <optional>

/// Everything that decides what one press of the capture button does.
struct CaptureSettings
{
    int mode = 0;                ///< see FunctionMode
    int imageFormat = 0;         ///< see `fImgformat`
    int nameType = 0;            ///< see NameType
    int cropMode = 0;            ///< see CropMode
    bool isAssistOpen = false;   ///< the assist camera is switched on
    bool combinesAssist = false; ///< its picture is pasted into the main one
    QString folder;              ///< output folder, without a trailing separator
    NamingFields fields;
};

/// Which picture a capture takes.
enum class CapturePicture {
    Main,     ///< the main camera's, cut as the crop mode says
    Combined, ///< the main camera's, whole, with the assist picture in it
    Assist    ///< the assist camera's
};

enum class CaptureList { CapturedFiles, PdfPages };

/// One file to capture and what becomes of it.
struct CaptureStep
{
    CapturePicture picture = CapturePicture::Main;
    QString path;
    QString name;   ///< file name, the text of the list entry
    QString folder; ///< to be created when missing; empty for the output folder itself
    bool needsManualRect = false;
    bool readsCode = false;      ///< the file is renamed after the code in the picture
    bool enlarges = false;       ///< an enlarged size applies to this file
    bool addsExtraFiles = false; ///< further documents of the same picture enter the list too
    CaptureList list = CaptureList::CapturedFiles;
};

/// What the press does with the main camera. Reading the name may set the naming counter to the
/// number typed by the user. Pages collected for a PDF are always JPEG files named by time.
CaptureStep planMainCapture(const CaptureSettings &settings, FileNaming &naming);

/// The assist picture beside the main one, or nothing when the assist camera is off or combined
/// into it. To be asked after the main capture, whose success may have taken a number. A name that
/// would make it replace `mainPath`, the file of the same press, gets "_assist" added.
std::optional<CaptureStep> planAssistCapture(const CaptureSettings &settings, FileNaming &naming,
                                             const QString &mainPath);

/// Why nothing can be captured with these settings, as a sentence for the user; empty when it
/// can.
QString captureRefusal(const CaptureSettings &settings);
