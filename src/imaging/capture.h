#pragma once

#include "imaging/outline.h"
#include "imaging/save_options.h"
#include "imaging/smart_sheet.h"

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>

#include <string>
#include <vector>

/// What one capture does with a frame.
struct CaptureOptions
{
    int cropMode = 0;              ///< see CropMode
    std::vector<Outline> outlines; ///< documents of this frame, for automatic and multi-graph crop
    int documentsLeftOut = 0;      ///< found, but beyond the outlines that one capture takes
    std::vector<Quad> sheets;      ///< for smart crop: corners in frame pixels
    bool areSheetsGiven = false;   ///< the user set the corners: they stay as they are
    cv::Rect manualRect;           ///< frame pixels, for manual crop; clamped to the frame
    bool nameByCode = false;       ///< rename the file after the code read from the picture
    int codeType = 0;              ///< 0 barcode, 1 QR code
    SaveOptions save;
    bool isGivenUp = false; ///< the picture may be changed: nobody else needs it
};

/// What one capture wrote.
struct CaptureResult
{
    std::vector<std::string> files; ///< files written by this capture itself, in order
    std::string code;               ///< text decoded last, as read
    std::vector<std::string> codes; ///< of each document whose code was looked for; may be empty
    std::string note;               ///< what the user should know of a success
    std::string error; ///< why nothing, or not everything, was written; empty on full success

    /// First file written, empty when there is none.
    std::string path() const { return files.empty() ? std::string() : files.front(); }
};

/// Turns `rgb` (rows x cols x 3, 8 bits, R,G,B) into one file, or one per outline, at `path`
/// (UTF-8; the ending is the format; further files get "_1", "_2", ...). Smart crop
/// without a sheet saves the whole picture and says so in `note`.
/// Works on a copy of everything it changes, unless the picture is given up. Throws nothing; any
/// thread.
CaptureResult captureFrame(const cv::Mat &rgb, const std::string &path,
                           const CaptureOptions &options);

/// What a manual crop of `rect` saves of a frame of size `frame`: the part inside of it, with sides
/// that are multiples of 4.
cv::Rect clampedManualRect(cv::Rect rect, cv::Size frame);

/// `rect`, drawn on a frame of size `drawn`, at the same place of one of size `frame`. An empty
/// `drawn` is not known and leaves it as it is.
cv::Rect scaledManualRect(cv::Rect rect, cv::Size drawn, cv::Size frame);
