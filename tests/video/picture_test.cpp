#include "support/pictures.h"
#include "video/frame_pool.h"
#include "video/picture_converter.h"
#include "video/rotate.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <optional>

extern "C" {
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

namespace {

cv::Mat turned(const cv::Mat &picture, int angle)
{
    cv::Mat out = picture.clone();
    if (angle != 0)
        cv::rotate(picture, out, angle / 90 - 1); // in the order of cv::RotateFlags
    return out;
}

TEST(Rotate, MovesEveryPixelToItsPlaceAndTouchesNothingElse)
{
    using Rotation = void (*)(unsigned char *, const unsigned char *, int, int);
    const std::pair<Rotation, int> rotations[] = {
        {NoMirrorRotate90, 90}, {NoMirrorRotate180, 180}, {NoMirrorRotate270, 270}};
    for (const cv::Size size :
         {cv::Size(1, 1), cv::Size(1, 5), cv::Size(5, 1), cv::Size(17, 66), cv::Size(131, 64)})
    {
        // A copy in a buffer of exactly its size: reading past either end is a memory error.
        const cv::Mat picture = noisePicture(size, CV_8UC3, 7);
        const std::vector<unsigned char> exact(picture.datastart, picture.dataend);
        for (const auto &[rotate, angle] : rotations) {
            std::vector<unsigned char> out(exact.size() + 8, 0xA5);
            rotate(out.data() + 4, exact.data(), size.width, size.height);
            const cv::Mat expected = turned(picture, angle);
            EXPECT_TRUE(std::equal(expected.datastart, expected.dataend, out.begin() + 4))
                << size << ' ' << angle;
            EXPECT_TRUE(out[3] == 0xA5 && out[out.size() - 4] == 0xA5) << size << ' ' << angle;
        }
    }
    unsigned char one[3] = {1, 2, 3}, other[3] = {4, 5, 6};
    for (const auto &[rotate, angle] : rotations) {
        rotate(nullptr, one, 1, 1);
        rotate(other, nullptr, 1, 1);
        rotate(other, one, 0, 1);
        EXPECT_EQ(other[0], 4) << angle;
    }
}

// Strips, spare columns and turning must give what one plain conversion gives, for the formats
// that cameras and decoders deliver.
TEST(Converter, GivesTheSameAsAConversionOfTheWhole)
{
    const AVPixelFormat formats[] = {AV_PIX_FMT_YUVJ422P, AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUV420P,
                                     AV_PIX_FMT_NV12,     AV_PIX_FMT_UYVY422,  AV_PIX_FMT_GRAY8,
                                     AV_PIX_FMT_BGR0};
    const cv::Size sizes[] = {{64, 100}, {102, 70}, {96, 34}};
    PictureConverter converter;
    for (size_t i = 0; i < 21; ++i) {
        const AVPixelFormat format = formats[i / 3];
        const cv::Size size = sizes[i % 3];
        AVFrame *picture = av_frame_alloc();
        picture->width = size.width;
        picture->height = size.height;
        picture->format = format;
        ASSERT_EQ(av_frame_get_buffer(picture, 0), 0);
        for (const AVBufferRef *plane : picture->buf) {
            if (plane)
                cv::randu(cv::Mat(1, static_cast<int>(plane->size), CV_8U, plane->data), 0, 256);
        }

        const int slack = 32; // for converters that work in steps of several columns
        cv::Mat whole(size.height, size.width + slack, CV_8UC3);
        SwsContext *plain =
            sws_getContext(size.width, size.height, format, size.width, size.height,
                           AV_PIX_FMT_RGB24, SWS_BICUBIC, nullptr, nullptr, nullptr);
        uint8_t *wholeRows[] = {whole.data};
        const int wholeStride[] = {static_cast<int>(whole.step)};
        sws_scale(plain, picture->data, picture->linesize, 0, size.height, wholeRows, wholeStride);
        sws_freeContext(plain);
        const cv::Mat expected = whole.colRange(0, size.width).clone();

        for (const int angle : {0, 90, 180, 270}) {
            cv::Mat pixels(turned(expected, angle).size(), CV_8UC3);
            ASSERT_TRUE(converter.convert(*picture, pixels, angle));
            EXPECT_TRUE(identical(pixels, turned(expected, angle)))
                << format << ' ' << size << ' ' << angle;
        }
        cv::Mat wrongSize(size.height + 1, size.width, CV_8UC3);
        EXPECT_FALSE(converter.convert(*picture, wrongSize, 0));
        av_frame_free(&picture);
    }
}

TEST(Pool, ReusesBuffersThatNobodyReadsAndMayGoBeforeItsFrames)
{
    std::optional<FramePool> owner(std::in_place, 2, 2);
    FramePool &pool = *owner;
    std::shared_ptr<Frame> first = pool.acquire(64, 48);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->pixels.size(), cv::Size(64, 48));
    const unsigned char *buffer = first->pixels.data;
    first.reset();
    first = pool.acquire(64, 48);
    EXPECT_EQ(first->pixels.data, buffer);

    const std::shared_ptr<Frame> second = pool.acquire(64, 48);
    EXPECT_NE(second->pixels.data, buffer);
    EXPECT_FALSE(pool.acquire(64, 48)) << "all are out";

    const cv::Mat kept = first->pixels; // a reader who lets go of the frame too early
    first.reset();
    first = pool.acquire(64, 48);
    EXPECT_NE(first->pixels.data, kept.data);

    first.reset();
    first = pool.acquire(48, 64);
    EXPECT_EQ(first->pixels.size(), cv::Size(48, 64));
    EXPECT_FALSE(pool.acquire(48, 64));
    owner.reset();
    first->pixels.setTo(cv::Scalar::all(9));
}

} // namespace
