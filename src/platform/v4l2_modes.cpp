#include "platform/v4l2_modes.h"

#include <algorithm>
#include <array>
#include <linux/videodev2.h>

namespace {

constexpr quint32 kEntriesMax = 256; // a driver that never ends its list is broken

// Pixel formats by preference: pictures that are small on the wire first, then those with colour.
struct PixelFormat
{
    quint32 code;
    const char *name;
};
constexpr std::array<PixelFormat, 9> kFormats = {{
    {V4L2_PIX_FMT_MJPEG, "mjpeg"},
    {V4L2_PIX_FMT_JPEG, "mjpeg"},
    {V4L2_PIX_FMT_YUYV, "yuyv422"},
    {V4L2_PIX_FMT_UYVY, "uyvy422"},
    {V4L2_PIX_FMT_NV12, "nv12"},
    {V4L2_PIX_FMT_YUV420, "yuv420p"},
    {V4L2_PIX_FMT_RGB24, "rgb24"},
    {V4L2_PIX_FMT_BGR24, "bgr24"},
    {V4L2_PIX_FMT_GREY, "gray"},
}};

// Sizes that sensors and screens have, for drivers that scale to any.
constexpr std::array<std::pair<quint32, quint32>, 12> kUsualSizes = {{
    {640, 480},
    {800, 600},
    {1024, 768},
    {1280, 720},
    {1280, 960},
    {1600, 1200},
    {1920, 1080},
    {2048, 1536},
    {2592, 1944},
    {3264, 2448},
    {3840, 2160},
    {4208, 3120},
}};

bool isInSteps(quint32 value, quint32 min, quint32 max, quint32 step)
{
    return value >= min && value <= max && (value - min) % std::max(step, 1U) == 0;
}

class Lister
{
public:
    explicit Lister(const V4l2Ioctl &ask)
        : m_ask(ask)
    {
    }

    void listFormat(const PixelFormat &format)
    {
        for (quint32 i = 0; i < kEntriesMax; ++i) {
            v4l2_frmsizeenum size = {};
            size.index = i;
            size.pixel_format = format.code;
            if (m_ask(VIDIOC_ENUM_FRAMESIZES, &size) < 0)
                return;
            if (size.type == V4L2_FRMSIZE_TYPE_DISCRETE) {
                listSize(format, size.discrete.width, size.discrete.height);
                continue;
            }
            const v4l2_frmsize_stepwise &range = size.stepwise;
            for (const auto &[width, height] : kUsualSizes) {
                if (isInSteps(width, range.min_width, range.max_width, range.step_width) &&
                    isInSteps(height, range.min_height, range.max_height, range.step_height))
                    listSize(format, width, height);
            }
            return; // a range is the only entry of its format
        }
    }

    QList<V4l2Mode> modes;

private:
    void listSize(const PixelFormat &format, quint32 width, quint32 height)
    {
        QList<v4l2_fract> intervals;
        for (quint32 i = 0; i < kEntriesMax; ++i) {
            v4l2_frmivalenum entry = {};
            entry.index = i;
            entry.pixel_format = format.code;
            entry.width = width;
            entry.height = height;
            if (m_ask(VIDIOC_ENUM_FRAMEINTERVALS, &entry) < 0)
                break;
            const bool isDiscrete = entry.type == V4L2_FRMIVAL_TYPE_DISCRETE;
            const v4l2_fract interval = isDiscrete ? entry.discrete : entry.stepwise.min;
            if (interval.numerator > 0 && interval.denominator > 0)
                intervals.append(interval);
            if (!isDiscrete)
                break;
        }
        std::stable_sort(intervals.begin(), intervals.end(), [](auto &a, auto &b) {
            return quint64(a.numerator) * b.denominator < quint64(b.numerator) * a.denominator;
        });
        if (intervals.isEmpty()) // the driver keeps its rates to itself
            intervals.append({1, 30});
        const QString name = QString::fromLatin1(format.name);
        for (const v4l2_fract &interval : intervals) {
            const double rate = double(interval.denominator) / interval.numerator;
            modes.append(
                {{QSize(int(width), int(height)), rate},
                 name,
                 QStringLiteral("%1/%2").arg(interval.denominator).arg(interval.numerator)});
        }
    }

    const V4l2Ioctl &m_ask;
};

} // namespace

QList<V4l2Mode> v4l2Modes(const V4l2Ioctl &ask)
{
    QList<quint32> offered;
    for (quint32 i = 0; i < kEntriesMax; ++i) {
        v4l2_fmtdesc format = {};
        format.index = i;
        format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        if (ask(VIDIOC_ENUM_FMT, &format) < 0)
            break;
        offered.append(format.pixelformat);
    }
    Lister lister(ask);
    for (const PixelFormat &format : kFormats) {
        if (offered.contains(format.code))
            lister.listFormat(format);
    }
    return lister.modes;
}
