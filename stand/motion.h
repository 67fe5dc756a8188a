#pragma once

#include "stand/scene.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cmath>
#include <functional>

/// Something that moves under the camera for a moment. Its frames are painted before the first is
/// shown, since at 8 megapixels painting is slower than the camera.
struct Motion
{
    /// Paints the frame at `progress` (0 to 1) between the pictures of the scenes before and
    /// after; both have the frame's size.
    using Paint =
        std::function<cv::Mat(const cv::Mat &before, const cv::Mat &after, double progress)>;

    double seconds = 0;
    Paint paint;

    int frameCount(double rate) const
    {
        return std::max(1, static_cast<int>(std::lround(seconds * rate)));
    }
};

/// A hand turns the right page of the first sheet of `book` over to the left in 0.6 s.
Motion turnPage(const Scene &book);

/// A hand passes: seen in a single frame, too short to be taken for a turned page.
Motion passHand();

/// A hand rests on the sheet for most of a second on its way.
Motion passHandSlowly();
