#pragma once

#include "imaging/smart_maps.h"
#include "imaging/smart_sheet.h"

#include <vector>

/// Candidates for sheets from straight edges: the strongest lines combined two by two as opposite
/// sides, as in Z. Zhang and L.-W. He, "Whiteboard scanning and image enhancement" (2007). The
/// borders of the picture count as lines for sheets that run off it. The best `most` of them by
/// how much edge lies along their sides, best first.
std::vector<Quad> quadsFromLines(const SmartMaps &maps, size_t most);
