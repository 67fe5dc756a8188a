#include "imaging/smart_score.h"

#include "imaging/smart_quad.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kPlaces = 32;                     // along a side
constexpr float kCovered = 0.25F;               // pressed edge length that counts as an edge
constexpr float kNearBand = 3, kFarBand = 5.5F; // pixels beside a side where colours are read
constexpr float kUnknown = 0.35F;   // support of a side that lies outside of the picture
constexpr float kOvershoot = 0.12F; // of a side, beyond its corner
constexpr float kFarLevels = 60;    // difference of colours that is a large one
constexpr float kLevels = 15;       // contrast that is half of a full one

struct SideTraits
{
    bool isInside = false; // enough of it lies within the picture
    float support = kUnknown, covered = kUnknown, consistency = kUnknown, overshoot = 0;
    cv::Vec3f step{0, 0, 0}, outside{0, 0, 0}, within{0, 0, 0};
};

float alignedNear(const SmartMaps &maps, cv::Point2f at, cv::Point2f normal)
{
    float most = 0;
    for (int i = -1; i <= 1; ++i) {
        const int x = cvRound(at.x + static_cast<float>(i) * normal.x);
        const int y = cvRound(at.y + static_cast<float>(i) * normal.y);
        if (x < 0 || y < 0 || x >= maps.edge.cols || y >= maps.edge.rows)
            continue;
        const cv::Vec2f &edge = maps.edge(y, x);
        most = std::max(most, std::fabs(edge[0] * normal.x + edge[1] * normal.y));
    }
    return most;
}

bool colourAt(const SmartMaps &maps, cv::Point2f at, cv::Vec3f &colour)
{
    const int x = cvRound(at.x), y = cvRound(at.y);
    if (x < 0 || y < 0 || x >= maps.lab.cols || y >= maps.lab.rows)
        return false;
    const cv::Vec3b &pixel = maps.lab(y, x);
    colour += cv::Vec3f(pixel[0], 1.5F * static_cast<float>(pixel[1]),
                        1.5F * static_cast<float>(pixel[2]));
    return true;
}

float length(const cv::Vec3f &v)
{
    return std::sqrt(v.dot(v));
}

SideTraits measured(const SmartMaps &maps, cv::Point2f from, cv::Point2f to)
{
    SideTraits side;
    const cv::Point2f way = to - from;
    const float all = std::hypot(way.x, way.y);
    if (all < 4)
        return side;
    const cv::Point2f along = way / all, outward(along.y, -along.x); // clockwise corners
    int looked = 0, covered = 0, pairs = 0;
    float support = 0;
    cv::Vec3f sum(0, 0, 0), outside(0, 0, 0);
    double squares = 0;
    for (int i = 0; i < kPlaces; ++i) {
        const cv::Point2f at = from + (static_cast<float>(i) + 0.5F) / kPlaces * way;
        if (at.x < 2 || at.y < 2 || at.x > static_cast<float>(maps.lab.cols) - 3 ||
            at.y > static_cast<float>(maps.lab.rows) - 3)
            continue;
        ++looked;
        const float edge = alignedNear(maps, at, outward);
        support += edge;
        covered += edge > kCovered ? 1 : 0;
        cv::Vec3f in(0, 0, 0), out(0, 0, 0);
        if (colourAt(maps, at - kNearBand * outward, in) &&
            colourAt(maps, at - kFarBand * outward, in) &&
            colourAt(maps, at + kNearBand * outward, out) &&
            colourAt(maps, at + kFarBand * outward, out))
        {
            const cv::Vec3f step = (in - out) * 0.5F;
            sum += step;
            outside += out * 0.5F;
            squares += step.dot(step);
            ++pairs;
        }
    }
    if (looked < kPlaces / 3)
        return side;
    side.isInside = true;
    side.support = support / static_cast<float>(looked);
    side.covered = static_cast<float>(covered) / static_cast<float>(looked);
    if (pairs > kPlaces / 4) {
        side.step = sum / static_cast<float>(pairs);
        side.outside = outside / static_cast<float>(pairs);
        side.within = side.outside + side.step;
        const float mean = length(side.step);
        const auto spread = static_cast<float>(
            std::sqrt(std::max(0.0, squares / pairs - static_cast<double>(mean) * mean)));
        side.consistency = mean / (mean + spread + 2);
    }
    int beyond = 0;
    float over = 0;
    for (int i = 1; i <= 6; ++i) {
        const float part = 0.03F + kOvershoot * static_cast<float>(i) / 6;
        for (const cv::Point2f &at : {from - part * way, to + part * way}) {
            if (at.x < 2 || at.y < 2 || at.x > static_cast<float>(maps.lab.cols) - 3 ||
                at.y > static_cast<float>(maps.lab.rows) - 3)
                continue;
            over += alignedNear(maps, at, outward);
            ++beyond;
        }
    }
    side.overshoot = beyond > 0 ? over / static_cast<float>(beyond) : 0;
    return side;
}

} // namespace

