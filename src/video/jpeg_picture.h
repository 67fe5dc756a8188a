#pragma once

#include <opencv2/core/types.hpp>

#include <cstdint>
#include <memory>
#include <vector>

/// One picture as the camera sent it. Immutable once published, any thread.
struct JpegPicture
{
    std::vector<uint8_t> bytes; ///< a whole JPEG file, Huffman tables optional
    cv::Size size;              ///< pixels, before any turn
};

using JpegPtr = std::shared_ptr<const JpegPicture>;
