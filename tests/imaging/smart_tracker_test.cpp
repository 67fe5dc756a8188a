#include "imaging/smart_quad.h"
#include "imaging/smart_tracker.h"
#include "support/sheet_images.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

namespace {

constexpr int kFramesToSettle = 20;
const cv::Size kFrame(1632, 1224);

cv::Mat sheetAt(cv::Point2f centre, unsigned seed)
{
    sheets::Scene scene = sheets::desk(kFrame, 70);
    sheets::lay(scene, sheets::textPage({600, 800}), centre, 7);
    sheets::addNoise(scene.picture, 3, seed);
    return scene.picture;
}

// The tracker after it has seen the picture for a while.
std::vector<Quad> settled(SmartTracker &tracker, const cv::Mat &picture)
{
    for (int i = 0; i < kFramesToSettle; ++i)
        tracker.update(picture);
    return tracker.update(picture);
}

} // namespace

TEST(SmartTracker, HoldsASheetStillUnderAHandAndFollowsItToAnotherPlace)
{
    SmartTracker tracker;
    std::vector<Quad> shown = settled(tracker, sheetAt({700, 600}, 1));
    ASSERT_EQ(shown.size(), 1U);
    const Quad first = shown[0];
    for (unsigned i = 0; i < 24; ++i) { // noise moves no corner by a screen pixel
        cv::Mat picture = sheetAt({700, 600}, i + 2);
        if (i % 8 < 5) // a hand that passes
            cv::ellipse(picture, {300 + 120 * static_cast<int>(i % 8), 700}, {140, 500}, 20, 0, 360,
                        {120, 150, 190}, -1);
        const std::vector<Quad> &next = tracker.update(picture);
        ASSERT_EQ(next.size(), 1U) << i;
        EXPECT_LT(cornerDistance(next[0], shown[0]), 2) << i;
        shown = next;
    }
    EXPECT_LT(cornerDistance(shown[0], first), 4);
    shown = settled(tracker, sheetAt({900, 640}, 3));
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_GT(cornerDistance(shown[0], first), 150);
    EXPECT_TRUE(settled(tracker, sheets::desk(kFrame, 70).picture).empty());
}

TEST(SmartTracker, KeepsSetCornersUntilAnotherPictureLiesStill)
{
    SmartTracker tracker;
    const cv::Mat page = sheetAt({700, 600}, 1);
    Quad dragged = settled(tracker, page).at(0);
    dragged[0] += cv::Point2f(-60, -40);
    tracker.fix({dragged});
    EXPECT_EQ(settled(tracker, page).at(0), dragged);
    cv::Mat other = page.clone();
    other(cv::Rect(420, 300, 560, 600)).setTo(cv::Scalar(40, 120, 40));
    for (int i = 0; i < 8; ++i)
        tracker.update(other); // for a moment only
    EXPECT_TRUE(tracker.isFixed());
    EXPECT_EQ(settled(tracker, page).at(0), dragged);
    settled(tracker, other);
    settled(tracker, other);
    EXPECT_FALSE(tracker.isFixed());
}
