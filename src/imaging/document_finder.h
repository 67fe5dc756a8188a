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

    /// Whether `found`, which find() has just given, would still be so were the picture one gray
    /// level brighter or darker: what a rounding in a reduced picture amounts to. Where a shadow or
    /// a print lies right at the threshold a single pixel can move an edge, or add half a table.
    bool isSteady(const std::optional<Detection> &found, int cropMode) const;

private:
    std::optional<Detection> search(const ReducedPicture &picture, int cropMode);
    std::optional<Detection> above(double threshold, int cropMode) const;

    cv::Mat m_gray, m_blurred;
    double m_threshold = 0; // gray level, of the last search
};

/// Whether `a` and `b` are the same documents: each corner within 4 pixels of one of the other.
bool areAlike(const std::optional<Detection> &a, const std::optional<Detection> &b);

/// Draws every outline of `drawn` as a green frame into `rgb` (8 bits, R,G,B), whose sides are
/// those of the whole picture divided by `reduction`.
void drawOutlines(cv::Mat &rgb, const std::vector<Outline> &drawn, int reduction = 1);