SheetTraits sheetTraits(const SmartMaps &maps, const Quad &quad, float agreement)
{
    std::array<SideTraits, 4> sides;
    for (size_t i = 0; i < 4; ++i)
        sides[i] = measured(maps, quad[i], quad[(i + 1) % 4]);

    SheetTraits traits{};
    float leastSupport = 1, leastCovered = 1, leastConsistent = 1, leastStep = 1;
    cv::Vec3f step(0, 0, 0), outside(0, 0, 0), within(0, 0, 0);
    float steps = 0, smallest = 1e6F, largest = 1;
    int inside = 0;
    for (const SideTraits &side : sides) {
        traits[0] += side.support / 4;
        traits[2] += side.covered / 4;
        traits[4] += side.consistency / 4;
        traits[14] += side.overshoot / 4;
        leastSupport = std::min(leastSupport, side.support);
        leastCovered = std::min(leastCovered, side.covered);
        leastConsistent = std::min(leastConsistent, side.consistency);
        if (!side.isInside)
            continue;
        const float contrast = length(side.step) / (length(side.step) + kLevels);
        traits[6] += contrast;
        leastStep = std::min(leastStep, contrast);
        ++inside;
        step += side.step;
        steps += length(side.step);
        smallest = std::min(smallest, length(side.step));
        largest = std::max(largest, length(side.step));
        outside += side.outside;
        within += side.within;
    }
    if (inside > 0) {
        traits[6] /= static_cast<float>(inside);
        outside /= static_cast<float>(inside);
        within /= static_cast<float>(inside);
        for (const SideTraits &side : sides) {
            if (!side.isInside)
                continue;
            traits[7] += length(side.outside - outside) / static_cast<float>(inside) / kFarLevels;
            traits[18] += length(side.within - within) / static_cast<float>(inside) / kFarLevels;
        }
    }
    traits[1] = leastSupport;
    traits[3] = leastCovered;
    traits[5] = leastConsistent;
    traits[17] = inside > 0 ? leastStep : 0;
    traits[19] = inside > 0 ? smallest / largest : 0;
    traits[8] = steps > 0 ? length(step) / steps : 0;
    const auto whole = static_cast<float>(maps.size().area());
    const float share = std::fabs(quadArea(quad)) / whole;
    traits[9] = std::log(std::max(share, 0.005F)) / 5 + 1;
    traits[10] = share * share;
    std::array<float, 4> lengths{};
    for (size_t i = 0; i < 4; ++i) {
        const cv::Point2f a = quad[(i + 1) % 4] - quad[i], b = quad[(i + 3) % 4] - quad[i];
        lengths[i] = std::max(1.0F, std::hypot(a.x, a.y));
        const float cosine =
            std::fabs(a.dot(b)) / std::max(1.0F, std::hypot(a.x, a.y) * std::hypot(b.x, b.y));
        traits[11] = std::max(traits[11], cosine);
    }
    for (size_t i = 0; i < 2; ++i)
        traits[12] = std::max(traits[12], std::fabs(std::log(lengths[i] / lengths[i + 2])));
    traits[13] = static_cast<float>(4 - inside) / 4;
    traits[15] = agreement;
    traits[16] = steps > 0 ? step[0] / (std::fabs(step[0]) + 4 * kLevels) : 0;
    return traits;
}
