#include "imaging/document_finder.h"

#include "app/choices.h"
#include "imaging/failure.h"
#include "imaging/gaussian_blur.h"
#include "imaging/quarter_size.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>

namespace {

constexpr int kAreaMin = 401;   // quarter-size pixels
constexpr double kAlikeMax = 4; // pixels: one of the quarter size
constexpr size_t kOutlinesMax = 8;
constexpr int kContrastCentre = 127;
constexpr int16_t kContrastGain = 22937; // 0.7 in units of 1 / 32768, rounded down
const cv::Scalar kOutlineColour(0, 255, 0);
constexpr int kOutlineThickness = 6;

struct Candidate
{
    int area;
    std::vector<cv::Point> contour;
};

// gray + (127 - blurred) * 0.7f, cut off below zero and wrapped above 255. The gray level is an
// integer, so only the second term needs rounding, downwards; for every level the factor gives
// the same integer as 0.7f does.
void raiseLocalContrast(const cv::Mat &blurred, cv::Mat &gray)
{
    const int width = gray.cols; // that no pixel written can change
    for (int y = 0; y < gray.rows; ++y) {
        uchar *const to = gray.ptr(y);
        const uchar *const mean = blurred.ptr(y);
        for (int x = 0; x < width; ++x) {
            const auto doubled = static_cast<int16_t>(2 * (kContrastCentre - mean[x]));
            const auto lift = static_cast<int16_t>(doubled * kContrastGain >> 16);
            const auto raised = static_cast<int16_t>(to[x] + lift);
            to[x] = static_cast<uchar>(std::max<int16_t>(raised, 0));
        }
    }
}

// minAreaRect answers angles in (0, 90]; straightening counts on [-90, 0).
std::array<cv::Point2f, 4> corners(const std::vector<cv::Point> &contour)
{
    cv::RotatedRect box = cv::minAreaRect(contour);
    while (box.angle >= 0) {
        box.angle -= 90;
        std::swap(box.size.width, box.size.height);
    }
    std::array<cv::Point2f, 4> points;
    box.points(points.data());
    return points;
}

Detection outlinesOf(const std::vector<Candidate> &candidates, int cropMode)
{
    std::vector<int> areas(candidates.size());
    std::transform(candidates.begin(), candidates.end(), areas.begin(),
                   [](const Candidate &candidate) { return candidate.area; });
    std::sort(areas.begin(), areas.end(), std::greater<>());
    areas.resize(cropMode == AutomaticCrop ? 1 : std::min(areas.size(), kOutlinesMax));

    Detection found;
    if (cropMode == MultiGraphCrop)
        found.leftOut = static_cast<int>(candidates.size() - areas.size());
    found.outlines.resize(areas.size());
    for (size_t k = 0; k < areas.size(); ++k) {
        for (const Candidate &candidate : candidates) {
            if (candidate.area != areas[k])
                continue;
            Outline rounded;
            const std::array<cv::Point2f, 4> box = corners(candidate.contour);
            for (size_t i = 0; i < box.size(); ++i) {
                const cv::Point2f full = box[i] * kQuarter;
                found.outlines[k][i] = {static_cast<int>(full.x), static_cast<int>(full.y)};
                rounded[i] = {cvRound(full.x), cvRound(full.y)};
            }
            found.drawn.push_back(rounded);
        }
    }
    return found;
}

// `binary`: 255 where a document may be, changed.
std::optional<Detection> outlinesIn(cv::Mat &binary, int cropMode)
{
    std::vector<std::vector<cv::Point>> contours;
    cv::findContours(binary, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    std::vector<Candidate> candidates;
    for (std::vector<cv::Point> &contour : contours) {
        const int area = static_cast<int>(std::fabs(cv::contourArea(contour)));
        if (area >= kAreaMin)
            candidates.push_back({area, std::move(contour)});
    }
    if (candidates.empty())
        return std::nullopt;
    return outlinesOf(candidates, cropMode);
}

bool isNear(const Outline &a, const Outline &b)
{
    return std::all_of(a.begin(), a.end(), [&b](const cv::Point &corner) {
        return std::any_of(b.begin(), b.end(), [&corner](const cv::Point &other) {
            return cv::norm(corner - other) <= kAlikeMax;
        });
    });
}

} // namespace

std::optional<Detection> DocumentFinder::find(const ReducedPicture &picture, int cropMode)
{
    if (picture.full.width < kQuarter || picture.full.height < kQuarter)
        return std::nullopt;
    try {
        return search(picture, cropMode);
    } catch (const std::exception &error) {
        loggedFailure("document search failed", error);
        return std::nullopt;
    }
}

std::optional<Detection> DocumentFinder::search(const ReducedPicture &picture, int cropMode)
{
    grayQuarterByArea(picture, m_gray);
    gaussianBlur21(m_gray, m_blurred);
    raiseLocalContrast(m_blurred, m_gray);
    m_threshold = cv::threshold(m_gray, m_blurred, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    return outlinesIn(m_blurred, cropMode);
}

bool DocumentFinder::isSteady(const std::optional<Detection> &found, int cropMode) const
{
    try {
        return areAlike(found, above(m_threshold - 1, cropMode)) &&
               areAlike(found, above(m_threshold + 1, cropMode));
    } catch (const std::exception &) {
        return true; // short of memory; to go on with the whole picture would need more
    }
}

std::optional<Detection> DocumentFinder::above(double threshold, int cropMode) const
{
    cv::Mat binary;
    cv::threshold(m_gray, binary, threshold, 255, cv::THRESH_BINARY);
    return outlinesIn(binary, cropMode);
}

bool areAlike(const std::optional<Detection> &a, const std::optional<Detection> &b)
{
    if (!a || !b)
        return !a && !b;
    return a->outlines.size() == b->outlines.size() &&
           std::equal(a->outlines.begin(), a->outlines.end(), b->outlines.begin(), isNear);
}

void drawOutlines(cv::Mat &rgb, const std::vector<Outline> &drawn, int reduction)
{
    const int thickness = (kOutlineThickness + reduction / 2) / reduction;
    for (const Outline &outline : drawn) {
        for (size_t i = 0; i < outline.size(); ++i)
            cv::line(rgb, outline[i] / reduction, outline[(i + 1) % outline.size()] / reduction,
                     kOutlineColour, thickness, cv::LINE_8);
    }
}
