#include "platform/v4l2_controls.h"

#include <QThread>

#include <algorithm>
#include <array>
#include <linux/videodev2.h>
#include <optional>

namespace {

// By CameraControl::Kind.
constexpr std::array<quint32, CameraControl::kKinds> kIds = {
    V4L2_CID_BRIGHTNESS,
    V4L2_CID_CONTRAST,
    V4L2_CID_SATURATION,
    V4L2_CID_SHARPNESS,
    V4L2_CID_POWER_LINE_FREQUENCY,
    V4L2_CID_EXPOSURE_AUTO,
    V4L2_CID_EXPOSURE_ABSOLUTE,
    V4L2_CID_AUTO_WHITE_BALANCE,
    V4L2_CID_WHITE_BALANCE_TEMPERATURE,
    V4L2_CID_FOCUS_AUTO,
    V4L2_CID_FOCUS_ABSOLUTE,
};
constexpr int kMenuMax = 64; // entries; a longer one is broken

std::optional<v4l2_query_ext_ctrl> query(const V4l2Ioctl &ask, quint32 id)
{
    v4l2_query_ext_ctrl answer = {};
    answer.id = id;
    if (ask(VIDIOC_QUERY_EXT_CTRL, &answer) < 0 ||
        (answer.flags & (V4L2_CTRL_FLAG_DISABLED | V4L2_CTRL_FLAG_READ_ONLY)))
        return {};
    return answer;
}

std::optional<int> valueOf(const V4l2Ioctl &ask, quint32 id)
{
    v4l2_control control = {id, 0};
    if (ask(VIDIOC_G_CTRL, &control) < 0)
        return {};
    return control.value;
}

bool setValue(const V4l2Ioctl &ask, quint32 id, int value)
{
    v4l2_control control = {id, value};
    return ask(VIDIOC_S_CTRL, &control) >= 0;
}

QList<CameraControl::Entry> menuOf(const V4l2Ioctl &ask, const v4l2_query_ext_ctrl &answer)
{
    QList<CameraControl::Entry> entries;
    const int last = static_cast<int>(std::min<qint64>(answer.maximum, kMenuMax));
    for (int i = std::max(0, static_cast<int>(answer.minimum)); i <= last; ++i) {
        v4l2_querymenu item = {};
        item.id = answer.id;
        item.index = static_cast<quint32>(i);
        if (ask(VIDIOC_QUERYMENU, &item) >= 0)
            entries.append({i, QString::fromUtf8(reinterpret_cast<const char *>(item.name))});
    }
    return entries;
}

// In a manual exposure and in one by shutter priority the exposure time is the user's.
bool isManualExposure(int value)
{
    return value == V4L2_EXPOSURE_MANUAL || value == V4L2_EXPOSURE_SHUTTER_PRIORITY;
}

// Drivers know four kinds of exposure; a camera takes only those that it offers, usually one or
// two of either sort. Its usual one goes first. Nothing when it lacks this sort.
std::optional<int> exposure(const V4l2Ioctl &ask, bool isManual)
{
    const auto answer = query(ask, V4L2_CID_EXPOSURE_AUTO);
    if (!answer)
        return {};
    const QList<CameraControl::Entry> menu = menuOf(ask, *answer);
    for (const int value : {static_cast<int>(answer->default_value), int(V4L2_EXPOSURE_MANUAL),
                            int(V4L2_EXPOSURE_SHUTTER_PRIORITY),
                            int(V4L2_EXPOSURE_APERTURE_PRIORITY), int(V4L2_EXPOSURE_AUTO)})
    {
        const bool isOffered = std::any_of(
            menu.begin(), menu.end(), [value](const auto &entry) { return entry.value == value; });
        if (isOffered && isManualExposure(value) == isManual)
            return value;
    }
    return {};
}

std::optional<CameraControl> control(const V4l2Ioctl &ask, CameraControl::Kind kind)
{
    const quint32 id = kIds[kind];
    const auto answer = query(ask, id);
    const auto value = answer ? valueOf(ask, id) : std::nullopt;
    if (!value)
        return {};
    CameraControl control;
    control.kind = kind;
    control.value = *value;
    control.defaultValue = static_cast<int>(answer->default_value);
    if (kind == CameraControl::AutoExposure) {
        if (!exposure(ask, true) || !exposure(ask, false))
            return {};
        control.value = !isManualExposure(*value);
        control.defaultValue = !isManualExposure(control.defaultValue);
        control.max = 1;
        return control;
    }
    control.min = static_cast<int>(answer->minimum);
    control.max = static_cast<int>(answer->maximum);
    control.step = std::max(1, static_cast<int>(answer->step));
    if (answer->type == V4L2_CTRL_TYPE_MENU)
        control.menu = menuOf(ask, *answer);
    return control;
}

} // namespace

QList<CameraControl> v4l2Controls(const V4l2Ioctl &ask)
{
    QList<CameraControl> list;
    for (int i = 0; i < CameraControl::kKinds; ++i) {
        if (const auto found = control(ask, static_cast<CameraControl::Kind>(i)))
            list.append(*found);
    }
    return list;
}

bool setV4l2Control(const V4l2Ioctl &ask, CameraControl::Kind kind, int value)
{
    if (kind == CameraControl::AutoExposure) {
        const auto chosen = exposure(ask, value == 0);
        return chosen && setValue(ask, V4L2_CID_EXPOSURE_AUTO, *chosen);
    }
    return setValue(ask, kIds[kind], value);
}

bool canV4l2Focus(const V4l2Ioctl &ask)
{
    return query(ask, V4L2_CID_AUTO_FOCUS_START) || query(ask, V4L2_CID_FOCUS_AUTO);
}

bool focusV4l2Once(const V4l2Ioctl &ask, int settleMs)
{
    const auto wasOn = valueOf(ask, V4L2_CID_FOCUS_AUTO);
    if (query(ask, V4L2_CID_AUTO_FOCUS_START))
        return setValue(ask, V4L2_CID_AUTO_FOCUS_START, 1);
    if (!wasOn)
        return false;
    if (*wasOn && !setValue(ask, V4L2_CID_FOCUS_AUTO, 0))
        return false;
    if (!setValue(ask, V4L2_CID_FOCUS_AUTO, 1))
        return false;
    if (*wasOn)
        return true;
    QThread::msleep(static_cast<unsigned long>(settleMs));
    return setValue(ask, V4L2_CID_FOCUS_AUTO, 0); // stays where it focused
}
