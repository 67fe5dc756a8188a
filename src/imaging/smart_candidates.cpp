#include "imaging/smart_candidates.h"

#include "imaging/smart_lines.h"
#include "imaging/smart_quad.h"
#include "imaging/smart_refine.h"
#include "imaging/smart_regions.h"

#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <cmath>

namespace {

constexpr size_t kFromLines = 100;
constexpr float kReach = 5; // pixels that the sides of a candidate may move
constexpr float kNextReach = 2.5F;
constexpr float kExpectedNear = 4, kExpectedGain = 0.03F;
constexpr float kSame = 2;           // pixels between corners of candidates that are one
constexpr float kAreaMin = 0.015F;   // of the picture
constexpr float kCosineMax = 0.8F;   // of a corner's angle
constexpr float kOutsideMax = 0.15F; // of the longer side: how far a corner may lie outside
constexpr float kSideMin = 12;       // pixels

bool isPlausible(const Quad &quad, cv::Size picture)
{
    if (!isConvex(quad) || quadArea(quad) < kAreaMin * static_cast<float>(picture.area()))
        return false;
    const auto width = static_cast<float>(picture.width),
               height = static_cast<float>(picture.height);
    const float outside = kOutsideMax * std::max(width, height);
    for (size_t i = 0; i < 4; ++i) {
        const cv::Point2f a = quad[(i + 1) % 4] - quad[i], b = quad[(i + 3) % 4] - quad[i];
        const float lengthA = std::hypot(a.x, a.y), lengthB = std::hypot(b.x, b.y);
        if (lengthA < kSideMin || std::fabs(a.dot(b)) > kCosineMax * lengthA * lengthB)
            return false;
        const cv::Point2f &p = quad[i];
        if (p.x < -outside || p.y < -outside || p.x > width + outside || p.y > height + outside)
            return false;
    }
    return true;
}

} // namespace

std::vector<RatedQuad> ratedQuads(const SmartMaps &maps, const std::vector<Quad> &expected)
{
    std::vector<Quad> regions, lines;
    cv::parallel_for_(cv::Range(0, 2), [&](const cv::Range &range) {
        for (int i = range.start; i < range.end; ++i) {
            if (i == 0)
                lines = quadsFromLines(maps, kFromLines);
            else
                regions = quadsFromRegions(maps);
        }
    });
    std::vector<Quad> quads;
    const auto add = [&](const Quad &quad, float reach) {
        const Quad moved = refined(maps, refined(maps, quad, reach), kNextReach);
        if (isPlausible(moved, maps.size()) && !containsNear(quads, moved, kSame))
            quads.push_back(moved);
    };
    for (const Quad &quad : expected)
        add(quad, kNextReach);
    for (const Quad &quad : regions) {
        add(quad, 2 * kReach);
        if (isPlausible(quad, maps.size()) && !containsNear(quads, quad, kSame))
            quads.push_back(quad);
    }
    for (const Quad &quad : lines)
        add(quad, kReach);

    std::vector<RatedQuad> rated;
    for (const Quad &quad : quads) {
        float agreement = 0;
        for (const Quad &region : regions)
            agreement = std::max(agreement, overlap(region, quad));
        RatedQuad one;
        one.quad = quad;
        one.traits = sheetTraits(maps, quad, agreement);
        one.confidence = sheetConfidence(one.traits);
        if (containsNear(expected, quad, kExpectedNear))
            one.confidence = std::min(1.0F, one.confidence + kExpectedGain);
        rated.push_back(one);
    }
    std::sort(rated.begin(), rated.end(),
              [](const RatedQuad &a, const RatedQuad &b) { return a.confidence > b.confidence; });
    return rated;
}
