#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

/// Reading of barcodes and QR codes. `type`: 0 any barcode except QR, 1 QR codes only. All answer
/// the text of the first symbol of the wanted kind, empty when there is none. They throw nothing
/// and may run in any thread; a large picture without a code takes seconds.

/// Searches a B,G,R picture of 8 bits.
std::string BarQrDecodePro(cv::Mat image, int type);

/// Tries Otsu's threshold, an adaptive threshold and a sweep of thresholds on a gray picture, in
/// this order, several at a time.
std::string GetQR(cv::Mat gray, int type);

/// Scans a black-and-white picture as it is and, failing that, after a morphological opening.
std::string GetQRInBinImg(cv::Mat binary, int type);

/// One scan of a gray picture.
std::string ZbarDecoder(cv::Mat gray, int type);

/// The same search on a picture file (UTF-8 path).
std::string RecogBarQrCodeFromFile(const std::string &path, int type);
