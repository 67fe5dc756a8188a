#include "app/state.h"
#include "imaging/document_finder.h"
#include "imaging/frame_comparer.h"
#include "support/pictures.h"
#include "support/sheet_images.h"
#include "video/jpeg_decoder.h"
#include "video/preview_outlines.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace {

JpegPicture jpegOf(const cv::Mat &rgb, int quality = 90)
{
    JpegPicture jpeg;
    jpeg.size = rgb.size();
    cv::Mat bgr;
    cv::cvtColor(rgb, bgr, cv::COLOR_RGB2BGR);
    cv::imencode(".jpg", bgr, jpeg.bytes, {cv::IMWRITE_JPEG_QUALITY, quality});
    return jpeg;
}

cv::Mat page(cv::Size size)
{
    sheets::Scene scene = sheets::desk(size);
    sheets::lay(scene, sheets::textPage({size.width * 2 / 5, size.height * 2 / 3}),
                {float(size.width) / 2, float(size.height) / 2}, 11);
    return scene.picture;
}

cv::Mat turned(const cv::Mat &picture, int angle)
{
    cv::Mat out = picture.clone();
    if (angle != 0)
        cv::rotate(picture, out, angle / 90 - 1); // in the order of cv::RotateFlags
    return out;
}

cv::Mat decoded(const JpegPicture &jpeg, const JpegDecoding &how)
{
    cv::Mat rgb(decodedSize(jpeg.size, how), CV_8UC3);
    return JpegDecoder().decode(jpeg, how, rgb) ? rgb : cv::Mat();
}

// Without its Huffman tables, as some cameras send their pictures.
JpegPicture withoutTables(JpegPicture jpeg)
{
    std::vector<uint8_t> &bytes = jpeg.bytes;
    for (size_t at = 2; at + 4 < bytes.size() && bytes[at + 1] != 0xDA;) {
        const size_t length = 2 + bytes[at + 2] * 256u + bytes[at + 3];
        if (bytes[at + 1] == 0xC4)
            bytes.erase(bytes.begin() + long(at), bytes.begin() + long(at + length));
        else
            at += length;
    }
    return jpeg;
}

TEST(JpegDecoder, DecodesAsThePlainLibraryDoesHoweverTheCameraTurnsIt)
{
    for (const cv::Size size : {cv::Size(640, 480), cv::Size(333, 211), cv::Size(16, 130)}) {
        const JpegPicture jpeg = jpegOf(page(size));
        cv::Mat expected = cv::imdecode(jpeg.bytes, cv::IMREAD_COLOR);
        cv::cvtColor(expected, expected, cv::COLOR_BGR2RGB);
        for (const int angle : {0, 90, 180, 270}) {
            EXPECT_TRUE(identical(decodedWhole(jpeg, angle), turned(expected, angle)))
                << size << ' ' << angle;
            EXPECT_TRUE(
                identical(decodedWhole(withoutTables(jpeg), angle), turned(expected, angle)))
                << size << " without tables " << angle;
        }
        for (const int reduction : {2, 4, 8}) {
            const JpegDecoding how{reduction, 0, false};
            const cv::Mat reduced = decoded(jpeg, how);
            ASSERT_EQ(reduced.size(), decodedSize(size, how)) << size << ' ' << reduction;
            cv::Mat mean;
            cv::resize(expected, mean, reduced.size(), 0, 0, cv::INTER_AREA);
            EXPECT_LT(cv::norm(reduced, mean, cv::NORM_L1) / double(mean.total()) / 3, 8);
            EXPECT_TRUE(identical(decoded(jpeg, {reduction, 90, false}), turned(reduced, 90)));
        }
    }
}

