#include "app/state.h"
#include "imaging/capture.h"
#include "imaging/smart_cut.h"
#include "imaging/smart_finder.h"
#include "imaging/smart_quad.h"
#include "support/files.h"
#include "support/sheet_images.h"

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

using testing::HasSubstr;
using testing::SizeIs;

namespace {

// `page` on `desk` with its corners at `corners`, seen by a camera with noise.
void layInPerspective(cv::Mat &desk, const cv::Mat &page, const Quad &corners)
{
    const auto right = static_cast<float>(page.cols - 1),
               bottom = static_cast<float>(page.rows - 1);
    const Quad flat{cv::Point2f(0, 0), cv::Point2f(right, 0), cv::Point2f(right, bottom),
                    cv::Point2f(0, bottom)};
    cv::warpPerspective(page, desk, cv::getPerspectiveTransform(flat.data(), corners.data()),
                        desk.size(), cv::INTER_AREA, cv::BORDER_TRANSPARENT);
}

cv::Mat deskOf(int level)
{
    return sheets::desk({1632, 1224}, level).picture;
}

const Quad kLeaning{cv::Point2f(430, 190), cv::Point2f(1130, 260), cv::Point2f(1270, 1060),
                    cv::Point2f(300, 1010)};

class SmartCapture : public FolderTest
{
};

// Corners of a rectangle of `size` seen by a camera of that focal length which looks at its middle.
Quad seenRectangle(cv::Size2d size, double focal, cv::Size frame)
{
    constexpr double kTilt = 0.5, kLean = 0.3, kTurn = 0.4; // radians
    Quad quad;
    const cv::Point2d corners[] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    for (size_t i = 0; i < 4; ++i) {
        const double x = corners[i].x * size.width / 2, y = corners[i].y * size.height / 2;
        const double x1 = x * std::cos(kTurn) - y * std::sin(kTurn);
        const double y1 = x * std::sin(kTurn) + y * std::cos(kTurn);
        const double y2 = y1 * std::cos(kTilt), z2 = y1 * std::sin(kTilt);
        const double x3 = x1 * std::cos(kLean) + z2 * std::sin(kLean);
        const double depth = focal - x1 * std::sin(kLean) + z2 * std::cos(kLean);
        quad[i] = cv::Point2f(cv::Point2d(frame.width / 2.0 + focal * x3 / depth,
                                          frame.height / 2.0 + focal * y2 / depth));
    }
    return quad;
}

} // namespace

TEST(SmartFinder, FindsALeaningSheetOnDarkAndOnLightDesks)
{
    for (const int level : {40, 150, 200}) {
        cv::Mat picture = deskOf(level);
        layInPerspective(picture, sheets::textPage({700, 990}), kLeaning);
        sheets::shade(picture, 0.8);
        sheets::addNoise(picture, 2);
        for (int turn = 0; turn < 2; ++turn) {
            const SmartFinding found = findSheets(picture);
            ASSERT_THAT(found.sheets, SizeIs(1)) << level;
            Quad truth = kLeaning;
            for (cv::Point2f &corner : truth) {
                if (turn == 1)
                    corner = {static_cast<float>(picture.cols) - 1 - corner.y, corner.x};
            }
            EXPECT_LT(cornerDistance(sharpenedCorners(picture, found.sheets[0].corners), truth), 4)
                << level;
            EXPECT_GE(found.sheets[0].confidence, kSmartCutMin);
            cv::rotate(picture, picture, cv::ROTATE_90_CLOCKWISE);
        }
    }
}

TEST(SmartFinder, TellsEverySheetAndNoneOnAnEmptyDesk)
{
    cv::Mat picture = deskOf(70);
    sheets::addNoise(picture, 3);
    EXPECT_THAT(findSheets(picture).sheets, SizeIs(0));
    sheets::Scene scene = sheets::desk({1632, 1224}, 70);
    sheets::lay(scene, sheets::textPage({500, 700}), {400, 500}, 8);
    sheets::lay(scene, sheets::textPage({500, 700}), {1150, 600}, -5);
    sheets::lay(scene, sheets::textPage({300, 200}), {450, 1050}, 3);
    sheets::addNoise(scene.picture, 3);
    const SmartFinding found = findSheets(scene.picture);
    ASSERT_THAT(found.sheets, SizeIs(3));
    for (const auto &corners : scene.corners) {
        const bool isFound =
            std::any_of(found.sheets.begin(), found.sheets.end(), [&](const SmartSheet &sheet) {
                return overlap(inOrder(sheet.corners), inOrder(corners)) > 0.97F;
            });
        EXPECT_TRUE(isFound);
    }
    EXPECT_THAT(findSheets(cv::Mat(3, 3, CV_8UC3, cv::Scalar::all(9))).sheets, SizeIs(0));
}

TEST(SmartFinder, CutsOnlyWhatIsSure)
{
    const SmartFinding finding{{{kLeaning, 0.99F}, {kLeaning, 0.8F}}, 0.99F};
    EXPECT_THAT(sureSheets(finding), SizeIs(1));
    EXPECT_EQ(sureSheets(finding)[0].confidence, 0.99F);
}

TEST(SheetShape, RecoversTheProportionsFromThePerspective)
{
    const cv::Size frame(3264, 2448);
    struct Case
    {
        cv::Size2d size;
        const char *format;
    };
    for (const Case &c : {Case{{1000, 1414}, "A"}, Case{{1424, 1100}, "Letter"},
                          Case{{1200, 757}, "ID-1"}, Case{{500, 1500}, ""}})
    {
        const SheetShape shape = sheetShape(seenRectangle(c.size, 3600, frame), frame);
        const double longer = std::max(c.size.width, c.size.height);
        const double shorter = std::min(c.size.width, c.size.height);
        EXPECT_NEAR(shape.ratio, longer / shorter, 0.08) << c.format;
        EXPECT_STREQ(shape.format, c.format);
        EXPECT_EQ(shape.size.width % 4 + shape.size.height % 4, 0);
        EXPECT_EQ(shape.size.width > shape.size.height, c.size.width > c.size.height);
    }
}

TEST_F(SmartCapture, CutsEachSheetUprightAndSavesAllWhenThereIsNone)
{
    cv::Mat picture = deskOf(60);
    layInPerspective(picture, sheets::textPage({700, 990}), kLeaning);
    CaptureOptions options;
    options.cropMode = SmartCrop;
    const CaptureResult whole = captureFrame(picture, file("whole.png"), options);
    EXPECT_EQ(whole.error, "");
    EXPECT_THAT(whole.note, HasSubstr("the whole picture was saved"));
    EXPECT_EQ(cv::imread(whole.path()).size(), picture.size());

    options.sheets = {kLeaning, scaled(kLeaning, 0.5F, 0.5F)};
    options.areSheetsGiven = true;
    const CaptureResult cut = captureFrame(picture, file("cut.png"), options);
    ASSERT_THAT(cut.files, SizeIs(2));
    const cv::Mat page = cv::imread(cut.files[0]);
    EXPECT_EQ(page.cols % 4 + page.rows % 4, 0);
    EXPECT_GT(cv::mean(page)[0], 150); // paper to the very edges
    EXPECT_LT(cv::mean(page.rowRange(0, page.rows / 8))[0],
              cv::mean(page.rowRange(page.rows * 7 / 8, page.rows))[0]); // the bar is on top
}
