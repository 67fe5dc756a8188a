#include "platform/v4l2_controls.h"

#include <gtest/gtest.h>

#include <linux/videodev2.h>
#include <map>
#include <set>

namespace {

// A driver's controls, answered as the kernel does.
struct Driver
{
    struct Control
    {
        quint32 type;
        int min, max, step, usual, value;
        std::set<int> menu = {};
        quint32 flags = 0;
    };
    std::map<quint32, Control> controls;
    std::vector<std::pair<quint32, int>> told;

    V4l2Ioctl ask()
    {
        return [this](unsigned long request, void *argument) { return answer(request, argument); };
    }
    int answer(unsigned long request, void *argument)
    {
        const auto found = controls.find(*static_cast<quint32 *>(argument)); // its ID comes first
        if (found == controls.end())
            return -1;
        Control &control = found->second;
        if (request == VIDIOC_QUERY_EXT_CTRL) {
            auto *query = static_cast<v4l2_query_ext_ctrl *>(argument);
            query->type = control.type;
            query->minimum = control.min;
            query->maximum = control.max;
            query->step = static_cast<quint64>(control.step);
            query->default_value = control.usual;
            query->flags = control.flags;
        } else if (request == VIDIOC_QUERYMENU) {
            return control.menu.count(int(static_cast<v4l2_querymenu *>(argument)->index)) ? 0 : -1;
        } else if (request == VIDIOC_G_CTRL) {
            static_cast<v4l2_control *>(argument)->value = control.value;
        } else {
            const int value = static_cast<v4l2_control *>(argument)->value;
            if (!control.menu.empty() && control.menu.count(value) == 0)
                return -1;
            control.value = value;
            told.emplace_back(found->first, value);
        }
        return 0;
    }
};

} // namespace

TEST(V4l2Controls, AutomaticExposureIsWhateverTheCameraOffersBesideManual)
{
    Driver driver{
        {{V4L2_CID_BRIGHTNESS, {V4L2_CTRL_TYPE_INTEGER, -64, 64, 2, 0, 10}},
         {V4L2_CID_SHARPNESS, {V4L2_CTRL_TYPE_INTEGER, 0, 9, 1, 0, 0, {}, V4L2_CTRL_FLAG_DISABLED}},
         {V4L2_CID_POWER_LINE_FREQUENCY, {V4L2_CTRL_TYPE_MENU, 0, 2, 1, 2, 1, {0, 1, 2}}},
         {V4L2_CID_EXPOSURE_AUTO, {V4L2_CTRL_TYPE_MENU, 0, 3, 1, 3, 1, {1, 3}}}},
        {}};
    const QList<CameraControl> list = v4l2Controls(driver.ask());
    ASSERT_EQ(list.size(), 3);
    EXPECT_EQ(list[0].min, -64);
    EXPECT_EQ(list[0].step, 2);
    EXPECT_EQ(list[0].value, 10);
    EXPECT_EQ(list[1].menu.size(), 3);
    EXPECT_EQ(list[2].kind, CameraControl::AutoExposure);
    EXPECT_EQ(list[2].value, 0);
    EXPECT_EQ(list[2].defaultValue, 1);

    EXPECT_TRUE(setV4l2Control(driver.ask(), CameraControl::AutoExposure, 1));
    EXPECT_TRUE(setV4l2Control(driver.ask(), CameraControl::AutoExposure, 0));
    EXPECT_FALSE(setV4l2Control(driver.ask(), CameraControl::Focus, 5));
    const std::vector<std::pair<quint32, int>> expected{
        {V4L2_CID_EXPOSURE_AUTO, V4L2_EXPOSURE_APERTURE_PRIORITY},
        {V4L2_CID_EXPOSURE_AUTO, V4L2_EXPOSURE_MANUAL}};
    EXPECT_EQ(driver.told, expected);

    driver.controls[V4L2_CID_EXPOSURE_AUTO].menu = {0, 2}; // the shutter's time is set by hand
    EXPECT_TRUE(setV4l2Control(driver.ask(), CameraControl::AutoExposure, 0));
    EXPECT_EQ(driver.told.back().second, V4L2_EXPOSURE_SHUTTER_PRIORITY);
    EXPECT_EQ(v4l2Controls(driver.ask())[2].value, 0);
}

TEST(V4l2Controls, FocusOnceLeavesTheAutofocusAsItWas)
{
    Driver driver;
    EXPECT_FALSE(canV4l2Focus(driver.ask()));
    EXPECT_FALSE(focusV4l2Once(driver.ask(), 1));
    Driver::Control &focus = driver.controls[V4L2_CID_FOCUS_AUTO];
    for (const int before : {0, 1}) {
        focus.value = before;
        driver.told.clear();
        EXPECT_TRUE(canV4l2Focus(driver.ask()));
        EXPECT_TRUE(focusV4l2Once(driver.ask(), 1));
        EXPECT_EQ(driver.told.size(), 2U);
        EXPECT_EQ(focus.value, before);
    }
}
