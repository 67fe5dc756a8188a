#include "imaging/shadowed_margins.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace {

// Measured on photographs of sheets on desks and on pages of print in shadows, at a quarter of each
// side: desks differ in colour by 0.2 to 0.8 or have an edge of 0.1 to 0.6 and no strokes.
constexpr double kDarkest = 0.28;        // of the sheet; paper in a deep shadow has 0.30
constexpr double kColourDistance = 0.15; // sum of the differences of the three shares
constexpr double kInk = 0.7;             // of the paper around it, or darker
constexpr double kInkShareMin = 0.01;    // 0.05 to 0.10 in print
constexpr double kInkShareMax = 0.3;     // more is the texture of something dark
constexpr double kNoEdge = 0.8;          // brightness behind the outline by that before it
constexpr int kStrokeWidth = 7;          // pixels; wider than a stroke of print
constexpr int kEdgeShare = 200;          // of the longer side
constexpr int kPixelsMin = 30;           // of a margin that is worth a judgement

/// A sheet and what lies around it, measured once for all margins.
struct Surroundings
{
    cv::Mat picture, gray, paper; // `paper`: the gray picture with the strokes closed
    cv::Mat inside, outside;      // of the outline; the pixels half on it are in neither
    cv::Mat before, behind;       // bands along the outline, within and without
    double paperLevel = 0;
    cv::Scalar colour; // of the sheet
};

cv::Mat square(int side)
{
    return cv::Mat::ones(side, side, CV_8UC1);
}

Surroundings surroundingsOf(const cv::Mat &picture, const std::vector<cv::Point> &outline)
{
    Surroundings all;
    all.picture = picture;
    cv::cvtColor(picture, all.gray, cv::COLOR_BGR2GRAY);
    cv::morphologyEx(all.gray, all.paper, cv::MORPH_CLOSE, square(kStrokeWidth));
    all.inside = cv::Mat::zeros(picture.size(), CV_8UC1);
    cv::fillConvexPoly(all.inside, outline, cv::Scalar::all(255));
    const cv::Mat step =
        square(2 * std::max(2, std::max(picture.cols, picture.rows) / kEdgeShare) + 1);
    cv::Mat nearer, farther;
    cv::dilate(all.inside, nearer, step);
    cv::dilate(nearer, farther, step);
    all.behind = farther - nearer;
    cv::erode(all.inside, nearer, step);
    cv::erode(nearer, farther, step);
    all.before = nearer - farther;
    cv::dilate(all.inside, nearer, square(3));
    cv::bitwise_not(nearer, all.outside);
    all.paperLevel = cv::mean(all.paper, all.inside)[0];
    all.colour = cv::mean(picture, all.inside);
    return all;
}

double colourDistance(const cv::Scalar &a, const cv::Scalar &b)
{
    const double sumA = std::max(a[0] + a[1] + a[2], 1.0), sumB = std::max(b[0] + b[1] + b[2], 1.0);
    double distance = 0;
    for (int i = 0; i < 3; ++i)
        distance += std::fabs(a[i] / sumA - b[i] / sumB);
    return distance;
}

bool carriesPrint(const Surroundings &all, const cv::Mat &margin, int pixels)
{
    cv::Mat ink;
    all.paper.convertTo(ink, CV_8U, kInk);
    const double share = static_cast<double>(cv::countNonZero((all.gray < ink) & margin)) / pixels;
    return share >= kInkShareMin && share <= kInkShareMax;
}

bool hasNoEdge(const Surroundings &all, const cv::Mat &sector)
{
    const double before = cv::mean(all.paper, all.before & sector)[0];
    return cv::mean(all.paper, all.behind & sector)[0] > kNoEdge * before && before > 0;
}

bool isShadowedPaper(const Surroundings &all, const cv::Mat &sector, const cv::Mat &margin)
{
    const int pixels = cv::countNonZero(margin);
    return pixels >= kPixelsMin && cv::mean(all.paper, margin)[0] >= kDarkest * all.paperLevel &&
           colourDistance(cv::mean(all.picture, margin), all.colour) <= kColourDistance &&
           (carriesPrint(all, margin, pixels) || hasNoEdge(all, sector));
}

// What a viewer in the middle of `sheet` sees through side number `side` of it.
cv::Mat sectorOf(const cv::RotatedRect &sheet, int side, cv::Size size)
{
    cv::Point2f corners[4];
    sheet.points(corners);
    const float shorter = std::max(1.f, std::min(sheet.size.width, sheet.size.height));
    const float reach = 4 * static_cast<float>(std::max(size.width, size.height)) / shorter;
    const cv::Point sector[3] = {sheet.center,
                                 sheet.center + reach * (corners[side] - sheet.center),
                                 sheet.center + reach * (corners[(side + 1) % 4] - sheet.center)};
    cv::Mat mask = cv::Mat::zeros(size, CV_8UC1);
    cv::fillConvexPoly(mask, sector, 3, cv::Scalar::all(255));
    return mask;
}

} // namespace

cv::Mat shadowedMargins(const cv::Mat &picture, const std::vector<cv::Point> &outline)
{
    const Surroundings all = surroundingsOf(picture, outline);
    const cv::RotatedRect sheet = cv::minAreaRect(outline);
    cv::Mat shadowed;
    for (int side = 0; side < 4; ++side) {
        const cv::Mat sector = sectorOf(sheet, side, picture.size());
        const cv::Mat margin = sector & all.outside;
        if (!isShadowedPaper(all, sector, margin))
            continue;
        if (shadowed.empty())
            shadowed = cv::Mat::zeros(picture.size(), CV_8UC1);
        shadowed |= sector;
    }
    return shadowed;
}
