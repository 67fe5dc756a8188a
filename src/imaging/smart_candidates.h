#pragma once

#include "imaging/smart_maps.h"
#include "imaging/smart_score.h"
#include "imaging/smart_sheet.h"

#include <vector>

/// A quadrilateral with what was measured of it.
struct RatedQuad
{
    Quad quad;
    SheetTraits traits{};
    float confidence = 0;
};

/// All candidates of a picture of a few hundred pixels, refined and rated, best first; those near
/// `expected` ones are favoured a little.
std::vector<RatedQuad> ratedQuads(const SmartMaps &maps, const std::vector<Quad> &expected);
