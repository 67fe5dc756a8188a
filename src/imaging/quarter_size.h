#pragma once

#include "imaging/reduced_picture.h"

/// Reduction of large frames before analysis, to a quarter of each side.
constexpr int kQuarter = 4;

/// cv::resize with INTER_AREA to (cols / 4) x (rows / 4), the same values. `rgb`: 8 bits, three
/// channels, both sides 4 or more.
void shrinkToQuarterByArea(const cv::Mat &rgb, cv::Mat &small);

/// The same in brightness: what cv::cvtColor with COLOR_RGB2GRAY makes of it. A picture that is
/// reduced already is only reduced further, by mean values too.
void grayQuarterByArea(const ReducedPicture &picture, cv::Mat &gray);

/// cv::resize with INTER_LINEAR to (cols / 4) x (rows / 4), the same values; mean values of a
/// picture that is reduced already.
void shrinkToQuarterBilinear(const ReducedPicture &picture, cv::Mat &small);
