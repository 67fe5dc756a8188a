#pragma once

#include "imaging/outline.h"
#include "imaging/reduced_picture.h"

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
    /// Outlines are in pixels of the whole picture, of any size. A reduced one is searched at the
    /// same quarter size and gives outlines within a few pixels. `cropMode`: AutomaticCrop keeps
    /// only the largest document. Empty when nothing in the frame is large enough: the caller then
    /// keeps the outlines it had. Throws nothing; a failure is logged and answers empty.
    std::optional<Detection> find(const ReducedPicture &picture, int cropMode);

private:
    std::optional<Detection> search(const ReducedPicture &picture, int cropMode);

    cv::Mat m_gray, m_blurred;
};

/// Draws every outline of `drawn` as a green frame into `rgb` (8 bits, R,G,B), whose sides are
/// those of the whole picture divided by `reduction`.
void drawOutlines(cv::Mat &rgb, const std::vector<Outline> &drawn, int reduction = 1);
