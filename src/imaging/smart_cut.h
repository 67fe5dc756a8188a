#pragma once

#include "imaging/smart_sheet.h"

#include <opencv2/core/mat.hpp>

#include <string>

/// A sheet's own shape, estimated from its picture in perspective.
struct SheetShape
{
    Quad corners;    ///< as it is cut: the first becomes the top left corner, then clockwise
    cv::Size size;   ///< of the cut, pixels, multiples of 4
    float ratio = 1; ///< longer side by shorter side
    const char *format =
        ""; ///< "A" (and B), "Letter", "Legal", "Tabloid", "ID-1"; empty for none of these
};

/// The sheet's proportions by Z. Zhang and L.-W. He, "Whiteboard scanning and image enhancement"
/// (2007): a rectangle and a camera with square pixels and its axis through the middle of the
/// picture give focal length and ratio. Where the perspective is too weak to tell the focal length,
/// that of a common camera. A ratio within 3 % of a usual paper format becomes that format's,
/// unless the sheet runs off the picture. Its top is the side that faces most upwards. `frame`:
/// size of the picture that `corners` belong to. The sheet keeps the pixels of its longest sides.
SheetShape sheetShape(const Quad &corners, cv::Size frame);

/// Cuts the sheet out of `rgb` (8 bits, R,G,B) by a perspective transformation to its own shape;
/// B,G,R order, upright, both sides multiples of 4. Parts beyond the frame come out black. Empty,
/// with the cause in `error`, when the corners enclose no sheet. Throws nothing.
cv::Mat cutSheet(const cv::Mat &rgb, const Quad &corners, std::string &error);
