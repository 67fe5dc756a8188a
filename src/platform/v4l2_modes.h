#pragma once

#include "platform/platform.h"

#include <functional>

/// One mode with what opening it needs besides.
struct V4l2Mode
{
    CameraMode mode;
    QString format; ///< libavformat's name of the pixel format, e.g. "mjpeg" or "yuyv422"
    QString rate;   ///< exact rate as a fraction, e.g. "30000/1001"
};

/// Asks the driver as ioctl() does: 0, or -1 when it refuses.
using V4l2Ioctl = std::function<int(unsigned long request, void *argument)>;

/// Modes of a capture node: JPEG before raw formats, in each format the sizes in the driver's
/// order, the highest rate of a size first. Of a range of sizes the usual ones within it, of a
/// range of rates its highest. Formats that nobody here can decode are left out.
QList<V4l2Mode> v4l2Modes(const V4l2Ioctl &ask);
