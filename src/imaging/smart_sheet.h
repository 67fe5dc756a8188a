#pragma once

#include <opencv2/core/types.hpp>

#include <array>

/// Corners of a sheet seen in perspective, in pixels of the picture it was found in, clockwise as
/// the viewer sees them. Corners may lie outside of the picture.
using Quad = std::array<cv::Point2f, 4>;

/// One sheet found in a picture.
struct SmartSheet
{
    Quad corners;
    float confidence = 0; ///< 0 to 1, about the overlap with the true sheet to be expected
};
