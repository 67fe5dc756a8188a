#pragma once

#include "imaging/smart_sheet.h"

#include <opencv2/core/mat.hpp>

#include <vector>

/// Sheets of one picture.
struct SmartFinding
{
    std::vector<SmartSheet> sheets; ///< largest first; none is less sure than kSmartConfidenceMin
    float best = 0; ///< confidence of the best candidate, also when it was not sure enough
};

/// Below this no sheet is told: what would be cut is more likely wrong than right.
constexpr float kSmartConfidenceMin = 0.4F;

/// Below this a sheet is told, but neither drawn nor cut: more of it would be lost, or of the desk
/// kept, than a user forgives.
constexpr float kSmartCutMin = 0.85F;

/// Those that are sure enough to be cut, in the same order.
std::vector<SmartSheet> sureSheets(const SmartFinding &finding);

/// Finds sheets lying anywhere in `rgb` (8 bits, R,G,B, any size), seen in perspective: candidates
/// from straight edges and from areas of one colour in a picture of about 400 pixels, moved onto
/// the edges near them, each rated by traits that a small network weighs, trained on generated
/// scenes. Sheets besides the best one must be surer, and cover each other only a little.
/// `expected`: where sheets lay a moment ago; of candidates about as good, these are taken. Any
/// thread. Throws nothing; a failure is logged and answers no sheet.
SmartFinding findSheets(const cv::Mat &rgb, const std::vector<Quad> &expected = {});

/// Corners of a sheet found in a reduced copy of `rgb`, or in `rgb` by findSheets, brought onto the
/// edges of the picture at its own size. Throws nothing.
Quad sharpenedCorners(const cv::Mat &rgb, const Quad &corners);
