#include "app/state.h"
#include "imaging/capture.h"
#include "imaging/document_finder.h"
#include "imaging/plain_capture.h"
#include "support/files.h"
#include "support/pictures.h"
#include "support/sheet_images.h"

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class Capture : public FolderTest
{
protected:
    static cv::Mat read(const std::string &path) { return cv::imread(path, cv::IMREAD_COLOR); }
    static CaptureOptions mode(int cropMode, const std::vector<Outline> &outlines = {})
    {
        CaptureOptions options;
        options.cropMode = cropMode;
        options.outlines = outlines;
        return options;
    }
};

// Lean of the heavy bar at the top of a text page, degrees.
double leanOfTopBar(const cv::Mat &page)
{
    std::vector<cv::Point> top;
    cv::Mat gray;
    cv::cvtColor(page, gray, cv::COLOR_BGR2GRAY);
    for (int x = page.cols / 5; x < page.cols * 4 / 5; ++x) {
        for (int y = page.rows / 30; y < page.rows / 4; ++y) {
            if (gray.at<uchar>(y, x) < 120) {
                top.emplace_back(x, y);
                break;
            }
        }
    }
    cv::Vec4f line;
    cv::fitLine(top, line, cv::DIST_L2, 0, 0.01, 0.01);
    return std::atan(line[1] / line[0]) * 180 / CV_PI;
}

Outline rectangle(int left, int top, int right, int bottom)
{
    return {{{right, bottom}, {left, bottom}, {left, top}, {right, top}}};
}

} // namespace

TEST_F(Capture, CutsAsThePlainStepsDo)
{
    const cv::Mat frame = noisePicture({333, 251}, CV_8UC3, 3);
    cv::RNG random(11);
    int cut = 0;
    for (int i = 0; i < 300; ++i) {
        const cv::RotatedRect box(
            cv::Point2f(random.uniform(0.f, 333.f), random.uniform(0.f, 251.f)),
            cv::Size2f(random.uniform(1.f, 260.f), random.uniform(1.f, 200.f)),
            i % 10 == 0 ? -90.f : random.uniform(-90.f, -0.01f));
        cv::Point2f points[4];
        box.points(points);
        Outline outline;
        for (size_t k = 0; k < 4; ++k)
            outline[k] = {static_cast<int>(points[k].x), static_cast<int>(points[k].y)};
        std::string error;
        const cv::Mat fast = cutDocument(frame, outline, error);
        cv::Mat plain;
        try {
            plain = plainCut(frame, outline);
        } catch (const cv::Exception &) {
        }
        EXPECT_TRUE(identical(fast, plain)) << i << " angle " << box.angle;
        EXPECT_EQ(fast.empty(), !error.empty());
        cut += !fast.empty();
    }
    EXPECT_GT(cut, 200);
}

TEST_F(Capture, CountsTheLeanWithTheCamerasPi)
{
    const Outline diagonal{{{100, 100}, {0, 0}, {100, -100}, {200, 0}}};
    EXPECT_NEAR(straightenGeometry(diagonal).angle, 44.9772, 1e-3);
}

TEST_F(Capture, RotatesAllOfAPicture)
{
    const cv::Mat picture = noisePicture({50, 30}, CV_8UC3, 1);
    EXPECT_TRUE(identical(rotateImage(picture, 0), picture));
    EXPECT_EQ(rotateImage(picture, 90).size(), cv::Size(30, 50));
    for (const float degree : {-30.f, 12.5f, 44.f, 271.f})
        EXPECT_TRUE(identical(rotateImage(picture, degree), plainRotate(picture, degree)));
}

TEST_F(Capture, TurnsLeaningSheetsUprightAndNeverMirrorsThem)
{
    for (const double lean : {-44.0, -30.0, -5.0, -0.3, 0.0, 0.3, 5.0, 30.0, 44.0, 46.0, -89.0}) {
        sheets::Scene scene = sheets::desk({1600, 1200});
        sheets::lay(scene, sheets::textPage({560, 760}), {800, 600}, lean);
        const auto found = DocumentFinder().find(scene.picture, AutomaticCrop);
        ASSERT_TRUE(found) << lean;
        const CaptureResult result =
            captureFrame(scene.picture, file("lean.png"), mode(AutomaticCrop, found->outlines));
        ASSERT_THAT(result.files, ElementsAre(file("lean.png"))) << lean << result.error;
        cv::Mat page = read(result.path());
        const bool isOnItsSide = std::fabs(lean) > 45;
        EXPECT_EQ(page.cols > page.rows, isOnItsSide) << lean;
        if (isOnItsSide)
            cv::rotate(page, page,
                       lean > 0 ? cv::ROTATE_90_COUNTERCLOCKWISE : cv::ROTATE_90_CLOCKWISE);
        EXPECT_NEAR(page.cols, 560, 12) << lean;
        EXPECT_NEAR(page.rows, 760, 12) << lean;
        EXPECT_EQ(page.cols % 4 + page.rows % 4, 0) << lean;
        EXPECT_NEAR(leanOfTopBar(page), 0, 0.5) << lean;
        // The bar is at the top; words begin at the left margin and fray at the right.
        const cv::Mat text = page(cv::Rect(page.cols / 4, page.rows / 12, page.cols / 2, 20));
        EXPECT_LT(cv::mean(text)[0], 155) << lean;
    }
}

