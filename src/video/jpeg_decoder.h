#pragma once

#include "video/jpeg_picture.h"

#include <opencv2/core/mat.hpp>

#include <memory>

/// How a picture is decoded.
struct JpegDecoding
{
    int reduction = 1;   ///< 1, 2, 4 or 8: both sides are divided by it, rounded up
    int angle = 0;       ///< clockwise turn of what was decoded: 0, 90, 180 or 270
    bool isExact = true; ///< the library's own accuracy; else its faster steps, for pictures that
                         ///< pass by: a value may then be a few levels off
};

/// Sides of a picture of `full` pixels decoded so; `full` is before the turn.
cv::Size decodedSize(cv::Size full, const JpegDecoding &how);

/// Decodes the JPEG pictures of cameras with libjpeg-turbo, whole or reduced: a reduced picture
/// costs what its pixels cost and the reading of the compressed data. Pictures without Huffman
/// tables, as some cameras send them, are read with the standard ones (ITU-T T.81, annex K.3).
///
/// Keeps its work memory from picture to picture. One thread.
class JpegDecoder
{
public:
    JpegDecoder();
    ~JpegDecoder();
    JpegDecoder(const JpegDecoder &) = delete;
    JpegDecoder &operator=(const JpegDecoder &) = delete;

    /// Size of the picture that `bytes` hold; empty when they begin with no JPEG header or the
    /// picture is larger than a camera's can be.
    cv::Size sizeOf(const std::vector<uint8_t> &bytes);

    /// Decodes `picture` into `rgb`: rows x cols x 3, 8 bits, R,G,B, continuous, of decodedSize().
    /// False when the picture is truncated or damaged, or `rgb` has another size; `rgb` may hold
    /// a part of it then and is not to be shown.
    bool decode(const JpegPicture &picture, const JpegDecoding &how, cv::Mat &rgb);

private:
    struct Impl;
    std::unique_ptr<Impl> m;
};

/// All pixels of `picture`, turned clockwise by `angle`; empty when it is damaged or memory is
/// short. Any thread.
cv::Mat decodedWhole(const JpegPicture &picture, int angle);
