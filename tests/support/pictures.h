#pragma once

#include <opencv2/core.hpp>

/// True when both pictures have the same size, type and values.
inline bool identical(const cv::Mat &a, const cv::Mat &b)
{
    return a.size() == b.size() && a.type() == b.type() &&
           (a.empty() || cv::norm(a, b, cv::NORM_INF) == 0);
}

/// Noise over all values; equal seeds give equal pictures.
inline cv::Mat noisePicture(cv::Size size, int type, unsigned seed)
{
    cv::Mat picture(size, type);
    cv::RNG(seed).fill(picture, cv::RNG::UNIFORM, 0, 256);
    return picture;
}
