#include "imaging/smart_quad.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

float quadArea(const Quad &quad)
{
    return (quad[2] - quad[0]).cross(quad[3] - quad[1]) / 2;
}

bool isConvex(const Quad &quad)
{
    int turns = 0;
    for (size_t i = 0; i < 4; ++i) {
        const cv::Point2f a = quad[(i + 1) % 4] - quad[i];
        const cv::Point2f b = quad[(i + 2) % 4] - quad[(i + 1) % 4];
        turns += a.cross(b) > 0 ? 1 : -1;
    }
    return turns == 4 || turns == -4;
}

Quad inOrder(Quad quad)
{
    if (quadArea(quad) < 0)
        std::swap(quad[1], quad[3]);
    const auto first = std::min_element(quad.begin(), quad.end(),
                                        [](auto a, auto b) { return a.x + a.y < b.x + b.y; });
    std::rotate(quad.begin(), first, quad.end());
    return quad;
}

float cornerDistance(const Quad &a, const Quad &b)
{
    float best = std::numeric_limits<float>::max();
    for (size_t shift = 0; shift < 4; ++shift) {
        float most = 0;
        for (size_t i = 0; i < 4; ++i) {
            const cv::Point2f way = a[i] - b[(i + shift) % 4];
            most = std::max(most, std::hypot(way.x, way.y));
        }
        best = std::min(best, most);
    }
    return best;
}

bool containsNear(const std::vector<Quad> &quads, const Quad &quad, float distance)
{
    return std::any_of(quads.begin(), quads.end(),
                       [&](const Quad &other) { return cornerDistance(other, quad) < distance; });
}

Quad scaled(const Quad &quad, float x, float y)
{
    Quad result;
    std::transform(quad.begin(), quad.end(), result.begin(),
                   [&](cv::Point2f p) { return cv::Point2f(p.x * x, p.y * y); });
    return result;
}

// Sutherland and Hodgman: `a` cut along each side of `b`. cv::intersectConvexConvex answers areas
// far too large for some quadrilaterals that share a corner.
float sharedArea(const Quad &a, const Quad &b)
{
    std::array<cv::Point2f, 16> inside, next; // rounding may add a few to the eight
    size_t count = 4;
    std::copy(a.begin(), a.end(), inside.begin());
    const float turn = quadArea(b) < 0 ? -1 : 1;
    for (size_t side = 0; side < 4 && count > 0; ++side) {
        const cv::Point2f from = b[side], way = b[(side + 1) % 4] - from;
        const auto depth = [&](cv::Point2f p) { return turn * way.cross(p - from); };
        size_t kept = 0;
        for (size_t i = 0; i < count && kept + 2 <= next.size(); ++i) {
            const cv::Point2f p = inside[i], q = inside[(i + 1) % count];
            const float depthP = depth(p), depthQ = depth(q);
            if (depthP >= 0)
                next[kept++] = p;
            if ((depthP < 0) != (depthQ < 0))
                next[kept++] = p + depthP / (depthP - depthQ) * (q - p);
        }
        count = kept;
        inside = next;
    }
    float doubled = 0;
    for (size_t i = 1; i + 1 < count; ++i)
        doubled += (inside[i] - inside[0]).cross(inside[i + 1] - inside[0]);
    return std::fabs(doubled) / 2;
}

float overlap(const Quad &a, const Quad &b)
{
    const float shared = sharedArea(a, b);
    const float all = std::fabs(quadArea(a)) + std::fabs(quadArea(b)) - shared;
    return all > 0 ? shared / all : 0;
}
