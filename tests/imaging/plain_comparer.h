#pragma once

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <vector>

/// Gray picture of a frame, at a quarter of each side from `reduceFrom` pixels on.
inline cv::Mat plainGraySample(const cv::Mat &rgb, int reduceFrom)
{
    cv::Mat work = rgb, gray;
    if (rgb.size().area() >= reduceFrom)
        cv::resize(rgb, work, cv::Size(rgb.cols / 4, rgb.rows / 4), 0, 0, cv::INTER_LINEAR);
    cv::cvtColor(work, gray, cv::COLOR_BGR2GRAY);
    return gray;
}

/// 0 when a sheet is in view, else -1, by all contours of the picture.
inline int plainHavePaper(const cv::Mat &rgb)
{
    cv::Mat gray = plainGraySample(rgb, 3145728);
    cv::threshold(gray, gray, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    std::vector<std::vector<cv::Point>> contours;
    cv::findContours(gray, contours, cv::RETR_LIST, cv::CHAIN_APPROX_SIMPLE);
    for (const auto &contour : contours) {
        if (static_cast<int>(std::fabs(cv::contourArea(contour))) > 1200)
            return 0;
    }
    return -1;
}

/// Compares a frame with the one before; `previous` is empty at first and is replaced.
inline int plainCompare(const cv::Mat &rgb, cv::Mat &previous)
{
    const cv::Mat gray = plainGraySample(rgb, 5038848);
    if (previous.empty())
        previous = gray.clone();
    int alike = 0;
    for (int y = 0; y < gray.rows; ++y) {
        for (int x = 0; x < gray.cols; ++x)
            alike += std::abs(gray.at<uchar>(y, x) - previous.at<uchar>(y, x)) < 25;
    }
    previous = gray;
    return alike > static_cast<int>(gray.total()) / 100 * 90 ? 0 : -1;
}
