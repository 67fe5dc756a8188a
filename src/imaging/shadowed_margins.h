#pragma once

#include <opencv2/core/mat.hpp>

#include <vector>

/// Finds the margins around a sheet's outline that are no desk but the sheet itself, lying in a
/// shadow. There are four, one on each side of the outline, and each is judged as a whole: paper in
/// a shadow is not too dark, keeps the colour of the lit paper, and either carries print or goes
/// over into the lit part without an edge.
///
/// `picture`: rows x cols x 3, 8 bits, B,G,R, a quarter of each side of what the camera saw (the
/// measures are for that size); `outline`: convex, in its pixels. Returns rows x cols bytes that
/// are not zero in such margins; empty when there is none.
cv::Mat shadowedMargins(const cv::Mat &picture, const std::vector<cv::Point> &outline);
