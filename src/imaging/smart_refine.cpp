#include "imaging/smart_refine.h"

#include "imaging/smart_quad.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int kPlaces = 40; // along a side
constexpr float kCornerPart =
    0.06F;                        // of a side, left out at both ends: corners may be bent or torn
constexpr float kEdgeMin = 0.15F; // pressed length
constexpr int kStepsMax = 32;     // pixels across a side
constexpr int kRounds = 4;
constexpr float kShareMin = 0.25F; // of the places that must have an edge
constexpr float kFrameMargin = 2;

struct Side
{
    cv::Point2f from, to;
};

struct Hit
{
    float along, across, weight;
};

// By a parabola through the strongest value and its neighbours, -0.5 to 0.5.
float peakShift(const float *values, int best, int last)
{
    if (best <= 0 || best >= last)
        return 0;
    const float before = values[best - 1], after = values[best + 1];
    const float bend = before - 2 * values[best] + after;
    return bend < -1e-4F ? std::clamp((before - after) / (2 * bend), -0.5F, 0.5F) : 0;
}

// Position of the strongest edge across the side.
bool strongestAcross(const SmartMaps &maps, cv::Point2f at, cv::Point2f normal, float reach,
                     Hit &hit)
{
    std::array<float, 2 * kStepsMax + 1> values{};
    const int half = std::min(static_cast<int>(reach), kStepsMax);
    int best = -1;
    float most = kEdgeMin;
    for (int i = -half; i <= half; ++i) {
        const int x = cvRound(at.x + static_cast<float>(i) * normal.x);
        const int y = cvRound(at.y + static_cast<float>(i) * normal.y);
        if (x < 1 || y < 1 || x + 1 >= maps.edge.cols || y + 1 >= maps.edge.rows)
            continue;
        const cv::Vec2f &edge = maps.edge(y, x);
        const float distance = static_cast<float>(i) / (reach + 1);
        const float value =
            std::fabs(edge[0] * normal.x + edge[1] * normal.y) * (1 - 0.3F * distance * distance);
        const int step = i + half;
        values[static_cast<size_t>(step)] = value;
        if (value > most) {
            most = value;
            best = step;
        }
    }
    if (best < 0)
        return false;
    hit.across = static_cast<float>(best - half) + peakShift(&values[0], best, 2 * half);
    hit.weight = most;
    return true;
}

constexpr int kProfileMargin = 2; // pixels on either side that a difference takes in
constexpr float kStepMin = 5;     // levels between inside and outside

// The colour across the side, averaged a little along it.
cv::Vec3f colourNear(const cv::Mat &picture, cv::Point2f at, cv::Point2f along)
{
    cv::Vec3f sum(0, 0, 0);
    for (int i = -2; i <= 2; ++i) {
        const int x =
            std::clamp(cvRound(at.x + static_cast<float>(i) * along.x), 0, picture.cols - 1);
        const int y =
            std::clamp(cvRound(at.y + static_cast<float>(i) * along.y), 0, picture.rows - 1);
        const auto &pixel = picture.at<cv::Vec3b>(y, x);
        sum += cv::Vec3f(pixel[0], pixel[1], pixel[2]);
    }
    return sum / 5;
}

struct SteppedPicture
{
    const cv::Mat &picture;
    float step; // pixels between places that are looked at
};

bool strongestAcross(const SteppedPicture &source, cv::Point2f at, cv::Point2f unit, float reach,
                     Hit &hit)
{
    const cv::Point2f normal = source.step * unit;
    const int half = std::min(static_cast<int>(reach), kStepsMax);
    std::array<cv::Vec3f, 2 * (kStepsMax + kProfileMargin) + 1> profile;
    const cv::Point2f along(normal.y, -normal.x);
    const int outer = half + kProfileMargin;
    for (int i = 0; i <= 2 * outer; ++i)
        profile[static_cast<size_t>(i)] =
            colourNear(source.picture, at + static_cast<float>(i - outer) * normal, along);
    std::array<float, 2 * kStepsMax + 1> steps{};
    int best = -1;
    float most = kStepMin;
    for (int i = 0; i <= 2 * half; ++i) {
        const auto k = static_cast<size_t>(i);
        const cv::Vec3f step =
            (profile[k + 3] + profile[k + 4] - profile[k] - profile[k + 1]) * 0.5F;
        const float distance = static_cast<float>(i - half) / (reach + 1);
        steps[k] = std::sqrt(step.dot(step)) * (1 - 0.3F * distance * distance);
        if (steps[k] > most) {
            most = steps[k];
            best = i;
        }
    }
    if (best < 0)
        return false;
    hit.across =
        source.step * (static_cast<float>(best - half) + peakShift(&steps[0], best, 2 * half));
    hit.weight = most / (most + 4 * kStepMin);
    return true;
}

