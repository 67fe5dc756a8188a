#pragma once

#include <opencv2/core/mat.hpp>

/// Reduction of large frames before analysis, to a quarter of each side.
constexpr int kQuarter = 4;

/// cv::resize with INTER_AREA to (cols / 4) x (rows / 4), the same values. `rgb`: 8 bits, three
/// channels, both sides 4 or more.
void shrinkToQuarterByArea(const cv::Mat &rgb, cv::Mat &small);

/// The same in brightness: what cv::cvtColor with COLOR_RGB2GRAY makes of it.
void grayQuarterByArea(const cv::Mat &rgb, cv::Mat &gray);

/// cv::resize with INTER_LINEAR to (cols / 4) x (rows / 4), the same values.
void shrinkToQuarterBilinear(const cv::Mat &rgb, cv::Mat &small);
