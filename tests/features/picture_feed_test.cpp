#include "features/picture_feed.h"

#include <QtTest>

#include <gtest/gtest.h>

#include <poll.h>
#include <unistd.h>

extern "C" {
#include <libavutil/pixfmt.h>
}

namespace {

CameraPicture rawPicture(cv::Size size)
{
    CameraPicture picture;
    picture.size = size;
    picture.raw = std::make_shared<const std::vector<uint8_t>>(size_t(size.area()) * 2);
    picture.pixelFormat = AV_PIX_FMT_YUYV422;
    picture.arrival = PictureFeed::Clock::now();
    return picture;
}

// Reads until the stream ends; the number of bytes.
size_t readAll(int file)
{
    std::vector<char> buffer(1 << 20);
    size_t bytes = 0;
    pollfd readable = {file, POLLIN, 0};
    while (::poll(&readable, 1, 5000) == 1) {
        const ssize_t count = ::read(file, buffer.data(), buffer.size());
        if (count <= 0)
            return bytes;
        bytes += size_t(count);
    }
    ADD_FAILURE() << "no end";
    return bytes;
}

} // namespace

TEST(PictureFeed, LeavesPicturesOutWhenTheReaderIsSlowAndEndsWithTheRest)
{
    PictureFeed feed(PictureFeed::Clock::now(), 30);
    const cv::Size size(1000, 1000);
    const int count = 100;
    for (int i = 0; i < count; ++i)
        feed.take(rawPicture(size));
    EXPECT_GT(feed.leftOutCount(), count / 2);
    feed.take(rawPicture({640, 480}));
    feed.finish();
    const size_t bytes = readAll(feed.readerEnd());
    EXPECT_GT(feed.writtenCount(), 0);
    EXPECT_LE(size_t(feed.writtenCount()), PictureFeed::kWaitingMax);
    EXPECT_GE(bytes, size_t(feed.writtenCount()) * 2000000);
}

TEST(PictureFeed, NeitherADeadNorAStuckReaderHoldsItUp)
{
    {
        PictureFeed stuck(PictureFeed::Clock::now(), 30);
        stuck.take(rawPicture({2000, 2000}));
    }
    PictureFeed feed(PictureFeed::Clock::now(), 30);
    feed.closeReader();
    feed.take(rawPicture({640, 480}));
    EXPECT_EQ(feed.writtenCount(), 0);
}

TEST(PictureFeed, TellsThatRawPicturesHaveAnotherSize)
{
    PictureFeed feed(PictureFeed::Clock::now(), 30);
    feed.take(rawPicture({64, 48}));
    feed.take(rawPicture({48, 64}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return feed.isFormatChanged(); }));
    EXPECT_EQ(feed.writtenCount(), 1);
}
