#pragma once

#include "imaging/smart_maps.h"

#include <vector>

/// A straight line through the picture that may hold the side of a sheet.
struct SmartLine
{
    cv::Point2f normal, along, origin; ///< unit vectors; the line's point nearest to (0, 0)
    float strength = 0;     ///< pixels: the root of the summed squares of its unbroken runs of edge
    bool isBorder = false;  ///< it is the picture's border: no edge can lie on it
    float from = 0;         ///< of `sum`: position along the line, from `origin` on
    std::vector<float> sum; ///< edge found since the line entered the picture, one entry a pixel

    /// Mean edge between two positions along the line, 0 to 1.
    float support(float a, float b) const;
};

/// The strongest lines of the picture, strongest first: peaks of a Hough transform in which every
/// edge pixel votes only near the direction of its own gradient (D. H. Ballard, "Generalizing the
/// Hough transform to detect arbitrary shapes", 1981).
std::vector<SmartLine> strongestLines(const SmartMaps &maps);
