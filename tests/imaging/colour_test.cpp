#include "app/state.h"
#include "imaging/colour_effects.h"
#include "imaging/plain_colour.h"
#include "imaging/save_image.h"
#include "support/files.h"
#include "support/pictures.h"
#include "support/sheet_images.h"

#include <opencv2/imgcodecs.hpp>

namespace {

template <class Effect>
void expectAsPlain(const cv::Mat &picture, Effect effect, void (*plain)(cv::Mat &))
{
    cv::Mat fast = picture.clone(), expected = picture.clone();
    effect(fast);
    plain(expected);
    EXPECT_TRUE(identical(fast, expected)) << picture.size();
}

cv::Mat white(cv::Size size)
{
    return {size, CV_8UC3, cv::Scalar::all(255)};
}

} // namespace

TEST(Gray, EveryColourRoundsAsTheDoubleLoopDoes)
{
    cv::Mat colours(256 * 256, 256, CV_8UC3);
    colours.forEach<cv::Vec3b>(
        [](cv::Vec3b &pixel, const int *at) { pixel = cv::Vec3i(at[0] >> 8, at[0] & 255, at[1]); });
    expectAsPlain(colours, grayInPlace, plainGray);

    cv::Mat whole = noisePicture({67, 40}, CV_8UC3, 8);
    cv::Mat expected = whole.clone();
    cv::Mat part = whole(cv::Rect(5, 3, 37, 20)), expectedPart = expected(cv::Rect(5, 3, 37, 20));
    grayInPlace(part);
    plainGray(expectedPart);
    EXPECT_TRUE(identical(whole, expected));
}

TEST(Binarization, EqualsThePlainSteps)
{
    unsigned seed = 0;
    for (const cv::Size size : {cv::Size(1, 1), cv::Size(19, 7), cv::Size(640, 481)})
        expectAsPlain(noisePicture(size, CV_8UC3, ++seed), binarizeInPlace, plainBinarize);
    expectAsPlain(sheets::textPage({400, 300}), binarizeInPlace, plainBinarize);
    const uchar gray[] = {10, 10, 200, 200};
    EXPECT_EQ(otsu(gray, 2, 2), 10);
    const uchar even[] = {77, 77, 77, 77};
    EXPECT_EQ(otsu(even, 4, 1), 0);
}

TEST(Optimization, EqualsThePlainStepsWithTheSharpening)
{
    for (const double light : {1.0, 0.4}) {
        sheets::Scene scene = sheets::desk({803, 601}, 40);
        sheets::lay(scene, sheets::textPage({420, 510}), {400, 300}, 8);
        sheets::shade(scene.picture, light);
        sheets::addNoise(scene.picture, 4);
        expectAsPlain(scene.picture, FN_DeleteBackcolor, plainOptimize);
    }
}

TEST(Optimization, PaperIsWhiteAndInkIsKeptWhateverTheLight)
{
    // A page without any desk, as a camera may see it, against the same page as it was printed.
    const cv::Mat clean = sheets::textPage({1200, 1600});
    cv::Mat paper, ink, values;
    cv::extractChannel(clean >= 128, paper, 0);
    cv::bitwise_not(paper, ink);
    for (const double light : {1.0, 0.45}) {
        cv::Mat seen = clean.clone();
        sheets::shade(seen, light);
        cv::GaussianBlur(seen, seen, cv::Size(3, 3), 0.6);
        sheets::addNoise(seen, 3);
        FN_DeleteBackcolor(seen);
        cv::extractChannel(seen, values, 1);
        EXPECT_GE(cv::countNonZero((values > 250) & paper), 0.99 * cv::countNonZero(paper))
            << light;
        EXPECT_LE(cv::countNonZero((values > 128) & ink), 0.02 * cv::countNonZero(ink)) << light;
    }
}

TEST(Optimization, KeepsWhatLiesInADeepShadow)
{
    cv::Mat seen = sheets::textPage({700, 1000}), values;
    const cv::Mat dark = seen.rowRange(750, 1000);
    cv::extractChannel(dark, values, 1);
    const cv::Mat ink = values < 100;
    dark *= 0.4;
    cv::Mat blank(1000, 700, CV_8UC3, cv::Scalar::all(235)); // a shadow without any edge
    for (int y = 500; y < blank.rows; ++y)
        blank.row(y) *= std::max(0.35, 1 - (y - 500) / 300.0);
    for (const cv::Mat &page : {seen, blank}) {
        cv::Mat trimmed = page.clone();
        FN_DeleteBlackEdge(trimmed);
        EXPECT_TRUE(identical(trimmed, page));
    }
    FN_DeleteBackcolor(seen);
    cv::extractChannel(dark, values, 1);
    EXPECT_LE(cv::countNonZero((values > 128) & ink), 0.02 * cv::countNonZero(ink));
}

