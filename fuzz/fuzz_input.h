#pragma once

#include <QDir>
#include <QTemporaryDir>

#include <opencv2/core/mat.hpp>

#include <cstdint>
#include <cstring>

/// A picture made of fuzzer bytes: two bytes for the sides (1 to `sideMax`), the rest repeated as
/// pixels.
inline cv::Mat pictureFrom(const uint8_t *data, size_t size, int sideMax, int type)
{
    const int width = size > 0 ? data[0] * sideMax / 256 + 1 : 1;
    const int height = size > 1 ? data[1] * sideMax / 256 + 1 : 1;
    cv::Mat picture(height, width, type, cv::Scalar::all(0));
    const size_t pixels = picture.total() * picture.elemSize();
    for (size_t at = 0; size > 2 && at < pixels; at += size - 2)
        std::memcpy(picture.data + at, data + 2, std::min(size - 2, pixels - at));
    return picture;
}

/// A home of its own, so that logs and files stay out of the user's.
inline const QTemporaryDir &fuzzHome()
{
    static const QTemporaryDir home;
    static const bool isSet = [] {
        QDir().mkpath(home.filePath("Documents"));
        return qputenv("HOME", home.path().toUtf8());
    }();
    (void)isSet;
    return home;
}
