#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

/// The code that names a file.
struct NamingCode
{
    std::string text;       ///< of the first code in reading order; empty when there is none
    bool isCertain = false; ///< error correction, a check sum or a second look vouches for it
};

/// Searches a B,G,R picture of 8 bits. `type`: 0 bar codes, 1 QR codes and others of their kind.
/// What a quick look does not find is left to the ladder of binarisations, which takes seconds
/// where there is no code. Throws nothing; any thread.
NamingCode readNamingCode(const cv::Mat &image, int type);