TEST_F(Capture, SkipsWhatCannotBeCutAndSavesTheRest)
{
    const cv::Mat frame = noisePicture({400, 300}, CV_8UC3, 5);
    const std::vector<Outline> outlines{
        {{{50, 200}, {-90, 150}, {-10, 20}, {120, 60}}}, // padded by 10, not by 90
        rectangle(40, 40, 42, 42),                       // smaller than four pixels
        rectangle(20, 20, 220, 120),
        rectangle(20, 20, 220, 120)}; // one stands for two
    CaptureOptions options = mode(MultiGraphCrop, outlines);
    options.documentsLeftOut = 3;
    const CaptureResult result = captureFrame(frame, file("a.tiff"), options);
    EXPECT_THAT(result.files, ElementsAre(file("a_2.tiff"), file("a_3.tiff")));
    EXPECT_THAT(result.note, AllOf(HasSubstr("equal size"), HasSubstr("captured: 1;")));
    EXPECT_THAT(result.note, HasSubstr("were not captured: 3"));
    EXPECT_THAT(result.error, HasSubstr("document 1"));
    EXPECT_THAT(result.error, HasSubstr("document 2"));
    EXPECT_EQ(read(result.path()).size(), cv::Size(200, 100));
}

TEST_F(Capture, PadsADocumentBeyondTheFrameWithBlack)
{
    const cv::Mat frame(200, 300, CV_8UC3, cv::Scalar(10, 20, 250));
    const CaptureOptions options = mode(AutomaticCrop, {rectangle(-40, 20, 120, 140)});
    const cv::Mat page = read(captureFrame(frame, file("edge.png"), options).path());
    ASSERT_EQ(page.size(), cv::Size(160, 120));
    EXPECT_EQ(page.at<cv::Vec3b>(60, 20), cv::Vec3b());
    EXPECT_EQ(page.at<cv::Vec3b>(60, 100), cv::Vec3b(250, 20, 10)); // B,G,R of the R,G,B frame
}

TEST_F(Capture, KeepsTheWholeFrameWithoutCropAndCutsTheManualRectangle)
{
    const cv::Mat frame = noisePicture({333, 251}, CV_8UC3, 9);
    cv::Mat bgr;
    cv::cvtColor(frame, bgr, cv::COLOR_RGB2BGR);
    EXPECT_TRUE(identical(read(captureFrame(frame, file("n.png"), mode(NoCrop)).path()), bgr));

    CaptureOptions options = mode(ManualCrop);
    options.manualRect = {300, -7, 80, 103};
    EXPECT_TRUE(identical(read(captureFrame(frame, file("m.png"), options).path()),
                          bgr(cv::Rect(300, 0, 32, 100))));
    for (const auto &[rect, why] : {std::pair(cv::Rect(340, 0, 80, 100), "outside"),
                                    {cv::Rect(5, 5, 3, 40), "smaller than 4 x 4"}})
    {
        options.manualRect = rect;
        const CaptureResult refused = captureFrame(frame, file("o.png"), options);
        EXPECT_THAT(refused.files, IsEmpty());
        EXPECT_THAT(refused.error, HasSubstr(why));
    }
}

TEST_F(Capture, ReportsWhatItCouldNotWriteAndIgnoresOlderFiles)
{
    const cv::Mat frame = noisePicture({64, 64}, CV_8UC3, 2);
    const QString old = writeFile(path("old.jpg"), "taken before");
    EXPECT_EQ(captureFrame(frame, old.toStdString(), mode(AutomaticCrop)).path(), "");
    EXPECT_EQ(readFile(old), "taken before");
    const CaptureResult unwritable = captureFrame(frame, file("old.jpg/x.jpg"), mode(NoCrop));
    EXPECT_EQ(unwritable.path(), "");
    EXPECT_THAT(unwritable.error, HasSubstr("Not a directory"));
    EXPECT_EQ(captureFrame(cv::Mat(), file("e.jpg"), mode(NoCrop)).path(), "");
}
