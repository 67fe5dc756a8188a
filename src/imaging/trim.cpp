#include "imaging/trim.h"

#include "imaging/quarter_size.h"
#include "imaging/shadowed_margins.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

constexpr float kBrightening = 0.4f;
constexpr int kSheetAreaMin = 30001; // pixels
constexpr int kLineThickness = 2;
constexpr int kSeamShare = 400;
constexpr uchar kWhite = 255;

using Polygon = std::vector<cv::Point>;

// Hull of everything bright that is large enough to belong to a sheet; empty when nothing is.
Polygon sheetHull(const cv::Mat &picture, int areaMin)
{
    cv::Mat source = picture, bright, gray;
    GammaCorrection(source, bright, kBrightening);
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

Polygon inQuarter(Polygon hull)
{
    for (cv::Point &point : hull)
        point /= kQuarter;
    return hull;
}

struct Run
{
    int begin, end; // both at the right when there is none
};

// From the first to behind the last pixel that is not zero.
Run runOf(const uchar *line, int width)
{
    Run run{0, width};
    while (run.begin < width && line[run.begin] == 0)
        ++run.begin;
    while (run.end > run.begin && line[run.end - 1] == 0)
        --run.end;
    return run;
}

// The stretches of a row of `kept` that are zero, in pixels of a picture so wide.
std::vector<Run> openRuns(const cv::Mat &kept, int row, int width)
{
    std::vector<Run> runs;
    const uchar *const begin = kept.ptr(row), *const end = begin + kept.cols;
    for (const uchar *at = begin; at != end;) {
        const uchar *const from = std::find(at, end, 0);
        at = std::find_if(from, end, [](uchar value) { return value != 0; });
        if (from != at)
            runs.push_back({static_cast<int>(from - begin) * kQuarter,
                            at == end ? width : static_cast<int>(at - begin) * kQuarter});
    }
    return runs;
}

// Whitens from both borders to the run of each row of `image`, but where `kept` (a quarter of each
// side, or empty) is not zero.
void whitenMargins(cv::Mat &image, const std::vector<Run> &sheet, const cv::Mat &kept)
{
    const size_t pixelBytes = image.elemSize();
    const auto whiten = [&](int y, int from, int to) {
        if (from < to)
            std::memset(image.ptr(y) + static_cast<size_t>(from) * pixelBytes, kWhite,
                        static_cast<size_t>(to - from) * pixelBytes);
    };
    std::vector<Run> runs{{0, image.cols}};
    for (int y = 0; y < image.rows; ++y) {
        if (y % kQuarter == 0 && y / kQuarter < kept.rows)
            runs = openRuns(kept, y / kQuarter, image.cols);
        const Run &own = sheet[static_cast<size_t>(y)];
        for (const Run &run : runs) {
            whiten(y, run.begin, std::min(run.end, own.begin));
            whiten(y, std::max(run.begin, own.end), run.end);
        }
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
    if (hull.empty() || image.cols < kQuarter || image.rows < kQuarter)
        return;
    cv::Mat small;
    shrinkToQuarterByArea(image, small);
    const cv::Mat kept = shadowedMargins(small, inQuarter(hull));
    cv::Mat outline = cv::Mat::zeros(image.size(), CV_8UC1);
    cv::polylines(outline, hull, true, cv::Scalar::all(255), kLineThickness, cv::LINE_8);
    std::vector<Run> sheet;
    sheet.reserve(static_cast<size_t>(image.rows));
    for (int y = 0; y < image.rows; ++y)
        sheet.push_back(runOf(outline.ptr(y), image.cols));
    whitenMargins(image, sheet, kept);
}

// Thresholding leaves a black seam where the sheet meets the desk, so the margin reaches a little
// into the sheet: by two pixels of a quarter-size picture of 800 pixels.
void FillBlackEdgeToWhite(cv::Mat image, const cv::Mat &picture)
{
    if (picture.cols < kQuarter || picture.rows < kQuarter)
        return;
    cv::Mat small;
    shrinkToQuarterByArea(picture, small);
    const Polygon hull = sheetHull(small, kSheetAreaMin / (kQuarter * kQuarter));
    if (hull.empty())
        return;
    const cv::Mat kept = shadowedMargins(small, hull);
    cv::Mat sheet = cv::Mat::zeros(small.size(), CV_8UC1);
    cv::fillConvexPoly(sheet, hull, cv::Scalar::all(255));
    const int seam = std::max(1, std::max(small.cols, small.rows) / kSeamShare);
    cv::erode(sheet, sheet, cv::getStructuringElement(cv::MORPH_RECT, {2 * seam + 1, 2 * seam + 1}),
              cv::Point(-1, -1), 1, cv::BORDER_CONSTANT, cv::Scalar::all(0));
    std::vector<Run> runs(static_cast<size_t>(image.rows));
    for (int y = 0; y < image.rows; ++y) {
        Run &run = runs[static_cast<size_t>(y)];
        if (y % kQuarter != 0 || y / kQuarter >= sheet.rows) {
            run = runs[static_cast<size_t>(y) - 1];
            continue;
        }
        run = runOf(sheet.ptr(y / kQuarter), sheet.cols);
        run = {std::min(run.begin * kQuarter, image.cols),
               std::min(run.end * kQuarter, image.cols)};
    }
    whitenMargins(image, runs, kept);
}
