#pragma once

#include "imaging/file_writer.h"
#include "imaging/save_options.h"

#include <opencv2/core/mat.hpp>

#include <string>

/// Applies trimming and the colour effect of `options` to `image` (8 bits, B,G,R) and writes it to
/// `path` (UTF-8). The ending decides the format, in upper or lower case: jpg, bmp, png, tif, pdf.
///
/// `image` is shared, not copied: the effects change the caller's pixels. `raw` leaves out
/// trimming and document optimization, for a picture that was processed before. The file appears
/// whole or not at all; an earlier file of the name survives a failure.
/// Returns the cause of a failure, which is also logged; empty on success. Throws nothing.
std::string saveImage(const std::string &path, cv::Mat image, const SaveOptions &options, bool raw);

/// saveImage with the options of the process-wide settings. GUI thread.
std::string SaveImage(std::string path, cv::Mat image, bool raw);

/// Encodes `image` by the ending of `path` and writes it whole; `quality` (percent, -1 for the
/// encoder's own) reaches JPEG only. Returns the cause of a failure, empty on success.
std::string encodeImageFile(const std::string &path, const cv::Mat &image, int quality,
                            Earlier earlier = Earlier::IsKept);
