#pragma once

#include <opencv2/core/mat.hpp>

#include <vector>

/// B,G,R of a B,G,R,A picture of 8 bits; what is transparent becomes white paper.
cv::Mat onWhite(const cv::Mat &bgra);

bool isPng(const std::vector<unsigned char> &bytes);

/// Decodes a PNG file to 8 bits, gray or B,G,R, with white where it is transparent. Empty when it
/// is damaged or no PNG. Throws what the decoder throws.
cv::Mat decodePng(const std::vector<unsigned char> &bytes);
