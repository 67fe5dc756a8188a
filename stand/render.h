#pragma once

#include "stand/scene.h"

#include <opencv2/core.hpp>

#include <array>
#include <vector>

/// What the camera sees of a scene.
struct RenderedScene
{
    cv::Mat bgr; ///< rows x cols x 3, 8 bits
    /// Corners of each sheet in frame pixels, one entry for each sheet of the scene, in the order
    /// top left, top right, bottom right, bottom left of the sheet as it is read.
    std::vector<std::array<cv::Point2f, 4>> corners;
};

/// Extent of the desk that every frame shows at least, centred, millimetres.
constexpr double kViewWidthMm = 1400.0 / 3;
constexpr double kViewHeightMm = 350;

/// The picture of `scene` as a frame of `size`: perspective, shadows, uneven light, sensor noise.
/// The same arguments give the same picture. Any thread; 8 megapixels take a few tenths of a
/// second.
RenderedScene renderScene(const Scene &scene, cv::Size size);

/// Corners alone, without painting.
std::vector<std::array<cv::Point2f, 4>> sceneCorners(const Scene &scene, cv::Size size);
