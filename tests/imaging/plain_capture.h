#pragma once

#include "imaging/straighten.h"

#include <opencv2/imgproc.hpp>

#include <cmath>

/// Turns the whole of `src`, step by step.
inline cv::Mat plainRotate(const cv::Mat &src, float degree)
{
    const double a = -degree * CV_PI / 180;
    const double s = std::fabs(std::sin(a)), c = std::fabs(std::cos(a));
    cv::Mat m = cv::getRotationMatrix2D(
        cv::Point2f(static_cast<float>(src.cols / 2), static_cast<float>(src.rows / 2)), -degree,
        1.0);
    const int width = static_cast<int>(src.rows * s + src.cols * c);
    const int height = static_cast<int>(src.cols * s + src.rows * c);
    m.at<double>(0, 2) += (width - src.cols) / 2;
    m.at<double>(1, 2) += (height - src.rows) / 2;
    cv::Mat turned;
    cv::warpAffine(src, turned, m, cv::Size(width, height));
    return turned;
}

/// Cuts one document out of the whole padded frame, turned as a whole; throws what OpenCV throws.
inline cv::Mat plainCut(const cv::Mat &rgb, Outline quad)
{
    cv::Mat frame;
    cv::cvtColor(rgb, frame, cv::COLOR_RGB2BGR);
    int left = 0, right = 0, top = 0, bottom = 0;
    for (size_t i = 0; i < 4; ++i) {
        left = quad[i].x < 0 ? -quad[i].x : left;
        top = quad[i].y < 0 ? -quad[i].y : top;
    }
    for (cv::Point &p : quad)
        p += cv::Point(left, top);
    for (size_t i = 0; i < 4; ++i) {
        right = quad[i].x > frame.cols ? quad[i].x - frame.cols : right;
        bottom = quad[i].y > frame.rows ? quad[i].y - frame.rows : bottom;
    }
    const StraightenGeometry g = straightenGeometry(quad);
    cv::Mat padded;
    cv::copyMakeBorder(frame, padded, top, bottom, left, right, cv::BORDER_CONSTANT);
    cv::Rect box = g.rect;
    box.width += 4;
    box.height += 4;
    if (box.x + box.width >= padded.cols)
        box.width = padded.cols - box.x;
    if (box.y + box.height >= padded.rows)
        box.height = padded.rows - box.y;
    const cv::Mat turned = plainRotate(padded(box), g.angle);
    const cv::Mat page =
        turned(cv::Rect((turned.cols - g.size.width) / 2, (turned.rows - g.size.height) / 2,
                        g.size.width / 4 * 4, g.size.height / 4 * 4));
    cv::Mat result;
    cv::resize(page, result, cv::Size(page.cols / 4 * 4, page.rows / 4 * 4));
    return result;
}
