#include "imaging/smart_tracker.h"

#include "imaging/smart_finder.h"
#include "imaging/smart_quad.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace {

constexpr int kFramesPerSearch = 4;
constexpr int kFramesInDoubt = 2;     // between searches while sheets seem to change
constexpr int kAgreeing = 2;          // searches that must find the same before it is shown
constexpr int kAgreeingOnNothing = 4; // a hand may hide a sheet for a moment
constexpr float kStill = 0.006F;      // of the longer side: corners that moved less lie still
constexpr float kAlike = 0.02F;       // of two searches that agree
constexpr float kFollow = 0.25F;      // of a still corner's way to where it was found
const cv::Size kLook(48, 36);
constexpr double kLookChanged = 12; // mean difference in levels: another sheet
constexpr double kLookStill = 3;    // between two looks
constexpr int kChangedLooks = 5;

bool areNear(const std::vector<Quad> &a, const std::vector<Quad> &b, float distance)
{
    return a.size() == b.size() && std::all_of(a.begin(), a.end(), [&](const Quad &quad) {
               return containsNear(b, quad, distance);
           });
}

// Both numbered from the same corner on.
void follow(Quad &shown, const Quad &found)
{
    Quad best = found;
    float least = -1;
    Quad turned = found;
    for (size_t shift = 0; shift < 4; ++shift) {
        float sum = 0;
        for (size_t i = 0; i < 4; ++i)
            sum += static_cast<float>(cv::norm(turned[i] - shown[i]));
        if (least < 0 || sum < least) {
            least = sum;
            best = turned;
        }
        std::rotate(turned.begin(), turned.begin() + 1, turned.end());
    }
    for (size_t i = 0; i < 4; ++i)
        shown[i] += kFollow * (best[i] - shown[i]);
}

cv::Mat lookAt(const cv::Mat &rgb)
{
    cv::Mat small;
    cv::resize(rgb, small, kLook * 4, 0, 0, cv::INTER_NEAREST);
    cv::resize(small, small, kLook, 0, 0, cv::INTER_AREA);
    return small;
}

// Mean difference inside of the sheets.
double difference(const cv::Mat &a, const cv::Mat &b, const std::vector<Quad> &sheets,
                  cv::Size frame)
{
    cv::Mat mask(kLook, CV_8U, cv::Scalar(0)), levels;
    for (const Quad &quad : sheets) {
        std::vector<cv::Point> points;
        for (const cv::Point2f &p : quad)
            points.emplace_back(
                cvRound(p.x * static_cast<float>(kLook.width) / static_cast<float>(frame.width)),
                cvRound(p.y * static_cast<float>(kLook.height) / static_cast<float>(frame.height)));
        cv::fillConvexPoly(mask, points, 255);
    }
    cv::absdiff(a, b, levels);
    const cv::Scalar mean = cv::mean(levels, mask);
    return std::max({mean[0], mean[1], mean[2]});
}

} // namespace

const std::vector<Quad> &SmartTracker::update(const ReducedPicture &picture)
{
    ++m_frame;
    if (m_isFixed)
        watchFixed(picture);
    else if (m_frame % (m_agreed > 0 ? kFramesInDoubt : kFramesPerSearch) == 0)
        search(picture);
    return m_sheets;
}

void SmartTracker::fix(std::vector<Quad> corners)
{
    reset();
    m_sheets = std::move(corners);
    m_isFixed = true;
}

void SmartTracker::reset()
{
    *this = SmartTracker();
}

void SmartTracker::search(const ReducedPicture &picture)
{
    const auto times = static_cast<float>(picture.reduction);
    std::vector<Quad> expected, found;
    for (const Quad &sheet : m_sheets)
        expected.push_back(scaled(sheet, 1 / times, 1 / times));
    for (const SmartSheet &sheet : sureSheets(findSheets(picture.rgb, expected)))
        found.push_back(scaled(sheet.corners, times, times));
    const auto side = static_cast<float>(std::max(picture.full.width, picture.full.height));
    if (areNear(m_sheets, found, kStill * side)) {
        for (Quad &sheet : m_sheets) {
            const auto nearest =
                std::min_element(found.begin(), found.end(), [&](const Quad &a, const Quad &b) {
                    return cornerDistance(a, sheet) < cornerDistance(b, sheet);
                });
            follow(sheet, *nearest);
        }
        m_agreed = 0;
        return;
    }
    m_agreed = m_agreed > 0 && areNear(m_next, found, kAlike * side) ? m_agreed + 1 : 1;
    m_next = std::move(found);
    if (m_agreed >= (m_next.empty() ? kAgreeingOnNothing : kAgreeing)) {
        m_sheets = m_next;
        m_agreed = 0;
    }
}

// Another sheet is one that looks different for a while, and no longer moves.
void SmartTracker::watchFixed(const ReducedPicture &picture)
{
    if (m_frame % kFramesPerSearch != 1)
        return;
    const cv::Mat look = lookAt(picture.rgb);
    if (m_fixedLook.empty()) {
        m_fixedLook = look;
    } else {
        const bool isStill = difference(look, m_previousLook, m_sheets, picture.full) < kLookStill;
        const bool isOther = difference(look, m_fixedLook, m_sheets, picture.full) > kLookChanged;
        m_changedLooks = isOther && isStill ? m_changedLooks + 1 : 0;
    }
    m_previousLook = look;
    if (m_changedLooks >= kChangedLooks)
        reset();
}