TEST(Optimization, LeavesNoSeamBetweenSheetAndDesk)
{
    for (const int margin : {12, 60, 200}) {
        sheets::Scene scene = sheets::desk({700 + 2 * margin, 900 + 2 * margin}, 50);
        const cv::Point2f centre(scene.picture.cols / 2.f, scene.picture.rows / 2.f);
        sheets::lay(scene, cv::Mat(900, 700, CV_8UC3, cv::Scalar::all(235)), centre, 0.7);
        sheets::addNoise(scene.picture, 2);
        FN_DeleteBackcolor(scene.picture);
        EXPECT_EQ(cv::norm(scene.picture, white(scene.picture.size()), cv::NORM_INF), 0) << margin;
    }
}

TEST(Trim, WhitensDarkMarginsAroundASheetOnly)
{
    // A page whose text and a black photograph reach close to its edge, with margins of 15 percent.
    cv::Mat page = sheets::textPage({700, 980});
    cv::rectangle(page, cv::Rect(0, 600, 200, 250), cv::Scalar::all(15), cv::FILLED);
    for (const auto &[lean, brightness] : {std::pair(0.0, 55), {3.0, 130}, {-3.0, 90}}) {
        sheets::Scene scene = sheets::desk({1000, 1400}, brightness);
        sheets::lay(scene, page, {500, 700}, lean);
        sheets::addNoise(scene.picture, 4);
        const cv::Mat before = scene.picture.clone();
        FN_DeleteBlackEdge(scene.picture);

        std::vector<cv::Point> corners(scene.corners[0].begin(), scene.corners[0].end());
        cv::Mat inside = cv::Mat::zeros(before.size(), CV_8UC1), outside;
        cv::fillConvexPoly(inside, corners, cv::Scalar::all(255));
        cv::bitwise_not(inside, outside);
        const cv::Mat seam = cv::Mat::ones(9, 9, CV_8UC1);
        cv::erode(inside, inside, seam);
        cv::erode(outside, outside, seam);
        EXPECT_EQ(cv::norm(before, scene.picture, cv::NORM_INF, inside), 0) << lean;
        EXPECT_EQ(cv::norm(scene.picture, white(before.size()), cv::NORM_INF, outside), 0) << lean;
    }
    // A picture without a sheet stays as it is.
    for (const cv::Mat &picture :
         {cv::Mat(300, 400, CV_8UC3, cv::Scalar::all(30)), noisePicture({150, 150}, CV_8UC3, 1)})
    {
        cv::Mat trimmed = picture.clone();
        FN_DeleteBlackEdge(trimmed);
        EXPECT_TRUE(identical(trimmed, picture));
    }
}

TEST(Trim, BrightensByATableOfRoundedPowers)
{
    cv::Mat levels = (cv::Mat_<uchar>(1, 4) << 0, 1, 64, 255);
    cv::Mat bright;
    GammaCorrection(levels, bright, 0.4f);
    EXPECT_TRUE(identical(bright, (cv::Mat_<uchar>(1, 4) << 0, 28, 147, 255)));
}

class Saving : public FolderTest
{
};

// Which effects run together, read from what is saved.
TEST_F(Saving, ChoosesTheEffects)
{
    const std::string path = file("a.png");
    sheets::Scene scene = sheets::desk({600, 700}, 40);
    sheets::lay(scene, sheets::textPage({450, 560}), {300, 350}, 2);
    scene.picture += cv::Scalar(30, 0, 10);
    cv::Mat trimmed = scene.picture.clone(), gray = trimmed.clone(), both, optimized = gray.clone();
    FN_DeleteBlackEdge(trimmed);
    plainGray(gray);
    both = trimmed.clone();
    plainGray(both);
    FN_DeleteBackcolor(optimized);
    const std::tuple<SaveOptions, bool, cv::Mat> cases[] = {
        {{ColorOriginal, true, 80}, false, trimmed},
        {{ColorOriginal, true, 80}, true, scene.picture},
        {{ColorGray, true, 80}, false, both},
        {{ColorGray, true, 80}, true, gray},
        {{ColorOptimization, true, 80}, false, optimized},
        {{ColorOptimization, false, 80}, true, scene.picture}};
    for (const auto &[options, isRaw, expected] : cases) {
        EXPECT_EQ(saveImage(path, scene.picture.clone(), options, isRaw), "");
        EXPECT_TRUE(identical(cv::imread(path, cv::IMREAD_COLOR), expected)) << options.colorMode;
    }
}
