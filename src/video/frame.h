#pragma once

#include "imaging/outline.h"
#include "imaging/smart_sheet.h"

#include <opencv2/core/mat.hpp>

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

/// One decoded camera frame. Immutable once published, so any thread may keep and read it
/// without a lock.
struct Frame
{
    cv::Mat pixels;      ///< height x width x 3, 8 bits, R,G,B, rows without padding
    int width = 0;       ///< after rotation, pixels
    int height = 0;      ///< after rotation, pixels
    int angle = 0;       ///< clockwise degrees by which the camera's picture was turned
    int searchedFor = 0; ///< CropMode for which documents were looked for; 0 was none
    std::chrono::steady_clock::time_point arrival; ///< when it was decoded
    uint64_t sequence = 0;                         ///< counts published frames of one stream from 1
    std::vector<Outline> outlines; ///< documents found, largest first, in frame pixels
    std::vector<Quad> sheets;      ///< the same for smart crop, frame pixels
    bool areSheetsFixed = false;   ///< their corners were set by the user
    int documentsLeftOut = 0;      ///< found, too, but more than a capture takes
};

using FramePtr = std::shared_ptr<const Frame>;
