#include "app/state.h"
#include "imaging/document_finder.h"
#include "imaging/plain_finder.h"
#include "imaging/straighten.h"
#include "support/pictures.h"
#include "support/sheet_images.h"

#include <gtest/gtest.h>

namespace {

// Two or three sheets, shading and noise; every seed another arrangement.
sheets::Scene busyDesk(cv::Size size, unsigned seed)
{
    cv::RNG random(seed);
    sheets::Scene scene = sheets::desk(size, random.uniform(20, 110));
    const int sheetCount = 1 + static_cast<int>(seed % 3);
    const float side = static_cast<float>(std::min(size.width, size.height));
    for (int i = 0; i < sheetCount; ++i) {
        const cv::Size page(std::max(20, static_cast<int>(side * random.uniform(0.2f, 0.45f))),
                            std::max(20, static_cast<int>(side * random.uniform(0.2f, 0.6f))));
        sheets::lay(scene, cv::Mat(page, CV_8UC3, cv::Scalar::all(random.uniform(170, 256))),
                    {random.uniform(0.1f, 0.9f) * static_cast<float>(size.width),
                     random.uniform(0.1f, 0.9f) * static_cast<float>(size.height)},
                    random.uniform(-89.0, 89.0));
    }
    sheets::shade(scene.picture, random.uniform(0.5, 1.0));
    sheets::addNoise(scene.picture, random.uniform(0.0, 12.0), seed);
    return scene;
}

void expectSame(const cv::Mat &picture, int cropMode, DocumentFinder &finder)
{
    const std::optional<Detection> found = finder.find(picture, cropMode);
    const std::optional<Detection> plain = plainFind(picture, cropMode);
    ASSERT_EQ(found.has_value(), plain.has_value()) << picture.size();
    if (found) {
        EXPECT_EQ(found->outlines, plain->outlines) << picture.size();
        EXPECT_EQ(found->drawn, plain->drawn) << picture.size();
    }
}

} // namespace

TEST(DocumentFinder, AnswersAsThePlainStepsDoOnScenesOfManySizes)
{
    DocumentFinder finder; // one for all: buffers of another size must not show
    const cv::Size sizes[] = {{640, 480}, {641, 483}, {1280, 720}, {1366, 768}, {479, 640},
                              {97, 61},   {100, 400}, {4, 4},      {7, 5},      {2048, 1536}};
    unsigned seed = 0;
    for (const cv::Size size : sizes) {
        for (int i = 0; i < 4; ++i, ++seed)
            expectSame(busyDesk(size, seed).picture, seed % 2 ? MultiGraphCrop : AutomaticCrop,
                       finder);
        expectSame(noisePicture(size, CV_8UC3, seed), MultiGraphCrop, finder);
        expectSame(cv::Mat(size, CV_8UC3, cv::Scalar(200, 90, 10)), MultiGraphCrop, finder);
    }
    // Neighbouring light and dark far beyond what the contrast step can hold: values wrap.
    cv::Mat picture(800, 800, CV_8UC3, cv::Scalar::all(0));
    for (int i = 0; i < 60; ++i)
        cv::rectangle(picture, cv::Rect(i * 13, (i * 97) % 780, 12, 18), cv::Scalar::all(255), -1);
    cv::rectangle(picture, cv::Rect(200, 200, 300, 260), cv::Scalar::all(255), -1);
    expectSame(picture, MultiGraphCrop, finder);
}

TEST(DocumentFinder, FindsTheCornersOfASheet)
{
    sheets::Scene scene = sheets::desk({1600, 1200});
    sheets::lay(scene, sheets::textPage({700, 900}), {800, 600}, 17);
    const auto found = DocumentFinder().find(scene.picture, AutomaticCrop);
    ASSERT_TRUE(found);
    ASSERT_EQ(found->outlines.size(), 1u);
    for (const cv::Point2f &corner : scene.corners[0]) {
        EXPECT_TRUE(
            std::any_of(found->outlines[0].begin(), found->outlines[0].end(), [&](cv::Point point) {
                return cv::norm(cv::Point2f(point) - corner) < 12;
            }));
    }
}

TEST(DocumentFinder, KeepsTheLargestEightLargestFirst)
{
    sheets::Scene scene = sheets::desk({1600, 1200});
    for (int i = 0; i < 10; ++i)
        sheets::lay(scene, cv::Mat(200 + 10 * i, 160, CV_8UC3, cv::Scalar::all(240)),
                    {160.0f + 310 * static_cast<float>(i % 5), i < 5 ? 300.0f : 900.0f}, 0);
    const auto several = DocumentFinder().find(scene.picture, MultiGraphCrop);
    ASSERT_TRUE(several);
    ASSERT_EQ(several->outlines.size(), 8u);
    EXPECT_EQ(several->leftOut, 2);
    const auto height = [](const Outline &o) { return straightenGeometry(o).rect.height; };
    for (size_t i = 1; i < 8; ++i)
        EXPECT_GE(height(several->outlines[i - 1]) + 4, height(several->outlines[i]));
    EXPECT_NEAR(height(several->outlines[7]), 220, 12);
    const auto one = DocumentFinder().find(scene.picture, AutomaticCrop);
    ASSERT_TRUE(one);
    EXPECT_EQ(one->leftOut, 0);
    EXPECT_EQ(one->outlines, std::vector<Outline>{several->outlines[0]});
}

TEST(DocumentFinder, TwoSheetsOfOneAreaShareTheLaterOutlineAndAreBothDrawn)
{
    cv::Mat picture(400, 800, CV_8UC3, cv::Scalar::all(40));
    for (const int x : {100, 500})
        picture(cv::Rect(x, 80, 160, 200)).setTo(cv::Scalar::all(240));
    DocumentFinder finder;
    expectSame(picture, MultiGraphCrop, finder);
    const auto found = finder.find(picture, MultiGraphCrop);
    ASSERT_TRUE(found);
    ASSERT_EQ(found->outlines.size(), 2u);
    EXPECT_EQ(found->outlines[0], found->outlines[1]);
    EXPECT_EQ(found->drawn.size(), 4u);
}

TEST(DocumentFinder, AnswersNothingForNothingToFind)
{
    DocumentFinder finder;
    int found = 0;
    for (int side = 80; side < 104; side += 4) { // around the least area, corners rounded off
        cv::Mat stamp(400, 400, CV_8UC3, cv::Scalar::all(0));
        stamp(cv::Rect(160, 160, side, 88)).setTo(cv::Scalar::all(255));
        expectSame(stamp, AutomaticCrop, finder);
        found += finder.find(stamp, AutomaticCrop).has_value() ? 1 : 0;
    }
    EXPECT_EQ(found, 4);
    for (const cv::Size size : {cv::Size(1, 1), cv::Size(3, 900), cv::Size(60, 60)})
        EXPECT_FALSE(finder.find(cv::Mat(size, CV_8UC3, cv::Scalar::all(9)), AutomaticCrop));
    EXPECT_FALSE(finder.find(cv::Mat(), AutomaticCrop));
}
