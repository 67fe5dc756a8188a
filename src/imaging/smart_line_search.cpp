#include "imaging/smart_line_search.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int kAngleBins = 120; // of half a turn
constexpr float kAngleStep = static_cast<float>(CV_PI) / kAngleBins;
constexpr float kDistanceStep = 1.5F;              // pixels
constexpr float kVoteMin = 0.2F;                   // pressed edge length
constexpr int kPeakAngles = 4, kPeakDistances = 3; // bins around a peak that it covers
constexpr int kPeaks = 110;
constexpr float kSupportReach = 1.5F; // pixels beside the line
constexpr float kRunMin = 0.06F;      // of the shorter side of the picture
constexpr float kAlongBorder = 0.35F; // support of a side that is the picture's border

float aligned(const SmartMaps &maps, cv::Point2f at, cv::Point2f normal)
{
    const int x = cvRound(at.x), y = cvRound(at.y);
    if (x < 0 || y < 0 || x >= maps.edge.cols || y >= maps.edge.rows)
        return 0;
    const cv::Vec2f &edge = maps.edge(y, x);
    return std::fabs(edge[0] * normal.x + edge[1] * normal.y);
}

// Walks along the line through the picture, sums up the edge on it, and measures its strength: the
// squares of the lengths of its unbroken runs, so that a long edge counts more than many letters.
bool trace(const SmartMaps &maps, SmartLine &line)
{
    const cv::Size size = maps.size();
    const float reach = std::hypot(static_cast<float>(size.width), static_cast<float>(size.height));
    const auto inside = [&](float t) {
        const cv::Point2f p = line.origin + t * line.along;
        return p.x >= 0 && p.y >= 0 && p.x <= static_cast<float>(size.width - 1) &&
               p.y <= static_cast<float>(size.height - 1);
    };
    float first = -reach, last = reach;
    while (first < last && !inside(first))
        first += 2;
    while (last > first && !inside(last))
        last -= 2;
    if (last - first < 16)
        return false;
    line.from = first;
    line.sum.assign(1, 0);
    float run = 0, gap = 0, squares = 0;
    const float shortest = kRunMin * static_cast<float>(std::min(size.width, size.height));
    const auto endRun = [&] {
        if (run > shortest)
            squares += run * run;
        run = 0;
    };
    const int steps = static_cast<int>(last - first);
    for (int i = 0; i <= steps; ++i) {
        const float t = first + static_cast<float>(i);
        const cv::Point2f p = line.origin + t * line.along;
        float here = aligned(maps, p, line.normal);
        here = std::max(here, aligned(maps, p + kSupportReach * line.normal, line.normal));
        here = std::max(here, aligned(maps, p - kSupportReach * line.normal, line.normal));
        line.sum.push_back(line.sum.back() + here);
        gap = here > kVoteMin ? 0 : gap + 1;
        if (gap > 3)
            endRun();
        else
            run += here;
    }
    endRun();
    line.strength = std::sqrt(squares);
    return line.strength > 0;
}

struct Peak
{
    float votes;
    int angle, distance;
};

