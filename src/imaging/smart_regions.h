#pragma once

#include "imaging/smart_maps.h"
#include "imaging/smart_sheet.h"

#include <vector>

/// Candidates for sheets from areas of one colour: Otsu's threshold on lightness, on local contrast
/// and on the distance from the colours along the picture's border, clusters of colours (k-means),
/// and areas that edges close off. The convex hull of each area is reduced to four sides by taking
/// away, again and again, the side whose neighbours prolonged add the least.
std::vector<Quad> quadsFromRegions(const SmartMaps &maps);
