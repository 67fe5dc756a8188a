#pragma once

#include "imaging/save_options.h"

#include <opencv2/core/mat.hpp>

#include <string>

/// Writes a picture of the assist camera (8 bits, B,G,R) to `path` (UTF-8, the ending is
/// the format) with the colour mode and JPEG quality of `save`: gray, or
/// black and white by the local mean; every other mode keeps the colours. No cropping, no
/// document optimization. The file appears whole or not at all.
/// Returns the cause of a failure, which is also logged; empty on success. Any thread.
std::string SaveCamTwoImage(std::string path, cv::Mat image, const SaveOptions &save);