cv::Mat_<float> votes(const SmartMaps &maps)
{
    const cv::Size size = maps.size();
    const float reach = std::hypot(static_cast<float>(size.width), static_cast<float>(size.height));
    const int half = static_cast<int>(reach / kDistanceStep) + 2;
    cv::Mat_<float> count(kAngleBins, 2 * half + 1, 0.0F);
    std::array<cv::Point2f, kAngleBins> normals;
    for (int i = 0; i < kAngleBins; ++i) {
        const float angle = (static_cast<float>(i) + 0.5F) * kAngleStep;
        normals[static_cast<size_t>(i)] =
            cv::Point2f(std::cos(angle), std::sin(angle)) * (1 / kDistanceStep);
    }
    for (int y = 1; y + 1 < size.height; ++y) {
        for (int x = 1; x + 1 < size.width; ++x) {
            const cv::Vec2f edge = maps.edge(y, x);
            const float square = edge[0] * edge[0] + edge[1] * edge[1];
            if (square < kVoteMin * kVoteMin)
                continue;
            const int stepX =
                2 * std::fabs(edge[0]) > std::fabs(edge[1]) ? (edge[0] > 0 ? 1 : -1) : 0;
            const int stepY =
                2 * std::fabs(edge[1]) > std::fabs(edge[0]) ? (edge[1] > 0 ? 1 : -1) : 0;
            const cv::Vec2f &ahead = maps.edge(y + stepY, x + stepX);
            const cv::Vec2f &behind = maps.edge(y - stepY, x - stepX);
            if (ahead.dot(ahead) > square || behind.dot(behind) >= square)
                continue; // only the ridge of an edge votes
            const float straight = maps.straight(y, x);
            const float vote = std::sqrt(square) * straight * straight;
            float angle = std::atan2(edge[1], edge[0]);
            if (angle < 0)
                angle += static_cast<float>(CV_PI);
            const int bin = static_cast<int>(angle / kAngleStep);
            for (int i = bin - 1; i <= bin + 1; ++i) {
                const int k = (i + kAngleBins) % kAngleBins;
                const cv::Point2f &n = normals[static_cast<size_t>(k)];
                const float distance = static_cast<float>(x) * n.x + static_cast<float>(y) * n.y;
                count(k, half + cvRound(distance)) += vote;
            }
        }
    }
    return count;
}

} // namespace

float SmartLine::support(float a, float b) const
{
    if (isBorder)
        return kAlongBorder;
    const float length = std::fabs(a - b);
    const int last = static_cast<int>(sum.size()) - 1;
    const int i = std::clamp(cvRound(std::min(a, b) - from), 0, last);
    const int j = std::clamp(cvRound(std::max(a, b) - from), 0, last);
    return length < 1 ? 0 : (sum[static_cast<size_t>(j)] - sum[static_cast<size_t>(i)]) / length;
}

// The strongest bins, each the strongest of its surroundings.
std::vector<SmartLine> strongestLines(const SmartMaps &maps)
{
    const cv::Mat_<float> count = votes(maps);
    const int half = count.cols / 2;
    cv::Mat_<float> around;
    const cv::Mat mirrored = [&] { // half a turn on, the distance changes its sign
        cv::Mat flipped;
        cv::flip(count, flipped, 1);
        cv::Mat all;
        cv::vconcat(std::vector<cv::Mat>{flipped.rowRange(kAngleBins - kPeakAngles, kAngleBins),
                                         count, flipped.rowRange(0, kPeakAngles)},
                    all);
        return all;
    }();
    cv::dilate(mirrored, around, cv::Mat::ones(2 * kPeakAngles + 1, 2 * kPeakDistances + 1, CV_8U));
    std::vector<Peak> peaks;
    for (int a = 0; a < kAngleBins; ++a) {
        for (int d = 0; d < count.cols; ++d) {
            const float value = count(a, d);
            if (value > 3 && value >= around(a + kPeakAngles, d))
                peaks.push_back({value, a, d});
        }
    }
    std::sort(peaks.begin(), peaks.end(),
              [](const Peak &a, const Peak &b) { return a.votes > b.votes; });
    peaks.resize(std::min<size_t>(peaks.size(), kPeaks));
    std::vector<SmartLine> lines;
    for (const Peak &peak : peaks) {
        const float angle = (static_cast<float>(peak.angle) + 0.5F) * kAngleStep;
        SmartLine line;
        line.normal = {std::cos(angle), std::sin(angle)};
        line.along = {-line.normal.y, line.normal.x};
        line.origin = static_cast<float>(peak.distance - half) * kDistanceStep * line.normal;
        if (trace(maps, line))
            lines.push_back(std::move(line));
    }
    std::sort(lines.begin(), lines.end(),
              [](const SmartLine &a, const SmartLine &b) { return a.strength > b.strength; });
    return lines;
}
