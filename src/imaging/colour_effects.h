#pragma once

#include <opencv2/core/mat.hpp>

/// Colour effects. Pictures are rows x cols x 3, 8 bits, B,G,R, and are changed in place; they
/// need not be continuous.

/// Writes trunc(0.299 b + 0.587 g + 0.114 r), computed in double precision, to all three bytes.
void grayInPlace(cv::Mat &image);

/// Gray as above, then 255 where the gray value is above Otsu's threshold and 0 elsewhere.
void binarizeInPlace(cv::Mat &image);

/// Threshold 0..255 by Otsu's method over `width` x `height` gray bytes without row padding.
int otsu(const unsigned char *gray, int width, int height);

/// Document optimization: even white paper, dark sharp strokes, whatever the light.
void FN_DeleteBackcolor(cv::Mat image);
