#include "imaging/large_pages.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <cstdint>

TEST(LargePages, PicturesOfAnySizeAndShapeKeepTheirPixels)
{
    useLargePagesForPictures();
    for (const cv::Size size : {cv::Size(7, 5), cv::Size(3264, 2448), cv::Size(2449, 3263)}) {
        cv::Mat picture(size, CV_8UC3);
        cv::randu(picture, 0, 256);
        const cv::Mat copy = picture.clone();
        const cv::Mat part = copy(cv::Rect(1, 1, 3, 2)).clone();
        EXPECT_TRUE(copy.isContinuous());
        EXPECT_EQ(copy.step1(), static_cast<size_t>(3 * size.width));
        EXPECT_EQ(cv::norm(picture, copy, cv::NORM_INF), 0);
        EXPECT_EQ(cv::norm(picture(cv::Rect(1, 1, 3, 2)), part, cv::NORM_INF), 0);
        picture.create(size.width, size.height, CV_8UC3);
        picture.row(picture.rows - 1).setTo(cv::Scalar::all(9));
#ifdef __linux__
        const bool large = size.area() > 1000;
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(picture.data) % (2 << 20) == 0, large);
#endif
    }
}
