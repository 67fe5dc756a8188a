#pragma once

#include "imaging/outline.h"
#include "imaging/smart_sheet.h"
#include "video/jpeg_picture.h"

#include <opencv2/core/mat.hpp>

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

/// One camera frame. Immutable once published, so any thread may keep and read it without a lock.
///
/// Its pixels are as many as the view needs; `compressed` has them all. Sizes and places are
/// counted in the camera's pixels, whatever the reduction.
struct Frame
{
    cv::Mat pixels;      ///< rows x cols x 3, 8 bits, R,G,B, rows without padding: height and width
                         ///< divided by `reduction`, rounded up
    int reduction = 1;   ///< 1, 2 or 4
    int width = 0;       ///< after rotation, camera pixels
    int height = 0;      ///< after rotation, camera pixels
    JpegPtr compressed;  ///< null when `pixels` is all there is; then nothing is reduced
    int angle = 0;       ///< clockwise degrees by which the camera's picture was turned
    int searchedFor = 0; ///< CropMode for which documents were looked for; 0 was none
    std::chrono::steady_clock::time_point arrival; ///< when it came from the camera
    uint64_t sequence = 0;                         ///< counts published frames of one stream from 1
    std::vector<Outline> outlines; ///< documents found, largest first, in camera pixels
    std::vector<Quad> sheets;      ///< the same for smart crop, camera pixels
    bool areSheetsFixed = false;   ///< their corners were set by the user
    int documentsLeftOut = 0;      ///< found, too, but more than a capture takes
};

using FramePtr = std::shared_ptr<const Frame>;
