#include "app/state.h"
#include "features/wise_captrue_thread.h"

#include <QElapsedTimer>
#include <QtTest>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <atomic>
#include <vector>

namespace {

FramePtr page(int shade, cv::Size size = {320, 240})
{
    auto frame = std::make_shared<Frame>();
    frame->pixels = cv::Mat(size, CV_8UC3, cv::Scalar::all(20));
    frame->width = size.width;
    frame->height = size.height;
    cv::rectangle(frame->pixels, {40, 40, 200, 150}, cv::Scalar::all(shade), cv::FILLED);
    return frame;
}

FramePtr withHand(int shade)
{
    const FramePtr empty = page(shade);
    auto frame = std::make_shared<Frame>(*empty);
    frame->pixels = empty->pixels.clone();
    cv::rectangle(frame->pixels, {100, 120, 40, 120}, cv::Scalar(120, 140, 190), cv::FILLED);
    return frame;
}

class WiseCaptrueTest : public testing::Test
{
protected:
    void SetUp() override
    {
        isWiseCaptrue = true;
        thread.setFrameSource([this] {
            ++samples;
            return std::atomic_load(&shown);
        });
        // With a receiver, so that the signals come to this thread.
        QObject::connect(&thread, &wiseCaptrueThr::wiseCaptrueSignal, &receiver,
                         [this](bool ready) { signalled.push_back(ready); });
        QObject::connect(&thread, &wiseCaptrueThr::shotIsDoubtful, &receiver,
                         [this] { ++doubtful; });
    }
    void TearDown() override { isWiseCaptrue = false; }

    void show(const FramePtr &frame) { std::atomic_store(&shown, frame); }

    bool waitForSamples(int count)
    {
        const int wanted = samples + count;
        return QTest::qWaitFor([&] { return samples >= wanted; }, 20000);
    }

    FramePtr shown = page(200);
    std::atomic<int> samples{0};
    wiseCaptrueThr thread;
    QObject receiver;
    std::vector<bool> signalled;
    int doubtful = 0;
};

} // namespace

TEST_F(WiseCaptrueTest, AFrameOfAnotherSizeIsComparedWithNothing)
{
    thread.toStart();
    for (const cv::Size size : {cv::Size(640, 480), cv::Size(64, 64), cv::Size(2592, 1944)}) {
        show(page(200, size));
        ASSERT_TRUE(waitForSamples(2));
    }
    thread.toStop();
    EXPECT_TRUE(signalled.empty()) << "neither changes nor, in so short a time, a shot";
}

TEST_F(WiseCaptrueTest, OnlyAnotherPageThanTheOneTakenIsNew)
{
    const auto readies = [this] { return std::count(signalled.begin(), signalled.end(), true); };
    const int pace = wiseCaptrueThr::kSamplePeriodMs;
    QElapsedTimer clock;
    clock.start();
    thread.toStart();
    ASSERT_TRUE(QTest::qWaitFor([&] { return readies() == 1; }, 20000));
    EXPECT_GE(clock.elapsed(), PageTurnMachine::kStableNeeded * pace);

    for (int shade = 60; shade < 200; shade += 35) { // a hand
        show(page(shade));
        ASSERT_TRUE(waitForSamples(2));
    }
    show(page(200));
    clock.restart();
    ASSERT_TRUE(waitForSamples(40));
    EXPECT_GE(clock.elapsed(), 38 * pace);
    EXPECT_EQ(readies(), 1) << "the hand left the same page";

    show(page(90)); // one changed sample
    ASSERT_TRUE(QTest::qWaitFor([&] { return readies() == 2; }, 20000));
    thread.setShotFrame(page(200)); // turned back before the countdown had ended
    ASSERT_TRUE(QTest::qWaitFor([&] { return readies() == 3; }, 20000));
    thread.toStop();
    EXPECT_EQ(doubtful, 0);
}

TEST_F(WiseCaptrueTest, AHandInTheShotPictureIsDoubtful)
{
    thread.toStart();
    ASSERT_TRUE(QTest::qWaitFor([&] { return signalled.size() == 1; }, 20000));
    thread.setShotFrame(withHand(200));
    ASSERT_TRUE(QTest::qWaitFor([&] { return doubtful == 1; }, 20000)) << "came in meanwhile";
    ASSERT_TRUE(waitForSamples(40));
    EXPECT_EQ(doubtful, 1) << "told once";

    show(withHand(90)); // a page that is held
    ASSERT_TRUE(QTest::qWaitFor([&] { return signalled.size() == 3; }, 20000));
    thread.setShotFrame(withHand(90));
    ASSERT_TRUE(waitForSamples(20));
    EXPECT_EQ(doubtful, 1);
    show(page(90));
    ASSERT_TRUE(waitForSamples(40));
    EXPECT_EQ(doubtful, 1) << "one picture may be the beginning of a turn";
    for (int i = 0; i < 8 && doubtful == 1; ++i) {
        show(page(90));
        ASSERT_TRUE(waitForSamples(2));
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return doubtful == 2; }, 20000)) << "was there all along";
    EXPECT_EQ(signalled.size(), 3) << "so small a change is none";
    thread.toStop();
}

TEST_F(WiseCaptrueTest, TheFirstMomentOfATurnIsNoHand)
{
    thread.toStart();
    ASSERT_TRUE(QTest::qWaitFor([&] { return signalled.size() == 1; }, 20000));
    thread.setShotFrame(page(200));
    show(withHand(200));
    ASSERT_TRUE(waitForSamples(40));
    show(page(90));
    ASSERT_TRUE(QTest::qWaitFor([&] { return signalled.size() == 3; }, 20000));
    thread.toStop();
    EXPECT_EQ(doubtful, 0);
}

TEST_F(WiseCaptrueTest, StoppingIsQuickAndASourceThatWasTakenOutIsNotCalledAgain)
{
    std::atomic<bool> gone{false}, calledTooLate{false};
    thread.setFrameSource([&] {
        if (gone)
            calledTooLate = true;
        return std::atomic_load(&shown);
    });
    for (int round = 0; round < 20; ++round) {
        thread.toStart();
        QElapsedTimer timer;
        timer.start();
        thread.toStop();
        EXPECT_FALSE(thread.isRunning());
        EXPECT_LT(timer.elapsed(), wiseCaptrueThr::kStopTimeoutMs);
    }
    thread.toStart();
    thread.setFrameSource({});
    gone = true;
    show(page(90));
    thread.setFrameSource([this] { return std::atomic_load(&shown); });
    ASSERT_TRUE(QTest::qWaitFor([this] { return !signalled.empty(); }, 20000));
    EXPECT_FALSE(calledTooLate);
}
