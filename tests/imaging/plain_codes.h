#pragma once

#include <opencv2/imgproc.hpp>
#include <zbar.h>

#include <cstring>
#include <string>

/// The ladder of code readings, one step after the other, every symbology at every step.
inline std::string plainScan(const cv::Mat &gray, int type)
{
    zbar::zbar_image_scanner_t *scanner = zbar::zbar_image_scanner_create();
    zbar::zbar_image_scanner_set_config(scanner, zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 1);
    zbar::zbar_image_t *image = zbar::zbar_image_create();
    zbar::zbar_image_set_format(image, zbar_fourcc('Y', '8', '0', '0'));
    zbar::zbar_image_set_size(image, static_cast<unsigned>(gray.cols),
                              static_cast<unsigned>(gray.rows));
    zbar::zbar_image_set_data(image, gray.data, gray.total(), nullptr);
    zbar::zbar_scan_image(scanner, image);
    std::string text;
    for (auto *symbol = zbar::zbar_image_first_symbol(image); symbol && text.empty();
         symbol = zbar::zbar_symbol_next(symbol))
    {
        const char *name = zbar::zbar_get_symbol_name(zbar::zbar_symbol_get_type(symbol));
        if ((std::strcmp(name, "QR-Code") == 0) == (type != 0))
            text.assign(zbar::zbar_symbol_get_data(symbol),
                        zbar::zbar_symbol_get_data_length(symbol));
    }
    zbar::zbar_image_destroy(image);
    zbar::zbar_image_scanner_destroy(scanner);
    return text;
}

inline std::string plainScanBoth(const cv::Mat &binary, int type)
{
    const std::string text = plainScan(binary, type);
    if (!text.empty())
        return text;
    cv::Mat opened;
    cv::morphologyEx(binary, opened, cv::MORPH_OPEN,
                     cv::getStructuringElement(cv::MORPH_RECT, cv::Size(3, 3)));
    return plainScan(opened, type);
}

inline std::string plainLadder(const cv::Mat &gray, int type)
{
    cv::Mat binary;
    const double t = cv::threshold(gray, binary, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    std::string text = plainScanBoth(binary, type);
    if (text.empty()) {
        cv::adaptiveThreshold(gray, binary, 255, cv::ADAPTIVE_THRESH_GAUSSIAN_C, cv::THRESH_BINARY,
                              33, 0);
        text = plainScanBoth(binary, type);
    }
    for (int v = static_cast<int>(t); text.empty() && v <= 239; v += 20) {
        cv::threshold(gray, binary, v, 255, cv::THRESH_BINARY);
        text = plainScanBoth(binary, type);
    }
    return text;
}
