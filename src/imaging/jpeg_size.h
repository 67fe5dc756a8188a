#pragma once

#include <opencv2/core/types.hpp>

#include <cstddef>
#include <vector>

/// Width and height of the JPEG file `bytes`, without decoding it. Empty when the file is damaged
/// or cut off: its end marker must be there.
cv::Size jpegSize(const std::vector<unsigned char> &bytes);

/// Bytes of the JPEG picture at the beginning of `bytes`, its end marker included; cameras put
/// videos and further pictures behind it. 0 when it has no end: it was cut off, or is no JPEG.
std::size_t jpegLength(const std::vector<unsigned char> &bytes);
