#pragma once

#include "imaging/document_finder.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <vector>

/// The document search step by step, as slow as it is plain: what the fast one is held to.
inline std::optional<Detection> plainFind(const cv::Mat &rgb, int cropMode)
{
    cv::Mat small, gray, blurred;
    cv::resize(rgb, small, cv::Size(rgb.cols / 4, rgb.rows / 4), 0, 0, cv::INTER_AREA);
    cv::cvtColor(small, gray, cv::COLOR_RGB2GRAY);
    cv::GaussianBlur(gray, blurred, cv::Size(21, 21), 0);
    for (int y = 0; y < gray.rows; ++y) {
        for (int x = 0; x < gray.cols; ++x) {
            const int v =
                static_cast<int>(gray.at<uchar>(y, x) + (127.0 - blurred.at<uchar>(y, x)) * 0.7f);
            gray.at<uchar>(y, x) = static_cast<uchar>(v <= 0 ? 0 : v);
        }
    }
    cv::threshold(gray, gray, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    std::vector<std::vector<cv::Point>> contours, kept;
    cv::findContours(gray, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    std::vector<int> areas;
    for (const auto &contour : contours) {
        const int area = static_cast<int>(std::fabs(cv::contourArea(contour)));
        if (area >= 401) {
            areas.push_back(area);
            kept.push_back(contour);
        }
    }
    if (areas.empty())
        return std::nullopt;
    const size_t count = cropMode == 1 ? 1 : std::min<size_t>(areas.size(), 8);
    std::sort(areas.begin(), areas.end(), std::greater<int>());

    Detection found;
    found.outlines.resize(count);
    for (size_t k = 0; k < count; ++k) {
        for (const auto &contour : kept) {
            if (static_cast<int>(std::fabs(cv::contourArea(contour))) != areas[k])
                continue;
            const cv::RotatedRect box = cv::minAreaRect(contour);
            const bool isUpright = box.angle == 90;
            const cv::RotatedRect old(
                box.center, isUpright ? box.size : cv::Size2f(box.size.height, box.size.width),
                isUpright ? -90 : box.angle - 90);
            cv::Point2f points[4];
            old.points(points);
            Outline rounded;
            for (size_t i = 0; i < 4; ++i) {
                found.outlines[k][i] = {static_cast<int>(points[i].x * 4.0),
                                        static_cast<int>(points[i].y * 4.0)};
                rounded[i] = {cvRound(points[i].x * 4.0), cvRound(points[i].y * 4.0)};
            }
            found.drawn.push_back(rounded);
        }
    }
    return found;
}
