#include "imaging/smart_regions.h"

#include "imaging/smart_quad.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace {

constexpr double kAreaMin = 0.015; // of the picture
constexpr double kAreaMax = 0.97;
constexpr float kHullLoss = 0.4F; // share of the quadrilateral that the area may leave empty
constexpr int kClusters = 4;
constexpr int kBorderClusters = 3;
constexpr int kShrink = 3; // for clusters
constexpr float kEdgeClosed = 0.35F;

// The hull's sides, taken away one by one: the one whose neighbours, prolonged until they meet,
// add the smallest triangle.
std::optional<Quad> quadAround(std::vector<cv::Point2f> hull)
{
    while (hull.size() > 4) {
        const size_t n = hull.size();
        float least = std::numeric_limits<float>::max();
        size_t drop = n;
        cv::Point2f corner;
        for (size_t i = 0; i < n; ++i) {
            const cv::Point2f a = hull[i], b = hull[(i + 1) % n];
            const cv::Point2f before = a - hull[(i + n - 1) % n];
            const cv::Point2f after = b - hull[(i + 2) % n];
            const float turn = before.cross(after);
            if (std::fabs(turn) < 1e-6F)
                continue;
            const float t = (b - a).cross(after) / turn;
            const cv::Point2f meeting = a + t * before;
            const float u = (a - b).cross(before) / after.cross(before);
            if (t < 0 || u < 0)
                continue; // the neighbours part from each other
            const float added = std::fabs((meeting - a).cross(b - a)) / 2;
            if (added < least) {
                least = added;
                drop = i;
                corner = meeting;
            }
        }
        if (drop == n)
            return std::nullopt;
        hull[drop] = corner;
        hull.erase(hull.begin() + static_cast<std::ptrdiff_t>((drop + 1) % n));
    }
    if (hull.size() != 4)
        return std::nullopt;
    return inOrder({hull[0], hull[1], hull[2], hull[3]});
}

void addAreas(const cv::Mat &mask, float scale, std::vector<Quad> &quads)
{
    std::vector<std::vector<cv::Point>> contours;
    cv::findContours(mask, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_SIMPLE);
    const double whole = mask.total();
    for (const std::vector<cv::Point> &contour : contours) {
        if (contour.size() < 4)
            continue;
        const double area = cv::contourArea(contour);
        if (area < kAreaMin * whole || area > kAreaMax * whole)
            continue;
        std::vector<cv::Point> hull;
        cv::convexHull(contour, hull);
        const auto quad = quadAround(std::vector<cv::Point2f>(hull.begin(), hull.end()));
        if (!quad || !isConvex(*quad))
            continue;
        const float covered = std::fabs(quadArea(*quad));
        if (static_cast<float>(area) < (1 - kHullLoss) * covered)
            continue;
        const Quad placed = scaled(*quad, scale, scale);
        if (!containsNear(quads, placed, 3))
            quads.push_back(placed);
    }
}

// As it is, and without what hangs on it by a thread.
void addOpened(const cv::Mat &mask, float scale, std::vector<Quad> &quads)
{
    addAreas(mask, scale, quads);
    cv::Mat opened;
    cv::morphologyEx(mask, opened, cv::MORPH_OPEN, cv::Mat::ones(7, 7, CV_8U));
    addAreas(opened, scale, quads);
}

void addThreshold(const cv::Mat &gray, bool alsoDark, std::vector<Quad> &quads)
{
    cv::Mat mask;
    cv::threshold(gray, mask, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    addOpened(mask, 1, quads);
    if (alsoDark) {
        cv::bitwise_not(mask, mask);
        addOpened(mask, 1, quads);
    }
}

cv::Mat pixelsOf(const cv::Mat &lab)
{
    cv::Mat pixels;
    lab.reshape(1, static_cast<int>(lab.total())).convertTo(pixels, CV_32F);
    return pixels;
}

cv::TermCriteria rounds(int count)
{
    return {cv::TermCriteria::COUNT, count, 0};
}

void addClusters(const cv::Mat &lab, std::vector<Quad> &quads)
{
    cv::Mat small, labels, centres;
    cv::resize(lab, small, lab.size() / kShrink, 0, 0, cv::INTER_AREA);
    cv::RNG &random = cv::theRNG();
    random.state = 1; // the same picture gives the same answer
    cv::kmeans(pixelsOf(small), kClusters, labels, rounds(6), 1, cv::KMEANS_PP_CENTERS, centres);
    labels = labels.reshape(1, small.rows);
    for (int k = 0; k < kClusters; ++k)
        addAreas(labels == k, kShrink, quads);
}

// How far each pixel's colour is from the colours that lie along the picture's border.
cv::Mat borderDistance(const cv::Mat &lab)
{
    cv::Mat small;
    cv::resize(lab, small, lab.size() / kShrink, 0, 0, cv::INTER_AREA);
    cv::Mat border = pixelsOf(small.row(0).clone());
    border.push_back(pixelsOf(small.row(small.rows - 1).clone()));
    border.push_back(pixelsOf(small.col(0).clone()));
    border.push_back(pixelsOf(small.col(small.cols - 1).clone()));
    cv::Mat labels, centres;
    cv::theRNG().state = 1;
    cv::kmeans(border, kBorderClusters, labels, rounds(6), 1, cv::KMEANS_PP_CENTERS, centres);
    cv::Mat distance(small.size(), CV_8U);
    for (int y = 0; y < small.rows; ++y) {
        const auto *from = small.ptr<cv::Vec3b>(y);
        for (int x = 0; x < small.cols; ++x) {
            float least = 255;
            for (int k = 0; k < kBorderClusters; ++k) {
                const auto *centre = centres.ptr<float>(k);
                float square = 0;
                for (int c = 0; c < 3; ++c)
                    square += (centre[c] - from[x][c]) * (centre[c] - from[x][c]);
                least = std::min(least, std::sqrt(square));
            }
            distance.at<uchar>(y, x) = cv::saturate_cast<uchar>(2 * least);
        }
    }
    return distance;
}

// Areas that no path leaves without crossing an edge.
void addClosedOff(const SmartMaps &maps, std::vector<Quad> &quads)
{
    cv::Mat free(maps.size(), CV_8U);
    for (int y = 0; y < free.rows; ++y) {
        const cv::Vec2f *edge = maps.edge[y];
        uchar *to = free.ptr(y);
        for (int x = 0; x < free.cols; ++x)
            to[x] = edge[x].dot(edge[x]) > kEdgeClosed * kEdgeClosed ? 0 : 255;
    }
    addAreas(free, 1, quads);
    cv::erode(free, free, cv::Mat::ones(3, 3, CV_8U));
    addAreas(free, 1, quads);
}

} // namespace

std::vector<Quad> quadsFromRegions(const SmartMaps &maps)
{
    std::vector<Quad> quads;
    cv::Mat lightness, around, contrast;
    cv::extractChannel(maps.lab, lightness, 0);
    addThreshold(lightness, true, quads);
    const int window = std::max(maps.size().width, maps.size().height) / 6 | 1;
    cv::blur(lightness, around, {window, window});
    cv::subtract(lightness, around, contrast, cv::noArray(), CV_16S);
    contrast.convertTo(contrast, CV_8U, 1, 128);
    addThreshold(contrast, false, quads);
    addClusters(maps.lab, quads);
    const cv::Mat distance = borderDistance(maps.lab);
    cv::Mat mask;
    cv::threshold(distance, mask, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    addAreas(mask, kShrink, quads);
    addClosedOff(maps, quads);
    return quads;
}
