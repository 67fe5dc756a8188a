#include "imaging/frame_comparer.h"

#include "imaging/failure.h"
#include "imaging/quarter_size.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int kDetectionPixelsMax = 3145728;  // from here on reduced
constexpr int kComparisonPixelsMax = 5038848; // from here on reduced
constexpr int kSheetAreaMin = 1201;           // pixels of the picture searched
constexpr int kStrokesAcross = 120;           // wider than 1/120 of the picture is no pen stroke
constexpr double kReachAreaMin = 0.008;       // of the picture; a finger tip covers about 0.01

int alikePixels(const cv::Mat &one, const cv::Mat &other, unsigned tolerance)
{
    int alike = 0;
    for (int y = 0; y < one.rows; ++y) {
        const uchar *const now = one.ptr(y);
        const uchar *const before = other.ptr(y);
        for (int x = 0; x < one.cols; ++x)
            alike += static_cast<unsigned>(std::abs(now[x] - before[x])) < tolerance;
    }
    return alike;
}

} // namespace

// Red and blue change places in the weights; every picture is weighed alike, so it does not show.
const cv::Mat &FrameSample::gray(bool quarter)
{
    cv::Mat &picture = quarter ? m_quarter : m_full;
    if (picture.empty()) {
        cv::Mat reduced;
        if (quarter)
            shrinkToQuarterBilinear(m_picture, reduced);
        cv::cvtColor(quarter ? reduced : m_picture.rgb, picture, cv::COLOR_BGR2GRAY);
    }
    return picture;
}

const cv::Mat &FrameSample::forDetection()
{
    return gray(frameSize().area() >= kDetectionPixelsMax);
}

const cv::Mat &FrameSample::forComparison()
{
    return gray(frameSize().area() >= kComparisonPixelsMax);
}

// A sheet's outer contour encloses every contour inside it, so the outer ones decide.
int CheckIsHavePaper(FrameSample &sample)
{
    try {
        cv::Mat binary;
        cv::threshold(sample.forDetection(), binary, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
        std::vector<std::vector<cv::Point>> contours;
        cv::findContours(binary, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_SIMPLE);
        for (const std::vector<cv::Point> &contour : contours) {
            if (static_cast<int>(std::fabs(cv::contourArea(contour))) >= kSheetAreaMin)
                return 0;
        }
    } catch (const std::exception &exception) {
        loggedFailure("sheet detection failed", exception);
    }
    return -1;
}

int FrameComparer::CompareBuf(FrameSample &sample, unsigned pixelTolerance, unsigned percent)
{
    try {
        const cv::Mat &gray = sample.forComparison();
        if (sample.frameSize() != m_frameSize || gray.size() != m_previous.size())
            destroyCompare();
        const cv::Mat &previous = m_compareCount == 0 ? gray : m_previous;
        const int alike = alikePixels(gray, previous, pixelTolerance);
        m_previous = gray;
        m_frameSize = sample.frameSize();
        ++m_compareCount;
        const auto needed = gray.total() / 100 * percent;
        return static_cast<size_t>(alike) > needed ? 0 : -1;
    } catch (const std::exception &exception) {
        loggedFailure("comparing two pictures failed", exception);
        return -1;
    }
}

void FrameComparer::keepAsShot(FrameSample &sample)
{
    try {
        m_shot = sample.forComparison();
    } catch (const std::exception &exception) {
        m_shot.release();
        loggedFailure(std::string("keeping the shot page failed: ") + exception.what());
    }
}

double FrameComparer::alikeToShot(FrameSample &sample, unsigned pixelTolerance) const
{
    try {
        const cv::Mat &gray = sample.forComparison();
        if (gray.empty() || gray.size() != m_shot.size())
            return -1;
        return 100.0 * alikePixels(gray, m_shot, pixelTolerance) /
               static_cast<double>(gray.total());
    } catch (const std::exception &exception) {
        loggedFailure(std::string("comparing with the shot page failed: ") + exception.what());
        return -1;
    }
}

bool FrameComparer::isReachedInto(FrameSample &sample, unsigned pixelTolerance) const
{
    try {
        const cv::Mat &gray = sample.forComparison();
        if (gray.empty() || gray.size() != m_shot.size())
            return false;
        cv::Mat changed;
        cv::absdiff(gray, m_shot, changed);
        changed = changed >= pixelTolerance;
        const int side = std::max(3, gray.cols / kStrokesAcross);
        cv::morphologyEx(changed, changed, cv::MORPH_OPEN,
                         cv::getStructuringElement(cv::MORPH_RECT, {side, side}));
        cv::Mat labels, boxes, centres;
        const int parts = cv::connectedComponentsWithStats(changed, labels, boxes, centres);
        for (int part = 1; part < parts; ++part) {
            const int *const box = boxes.ptr<int>(part);
            const bool isAtBorder = box[cv::CC_STAT_LEFT] == 0 || box[cv::CC_STAT_TOP] == 0 ||
                                    box[cv::CC_STAT_LEFT] + box[cv::CC_STAT_WIDTH] == gray.cols ||
                                    box[cv::CC_STAT_TOP] + box[cv::CC_STAT_HEIGHT] == gray.rows;
            if (isAtBorder &&
                box[cv::CC_STAT_AREA] >= kReachAreaMin * static_cast<double>(gray.total()))
                return true;
        }
    } catch (const std::exception &exception) {
        loggedFailure("looking for a hand failed", exception);
    }
    return false;
}

void FrameComparer::destroyCompare()
{
    m_previous.release();
    m_shot.release();
    m_compareCount = 0;
}
