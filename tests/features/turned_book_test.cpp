#include "app/state.h"
#include "features/wise_captrue_thread.h"
#include "support/stand_process.h"
#include "video/video_thread.h"

#include <QtTest>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <vector>

namespace {

constexpr double kSamePage = 0.5, kOtherPage = 2; // measured: 0.01 and 4.3

// Mean difference of the pixels in gray levels, apart from the brightness of the light.
double difference(const FramePtr &a, const FramePtr &b)
{
    cv::Mat change;
    cv::subtract(a->pixels, b->pixels, change, cv::noArray(), CV_32FC3);
    change -= cv::mean(change);
    return cv::norm(change, cv::NORM_L1) / static_cast<double>(change.total() * 3);
}

} // namespace

// Book, camera and light are the stand's; a quick hand goes over every page.
TEST(TurnedBook, EachPageIsShotOnceAtRestInOrder)
{
    constexpr int kPages = 4;
    StandProcess stand({"--scene", "book", "--modes", "640x480@15"});
    ASSERT_TRUE(stand.isReady());
    ASSERT_TRUE(stand.command("flicker 8"));
    IVideoTread camera;
    camera.openCamera("0", "640x480", "15");
    ASSERT_TRUE(QTest::qWaitFor([&] { return camera.lastFrame() != nullptr; }, 30000));

    wiseCaptrueThr sampler;
    std::vector<FramePtr> shots;
    int changes = 0;
    QObject::connect(&sampler, &wiseCaptrueThr::wiseCaptrueSignal, &camera, [&](bool ready) {
        if (ready)
            shots.push_back(camera.lastFrame());
        else
            ++changes;
    });
    sampler.setFrameSource([&camera] { return camera.lastFrame(); });
    isWiseCaptrue = true;
    sampler.toStart();
    for (size_t page = 1; page <= kPages; ++page) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return shots.size() == page; }, 15000)) << page;
        changes = 0;
        ASSERT_TRUE(stand.command("hand"));
        // A quick hand is in and out again: two changes, or fewer on a busy machine, and no shot.
        EXPECT_FALSE(QTest::qWaitFor([&] { return changes > 2 || shots.size() != page; }, 1500));
        EXPECT_LT(difference(shots.back(), camera.lastFrame()), kSamePage)
            << "shot in motion: the page looked different at rest";
        if (page < kPages) {
            ASSERT_TRUE(stand.command("turn"));
        }
    }
    isWiseCaptrue = false;
    sampler.toStop();
    sampler.setFrameSource({});
    camera.closeCamera();
    for (size_t i = 1; i < shots.size(); ++i)
        EXPECT_GT(difference(shots[i - 1], shots[i]), kOtherPage) << i;
}
