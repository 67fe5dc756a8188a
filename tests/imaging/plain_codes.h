#pragma once

#include <opencv2/imgproc.hpp>
#include <zbar.h>

#include <string>

/// The ladder of code readings, one step after the other, every symbology at every step.
inline std::string plainScan(const cv::Mat &gray, int type)
{
    zbar::ImageScanner scanner;
    scanner.set_config(zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 1);
    zbar::Image image(static_cast<unsigned>(gray.cols), static_cast<unsigned>(gray.rows), "Y800",
                      gray.data, gray.total());
    scanner.scan(image);
    for (auto symbol = image.symbol_begin(); symbol != image.symbol_end(); ++symbol) {
        if ((symbol->get_type() == zbar::ZBAR_QRCODE) == (type != 0))
            return symbol->get_data();
    }
    return {};
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
