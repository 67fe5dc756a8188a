#include "platform/stand_descriptor.h"
#include "stand/mjpeg_reader.h"
#include "support/stand_process.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

namespace {

// Part of the pixels that differ by 25 gray levels or more.
double changedPart(const cv::Mat &a, const cv::Mat &b)
{
    cv::Mat difference;
    cv::absdiff(a, b, difference);
    return cv::countNonZero(difference >= 25) / static_cast<double>(a.total());
}

class MotionTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(stand.isReady());
        reader = std::make_unique<MjpegReader>(standDevices().value(0).modes.value(0).socket);
        still = reader->nextPicture();
        ASSERT_FALSE(still.empty());
    }

    // Plays the motion of `command`; gives its frames, and the picture at rest in `still`.
    std::vector<cv::Mat> film(const QString &command)
    {
        EXPECT_TRUE(stand.command(command)) << qPrintable(stand.answer());
        std::vector<cv::Mat> frames;
        cv::Mat last = still;
        for (int i = 0; i < 200; ++i) {
            const cv::Mat picture = reader->nextPicture();
            const bool isSame = cv::norm(picture, last, cv::NORM_INF) == 0;
            if (isSame && !frames.empty())
                break; // the same picture twice: it is at rest
            if (!isSame)
                frames.push_back(picture);
            last = picture;
        }
        if (!frames.empty()) {
            still = frames.back();
            frames.pop_back();
        }
        return frames;
    }

    StandProcess stand{{"--scene", "book", "--modes", "640x480@15"}};
    std::unique_ptr<MjpegReader> reader;
    cv::Mat still;
};

} // namespace

TEST_F(MotionTest, APageTurnsInSixTenthsOfASecondAndAnotherOneLiesThere)
{
    cv::Mat before = still;
    for (int page = 0; page < 2; ++page) {
        const std::vector<cv::Mat> frames = film("turn");
        EXPECT_EQ(frames.size(), 9u);
        int changed = 0;
        for (size_t i = 1; i < frames.size(); ++i)
            changed += changedPart(frames[i - 1], frames[i]) > 0.1;
        EXPECT_GE(changed, 4) << "a turn must be hard to overlook";
        EXPECT_GT(changedPart(before, still), 0.02) << "another page";
        before = still;
    }
}

TEST_F(MotionTest, AHandIsSeenInOneFrameAndASlowOneInMany)
{
    const cv::Mat before = still;
    const std::vector<cv::Mat> quick = film("hand");
    ASSERT_EQ(quick.size(), 1u);
    EXPECT_GT(changedPart(before, quick.front()), 0.1);
    EXPECT_EQ(cv::norm(before, still, cv::NORM_INF), 0);
    EXPECT_GT(film("hand slow").size(), 6u);
}

TEST_F(MotionTest, FlickerChangesTheLightAndOnlyThat)
{
    ASSERT_TRUE(stand.command("flicker 8"));
    double darkest = 255, brightest = 0;
    for (int i = 0; i < 30; ++i) {
        const cv::Mat picture = reader->nextPicture();
        const double light = cv::mean(picture)[0];
        darkest = std::min(darkest, light);
        brightest = std::max(brightest, light);
        EXPECT_LT(changedPart(still, picture), 0.001);
    }
    EXPECT_NEAR(brightest - darkest, 16, 3);
    EXPECT_FALSE(stand.command("flicker 1000"));
    ASSERT_TRUE(stand.command("scene page"));
    EXPECT_FALSE(stand.command("turn")) << "a single sheet has no next page";
}
