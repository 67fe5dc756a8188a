#pragma once

#include <opencv2/core/mat.hpp>

/// cv::GaussianBlur of 21 x 21 pixels with the deviation that belongs to that size, the same values
/// in a third of the time. `gray`: 8 bits, one channel, any size; `blurred` must not be the same
/// picture.
void gaussianBlur21(const cv::Mat &gray, cv::Mat &blurred);
