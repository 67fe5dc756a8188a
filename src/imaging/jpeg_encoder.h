#pragma once

#include <opencv2/core/mat.hpp>

#include <vector>

/// Encodes `image` (8 bits, B,G,R or gray) as a JPEG that decodes to the same pixels as that of
/// cv::imencode, `quality` in percent, -1 for the encoder's own. All cores work on bands of the
/// picture, which are joined by restart markers. False when the picture cannot be encoded; throws
/// what cv::imencode throws.
bool encodeJpeg(const cv::Mat &image, int quality, std::vector<uchar> &bytes);
