#pragma once

#include <opencv2/core/mat.hpp>

/// dst = 255 (src / 255)^gamma, rounded, on every byte. `dst` may be `src`.
void GammaCorrection(cv::Mat &src, cv::Mat &dst, float gamma);

/// Whitens the margin between the picture's border and the sheet, in place. `image`: rows x cols x
/// 3, 8 bits, B,G,R. Leaves a picture without a sheet of more than 30000 pixels as it is. Nothing
/// inside the convex hull of the sheet's bright parts changes, so that dark print that reaches the
/// sheet's edge stays, and no margin that is paper in a shadow (see shadowed_margins.h).
void FN_DeleteBlackEdge(cv::Mat image);

/// The same for document optimization: whitens in `image` (8 bits, one or three channels), in
/// place, the margin around the sheet seen in `picture` (the same size, B,G,R). The sheet is looked
/// for in the picture because thresholding leaves only a black seam of a wide margin.
void FillBlackEdgeToWhite(cv::Mat image, const cv::Mat &picture);
