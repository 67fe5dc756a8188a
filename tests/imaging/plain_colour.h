#pragma once

#include "imaging/trim.h"

#include <opencv2/imgproc.hpp>

#include <vector>

/// The gray effect as one loop in double precision.
inline void plainGray(cv::Mat &image)
{
    for (int y = 0; y < image.rows; ++y) {
        for (uchar *p = image.ptr(y); p != image.ptr(y) + 3 * image.cols; p += 3)
            p[0] = p[1] = p[2] = static_cast<uchar>(0.299 * p[0] + 0.587 * p[1] + 0.114 * p[2]);
    }
}

/// Gray, threshold of the gray copy, then one loop.
inline void plainBinarize(cv::Mat &image)
{
    plainGray(image);
    cv::Mat gray, unused;
    cv::extractChannel(image, gray, 0);
    const double t = cv::threshold(gray, unused, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    for (int y = 0; y < image.rows; ++y) {
        for (uchar *p = image.ptr(y); p != image.ptr(y) + 3 * image.cols; p += 3)
            p[0] = p[1] = p[2] = p[0] > t ? 255 : 0;
    }
}

/// Document optimization with every step carried out, the sharpening too.
inline void plainOptimize(cv::Mat &image)
{
    cv::Mat gray;
    cv::cvtColor(image, gray, cv::COLOR_BGR2GRAY);
    cv::adaptiveThreshold(gray, gray, 255, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY, 179,
                          19.0);
    FillBlackEdgeToWhite(gray, image);
    const cv::Mat kernel = (cv::Mat_<float>(3, 3) << 0, -1, 0, -1, 5, -1, 0, -1, 0);
    cv::filter2D(gray, gray, -1, kernel);
    cv::cvtColor(gray, image, cv::COLOR_GRAY2BGR);
}
