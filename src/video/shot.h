#pragma once

#include "imaging/capture.h"
#include "imaging/save_options.h"
#include "video/frame.h"

#include <opencv2/core/types.hpp>

#include <string>

/// One capture as it was asked for: the pictures that lay there at the press and all that the user
/// had chosen by then. Nothing that happens later, to a camera or to a setting, changes it.
struct Shot
{
    FramePtr frame;             ///< the main camera's newest; null when it delivered none
    bool isCombined = false;    ///< with the assist camera's picture in it, uncut
    FramePtr assist;            ///< that picture; null when that camera delivered none
    cv::Rect assistPlace;       ///< of it, pixels of the turned main frame
    int angle = 0;              ///< clockwise, of the file; the frame may lie otherwise
    int cropMode = 0;           ///< see CropMode
    cv::Rect manualRect;        ///< for manual crop, pixels of `manualFrame`
    cv::Size manualFrame;       ///< size of the frame that it was drawn on; empty: not known
    bool isNamedByCode = false; ///< the file is named after the code in the picture
    int codeType = 0;           ///< 0 barcode, 1 QR code
    SaveOptions save;
};

/// Decodes, searches, cuts and writes `shot` into `path` (UTF-8; see captureFrame). Throws nothing;
/// any thread.
CaptureResult takeShot(const Shot &shot, const std::string &path);

/// The same for the assist camera's own picture `frame`, which is never cut.
CaptureResult takeAssistShot(const FramePtr &frame, const std::string &path,
                             const SaveOptions &save);
