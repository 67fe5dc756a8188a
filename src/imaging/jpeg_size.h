#pragma once

#include <opencv2/core/types.hpp>

#include <vector>

/// Width and height of the JPEG file `bytes`, without decoding it. Empty when the file is damaged
/// or cut off: its end marker must be there.
cv::Size jpegSize(const std::vector<unsigned char> &bytes);
