#pragma once

#include "platform/platform.h"

#include <functional>
#include <optional>

/// A capture device of the kernel's video drivers.
struct V4l2Camera
{
    CameraInfo info;
    QString node;   ///< e.g. "/dev/video0"
    QString folder; ///< canonical path of the node's folder below /sys
};

/// Answers the `device_caps` of a node by its path and its folder below /sys; nothing when the
/// node cannot be asked.
using V4l2Capabilities =
    std::function<std::optional<quint32>(const QString &node, const QString &folder)>;

/// The cameras that `sysfs` (usually "/sys") lists, one for each capture function, in the order of
/// the ports: the kernel's node numbers follow the order of plugging. A unique ID names the port
/// and ends in the USB parent's vendor and product, or in zeros. Of a node that cannot be asked
/// for its capabilities the driver's numbering tells: pictures come from a function's first node.
QList<V4l2Camera> v4l2Cameras(const QString &sysfs, const V4l2Capabilities &capabilities);