// Iteratively reweighted least squares (Cauchy weights): across = offset + slope * along.
template <typename Source>
Side fitted(const Source &source, cv::Size size, const Side &side, float reach, float step)
{
    const cv::Point2f way = side.to - side.from;
    const float length = std::hypot(way.x, way.y);
    if (length < 8)
        return side;
    const cv::Point2f along = way / length, normal(-along.y, along.x);
    std::array<Hit, kPlaces> hits{};
    size_t count = 0, looked = 0;
    for (int i = 0; i < kPlaces; ++i) {
        const float part =
            kCornerPart + (1 - 2 * kCornerPart) * static_cast<float>(i) / (kPlaces - 1);
        const cv::Point2f at = side.from + part * way;
        if (at.x < kFrameMargin || at.y < kFrameMargin ||
            at.x > static_cast<float>(size.width) - 1 - kFrameMargin ||
            at.y > static_cast<float>(size.height) - 1 - kFrameMargin)
            continue;
        ++looked;
        Hit &hit = hits[count];
        hit.along = (part - 0.5F) * length;
        if (strongestAcross(source, at, normal, reach, hit))
            ++count;
    }
    if (looked < kPlaces / 4 || static_cast<float>(count) < kShareMin * static_cast<float>(looked))
        return side;
    float offset = 0, slope = 0;
    for (int round = 0; round < kRounds; ++round) {
        const float scale =
            step * (round == 0 ? reach : std::max(1.0F, reach / static_cast<float>(2 << round)));
        double w = 0, wx = 0, wy = 0, wxx = 0, wxy = 0;
        for (size_t i = 0; i < count; ++i) {
            const float residual = (hits[i].across - offset - slope * hits[i].along) / scale;
            const double weight = hits[i].weight / (1 + residual * residual);
            w += weight;
            wx += weight * hits[i].along;
            wy += weight * hits[i].across;
            wxx += weight * hits[i].along * hits[i].along;
            wxy += weight * hits[i].along * hits[i].across;
        }
        const double turn = w * wxx - wx * wx;
        if (turn < 1e-3)
            return side;
        slope = static_cast<float>((w * wxy - wx * wy) / turn);
        offset = static_cast<float>((wy - static_cast<double>(slope) * wx) / w);
    }
    const float atEnd =
        std::max(std::fabs(offset - slope * length / 2), std::fabs(offset + slope * length / 2));
    if (atEnd > 2 * reach * step)
        return side;
    return {side.from + (offset - slope * length / 2) * normal,
            side.to + (offset + slope * length / 2) * normal};
}

bool crossing(const Side &a, const Side &b, cv::Point2f &at)
{
    const cv::Point2f wayA = a.to - a.from, wayB = b.to - b.from;
    const float turn = wayA.cross(wayB);
    if (std::fabs(turn) < 0.1F * std::hypot(wayA.x, wayA.y) * std::hypot(wayB.x, wayB.y))
        return false;
    at = a.from + (b.from - a.from).cross(wayB) / turn * wayA;
    return true;
}

template <typename Source>
Quad onEdges(const Source &source, cv::Size size, const Quad &quad, float reach, float step)
{
    std::array<Side, 4> sides;
    for (size_t i = 0; i < 4; ++i)
        sides[i] = fitted(source, size, {quad[i], quad[(i + 1) % 4]}, reach, step);
    Quad result;
    for (size_t i = 0; i < 4; ++i) {
        if (!crossing(sides[(i + 3) % 4], sides[i], result[i]))
            return quad;
    }
    if (!isConvex(result) || !(cornerDistance(result, quad) < 4 * (reach + 1) * step))
        return quad;
    return result;
}

} // namespace

Quad refined(const SmartMaps &maps, const Quad &quad, float reach)
{
    return onEdges(maps, maps.size(), quad, reach, 1);
}

Quad refinedInPicture(const cv::Mat &picture, const Quad &quad, float reach, float step)
{
    return onEdges(SteppedPicture{picture, step}, picture.size(), quad, reach, step);
}
