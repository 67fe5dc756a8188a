#pragma once

#include <opencv2/core/mat.hpp>

/// A picture of which all pixels are there, or only as many as somebody needed.
struct ReducedPicture
{
    ReducedPicture(const cv::Mat &whole) // NOLINT(google-explicit-constructor): it is one
        : rgb(whole)
        , full(whole.size())
    {
    }

    ReducedPicture(const cv::Mat &pixels, cv::Size fullSize, int reducedBy)
        : rgb(pixels)
        , full(fullSize)
        , reduction(reducedBy)
    {
    }

    cv::Mat rgb;       ///< rows x cols x 3, 8 bits, R,G,B: the sides of `full` divided by
                       ///< `reduction`, rounded up
    cv::Size full;     ///< of the whole picture, pixels
    int reduction = 1; ///< 1, 2 or 4
};
