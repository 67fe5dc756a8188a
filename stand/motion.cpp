#include "stand/motion.h"

#include "stand/render.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

constexpr double kTurnSeconds = 0.6;
constexpr double kSlowHandSeconds = 0.9;
constexpr float kLift = 0.22f;     // a leaf on end comes nearer to the camera by this part
constexpr double kLeafShade = 0.5; // light that a leaf on end loses
constexpr double kPageShade = 0.3; // light that it takes from the pages below
constexpr int kFixedBits = 4;

using Quad = std::array<cv::Point2f, 4>; // top left, top right, bottom right, bottom left

cv::Point2f middle(cv::Point2f a, cv::Point2f b)
{
    return (a + b) * 0.5f;
}

Quad leftHalf(const Quad &book)
{
    return {book[0], middle(book[0], book[1]), middle(book[2], book[3]), book[3]};
}

Quad rightHalf(const Quad &book)
{
    return {middle(book[0], book[1]), book[1], book[2], middle(book[2], book[3])};
}

cv::Rect bounds(const Quad &quad, cv::Size size)
{
    const cv::Rect box = cv::boundingRect(std::vector<cv::Point2f>(quad.begin(), quad.end()));
    return cv::Rect(box.x - 2, box.y - 2, box.width + 4, box.height + 4) & cv::Rect({0, 0}, size);
}

template <size_t Count>
void fillShape(cv::Mat &picture, const std::array<cv::Point2f, Count> &corners, cv::Scalar colour)
{
    std::array<cv::Point, Count> points;
    std::transform(corners.begin(), corners.end(), points.begin(), [](cv::Point2f p) {
        return cv::Point(cvRound(p.x * (1 << kFixedBits)), cvRound(p.y * (1 << kFixedBits)));
    });
    cv::fillConvexPoly(picture, points.data(), static_cast<int>(Count), colour, cv::LINE_AA,
                       kFixedBits);
}

// Copies the quadrilateral `from` of `source` onto `to` of `picture`, in the given light.
void layPage(cv::Mat &picture, const cv::Mat &source, const Quad &from, const Quad &to,
             double light)
{
    const cv::Rect area = bounds(to, picture.size()), taken = bounds(from, source.size());
    if (area.empty() || taken.empty())
        return;
    Quad fromLocal = from, toLocal = to;
    for (size_t i = 0; i < to.size(); ++i) {
        fromLocal[i] -= cv::Point2f(taken.tl());
        toLocal[i] -= cv::Point2f(area.tl());
    }
    cv::Mat page, mask(area.size(), CV_8UC1, cv::Scalar(0));
    cv::warpPerspective(source(taken), page, cv::getPerspectiveTransform(fromLocal, toLocal),
                        area.size(), cv::INTER_LINEAR, cv::BORDER_REPLICATE);
    page.convertTo(page, -1, light);
    fillShape(mask, toLocal, cv::Scalar(255));
    page.copyTo(picture(area), mask);
}

// A forearm in a blue sleeve that reaches up from the lower edge of the frame; the finger tips are
// at `tips`, lengths in parts of the frame's height.
void paintHand(cv::Mat &picture, cv::Point2f tips)
{
    const auto unit = static_cast<float>(picture.rows);
    const cv::Scalar skin(128, 158, 205), cloth(158, 112, 72);
    const cv::Point2f wrist = tips + cv::Point2f(0.06f, 0.22f) * unit;
    const cv::Point2f elbow(wrist.x + 0.25f * unit, std::max(wrist.y, unit) + 0.4f * unit);
    const cv::Point2f across(0.13f * unit, -0.05f * unit);
    fillShape<4>(picture,
                 {wrist - across, wrist + across, elbow + across * 1.6f, elbow - across * 1.6f},
                 cloth);
    const cv::Point2f palm = middle(tips, wrist);
    cv::ellipse(picture, cv::RotatedRect(palm, {0.15f * unit, 0.24f * unit}, -14), skin, cv::FILLED,
                cv::LINE_AA);
    for (int finger = 0; finger < 4; ++finger) {
        const cv::Point2f tip =
            tips + cv::Point2f((finger - 1.5f) * 0.035f, 0.012f * std::abs(finger - 1.2f)) * unit;
        cv::line(picture, palm, tip, skin, std::max(1, cvRound(0.03 * picture.rows)), cv::LINE_AA);
    }
}

// The leaf's outer edge goes over from right to left in half a circle.
Quad leafCorners(const Quad &book, double angle, cv::Point2f frameCentre)
{
    const auto outer = [&](cv::Point2f left, cv::Point2f right) {
        const cv::Point2f spine = middle(left, right);
        const cv::Point2f flat = spine + (right - spine) * static_cast<float>(std::cos(angle));
        const float nearer = 1 + kLift * static_cast<float>(std::sin(angle));
        return frameCentre + (flat - frameCentre) * nearer;
    };
    const cv::Point2f top = middle(book[0], book[1]), bottom = middle(book[3], book[2]);
    const cv::Point2f outerTop = outer(book[0], book[1]), outerBottom = outer(book[3], book[2]);
    if (std::cos(angle) > 0)
        return {top, outerTop, outerBottom, bottom};
    return {outerTop, top, bottom, outerBottom};
}

cv::Mat paintTurn(const Scene &scene, const cv::Mat &before, const cv::Mat &after, double progress)
{
    const Quad book = sceneCorners(scene, before.size()).front();
    const double angle = CV_PI * progress;
    const double onEnd = std::sin(angle);
    const bool isRising = std::cos(angle) > 0;
    cv::Mat picture = after.clone();
    const double below = 1 - kPageShade * onEnd;
    layPage(picture, before, leftHalf(book), leftHalf(book), below);
    layPage(picture, after, rightHalf(book), rightHalf(book), below);
    const cv::Point2f centre(static_cast<float>(picture.cols) / 2,
                             static_cast<float>(picture.rows) / 2);
    const Quad leaf = leafCorners(book, angle, centre);
    layPage(picture, isRising ? before : after, isRising ? rightHalf(book) : leftHalf(book), leaf,
            1 - kLeafShade * onEnd);
    const cv::Point2f edge = isRising ? leaf[2] : leaf[3];
    paintHand(picture, edge - cv::Point2f(0, 0.04f * static_cast<float>(picture.rows)));
    return picture;
}

cv::Mat paintHandOver(const cv::Mat &before, cv::Point2f tips)
{
    cv::Mat picture = before.clone();
    paintHand(picture, {tips.x * static_cast<float>(picture.cols),
                        tips.y * static_cast<float>(picture.rows)});
    return picture;
}

} // namespace

Motion turnPage(const Scene &book)
{
    return {kTurnSeconds, [book](const cv::Mat &before, const cv::Mat &after, double progress) {
                return paintTurn(book, before, after, progress);
            }};
}

Motion passHand()
{
    return {0, [](const cv::Mat &before, const cv::Mat &, double) {
                return paintHandOver(before, {0.5f, 0.22f});
            }};
}

Motion passHandSlowly()
{
    return {kSlowHandSeconds, [](const cv::Mat &before, const cv::Mat &, double progress) {
                const auto along = static_cast<float>(progress);
                return paintHandOver(before, {0.8f - 0.6f * along, 0.22f});
            }};
}
