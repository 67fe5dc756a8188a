#pragma once

#include "imaging/smart_sheet.h"

#include <opencv2/core/mat.hpp>

#include <string>
#include <vector>

/// One code seen in a picture.
struct CodeSymbol
{
    std::string text;    ///< UTF-8, not empty
    Quad corners;        ///< pixels; of a bar code a line across the bars or a part of them
    bool isSafe = false; ///< a check sum or error correction vouches for the text
};

/// Codes of a gray picture of 8 bits. `type`: 0 all kinds of bar codes: the first in reading order,
/// then others that were met on the way to it; 1 the codes of fields (QR, Data Matrix, Aztec) and
/// of stacked rows (PDF417), all in reading order. Takes 5 to 80 ms at
/// 8 megapixels. Throws what the library throws; any thread.
std::vector<CodeSymbol> readSymbols(const cv::Mat &gray, int type);
