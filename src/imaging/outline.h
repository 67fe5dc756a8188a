#pragma once

#include <opencv2/core/types.hpp>

#include <array>

/// Outline of one document: corner points P0..P3 of its minimum-area rectangle in frame pixels,
/// in the order that `cv::RotatedRect::points` gives for angles in [-90, 0): P0 is the lowest
/// corner, then clockwise. Corners may lie outside the frame.
using Outline = std::array<cv::Point, 4>;
