#pragma once

#include "imaging/smart_maps.h"
#include "imaging/smart_sheet.h"

/// Moves the sides of `quad` onto the edges near them: along each side the strongest edge within
/// `reach` pixels across is looked for at many places, and a line is fitted to what was found, with
/// less weight for what lies far from it. A side without edges stays.
Quad refined(const SmartMaps &maps, const Quad &quad, float reach);

/// The same on a picture itself (8 bits, three channels), for the last fraction of a pixel; looks
/// only at pixels near the sides, `step` pixels apart, `reach` of them to either side, at most 32.
Quad refinedInPicture(const cv::Mat &picture, const Quad &quad, float reach, float step);
