#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

/// The search for codes with one black-and-white picture after another. Gray pictures of 8 bits;
/// `type`: 0 any barcode except QR, 1 QR codes only. May run in any thread.

enum class Symbologies { All, AllButQr, QrOnly };

/// The first symbol of the wanted kind that one scan sees, empty when there is none.
std::string scannedCode(const cv::Mat &picture, int type, Symbologies symbologies);

/// The same with the least work for this type.
std::string decodedCode(const cv::Mat &gray, int type);

/// Without light specks of less than 3 x 3 pixels.
cv::Mat opened(const cv::Mat &binary);

/// Otsu's threshold, an adaptive threshold and a sweep of thresholds, each as it is and opened.
std::string climbLadder(const cv::Mat &gray, int type);

struct LadderCode
{
    std::string text;         ///< empty when there is none
    bool isConfirmed = false; ///< read alike in another way, or made safe by its error correction
};

/// The ladder's answer, and whether it may be trusted: bars alone are misread now and then, with
/// and without check digits, but hardly ever alike in two different binarisations.
LadderCode climbLadderTwice(const cv::Mat &gray, int type);
