#include "imaging/trim.h"

#include "imaging/quarter_size.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr float kBrightening = 0.4f;
constexpr int kSheetAreaMin = 30001; // pixels
constexpr int kLineThickness = 2;

using Polygon = std::vector<cv::Point>;

// Hull of everything bright that is large enough to belong to a sheet; empty when nothing is.
Polygon sheetHull(const cv::Mat &picture, int areaMin)
{
    cv::Mat bright, gray;
    GammaCorrection(const_cast<cv::Mat &>(picture), bright, kBrightening);
    cv::cvtColor(bright, gray, cv::COLOR_RGB2GRAY);
    bright.release();
    cv::threshold(gray, gray, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    std::vector<Polygon> contours;
    cv::findContours(gray, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    Polygon points, hull;
    for (const Polygon &contour : contours) {
        if (static_cast<int>(std::fabs(cv::contourArea(contour))) >= areaMin)
            points.insert(points.end(), contour.begin(), contour.end());
    }
    if (!points.empty())
        cv::convexHull(points, hull);
    return hull;
}

// In each row everything from the border to the outline, which is two pixels thick.
void whitenOutside(cv::Mat &image, const Polygon &outline)
{
    cv::Mat mask = cv::Mat::zeros(image.size(), CV_8UC1);
    cv::polylines(mask, outline, true, cv::Scalar::all(255), kLineThickness, cv::LINE_8);
    const auto pixelBytes = image.elemSize();
    for (int y = 0; y < image.rows; ++y) {
        const uchar *const line = mask.ptr(y);
        const uchar *const end = line + mask.cols;
        const auto isDrawn = [](uchar value) { return value != 0; };
        const uchar *const first = std::find_if(line, end, isDrawn);
        const uchar *const last = std::find_if(std::make_reverse_iterator(end),
                                               std::make_reverse_iterator(first), isDrawn)
                                      .base();
        uchar *const row = image.ptr(y);
        std::fill(row, row + static_cast<size_t>(first - line) * pixelBytes, uchar(255));
        std::fill(row + static_cast<size_t>(last - line) * pixelBytes,
                  row + static_cast<size_t>(image.cols) * pixelBytes, uchar(255));
    }
}

} // namespace

void GammaCorrection(cv::Mat &src, cv::Mat &dst, float gamma)
{
    cv::Mat table(1, 256, CV_8UC1);
    for (int i = 0; i < 256; ++i)
        table.at<uchar>(i) = static_cast<uchar>(
            std::min(std::lround(255.0 * std::pow(i / 255.0, static_cast<double>(gamma))), 255L));
    cv::LUT(src, table, dst);
}

void FN_DeleteBlackEdge(cv::Mat image)
{
    const Polygon hull = sheetHull(image, kSheetAreaMin);
    if (!hull.empty())
        whitenOutside(image, hull);
}

void FillBlackEdgeToWhite(cv::Mat image, const cv::Mat &picture)
{
    if (picture.cols < kQuarter || picture.rows < kQuarter)
        return;
    cv::Mat small;
    shrinkToQuarterByArea(picture, small);
    Polygon hull = sheetHull(small, kSheetAreaMin / (kQuarter * kQuarter));
    for (cv::Point &point : hull)
        point = point * kQuarter + cv::Point(kQuarter / 2, kQuarter / 2);
    if (!hull.empty())
        whitenOutside(image, hull);
}
