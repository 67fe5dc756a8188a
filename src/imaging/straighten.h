#pragma once

#include "imaging/outline.h"

#include <opencv2/core/mat.hpp>

#include <string>

/// How a document is cut out and turned upright.
struct StraightenGeometry
{
    cv::Rect rect;   ///< bounding box of the outline, frame pixels
    cv::Size size;   ///< of the upright document, pixels
    float angle = 0; ///< degrees for rotateImage; 360 stands for a document that lies straight
};

/// Geometry of the document inside `outline`. A lean up to 45 degrees is turned back; beyond it
/// the document comes out straight but a quarter turn away.
StraightenGeometry straightenGeometry(const Outline &outline);

/// A new picture that holds all of `src` turned by `degree` (clockwise positive), the corners
/// filled with black.
cv::Mat rotateImage(cv::Mat src, float degree);

/// Cuts the document inside `outline` out of `rgb` (rows x cols x 3, R,G,B) and returns it upright
/// in B,G,R order, both sides multiples of four. Parts of the outline beyond the frame come out
/// black. Empty, with the cause in `error`, when the outline cannot be cut. Throws nothing.
cv::Mat cutDocument(const cv::Mat &rgb, const Outline &outline, std::string &error);