TEST(JpegDecoder, RefusesEveryPictureThatIsNotWhole)
{
    const JpegPicture whole = jpegOf(page({640, 480}));
    const auto isTaken = [](const JpegPicture &jpeg, int reduction) {
        return !decoded(jpeg, {reduction, 0, false}).empty();
    };
    for (const int reduction : {1, 2, 4}) {
        ASSERT_TRUE(isTaken(whole, reduction));
        for (const size_t percent : {10u, 50u, 99u}) {
            JpegPicture cut = whole;
            cut.bytes.resize(cut.bytes.size() * percent / 100);
            EXPECT_FALSE(isTaken(cut, reduction)) << percent;
        }
        JpegPicture torn = whole; // the end of another picture
        torn.bytes.resize(torn.bytes.size() / 2);
        const std::vector<uint8_t> other = jpegOf(page({480, 640})).bytes;
        torn.bytes.insert(torn.bytes.end(), other.begin() + long(other.size() / 2), other.end());
        EXPECT_FALSE(isTaken(torn, reduction));
    }
    JpegPicture filled = whole; // cameras may fill up before the end marker
    filled.bytes.insert(filled.bytes.end() - 2, 6, 0);
    EXPECT_TRUE(isTaken(filled, 4));
    JpegPicture stretched = whole;
    stretched.bytes.insert(stretched.bytes.end() - 2, 600, 0x5A);
    EXPECT_FALSE(isTaken(stretched, 4));

    JpegDecoder decoder;
    EXPECT_TRUE(decoder.sizeOf({}).empty());
    EXPECT_TRUE(decoder.sizeOf({'G', 'I', 'F'}).empty());
    EXPECT_TRUE(decodedWhole({{0xFF, 0xD8, 0xFF, 0xD9}, {8, 8}}, 0).empty());
    cv::Mat wrongSize(480, 641, CV_8UC3);
    EXPECT_FALSE(decoder.decode(whole, {}, wrongSize));
    cv::Mat right(480, 640, CV_8UC3);
    EXPECT_TRUE(decoder.decode(whole, {}, right)) << "a refusal must not spoil the next picture";
}

// What is drawn over the preview must be what a capture will cut; also where something beside the
// sheet lies so near the threshold that single gray levels decide whether it belongs to it.
TEST(JpegDecoder, OutlinesOfAReducedPictureAreThoseOfTheWhole)
{
    int far = 0, farWithoutQuestion = 0, corners = 0;
    for (int lean = -40; lean <= 40; lean += 5) {
        sheets::Scene scene =
            sheets::desk(lean % 2 != 0 ? cv::Size(1634, 1226) : cv::Size(1632, 1224));
        sheets::lay(scene, sheets::textPage({560, 800}), {800, 600}, lean);
        cv::Mat strip = scene.picture(cv::Rect(100, 500, 1400, 60));
        cv::randn(strip, cv::Scalar::all(100 + 2 * lean), cv::Scalar::all(12));
        const JpegPicture jpeg = jpegOf(scene.picture, 80);
        const auto whole = DocumentFinder().find(decoded(jpeg, {}), AutomaticCrop);
        ASSERT_TRUE(whole);
        for (const int reduction : {2, 4}) {
            Frame frame;
            frame.pixels = decoded(jpeg, {reduction, 0, false});
            frame.reduction = reduction;
            frame.width = jpeg.size.width;
            frame.height = jpeg.size.height;
            frame.compressed = std::make_shared<JpegPicture>(jpeg);
            const auto found = PreviewOutlines().find(frame, AutomaticCrop);
            const auto plain =
                DocumentFinder().find({frame.pixels, jpeg.size, reduction}, AutomaticCrop);
            ASSERT_TRUE(found && plain);
            for (size_t i = 0; i < 4; ++i, ++corners) {
                far += cv::norm(found->outlines[0][i] - whole->outlines[0][i]) > 4;
                farWithoutQuestion += cv::norm(plain->outlines[0][i] - whole->outlines[0][i]) > 4;
            }
        }
    }
    EXPECT_LE(far * 100, corners) << far << " of " << corners;
    EXPECT_GT(farWithoutQuestion * 100, corners) << "these scenes ask for nothing";
}

// A quick page change at a few sizes: reduced samples decide as the whole ones do.
TEST(JpegDecoder, PageTurningDecidesTheSameFromReducedPictures)
{
    for (const cv::Size size : {cv::Size(1920, 1080), cv::Size(3264, 2448)}) {
        const JpegPicture pages[] = {jpegOf(page(size)), jpegOf(turned(page(size), 180)),
                                     jpegOf(cv::Mat(size, CV_8UC3, cv::Scalar::all(20)))};
        FrameComparer whole, reduced;
        for (const int shown : {0, 0, 1, 1, 0, 2, 2, 0}) {
            const cv::Mat all = decoded(pages[shown], {1, 0, false});
            const int reduction = size.width > 2000 ? 4 : 2;
            FrameSample ofAll(all);
            FrameSample ofPart({decoded(pages[shown], {reduction, 0, false}), size, reduction});
            EXPECT_EQ(CheckIsHavePaper(ofAll), CheckIsHavePaper(ofPart)) << shown;
            EXPECT_EQ(whole.CompareBuf(ofAll, 25, 90), reduced.CompareBuf(ofPart, 25, 90))
                << size << ' ' << shown;
        }
    }
}

} // namespace
