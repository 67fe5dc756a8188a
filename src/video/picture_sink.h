#pragma once

#include "video/jpeg_picture.h"

#include <opencv2/core/types.hpp>

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

/// One picture as the camera sent it: a JPEG or, without one, its pixels in the camera's format.
struct CameraPicture
{
    JpegPtr jpeg;
    std::shared_ptr<const std::vector<uint8_t>> raw;
    int pixelFormat = -1; ///< AVPixelFormat of `raw`
    cv::Size size;        ///< pixels, before any turn
    std::chrono::steady_clock::time_point arrival;
};

/// Receives every picture of a camera, also those that are not shown.
class PictureSink
{
public:
    PictureSink() = default;
    virtual ~PictureSink() = default;
    PictureSink(const PictureSink &) = delete;
    PictureSink &operator=(const PictureSink &) = delete;

    /// Decode thread; must not wait.
    virtual void take(const CameraPicture &picture) = 0;
};
