#include "features/code_watch.h"
#include "support/sheet_images.h"

#include <QtTest>

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

namespace {

const cv::Size kCamera(3264, 2448);
const cv::Point2f kPlace(2400, 600); // of the code's middle, camera pixels

// A frame of which every `reduction`th pixel is there.
FramePtr frameWith(const cv::Mat &code, int reduction)
{
    sheets::Scene scene = sheets::desk(kCamera / reduction, 230);
    cv::Mat enlarged;
    cv::resize(code, enlarged, cv::Size(), 4.0 / reduction, 4.0 / reduction, cv::INTER_NEAREST);
    sheets::lay(scene, enlarged, kPlace / reduction, 0);
    auto frame = std::make_shared<Frame>();
    frame->pixels = scene.picture;
    frame->reduction = reduction;
    frame->width = kCamera.width;
    frame->height = kCamera.height;
    frame->angle = 180;
    return frame;
}

SeenCodes lookedAt(CodeWatch &watch, const FramePtr &frame, int type)
{
    QSignalSpy spy(&watch, &CodeWatch::looked);
    EXPECT_TRUE(watch.look(frame, type));
    EXPECT_FALSE(watch.look(frame, type)); // one at a time, the caller does not wait
    EXPECT_TRUE(spy.wait(30000));
    return spy.isEmpty() ? SeenCodes() : spy[0][0].value<SeenCodes>();
}

} // namespace

TEST(CodeWatch, TellsCodesAndTheirPlaceHoweverMuchOfTheFrameIsThere)
{
    CodeWatch watch;
    const cv::Mat code = sheets::barcode(sheets::Code::Code128, "Page/17", 3, 90);
    for (const int reduction : {1, 2, 4}) {
        const SeenCodes seen = lookedAt(watch, frameWith(code, reduction), 0);
        ASSERT_EQ(seen.codes.size(), 1) << reduction;
        EXPECT_EQ(seen.codes[0].name, "Page_17"); // as the file would be called
        EXPECT_EQ(seen.frame, QSize(kCamera.width, kCamera.height));
        EXPECT_EQ(seen.angle, 180);
        const QRectF place = seen.codes[0].corners.boundingRect();
        EXPECT_NEAR(place.center().x(), kPlace.x, 40);
        EXPECT_NEAR(place.center().y(), kPlace.y, 40);
        EXPECT_NEAR(place.width(), code.cols * 4 - 240, 80); // without the quiet zones
        EXPECT_TRUE(lookedAt(watch, frameWith(code, reduction), 1).codes.isEmpty());
    }
}

// Interleaved 2 of 5, "00123456": no check digit says that it is one.
TEST(CodeWatch, ShowsWhatNothingVouchesForOnlyWhenItIsSeenAgain)
{
    CodeWatch watch;
    const FramePtr frame = frameWith(
        sheets::bars(
            "101010101110001110001011101000101011100011101110100010100011101000111000101011101", 3,
            90),
        2);
    EXPECT_TRUE(lookedAt(watch, frame, 0).codes.isEmpty());
    EXPECT_EQ(lookedAt(watch, frame, 0).codes.size(), 1);
    const FramePtr empty = frameWith(cv::Mat(60, 60, CV_8UC3, cv::Scalar::all(255)), 2);
    EXPECT_TRUE(lookedAt(watch, empty, 0).codes.isEmpty());
    EXPECT_TRUE(lookedAt(watch, frame, 0).codes.isEmpty());
}
