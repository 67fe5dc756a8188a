#pragma once

#include "imaging/outline.h"

#include <opencv2/core/mat.hpp>

#include <optional>
#include <vector>

/// Documents of one frame.
struct Detection
{
    std::vector<Outline> outlines; ///< for a capture: largest first, at most eight, truncated
    std::vector<Outline> drawn;    ///< for the preview: rounded; outlines of equal area all appear
    int leftOut = 0;               ///< documents beyond the eight of multi-graph crop
};

/// Finds documents lying on a desk that is darker or lighter than they are.
///
/// Works on a quarter of each side, so that every frame of a stream can be searched. Keeps its
/// work buffers between frames: one finder per thread.
class DocumentFinder
{
public:
    /// `rgb`: rows x cols x 3, 8 bits, R,G,B, any size. `cropMode`: AutomaticCrop keeps only the
    /// largest document. Empty when nothing in the frame is large enough: the caller then keeps
    /// the outlines it had. Throws nothing; a failure is logged and answers empty.
    std::optional<Detection> find(const cv::Mat &rgb, int cropMode);

private:
    std::optional<Detection> search(const cv::Mat &rgb, int cropMode);

    cv::Mat m_gray, m_blurred;
};

/// Draws every outline of `drawn` into `rgb` (8 bits, R,G,B) as a green frame.
void drawOutlines(cv::Mat &rgb, const std::vector<Outline> &drawn);
