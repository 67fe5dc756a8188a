#include "platform/v4l2_modes.h"

#include <gtest/gtest.h>

#include <linux/videodev2.h>
#include <vector>

namespace {

// A driver's tables, answered as the kernel does.
struct Driver
{
    struct Size
    {
        quint32 type, width, height; // of a range the largest
        std::vector<v4l2_fract> intervals;
        quint32 intervalType = V4L2_FRMIVAL_TYPE_DISCRETE;
    };
    std::vector<std::pair<quint32, std::vector<Size>>> formats;

    int answer(unsigned long request, void *argument) const
    {
        if (request == VIDIOC_ENUM_FMT) {
            auto *format = static_cast<v4l2_fmtdesc *>(argument);
            if (format->index >= formats.size())
                return -1;
            format->pixelformat = formats[format->index].first;
        } else if (request == VIDIOC_ENUM_FRAMESIZES) {
            auto *entry = static_cast<v4l2_frmsizeenum *>(argument);
            const auto *sizes = sizesOf(entry->pixel_format);
            if (!sizes || entry->index >= sizes->size())
                return -1;
            const Size &size = (*sizes)[entry->index];
            entry->type = size.type;
            if (size.type == V4L2_FRMSIZE_TYPE_DISCRETE)
                entry->discrete = {size.width, size.height};
            else
                entry->stepwise = {
                    320, size.width,  size.type == V4L2_FRMSIZE_TYPE_STEPWISE ? 320U : 1U,
                    180, size.height, 1};
        } else {
            auto *entry = static_cast<v4l2_frmivalenum *>(argument);
            for (const Size &size : *sizesOf(entry->pixel_format)) {
                const bool isRange = size.type != V4L2_FRMSIZE_TYPE_DISCRETE;
                if (!isRange && (size.width != entry->width || size.height != entry->height))
                    continue;
                if (entry->index >= size.intervals.size())
                    return -1;
                entry->type = size.intervalType;
                if (entry->type == V4L2_FRMIVAL_TYPE_DISCRETE)
                    entry->discrete = size.intervals[entry->index];
                else
                    entry->stepwise = {size.intervals[0], {1, 1}, {1, 1}};
                return 0;
            }
            return -1;
        }
        return 0;
    }
    const std::vector<Size> *sizesOf(quint32 code) const
    {
        for (const auto &format : formats) {
            if (format.first == code)
                return &format.second;
        }
        return nullptr;
    }
    QStringList list() const
    {
        QStringList lines;
        for (const V4l2Mode &mode : v4l2Modes([this](unsigned long request, void *argument) {
                 return answer(request, argument);
             }))
            lines << QStringLiteral("%1 %2x%3 %4")
                         .arg(mode.format)
                         .arg(mode.mode.size.width())
                         .arg(mode.mode.size.height())
                         .arg(mode.rate);
        return lines;
    }
};

} // namespace

TEST(V4l2Modes, JpegBeforeRawAndTheHighestRateFirst)
{
    const Driver driver{
        {{V4L2_PIX_FMT_YUYV, {{1, 640, 480, {{1, 30}}}}},
         {V4L2_PIX_FMT_H264, {{1, 1920, 1080, {{1, 30}}}}}, // not decoded here
         {V4L2_PIX_FMT_MJPEG, {{1, 640, 480, {{1, 15}, {1001, 30000}}}, {1, 3264, 2448, {}}}}}};
    const QStringList expected{"mjpeg 640x480 30000/1001", "mjpeg 640x480 15/1",
                               "mjpeg 3264x2448 30/1", "yuyv422 640x480 30/1"};
    EXPECT_EQ(driver.list(), expected);
}

TEST(V4l2Modes, OfARangeTheUsualSizesThatTheStepsReach)
{
    Driver driver{
        {{V4L2_PIX_FMT_GREY,
          {{V4L2_FRMSIZE_TYPE_STEPWISE, 1920, 1080, {{1, 60}}, V4L2_FRMIVAL_TYPE_CONTINUOUS}}}}};
    const QStringList stepped{"gray 640x480 60/1", "gray 1280x720 60/1", "gray 1280x960 60/1",
                              "gray 1920x1080 60/1"};
    EXPECT_EQ(driver.list(), stepped);
    driver.formats[0].second[0].type = V4L2_FRMSIZE_TYPE_CONTINUOUS;
    EXPECT_EQ(driver.list().size(), 6); // 800x600 and 1024x768 as well
}
